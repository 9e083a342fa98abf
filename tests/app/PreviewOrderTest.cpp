// SPDX-License-Identifier: MIT
// The order of calls of the sensor preview and of the window.
#include "tests/app/Shell.h"
#include "tests/control/Gate.h"

#include "tree/XMLCtrl.h"

#include <QTreeView>

#include <atomic>

using shell::Shell;

namespace {

/// Calls of all threads, without discovery.
QStringList allCalls()
{
    return shell::texts(fakeorvalis::callsExcept(
        {"OrvalisNumberOfCameras", "OrvalisGetDisplayName", "OrvalisGetCameraID"}));
}

const QStringList turn{"OrvalisGetSizeInfo(h1)", "OrvalisGrabRGBData(h1, 1000)"};

} // namespace

class PreviewOrderTest : public QObject {
    Q_OBJECT

private slots:
    void openLoadsThePanelThenGrabs();
    void grabEndsBeforeTheClose_data();
    void grabEndsBeforeTheClose();
    void nothingIsGrabbedAfterTheClose();
    void treeWritesWaitForTheGrab();
    void thermalCamerasAreNotGrabbed();
};

void PreviewOrderTest::openLoadsThePanelThenGrabs()
{
    Gate gate(true);
    const Shell shell;
    fakeorvalis::onCall("OrvalisGrabRGBData", [&] { gate.pass(); });
    fakeorvalis::clearCalls();
    shell->slotOpenCamera(0);
    const int own = shell::calls().size();
    QVERIFY(gate.wait(1));
    const QStringList all = allCalls();
    QCOMPARE(all.mid(0, own), shell::calls()); // the preview starts after the panel has loaded
    QCOMPARE(all.mid(own, 2), turn);
}

void PreviewOrderTest::grabEndsBeforeTheClose_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"close", "open another", "leave", "end"})
        QTest::newRow(way) << way;
}

/// The library frees the camera in the close, so no grab may run then.
void PreviewOrderTest::grabEndsBeforeTheClose()
{
    QFETCH(QString, way);
    Gate gate(false);
    Gate closed(true);
    std::atomic<bool> inside{false};
    std::atomic<bool> insideAtTheClose{true};
    Shell shell;
    fakeorvalis::onCall("OrvalisGrabRGBData", [&] {
        inside = true;
        gate.pass();
        inside = false;
    });
    fakeorvalis::onCall("OrvalisCloseCamera", [&] {
        insideAtTheClose = inside.load();
        closed.pass();
    });
    shell->slotOpenCamera(0);
    QVERIFY(gate.wait(1));
    std::thread opener([&] {
        (void)closed.wait(1, std::chrono::milliseconds(200)); // may time out
        gate.open();
    });
    if (way == "close")
        shell->slotCloseCamera();
    else if (way == "open another")
        shell->slotOpenCamera(1);
    else if (way == "leave")
        shell->loseCamera();
    else
        shell.window.reset();
    opener.join();
    QVERIFY(closed.wait(1));
    QVERIFY(!insideAtTheClose);
}

void PreviewOrderTest::nothingIsGrabbedAfterTheClose()
{
    Gate gate(true);
    const Shell shell;
    fakeorvalis::onCall("OrvalisGrabRGBData", [&] { gate.pass(); });
    shell->slotOpenCamera(0);
    QVERIFY(gate.wait(1));
    shell->slotCloseCamera();
    QCOMPARE(allCalls().last(), QString("OrvalisCloseCamera(h1)"));
}

/// A grab allocates buffers of the size that it read; writing a node may enlarge the sensor.
void PreviewOrderTest::treeWritesWaitForTheGrab()
{
    Gate gate(false);
    Gate written(true);
    const Shell shell;
    fakeorvalis::onCall("OrvalisGrabRGBData", [&] { gate.pass(); });
    fakeorvalis::onCall("OrvalisSetNodeString", [&] { written.pass(); });
    shell->slotOpenCamera(0);
    auto *dock = dynamic_cast<XMLCtrl *>(shell.dock("XMLCtrl"));
    const auto *model = dock->findChild<QTreeView *>("treeXML")->model();
    const auto hits = model->match(model->index(0, 0), Qt::DisplayRole, "PixelFormat", 1,
                                   Qt::MatchExactly | Qt::MatchRecursive);
    dock->on_treeXML_clicked(hits.value(0));
    QVERIFY(gate.wait(1));
    bool early = true;
    std::thread opener([&] {
        early = written.wait(1, std::chrono::milliseconds(200));
        gate.open();
    });
    dock->on_cmbXMLValue_activated("Mono8");
    opener.join();
    QVERIFY(written.wait(1));
    QVERIFY(!early);
}

void PreviewOrderTest::thermalCamerasAreNotGrabbed()
{
    const Shell shell([] {
        fakeorvalis::withState(
            [](fakeorvalis::State &state) { state.nodes["NUCMode"].type = ORVALIS_NODE_STRING; });
    });
    shell->slotOpenCamera(0);
    shell->slotCloseCamera();
    for (const QString &call : allCalls())
        QVERIFY2(!call.startsWith("OrvalisGrab"), qPrintable(call));
}

ORVALIS_QTEST_MAIN(PreviewOrderTest)
#include "PreviewOrderTest.moc"
