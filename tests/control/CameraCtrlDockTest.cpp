// SPDX-License-Identifier: MIT
// The panel as a dock: width, keys, mouse wheel, and no camera.
#include "tests/control/PanelFixture.h"
#include "tests/support/QtTestMain.h"

#include <QKeyEvent>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QWheelEvent>

class CameraCtrlDockTest : public QObject {
    Q_OBJECT

private slots:
    void nothingIsCutOffAtItsOwnWidth_data();
    void nothingIsCutOffAtItsOwnWidth();
    void aNarrowerPanelScrolls_data();
    void aNarrowerPanelScrolls();
    void keypadEnterIsSwallowed();
    void otherKeysArePassedOn_data();
    void otherKeysArePassedOn();
    void wheelNeedsTheFocus_data();
    void wheelNeedsTheFocus();
    void loadingWithoutACameraChangesNothing();
};

namespace {

void addTabs()
{
    QTest::addColumn<int>("index");
    const char *const names[] = {"tabFeature", "tabVideo", "tabTrigger", "tabMISC"};
    for (int index = 0; index < 4; ++index)
        QTest::newRow(names[index]) << index;
}

/// Texts on the current tab that are truncated.
QStringList cutOff(const QTabWidget &tabs)
{
    QStringList texts;
    for (const QLabel *label : tabs.currentWidget()->findChildren<QLabel *>()) {
        if (label->isVisible() && label->pixmap(Qt::ReturnByValue).isNull() &&
            label->width() < label->sizeHint().width())
            texts << label->text();
    }
    return texts;
}

} // namespace

void CameraCtrlDockTest::nothingIsCutOffAtItsOwnWidth_data() { addTabs(); }

void CameraCtrlDockTest::nothingIsCutOffAtItsOwnWidth()
{
    QFETCH(int, index);
    Panel panel;
    panel.openCamera();
    panel.panel.setFloating(true);
    panel.panel.resize(panel.panel.sizeHint().width(), 700);
    panel.panel.show();
    auto *tabs = panel.find<QTabWidget>("tabWidget");
    tabs->setCurrentIndex(index);
    QCoreApplication::processEvents();
    QVERIFY(tabs->tabBar()->width() >= tabs->tabBar()->sizeHint().width());
    QCOMPARE(cutOff(*tabs), QStringList());
    const auto *area = tabs->currentWidget()->findChild<QScrollArea *>();
    QVERIFY(area->widget()->width() <= area->viewport()->width());
}

void CameraCtrlDockTest::aNarrowerPanelScrolls_data() { addTabs(); }

void CameraCtrlDockTest::aNarrowerPanelScrolls()
{
    QFETCH(int, index);
    Panel panel;
    panel.openCamera();
    panel.panel.setFloating(true);
    panel.panel.resize(300, 300);
    panel.panel.show();
    QCOMPARE(panel.panel.size(), QSize(300, 300));
    auto *tabs = panel.find<QTabWidget>("tabWidget");
    tabs->setCurrentIndex(index);
    QCoreApplication::processEvents();
    QCOMPARE(cutOff(*tabs), QStringList());
    const auto *area = tabs->currentWidget()->findChild<QScrollArea *>();
    QCOMPARE(area->horizontalScrollBar()->maximum(),
             area->widget()->width() - area->viewport()->width());
}

void CameraCtrlDockTest::keypadEnterIsSwallowed()
{
    Panel panel;
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Enter, Qt::KeypadModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&panel.panel, &enter);
    QVERIFY(enter.isAccepted());
}

void CameraCtrlDockTest::otherKeysArePassedOn_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int{Qt::Key_Return};
    QTest::newRow("A") << int{Qt::Key_A};
    QTest::newRow("F5") << int{Qt::Key_F5};
}

void CameraCtrlDockTest::otherKeysArePassedOn()
{
    QFETCH(int, key);
    Panel panel;
    QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&panel.panel, &event);
    QVERIFY(!event.isAccepted());
}

void CameraCtrlDockTest::wheelNeedsTheFocus_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<int>("tab");
    QTest::newRow("spiContrast") << "value" << 0;
    QTest::newRow("sliContrast") << "value" << 0;
    QTest::newRow("spiShutter") << "value" << 0;
    QTest::newRow("cbPixelFormat") << "currentIndex" << 1;
}

void CameraCtrlDockTest::wheelNeedsTheFocus()
{
    QFETCH(QString, property);
    QFETCH(int, tab);
    Panel panel;
    panel.openCamera();
    panel.window.resize(600, 600);
    panel.panel.resize(600, 600);
    panel.window.show();
    panel.find<QTabWidget>("tabWidget")->setCurrentIndex(tab);
    auto *control = panel.find<QWidget>(QTest::currentDataTag());
    const auto turnTheWheel = [&] {
        QWheelEvent event(QPointF(5, 5), control->mapToGlobal(QPoint(5, 5)), QPoint(),
                          QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(control, &event);
    };
    const QVariant before = control->property(qPrintable(property));
    control->clearFocus();
    turnTheWheel();
    QCOMPARE(control->property(qPrintable(property)), before);
    QCOMPARE(panel.log(), QStringList());
    QApplication::setActiveWindow(&panel.window);
    control->setFocus();
    QVERIFY(control->hasFocus());
    turnTheWheel();
    QVERIFY(control->property(qPrintable(property)) != before);
}

void CameraCtrlDockTest::loadingWithoutACameraChangesNothing()
{
    Panel panel;
    panel.panel.loadFeatureValue(true);
    panel.panel.loadTriggerValue();
    panel.panel.loadStrobeValue();
    panel.panel.loadVideoInfo();
    panel.panel.loadUserSet();
    QCOMPARE(panel.log(), QStringList());
    QCOMPARE(panel.find<QSpinBox>("spiGain")->maximum(), 240);
    QCOMPARE(panel.find<QLabel>("laShutter")->text(), QString("us (50 ~ 2000000)"));
    QCOMPARE(panel.items("cmbWB"), QStringList());
}

ORVALIS_QTEST_MAIN(CameraCtrlDockTest)
#include "CameraCtrlDockTest.moc"
