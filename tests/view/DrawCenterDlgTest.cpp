// SPDX-License-Identifier: MIT
// The dialog of the centre cross: its form and the values it reports.
#include "view/DrawCenterDlg.h"
#include "tests/support/QtTestMain.h"

#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QSpinBox>

class DrawCenterDlgTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }
    void formIsAsDesigned();
    void applyReportsTheDefaults();
    void applyReportsWidthAndColor_data();
    void applyReportsWidthAndColor();
    void widthStaysWithinItsRange_data();
    void widthStaysWithinItsRange();
    void otherIndexIsRed();
    void nothingIsReportedWithoutApply();
    void applyKeepsTheDialogOpen();
    void returnApplies();
    void escapeHides();
    void nothingIsCutOff_data();
    void nothingIsCutOff();
};

void DrawCenterDlgTest::formIsAsDesigned()
{
    const DrawCenterDlg dialog(nullptr);
    QCOMPARE(dialog.windowTitle(), QString("Draw Center"));
    QCOMPARE(dialog.minimumSize(), QSize(340, 90));
    QCOMPARE(dialog.maximumSize(), QSize(340, 90));
    QStringList labels, colors;
    for (const QLabel *label : dialog.findChildren<QLabel *>(QString(), Qt::FindDirectChildrenOnly))
        labels.append(label->text());
    const auto *combo = dialog.findChild<QComboBox *>();
    for (int i = 0; i < combo->count(); ++i)
        colors.append(combo->itemText(i));
    const QStringList expectedLabels{"Line Width : ", "Line Color :"};
    const QStringList expectedColors{"Black", "White", "Red", "Green", "Blue"};
    QCOMPARE(labels, expectedLabels);
    QCOMPARE(colors, expectedColors);
    QCOMPARE(combo->currentIndex(), 2);
    const auto *spin = dialog.findChild<QSpinBox *>();
    QCOMPARE(spin->minimum(), 1);
    QCOMPARE(spin->maximum(), 50);
    QCOMPARE(spin->value(), 2);
    QCOMPARE(dialog.findChild<QPushButton *>("btnApply")->text(), QString("Apply"));
}

void DrawCenterDlgTest::applyReportsTheDefaults()
{
    DrawCenterDlg dialog(nullptr);
    QSignalSpy applied(&dialog, &DrawCenterDlg::sigValueApply);
    dialog.findChild<QPushButton *>("btnApply")->click();
    QCOMPARE(applied.count(), 1);
    QCOMPARE(applied[0][0].toInt(), 2);
    QCOMPARE(applied[0][1].value<QColor>(), QColor(Qt::red));
}

void DrawCenterDlgTest::applyReportsWidthAndColor_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("width");
    QTest::addColumn<QColor>("color");
    QTest::newRow("Black") << 0 << 1 << QColor(Qt::black);
    QTest::newRow("White") << 1 << 50 << QColor(Qt::white);
    QTest::newRow("Red") << 2 << 2 << QColor(Qt::red);
    QTest::newRow("Green") << 3 << 3 << QColor(Qt::green);
    QTest::newRow("Blue") << 4 << 49 << QColor(Qt::blue);
}

void DrawCenterDlgTest::applyReportsWidthAndColor()
{
    QFETCH(int, index);
    QFETCH(int, width);
    DrawCenterDlg dialog(nullptr);
    QSignalSpy applied(&dialog, &DrawCenterDlg::sigValueApply);
    dialog.findChild<QComboBox *>()->setCurrentIndex(index);
    dialog.findChild<QSpinBox *>()->setValue(width);
    dialog.findChild<QPushButton *>("btnApply")->click();
    QCOMPARE(applied.count(), 1);
    QCOMPARE(applied[0][0].toInt(), width);
    QTEST(applied[0][1].value<QColor>(), "color");
}

void DrawCenterDlgTest::widthStaysWithinItsRange_data()
{
    QTest::addColumn<int>("asked");
    QTest::addColumn<int>("held");
    QTest::newRow("0") << 0 << 1;
    QTest::newRow("-7") << -7 << 1;
    QTest::newRow("51") << 51 << 50;
    QTest::newRow("50") << 50 << 50;
}

void DrawCenterDlgTest::widthStaysWithinItsRange()
{
    QFETCH(int, asked);
    const DrawCenterDlg dialog(nullptr);
    auto *spin = dialog.findChild<QSpinBox *>();
    spin->setValue(asked);
    QTEST(spin->value(), "held");
}

void DrawCenterDlgTest::otherIndexIsRed()
{
    DrawCenterDlg dialog(nullptr);
    QSignalSpy applied(&dialog, &DrawCenterDlg::sigValueApply);
    auto *combo = dialog.findChild<QComboBox *>();
    combo->setCurrentIndex(-1);
    dialog.on_btnApply_clicked();
    combo->addItem("Mauve");
    combo->setCurrentIndex(5);
    dialog.on_btnApply_clicked();
    QCOMPARE(applied[0][1].value<QColor>(), QColor(Qt::red));
    QCOMPARE(applied[1][1].value<QColor>(), QColor(Qt::red));
}

void DrawCenterDlgTest::nothingIsReportedWithoutApply()
{
    DrawCenterDlg dialog(nullptr);
    QSignalSpy applied(&dialog, &DrawCenterDlg::sigValueApply);
    dialog.show();
    dialog.findChild<QComboBox *>()->setCurrentIndex(0);
    dialog.findChild<QSpinBox *>()->setValue(9);
    dialog.close();
    QCOMPARE(applied.count(), 0);
}

void DrawCenterDlgTest::applyKeepsTheDialogOpen()
{
    DrawCenterDlg dialog(nullptr);
    dialog.show();
    QTest::mouseClick(dialog.findChild<QPushButton *>("btnApply"), Qt::LeftButton);
    QVERIFY(dialog.isVisible());
}

void DrawCenterDlgTest::returnApplies()
{
    DrawCenterDlg dialog(nullptr);
    QSignalSpy applied(&dialog, &DrawCenterDlg::sigValueApply);
    dialog.show();
    auto *spin = dialog.findChild<QSpinBox *>();
    spin->selectAll();
    QTest::keyClicks(spin, "12");
    QTest::keyClick(spin, Qt::Key_Return);
    QCOMPARE(applied.count(), 1);
    QCOMPARE(applied[0][0].toInt(), 12);
}

void DrawCenterDlgTest::escapeHides()
{
    DrawCenterDlg dialog(nullptr);
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(!dialog.isVisible());
}

void DrawCenterDlgTest::nothingIsCutOff_data()
{
    QTest::addColumn<int>("points");
    for (const int points : {7, 9, 11, 14, 24})
        QTest::addRow("%d pt", points) << points;
}

void DrawCenterDlgTest::nothingIsCutOff()
{
    QFETCH(int, points);
    QApplication::setFont(QFont("DejaVu Sans", points));
    DrawCenterDlg dialog(nullptr);
    dialog.show();
    QCOMPARE(dialog.size(), QSize(340, 90));
    for (const QWidget *widget :
         dialog.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
        QVERIFY2(dialog.rect().contains(widget->geometry()), widget->metaObject()->className());
        QVERIFY2(widget->width() >= widget->minimumSizeHint().width() &&
                     widget->height() >= widget->minimumSizeHint().height(),
                 widget->metaObject()->className());
    }
    QApplication::setFont(QFont());
}

ORVALIS_QTEST_MAIN(DrawCenterDlgTest)
#include "DrawCenterDlgTest.moc"
