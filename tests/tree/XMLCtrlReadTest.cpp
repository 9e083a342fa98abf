// SPDX-License-Identifier: MIT
// The feature dock's display of a clicked node, and the lock while acquiring.
#include "tests/tree/DockBench.h"

constexpr int readOnly = ORVALIS_ACCESS_READ_ONLY;

class XMLCtrlReadTest : public QObject {
    Q_OBJECT

private slots:
    void init() { fakeorvalis::reset(); }
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void clickReadsTheNode_data();
    void clickReadsTheNode();
    void failedReadKeepsTheTextAndDisables_data();
    void failedReadKeepsTheTextAndDisables();
    void integersAreShownByName_data();
    void integersAreShownByName();
    void categoriesHideThePanel();
    void nodesOfOtherTypesHideThePanel_data();
    void nodesOfOtherTypesHideThePanel();
    void failedNodeInfoHidesThePanel();
    void enumerationFillsTheCombo_data();
    void enumerationFillsTheCombo();
    void failedEnumerationLeavesAnEmptyCombo();
    void longEntryNamesKeepTheDocksWidth();
    void commandsNeedReadWrite_data();
    void commandsNeedReadWrite();
    void clickOnAnOldTreeIsIgnored();
    void clickWithoutCameraKeepsTheCurrentNode();
    void nodesThatLockWhileAcquiring_data();
    void nodesThatLockWhileAcquiring();
    void clickWhileAcquiringEnablesByAccess();
    void oneClickMakesOneReadEach();
    void fullBuffersAreReadToTheirEnd();
};

void XMLCtrlReadTest::clickReadsTheNode_data()
{
    QTest::addColumn<fakeorvalis::Node>("node");
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *tag, const fakeorvalis::Node &node, const char *call,
                        const char *text) { QTest::newRow(tag) << node << call << text; };
    row("integer", integerNode(7, 0, 9), "Int", "7");
    row("negative integer", integerNode(-5, -9, 9), "Int", "-5");
    row("smallest integer", integerNode(INT32_MIN, INT32_MIN, 0), "Int", "-2147483648");
    row("float", floatNode(1.5, 0, 9), "Float", "1.5");
    row("large float", floatNode(1e20, 0, 1e30), "Float", "1e+20");
    row("long float", floatNode(1.0 / 3, 0, 1), "Float", "0.333333");
    row("string", stringNode("left cam"), "String", "left cam");
    row("Latin-1 string", stringNode("K\xF6ln"), "String", "Köln");
    row("empty string", stringNode(""), "String", "");
    row("boolean true", booleanNode(true), "Boolean", "1");
    row("boolean false", booleanNode(false), "Boolean", "0");
}

void XMLCtrlReadTest::clickReadsTheNode()
{
    QFETCH(fakeorvalis::Node, node);
    QFETCH(QString, call);
    for (int access = 0; access <= 5; ++access) {
        fakeorvalis::reset();
        setOnlyNode("Node", withAccess(node, access));
        DockBench bench;
        bench.edit()->setText("before");
        bench.click("Node", true);
        QCOMPARE(panelOf(bench), QString("value"));
        if (access == ORVALIS_ACCESS_READ_WRITE || access == readOnly)
            QTEST(bench.edit()->text(), "text");
        QCOMPARE(bench.edit()->isEnabled(), access == ORVALIS_ACCESS_READ_WRITE);
        const Calls expected{"OrvalisGetNodeInfo(h1, \"Node\")",
                             "OrvalisGetNode" + call.toStdString() + "(h1, \"Node\")"};
        QCOMPARE(fakeorvalis::calls(), expected);
        QCOMPARE(bench.window.events, QStringList());
    }
}

void XMLCtrlReadTest::failedReadKeepsTheTextAndDisables_data()
{
    QTest::addColumn<fakeorvalis::Node>("node");
    QTest::addColumn<QString>("call");
    QTest::newRow("integer") << integerNode(7, 0, 9) << "OrvalisGetNodeInt";
    QTest::newRow("float") << floatNode(7, 0, 9) << "OrvalisGetNodeFloat";
    QTest::newRow("string") << stringNode("x") << "OrvalisGetNodeString";
    QTest::newRow("boolean") << booleanNode(true) << "OrvalisGetNodeBoolean";
}

void XMLCtrlReadTest::failedReadKeepsTheTextAndDisables()
{
    QFETCH(fakeorvalis::Node, node);
    QFETCH(QString, call);
    setOnlyNode("Node", node);
    DockBench bench;
    bench.edit()->setText("before");
    fakeorvalis::fail(call.toStdString());
    bench.click("Node");
    QCOMPARE(panelOf(bench), QString("value"));
    QCOMPARE(bench.edit()->text(), QString("before"));
    QVERIFY(!bench.edit()->isEnabled());
    fakeorvalis::fail(call.toStdString(), 0);
    bench.click("Node");
    QVERIFY(bench.edit()->isEnabled());
    QVERIFY(bench.edit()->text() != "before");
}

void XMLCtrlReadTest::integersAreShownByName_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");
    const int address = static_cast<int>(3232235777U);
    QTest::newRow("GevSCDA") << address << "192.168.1.1";
    QTest::newRow("GevPersistentIPAddress") << address << "192.168.1.1";
    QTest::newRow("PersistentX") << 0 << "0.0.0.0";
    QTest::newRow("XPersistent") << -1 << "255.255.255.255";
    QTest::newRow("GevSCDAx") << address << "-1062731519";
    QTest::newRow("gevscda") << 5 << "5";
    QTest::newRow("persistent") << 5 << "5";
}

void XMLCtrlReadTest::integersAreShownByName()
{
    QFETCH(int, value);
    setOnlyNode(QTest::currentDataTag(), integerNode(value, INT32_MIN, INT32_MAX));
    DockBench bench;
    bench.click(QTest::currentDataTag());
    QTEST(bench.edit()->text(), "text");
}

void XMLCtrlReadTest::categoriesHideThePanel()
{
    setOnlyNode("Gain", integerNode(1, 0, 2));
    DockBench bench;
    bench.click("Gain");
    bench.click("Top", true);
    QCOMPARE(panelOf(bench), QString("nothing"));
    QVERIFY(bench.edit()->isEnabled());
    QCOMPARE(callsMade(), QStringList{"OrvalisGetNodeInfo(h1, \"Top\")"});
}

void XMLCtrlReadTest::nodesOfOtherTypesHideThePanel_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {-1, 0, 2, 8, 9, 1000, INT32_MAX, INT32_MIN})
        QTest::addRow("%d", type) << type;
}

void XMLCtrlReadTest::nodesOfOtherTypesHideThePanel()
{
    QFETCH(int, type);
    fakeorvalis::Node node = withAccess(integerNode(1, 0, 2), readOnly);
    node.type = type;
    setOnlyNode("Odd", node);
    DockBench bench;
    bench.dock->HideShowXMLCtrl(1, false);
    bench.click("Odd");
    QCOMPARE(panelOf(bench), QString("nothing"));
    QVERIFY(bench.edit()->isEnabled());
}

void XMLCtrlReadTest::failedNodeInfoHidesThePanel()
{
    setOnlyNode("Gain", integerNode(1, 0, 2));
    DockBench bench;
    bench.click("Gain");
    fakeorvalis::fail("OrvalisGetNodeInfo");
    bench.click("Gain", true);
    QCOMPARE(panelOf(bench), QString("nothing"));
    QCOMPARE(callsMade(), QStringList{"OrvalisGetNodeInfo(h1, \"Gain\")"});
    bench.forget();
    bench.dock->HideShowXMLCtrl(1, true); // so that the field can have the focus
    bench.type("1");                      // the current node has no type now: nothing to write
    QCOMPARE(callsMade(), QStringList());
    QCOMPARE(bench.window.events, QStringList{"feature"});
}

void XMLCtrlReadTest::enumerationFillsTheCombo_data()
{
    QTest::addColumn<int>("access");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<int>("index");
    QTest::newRow("first, read-write") << 4 << "Off" << 0;
    QTest::newRow("last, read-write") << 4 << "Continuous" << 2;
    QTest::newRow("read-only") << 3 << "Once" << 1;
}

void XMLCtrlReadTest::enumerationFillsTheCombo()
{
    QFETCH(int, access);
    QFETCH(QString, entry);
    const auto node = enumNode({"Off", "Once", "Continuous"}, entry.toStdString());
    setOnlyNode("GainAuto", withAccess(node, access));
    DockBench bench;
    bench.combo()->addItem("leftover");
    bench.click("GainAuto", true);
    QCOMPARE(panelOf(bench), QString("enumeration"));
    QCOMPARE(bench.combo()->isEditable(), access == 4);
    QCOMPARE(bench.combo()->isEnabled(), access == 4);
    QCOMPARE(bench.combo()->count(), 3);
    QCOMPARE(bench.combo()->itemText(2), QString("Continuous"));
    QCOMPARE(bench.combo()->currentText(), entry);
    QTEST(bench.combo()->currentIndex(), "index");
    const Calls expected{"OrvalisGetNodeInfo(h1, \"GainAuto\")",
                         "OrvalisGetNodeEnum(h1, \"GainAuto\")"};
    QCOMPARE(fakeorvalis::calls(), expected);
    QCOMPARE(bench.window.events, QStringList());
}

void XMLCtrlReadTest::failedEnumerationLeavesAnEmptyCombo()
{
    setOnlyNode("GainAuto", enumNode({"Off", "Once"}, "Once"));
    DockBench bench;
    bench.click("GainAuto");
    QVERIFY(bench.combo()->isEditable());
    fakeorvalis::fail("OrvalisGetNodeEnum");
    bench.click("GainAuto");
    QCOMPARE(bench.combo()->count(), 0);
    QVERIFY(!bench.combo()->isEditable());
    QCOMPARE(panelOf(bench), QString("enumeration"));
}

void XMLCtrlReadTest::longEntryNamesKeepTheDocksWidth()
{
    setOnlyNode("GainAuto", enumNode({std::string(250, 'W')}, std::string(250, 'W')));
    DockBench bench;
    bench.click("GainAuto");
    QCoreApplication::processEvents();
    QCOMPARE(bench.dock->width(), 300);
    QVERIFY(bench.combo()->geometry().right() < 300);
}

void XMLCtrlReadTest::commandsNeedReadWrite_data()
{
    QTest::addColumn<bool>("usable");
    for (int access = 0; access <= 5; ++access)
        QTest::addRow("%d", access) << (access == 4);
}

void XMLCtrlReadTest::commandsNeedReadWrite()
{
    setOnlyNode("UserSetSave", withAccess(commandNode(), atoi(QTest::currentDataTag())));
    DockBench bench;
    bench.click("UserSetSave", true);
    QCOMPARE(panelOf(bench), QString("command"));
    QTEST(bench.button()->isEnabled(), "usable");
    QCOMPARE(callsMade(), QStringList{"OrvalisGetNodeInfo(h1, \"UserSetSave\")"});
}

void XMLCtrlReadTest::clickOnAnOldTreeIsIgnored()
{
    setOnlyNode("Gain", integerNode(1, 0, 2));
    DockBench bench;
    const QModelIndex old = bench.indexOf("Gain");
    bench.dock->DeleteXMLTree();
    bench.dock->on_treeXML_clicked(old);
    bench.dock->CreateXMLTree(bench.handle);
    bench.forget();
    bench.combo()->addItem("of another model");
    bench.dock->on_treeXML_clicked(bench.combo()->model()->index(0, 0));
    QCOMPARE(callsMade(), QStringList());
    QCOMPARE(panelOf(bench), QString("nothing"));
}

void XMLCtrlReadTest::clickWithoutCameraKeepsTheCurrentNode()
{
    setOnlyNode("Width", integerNode(1, 0, 2));
    DockBench bench;
    bench.click("Width");
    const QModelIndex other = bench.indexOf("Top");
    bench.dock->DeleteXMLTree();
    bench.dock->on_treeXML_clicked(other);
    bench.dock->UpdateAcqState(true); // still "Width"
    QVERIFY(!bench.edit()->isEnabled());
    QCOMPARE(callsMade(), QStringList());
}

void XMLCtrlReadTest::nodesThatLockWhileAcquiring_data()
{
    QTest::addColumn<bool>("locks");
    for (const char *name :
         {"Width", "Height", "OffsetX", "OffsetY", "PixelFormat", "AcquisigionFrameRateAbs"})
        QTest::newRow(name) << true;
    for (const char *name : {"Widths", "width", "AcquisitionFrameRateAbs", "Gain", "SensorWidth"})
        QTest::newRow(name) << false;
}

void XMLCtrlReadTest::nodesThatLockWhileAcquiring()
{
    QFETCH(bool, locks);
    setOnlyNode(QTest::currentDataTag(), integerNode(1, 0, 2));
    DockBench bench;
    bench.click(QTest::currentDataTag());
    bench.dock->UpdateAcqState(true);
    QCOMPARE(bench.edit()->isEnabled(), !locks);
    QCOMPARE(bench.combo()->isEnabled(), !locks);
    QVERIFY(bench.button()->isEnabled());
    bench.dock->HideShowXMLCtrl(1, false);
    bench.dock->UpdateAcqState(false);
    QCOMPARE(bench.edit()->isEnabled(), locks);
    QCOMPARE(bench.combo()->isEnabled(), locks);
    QVERIFY(!bench.button()->isEnabled());
    QCOMPARE(callsMade(), QStringList());
}

void XMLCtrlReadTest::clickWhileAcquiringEnablesByAccess()
{
    setOnlyNode("Width", integerNode(1, 0, 2));
    DockBench bench;
    bench.click("Width");
    bench.dock->UpdateAcqState(true);
    QVERIFY(!bench.edit()->isEnabled());
    bench.click("Width");
    QVERIFY(bench.edit()->isEnabled());
}

void XMLCtrlReadTest::oneClickMakesOneReadEach()
{
    setOnlyNode("Gain", integerNode(1, 0, 2));
    DockBench bench;
    bench.click("Gain", true);
    bench.click("Gain", true);
    QCOMPARE(fakeorvalis::calls().size(), 4U);
}

void XMLCtrlReadTest::fullBuffersAreReadToTheirEnd()
{
    setOnlyNode("DeviceUserID", stringNode(std::string(255, 'u')));
    DockBench bench;
    bench.click("DeviceUserID");
    QCOMPARE(bench.edit()->text(), QString(255, 'u'));
}

ORVALIS_QTEST_MAIN(XMLCtrlReadTest)
#include "XMLCtrlReadTest.moc"
