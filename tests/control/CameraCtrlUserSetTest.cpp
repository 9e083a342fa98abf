// SPDX-License-Identifier: MIT
// User sets, and passing a camera to the panel.
#include "tests/control/PanelFixture.h"
#include "tests/support/QtTestMain.h"

#include <QPushButton>
#include <QSpinBox>

class CameraCtrlUserSetTest : public QObject {
    Q_OBJECT

private slots:
    void loadReadsInOrder();
    void loadSelectsThePowerOnDefault();
    void failedListKeepsTheOldItems();
    void failedDefaultSelectsNothing();
    void staleTextIsStillSent();
    void setsAreComparedExactly();
    void saveSelectsThenSaves_data();
    void saveSelectsThenSaves();
    void powerOnDefaultIsSent_data();
    void powerOnDefaultIsSent();
    void loadButton_data();
    void loadButton();
    void tabsAreReloadedInOrder();
    void nullKeepsTheCamera();
    void releasedCameraIsNotUsed();
};

void CameraCtrlUserSetTest::loadReadsInOrder()
{
    Panel panel;
    panel.openCamera();
    panel.panel.loadUserSet();
    QCOMPARE(panel.log(), (QStringList{"OrvalisGetNodeEnum(h1, \"UserSetSelector\")",
                                       "OrvalisGetNodeString(h1, \"UserSetDefaultSelector\")"}));
    QCOMPARE(panel.items("cmbUserSet"),
             (QStringList{"Default", "UserSet1", "UserSet2", "UserSet3"}));
}

void CameraCtrlUserSetTest::loadSelectsThePowerOnDefault()
{
    Panel panel;
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.nodes["UserSetDefaultSelector"].text = "UserSet2";
        state.nodes["UserSetSelector"].text = "UserSet3";
    });
    panel.openCamera();
    QCOMPARE(panel.find<QComboBox>("cmbUserSet")->currentText(), QString("UserSet2"));
}

void CameraCtrlUserSetTest::failedListKeepsTheOldItems()
{
    Panel panel;
    panel.openCamera();
    fakeorvalis::withState([](fakeorvalis::State &state) { state.nodes.erase("UserSetSelector"); });
    panel.panel.loadUserSet();
    QCOMPARE(panel.items("cmbUserSet").size(), 4);
}

void CameraCtrlUserSetTest::failedDefaultSelectsNothing()
{
    Panel panel;
    panel.openCamera();
    panel.find<QComboBox>("cmbUserSet")->setCurrentIndex(2);
    fakeorvalis::fail("OrvalisGetNodeString");
    fakeorvalis::fail("OrvalisGetNodeEnum");
    panel.panel.loadUserSet();
    QCOMPARE(panel.find<QComboBox>("cmbUserSet")->currentIndex(), 2);
    fakeorvalis::fail("OrvalisGetNodeEnum", 0);
    panel.panel.loadUserSet();
    QCOMPARE(panel.find<QComboBox>("cmbUserSet")->currentIndex(), 0);
}

void CameraCtrlUserSetTest::staleTextIsStillSent()
{
    Panel panel;
    panel.openCamera();
    fakeorvalis::fail("OrvalisGetNodeEnum");
    panel.panel.loadUserSet();
    panel.forget();
    panel.find<QPushButton>("btnUserSetPW")->click();
    QCOMPARE(panel.log(),
             QStringList("OrvalisSetNodeEnum(h1, \"UserSetDefaultSelector\", \"Default\")"));
    for (const char *button : {"btnUserSetSave", "btnUserSetLoad"}) {
        panel.forget();
        panel.find<QPushButton>(button)->click();
        QCOMPARE(panel.log().first(),
                 QString("OrvalisSetNodeEnum(h1, \"UserSetSelector\", \"Default\")"));
    }
}

void CameraCtrlUserSetTest::setsAreComparedExactly()
{
    Panel panel;
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.nodes["UserSetSelector"].entries = {"userset1", "UserSet1 ", "UserSet10",
                                                  "UserSet",  "UserSet1",  "UserSet1"};
        state.nodes["UserSetDefaultSelector"].text = "UserSet1";
    });
    panel.openCamera();
    QCOMPARE(panel.find<QComboBox>("cmbUserSet")->currentIndex(), 4);
}

void CameraCtrlUserSetTest::saveSelectsThenSaves_data()
{
    QTest::addColumn<bool>("refused");
    QTest::newRow("accepted") << false;
    QTest::newRow("refused") << true;
}

void CameraCtrlUserSetTest::saveSelectsThenSaves()
{
    QFETCH(bool, refused);
    Panel panel;
    panel.openCamera();
    panel.window.streaming = true;
    panel.find<QComboBox>("cmbUserSet")->setCurrentText("UserSet1");
    fakeorvalis::failAll(refused);
    panel.find<QPushButton>("btnUserSetSave")->click();
    fakeorvalis::failAll(false);
    QCOMPARE(panel.log(), (QStringList{"OrvalisSetNodeEnum(h1, \"UserSetSelector\", \"UserSet1\")",
                                       "OrvalisSetNodeCommand(h1, \"UserSetSave\")"}));
}

void CameraCtrlUserSetTest::powerOnDefaultIsSent_data() { saveSelectsThenSaves_data(); }

void CameraCtrlUserSetTest::powerOnDefaultIsSent()
{
    QFETCH(bool, refused);
    Panel panel;
    panel.openCamera();
    panel.window.streaming = true;
    panel.find<QComboBox>("cmbUserSet")->setCurrentText("UserSet3");
    fakeorvalis::failAll(refused);
    panel.find<QPushButton>("btnUserSetPW")->click();
    fakeorvalis::failAll(false);
    QCOMPARE(panel.log(),
             QStringList("OrvalisSetNodeEnum(h1, \"UserSetDefaultSelector\", \"UserSet3\")"));
}

void CameraCtrlUserSetTest::loadButton_data() { addStreamingAndRefusedRows(); }

void CameraCtrlUserSetTest::loadButton()
{
    QFETCH(bool, streaming);
    QFETCH(bool, refused);
    Panel panel;
    panel.openCamera();
    panel.window.streaming = streaming;
    panel.find<QComboBox>("cmbUserSet")->setCurrentText("UserSet2");
    if (refused)
        fakeorvalis::fail("OrvalisSetNodeCommand");
    panel.find<QPushButton>("btnUserSetLoad")->click();
    QStringList log = panel.log();
    if (streaming) {
        QCOMPARE(log.takeFirst(), QString("stop"));
        QCOMPARE(log.takeLast(), QString("start"));
    }
    QVERIFY(!log.contains("start"));
    QCOMPARE(log.takeFirst(), QString("OrvalisSetNodeEnum(h1, \"UserSetSelector\", \"UserSet2\")"));
    QCOMPARE(log.takeFirst(), QString("OrvalisSetNodeCommand(h1, \"UserSetLoad\")"));
    QCOMPARE(log.isEmpty(), refused);
}

void CameraCtrlUserSetTest::tabsAreReloadedInOrder()
{
    Panel panel;
    panel.openCamera();
    panel.choose("cbPixelFormat", "BayerGR12");
    QVERIFY(panel.items("cmbSaveExt").contains("TIF"));
    panel.forget();
    panel.find<QPushButton>("btnUserSetLoad")->click();
    const QStringList names = panel.functions();
    int last = -1;
    for (const char *first :
         {"OrvalisGetTriggerEnable", "OrvalisGetStrobeEnable", "OrvalisGetGammaMinMax",
          "OrvalisGetSizeInfo", "OrvalisGetNodeEnum"}) {
        const int index = names.indexOf(first);
        QVERIFY2(index > last, first);
        last = index;
    }
    // The save options load last: their list replaces that of the pixel format.
    QCOMPARE(panel.items("cmbSaveExt"), (QStringList{"BMP", "JPG", "PNG", "RAW", "RGB"}));
}

void CameraCtrlUserSetTest::nullKeepsTheCamera()
{
    Panel panel;
    panel.openCamera();
    panel.panel.loadConfigurationValue(nullptr);
    QVERIFY(!panel.log().isEmpty());
    for (const QString &call : panel.log())
        QVERIFY2(call.contains("(h1"), qPrintable(call));
}

void CameraCtrlUserSetTest::releasedCameraIsNotUsed()
{
    Panel panel;
    panel.openCamera();
    panel.panel.releaseCamera();
    panel.panel.loadConfigurationValue(nullptr);
    QCOMPARE(panel.log(), QStringList());
}

ORVALIS_QTEST_MAIN(CameraCtrlUserSetTest)
#include "CameraCtrlUserSetTest.moc"
