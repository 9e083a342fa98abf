// SPDX-License-Identifier: MIT
// The panel's form: widgets, their settings, captions and slots.
#include "tests/control/PanelFixture.h"
#include "tests/support/QtTestMain.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMetaMethod>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSlider>
#include <QSpinBox>
#include <QTabWidget>

namespace {

struct IntRow {
    const char *name;
    int minimum;
    int maximum;
    int singleStep;
    int pageStep; // sliders
};

constexpr IntRow spins[] = {
    {"spiGain", 0, 240, 1, 0},
    {"spiRGain", 64, 4095, 1, 0},
    {"spiGGain", 64, 4095, 1, 0},
    {"spiBGain", 64, 4095, 1, 0},
    {"spiBlackLevel", 0, 1023, 1, 0},
    {"spiContrast", 0, 1016, 1, 0},
    {"spiHue", 0, 1016, 1, 0},
    {"spiSaturation", 0, 1023, 1, 0},
    {"spiSharp", 10, 20, 1, 0},
    {"spiAutoExp", 0, 100, 1, 0},
    {"spTriPara", 0, 255, 1, 0},
    {"spTriDelay", 0, 4000, 1, 0},
    {"spTrNoiseFilter", 0, 1023, 1, 0},
    {"spStroDelay", 0, 3900, 1, 0},
    {"spStroDuration", 250, 50000, 250, 0},
    {"spiOffsetX", 0, 99, 8, 0},
    {"spiOffsetY", 0, 99, 8, 0},
    {"spiWidth", 0, 99, 8, 0},
    {"spiHeight", 0, 99, 8, 0},
};

constexpr IntRow sliders[] = {
    {"sliGamma", 3, 10, 1, 1},         {"sliGain", 0, 240, 1, 20},
    {"sliRGain", 64, 4095, 1, 50},     {"sliGGain", 64, 4095, 1, 50},
    {"sliBGain", 64, 4095, 1, 50},     {"sliBlackLevel", 0, 1023, 1, 50},
    {"sliContrast", 0, 1016, 1, 50},   {"sliHue", 0, 1016, 1, 50},
    {"sliSaturation", 0, 1023, 1, 30}, {"sliSharp", 10, 20, 1, 2},
    {"sliAutoExp", 0, 100, 1, 10},     {"sliShutter", 50, 2'000'000, 1000, 10},
};

const std::pair<const char *, const char *> rangeLabels[] = {
    {"laGamma", "(0.3 ~ 1.0)"}, {"laGain", "(0 ~ 240)"},    {"laRGain", "(64 ~ 4095)"},
    {"laGGain", "(64 ~ 4095)"}, {"laBGain", "(64 ~ 4095)"}, {"laBlack", "(0 ~ 1023)"},
    {"laCont", "(0 ~ 1016)"},   {"laHue", "(0 ~ 1016)"},    {"laSaturation", "(0 ~ 1023)"},
    {"laSharp", "(10 ~ 20)"},   {"laAutoExp", "(0 ~ 100)"}, {"laShutter", "us (50 ~ 2000000)"},
};

const std::pair<const char *, const char *> captions[] = {
    {"Gamma", "spiGamma"},
    {"Gain", "spiGain"},
    {"RGain", "spiRGain"},
    {"GGain", "spiGGain"},
    {"BGain", "spiBGain"},
    {"BlackLevel", "spiBlackLevel"},
    {"Contrast", "spiContrast"},
    {"Hue", "spiHue"},
    {"Saturation", "spiSaturation"},
    {"Sharpness", "spiSharp"},
    {"Shutter", "spiShutter"},
    {"Auto Exp", "spiAutoExp"},
    {"WhiteBalance", "cmbWB"},
    {"Left", "spiOffsetX"},
    {"Top", "spiOffsetY"},
    {"Width", "spiWidth"},
    {"Height", "spiHeight"},
    {"Pixel Format ", "cbPixelFormat"},
    {"Frame Rate", "spiFrameRate"},
    {"Mode", "cmbTriMode"},
    {"Source", "cmbTriSource"},
    {"Polarity", "cmbTriPol"},
    {"Parameter", "spTriPara"},
    {"Delay", "spTriDelay"},
    {"Noise Filter", "spTrNoiseFilter"},
    {"Mode", "cmbStroMode"},
    {"Polarity", "cmbStroPol"},
    {"Delay", "spStroDelay"},
    {"Duration", "spStroDuration"},
    {"User Set", "cmbUserSet"},
    {"Save Path", "edSavePath"},
    {"Save Extension", "cmbSaveExt"},
    {"Save Count", "radioSaveOnce"},
};

const std::pair<const char *, const char *> buttons[] = {
    {"chkGain", "Auto"},
    {"chkShutter", "Auto"},
    {"btnWBDefault", "Feature Default"},
    {"btnROIApply", "Apply"},
    {"btnROIMax", "Maximize"},
    {"chkTriEnabled", "Enable"},
    {"btnApply", "Apply"},
    {"btnRunSWTri", "Fire Trigger"},
    {"chkStroEnabled", "Enable"},
    {"btnUserSetLoad", "Load"},
    {"btnUserSetSave", "Save"},
    {"btnUserSetPW", "Set Power On Default"},
    {"btnSaveBrowser", ""},
    {"radioSaveOnce", "Once"},
    {"radioSaveAll", "All"},
};

} // namespace

class CameraCtrlFormTest : public QObject {
    Q_OBJECT

private slots:
    void everySlotIsConnectedByName();
    void parentMayBeAnything();
    void tabsAreNamedAndTitled_data();
    void tabsAreNamedAndTitled();
    void spinBoxesAreSet_data();
    void spinBoxesAreSet();
    void slidersAreSet_data();
    void slidersAreSet();
    void floatingPointBoxesAreSet();
    void shutterBoxIsSet();
    void rangeLabelsHaveTheirTexts_data();
    void rangeLabelsHaveTheirTexts();
    void strobeAndTriggerRangesAreShown_data();
    void strobeAndTriggerRangesAreShown();
    void captionsBelongToTheirControls_data();
    void captionsBelongToTheirControls();
    void buttonsHaveTheirTexts_data();
    void buttonsHaveTheirTexts();
    void combosExist_data();
    void combosExist();
    void groupsAreTitled_data();
    void groupsAreTitled();
    void browseButtonHasItsIcon();
    void hiddenControls();
    void previewLabelHasABoxFrame();
    void metaObjectKeepsItsOrder();
    void everyControlHasAToolTipAndAName();
};

void CameraCtrlFormTest::everySlotIsConnectedByName()
{
    viewertest::takeWarnings();
    const Panel panel; // Qt warns about a slot without a signal
    QCOMPARE(viewertest::takeWarnings(), QStringList());
    QCOMPARE(panel.panel.windowTitle(), QString("Camera Control"));
    QVERIFY(fakeorvalis::calls().empty());
}

void CameraCtrlFormTest::parentMayBeAnything()
{
    fakeorvalis::reset();
    {
        CameraCtrl orphan(nullptr);
        orphan.findChild<QPushButton *>("btnROIApply")->click();
    }
    QWidget plain;
    CameraCtrl child(&plain);
    child.findChild<QPushButton *>("btnRunSWTri")->click();
    QCOMPARE(fakeorvalis::calls().back(), std::string("OrvalisRunSoftwareTrigger(null)"));
}

void CameraCtrlFormTest::tabsAreNamedAndTitled_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    QTest::newRow("feature") << 0 << "tabFeature"
                             << "Feature Setting";
    QTest::newRow("video") << 1 << "tabVideo"
                           << "Video Modes";
    QTest::newRow("trigger") << 2 << "tabTrigger"
                             << "Trigger&&Stobe";
    QTest::newRow("miscellaneous") << 3 << "tabMISC"
                                   << "Miscellaneous";
}

void CameraCtrlFormTest::tabsAreNamedAndTitled()
{
    QFETCH(int, index);
    const Panel panel;
    const auto *tabs = panel.find<QTabWidget>("tabWidget");
    QCOMPARE(tabs->count(), 4);
    QTEST(tabs->widget(index)->objectName(), "name");
    QTEST(tabs->tabText(index), "title");
    QVERIFY(tabs->widget(index)->findChild<QScrollArea *>() != nullptr);
}

void CameraCtrlFormTest::spinBoxesAreSet_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < static_cast<int>(std::size(spins)); ++row)
        QTest::newRow(spins[row].name) << row;
}

void CameraCtrlFormTest::spinBoxesAreSet()
{
    QFETCH(int, row);
    const Panel panel;
    const auto *spin = panel.find<QSpinBox>(spins[row].name);
    QVERIFY(spin != nullptr);
    QCOMPARE(spin->minimum(), spins[row].minimum);
    QCOMPARE(spin->maximum(), spins[row].maximum);
    QCOMPARE(spin->singleStep(), spins[row].singleStep);
    QVERIFY(spin->keyboardTracking());
}

void CameraCtrlFormTest::slidersAreSet_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < static_cast<int>(std::size(sliders)); ++row)
        QTest::newRow(sliders[row].name) << row;
}

void CameraCtrlFormTest::slidersAreSet()
{
    QFETCH(int, row);
    const Panel panel;
    const auto *slider = panel.find<QSlider>(sliders[row].name);
    QVERIFY(slider != nullptr);
    QCOMPARE(slider->orientation(), Qt::Horizontal);
    QCOMPARE(slider->minimum(), sliders[row].minimum);
    QCOMPARE(slider->maximum(), sliders[row].maximum);
    QCOMPARE(slider->singleStep(), sliders[row].singleStep);
    QCOMPARE(slider->pageStep(), sliders[row].pageStep);
}

void CameraCtrlFormTest::floatingPointBoxesAreSet()
{
    const Panel panel;
    const auto *gamma = panel.find<QDoubleSpinBox>("spiGamma");
    QCOMPARE(gamma->decimals(), 1);
    QCOMPARE(gamma->minimum(), 0.3);
    QCOMPARE(gamma->maximum(), 1.0);
    QCOMPARE(gamma->singleStep(), 0.1);
    const auto *rate = panel.find<QDoubleSpinBox>("spiFrameRate");
    QCOMPARE(rate->decimals(), 1);
    QCOMPARE(rate->singleStep(), 1.0);
}

void CameraCtrlFormTest::shutterBoxIsSet()
{
    const Panel panel;
    const auto *shutter = panel.find<QAbstractSpinBox>("spiShutter");
    QCOMPARE(shutter->metaObject()->className(), "QLongLongSpinBox");
    QVERIFY(!shutter->keyboardTracking());
}

void CameraCtrlFormTest::rangeLabelsHaveTheirTexts_data()
{
    QTest::addColumn<QString>("text");
    for (const auto &[name, text] : rangeLabels)
        QTest::newRow(name) << QString(text);
}

void CameraCtrlFormTest::rangeLabelsHaveTheirTexts()
{
    const Panel panel;
    const auto *label = panel.find<QLabel>(QTest::currentDataTag());
    QVERIFY(label != nullptr);
    QTEST(label->text(), "text");
}

void CameraCtrlFormTest::strobeAndTriggerRangesAreShown_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"(0 ~ 4000 us)", "(0 ~ 3900 us)", "(250 ~ 50000 us)"})
        QTest::newRow(text) << QString(text);
}

void CameraCtrlFormTest::strobeAndTriggerRangesAreShown()
{
    QFETCH(QString, text);
    const Panel panel;
    const auto labels = panel.find<QWidget>("tabTrigger")->findChildren<QLabel *>();
    QCOMPARE(std::count_if(labels.begin(), labels.end(),
                           [&](const QLabel *label) { return label->text() == text; }),
             1);
}

void CameraCtrlFormTest::captionsBelongToTheirControls_data()
{
    QTest::addColumn<QString>("caption");
    for (const auto &[caption, control] : captions)
        QTest::newRow(control) << QString(caption);
}

void CameraCtrlFormTest::captionsBelongToTheirControls()
{
    const Panel panel;
    const auto *control = panel.find<QWidget>(QTest::currentDataTag());
    QVERIFY(control != nullptr);
    QStringList texts;
    for (const QLabel *label : panel.panel.findChildren<QLabel *>()) {
        if (label->buddy() == control)
            texts << label->text();
    }
    QFETCH(QString, caption);
    QCOMPARE(texts, QStringList(caption));
}

void CameraCtrlFormTest::buttonsHaveTheirTexts_data()
{
    QTest::addColumn<QString>("text");
    for (const auto &[name, text] : buttons)
        QTest::newRow(name) << QString(text);
}

void CameraCtrlFormTest::buttonsHaveTheirTexts()
{
    const Panel panel;
    const QByteArray name = QTest::currentDataTag();
    const auto *button = panel.find<QAbstractButton>(name);
    QVERIFY(button != nullptr);
    QTEST(button->text(), "text");
    QCOMPARE(qobject_cast<const QCheckBox *>(button) != nullptr, name.startsWith("chk"));
    QCOMPARE(qobject_cast<const QPushButton *>(button) != nullptr, name.startsWith("btn"));
    QCOMPARE(qobject_cast<const QRadioButton *>(button) != nullptr, name.startsWith("radio"));
}

void CameraCtrlFormTest::combosExist_data()
{
    QTest::addColumn<int>("unused");
    for (const char *name : {"cmbWB", "cbPixelFormat", "cmbTriMode", "cmbTriSource", "cmbTriPol",
                             "cmbStroMode", "cmbStroPol", "cmbUserSet", "cmbSaveExt"})
        QTest::newRow(name) << 0;
}

void CameraCtrlFormTest::combosExist()
{
    const Panel panel;
    const auto *combo = panel.find<QComboBox>(QTest::currentDataTag());
    QVERIFY(combo != nullptr);
    QCOMPARE(combo->count(), 0);
    QVERIFY(!combo->isEditable());
}

void CameraCtrlFormTest::groupsAreTitled_data()
{
    QTest::addColumn<QString>("child");
    QTest::newRow(" Image ") << "laROI";
    QTest::newRow("Trigger") << "chkTriEnabled";
    QTest::newRow("Software Trigger") << "btnRunSWTri";
    QTest::newRow("Strobe") << "chkStroEnabled";
    QTest::newRow("Save Option") << "edSavePath";
}

void CameraCtrlFormTest::groupsAreTitled()
{
    QFETCH(QString, child);
    const Panel panel;
    const auto *group =
        qobject_cast<QGroupBox *>(panel.panel.findChild<QWidget *>(child)->parentWidget());
    QVERIFY(group != nullptr);
    QCOMPARE(group->title(), QString(QTest::currentDataTag()));
}

void CameraCtrlFormTest::browseButtonHasItsIcon()
{
    const Panel panel;
    QVERIFY(!panel.find<QPushButton>("btnSaveBrowser")->icon().pixmap(20, 20).isNull());
}

void CameraCtrlFormTest::hiddenControls()
{
    const Panel panel;
    for (const char *name : {"sliShutter", "radioSaveAll"})
        QVERIFY(panel.find<QWidget>(name)->isHidden());
    QVERIFY(!panel.find<QWidget>("radioSaveOnce")->isHidden());
    QVERIFY(panel.find<QRadioButton>("radioSaveOnce")->isChecked());
}

void CameraCtrlFormTest::previewLabelHasABoxFrame()
{
    const Panel panel;
    const auto *label = panel.find<QLabel>("laROI");
    QCOMPARE(label->metaObject()->className(), "RoiLabelView");
    QCOMPARE(label->frameStyle(), 1);
    QCOMPARE(label->frameShape(), QFrame::Box);
    QCOMPARE(label->text(), QString(" Image "));
}

void CameraCtrlFormTest::metaObjectKeepsItsOrder()
{
    const QMetaObject &meta = CameraCtrl::staticMetaObject;
    const char *const expected[] = {"sigHideRubberBand()",
                                    "loadFeatureValue(bool)",
                                    "loadTriggerValue()",
                                    "loadStrobeValue()",
                                    "loadVideoInfo()",
                                    "loadUserSet()",
                                    "slotCurrentPoint(QPoint,QPoint)"};
    int index = meta.methodOffset();
    for (const char *signature : expected)
        QCOMPARE(meta.method(index++).methodSignature(), QByteArray(signature));
    for (; index < meta.methodCount(); ++index)
        QVERIFY(meta.method(index).name().startsWith("on_"));
    QCOMPARE(meta.indexOfMethod("loadConfigurationValue(void*)"), -1);
}

void CameraCtrlFormTest::everyControlHasAToolTipAndAName()
{
    const Panel panel;
    QWidgetList controls;
    for (QAbstractSpinBox *control : panel.panel.findChildren<QAbstractSpinBox *>())
        controls << control;
    for (QSlider *control : panel.panel.findChildren<QSlider *>())
        controls << control;
    for (QComboBox *control : panel.panel.findChildren<QComboBox *>())
        controls << control;
    for (const auto &[name, text] : buttons)
        controls << panel.find<QWidget>(name);
    QVERIFY(controls.size() > 55);
    for (const QWidget *control : controls) {
        QVERIFY2(!control->toolTip().isEmpty(), qPrintable(control->objectName()));
        QVERIFY2(!control->accessibleName().isEmpty(), qPrintable(control->objectName()));
    }
}

ORVALIS_QTEST_MAIN(CameraCtrlFormTest)
#include "CameraCtrlFormTest.moc"
