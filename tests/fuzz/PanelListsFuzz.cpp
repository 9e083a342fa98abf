// SPDX-License-Identifier: MIT
// Fuzzes the data that the control panel reads from the library: lists of names, enumerations,
// bounds and values of any content.
#include "control/CameraCtrl.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/Widgets.h"
#include "tests/support/ByteTape.h"

#include <QComboBox>
#include <QSlider>
#include <QSpinBox>

namespace {

using viewertest::ByteTape;

constexpr int longestList = 256;
constexpr std::uint32_t mostSteps = 8;

struct Bench {
    OCameraHandle camera = fuzz::openCamera();
    CameraCtrl panel;
};

void checkLists(const CameraCtrl &panel)
{
    for (const QComboBox *list : panel.findChildren<QComboBox *>()) {
        FUZZ_CHECK(list->count() <= longestList);
        FUZZ_CHECK(list->currentIndex() < list->count());
        for (int i = 0; i < list->count(); ++i)
            FUZZ_CHECK(list->itemText(i).size() <= ORVALIS_TEXT_SIZE);
    }
}

void checkNumbers(const CameraCtrl &panel)
{
    for (const QSpinBox *box : panel.findChildren<QSpinBox *>())
        FUZZ_CHECK(box->minimum() <= box->value() && box->value() <= box->maximum());
    for (const QSlider *slider : panel.findChildren<QSlider *>()) {
        FUZZ_CHECK(slider->minimum() <= slider->value() && slider->value() <= slider->maximum());
        // Qt cannot draw a longer slider.
        FUZZ_CHECK(qint64{slider->maximum()} - slider->minimum() <= INT_MAX);
    }
}

void step(Bench &bench, ByteTape &steps)
{
    CameraCtrl &panel = bench.panel;
    switch (steps.below(8)) {
    case 0:
        return panel.loadFeatureValue(false);
    case 1:
        return panel.loadTriggerValue();
    case 2:
        return panel.loadStrobeValue();
    case 3:
        return panel.loadVideoInfo();
    case 4:
        return panel.loadUserSet();
    case 5:
        return panel.slotCurrentPoint({steps.number<std::int32_t>(), steps.number<std::int32_t>()},
                                      {steps.number<std::int32_t>(), steps.number<std::int32_t>()});
    default:
        return panel.loadConfigurationValue(bench.camera);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static auto &bench = *new Bench;
    ByteTape tape(data, size);
    ByteTape steps(tape.bytes(tape.below(64)));
    fakeorvalis::clearCalls();
    bench.panel.releaseCamera();
    fakeorvalis::hostileAnswers({}); // zeros everywhere: reset the state of the last input
    bench.panel.loadConfigurationValue(bench.camera);
    fakeorvalis::hostileAnswers(tape.rest());
    for (std::uint32_t i = 0; i < mostSteps && !steps.atEnd(); ++i) {
        step(bench, steps);
        checkLists(bench.panel);
        checkNumbers(bench.panel);
    }
    return 0;
}
