// SPDX-License-Identifier: MIT
// The texts that guide the user in each situation, and that they fit on a small screen.
#include "tests/app/Shell.h"

#include <QStatusTipEvent>
#include <QTimeLine>

using shell::Frame;
using shell::Shell;

class GuidanceTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void withoutCamerasItExplainsWhatToConnect();
    void withCamerasItExplainsHowToOpenOne();
    void aSingleCameraMustBeSelected();
    void withAnOpenCameraItExplainsHowToStart();
    void withoutAPanelItMentionsTheTree();
    void aStreamWithoutFramesHasAHint();
    void anImageReplacesTheHint();
    void theStatusMentionsSaving();
    void theStatusContainsTheZoom();
    void theStatusMentionsAStoppedStream();
    void aLostCameraHasAHint();
    void aClosedCameraIsNotLost();
    void menusKeepTheStatus();
    void theHintLiesBelowTheLogoOrReplacesIt_data();
    void theHintLiesBelowTheLogoOrReplacesIt();
    void theHintIgnoresTheMouse();
    void statusBarNumbersKeepTheLayout();
    void everythingFitsASmallScreen();
    void thePanelRestoresItsWidth();

private:
    static QString status(const Shell &shell) { return shell->statusBar()->currentMessage(); }
    static QLabel *hint(const Shell &shell) { return shell.child<QLabel>("laHint"); }
    static bool hintIsShown(const Shell &shell) { return !hint(shell)->isHidden(); }
};

void GuidanceTest::withoutCamerasItExplainsWhatToConnect()
{
    const Shell shell([] { shell::setCameras({}); });
    QCOMPARE(status(shell), QString("No camera found"));
    QVERIFY(hintIsShown(shell));
    QVERIFY(hint(shell)->text().contains("Connect a camera"));
}

void GuidanceTest::withCamerasItExplainsHowToOpenOne()
{
    const Shell shell;
    QCOMPARE(status(shell), QString("No camera open"));
    QVERIFY(hint(shell)->text().contains("Double-click one"));
}

// A single camera is not preselected, so "Open" alone has no effect.
void GuidanceTest::aSingleCameraMustBeSelected()
{
    const Shell shell([] { shell::setCameras({{"CAM-A", "Camera A"}}); });
    QCOMPARE(status(shell), QString("No camera open"));
    QVERIFY(hint(shell)->text().contains("Double-click it"));
    QVERIFY(hint(shell)->text().contains("choose it"));
    shell::setCameras({{"CAM-A", "Camera A"}, {"CAM-B", "Camera B"}});
    shell->slotRefreshCamera();
    QVERIFY(hint(shell)->text().contains("Double-click one"));
}

void GuidanceTest::withAnOpenCameraItExplainsHowToStart()
{
    const Shell shell;
    shell.open();
    QCOMPARE(status(shell), QString("Camera open"));
    QVERIFY(hint(shell)->text().contains("Press Play"));
    shell->slotCloseCamera();
    QCOMPARE(status(shell), QString("No camera open"));
}

void GuidanceTest::withoutAPanelItMentionsTheTree()
{
    const Shell shell([] {
        fakeorvalis::withState(
            [](fakeorvalis::State &state) { state.nodes["NUCMode"].type = ORVALIS_NODE_STRING; });
    });
    shell.open();
    QVERIFY(!shell.action("actionControl")->isEnabled());
    QCOMPARE(status(shell), QString("Camera open"));
    QVERIFY(hint(shell)->text().contains("in the tree"));
}

void GuidanceTest::aStreamWithoutFramesHasAHint()
{
    const Shell shell;
    shell.play();
    QTRY_COMPARE(status(shell), QString("Streaming, no frame yet"));
    QVERIFY(hint(shell)->text().contains("trigger"));
}

void GuidanceTest::anImageReplacesTheHint()
{
    const Shell shell;
    shell.play();
    Frame frame(64, 48, 100);
    QVERIFY(shell::shows(shell, frame, shell::gray(100)));
    QVERIFY(!hintIsShown(shell));
    QCOMPARE(status(shell), QString("Streaming, zoom 100 %"));
}

void GuidanceTest::theStatusMentionsSaving()
{
    const Shell shell;
    shell.play();
    Frame frame(64, 48, 100);
    QVERIFY(shell::shows(shell, frame, shell::gray(100)));
    shell.action("actionSave")->setChecked(true);
    QCOMPARE(status(shell), QString("Streaming, saving images, zoom 100 %"));
    shell.action("actionSave")->setChecked(false);
    QCOMPARE(status(shell), QString("Streaming, zoom 100 %"));
}

void GuidanceTest::theStatusContainsTheZoom()
{
    const Shell shell;
    shell->show();
    shell.play();
    Frame frame(64, 48, 100);
    QVERIFY(shell::shows(shell, frame, shell::gray(100)));
    shell.view()->scale(0.043, 0.043);
    QTRY_COMPARE(status(shell), QString("Streaming, zoom 4.3 %"));
    shell->slotZoom100();
    QTRY_COMPARE(status(shell), QString("Streaming, zoom 100 %"));
    shell->slotZoomIn();
    QTRY_VERIFY(status(shell).section(' ', -2, -2).toInt() > 100);
    QTRY_VERIFY(shell.view()->findChildren<QTimeLine *>().isEmpty());
    shell->slotStopCamera();
    shell.view()->resetTransform();
    QTRY_COMPARE(status(shell), QString("Stopped, zoom 100 %"));
    shell->slotCloseCamera();
    QCOMPARE(status(shell), QString("No camera open"));
}

void GuidanceTest::theStatusMentionsAStoppedStream()
{
    const Shell shell;
    shell.play();
    Frame frame(64, 48, 100);
    QVERIFY(shell::shows(shell, frame, shell::gray(100)));
    shell->slotStopCamera();
    QCOMPARE(status(shell), QString("Stopped, zoom 100 %"));
    QVERIFY(!hintIsShown(shell));
}

void GuidanceTest::aLostCameraHasAHint()
{
    const Shell shell;
    shell->DiscoveryProc();
    shell.open();
    shell::setCameras({});
    shell->DiscoveryProc();
    QCOMPARE(status(shell), QString("Camera lost"));
    QVERIFY(hint(shell)->text().contains("gone"));
    shell::setCameras({{"CAM-A", "Camera A"}});
    shell->DiscoveryProc();
    shell.open();
    QCOMPARE(status(shell), QString("Camera open"));
}

void GuidanceTest::aClosedCameraIsNotLost()
{
    const Shell shell;
    shell->DiscoveryProc();
    shell.open();
    shell->slotCloseCamera();
    shell::setCameras({});
    shell->DiscoveryProc();
    QCOMPARE(status(shell), QString("No camera found"));
}

void GuidanceTest::menusKeepTheStatus()
{
    const Shell shell;
    QStatusTipEvent tip{QString()};
    QCoreApplication::sendEvent(shell.window.get(), &tip);
    QCOMPARE(status(shell), QString("No camera open"));
}

void GuidanceTest::theHintLiesBelowTheLogoOrReplacesIt_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<bool>("hasRoom"); // otherwise the hint replaces the logo
    QTest::newRow("tiny") << QSize(640, 400) << false;
    QTest::newRow("small") << QSize(800, 480) << false;
    QTest::newRow("ordinary") << QSize(1280, 780) << true;
    QTest::newRow("large") << QSize(3840, 2140) << true;
}

void GuidanceTest::theHintLiesBelowTheLogoOrReplacesIt()
{
    QFETCH(QSize, size);
    QFETCH(bool, hasRoom);
    const Shell shell([] { shell::setCameras({}); });
    shell->resize(640, 400); // the result is independent of the previous size
    shell->show();
    QVERIFY(QTest::qWaitForWindowExposed(shell.window.get()));
    shell->resize(size);
    QCoreApplication::processEvents();
    const QRect label = hint(shell)->geometry();
    const QRect logo = shell.view()
                           ->mapFromScene(shell.view()->sceneRect())
                           .boundingRect()
                           .translated(shell.view()->viewport()->pos());
    QVERIFY(shell.view()->rect().contains(label));
    QVERIFY(hint(shell)->autoFillBackground());
    QVERIFY(label.height() >= hint(shell)->heightForWidth(label.width()));
    QVERIFY(hasRoom || label == shell.view()->viewport()->geometry());
    QVERIFY(!hasRoom || label.top() >= logo.bottom());
    QVERIFY(qAbs(label.center().x() - shell.view()->viewport()->geometry().center().x()) <= 2);
}

void GuidanceTest::theHintIgnoresTheMouse()
{
    const Shell shell;
    QVERIFY(hint(shell)->testAttribute(Qt::WA_TransparentForMouseEvents));
}

void GuidanceTest::statusBarNumbersKeepTheLayout()
{
    const Shell shell;
    shell->resize(1280, 780);
    shell->show();
    QVERIFY(QTest::qWaitForWindowExposed(shell.window.get()));
    const QRect rate = shell.rateLabel()->geometry();
    const QRect recv = shell.recvLabel()->geometry();
    shell->slotStatusBar(0, 12345678, 0);
    shell->slotStatusBar(1, 120.5, 987.6);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCOMPARE(shell.rateLabel()->geometry(), rate);
    QCOMPARE(shell.recvLabel()->geometry(), recv);
    QVERIFY(shell.recvLabel()->sizeHint().width() <= recv.width());
}

void GuidanceTest::everythingFitsASmallScreen()
{
    const Shell shell;
    shell.open();
    shell.action("actionControl")->trigger();
    const QSize screen(800, 480); // less a title bar
    shell->resize(screen);
    shell->show();
    QVERIFY(QTest::qWaitForWindowExposed(shell.window.get()));
    QCOMPARE(shell->size(), screen);
    QVERIFY(
        shell->rect().contains(QRect(shell.dock("CameraCtrl")->mapTo(shell.window.get(), QPoint()),
                                     shell.dock("CameraCtrl")->size())));
}

void GuidanceTest::thePanelRestoresItsWidth()
{
    const Shell shell;
    shell.open();
    shell.action("actionControl")->trigger();
    shell->resize(1280, 780);
    shell->show();
    QVERIFY(QTest::qWaitForWindowExposed(shell.window.get()));
    const QDockWidget *panel = shell.dock("CameraCtrl");
    const int wide = panel->sizeHint().width();
    QTRY_VERIFY(panel->width() >= wide);
    shell->resize(shell->minimumSizeHint());
    QTRY_VERIFY(panel->width() < wide);
    shell->resize(1280, 780);
    QTRY_VERIFY(panel->width() >= wide);
}

ORVALIS_QTEST_MAIN(GuidanceTest)
#include "GuidanceTest.moc"
