// SPDX-License-Identifier: MIT
// The feature dock's combo box and "Excute": the calls that each makes and the signals that it
// emits.
#include "tests/tree/DockBench.h"

class XMLCtrlCommandTest : public QObject {
    Q_OBJECT

private slots:
    void init() { fakeorvalis::reset(); }
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void choosingAnEntryWritesItsName();
    void typedEntriesAreWrittenAsText();
    void failedEntryWriteStillAnnounces();
    void comboAnnounces_data();
    void comboAnnounces();
    void excuteRunsTheCommand();
    void excuteAnnouncesUserSetLoadOnly_data();
    void excuteAnnouncesUserSetLoadOnly();
    void userSetLoadStopsAndRestartsTheStream();
    void userSetLoadRestartsAlsoWhenItFails();
    void otherCommandsKeepTheStream();
    void userSetLoadWithoutMainWindow();
    void treeDeletedWhileTheStreamStops();
    void writesPauseThePreview_data();
    void writesPauseThePreview();
};

void XMLCtrlCommandTest::choosingAnEntryWritesItsName()
{
    setOnlyNode("UserSetSelector", enumNode({"Default", "UserSet1", "UserSet2"}, "Default"));
    DockBench bench;
    bench.click("UserSetSelector");
    QTest::keyClick(bench.combo(), Qt::Key_Down);
    QCOMPARE(callsMade(),
             QStringList{"OrvalisSetNodeString(h1, \"UserSetSelector\", \"UserSet1\")"});
    QCOMPARE(bench.window.events, QStringList());
    QCOMPARE(bench.combo()->currentIndex(), 1);
}

void XMLCtrlCommandTest::typedEntriesAreWrittenAsText()
{
    setOnlyNode("LineSource", enumNode({"Timer0Active"}, "Timer0Active"));
    DockBench bench;
    bench.click("LineSource");
    bench.combo()->setFocus();
    bench.combo()->lineEdit()->selectAll();
    QTest::keyClicks(bench.combo(), "Other"); // its line edit passes the focus to it
    QTest::keyClick(bench.combo(), Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(callsMade(), QStringList{"OrvalisSetNodeString(h1, \"LineSource\", \"Other\")"});
}

void XMLCtrlCommandTest::failedEntryWriteStillAnnounces()
{
    setOnlyNode("GainAuto", enumNode({"Off", "Continuous"}, "Off"));
    DockBench bench;
    bench.click("GainAuto");
    fakeorvalis::fail("OrvalisSetNodeString");
    QTest::keyClick(bench.combo(), Qt::Key_Down);
    QCOMPARE(bench.combo()->currentText(), QString("Continuous"));
    QCOMPARE(bench.window.events, QStringList{"feature"});
    QCOMPARE(fakeorvalis::calls().size(), 1U);
}

void XMLCtrlCommandTest::comboAnnounces_data()
{
    QTest::addColumn<QStringList>("events");
    const auto row = [](const char *name, const QStringList &events) {
        QTest::newRow(name) << events;
    };
    row("PixelFormat", {"video"});
    row("GainAuto", {"feature"});
    row("ExposureTime", {"feature"});
    row("ExposureTimeMode", {"feature"});
    row("ExposureAuto", {"feature"});
    row("BalanceWhiteAuto", {"feature"});
    row("TriggerMode", {"trigger"});
    row("ExposureMode", {"trigger"});
    row("TimerSelector", {"strobe"});
    row("PixelFormatExposureAutoTriggerTimer", {"video", "feature", "trigger", "strobe"});
    row("ExposureTimeTimer", {"feature", "strobe"});
    row("GainAutoExposureAuto", {"feature"}); // once
    for (const char *silent :
         {"UserSetSelector", "Gain", "gainauto", "Width", "AcquisitionFrameRate", "pixelformat",
          "UserSetLoad", "AutoExposure", "LineSource"})
        row(silent, {});
}

void XMLCtrlCommandTest::comboAnnounces()
{
    QFETCH(QStringList, events);
    setOnlyNode(QTest::currentDataTag(), enumNode({"A", "B"}, "A"));
    DockBench bench;
    bench.click(QTest::currentDataTag());
    noteCall(bench, "OrvalisSetNodeString");
    QTest::keyClick(bench.combo(), Qt::Key_Down);
    QCOMPARE(bench.window.events, QStringList{"OrvalisSetNodeString"} + events);
}

void XMLCtrlCommandTest::excuteRunsTheCommand()
{
    setOnlyNode("UserSetSave", commandNode());
    DockBench bench;
    bench.click("UserSetSave");
    QTest::mouseClick(bench.button(), Qt::LeftButton);
    QCOMPARE(callsMade(), QStringList{"OrvalisSetNodeCommand(h1, \"UserSetSave\")"});
    QCOMPARE(bench.window.events, QStringList());
}

void XMLCtrlCommandTest::excuteAnnouncesUserSetLoadOnly_data()
{
    QTest::addColumn<bool>("announces");
    QTest::newRow("UserSetLoad") << true;
    QTest::newRow("MyUserSetLoadNow") << true;
    QTest::newRow("UserSetSave") << false;
    QTest::newRow("usersetload") << false;
    QTest::newRow("TriggerSoftware") << false;
    QTest::newRow("GainAutoTimerPixelFormat") << false;
}

void XMLCtrlCommandTest::excuteAnnouncesUserSetLoadOnly()
{
    QFETCH(bool, announces);
    setOnlyNode(QTest::currentDataTag(), commandNode());
    DockBench bench;
    bench.click(QTest::currentDataTag());
    noteCall(bench, "OrvalisSetNodeCommand");
    QTest::mouseClick(bench.button(), Qt::LeftButton);
    QStringList expected{"OrvalisSetNodeCommand"};
    if (announces)
        expected += QStringList{"feature", "video", "trigger", "strobe", "userset"};
    QCOMPARE(bench.window.events, expected);
}

void XMLCtrlCommandTest::userSetLoadStopsAndRestartsTheStream()
{
    setOnlyNode("UserSetLoad", commandNode());
    DockBench bench;
    bench.click("UserSetLoad");
    bench.window.streaming = true;
    noteCall(bench, "OrvalisSetNodeCommand");
    QTest::mouseClick(bench.button(), Qt::LeftButton);
    const QStringList expected{
        "stop", "OrvalisSetNodeCommand", "feature", "video", "trigger", "strobe", "userset",
        "start"};
    QCOMPARE(bench.window.events, expected);
    QVERIFY(bench.window.streaming);
}

void XMLCtrlCommandTest::userSetLoadRestartsAlsoWhenItFails()
{
    setOnlyNode("UserSetLoad", commandNode());
    DockBench bench;
    bench.click("UserSetLoad");
    bench.window.streaming = true;
    fakeorvalis::failAll(true);
    QTest::mouseClick(bench.button(), Qt::LeftButton);
    QCOMPARE(bench.window.events.first(), QString("stop"));
    QCOMPARE(bench.window.events.last(), QString("start"));
    QCOMPARE(bench.window.events.size(), 7);
}

void XMLCtrlCommandTest::otherCommandsKeepTheStream()
{
    setOnlyNode("UserSetSave", commandNode());
    DockBench bench;
    bench.click("UserSetSave");
    bench.window.streaming = true;
    QTest::mouseClick(bench.button(), Qt::LeftButton);
    QCOMPARE(bench.window.events, QStringList());
}

void XMLCtrlCommandTest::userSetLoadWithoutMainWindow()
{
    setOnlyNode("UserSetLoad", commandNode());
    const DockBench bench;
    QWidget plain;
    XMLCtrl dock(&plain);
    dock.CreateXMLTree(bench.handle);
    const auto *model = dock.findChild<QTreeView *>("treeXML")->model();
    dock.on_treeXML_clicked(model->index(0, 0, model->index(0, 0)));
    QSignalSpy loaded(&dock, &XMLCtrl::sigUpdateUSerSetInfo);
    dock.on_btnXMLExcute_clicked();
    QCOMPARE(loaded.count(), 1);
}

void XMLCtrlCommandTest::treeDeletedWhileTheStreamStops()
{
    class VanishingWindow : public QWidget, public StreamControl {
    public:
        bool isStreaming() const override { return true; }
        void slotStartCamera() override {}
        void slotStopCamera() override { dock->DeleteXMLTree(); }
        void resetFrameCount() override {}
        void pausePreview() override {}
        void resumePreview() override {}
        XMLCtrl *dock = nullptr;
    };
    setOnlyNode("UserSetLoad", commandNode());
    const DockBench bench;
    VanishingWindow window;
    XMLCtrl dock(&window);
    window.dock = &dock;
    dock.setStreamControl(&window);
    dock.CreateXMLTree(bench.handle);
    const auto *model = dock.findChild<QTreeView *>("treeXML")->model();
    dock.on_treeXML_clicked(model->index(0, 0, model->index(0, 0)));
    fakeorvalis::clearCalls();
    dock.on_btnXMLExcute_clicked();
    QCOMPARE(callsMade(), QStringList{"OrvalisSetNodeCommand(null, \"UserSetLoad\")"});
}

void XMLCtrlCommandTest::writesPauseThePreview_data()
{
    QTest::addColumn<fakeorvalis::Node>("node");
    QTest::addColumn<QString>("setter");
    QTest::addColumn<int>("paused");
    const auto row = [](const char *name, const fakeorvalis::Node &node, const char *setter,
                        bool paused = true) {
        QTest::newRow(name) << node << setter << (paused ? 1 : 0);
    };
    row("Width", integerNode(2, 0, 9), "OrvalisSetNodeInt");
    row("BinningHorizontal", integerNode(2, 0, 9), "OrvalisSetNodeInt");
    row("Zoom", floatNode(2, 0, 9), "OrvalisSetNodeFloat");
    row("Region", stringNode("2"), "OrvalisSetNodeString");
    row("HalfSize", booleanNode(false), "OrvalisSetNodeBoolean");
    row("DecimationVertical", enumNode({"1", "2"}, "2"), "OrvalisSetNodeString");
    row("UserSetLoad", commandNode(), "OrvalisSetNodeCommand");
    row("RestoreFactorySettings", commandNode(), "OrvalisSetNodeCommand");
    // Not for these: a grab may be waiting for the trigger.
    row("TriggerSoftware", commandNode(), "OrvalisSetNodeCommand", false);
    row("TriggerDelay", integerNode(2, 0, 9), "OrvalisSetNodeInt", false);
}

void XMLCtrlCommandTest::writesPauseThePreview()
{
    const char *name = QTest::currentDataTag();
    QFETCH(fakeorvalis::Node, node);
    QFETCH(QString, setter);
    setOnlyNode(name, node);
    DockBench bench;
    bench.click(name);
    int pausedAtTheWrite = -1;
    fakeorvalis::onCall(setter.toStdString(), [&] { pausedAtTheWrite = bench.window.paused; });
    if (node.type == ORVALIS_NODE_COMMAND)
        bench.button()->click();
    else if (node.type == ORVALIS_NODE_ENUMERATION)
        bench.dock->on_cmbXMLValue_activated("1");
    else
        bench.type("1");
    QTEST(pausedAtTheWrite, "paused");
    QCOMPARE(bench.window.paused, 0);
}

ORVALIS_QTEST_MAIN(XMLCtrlCommandTest)
#include "XMLCtrlCommandTest.moc"
