// SPDX-License-Identifier: MIT
// Trigger and strobe: every call, its arguments and its order.
#include "tests/control/PanelFixture.h"
#include "tests/support/QtTestMain.h"

#include <QCheckBox>
#include <QPushButton>
#include <QSpinBox>

namespace {

QStringList listCalls(const char *plural, const char *current, int count)
{
    QStringList calls(QString("OrvalisGetNumAvailable%1(h1)").arg(plural));
    for (int index = 0; index < count; ++index)
        calls << QString("OrvalisGetAvailable%1IdxToStr(h1, %2)").arg(plural).arg(index);
    return calls << QString("OrvalisGet%1Str(h1)").arg(current);
}

struct ComboRow {
    const char *combo;
    const char *list;
    const char *choice;
};

constexpr ComboRow combos[] = {
    {"cmbTriMode", "TriggerMode", "FrameBurstStart"}, {"cmbTriSource", "TriggerSource", "Line0"},
    {"cmbTriPol", "TriggerPolarity", "FallingEdge"},  {"cmbStroMode", "StrobeMode", "FixedPulse"},
    {"cmbStroPol", "StrobePolarity", "ActiveLow"},
};

struct SpinRow {
    const char *spin;
    const char *feature;
    int value;
};

constexpr SpinRow spins[] = {
    {"spTriPara", "TriggerParameter", 7},         {"spTriDelay", "TriggerDelay", 1234},
    {"spTrNoiseFilter", "TriggerNoiseFilter", 9}, {"spStroDelay", "StrobeDelay", 99},
    {"spStroDuration", "StrobeDuration", 2500},
};

} // namespace

class CameraCtrlTriggerTest : public QObject {
    Q_OBJECT

private slots:
    void triggerLoadReadsInOrder();
    void strobeLoadReadsInOrder();
    void loadShowsTheCamerasValues();
    void loadSendsChangedNumbersBack();
    void unreadNumbersStayAndAreNotSent();
    void listsSelectTheExactEntry_data();
    void listsSelectTheExactEntry();
    void unlistedEntrySelectsNothing_data();
    void unlistedEntrySelectsNothing();
    void emptyListSendsNothing();
    void chosenEntryIsSent_data();
    void chosenEntryIsSent();
    void numbersAreSentAtOnce_data();
    void numbersAreSentAtOnce();
    void switchesAreSentAtOnce_data();
    void switchesAreSentAtOnce();
    void applySendsTheTriggerInOrder_data();
    void applySendsTheTriggerInOrder();
    void applyOfEmptyListsSendsEmptyNames();
    void softwareTriggerResetsTheCountFirst_data();
    void softwareTriggerResetsTheCountFirst();
};

void CameraCtrlTriggerTest::triggerLoadReadsInOrder()
{
    Panel panel;
    panel.openCamera();
    panel.panel.loadTriggerValue();
    QStringList expected("OrvalisGetTriggerEnable(h1)");
    expected += listCalls("TriggerSources", "TriggerSource", 3);
    expected << "OrvalisGetTriggerParameter(h1)";
    expected += listCalls("TriggerModes", "TriggerMode", 2);
    expected += listCalls("TriggerPolaritys", "TriggerPolarity", 2);
    expected << "OrvalisGetTriggerDelay(h1)"
             << "OrvalisGetTriggerNoiseFilter(h1)";
    QCOMPARE(panel.log(), expected);
}

void CameraCtrlTriggerTest::strobeLoadReadsInOrder()
{
    Panel panel;
    panel.openCamera();
    panel.panel.loadStrobeValue();
    QStringList expected("OrvalisGetStrobeEnable(h1)");
    expected += listCalls("StrobeModes", "StrobeMode", 3);
    expected += listCalls("StrobePolaritys", "StrobePolarity", 2);
    expected << "OrvalisGetStrobeDelay(h1)"
             << "OrvalisGetStrobeDuration(h1)";
    QCOMPARE(panel.log(), expected);
}

void CameraCtrlTriggerTest::loadShowsTheCamerasValues()
{
    Panel panel;
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.switches = {{"TriggerEnable", true}, {"StrobeEnable", true}};
        for (const SpinRow &row : spins)
            state.integers[row.feature].value = row.value;
        for (const ComboRow &row : combos)
            state.lists[row.list].current = row.choice;
    });
    panel.openCamera();
    QVERIFY(panel.find<QCheckBox>("chkTriEnabled")->isChecked());
    QVERIFY(panel.find<QCheckBox>("chkStroEnabled")->isChecked());
    for (const SpinRow &row : spins)
        QCOMPARE(panel.find<QSpinBox>(row.spin)->value(), row.value);
    for (const ComboRow &row : combos)
        QCOMPARE(panel.find<QComboBox>(row.combo)->currentText(), QString(row.choice));
}

void CameraCtrlTriggerTest::loadSendsChangedNumbersBack()
{
    Panel panel;
    panel.openCamera();
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.integers["TriggerDelay"].value = 55;
        state.lists["TriggerMode"].current = "FrameBurstStart";
        state.switches["TriggerEnable"] = true;
    });
    panel.panel.loadTriggerValue();
    QCOMPARE(panel.sent(), QStringList("OrvalisSetTriggerDelay(h1, 55)"));
}

void CameraCtrlTriggerTest::unreadNumbersStayAndAreNotSent()
{
    Panel panel;
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.switches = {{"TriggerEnable", true}, {"StrobeEnable", true}};
        for (const SpinRow &row : spins)
            state.integers[row.feature].value = row.value;
    });
    panel.openCamera();
    fakeorvalis::failAll(true);
    panel.panel.loadTriggerValue();
    panel.panel.loadStrobeValue();
    QVERIFY(panel.find<QCheckBox>("chkTriEnabled")->isChecked());
    QVERIFY(panel.find<QCheckBox>("chkStroEnabled")->isChecked());
    for (const SpinRow &row : spins)
        QCOMPARE(panel.find<QSpinBox>(row.spin)->value(), row.value);
    for (const ComboRow &row : combos)
        QCOMPARE(panel.items(row.combo), QStringList());
    QCOMPARE(panel.sent(), QStringList());
}

void CameraCtrlTriggerTest::listsSelectTheExactEntry_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < static_cast<int>(std::size(combos)); ++row)
        QTest::newRow(combos[row].combo) << row;
}

void CameraCtrlTriggerTest::listsSelectTheExactEntry()
{
    QFETCH(int, row);
    Panel panel;
    fakeorvalis::withState([=](fakeorvalis::State &state) {
        state.lists[combos[row].list] = {{"abc", "ABC ", "\xC4\xD6", "ABC", "ABC"}, "ABC"};
    });
    panel.openCamera();
    QCOMPARE(panel.find<QComboBox>(combos[row].combo)->currentIndex(), 3);
    QCOMPARE(panel.items(combos[row].combo).at(2), QString::fromLatin1("\xC4\xD6"));
}

void CameraCtrlTriggerTest::unlistedEntrySelectsNothing_data() { listsSelectTheExactEntry_data(); }

void CameraCtrlTriggerTest::unlistedEntrySelectsNothing()
{
    QFETCH(int, row);
    Panel panel;
    fakeorvalis::withState(
        [=](fakeorvalis::State &state) { state.lists[combos[row].list].current = "Unheard"; });
    panel.openCamera();
    QCOMPARE(panel.find<QComboBox>(combos[row].combo)->currentIndex(), 0);
}

void CameraCtrlTriggerTest::emptyListSendsNothing()
{
    Panel panel;
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.lists["TriggerSource"] = {{}, ""};
    });
    OrvalisOpenCamera("CAM-A", &panel.handle);
    panel.panel.loadConfigurationValue(panel.handle);
    QCOMPARE(panel.items("cmbTriSource"), QStringList());
    QVERIFY(!panel.functions().contains("OrvalisSetTriggerSourceStr"));
    QVERIFY(!panel.functions().contains("OrvalisGetAvailableTriggerSourcesIdxToStr"));
}

void CameraCtrlTriggerTest::chosenEntryIsSent_data() { listsSelectTheExactEntry_data(); }

void CameraCtrlTriggerTest::chosenEntryIsSent()
{
    QFETCH(int, row);
    Panel panel;
    panel.openCamera();
    panel.find<QComboBox>(combos[row].combo)->setCurrentText(combos[row].choice);
    QCOMPARE(panel.log(), QStringList()); // only changes by the user are sent
    panel.choose(combos[row].combo, combos[row].choice);
    QCOMPARE(
        panel.log(),
        QStringList(
            QString("OrvalisSet%1Str(h1, \"%2\")").arg(combos[row].list).arg(combos[row].choice)));
}

void CameraCtrlTriggerTest::numbersAreSentAtOnce_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < static_cast<int>(std::size(spins)); ++row)
        QTest::newRow(spins[row].spin) << row;
}

void CameraCtrlTriggerTest::numbersAreSentAtOnce()
{
    QFETCH(int, row);
    Panel panel;
    panel.openCamera();
    panel.find<QSpinBox>(spins[row].spin)->setValue(spins[row].value);
    const QString call =
        QString("OrvalisSet%1(h1, %2)").arg(spins[row].feature).arg(spins[row].value);
    QCOMPARE(panel.log(), QStringList(call));
    fakeorvalis::fail(std::string("OrvalisSet") + spins[row].feature);
    panel.find<QSpinBox>(spins[row].spin)->stepUp();
    QCOMPARE(panel.log().size(), 2);
    QVERIFY(panel.find<QSpinBox>(spins[row].spin)->value() > spins[row].value);
}

void CameraCtrlTriggerTest::switchesAreSentAtOnce_data()
{
    QTest::addColumn<QString>("function");
    QTest::newRow("chkTriEnabled") << "OrvalisSetTriggerEnable";
    QTest::newRow("chkStroEnabled") << "OrvalisSetStrobeEnable";
}

void CameraCtrlTriggerTest::switchesAreSentAtOnce()
{
    QFETCH(QString, function);
    Panel panel;
    panel.openCamera();
    auto *box = panel.find<QCheckBox>(QTest::currentDataTag());
    box->setChecked(true);
    QCOMPARE(panel.log(), QStringList());
    box->click();
    box->click();
    QCOMPARE(panel.log(), (QStringList{function + "(h1, false)", function + "(h1, true)"}));
}

void CameraCtrlTriggerTest::applySendsTheTriggerInOrder_data()
{
    QTest::addColumn<bool>("refused");
    QTest::newRow("accepted") << false;
    QTest::newRow("refused") << true;
}

void CameraCtrlTriggerTest::applySendsTheTriggerInOrder()
{
    QFETCH(bool, refused);
    Panel panel;
    panel.openCamera();
    panel.find<QCheckBox>("chkTriEnabled")->setChecked(true);
    panel.find<QComboBox>("cmbTriSource")->setCurrentText("Line1");
    panel.find<QComboBox>("cmbTriPol")->setCurrentText("FallingEdge");
    fakeorvalis::failAll(refused);
    panel.find<QPushButton>("btnApply")->click();
    fakeorvalis::failAll(false);
    QCOMPARE(panel.log(),
             (QStringList{"OrvalisSetTriggerEnable(h1, true)", "OrvalisSetTriggerParameter(h1, 1)",
                          "OrvalisSetTriggerModeStr(h1, \"FrameStart\")",
                          "OrvalisSetTriggerSourceStr(h1, \"Line1\")",
                          "OrvalisSetTriggerPolarityStr(h1, \"FallingEdge\")"}));
}

void CameraCtrlTriggerTest::applyOfEmptyListsSendsEmptyNames()
{
    Panel panel;
    panel.openUnloaded();
    panel.find<QPushButton>("btnApply")->click();
    QCOMPARE(panel.log().size(), 5);
    QCOMPARE(panel.log().last(), QString("OrvalisSetTriggerPolarityStr(h1, \"\")"));
}

void CameraCtrlTriggerTest::softwareTriggerResetsTheCountFirst_data()
{
    applySendsTheTriggerInOrder_data();
}

void CameraCtrlTriggerTest::softwareTriggerResetsTheCountFirst()
{
    QFETCH(bool, refused);
    Panel panel;
    panel.openCamera();
    if (refused)
        fakeorvalis::fail("OrvalisRunSoftwareTrigger");
    panel.find<QPushButton>("btnRunSWTri")->click();
    QCOMPARE(panel.log(), (QStringList{"reset", "OrvalisRunSoftwareTrigger(h1)"}));
}

ORVALIS_QTEST_MAIN(CameraCtrlTriggerTest)
#include "CameraCtrlTriggerTest.moc"
