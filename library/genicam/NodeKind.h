// SPDX-License-Identifier: MIT
// Reads and writes one node of Aravis' GenICam engine. All functions need the link's lock.
#pragma once

#include "library/core/NodeMap.h"
#include "library/genicam/Glib.h"
#include "library/genicam/NodeReach.h"

namespace orvalis {

ONodeType nodeType(ArvGcFeatureNode *node);

/// Describes a node, except for its access and whether it is lockable.
NodeInfo describe(ArvGcFeatureNode *node);

// The functions below take a sound node (NodeReach) of the right type. Errors are in the result or
// in `failure`; outputs are unchanged then.
OResult readInteger(ArvGcFeatureNode *node, IntegerValue &value, Failure &failure);
OResult writeInteger(ArvGcFeatureNode *node, std::int64_t value, Failure &failure);
OResult readFloat(ArvGcFeatureNode *node, FloatValue &value, Failure &failure);
OResult writeFloat(ArvGcFeatureNode *node, double value, Failure &failure);
/// Reads an integer or a float.
OResult readPart(ArvGcFeatureNode *node, NumberPart part, FloatValue &value, Failure &failure);
/// Reads the name of the present entry if it is available.
OResult readEntry(ArvGcFeatureNode *node, NodeReach &reach, std::string &name, Failure &failure);
/// The available entries of an enumeration, out of the first 512. After two seconds it stops
/// reading their availability and lists the remaining entries, as it does for entries whose
/// availability cannot be read: the camera refuses them if necessary.
std::vector<EnumerationValue::Entry> offeredEntries(ArvGcFeatureNode *node, NodeReach &reach);
OResult readEnumeration(ArvGcFeatureNode *node, NodeReach &reach, EnumerationValue &value,
                        Failure &failure);
OResult writeEnumeration(ArvGcFeatureNode *node, NodeReach &reach, const std::string &entry,
                         Failure &failure);

} // namespace orvalis
