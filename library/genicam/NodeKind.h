// SPDX-License-Identifier: MIT
// Reading and writing one node of Aravis' GenICam engine. All of these need the camera's turn.
#pragma once

#include "library/core/NodeMap.h"
#include "library/genicam/Glib.h"

namespace orvalis {

ONodeType nodeType(ArvGcFeatureNode *node);

/// All of a node but its access and whether it is lockable.
NodeInfo describe(ArvGcFeatureNode *node);

// Of a node of the right type. Outputs are unchanged after a failure, which is in the result or in
// `failure`.
OResult readInteger(ArvGcFeatureNode *node, IntegerValue &value, Failure &failure);
OResult writeInteger(ArvGcFeatureNode *node, std::int64_t value, Failure &failure);
OResult readFloat(ArvGcFeatureNode *node, FloatValue &value, Failure &failure);
OResult writeFloat(ArvGcFeatureNode *node, double value, Failure &failure);
OResult readEnumeration(ArvGcFeatureNode *node, EnumerationValue &value, Failure &failure);
OResult writeEnumeration(ArvGcFeatureNode *node, const std::string &entry, Failure &failure);
OResult writeText(ArvGcFeatureNode *node, const std::string &text, Failure &failure);

} // namespace orvalis
