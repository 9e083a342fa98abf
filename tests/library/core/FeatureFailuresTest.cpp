// SPDX-License-Identifier: MIT
// Typed features on a camera that fails once, at any access.
#include "library/core/Features.h"
#include "tests/library/core/ScriptedNodes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

using namespace orvalis;
using namespace orvalis::test;

namespace {

/// A camera with every selector that typed features set, each on another entry than needed.
class FailingCamera {
public:
    explicit FailingCamera(int accessThatFails) : left_(accessThatFails)
    {
        addSelector("BalanceRatioSelector", {"Green", "Red", "Blue"});
        addSelector("GainSelector", {"Red", "All"});
        addSelector("BlackLevelSelector", {"Red", "All"});
        addSelector("TriggerSelector", {"LineStart", "FrameStart", "AcquisitionStart"});
        addSelector("LineSelector", {"Line0", "Line1", "Line2"});
        addSelector("LineFilterSelector", {"Debounce", "Deglitch"});
        addSelector("SyncInSelector", {"SyncIn0", "SyncIn1"});
        addSelector("TimerSelector", {"Timer0", "Timer1"});
        addSelector("UserSetSelector", {"UserSet1", "Default"});
        addSelector("SoftwareSignalSelector", {"SoftwareSignal0", "SoftwareSignal1"});
        addTrigger();
        addLines();
        addNumbers();
        nodes_.beforeAccess = [this] {
            --left_;
            nodes_.failure = left_ == 0 ? ORVALIS_ERROR_DEVICE : ORVALIS_OK;
        };
    }

    Features &features() { return features_; }
    bool hasFailed() const { return left_ <= 0; }
    /// Names of selectors that are not at their original entry.
    std::vector<std::string> turned()
    {
        std::vector<std::string> names;
        for (const std::string &name : selectors_)
            if (nodes_.nodes[name].value != 0)
                names.push_back(name);
        return names;
    }
    double value(const std::string &name) { return nodes_.nodes[name].value; }
    double value(const std::string &name, const std::string &entry)
    {
        return nodes_.nodes[name].selected[entry];
    }

private:
    void addSelector(const std::string &name, const std::vector<std::string> &entries)
    {
        nodes_.nodes[name] = enumNode(entries);
        selectors_.push_back(name);
    }
    void add(const std::string &name, const ScriptedNode &node, const std::string &selector = {})
    {
        nodes_.nodes[name] = node;
        nodes_.nodes[name].selector = selector;
    }
    void addTrigger()
    {
        add("TriggerMode", enumNode({"Off", "On"}), "TriggerSelector");
        nodes_.nodes["TriggerMode"].selected = {{"FrameStart", 1}};
        add("TriggerSource", enumNode({"Line1", "Software", "SoftwareSignal1"}), "TriggerSelector");
        nodes_.nodes["TriggerSource"].selected = {{"FrameStart", 2}};
        add("TriggerActivation", enumNode({"RisingEdge", "FallingEdge"}), "TriggerSelector");
        add("TriggerDelay", integerNode(0, 0, 100), "TriggerSelector");
        add("TriggerSoftware", commandNode());
        add("SoftwareSignalPulse", commandNode());
        add("AcquisitionBurstFrameCount", integerNode(1, 1, 100));
    }
    void addLines()
    {
        add("LineMode", enumNode({"Input", "Output", "Strobe"}), "LineSelector");
        nodes_.nodes["LineMode"].selected = {{"Line1", 1}, {"Line2", 2}};
        add("LineSource", enumNode({"Off", "Timer1Active"}), "LineSelector");
        nodes_.nodes["LineSource"].selected = {{"Line2", 1}};
        add("LineInverter", booleanNode(false), "LineSelector");
        add("LineDebouncerTime", integerNode(0, 0, 100), "LineSelector");
        add("StrobeEnable", booleanNode(false), "LineSelector");
        add("TimerDelay", integerNode(0, 0, 100), "TimerSelector");
        add("TimerDuration", integerNode(0, 0, 100), "TimerSelector");
        add("UserSetLoad", commandNode());
    }
    void addNumbers()
    {
        add("Gain", floatNode(0, 0, 100), "GainSelector");
        add("GainAuto", enumNode({"Continuous", "Off"}));
        add("BlackLevel", integerNode(0, 0, 100), "BlackLevelSelector");
        add("BalanceRatio", floatNode(0, 0, 100), "BalanceRatioSelector");
        add("ExposureTime", floatNode(0, 0, 100));
        add("ExposureAuto", enumNode({"Continuous", "Off"}));
        add("AcquisitionFrameRate", floatNode(10, 0, 100));
        add("AcquisitionFrameRateEnable", booleanNode(false));
        add("PixelFormat", enumNode({"Mono8"}));
    }

    int left_;
    std::vector<std::string> selectors_;
    ScriptedNodes nodes_;
    std::mutex mutex_;
    Features features_{nodes_, mutex_};
};

using Call = std::function<OResult(FailingCamera &)>;

/// Makes the call on cameras that fail at the first access, the second and so on, until it
/// succeeds; runs `check` after each call.
void failEverywhere(const Call &call, const std::function<void(FailingCamera &, OResult)> &check)
{
    for (int access = 1; access < 500; ++access) {
        SCOPED_TRACE("failed access " + std::to_string(access));
        FailingCamera camera(access);
        const OResult result = call(camera);
        const bool failed = camera.hasFailed();
        check(camera, result);
        if (!failed)
            return;
    }
    ADD_FAILURE() << "the call never succeeds";
}

void expectSelectorsPutBack(const Call &call)
{
    failEverywhere(call, [](FailingCamera &camera, OResult) {
        EXPECT_THAT(camera.turned(), testing::IsEmpty());
    });
}

template <class Feature, class Use> void forEach(Feature last, Use use)
{
    for (int i = 0; i <= static_cast<int>(last); ++i) {
        SCOPED_TRACE("feature " + std::to_string(i));
        use(static_cast<Feature>(i));
    }
}

TEST(FeatureFailures, failedNumbersRestoreTheirSelectors)
{
    forEach(Number::StrobeDuration, [](Number number) {
        expectSelectorsPutBack(
            [&](FailingCamera &camera) { return camera.features().set(number, 50); });
        expectSelectorsPutBack([&](FailingCamera &camera) {
            NumberValue value;
            return camera.features().get(number, value);
        });
    });
}

TEST(FeatureFailures, failedChoicesRestoreTheirSelectors)
{
    forEach(Choice::StrobePolarity, [](Choice choice) {
        expectSelectorsPutBack([&](FailingCamera &camera) {
            std::vector<std::string> names;
            return camera.features().list(choice, names);
        });
        if (choice == Choice::TriggerMode)
            return; // the feature is a selector itself
        expectSelectorsPutBack([&](FailingCamera &camera) {
            std::string name;
            const OResult result = camera.features().get(choice, name);
            return result == ORVALIS_OK ? camera.features().set(choice, name) : result;
        });
    });
}

TEST(FeatureFailures, failedSwitchesRestoreTheirSelectors)
{
    forEach(Switch::StrobeEnable, [](Switch which) {
        for (const bool on : {false, true})
            expectSelectorsPutBack(
                [&](FailingCamera &camera) { return camera.features().set(which, on); });
    });
    expectSelectorsPutBack(
        [](FailingCamera &camera) { return camera.features().fireSoftwareTrigger(true); });
    expectSelectorsPutBack([](FailingCamera &camera) { return camera.features().loadDefaults(); });
}

TEST(FeatureFailures, failedTriggerSwitchRestoresTheTrigger)
{
    const auto set = [](FailingCamera &camera) {
        return camera.features().set(Switch::TriggerEnable, true);
    };
    failEverywhere(set, [](FailingCamera &camera, OResult result) {
        EXPECT_EQ(camera.value("TriggerMode", "FrameStart"), result == ORVALIS_OK ? 0 : 1);
        EXPECT_EQ(camera.value("TriggerMode", "LineStart"), result == ORVALIS_OK ? 1 : 0);
    });
}

TEST(FeatureFailures, refusedTriggerModeIsRestored)
{
    const auto set = [](FailingCamera &camera) {
        return camera.features().set(Choice::TriggerMode, "AcquisitionStart");
    };
    failEverywhere(set, [](FailingCamera &camera, OResult result) {
        const bool done = result == ORVALIS_OK;
        EXPECT_EQ(camera.value("TriggerSelector"), done ? 2 : 0);
        EXPECT_EQ(camera.value("TriggerMode", "FrameStart"), done ? 0 : 1);
        EXPECT_EQ(camera.value("TriggerMode", "AcquisitionStart"), done ? 1 : 0);
    });
}

TEST(FeatureFailures, refusedNumbersRestoreSwitchAndAutomatic)
{
    const auto setRate = [](FailingCamera &camera) {
        return camera.features().set(Number::FrameRate, 50);
    };
    failEverywhere(setRate, [](FailingCamera &camera, OResult result) {
        const int enabled = result == ORVALIS_OK ? 1 : 0;
        EXPECT_EQ(camera.value("AcquisitionFrameRateEnable"), enabled);
    });
    const auto setShutter = [](FailingCamera &camera) {
        return camera.features().set(Number::Shutter, 50);
    };
    failEverywhere(setShutter, [](FailingCamera &camera, OResult result) {
        const int off = result == ORVALIS_OK ? 1 : 0;
        EXPECT_EQ(camera.value("ExposureAuto"), off);
    });
}

} // namespace
