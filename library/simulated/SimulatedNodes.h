// SPDX-License-Identifier: MIT
// A simulated camera's registers as feature nodes.
#pragma once

#include "library/core/NodeMap.h"
#include "library/simulated/SimulatedCamera.h"

#include <memory>

namespace orvalis::simulated {

/// The node map of one session of a camera.
class SimulatedNodes final : public NodeMap {
public:
    SimulatedNodes(SimulatedCamera &camera, SimulatedCamera::Session session)
        : camera_(camera), session_(session)
    {
    }

    OResult list(std::string_view category, std::vector<std::string> &children) override;
    OResult info(std::string_view name, NodeInfo &info) override;
    OResult getInteger(std::string_view name, IntegerValue &value) override;
    OResult setInteger(std::string_view name, std::int64_t value) override;
    OResult getFloat(std::string_view name, FloatValue &value) override;
    OResult setFloat(std::string_view name, double value) override;
    OResult getBoolean(std::string_view name, bool &value) override;
    OResult setBoolean(std::string_view name, bool value) override;
    OResult getEnumeration(std::string_view name, EnumerationValue &value) override;
    OResult setEnumeration(std::string_view name, std::string_view entry) override;
    OResult getText(std::string_view name, std::string &value) override;
    OResult setText(std::string_view name, std::string_view value) override;
    OResult execute(std::string_view name) override;

    /// Reads the same memory by address. ORVALIS_ERROR_BAD_ARGUMENT for an address that is not a
    /// multiple of 4, ORVALIS_ERROR_NOT_FOUND for one without a register.
    OResult readRegister(std::uint32_t address, std::uint32_t &value);
    /// Like readRegister(); also ORVALIS_ERROR_ACCESS_DENIED for a read-only or locked register.
    OResult writeRegister(std::uint32_t address, std::uint32_t value);

private:
    /// Finds a node by name and type; null with the reason in `result` if there is none.
    const NodeSpec *find(std::string_view name, ONodeType type, OResult &result);
    template <class Action> OResult read(std::string_view name, ONodeType type, Action action);
    OResult writeNumber(std::string_view name, ONodeType type, double value);
    OResult presence(OResult otherwise);

    SimulatedCamera &camera_;
    SimulatedCamera::Session session_;
};

} // namespace orvalis::simulated
