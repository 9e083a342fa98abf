// SPDX-License-Identifier: MIT
// The 64-bit spin box, set by code and typed by the user.
#include "control/QLongLongSpinBox.h"
#include "tests/support/QtTestMain.h"

#include <QLineEdit>
#include <QSignalSpy>

#include <limits>

namespace {

constexpr qlonglong largest = std::numeric_limits<qlonglong>::max();
constexpr qlonglong smallest = std::numeric_limits<qlonglong>::min();

class Box : public QLongLongSpinBox {
public:
    using QLongLongSpinBox::lineEdit;
    using QLongLongSpinBox::QLongLongSpinBox;
    using QLongLongSpinBox::stepEnabled;

    QString shown() const { return lineEdit()->text(); }
    void type(const char *keys)
    {
        lineEdit()->selectAll();
        QTest::keyClick(this, Qt::Key_Delete);
        QTest::keyClicks(this, keys);
    }
};

} // namespace

class QLongLongSpinBoxTest : public QObject {
    Q_OBJECT

private slots:
    void startsAtZero();
    void boundsDoNotChangeTheValue();
    void setValueEmitsOnce();
    void setValueDoesNotClamp();
    void textAndValue_data();
    void textAndValue();
    void validateIsNeverIntermediate_data();
    void validateIsNeverIntermediate();
    void stepsSaturate_data();
    void stepsSaturate();
    void stepsIgnoreTheRange();
    void stepsStayEnabledAtTheBounds();
    void arrowsAndPagesStep_data();
    void arrowsAndPagesStep();
    void stepReplacesTypedText();
    void freeTypingThenReturn();
    void typingEmitsNothingBeforeReturn();
    void returnValidatesTheText_data();
    void returnValidatesTheText();
    void returnWithTheSameValueIsSilent();
    void keypadEnterValidatesToo();
    void leavingTheBoxValidatesTheText();
    void contextMenuKeepsTheText();
    void editingTheMiddleOfANumber();
};

void QLongLongSpinBoxTest::startsAtZero()
{
    const Box box;
    QCOMPARE(box.value(), 0LL);
    QCOMPARE(box.minimum(), 0LL);
    QCOMPARE(box.maximum(), 0LL);
    QCOMPARE(box.singleStep(), 0);
    QCOMPARE(box.shown(), QString("0"));
}

void QLongLongSpinBoxTest::boundsDoNotChangeTheValue()
{
    Box box;
    QSignalSpy spy(&box, &QLongLongSpinBox::valueChanged);
    box.setMinimum(100);
    box.setMaximum(200);
    QCOMPARE(box.value(), 0LL);
    box.setRange(-5, 5'000'000'000LL);
    QCOMPARE(box.minimum(), -5LL);
    QCOMPARE(box.maximum(), 5'000'000'000LL);
    QCOMPARE(spy.count(), 0);
}

void QLongLongSpinBoxTest::setValueEmitsOnce()
{
    Box box;
    QSignalSpy spy(&box, &QLongLongSpinBox::valueChanged);
    box.setValue(0);
    QCOMPARE(spy.count(), 0);
    box.setValue(6'000'000'000LL);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.first().first().toLongLong(), 6'000'000'000LL);
    QCOMPARE(box.shown(), QString("6000000000"));
    box.setValue(6'000'000'000LL);
    QCOMPARE(spy.count(), 1);
}

void QLongLongSpinBoxTest::setValueDoesNotClamp()
{
    Box box;
    box.setRange(50, 100);
    QSignalSpy spy(&box, &QLongLongSpinBox::valueChanged);
    box.setValue(101);
    QCOMPARE(box.value(), 101LL);
    box.setValue(-7);
    QCOMPARE(box.value(), -7LL);
    QCOMPARE(spy.count(), 2);
}

void QLongLongSpinBoxTest::textAndValue_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qlonglong>("value");
    QTest::newRow("zero") << "0" << 0LL;
    QTest::newRow("negative") << "-12" << -12LL;
    QTest::newRow("ungrouped") << "1234567890123" << 1'234'567'890'123LL;
    QTest::newRow("largest") << "9223372036854775807" << largest;
    QTest::newRow("smallest") << "-9223372036854775808" << smallest;
}

void QLongLongSpinBoxTest::textAndValue()
{
    QFETCH(QString, text);
    QFETCH(qlonglong, value);
    const Box box;
    QCOMPARE(box.textFromValue(value), text);
    QCOMPARE(box.valueFromText(text), value);
    QCOMPARE(box.valueFromText(text + "x"), 0LL);
}

void QLongLongSpinBoxTest::validateIsNeverIntermediate_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("acceptable");
    QTest::newRow("minimum") << "50" << true;
    QTest::newRow("maximum") << "2000000" << true;
    QTest::newRow("below") << "49" << false;
    QTest::newRow("above") << "2000001" << false;
    QTest::newRow("empty") << "" << false;
    QTest::newRow("sign") << "-" << false;
    QTest::newRow("letters") << "abc" << false;
    QTest::newRow("hexadecimal") << "0x64" << false;
    QTest::newRow("fraction") << "100.5" << false;
    QTest::newRow("grouped") << "1,000" << false;
    QTest::newRow("beyond 64 bits") << "9223372036854775808" << false;
}

void QLongLongSpinBoxTest::validateIsNeverIntermediate()
{
    QFETCH(QString, text);
    QFETCH(bool, acceptable);
    Box box;
    box.setRange(50, 2'000'000);
    int position = 0;
    QCOMPARE(box.validate(text, position),
             acceptable ? QValidator::Acceptable : QValidator::Invalid);
}

void QLongLongSpinBoxTest::stepsSaturate_data()
{
    QTest::addColumn<qlonglong>("value");
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("steps");
    QTest::addColumn<qlonglong>("after");
    QTest::newRow("up") << 100LL << 10 << 3 << 130LL;
    QTest::newRow("down") << 100LL << 10 << -3 << 70LL;
    QTest::newRow("none") << 100LL << 10 << 0 << 100LL;
    QTest::newRow("step 0") << 100LL << 0 << 5 << 100LL;
    QTest::newRow("at the top") << largest << 1 << 1 << largest;
    QTest::newRow("up to the top") << largest - 5 << 1 << 5 << largest;
    QTest::newRow("over the top") << largest - 5 << 10 << 1 << largest;
    QTest::newRow("at the bottom") << smallest << 1 << -1 << smallest;
    QTest::newRow("down to the bottom") << smallest + 5 << 1 << -5 << smallest;
    QTest::newRow("under the bottom") << smallest + 5 << 10 << -1 << smallest;
    QTest::newRow("delta wraps at 32 bits") << 0LL << 1'000'000'000 << 3 << -1'294'967'296LL;
    QTest::newRow("delta wraps to 0") << 7LL << 65536 << 65536 << 7LL;
}

void QLongLongSpinBoxTest::stepsSaturate()
{
    QFETCH(qlonglong, value);
    QFETCH(int, step);
    QFETCH(int, steps);
    QFETCH(qlonglong, after);
    Box box;
    box.setValue(value);
    box.setSingleStep(step);
    QSignalSpy spy(&box, &QLongLongSpinBox::valueChanged);
    box.stepBy(steps);
    QCOMPARE(box.value(), after);
    QCOMPARE(box.shown(), QString::number(after));
    QCOMPARE(spy.count(), value == after ? 0 : 1);
}

void QLongLongSpinBoxTest::stepsIgnoreTheRange()
{
    Box box;
    box.setRange(50, 100);
    box.setSingleStep(10);
    box.setValue(100);
    box.stepUp();
    QCOMPARE(box.value(), 110LL);
    box.setValue(50);
    box.stepDown();
    QCOMPARE(box.value(), 40LL);
}

void QLongLongSpinBoxTest::stepsStayEnabledAtTheBounds()
{
    Box box;
    const auto both = QAbstractSpinBox::StepUpEnabled | QAbstractSpinBox::StepDownEnabled;
    QCOMPARE(box.stepEnabled(), both);
    box.setRange(0, 10);
    box.setValue(10);
    QCOMPARE(box.stepEnabled(), both);
    box.setValue(largest);
    QCOMPARE(box.stepEnabled(), both);
}

void QLongLongSpinBoxTest::arrowsAndPagesStep_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<qlonglong>("after");
    QTest::newRow("up") << int{Qt::Key_Up} << 1100LL;
    QTest::newRow("down") << int{Qt::Key_Down} << 900LL;
    QTest::newRow("page up") << int{Qt::Key_PageUp} << 2000LL;
    QTest::newRow("page down") << int{Qt::Key_PageDown} << 0LL;
}

void QLongLongSpinBoxTest::arrowsAndPagesStep()
{
    QFETCH(int, key);
    Box box;
    box.setRange(500, 1500);
    box.setValue(1000);
    box.setSingleStep(100);
    QTest::keyClick(&box, static_cast<Qt::Key>(key));
    QTEST(box.value(), "after");
}

void QLongLongSpinBoxTest::stepReplacesTypedText()
{
    Box box;
    box.setRange(0, 1000);
    box.setValue(100);
    box.setSingleStep(10);
    box.type("77");
    QTest::keyClick(&box, Qt::Key_Up);
    QCOMPARE(box.value(), 110LL);
    QCOMPARE(box.shown(), QString("110"));
}

void QLongLongSpinBoxTest::freeTypingThenReturn()
{
    Box box;
    box.setRange(50, 2'000'000);
    box.setKeyboardTracking(false);
    box.setValue(1000);
    QSignalSpy spy(&box, &QLongLongSpinBox::valueChanged);
    box.type("");
    QCOMPARE(box.shown(), QString());
    for (const char *key : {"1", "2", "3", "4", "5"})
        QTest::keyClicks(&box, key);
    QCOMPARE(box.shown(), QString("12345"));
    QTest::keyClick(&box, Qt::Key_Return);
    QCOMPARE(box.value(), 12345LL);
    QCOMPARE(spy.count(), 1);
}

void QLongLongSpinBoxTest::typingEmitsNothingBeforeReturn()
{
    Box box; // keyboard tracking on, the default
    box.setRange(0, 2'000'000);
    QSignalSpy spy(&box, &QLongLongSpinBox::valueChanged);
    box.type("12345");
    QCOMPARE(spy.count(), 0);
    QCOMPARE(box.value(), 0LL);
    QTest::keyClick(&box, Qt::Key_Return);
    QCOMPARE(spy.count(), 1);
}

void QLongLongSpinBoxTest::returnValidatesTheText_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<qlonglong>("after");
    QTest::newRow("letters") << "abc" << 1000LL;
    QTest::newRow("empty") << "" << 1000LL;
    QTest::newRow("above the maximum") << "2000001" << 1000LL;
    QTest::newRow("below the minimum") << "49" << 1000LL;
    QTest::newRow("number and letters") << "12x" << 1000LL;
    QTest::newRow("maximum") << "2000000" << 2'000'000LL;
    QTest::newRow("minimum") << "50" << 50LL;
    QTest::newRow("leading zeros") << "00077" << 77LL;
}

void QLongLongSpinBoxTest::returnValidatesTheText()
{
    QFETCH(QString, typed);
    QFETCH(qlonglong, after);
    Box box;
    box.setRange(50, 2'000'000);
    box.setValue(1000);
    QSignalSpy spy(&box, &QLongLongSpinBox::valueChanged);
    box.type(qPrintable(typed));
    QCOMPARE(box.shown(), typed);
    QTest::keyClick(&box, Qt::Key_Return);
    QCOMPARE(box.value(), after);
    QCOMPARE(box.shown(), QString::number(after));
    QCOMPARE(spy.count(), after == 1000 ? 0 : 1);
}

void QLongLongSpinBoxTest::returnWithTheSameValueIsSilent()
{
    Box box;
    box.setRange(50, 2'000'000);
    box.setValue(1000);
    QSignalSpy spy(&box, &QLongLongSpinBox::valueChanged);
    QTest::keyClick(&box, Qt::Key_Return);
    QTest::keyClick(&box, Qt::Key_Return);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(box.shown(), QString("1000"));
}

void QLongLongSpinBoxTest::keypadEnterValidatesToo()
{
    Box box;
    box.setRange(50, 2'000'000);
    box.type("500");
    QTest::keyClick(&box, Qt::Key_Enter, Qt::KeypadModifier);
    QCOMPARE(box.value(), 500LL);
}

void QLongLongSpinBoxTest::leavingTheBoxValidatesTheText()
{
    Box box;
    box.setRange(50, 2'000'000);
    QSignalSpy spy(&box, &QLongLongSpinBox::valueChanged);
    box.type("500");
    QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
    QCoreApplication::sendEvent(&box, &leave);
    QCOMPARE(box.value(), 500LL);
    QCOMPARE(spy.count(), 1);
    box.type("12");
    QCoreApplication::sendEvent(&box, &leave);
    QCOMPARE(box.value(), 500LL);
    QCOMPARE(box.shown(), QString("500"));
}

void QLongLongSpinBoxTest::contextMenuKeepsTheText()
{
    Box box;
    box.setRange(50, 2'000'000);
    box.type("12");
    QFocusEvent leave(QEvent::FocusOut, Qt::PopupFocusReason);
    QCoreApplication::sendEvent(&box, &leave);
    QCOMPARE(box.shown(), QString("12"));
}

void QLongLongSpinBoxTest::editingTheMiddleOfANumber()
{
    Box box;
    box.setRange(50, 2'000'000);
    box.setValue(12345);
    box.lineEdit()->setCursorPosition(2);
    QTest::keyClick(&box, Qt::Key_Backspace);
    QTest::keyClick(&box, Qt::Key_Backspace);
    QTest::keyClicks(&box, "99");
    QCOMPARE(box.shown(), QString("99345"));
    QTest::keyClick(&box, Qt::Key_Return);
    QCOMPARE(box.value(), 99345LL);
}

ORVALIS_QTEST_MAIN(QLongLongSpinBoxTest)
#include "QLongLongSpinBoxTest.moc"
