// SPDX-License-Identifier: MIT
// The feature dock's value field: keypad Enter writes it and emits signals for related settings.
#include "tests/tree/DockBench.h"

class XMLCtrlWriteTest : public QObject {
    Q_OBJECT

private slots:
    void init() { fakeorvalis::reset(); }
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void returnWritesNothing();
    void keypadEnterOutsideTheFieldIsSwallowed();
    void otherKeysArePassedOn();
    void keypadEnterWrites_data();
    void keypadEnterWrites();
    void integersAreClamped_data();
    void integersAreClamped();
    void floatsAreClamped_data();
    void floatsAreClamped();
    void failedBoundsWriteZero_data();
    void failedBoundsWriteZero();
    void failedWriteDisplaysTheCamerasValue_data();
    void failedWriteDisplaysTheCamerasValue();
    void failedReadBackDisplaysZero_data();
    void failedReadBackDisplaysZero();
    void booleansAreWritten_data();
    void booleansAreWritten();
    void stringsAreCutToLatin1();
    void otherTypesWriteNothingButAnnounce_data();
    void otherTypesWriteNothingButAnnounce();
    void keypadEnterAnnounces_data();
    void keypadEnterAnnounces();
    void emitsAfterTheReadBack();
    void writesWithoutCameraAreHarmless_data();
    void writesWithoutCameraAreHarmless();
    void clickFromAReceiverKeepsTheSignals();
};

void XMLCtrlWriteTest::returnWritesNothing()
{
    setOnlyNode("Gain", integerNode(1, 0, 9));
    DockBench bench;
    bench.click("Gain");
    bench.type("5", Qt::Key_Return);
    QCOMPARE(callsMade(), QStringList());
    QCOMPARE(bench.window.events, QStringList());
    QCOMPARE(bench.edit()->text(), QString("5"));
}

void XMLCtrlWriteTest::keypadEnterOutsideTheFieldIsSwallowed()
{
    setOnlyNode("Gain", integerNode(1, 0, 9));
    DockBench bench;
    bench.click("Gain");
    bench.tree()->setFocus();
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Enter, Qt::KeypadModifier);
    QCoreApplication::sendEvent(bench.tree(), &enter);
    QVERIFY(enter.isAccepted());
    QCOMPARE(callsMade(), QStringList());
    QCOMPARE(bench.window.events, QStringList());
}

void XMLCtrlWriteTest::otherKeysArePassedOn()
{
    setOnlyNode("Gain", integerNode(1, 0, 9));
    DockBench bench;
    bench.click("Gain");
    bench.edit()->setFocus();
    for (const int key : {int(Qt::Key_Return), int(Qt::Key_F5), int(Qt::Key_Escape)}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        event.accept();
        bench.dock->keyPressEvent(&event);
        QVERIFY(!event.isAccepted());
    }
    QCOMPARE(callsMade(), QStringList());
}

void XMLCtrlWriteTest::keypadEnterWrites_data()
{
    QTest::addColumn<fakeorvalis::Node>("node");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *tag, const fakeorvalis::Node &node, const char *typed,
                        const char *shown, const QStringList &calls) {
        QTest::newRow(tag) << node << typed << shown << calls;
    };
    row("integer", integerNode(1, 0, 4095), "17", "17",
        {"OrvalisGetNodeInt(h1, \"Node\")", "OrvalisSetNodeInt(h1, \"Node\", 17)",
         "OrvalisGetNodeInt(h1, \"Node\")"});
    row("float", floatNode(1, 0, 10), "2.5", "2.5",
        {"OrvalisGetNodeFloat(h1, \"Node\")", "OrvalisSetNodeFloat(h1, \"Node\", 2.5)",
         "OrvalisGetNodeFloat(h1, \"Node\")"});
    row("string", stringNode("old"), "new one", "new one",
        {"OrvalisSetNodeString(h1, \"Node\", \"new one\")", "OrvalisGetNodeString(h1, \"Node\")"});
    row("boolean", booleanNode(false), "1", "1",
        {"OrvalisSetNodeBoolean(h1, \"Node\", true)", "OrvalisGetNodeBoolean(h1, \"Node\")"});
}

void XMLCtrlWriteTest::keypadEnterWrites()
{
    QFETCH(fakeorvalis::Node, node);
    QFETCH(QString, typed);
    QFETCH(QStringList, expected);
    setOnlyNode("Node", node);
    DockBench bench;
    bench.click("Node");
    bench.type(typed);
    QTEST(bench.edit()->text(), "shown");
    QCOMPARE(callsMade(), expected);
}

void XMLCtrlWriteTest::integersAreClamped_data()
{
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("written");
    const auto row = [](const char *tag, int minimum, int maximum, const char *typed,
                        const char *written) {
        QTest::newRow(tag) << minimum << maximum << typed << written;
    };
    row("above", 0, 4095, "5000", "4095");
    row("below", 10, 20, "-3", "10");
    row("inside", 0, 4095, "4094", "4094");
    row("no number", 1, 10, "abc", "1");
    row("empty", 0, 10, "", "0");
    row("blanks around", 0, 10, " 7 ", "7");
    row("hexadecimal is no number", 0, 99, "0x10", "0");
    row("float is no number", 0, 99, "7.9", "0");
    row("beyond 32 bits is no number", 0, 99, "5000000000", "0");
    row("largest", INT32_MIN, INT32_MAX, "2147483647", "2147483647");
    row("smallest", INT32_MIN, INT32_MAX, "-2147483648", "-2147483648");
    row("bounds crossed: the minimum wins", 20, 10, "15", "20");
}

void XMLCtrlWriteTest::integersAreClamped()
{
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(QString, typed);
    QFETCH(QString, written);
    setOnlyNode("Node", integerNode(minimum, minimum, maximum));
    DockBench bench;
    bench.click("Node");
    bench.type(typed);
    QCOMPARE(fakeorvalis::callsOf({"OrvalisSetNodeInt"}),
             Calls{"OrvalisSetNodeInt(h1, \"Node\", " + written.toStdString() + ")"});
}

void XMLCtrlWriteTest::floatsAreClamped_data()
{
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("written");
    const auto row = [](const char *tag, double minimum, double maximum, const char *typed,
                        const char *written) {
        QTest::newRow(tag) << minimum << maximum << typed << written;
    };
    row("above", 1, 10, "11.5", "10");
    row("below", 1, 10, "0.5", "1");
    row("no number", 1, 10, "abc", "1");
    row("empty", -1, 1, "", "0");
    row("exponent", 0, 1000, "1e2", "100");
    row("infinite", 0, 10, "inf", "10");
    row("minus infinite", -2, 10, "-inf", "-2");
    row("nan is no number", 1, 10, "nan", "1");
    row("decimal comma is no number", 0, 10, "2,5", "0");
    row("bounds crossed: the minimum wins", 20, 10, "15", "20");
}

void XMLCtrlWriteTest::floatsAreClamped()
{
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(QString, typed);
    QFETCH(QString, written);
    setOnlyNode("Node", floatNode(minimum, minimum, maximum));
    DockBench bench;
    bench.click("Node");
    bench.type(typed);
    QCOMPARE(fakeorvalis::callsOf({"OrvalisSetNodeFloat"}),
             Calls{"OrvalisSetNodeFloat(h1, \"Node\", " + written.toStdString() + ")"});
}

void XMLCtrlWriteTest::failedBoundsWriteZero_data()
{
    QTest::addColumn<fakeorvalis::Node>("node");
    QTest::addColumn<QString>("type");
    QTest::newRow("integer") << integerNode(5, 1, 9) << "Int";
    QTest::newRow("float") << floatNode(5, 1, 9) << "Float";
}

void XMLCtrlWriteTest::failedBoundsWriteZero()
{
    QFETCH(fakeorvalis::Node, node);
    QFETCH(QString, type);
    setOnlyNode("Node", node);
    DockBench bench;
    bench.click("Node");
    fakeorvalis::fail("OrvalisGetNode" + type.toStdString());
    bench.type("7");
    const std::string setter = "OrvalisSetNode" + type.toStdString();
    QCOMPARE(fakeorvalis::callsOf({setter}), Calls{setter + "(h1, \"Node\", 0)"});
    QCOMPARE(bench.edit()->text(), QString("0"));
}

void XMLCtrlWriteTest::failedWriteDisplaysTheCamerasValue_data()
{
    QTest::addColumn<fakeorvalis::Node>("node");
    QTest::addColumn<QString>("setter");
    QTest::addColumn<QString>("shown");
    QTest::newRow("integer") << integerNode(5, 1, 9) << "OrvalisSetNodeInt"
                             << "5";
    QTest::newRow("float") << floatNode(5.5, 1, 9) << "OrvalisSetNodeFloat"
                           << "5.5";
    QTest::newRow("string") << stringNode("kept") << "OrvalisSetNodeString"
                            << "kept";
    QTest::newRow("boolean") << booleanNode(false) << "OrvalisSetNodeBoolean"
                             << "0";
}

void XMLCtrlWriteTest::failedWriteDisplaysTheCamerasValue()
{
    QFETCH(fakeorvalis::Node, node);
    QFETCH(QString, setter);
    setOnlyNode("Node", node);
    DockBench bench;
    bench.click("Node");
    fakeorvalis::fail(setter.toStdString());
    bench.type("7");
    QTEST(bench.edit()->text(), "shown");
    QCOMPARE(fakeorvalis::callsOf({setter.toStdString()}).size(), 1U);
}

void XMLCtrlWriteTest::failedReadBackDisplaysZero_data()
{
    QTest::addColumn<fakeorvalis::Node>("node");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("shown");
    QTest::newRow("string") << stringNode("old") << "String"
                            << "new"
                            << "";
    QTest::newRow("boolean") << booleanNode(false) << "Boolean"
                             << "1"
                             << "0";
}

/// A failing read leaves its buffer unchanged: zero.
void XMLCtrlWriteTest::failedReadBackDisplaysZero()
{
    QFETCH(fakeorvalis::Node, node);
    QFETCH(QString, type);
    QFETCH(QString, typed);
    setOnlyNode("Node", node);
    DockBench bench;
    bench.click("Node");
    fakeorvalis::fail("OrvalisGetNode" + type.toStdString());
    bench.type(typed);
    QTEST(bench.edit()->text(), "shown");
    QCOMPARE(fakeorvalis::callsOf({"OrvalisSetNode" + type.toStdString()}).size(), 1U);
    QVERIFY(bench.edit()->isEnabled());
}

void XMLCtrlWriteTest::booleansAreWritten_data()
{
    QTest::addColumn<bool>("written");
    QTest::newRow("1") << true;
    QTest::newRow("2") << true;
    QTest::newRow("-1") << true;
    QTest::newRow("0") << false;
    QTest::newRow("") << false;
    QTest::newRow("true") << false;
    QTest::newRow("abc") << false;
    QTest::newRow("1.5") << false;
}

void XMLCtrlWriteTest::booleansAreWritten()
{
    QFETCH(bool, written);
    setOnlyNode("Node", booleanNode(!written));
    DockBench bench;
    bench.click("Node");
    bench.type(QTest::currentDataTag());
    QCOMPARE(bench.edit()->text(), QString(written ? "1" : "0"));
    const std::string flag = written ? "true" : "false";
    QCOMPARE(fakeorvalis::callsOf({"OrvalisSetNodeBoolean"}),
             Calls{"OrvalisSetNodeBoolean(h1, \"Node\", " + flag + ")"});
}

void XMLCtrlWriteTest::stringsAreCutToLatin1()
{
    setOnlyNode("Node", stringNode(""));
    DockBench bench;
    bench.click("Node");
    bench.type(QStringLiteral("Köln €"));
    QCOMPARE(bench.edit()->text(), QStringLiteral("Köln ?"));
}

void XMLCtrlWriteTest::otherTypesWriteNothingButAnnounce_data()
{
    QTest::addColumn<fakeorvalis::Node>("node");
    QTest::newRow("enumeration") << enumNode({"Off"}, "Off");
    QTest::newRow("command") << commandNode();
    fakeorvalis::Node category;
    category.type = ORVALIS_NODE_CATEGORY;
    QTest::newRow("category") << category;
    QTest::newRow("value") << fakeorvalis::Node{};
}

void XMLCtrlWriteTest::otherTypesWriteNothingButAnnounce()
{
    QFETCH(fakeorvalis::Node, node);
    setOnlyNode("GainTrigger", node);
    DockBench bench;
    bench.click("GainTrigger");
    bench.dock->HideShowXMLCtrl(1, true); // so that the field can have the focus
    bench.type("untouched");
    QCOMPARE(callsMade(), QStringList());
    const QStringList expected{"feature", "trigger"};
    QCOMPARE(bench.window.events, expected);
    QCOMPARE(bench.edit()->text(), QString("untouched"));
}

void XMLCtrlWriteTest::keypadEnterAnnounces_data()
{
    QTest::addColumn<QStringList>("events");
    const auto row = [](const char *name, const QStringList &events) {
        QTest::newRow(name) << events;
    };
    for (const char *name : {"Gamma", "Gain", "GainRaw", "BlackLevel", "Contrast", "Hue",
                             "Saturation", "Sharpness", "ExposureTime", "AutoExposure", "GammaHue"})
        row(name, {"feature"});
    for (const char *name :
         {"Width", "Height", "OffsetX", "OffsetY", "AcquisitionFrameRate", "SensorWidth"})
        row(name, {"video"});
    row("TriggerDelay", {"trigger"});
    row("Timer1Delay", {"strobe"});
    row("UserSetName", {"userset"});
    row("ExposureTimeTrigger", {"feature", "trigger"});
    row("WidthUserSetTimerTriggerGain", {"feature", "trigger", "strobe", "userset", "video"});
    for (const char *name : {"PixelFormat", "ExposureMode", "BalanceWhite", "gain", "ExposureAuto",
                             "AcquisitionFrameCount", "DeviceUserID"})
        row(name, {});
}

void XMLCtrlWriteTest::keypadEnterAnnounces()
{
    setOnlyNode(QTest::currentDataTag(), integerNode(1, 0, 9));
    DockBench bench;
    bench.click(QTest::currentDataTag());
    bench.type("3");
    QTEST(bench.window.events, "events");
}

void XMLCtrlWriteTest::emitsAfterTheReadBack()
{
    setOnlyNode("Gain", integerNode(1, 0, 9));
    DockBench bench;
    bench.click("Gain");
    noteCall(bench, "OrvalisGetNodeInt");
    noteCall(bench, "OrvalisSetNodeInt");
    bench.type("3");
    const QStringList expected{"OrvalisGetNodeInt", "OrvalisSetNodeInt", "OrvalisGetNodeInt",
                               "feature"};
    QCOMPARE(bench.window.events, expected);
}

void XMLCtrlWriteTest::writesWithoutCameraAreHarmless_data()
{
    QTest::addColumn<fakeorvalis::Node>("node");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("integer") << integerNode(5, 1, 9)
                             << QStringList{"OrvalisGetNodeInt(null, \"Gain\")",
                                            "OrvalisSetNodeInt(null, \"Gain\", 0)",
                                            "OrvalisGetNodeInt(null, \"Gain\")"};
    QTest::newRow("float") << floatNode(5, 1, 9)
                           << QStringList{"OrvalisGetNodeFloat(null, \"Gain\")",
                                          "OrvalisSetNodeFloat(null, \"Gain\", 0)",
                                          "OrvalisGetNodeFloat(null, \"Gain\")"};
    QTest::newRow("string") << stringNode("a")
                            << QStringList{"OrvalisSetNodeString(null, \"Gain\", \"7\")",
                                           "OrvalisGetNodeString(null, \"Gain\")"};
    QTest::newRow("boolean") << booleanNode(true)
                             << QStringList{"OrvalisSetNodeBoolean(null, \"Gain\", true)",
                                            "OrvalisGetNodeBoolean(null, \"Gain\")"};
}

void XMLCtrlWriteTest::writesWithoutCameraAreHarmless()
{
    QFETCH(fakeorvalis::Node, node);
    QFETCH(QStringList, expected);
    setOnlyNode("Gain", node);
    DockBench bench;
    bench.click("Gain");
    bench.dock->DeleteXMLTree();
    bench.type("7");
    bench.dock->on_cmbXMLValue_activated("x");
    bench.dock->on_btnXMLExcute_clicked();
    expected += QStringList{"OrvalisSetNodeString(null, \"Gain\", \"x\")",
                            "OrvalisSetNodeCommand(null, \"Gain\")"};
    QCOMPARE(callsMade(), expected);
    QCOMPARE(bench.window.events, QStringList{"feature"});
}

void XMLCtrlWriteTest::clickFromAReceiverKeepsTheSignals()
{
    setOnlyNode("GainTrigger", integerNode(5, 1, 9));
    DockBench bench;
    bench.click("GainTrigger");
    connect(bench.dock, &XMLCtrl::sigUpdateFeatureInfo, this,
            [&bench] { bench.dock->on_treeXML_clicked(bench.indexOf("Top")); });
    bench.type("3");
    const QStringList expected{"feature", "trigger"};
    QCOMPARE(bench.window.events, expected);
}

ORVALIS_QTEST_MAIN(XMLCtrlWriteTest)
#include "XMLCtrlWriteTest.moc"
