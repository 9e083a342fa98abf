// SPDX-License-Identifier: MIT
// Checks what a camera's description makes the engine do for one node.
#pragma once

#include "library/genicam/Glib.h"

#include <unordered_map>
#include <vector>

namespace orvalis {

/// The engine trusts a description: it allocates the stated length of a register, follows circular
/// links until the stack overflows, and reads as many registers as a formula refers to. A
/// description is data from a device, so each node is checked before it is used. All functions need
/// the link's lock.
class NodeReach {
public:
    /// The maximum number of registers for one node, its bounds and state included. A slow camera
    /// answers in 10 ms, so one read of a node takes ten seconds at most.
    static constexpr unsigned maxReads = 1000;

    /// False for a node that refers to itself, needs more than maxReads registers, or has a
    /// register of an impossible length. Reads only registers that contain a length; if that fails,
    /// the error is in `failure`.
    bool isSound(ArvGcFeatureNode *node, Failure &failure);

private:
    /// The cost of one evaluation. `sized` lists registers whose length is stored in another node,
    /// because it may change.
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

    Costs values_; ///< of the value
    Costs whole_;  ///< of value, bounds and state
};

/// The first property of this type of a node; null if there is none.
ArvGcPropertyNode *propertyOf(ArvGcNode *node, ArvGcPropertyNodeType type);

/// The node that provides the value of `node`; null if `node` has its own value.
ArvGcNode *valueNodeOf(ArvGcNode *node);

} // namespace orvalis
