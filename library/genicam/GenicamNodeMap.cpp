// SPDX-License-Identifier: MIT
// The feature nodes of a real camera: finding them, what they are, and what may be done with them.
#include "library/genicam/GenicamNodeMap.h"

#include "library/genicam/NodeKind.h"

#include <algorithm>

namespace orvalis {
namespace {

/// What a camera cannot change while it sends, whether or not its description says so.
constexpr std::string_view lockedNames[] = {
    "Width",
    "Height",
    "PixelFormat",
    "BinningHorizontal",
    "BinningVertical",
    "DecimationHorizontal",
    "DecimationVertical",
};

bool isLockedByName(ArvGcFeatureNode *node)
{
    const char *name = arv_gc_feature_node_get_name(node);
    return name != nullptr &&
           std::ranges::find(lockedNames, std::string_view(name)) != std::ranges::end(lockedNames);
}

/// True if the camera's description says when the node is locked.
bool hasLockProperty(ArvGcFeatureNode *node)
{
    for (ArvDomNode *child = arv_dom_node_get_first_child(ARV_DOM_NODE(node)); child != nullptr;
         child = arv_dom_node_get_next_sibling(child)) {
        if (textOf(arv_dom_node_get_node_name(child)) == "pIsLocked") {
            return true;
        }
    }
    return false;
}

const StreamCounters::Node *counterNode(std::string_view name)
{
    const auto *found = std::ranges::find_if(
        StreamCounters::nodes, [&](const StreamCounters::Node &node) { return name == node.name; });
    return found == StreamCounters::nodes.end() ? nullptr : found;
}

bool isOurs(std::string_view name)
{
    return name == StreamCounters::category || name == StreamCounters::resetCommand ||
           counterNode(name) != nullptr;
}

ONodeType ourType(std::string_view name)
{
    if (name == StreamCounters::category) {
        return ORVALIS_NODE_CATEGORY;
    }
    return name == StreamCounters::resetCommand ? ORVALIS_NODE_COMMAND : ORVALIS_NODE_INTEGER;
}

NodeInfo ourInfo(std::string_view name)
{
    NodeInfo info;
    info.type = ourType(name);
    info.access = ORVALIS_ACCESS_READ_ONLY;
    if (const StreamCounters::Node *counter = counterNode(name)) {
        info.displayName = counter->displayName;
        info.description = counter->description;
    } else if (info.type == ORVALIS_NODE_CATEGORY) {
        info.displayName = "Stream Statistics";
        info.description = "Frames of the present or the last acquisition.";
    } else {
        info.access = ORVALIS_ACCESS_READ_WRITE;
        info.displayName = "Reset Statistics";
        info.description = "Sets the counters to zero.";
    }
    return info;
}

/// The result of a call of another type than the node's.
OResult refusal(std::string_view name, ONodeType type)
{
    return ourType(name) == type ? ORVALIS_ERROR_ACCESS_DENIED : ORVALIS_ERROR_WRONG_TYPE;
}

} // namespace

ArvGcFeatureNode *GenicamNodeMap::find(std::string_view name) const
{
    ArvGcNode *node = arv_gc_get_node(link_.genicam(), std::string(name).c_str());
    return ARV_IS_GC_FEATURE_NODE(node) ? ARV_GC_FEATURE_NODE(node) : nullptr;
}

OResult GenicamNodeMap::withAnyNode(std::string_view name, const Work &work)
{
    const CameraLink::Turn turn = link_.turn();
    if (!turn) {
        return ORVALIS_ERROR_CONNECTION_LOST;
    }
    ArvGcFeatureNode *node = find(name);
    if (node == nullptr) {
        return ORVALIS_ERROR_NOT_FOUND;
    }
    Failure failure;
    const OResult result = work(node, failure);
    return failure ? link_.resultOf(failure) : result;
}

OResult GenicamNodeMap::withNode(std::string_view name, ONodeType type, Purpose purpose,
                                 const Work &work)
{
    if (isOurs(name)) {
        return link_.lost() ? ORVALIS_ERROR_CONNECTION_LOST : refusal(name, type);
    }
    return withAnyNode(name, [&](ArvGcFeatureNode *node, Failure &failure) {
        if (nodeType(node) != type) {
            return ORVALIS_ERROR_WRONG_TYPE;
        }
        const OAccessMode mode = access(node, failure);
        if (failure) {
            return ORVALIS_ERROR_DEVICE;
        }
        const bool allowed = mode == ORVALIS_ACCESS_READ_WRITE ||
                             mode == (purpose == Purpose::Read ? ORVALIS_ACCESS_READ_ONLY
                                                               : ORVALIS_ACCESS_WRITE_ONLY);
        return allowed ? work(node, failure) : ORVALIS_ERROR_ACCESS_DENIED;
    });
}

bool GenicamNodeMap::locked(ArvGcFeatureNode *node, Failure &failure) const
{
    if (streaming_ && isLockedByName(node)) {
        return true;
    }
    const bool locked = arv_gc_feature_node_is_locked(node, failure.slot()) != FALSE;
    if (failure && !failure.meansLost()) {
        failure.slot(); // nothing is known of a lock: the camera will refuse if it has to
        return false;
    }
    return locked;
}

OAccessMode GenicamNodeMap::access(ArvGcFeatureNode *node, Failure &failure) const
{
    if (!arv_gc_feature_node_is_implemented(node, failure.slot()) || failure) {
        return ORVALIS_ACCESS_NOT_IMPLEMENTED;
    }
    if (!arv_gc_feature_node_is_available(node, failure.slot()) || failure) {
        return ORVALIS_ACCESS_NOT_AVAILABLE;
    }
    const ONodeType type = nodeType(node);
    if (type == ORVALIS_NODE_CATEGORY) {
        return ORVALIS_ACCESS_READ_ONLY;
    }
    const ArvGcAccessMode mode = arv_gc_feature_node_get_actual_access_mode(node);
    if (mode == ARV_GC_ACCESS_MODE_RO && type != ORVALIS_NODE_COMMAND) {
        return ORVALIS_ACCESS_READ_ONLY;
    }
    if (locked(node, failure)) {
        return ORVALIS_ACCESS_READ_ONLY;
    }
    // Commands are written, never read, but to a user they are simply there to be used.
    return mode == ARV_GC_ACCESS_MODE_WO && type != ORVALIS_NODE_COMMAND
               ? ORVALIS_ACCESS_WRITE_ONLY
               : ORVALIS_ACCESS_READ_WRITE;
}

OResult GenicamNodeMap::list(std::string_view category, std::vector<std::string> &children)
{
    std::vector<std::string> names;
    if (isOurs(category)) {
        if (link_.lost()) {
            return ORVALIS_ERROR_CONNECTION_LOST;
        }
        if (category == StreamCounters::category) {
            for (const StreamCounters::Node &node : StreamCounters::nodes) {
                names.emplace_back(node.name);
            }
            names.emplace_back(StreamCounters::resetCommand);
        }
        children = std::move(names);
        return ORVALIS_OK;
    }
    const OResult result = withAnyNode(category, [&](ArvGcFeatureNode *node, Failure &) {
        if (!ARV_IS_GC_CATEGORY(node)) {
            return ORVALIS_OK;
        }
        for (const GSList *item = arv_gc_category_get_features(ARV_GC_CATEGORY(node));
             item != nullptr; item = item->next) {
            const std::string name = textOf(static_cast<const char *>(item->data));
            if (find(name) != nullptr) {
                names.push_back(name);
            }
        }
        return ORVALIS_OK;
    });
    if (result != ORVALIS_OK) {
        return result;
    }
    if (category == "Root") {
        names.emplace_back(StreamCounters::category);
    }
    children = std::move(names);
    return ORVALIS_OK;
}

OResult GenicamNodeMap::info(std::string_view name, NodeInfo &info)
{
    if (isOurs(name)) {
        if (link_.lost()) {
            return ORVALIS_ERROR_CONNECTION_LOST;
        }
        info = ourInfo(name);
        return ORVALIS_OK;
    }
    return withAnyNode(name, [&](ArvGcFeatureNode *node, Failure &failure) {
        NodeInfo found = describe(node);
        found.access = access(node, failure);
        if (failure && !failure.meansLost()) {
            // A node whose state cannot be told is not available, but it is there.
            found.access = ORVALIS_ACCESS_NOT_AVAILABLE;
            failure.slot();
        }
        found.lockable = isLockedByName(node) || hasLockProperty(node);
        info = std::move(found);
        return ORVALIS_OK;
    });
}

OResult GenicamNodeMap::getInteger(std::string_view name, IntegerValue &value)
{
    if (const StreamCounters::Node *counter = counterNode(name); counter && !link_.lost()) {
        const auto index = static_cast<std::size_t>(counter - StreamCounters::nodes.data());
        value = {counters_.values()[index], 0, INT64_MAX, 1};
        return ORVALIS_OK;
    }
    return withNode(name, ORVALIS_NODE_INTEGER, Purpose::Read,
                    [&](ArvGcFeatureNode *node, Failure &failure) {
                        return readInteger(node, value, failure);
                    });
}

OResult GenicamNodeMap::setInteger(std::string_view name, std::int64_t value)
{
    return withNode(name, ORVALIS_NODE_INTEGER, Purpose::Write,
                    [&](ArvGcFeatureNode *node, Failure &failure) {
                        return writeInteger(node, value, failure);
                    });
}

OResult GenicamNodeMap::getFloat(std::string_view name, FloatValue &value)
{
    return withNode(
        name, ORVALIS_NODE_FLOAT, Purpose::Read,
        [&](ArvGcFeatureNode *node, Failure &failure) { return readFloat(node, value, failure); });
}

OResult GenicamNodeMap::setFloat(std::string_view name, double value)
{
    return withNode(
        name, ORVALIS_NODE_FLOAT, Purpose::Write,
        [&](ArvGcFeatureNode *node, Failure &failure) { return writeFloat(node, value, failure); });
}

OResult GenicamNodeMap::getBoolean(std::string_view name, bool &value)
{
    return withNode(name, ORVALIS_NODE_BOOLEAN, Purpose::Read,
                    [&](ArvGcFeatureNode *node, Failure &failure) {
                        const bool found =
                            arv_gc_boolean_get_value(ARV_GC_BOOLEAN(node), failure.slot()) != FALSE;
                        value = failure ? value : found;
                        return ORVALIS_OK;
                    });
}

OResult GenicamNodeMap::setBoolean(std::string_view name, bool value)
{
    return withNode(name, ORVALIS_NODE_BOOLEAN, Purpose::Write,
                    [&](ArvGcFeatureNode *node, Failure &failure) {
                        arv_gc_boolean_set_value(ARV_GC_BOOLEAN(node), value, failure.slot());
                        return ORVALIS_OK;
                    });
}

OResult GenicamNodeMap::getEnumeration(std::string_view name, EnumerationValue &value)
{
    return withNode(name, ORVALIS_NODE_ENUMERATION, Purpose::Read,
                    [&](ArvGcFeatureNode *node, Failure &failure) {
                        return readEnumeration(node, value, failure);
                    });
}

OResult GenicamNodeMap::setEnumeration(std::string_view name, std::string_view entry)
{
    return withNode(name, ORVALIS_NODE_ENUMERATION, Purpose::Write,
                    [&](ArvGcFeatureNode *node, Failure &failure) {
                        return writeEnumeration(node, std::string(entry), failure);
                    });
}

OResult GenicamNodeMap::getText(std::string_view name, std::string &value)
{
    return withNode(name, ORVALIS_NODE_STRING, Purpose::Read,
                    [&](ArvGcFeatureNode *node, Failure &failure) {
                        const std::string text =
                            textOf(arv_gc_string_get_value(ARV_GC_STRING(node), failure.slot()));
                        value = failure ? value : text;
                        return ORVALIS_OK;
                    });
}

OResult GenicamNodeMap::setText(std::string_view name, std::string_view value)
{
    return withNode(name, ORVALIS_NODE_STRING, Purpose::Write,
                    [&](ArvGcFeatureNode *node, Failure &failure) {
                        return writeText(node, std::string(value), failure);
                    });
}

OResult GenicamNodeMap::execute(std::string_view name)
{
    if (name == StreamCounters::resetCommand && !link_.lost()) {
        counters_.reset();
        return ORVALIS_OK;
    }
    return withNode(name, ORVALIS_NODE_COMMAND, Purpose::Write,
                    [&](ArvGcFeatureNode *node, Failure &failure) {
                        arv_gc_command_execute(ARV_GC_COMMAND(node), failure.slot());
                        return ORVALIS_OK;
                    });
}

} // namespace orvalis
