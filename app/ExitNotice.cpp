// SPDX-License-Identifier: MIT
// Waits for pending save tasks after the window has closed.
#include "app/ExitNotice.h"

#include "capture/SaveLimiter.h"

#include <QCoreApplication>
#include <QMessageBox>

#include <chrono>

namespace {

constexpr std::chrono::milliseconds silentWait{1500};
constexpr std::chrono::milliseconds betweenEvents{50};

} // namespace

void awaitSaves(SaveLimiter &limiter)
{
    if (limiter.waitUntilEmpty(silentWait))
        return;
    QMessageBox notice(QMessageBox::Information, QStringLiteral("OrvalisViewer"),
                       QCoreApplication::translate("ExitNotice", "Images are still being saved."));
    notice.setInformativeText(QCoreApplication::translate(
        "ExitNotice", "The program ends when all are on the disk. If the disk does not answer, you "
                      "can give up; images that are not saved are lost."));
    notice.addButton(QCoreApplication::translate("ExitNotice", "Give up"),
                     QMessageBox::DestructiveRole);
    bool givenUp = false;
    QObject::connect(&notice, &QDialog::finished, [&givenUp] { givenUp = true; });
    notice.setModal(false);
    notice.show();
    while (!givenUp && !limiter.waitUntilEmpty(betweenEvents))
        QCoreApplication::processEvents();
}
