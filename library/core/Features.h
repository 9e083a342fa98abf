// SPDX-License-Identifier: MIT
// The typed features of a camera: gain, trigger, region and so on, as a thin view of its nodes.
#pragma once

#include "library/convert/PixelFormat.h"
#include "library/core/FeatureTable.h"
#include "library/core/NodeMap.h"

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace orvalis {

class Selection;

/// A number and its bounds in the units of the interface, rounded as it asks.
struct NumberValue {
    double value = 0;
    double minimum = 0;
    double maximum = 0;
    bool automatic = false;
};

/// What the camera is set to send.
struct PresentFormat {
    std::string name;
    std::uint32_t code = 0;              ///< PFNC
    const PixelFormat *format = nullptr; ///< null if the library does not know it
};

/// Every function may be called from any thread; one at a time reaches the camera, so that
/// selectors and the values behind them belong together. Results are those of OrvalisAPI.h; a
/// feature that the camera lacks is ORVALIS_ERROR_NOT_SUPPORTED. After a failure outputs are
/// unchanged.
class Features {
public:
    /// `nodes` and `mutex`, the camera's node lock, outlive this object.
    Features(NodeMap &nodes, std::mutex &mutex) : nodes_(nodes), mutex_(mutex) {}

    /// ORVALIS_ERROR_NOT_SUPPORTED for what this camera does not have, here and below.
    OResult get(Number number, NumberValue &value);
    /// Only a feature with an automatic control can be `automatic`; `value` does not count then.
    OResult set(Number number, double value, bool automatic = false);

    /// The names that can be chosen at present.
    OResult list(Choice choice, std::vector<std::string> &names);
    /// The name that is chosen.
    OResult get(Choice choice, std::string &name);
    /// ORVALIS_ERROR_NOT_FOUND for a name that is not offered at present.
    OResult set(Choice choice, std::string_view name);

    /// Whether the switch is on.
    OResult get(Switch which, bool &on);
    /// Switches on or off.
    OResult set(Switch which, bool on);

    /// Nothing happens, with ORVALIS_OK, where the trigger is not set up for it, or not
    /// `streaming`.
    OResult fireSoftwareTrigger(bool streaming);
    /// Loads the maker's settings.
    OResult loadDefaults();

    /// ORVALIS_ERROR_DEVICE for a camera without region nodes.
    OResult getRegion(OSizeInfo &size);
    /// Takes the nearest region that the camera can do; after a failure the old one holds.
    OResult setRegion(const OSizeInfo &size);

    /// ORVALIS_ERROR_DEVICE if the camera names no entry of its own list.
    OResult presentFormat(PresentFormat &present);

private:
    struct Located {
        const char *name = nullptr;
        double units = 1;
        NodeInfo info;
    };
    OResult inspect(const char *name, NodeInfo &info);
    OResult locate(const NumberRow &wanted, Located &found);
    double baseOf(const NumberNode &node);
    template <class Names> OResult locateAny(const Names &names, Located &found);
    template <class Body> OResult withChoice(Choice choice, Body body);
    template <class Own, class Source> OResult withSwitch(Switch which, Own own, Source source);
    OResult read(const NumberRow &wanted, const Located &node, NumberValue &value);
    OResult write(const NumberRow &wanted, const Located &node, double value);
    OResult readAutomatic(const NumberRow &wanted, bool &automatic);
    OResult setAutomatic(const NumberRow &wanted, bool automatic);
    OResult checkRange(const NumberRow &wanted, double value);
    OResult setValue(const NumberRow &wanted, double value);
    void enable(const NumberRow &wanted);

    OResult readSwitch(const Located &node, bool &on);
    OResult writeSwitch(const Located &node, bool on);
    OResult writeSource(const SwitchRow &wanted, bool on);

    NodeMap &nodes_;
    std::mutex &mutex_; // one access to the camera's nodes, selectors included
};

} // namespace orvalis
