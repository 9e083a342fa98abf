// SPDX-License-Identifier: MIT
// What a camera's description makes the engine do for one node, looked at before it does it.
#pragma once

#include "library/genicam/Glib.h"

#include <unordered_map>
#include <vector>

namespace orvalis {

/// The engine believes a description: it allocates what a register is said to be long, follows
/// links that lead back to where they came from until the stack ends, and reads as many registers
/// as a formula asks for. A description is data from a device, so each node is checked before it is
/// used. All of it needs the camera's turn.
class NodeReach {
public:
    /// Registers that one node may take, its bounds and its state included. A slow camera answers
    /// in 10 ms, so that a call that reads a node once lasts ten seconds at the most.
    static constexpr unsigned mostReads = 1000;

    /// False for a node that leads to itself, takes more than mostReads, or is made of registers
    /// whose length cannot be. Reads registers only where a length is kept in one; then `failure`
    /// may tell that it cannot be read.
    bool isSound(ArvGcFeatureNode *node, Failure &failure);

private:
    /// What one evaluation takes. Registers that keep their length in another node are listed, for
    /// that may change.
    struct Cost {
        unsigned reads = 0;
        std::vector<ArvGcRegister *> sized{};
        void add(const Cost &other);
    };
    using Costs = std::unordered_map<ArvGcNode *, Cost>;

    Cost valueCost(ArvGcNode *node, unsigned depth);
    Cost fullCost(ArvGcNode *node, unsigned depth);
    Cost ownCost(ArvGcNode *node) const;
    template <class Body> static void eachLink(ArvGcNode *node, Body body);

    Costs values_; ///< to read the value
    Costs whole_;  ///< value, bounds and state
};

/// The first property of a kind that the description gives a node; null without one.
ArvGcPropertyNode *propertyOf(ArvGcNode *node, ArvGcPropertyNodeType type);

/// The node that `node` takes its value from; null for one that has a value of its own.
ArvGcNode *valueNodeOf(ArvGcNode *node);

} // namespace orvalis
