// SPDX-License-Identifier: MIT
// Checks what a camera's description makes the engine do for one node.
#include "library/genicam/NodeReach.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace orvalis {
namespace {

/// The maximum depth of links from a node to its register. Real cameras have up to ten.
constexpr unsigned maxDepth = 64;

/// The maximum size of a number in bytes.
constexpr std::uint64_t maxNumberSize = 8;
/// Texts of any length are permitted, because only the part that fits is read.
constexpr std::uint64_t maxTextSize = std::numeric_limits<std::uint32_t>::max();

/// The kind of link determines when the engine follows it.
enum class Link { None, Value, State };

Link linkOf(ArvGcPropertyNodeType type)
{
    switch (type) {
    case ARV_GC_PROPERTY_NODE_TYPE_P_VALUE:
    case ARV_GC_PROPERTY_NODE_TYPE_P_ADDRESS:
    case ARV_GC_PROPERTY_NODE_TYPE_P_INDEX:
    case ARV_GC_PROPERTY_NODE_TYPE_P_LENGTH:
    case ARV_GC_PROPERTY_NODE_TYPE_P_VARIABLE:
    case ARV_GC_PROPERTY_NODE_TYPE_P_COMMAND_VALUE:
    case ARV_GC_PROPERTY_NODE_TYPE_P_VALUE_INDEXED:
    case ARV_GC_PROPERTY_NODE_TYPE_P_VALUE_DEFAULT:
        return Link::Value;
    case ARV_GC_PROPERTY_NODE_TYPE_P_IS_IMPLEMENTED:
    case ARV_GC_PROPERTY_NODE_TYPE_P_IS_AVAILABLE:
    case ARV_GC_PROPERTY_NODE_TYPE_P_IS_LOCKED:
    case ARV_GC_PROPERTY_NODE_TYPE_P_MINIMUM:
    case ARV_GC_PROPERTY_NODE_TYPE_P_MAXIMUM:
    case ARV_GC_PROPERTY_NODE_TYPE_P_INCREMENT:
        return Link::State;
    default:
        return Link::None;
    }
}

ArvGcPropertyNodeType typeOf(ArvDomNode *property)
{
    return arv_gc_property_node_get_node_type(ARV_GC_PROPERTY_NODE(property));
}

/// The register that contains a structure entry; for other nodes the node itself.
ArvGcNode *registerOf(ArvGcNode *node)
{
    ArvDomNode *parent = arv_dom_node_get_parent_node(ARV_DOM_NODE(node));
    return ARV_IS_GC_STRUCT_ENTRY_NODE(node) && ARV_IS_GC_NODE(parent) ? ARV_GC_NODE(parent) : node;
}

bool canBe(std::uint64_t length, ArvGcRegister *node)
{
    return length > 0 && length <= (ARV_IS_GC_STRING(node) ? maxTextSize : maxNumberSize);
}

} // namespace

void NodeReach::Cost::add(const Cost &other)
{
    reads = std::min(reads + other.reads, maxReads + 1);
    for (ArvGcRegister *node : other.sized)
        if (std::ranges::find(sized, node) == sized.end())
            sized.push_back(node);
}

/// Calls body(linked node, property) for each link of a node and of the register that contains it.
template <class Body> void NodeReach::eachLink(ArvGcNode *node, Body body)
{
    for (ArvDomNode *child = arv_dom_node_get_first_child(ARV_DOM_NODE(node)); child != nullptr;
         child = arv_dom_node_get_next_sibling(child)) {
        if (!ARV_IS_GC_PROPERTY_NODE(child) || linkOf(typeOf(child)) == Link::None)
            continue;
        if (ArvGcNode *linked = arv_gc_property_node_get_linked_node(ARV_GC_PROPERTY_NODE(child)))
            body(linked, typeOf(child));
    }
    if (ArvGcNode *whole = registerOf(node); whole != node)
        eachLink(whole, body);
}

NodeReach::Cost NodeReach::ownCost(ArvGcNode *node) const
{
    ArvGcNode *whole = registerOf(node);
    if (!ARV_IS_GC_REGISTER(whole))
        return {};
    ArvGcRegister *const memory = ARV_GC_REGISTER(whole);
    if (propertyOf(whole, ARV_GC_PROPERTY_NODE_TYPE_P_LENGTH) != nullptr)
        return {1, {memory}};
    Failure failure;
    const bool bad = propertyOf(whole, ARV_GC_PROPERTY_NODE_TYPE_LENGTH) != nullptr &&
                     !canBe(arv_gc_register_get_length(memory, failure.slot()), memory);
    return {bad ? maxReads + 1 : 1, {}};
}

NodeReach::Cost NodeReach::valueCost(ArvGcNode *node, unsigned depth)
{
    if (const auto known = values_.find(node); known != values_.end())
        return known->second;
    if (depth > maxDepth)
        return {maxReads + 1, {}};
    values_[node] = {maxReads + 1, {}}; // found again through a circular link
    Cost cost = ownCost(node);
    eachLink(node, [&](ArvGcNode *linked, ArvGcPropertyNodeType type) {
        if (linkOf(type) == Link::Value)
            cost.add(valueCost(linked, depth + 1));
    });
    return values_[node] = cost;
}

NodeReach::Cost NodeReach::fullCost(ArvGcNode *node, unsigned depth)
{
    if (const auto known = whole_.find(node); known != whole_.end())
        return known->second;
    Cost cost = valueCost(node, depth);
    if (cost.reads > maxReads)
        return whole_[node] = cost;
    eachLink(node, [&](ArvGcNode *linked, ArvGcPropertyNodeType type) {
        if (linkOf(type) == Link::State)
            cost.add(valueCost(linked, depth + 1));
        else if (type == ARV_GC_PROPERTY_NODE_TYPE_P_VALUE)
            cost.add(fullCost(linked, depth + 1)); // the engine reads its bounds as well
    });
    return whole_[node] = cost;
}

bool NodeReach::isSound(ArvGcFeatureNode *node, Failure &failure)
{
    const Cost &cost = fullCost(ARV_GC_NODE(node), 0);
    if (cost.reads > maxReads)
        return false;
    return std::ranges::all_of(cost.sized, [&](ArvGcRegister *memory) {
        const std::uint64_t length = arv_gc_register_get_length(memory, failure.slot());
        return !failure && canBe(length, memory);
    });
}

ArvGcPropertyNode *propertyOf(ArvGcNode *node, ArvGcPropertyNodeType type)
{
    for (ArvDomNode *child = arv_dom_node_get_first_child(ARV_DOM_NODE(node)); child != nullptr;
         child = arv_dom_node_get_next_sibling(child))
        if (ARV_IS_GC_PROPERTY_NODE(child) && typeOf(child) == type)
            return ARV_GC_PROPERTY_NODE(child);
    return nullptr;
}

ArvGcNode *valueNodeOf(ArvGcNode *node)
{
    ArvGcPropertyNode *link = propertyOf(node, ARV_GC_PROPERTY_NODE_TYPE_P_VALUE);
    return link != nullptr ? arv_gc_property_node_get_linked_node(link) : nullptr;
}

} // namespace orvalis
