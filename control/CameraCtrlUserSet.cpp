// SPDX-License-Identifier: MIT
// The tab "Miscellaneous": sets of settings stored in the camera.
#include "control/CameraCtrl.h"

#include "capture/StreamControl.h"
#include "control/LibraryNames.h"
#include "ui_CameraCtrl.h"

#include <algorithm>

namespace {

constexpr char selector[] = "UserSetSelector";
constexpr char defaultSelector[] = "UserSetDefaultSelector";

} // namespace

void CameraCtrl::loadUserSet()
{
    if (m_hCamera == nullptr)
        return;
    OEnumNode sets{};
    sets.count = ORVALIS_ENUM_SIZE;
    if (OrvalisGetNodeEnum(m_hCamera, selector, &sets) == 0) {
        ui->cmbUserSet->clear();
        const std::uint32_t count = std::min<std::uint32_t>(sets.count, ORVALIS_ENUM_SIZE);
        for (std::uint32_t index = 0; index < count; ++index) {
            const QByteArray name = boundedText(sets.names[index], sizeof sets.names[index]);
            ui->cmbUserSet->addItem(QString::fromLatin1(name));
        }
    }
    char name[ORVALIS_TEXT_SIZE] = {}; // some cameras have a string instead of an enumeration
    OrvalisGetNodeString(m_hCamera, defaultSelector, name);
    selectName(ui->cmbUserSet, boundedText(name, sizeof name));
}

void CameraCtrl::on_btnUserSetSave_clicked()
{
    OrvalisSetNodeEnum(m_hCamera, selector, ui->cmbUserSet->currentText().toLatin1().constData());
    OrvalisSetNodeCommand(m_hCamera, "UserSetSave");
}

void CameraCtrl::on_btnUserSetLoad_clicked()
{
    const StreamPause streamPause(m_pMainWindow);
    const PreviewPause previewPause(m_preview);
    OrvalisSetNodeEnum(m_hCamera, selector, ui->cmbUserSet->currentText().toLatin1().constData());
    if (OrvalisSetNodeCommand(m_hCamera, "UserSetLoad") == 0)
        loadConfigurationValue(nullptr);
}

void CameraCtrl::on_btnUserSetPW_clicked()
{
    OrvalisSetNodeEnum(m_hCamera, defaultSelector,
                       ui->cmbUserSet->currentText().toLatin1().constData());
}
