// SPDX-License-Identifier: MIT
// A node map that a test defines.
#include "tests/library/core/ScriptedNodes.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace orvalis::test {

namespace {

std::string shown(double value)
{
    std::ostringstream text;
    text << value;
    return text.str();
}

} // namespace

ScriptedNode integerNode(double value, double minimum, double maximum, double increment)
{
    return {ORVALIS_NODE_INTEGER, value, minimum, maximum, increment};
}

ScriptedNode floatNode(double value, double minimum, double maximum)
{
    return {ORVALIS_NODE_FLOAT, value, minimum, maximum, 0};
}

ScriptedNode booleanNode(bool value) { return {ORVALIS_NODE_BOOLEAN, value ? 1.0 : 0.0}; }

ScriptedNode enumNode(std::vector<std::string> entries, int current)
{
    return {ORVALIS_NODE_ENUMERATION, static_cast<double>(current), 0, 0, 0, std::move(entries)};
}

ScriptedNode textNode(std::string text)
{
    ScriptedNode node{ORVALIS_NODE_STRING};
    node.text = std::move(text);
    return node;
}

ScriptedNode commandNode() { return {ORVALIS_NODE_COMMAND}; }

void ScriptedNodes::with(const std::function<void()> &change)
{
    const Lock lock(mutex_);
    change();
}

std::vector<std::string> ScriptedNodes::writes()
{
    const Lock lock(mutex_);
    return writes_;
}

ScriptedNodes::Lock ScriptedNodes::enter()
{
    if (beforeAccess)
        beforeAccess();
    return Lock(mutex_);
}

OResult ScriptedNodes::find(std::string_view name, ONodeType type, ScriptedNode *&node)
{
    if (failure != ORVALIS_OK)
        return failure;
    const auto it = nodes.find(name);
    if (it == nodes.end())
        return ORVALIS_ERROR_NOT_FOUND;
    if (it->second.type != type)
        return ORVALIS_ERROR_WRONG_TYPE;
    node = &it->second;
    return node->access < ORVALIS_ACCESS_WRITE_ONLY ? ORVALIS_ERROR_ACCESS_DENIED : ORVALIS_OK;
}

OResult ScriptedNodes::findWritable(std::string_view name, ONodeType type, ScriptedNode *&node)
{
    const OResult result = find(name, type, node);
    if (result == ORVALIS_OK && node->access == ORVALIS_ACCESS_READ_ONLY)
        return ORVALIS_ERROR_ACCESS_DENIED;
    return result;
}

double &ScriptedNodes::valueOf(ScriptedNode &node)
{
    if (node.selector.empty())
        return node.value;
    const ScriptedNode &selector = nodes.at(node.selector);
    return node.selected[selector.entries.at(static_cast<std::size_t>(selector.value))];
}

void ScriptedNodes::wrote(const std::string &what)
{
    writes_.push_back(what);
    if (afterWrite)
        afterWrite();
}

OResult ScriptedNodes::list(std::string_view category, std::vector<std::string> &children)
{
    const Lock lock = enter();
    if (failure != ORVALIS_OK)
        return failure;
    const auto it = nodes.find(category);
    if (it == nodes.end())
        return ORVALIS_ERROR_NOT_FOUND;
    children = it->second.children;
    return ORVALIS_OK;
}

OResult ScriptedNodes::info(std::string_view name, NodeInfo &info)
{
    const Lock lock = enter();
    if (failure != ORVALIS_OK)
        return failure;
    const auto it = nodes.find(name);
    if (it == nodes.end())
        return ORVALIS_ERROR_NOT_FOUND;
    info = {};
    info.type = it->second.type;
    info.access = it->second.access;
    info.displayName = name;
    return ORVALIS_OK;
}

OResult ScriptedNodes::getInteger(std::string_view name, IntegerValue &value)
{
    const Lock lock = enter();
    ScriptedNode *node = nullptr;
    const OResult result = find(name, ORVALIS_NODE_INTEGER, node);
    if (result == ORVALIS_OK)
        value = {static_cast<std::int64_t>(valueOf(*node)),
                 static_cast<std::int64_t>(node->minimum), static_cast<std::int64_t>(node->maximum),
                 static_cast<std::int64_t>(node->increment)};
    return result;
}

OResult ScriptedNodes::setInteger(std::string_view name, std::int64_t value)
{
    const Lock lock = enter();
    ScriptedNode *node = nullptr;
    if (const OResult result = findWritable(name, ORVALIS_NODE_INTEGER, node); result != ORVALIS_OK)
        return result;
    const auto wanted = static_cast<double>(value);
    if (wanted < node->minimum || wanted > node->maximum)
        return ORVALIS_ERROR_OUT_OF_RANGE;
    valueOf(*node) =
        node->minimum + std::floor((wanted - node->minimum) / node->increment) * node->increment;
    wrote(std::string(name) + "=" + shown(valueOf(*node)));
    return ORVALIS_OK;
}

OResult ScriptedNodes::getFloat(std::string_view name, FloatValue &value)
{
    const Lock lock = enter();
    ScriptedNode *node = nullptr;
    const OResult result = find(name, ORVALIS_NODE_FLOAT, node);
    if (result == ORVALIS_OK)
        value = {valueOf(*node), node->minimum, node->maximum, node->increment};
    return result;
}

OResult ScriptedNodes::setFloat(std::string_view name, double value)
{
    const Lock lock = enter();
    ScriptedNode *node = nullptr;
    if (const OResult result = findWritable(name, ORVALIS_NODE_FLOAT, node); result != ORVALIS_OK)
        return result;
    if (!(value >= node->minimum && value <= node->maximum))
        return ORVALIS_ERROR_OUT_OF_RANGE;
    valueOf(*node) = value;
    wrote(std::string(name) + "=" + shown(value));
    return ORVALIS_OK;
}

OResult ScriptedNodes::getBoolean(std::string_view name, bool &value)
{
    const Lock lock = enter();
    ScriptedNode *node = nullptr;
    const OResult result = find(name, ORVALIS_NODE_BOOLEAN, node);
    if (result == ORVALIS_OK)
        value = valueOf(*node) != 0;
    return result;
}

OResult ScriptedNodes::setBoolean(std::string_view name, bool value)
{
    const Lock lock = enter();
    ScriptedNode *node = nullptr;
    const OResult result = findWritable(name, ORVALIS_NODE_BOOLEAN, node);
    if (result == ORVALIS_OK) {
        valueOf(*node) = value ? 1 : 0;
        wrote(std::string(name) + (value ? "=1" : "=0"));
    }
    return result;
}

OResult ScriptedNodes::getEnumeration(std::string_view name, EnumerationValue &value)
{
    const Lock lock = enter();
    ScriptedNode *node = nullptr;
    if (const OResult result = find(name, ORVALIS_NODE_ENUMERATION, node); result != ORVALIS_OK)
        return result;
    value = {};
    for (std::size_t i = 0; i < node->entries.size(); ++i)
        value.entries.push_back({node->entries[i], i < node->entryValues.size()
                                                       ? node->entryValues[i]
                                                       : static_cast<std::int64_t>(i)});
    value.current = static_cast<int>(valueOf(*node));
    return ORVALIS_OK;
}

OResult ScriptedNodes::setEnumeration(std::string_view name, std::string_view entry)
{
    const Lock lock = enter();
    ScriptedNode *node = nullptr;
    if (const OResult result = findWritable(name, ORVALIS_NODE_ENUMERATION, node);
        result != ORVALIS_OK)
        return result;
    const auto it = std::find(node->entries.begin(), node->entries.end(), entry);
    if (it == node->entries.end())
        return ORVALIS_ERROR_NOT_FOUND;
    valueOf(*node) = static_cast<double>(it - node->entries.begin());
    wrote(std::string(name) + "=" + std::string(entry));
    return ORVALIS_OK;
}

OResult ScriptedNodes::getText(std::string_view name, std::string &value)
{
    const Lock lock = enter();
    ScriptedNode *node = nullptr;
    const OResult result = find(name, ORVALIS_NODE_STRING, node);
    if (result == ORVALIS_OK)
        value = node->text;
    return result;
}

OResult ScriptedNodes::setText(std::string_view name, std::string_view value)
{
    const Lock lock = enter();
    ScriptedNode *node = nullptr;
    const OResult result = findWritable(name, ORVALIS_NODE_STRING, node);
    if (result == ORVALIS_OK) {
        node->text = value;
        wrote(std::string(name) + "=" + node->text);
    }
    return result;
}

OResult ScriptedNodes::execute(std::string_view name)
{
    const Lock lock = enter();
    ScriptedNode *node = nullptr;
    const OResult result = findWritable(name, ORVALIS_NODE_COMMAND, node);
    if (result == ORVALIS_OK)
        wrote(std::string(name) + "()");
    return result;
}

} // namespace orvalis::test
