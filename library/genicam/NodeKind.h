// SPDX-License-Identifier: MIT
// Reading and writing one node of Aravis' GenICam engine. All of these need the camera's turn.
#pragma once

#include "library/core/NodeMap.h"
#include "library/genicam/Glib.h"
#include "library/genicam/NodeReach.h"

namespace orvalis {

ONodeType nodeType(ArvGcFeatureNode *node);

/// All of a node but its access and whether it is lockable.
NodeInfo describe(ArvGcFeatureNode *node);

// Of a sound node (NodeReach) of the right type. Outputs are unchanged after a failure, which is in
// the result or in `failure`.
OResult readInteger(ArvGcFeatureNode *node, IntegerValue &value, Failure &failure);
OResult writeInteger(ArvGcFeatureNode *node, std::int64_t value, Failure &failure);
OResult readFloat(ArvGcFeatureNode *node, FloatValue &value, Failure &failure);
OResult writeFloat(ArvGcFeatureNode *node, double value, Failure &failure);
/// Of an integer or a float.
OResult readPart(ArvGcFeatureNode *node, NumberPart part, FloatValue &value, Failure &failure);
/// The name of the present entry, if it is offered.
OResult readEntry(ArvGcFeatureNode *node, NodeReach &reach, std::string &name, Failure &failure);
/// The entries of an enumeration that are offered, out of the first 512. After two seconds it stops
/// to ask which of them are offered, and takes the others for offered, as always where that cannot
/// be told: the camera will refuse them if it has to.
std::vector<EnumerationValue::Entry> offeredEntries(ArvGcFeatureNode *node, NodeReach &reach);
OResult readEnumeration(ArvGcFeatureNode *node, NodeReach &reach, EnumerationValue &value,
                        Failure &failure);
OResult writeEnumeration(ArvGcFeatureNode *node, NodeReach &reach, const std::string &entry,
                         Failure &failure);

} // namespace orvalis
