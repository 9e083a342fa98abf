// SPDX-License-Identifier: MIT
// Disabled texts are readable and borders visible with any colours of the desktop.
#include "app/Appearance.h"
#include "tests/support/QtTestMain.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QProxyStyle>
#include <QStyle>

class AppearanceTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void contrastFollowsTheGuidelines();
    void disabledTextsAreReadable_data();
    void disabledTextsAreReadable();
    void readableTextsStayUnchanged();
    void checkBoxesAreVisibleOnDarkColours_data();
    void checkBoxesAreVisibleOnDarkColours();
    void coloursFollowTheDesktop();
};

namespace {

QPalette coloured(const QColor &background, const QColor &text, const QColor &disabled)
{
    QPalette colours(background);
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button})
        colours.setColor(role, background);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        colours.setColor(role, text);
        colours.setColor(QPalette::Disabled, role, disabled);
    }
    return colours;
}

} // namespace

void AppearanceTest::contrastFollowsTheGuidelines()
{
    QCOMPARE(contrastOf(Qt::black, Qt::white), 21.0);
    QCOMPARE(contrastOf(Qt::white, Qt::black), 21.0);
    QCOMPARE(contrastOf(Qt::red, Qt::red), 1.0);
    QVERIFY(qAbs(contrastOf(QColor(0x76, 0x76, 0x76), Qt::white) - 4.54) < 0.01);
}

void AppearanceTest::disabledTextsAreReadable_data()
{
    QTest::addColumn<QColor>("background");
    QTest::addColumn<QColor>("text");
    QTest::addColumn<QColor>("disabled");
    QTest::newRow("light") << QColor(0xef, 0xef, 0xef) << QColor(Qt::black)
                           << QColor(0xbe, 0xbe, 0xbe);
    QTest::newRow("dark") << QColor(0x2b, 0x2b, 0x2b) << QColor(Qt::white)
                          << QColor(0x55, 0x55, 0x55);
    QTest::newRow("same as the background")
        << QColor(Qt::black) << QColor(Qt::white) << QColor(Qt::black);
}

void AppearanceTest::disabledTextsAreReadable()
{
    QFETCH(QColor, background);
    QFETCH(QColor, text);
    QFETCH(QColor, disabled);
    const QPalette colours = withReadableDisabledTexts(coloured(background, text, disabled));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        const QColor corrected = colours.color(QPalette::Disabled, role);
        QVERIFY(contrastOf(corrected, background) >= 3.5);
        QVERIFY(contrastOf(corrected, background) < contrastOf(text, background) / 2);
        QCOMPARE(colours.color(QPalette::Active, role), text);
    }
}

void AppearanceTest::readableTextsStayUnchanged()
{
    const QPalette colours = coloured(Qt::black, Qt::white, Qt::green);
    QCOMPARE(withReadableDisabledTexts(colours), colours);
}

void AppearanceTest::checkBoxesAreVisibleOnDarkColours_data()
{
    QTest::addColumn<QColor>("background");
    QTest::newRow("dark") << QColor(0x2b, 0x2b, 0x2b);
    QTest::newRow("black") << QColor(Qt::black);
}

void AppearanceTest::checkBoxesAreVisibleOnDarkColours()
{
    QFETCH(QColor, background);
    applyAppearance();
    QCheckBox box;
    box.setPalette(coloured(background, Qt::white, Qt::gray));
    box.resize(box.sizeHint());
    const QImage drawn = box.grab().toImage();
    double most = 1;
    for (int x = 0; x < drawn.width(); ++x)
        most = qMax(most, contrastOf(drawn.pixelColor(x, drawn.height() / 2), background));
    QVERIFY2(most >= 2.9, qPrintable(QString::number(most))); // antialiasing reduces it below 3
}

namespace {

/// A style with the colours of a desktop, which `dark` changes.
class DesktopStyle : public QProxyStyle {
public:
    DesktopStyle() : QProxyStyle(QStringLiteral("fusion")) { setObjectName("desktop"); }
    using QProxyStyle::polish;
    void polish(QPalette &colours) override
    {
        colours = dark ? coloured(QColor(0x20, 0x20, 0x20), Qt::white, QColor(0x30, 0x30, 0x30))
                       : coloured(QColor(0xef, 0xef, 0xef), Qt::black, QColor(0xe0, 0xe0, 0xe0));
    }
    bool dark = false;
};

void compareWithDesktop(const QColor &text, const QColor &background)
{
    const QPalette colours = QWidget().palette();
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        QCOMPARE(colours.color(QPalette::Active, role), text);
        QVERIFY(contrastOf(colours.color(QPalette::Disabled, role), background) >= 3.5);
    }
    QCOMPARE(colours.color(QPalette::Window), background);
}

} // namespace

void AppearanceTest::coloursFollowTheDesktop()
{
    auto *desktop = new DesktopStyle;
    QApplication::setStyle(desktop);
    applyAppearance();
    compareWithDesktop(Qt::black, QColor(0xef, 0xef, 0xef));
    desktop->dark = true;
    QApplication::setPalette(QApplication::palette()); // as Qt does when the desktop changes
    compareWithDesktop(Qt::white, QColor(0x20, 0x20, 0x20));
    desktop->dark = false;
    QApplication::setPalette(QApplication::palette());
    compareWithDesktop(Qt::black, QColor(0xef, 0xef, 0xef));
}

ORVALIS_QTEST_MAIN(AppearanceTest)
#include "AppearanceTest.moc"
