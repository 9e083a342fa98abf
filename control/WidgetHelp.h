// SPDX-License-Identifier: MIT
// Small rules that several tabs share.
#pragma once

#include <QAbstractSlider>

#include <optional>

/// Sets `value` unless the box shows it already.
template <typename SpinBox, typename Value> void setIfDifferent(SpinBox *box, Value value)
{
    if (box->value() != value)
        box->setValue(value);
}

/// Where a page action of a slider leads, none for other actions: those move the slider only. The
/// signal of an action comes before the slider's value follows it.
inline std::optional<int> pageTarget(const QAbstractSlider &slider, int action)
{
    if (action == QAbstractSlider::SliderPageStepAdd)
        return slider.value() + slider.pageStep();
    if (action == QAbstractSlider::SliderPageStepSub)
        return slider.value() - slider.pageStep();
    return std::nullopt;
}
