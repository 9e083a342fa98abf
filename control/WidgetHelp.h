// SPDX-License-Identifier: MIT
// Small rules that several tabs share.
#pragma once

#include <QAbstractSlider>

#include <algorithm>
#include <limits>
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
    using Limits = std::numeric_limits<int>;
    if (action != QAbstractSlider::SliderPageStepAdd &&
        action != QAbstractSlider::SliderPageStepSub)
        return std::nullopt;
    const bool up = action == QAbstractSlider::SliderPageStepAdd;
    const qint64 page = up ? slider.pageStep() : -qint64{slider.pageStep()};
    return static_cast<int>(
        std::clamp<qint64>(slider.value() + page, Limits::min(), Limits::max()));
}
