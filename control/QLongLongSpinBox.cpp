// SPDX-License-Identifier: MIT
// Text, validation and stepping of the 64-bit spin box.
#include "control/QLongLongSpinBox.h"

#include <QFocusEvent>
#include <QLineEdit>

#include <limits>

namespace {

/// Deliberate: the product wraps at 32 bits.
int stepDelta(int steps, int singleStep)
{
    return static_cast<int>(static_cast<quint32>(steps) * static_cast<quint32>(singleStep));
}

qlonglong saturatingAdd(qlonglong value, int delta)
{
    using Limits = std::numeric_limits<qlonglong>;
    if (delta > 0 && value > Limits::max() - delta)
        return Limits::max();
    if (delta < 0 && value < Limits::min() - delta)
        return Limits::min();
    return value + delta;
}

} // namespace

QLongLongSpinBox::QLongLongSpinBox(QWidget *parent) : QAbstractSpinBox(parent)
{
    // The base class calls validate() at every key and rejects a "1" that is meant to become
    // "12345" if the minimum is 50. Without a validator the text is checked when editing ends.
    lineEdit()->setValidator(nullptr);
    lineEdit()->setText(QLongLongSpinBox::textFromValue(m_value));
    connect(lineEdit(), &QLineEdit::returnPressed, this, &QLongLongSpinBox::onReturnPressed);
}

void QLongLongSpinBox::setRange(qlonglong minimum, qlonglong maximum)
{
    setMinimum(minimum);
    setMaximum(maximum);
}

void QLongLongSpinBox::setSingleStep(int step) { m_singleStep = step; }

void QLongLongSpinBox::setValue(qlonglong value)
{
    if (value == m_value)
        return;
    lineEdit()->setText(textFromValue(value));
    m_value = value;
    emit valueChanged(value);
}

QString QLongLongSpinBox::textFromValue(qlonglong value) const { return QString::number(value); }

qlonglong QLongLongSpinBox::valueFromText(const QString &text) const
{
    return text.toLongLong(nullptr, 10);
}

QValidator::State QLongLongSpinBox::validate(QString &text, int &) const
{
    bool isNumber = false;
    const qlonglong number = text.toLongLong(&isNumber, 10);
    const bool acceptable = isNumber && m_minimum <= number && number <= m_maximum;
    return acceptable ? QValidator::Acceptable : QValidator::Invalid;
}

QAbstractSpinBox::StepEnabled QLongLongSpinBox::stepEnabled() const
{
    return StepUpEnabled | StepDownEnabled;
}

void QLongLongSpinBox::stepBy(int steps)
{
    const qlonglong value = saturatingAdd(m_value, stepDelta(steps, m_singleStep));
    lineEdit()->setText(textFromValue(value));
    setValue(value);
}

void QLongLongSpinBox::onReturnPressed()
{
    QString text = lineEdit()->text();
    int position = lineEdit()->cursorPosition();
    if (validate(text, position) == QValidator::Acceptable)
        setValue(valueFromText(text));
    else
        lineEdit()->setText(textFromValue(m_value));
}

void QLongLongSpinBox::focusOutEvent(QFocusEvent *event)
{
    QAbstractSpinBox::focusOutEvent(event);
    // Losing the focus ends editing like Return, except to the box's own context menu.
    if (event->reason() != Qt::PopupFocusReason)
        onReturnPressed();
}
