// SPDX-License-Identifier: MIT
// The typed features of a camera (gain, trigger, region and so on), a thin view of its nodes.
#pragma once

#include "library/convert/PixelFormat.h"
#include "library/core/FeatureTable.h"
#include "library/core/NodeMap.h"
#include "library/core/Selection.h"

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace orvalis {

/// A number and its bounds in interface units, rounded to the interface's type.
struct NumberValue {
    double value = 0;
    double minimum = 0;
    double maximum = 0;
    bool automatic = false;
};

/// The present pixel format.
struct PresentFormat {
    std::string name;
    std::uint32_t code = 0;              ///< PFNC
    const PixelFormat *format = nullptr; ///< null if the library does not know it
};

/// Every function may be called from any thread. Each holds the node lock, so that selectors and
/// the values that they select stay consistent. Results are those of OrvalisAPI.h;
/// ORVALIS_ERROR_NOT_SUPPORTED for a feature that the camera lacks. After a failure, outputs are
/// unchanged.
class Features {
public:
    /// `nodes` and `mutex`, the camera's node lock, must outlive this object.
    Features(NodeMap &nodes, std::mutex &mutex) : nodes_(nodes), mutex_(mutex) {}

    /// Reads value, bounds and automatic mode.
    OResult get(Number number, NumberValue &value);
    /// Reads one part; the automatic mode belongs to the value.
    OResult get(Number number, NumberPart part, NumberValue &value);
    /// `automatic` is supported only for features with an automatic mode, and `value` is ignored
    /// then.
    OResult set(Number number, double value, bool automatic = false);

    /// The names that are available at present.
    OResult list(Choice choice, std::vector<std::string> &names);
    /// The present name.
    OResult get(Choice choice, std::string &name);
    /// ORVALIS_ERROR_NOT_FOUND for a name that is not available at present. If the trigger is on,
    /// another trigger mode switches it on for the new mode and off for the old one.
    OResult set(Choice choice, std::string_view name);

    /// Whether the switch is on. The trigger is on if TriggerMode is on for any entry of
    /// TriggerSelector.
    OResult get(Switch which, bool &on);
    /// Switches on or off. For the trigger, "on" switches on the selected entry of TriggerSelector
    /// and switches off all others; "off" switches off all entries.
    OResult set(Switch which, bool on);

    /// Executes the command that belongs to the trigger source. Does nothing and returns ORVALIS_OK
    /// if the trigger is not set up for software, or if not `streaming`.
    OResult fireSoftwareTrigger(bool streaming);
    /// Loads the factory settings.
    OResult loadDefaults();

    /// ORVALIS_ERROR_DEVICE for a camera without region nodes.
    OResult getRegion(OSizeInfo &size);
    /// Sets the nearest region that the camera supports; after a failure the old region applies.
    OResult setRegion(const OSizeInfo &size);

    /// ORVALIS_ERROR_DEVICE if the camera's present entry is not in its own list.
    OResult presentFormat(PresentFormat &present);

private:
    struct Located {
        const char *name = nullptr;
        double units = 1;
        const char *twin = nullptr;
        NodeInfo info{};
    };
    /// A switch that was switched on for a number, to be switched off again if the camera refuses
    /// the number.
    struct Enabled {
        Located node;
        const EnableNode *wanted = nullptr;
    };
    OResult inspect(const char *name, NodeInfo &info);
    OResult locate(const NumberRow &wanted, Located &found);
    double unitsOf(const NumberRow &wanted, const NumberNode &node, const NodeInfo &info);
    OResult read(const NumberRow &wanted, const Located &node, NumberValue &value);
    OResult readPart(const NumberRow &wanted, NumberPart part, NumberValue &value);
    OResult readPresent(const NumberRow &wanted, NumberValue &value);
    OResult readHidden(const NumberRow &wanted, NumberValue &value);
    OResult write(const NumberRow &wanted, const Located &node, double value);
    void writeTwin(const Located &node, double value);
    OResult readAutomatic(const NumberRow &wanted, bool &automatic);
    OResult setAutomatic(const NumberRow &wanted, bool automatic);
    OResult checkRange(const NumberRow &wanted, double value, bool &changes);
    OResult setValue(const NumberRow &wanted, double value);
    OResult writeEnabled(const NumberRow &wanted, double value);
    bool isSwitchedOff(const NumberRow &wanted);
    void enable(const NumberRow &wanted, bool changes, std::vector<Enabled> &enabled);
    void disable(const std::vector<Enabled> &enabled);

    template <class Body> OResult withChoice(Choice choice, Body body);
    template <class Body> OResult withSwitch(Switch which, Body body);
    template <class Node>
    OResult locateSwitch(const Node &wanted, Selection &selection, Located &found);
    OResult readSwitch(const Located &node, const SwitchNode &wanted, bool &on);
    OResult writeSwitch(const Located &node, const SwitchNode &wanted, bool on);

    OResult readTrigger(bool &on);
    OResult writeTrigger(Selection &selection, const std::string &entry, bool on);
    OResult findTriggers(std::vector<std::string> &on);
    OResult switchOnOnly(const std::string *wanted, const std::vector<std::string> &on);
    OResult getTrigger(bool &on);
    OResult setTrigger(bool on);
    OResult setTriggerMode(std::string_view name);
    OResult moveTrigger(const std::string &chosen, const std::vector<std::string> &on);
    bool waitsForSoftware(std::string &source);

    NodeMap &nodes_;
    std::mutex &mutex_; // guards one access to the camera's nodes, selectors included, and:
    Selection::StrobeLine strobeLine_;
};

} // namespace orvalis
