// SPDX-License-Identifier: MIT
// The feature nodes of a real camera: lookup, type, access, reading and writing.
#include "library/genicam/GenicamNodeMap.h"

#include "library/genicam/NodeKind.h"
#include "library/genicam/StringNode.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace orvalis {
namespace {

/// Nodes that a camera cannot change while it streams, even if its description does not say so.
constexpr std::string_view lockedNames[] = {
    "Width",
    "Height",
    "PixelFormat",
    "BinningHorizontal",
    "BinningVertical",
    "DecimationHorizontal",
    "DecimationVertical",
};

/// After this command the camera does not answer for a while.
constexpr std::string_view resetCommand = "DeviceReset";

/// How long to wait for commands. Those of user sets write to flash memory.
constexpr auto commandTimeout = std::chrono::seconds(1);
constexpr auto userSetTimeout = std::chrono::seconds(5);
/// The pause between two polls of a running command.
constexpr std::chrono::milliseconds minPollInterval{1};
constexpr std::chrono::milliseconds maxPollInterval{32};

bool isLockedByName(ArvGcFeatureNode *node)
{
    const char *name = arv_gc_feature_node_get_name(node);
    return name != nullptr &&
           std::ranges::find(lockedNames, std::string_view(name)) != std::ranges::end(lockedNames);
}

/// True if the camera's description states when the node is locked.
bool hasLockProperty(ArvGcFeatureNode *node)
{
    for (ArvDomNode *child = arv_dom_node_get_first_child(ARV_DOM_NODE(node)); child != nullptr;
         child = arv_dom_node_get_next_sibling(child))
        if (textOf(arv_dom_node_get_node_name(child)) == "pIsLocked")
            return true;
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
    if (name == StreamCounters::category)
        return ORVALIS_NODE_CATEGORY;
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

/// True unless the command is still running. Its register holds the command's value until the end,
/// and a camera may refuse to answer meanwhile. If the register cannot be read, the command counts
/// as done.
bool isDone(ArvGcFeatureNode *command)
{
    ArvGcNode *const target = valueNodeOf(ARV_GC_NODE(command));
    ArvGcPropertyNode *value =
        propertyOf(ARV_GC_NODE(command), ARV_GC_PROPERTY_NODE_TYPE_COMMAND_VALUE);
    if (value == nullptr)
        value = propertyOf(ARV_GC_NODE(command), ARV_GC_PROPERTY_NODE_TYPE_P_COMMAND_VALUE);
    if (!ARV_IS_GC_INTEGER(target) || value == nullptr ||
        arv_gc_feature_node_get_actual_access_mode(ARV_GC_FEATURE_NODE(target)) ==
            ARV_GC_ACCESS_MODE_WO)
        return true;
    Failure failure;
    const gint64 running = arv_gc_property_node_get_int64(value, failure.slot());
    if (failure)
        return true;
    const gint64 present = arv_gc_integer_get_value(ARV_GC_INTEGER(target), failure.slot());
    return !failure && present != running;
}

/// The result for a call that does not fit a node of the library's own.
OResult refusal(std::string_view name, ONodeType type)
{
    return ourType(name) == type ? ORVALIS_ERROR_ACCESS_DENIED : ORVALIS_ERROR_WRONG_TYPE;
}

} // namespace

ArvGcFeatureNode *GenicamNodeMap::find(std::string_view name) const
{
    if (name == RegisterMemo::epochName)
        return nullptr; // the library's own, not the camera's
    ArvGcNode *node = arv_gc_get_node(link_.genicam(), std::string(name).c_str());
    return ARV_IS_GC_FEATURE_NODE(node) ? ARV_GC_FEATURE_NODE(node) : nullptr;
}

void GenicamNodeMap::beginAccess()
{
    stale_ = true;
    ++accesses_;
}

/// The only user of the engine's cache: a stream accesses its nodes without it. A write goes
/// directly to the camera and empties the cache.
OResult GenicamNodeMap::workOn(ArvGcFeatureNode *node, Purpose purpose, const Work &work)
{
    if (!memo_)
        memo_.emplace(link_.genicam());
    if (stale_.exchange(false))
        memo_->forget();
    if (accesses_ > 0 && purpose != Purpose::Write)
        memo_->use();
    Failure failure;
    const OResult result = work(node, failure);
    memo_->stop();
    if (purpose == Purpose::Write)
        stale_ = true;
    return failure ? link_.resultOf(failure) : result;
}

OResult GenicamNodeMap::withAnyNode(std::string_view name, const Work &work, Purpose purpose)
{
    const CameraLink::Lock lock = link_.acquire();
    if (!lock)
        return ORVALIS_ERROR_CONNECTION_LOST;
    ArvGcFeatureNode *node = find(name);
    if (node == nullptr)
        return ORVALIS_ERROR_NOT_FOUND;
    return workOn(node, purpose, work);
}

OResult GenicamNodeMap::withNode(std::string_view name, ONodeType type, Purpose purpose,
                                 const Work &work)
{
    if (isOurs(name))
        return link_.lost() ? ORVALIS_ERROR_CONNECTION_LOST : refusal(name, type);
    return withAnyNode(
        name,
        [&](ArvGcFeatureNode *node, Failure &failure) {
            if (nodeType(node) != type)
                return ORVALIS_ERROR_WRONG_TYPE;
            if (!reach_.isSound(node, failure))
                return ORVALIS_ERROR_DEVICE;
            const OAccessMode mode = access(node, failure);
            if (failure)
                return ORVALIS_ERROR_DEVICE;
            const bool allowed = mode == ORVALIS_ACCESS_READ_WRITE ||
                                 mode == (purpose == Purpose::Read ? ORVALIS_ACCESS_READ_ONLY
                                                                   : ORVALIS_ACCESS_WRITE_ONLY);
            return allowed ? work(node, failure) : ORVALIS_ERROR_ACCESS_DENIED;
        },
        purpose);
}

bool GenicamNodeMap::locked(ArvGcFeatureNode *node, Failure &failure) const
{
    if (streaming_ && isLockedByName(node))
        return true;
    const bool locked = arv_gc_feature_node_is_locked(node, failure.slot()) != FALSE;
    if (failure && !failure.isSilence()) {
        failure.slot(); // unknown: the camera refuses the write if the node is locked
        return false;
    }
    return locked;
}

OAccessMode GenicamNodeMap::access(ArvGcFeatureNode *node, Failure &failure) const
{
    if (!arv_gc_feature_node_is_implemented(node, failure.slot()) || failure)
        return ORVALIS_ACCESS_NOT_IMPLEMENTED;
    if (!arv_gc_feature_node_is_available(node, failure.slot()) || failure)
        return ORVALIS_ACCESS_NOT_AVAILABLE;
    const ONodeType type = nodeType(node);
    if (type == ORVALIS_NODE_CATEGORY)
        return ORVALIS_ACCESS_READ_ONLY;
    const ArvGcAccessMode mode = arv_gc_feature_node_get_actual_access_mode(node);
    if (mode == ARV_GC_ACCESS_MODE_RO && type != ORVALIS_NODE_COMMAND)
        return ORVALIS_ACCESS_READ_ONLY;
    if (locked(node, failure))
        return ORVALIS_ACCESS_READ_ONLY;
    // Commands are only written, but users regard them as available.
    return mode == ARV_GC_ACCESS_MODE_WO && type != ORVALIS_NODE_COMMAND
               ? ORVALIS_ACCESS_WRITE_ONLY
               : ORVALIS_ACCESS_READ_WRITE;
}

OResult GenicamNodeMap::list(std::string_view category, std::vector<std::string> &children)
{
    std::vector<std::string> names;
    if (isOurs(category)) {
        if (link_.lost())
            return ORVALIS_ERROR_CONNECTION_LOST;
        if (category == StreamCounters::category) {
            for (const StreamCounters::Node &node : StreamCounters::nodes)
                names.emplace_back(node.name);
            names.emplace_back(StreamCounters::resetCommand);
        }
        children = std::move(names);
        return ORVALIS_OK;
    }
    const OResult result = withAnyNode(category, [&](ArvGcFeatureNode *node, Failure &) {
        if (!ARV_IS_GC_CATEGORY(node))
            return ORVALIS_OK;
        for (const GSList *item = arv_gc_category_get_features(ARV_GC_CATEGORY(node));
             item != nullptr; item = item->next) {
            const std::string name = textOf(static_cast<const char *>(item->data));
            if (find(name) != nullptr)
                names.push_back(name);
        }
        return ORVALIS_OK;
    });
    if (result != ORVALIS_OK)
        return result;
    if (category == "Root")
        names.emplace_back(StreamCounters::category);
    children = std::move(names);
    return ORVALIS_OK;
}

OResult GenicamNodeMap::info(std::string_view name, NodeInfo &info)
{
    if (isOurs(name)) {
        if (link_.lost())
            return ORVALIS_ERROR_CONNECTION_LOST;
        info = ourInfo(name);
        return ORVALIS_OK;
    }
    return withAnyNode(name, [&](ArvGcFeatureNode *node, Failure &failure) {
        NodeInfo found = describe(node);
        found.access =
            reach_.isSound(node, failure) ? access(node, failure) : ORVALIS_ACCESS_NOT_AVAILABLE;
        if (failure && !failure.isSilence()) {
            // A node whose state cannot be read exists, but is not available.
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
    return withNode(
        name, ORVALIS_NODE_INTEGER, Purpose::Write,
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

/// Ignores availability, which is a rule of the description: the registers may answer anyway.
OResult GenicamNodeMap::peekNumber(std::string_view name, FloatValue &value)
{
    return withAnyNode(
        name,
        [&](ArvGcFeatureNode *node, Failure &failure) {
            if (!reach_.isSound(node, failure))
                return ORVALIS_ERROR_DEVICE;
            if (nodeType(node) == ORVALIS_NODE_FLOAT)
                return readFloat(node, value, failure);
            if (nodeType(node) != ORVALIS_NODE_INTEGER)
                return ORVALIS_ERROR_WRONG_TYPE;
            IntegerValue integer;
            const OResult result = readInteger(node, integer, failure);
            if (result == ORVALIS_OK && !failure)
                value = asFloat(integer);
            return result;
        });
}

OResult GenicamNodeMap::getPart(std::string_view name, NumberPart part, FloatValue &value)
{
    if (isOurs(name))
        return NodeMap::getPart(name, part, value);
    const auto read = [&](ArvGcFeatureNode *node, Failure &failure) {
        return readPart(node, part, value, failure);
    };
    const OResult result = withNode(name, ORVALIS_NODE_FLOAT, Purpose::Read, read);
    return result == ORVALIS_ERROR_WRONG_TYPE
               ? withNode(name, ORVALIS_NODE_INTEGER, Purpose::Read, read)
               : result;
}

OResult GenicamNodeMap::getBoolean(std::string_view name, bool &value)
{
    return withNode(
        name, ORVALIS_NODE_BOOLEAN, Purpose::Read,
        [&](ArvGcFeatureNode *node, Failure &failure) {
            const bool found =
                arv_gc_boolean_get_value(ARV_GC_BOOLEAN(node), failure.slot()) != FALSE;
            value = failure ? value : found;
            return ORVALIS_OK;
        });
}

OResult GenicamNodeMap::setBoolean(std::string_view name, bool value)
{
    return withNode(
        name, ORVALIS_NODE_BOOLEAN, Purpose::Write,
        [&](ArvGcFeatureNode *node, Failure &failure) {
            arv_gc_boolean_set_value(ARV_GC_BOOLEAN(node), value, failure.slot());
            return ORVALIS_OK;
        });
}

OResult GenicamNodeMap::getEnumeration(std::string_view name, EnumerationValue &value)
{
    return withNode(
        name, ORVALIS_NODE_ENUMERATION, Purpose::Read,
        [&](ArvGcFeatureNode *node, Failure &failure) {
            return readEnumeration(node, reach_, value, failure);
        });
}

OResult GenicamNodeMap::getEntries(std::string_view name, std::vector<std::string> &entries)
{
    return withNode(
        name, ORVALIS_NODE_ENUMERATION, Purpose::Read,
        [&](ArvGcFeatureNode *node, Failure &) {
            EnumerationValue value;
            value.entries = offeredEntries(node, reach_);
            entries = namesOf(value);
            return ORVALIS_OK;
        });
}

OResult GenicamNodeMap::getEntry(std::string_view name, std::string &entry)
{
    return withNode(
        name, ORVALIS_NODE_ENUMERATION, Purpose::Read,
        [&](ArvGcFeatureNode *node, Failure &failure) {
            return readEntry(node, reach_, entry, failure);
        });
}

OResult GenicamNodeMap::setEnumeration(std::string_view name, std::string_view entry)
{
    return withNode(
        name, ORVALIS_NODE_ENUMERATION, Purpose::Write,
        [&](ArvGcFeatureNode *node, Failure &failure) {
            return writeEnumeration(node, reach_, std::string(entry), failure);
        });
}

OResult GenicamNodeMap::getText(std::string_view name, std::string &value)
{
    return withNode(
        name, ORVALIS_NODE_STRING, Purpose::Read,
        [&](ArvGcFeatureNode *node, Failure &failure) { return readText(node, value, failure); });
}

OResult GenicamNodeMap::setText(std::string_view name, std::string_view value)
{
    return withNode(
        name, ORVALIS_NODE_STRING, Purpose::Write,
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
    bool done = true;
    const OResult result = withNode(
        name, ORVALIS_NODE_COMMAND, Purpose::Write, [&](ArvGcFeatureNode *node, Failure &failure) {
            arv_gc_command_execute(ARV_GC_COMMAND(node), failure.slot());
            done =
                failure || name == resetCommand || timedOutCommands_.contains(name) || isDone(node);
            return ORVALIS_OK;
        });
    if (!done)
        awaitCommand(name);
    return result;
}

/// Waits until a command is done. Releases the link's lock between polls; the caller still holds
/// the node lock that protects the selectors.
void GenicamNodeMap::awaitCommand(std::string_view name)
{
    const bool isUserSet = name.starts_with("UserSet");
    const Clock::time_point limit = Clock::now() + (isUserSet ? userSetTimeout : commandTimeout);
    auto pause = minPollInterval;
    bool done = false;
    while (!done && !link_.lost() && Clock::now() < limit) {
        std::this_thread::sleep_for(pause);
        pause = std::min(2 * pause, maxPollInterval);
        invalidateRegisters();
        withAnyNode(name, [&](ArvGcFeatureNode *node, Failure &) {
            done = isDone(node);
            return ORVALIS_OK;
        });
    }
    if (!done) {
        withAnyNode(
            name,
            [&](ArvGcFeatureNode *, Failure &) {
                timedOutCommands_.emplace(name);
                return ORVALIS_OK;
            });
    }
}

} // namespace orvalis
