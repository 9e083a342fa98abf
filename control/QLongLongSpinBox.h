// SPDX-License-Identifier: MIT
// A spin box for signed 64-bit integers.
#pragma once

#include <QAbstractSpinBox>

/// Holds what the program gives it: bounds are applied to typed text only, never to setValue() or
/// to steps. Whoever owns the box sets range and step before use; all four numbers start at zero.
class QLongLongSpinBox : public QAbstractSpinBox {
    Q_OBJECT
    Q_PROPERTY(qlonglong value READ value WRITE setValue NOTIFY valueChanged USER true)

public:
    explicit QLongLongSpinBox(QWidget *parent = nullptr);

    /// The number that is shown; it may lie outside of the bounds.
    qlonglong value() const { return m_value; }
    /// Lower bound, inclusive.
    qlonglong minimum() const { return m_minimum; }
    /// Upper bound, inclusive.
    qlonglong maximum() const { return m_maximum; }

    /// Bounds, inclusive. The present value stays as it is.
    void setMinimum(qlonglong minimum) { m_minimum = minimum; }
    /// @copydoc setMinimum
    void setMaximum(qlonglong maximum) { m_maximum = maximum; }
    /// @copydoc setMinimum
    void setRange(qlonglong minimum, qlonglong maximum);

    /// Shows `value` and emits valueChanged(); does nothing if it is the present one. Never clamps.
    void setValue(qlonglong value);
    /// What an arrow key adds.
    int singleStep() const { return m_singleStep; }

    /// Acceptable for a decimal number within the bounds, else Invalid; never Intermediate.
    QValidator::State validate(QString &text, int &position) const override;
    /// Adds `steps` single steps and stops at the ends of 64 bits, not at the bounds.
    void stepBy(int steps) override;

    /// @param step what an arrow key adds from now on
    virtual void setSingleStep(int step);
    /// The number in `text`, 0 if there is none.
    virtual qlonglong valueFromText(const QString &text) const;
    /// The text that shows `value`.
    virtual QString textFromValue(qlonglong value) const;

signals:
    /// Another number is shown.
    void valueChanged(qlonglong value);

public slots:
    /// Takes the typed text for the value, or shows the value again if the text is not acceptable.
    void onReturnPressed();

protected:
    StepEnabled stepEnabled() const override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    qlonglong m_minimum = 0;
    qlonglong m_maximum = 0;
    qlonglong m_value = 0;
    int m_singleStep = 0;
};
