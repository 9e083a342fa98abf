// SPDX-License-Identifier: MIT
// Helpers shared by several tabs.
#pragma once

#include <QAbstractSlider>
#include <QSignalBlocker>

#include <algorithm>
#include <limits>
#include <optional>

/// Sets `value` unless the box displays it already.
template <typename SpinBox, typename Value> void setIfDifferent(SpinBox *box, Value value)
{
    if (box->value() != value)
        box->setValue(value);
}

/// Displays a value that the camera reported. Without known bounds the box may clamp the value, so
/// the change must not be written back.
template <typename SpinBox, typename Value>
void showRead(SpinBox *box, Value value, bool bounded = true)
{
    const QSignalBlocker blocker(bounded ? nullptr : box);
    setIfDifferent(box, value);
}

/// The slider value after a page action; none for other actions, which only move the slider. Qt
/// emits the signal of an action before it changes the slider's value.
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

/// Sets a box to the target of a page action. The slot of the box moves the slider if the camera
/// accepts the value; if it refuses, the slider stays. If the box does not change, no slot runs, so
/// the slider is moved to the box here.
/// @param toSlider converts a value of the box to one of the slider
template <typename SpinBox, typename Value, typename ToSlider>
void pageTo(SpinBox *box, Value target, QAbstractSlider *slider, ToSlider toSlider)
{
    const auto before = box->value();
    box->setValue(target);
    if (box->value() == before)
        slider->setValue(toSlider(before));
    slider->setSliderPosition(slider->value()); // undo the move by the action
}
