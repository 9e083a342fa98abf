// SPDX-License-Identifier: MIT
// Small rules that several tabs share.
#pragma once

#include <QAbstractSlider>
#include <QSignalBlocker>

#include <algorithm>
#include <limits>
#include <optional>

/// Sets `value` unless the box shows it already.
template <typename SpinBox, typename Value> void setIfDifferent(SpinBox *box, Value value)
{
    if (box->value() != value)
        box->setValue(value);
}

/// Shows a value that the camera reported. Where its bounds could not be read the box may hold
/// another one, so that it must not be sent back.
template <typename SpinBox, typename Value>
void showRead(SpinBox *box, Value value, bool bounded = true)
{
    const QSignalBlocker blocker(bounded ? nullptr : box);
    setIfDifferent(box, value);
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

/// Sets a box to where a page action of its slider leads. The slider ends where the camera's answer
/// has put it: beside the box, or where it was if the camera refused. A box that does not change
/// asks no camera, so then the slider goes to the box.
/// @param toSlider from a value of the box to one of the slider
template <typename SpinBox, typename Value, typename ToSlider>
void pageTo(SpinBox *box, Value target, QAbstractSlider *slider, ToSlider toSlider)
{
    const auto before = box->value();
    box->setValue(target);
    if (box->value() == before)
        slider->setValue(toSlider(before));
    slider->setSliderPosition(slider->value()); // the action has moved it already
}
