// SPDX-License-Identifier: MIT
// A spin box for signed 64-bit integers.
#pragma once

#include <QAbstractSpinBox>

/// Deliberate: bounds apply to typed text only, never to setValue() or to steps. The owner must set
/// range and step before use; value, bounds and step start at zero.
class QLongLongSpinBox : public QAbstractSpinBox {
    Q_OBJECT
    Q_PROPERTY(qlonglong value READ value WRITE setValue NOTIFY valueChanged USER true)

public:
    explicit QLongLongSpinBox(QWidget *parent = nullptr);

    /// The displayed number; may lie outside the bounds.
    qlonglong value() const { return m_value; }
    /// Lower bound, inclusive.
    qlonglong minimum() const { return m_minimum; }
    /// Upper bound, inclusive.
    qlonglong maximum() const { return m_maximum; }

    /// Bounds, inclusive. Does not change the value.
    void setMinimum(qlonglong minimum) { m_minimum = minimum; }
    /// @copydoc setMinimum
    void setMaximum(qlonglong maximum) { m_maximum = maximum; }
    /// @copydoc setMinimum
    void setRange(qlonglong minimum, qlonglong maximum);

    /// Displays `value` and emits valueChanged(). Does nothing if it is unchanged. Never clamps.
    void setValue(qlonglong value);
    /// The number that an arrow key adds.
    int singleStep() const { return m_singleStep; }

    /// Acceptable for a decimal number within the bounds, else Invalid; never Intermediate.
    QValidator::State validate(QString &text, int &position) const override;
    /// Adds `steps` single steps. Saturates at 64 bits, not at the bounds.
    void stepBy(int steps) override;

    /// @param step the number that an arrow key adds
    virtual void setSingleStep(int step);
    /// The number in `text`, 0 if there is none.
    virtual qlonglong valueFromText(const QString &text) const;
    /// `value` in decimal.
    virtual QString textFromValue(qlonglong value) const;

signals:
    /// The displayed number has changed.
    void valueChanged(qlonglong value);

public slots:
    /// Sets the value to the typed text, or restores the text if it is not acceptable.
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
