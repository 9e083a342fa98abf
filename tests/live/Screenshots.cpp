// SPDX-License-Identifier: MIT
// Makes the images of the documentation: make_screenshots <folder>.
#include "app/Appearance.h"
#include "control/CameraCtrl.h"
#include "dialogs/AboutDialog.h"
#include "dialogs/AccessRegister.h"
#include "tests/live/LiveSession.h"
#include "view/DrawCenterDlg.h"

#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTreeView>

namespace {

constexpr int tabs = 4;
const char *const tabNames[tabs] = {"features", "video-modes", "trigger-strobe", "miscellaneous"};

/// Nodes of the six kinds that the value panel displays, on the simulated colour camera.
struct NodePicture {
    const char *node;
    const char *file;
};
const NodePicture nodePictures[] = {
    {"Width", "node-integer"},           {"ExposureTime", "node-float"},
    {"DeviceUserID", "node-string"},     {"ReverseX", "node-boolean"},
    {"PixelFormat", "node-enumeration"}, {"UserSetLoad", "node-command"},
};

class Album {
public:
    explicit Album(const QString &folder) : m_folder(folder)
    {
        m_folder.mkpath(QStringLiteral("."));
    }

    bool add(QWidget *widget, const char *name)
    {
        QTest::qWait(200); // time to draw the image; nothing depends on it
        const bool saved = widget->grab().save(m_folder.filePath(QLatin1String(name) + ".png"));
        if (!saved)
            qWarning("%s was not written", name);
        m_complete = m_complete && saved;
        return saved;
    }
    bool isComplete() const { return m_complete; }

private:
    QDir m_folder;
    bool m_complete = true;
};

void photographTabs(LiveSession &session, Album &album)
{
    auto *panel = session.window().findChild<CameraCtrl *>();
    auto *book = session.widget<QTabWidget>("tabWidget");
    for (int tab = 0; tab < tabs; ++tab) {
        book->setCurrentIndex(tab);
        if (tab == 1) {
            auto *sensor = session.widget<QWidget>("laROI");
            QTest::mousePress(sensor, Qt::LeftButton, {},
                              {sensor->width() / 4, sensor->height() / 4});
            // Mouse moves of Qt Test hold no button.
            QMouseEvent move(QEvent::MouseMove,
                             QPointF(sensor->width() * 3 / 4, sensor->height() * 3 / 4),
                             Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(sensor, &move);
            QTest::mouseRelease(sensor, Qt::LeftButton, {},
                                {sensor->width() * 3 / 4, sensor->height() * 3 / 4});
            QTest::qWait(1500); // the sensor preview refreshes once a second
        }
        album.add(&session.window(), tabNames[tab]);
    }
    emit panel->sigHideRubberBand();
}

void photographNodes(LiveSession &session, Album &album)
{
    auto *tree = session.widget<QTreeView>("treeXML");
    for (const NodePicture &picture : nodePictures) {
        tree->collapseAll();
        if (!session.clickNode(QLatin1String(picture.node)))
            qWarning("no node %s", picture.node);
        album.add(tree->window() == &session.window() ? tree->parentWidget() : tree->window(),
                  picture.file);
    }
}

void photographDialogs(LiveSession &session, Album &album)
{
    session.action("actionRegisterAccess_2")->trigger();
    auto *registers = session.window().findChild<AccessRegister *>();
    registers->findChild<QLineEdit *>(QStringLiteral("edAddr"))->setText(QStringLiteral("1000"));
    registers->findChild<QPushButton *>(QStringLiteral("btnRead"))->click();
    album.add(registers, "registers");
    registers->hide();

    session.action("actionAbout_Orvalis")->trigger();
    auto *about = session.window().findChild<AboutDialog *>();
    album.add(about, "about");
    about->hide();

    session.action("actionDrawCenter")->setChecked(true);
    auto *cross = session.window().findChild<DrawCenterDlg *>();
    cross->findChild<QSpinBox *>()->setValue(12);
    cross->findChild<QPushButton *>(QStringLiteral("btnApply"))->click();
    album.add(cross, "cross-dialog");
    if (!session.waitForPictures(2))
        qWarning("no image was displayed");
    album.add(&session.window(), "cross");
    session.action("actionDrawCenter")->setChecked(false);
}

bool photograph(const QString &folder)
{
    Album album(folder);
    LiveSession session;
    album.add(&session.window(), "start");
    if (!session.open(QStringLiteral("OV-SIM-2448C")) || !session.play())
        return false;
    session.widget<QLineEdit>("edSavePath")->setText(QStringLiteral("/home/you/Documents"));
    session.action("actionZoomFIT")->trigger();
    if (!session.waitForPictures(40)) // for the rates in the status bar
        return false;
    album.add(&session.window(), "streaming");
    photographDialogs(session, album);
    session.action("actionControl")->trigger();
    photographTabs(session, album);
    session.stop();
    session.commitNode(QStringLiteral("DeviceUserID"), QStringLiteral("Line 3, left"));
    photographNodes(session, album);
    return album.isComplete();
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    if (argc != 2) {
        fprintf(stderr, "usage: make_screenshots <folder>\n");
        return 2;
    }
    applyAppearance();
    return photograph(QString::fromLocal8Bit(argv[1])) ? 0 : 1;
}
