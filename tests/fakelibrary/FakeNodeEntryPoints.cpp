// SPDX-License-Identifier: MIT
// Entry points of the recording camera library: the generic feature nodes.
#include "tests/fakelibrary/FakeLibrary.h"

#include <algorithm>
#include <charconv>
#include <cstring>

using fakeorvalis::Call;
using fakeorvalis::Node;
using fakeorvalis::putText;
using fakeorvalis::State;

namespace {

using Result = std::int32_t;
constexpr int anyType = -1;

enum class Use { describe, read, write };

bool isAllowed(std::int32_t access, Use use)
{
    if (use == Use::describe || access == ORVALIS_ACCESS_READ_WRITE)
        return true;
    return access == (use == Use::read ? ORVALIS_ACCESS_READ_ONLY : ORVALIS_ACCESS_WRITE_ONLY);
}

/// Finds a node, checks its type and access, and calls `body` to answer.
template <typename Body>
Result withNode(Call &call, const char *name, int type, Use use, const Body &body)
{
    return call.answer([&](State &state) -> Result {
        const auto found = state.nodes.find(name);
        if (found == state.nodes.end())
            return ORVALIS_ERROR_NOT_FOUND;
        if (type != anyType && found->second.type != type)
            return ORVALIS_ERROR_WRONG_TYPE;
        if (!isAllowed(found->second.access, use))
            return ORVALIS_ERROR_ACCESS_DENIED;
        return body(found->second);
    });
}

/// Bounds that are both 0 mean no bounds.
template <typename Record, typename Value> bool fits(const Record &record, Value value)
{
    const bool unbounded = record.minimum >= 0 && record.maximum <= 0;
    return unbounded || (value >= record.minimum && value <= record.maximum);
}

template <typename Record, typename Value> Result setNumber(Record &record, Value value)
{
    if (!fits(record, value))
        return ORVALIS_ERROR_OUT_OF_RANGE;
    record.value = value;
    return ORVALIS_OK;
}

Result setEntry(Node &node, const std::string &entry)
{
    if (std::find(node.entries.begin(), node.entries.end(), entry) == node.entries.end())
        return ORVALIS_ERROR_NOT_FOUND;
    node.text = entry;
    return ORVALIS_OK;
}

template <typename Record> Result setNumberFromText(Record &record, const std::string &text)
{
    decltype(record.value) value{};
    const char *const end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stopped != end)
        return ORVALIS_ERROR_BAD_ARGUMENT;
    return setNumber(record, value);
}

Result setBooleanFromText(Node &node, const std::string &text)
{
    if (text != "0" && text != "1")
        return ORVALIS_ERROR_BAD_ARGUMENT;
    node.boolean = text == "1";
    return ORVALIS_OK;
}

Result setFromText(Node &node, const std::string &text)
{
    switch (node.type) {
    case ORVALIS_NODE_STRING:
        node.text = text;
        return ORVALIS_OK;
    case ORVALIS_NODE_ENUMERATION:
        return setEntry(node, text);
    case ORVALIS_NODE_INTEGER:
        return setNumberFromText(node.integer, text);
    case ORVALIS_NODE_FLOAT:
        return setNumberFromText(node.real, text);
    case ORVALIS_NODE_BOOLEAN:
        return setBooleanFromText(node, text);
    default:
        return ORVALIS_ERROR_WRONG_TYPE;
    }
}

bool hasText(const Node &node)
{
    return node.type >= ORVALIS_NODE_STRING && node.type <= ORVALIS_NODE_BOOLEAN;
}

std::string textOf(const Node &node)
{
    switch (node.type) {
    case ORVALIS_NODE_INTEGER:
        return std::to_string(node.integer.value);
    case ORVALIS_NODE_FLOAT:
        return fakeorvalis::shortest(node.real.value);
    case ORVALIS_NODE_BOOLEAN:
        return node.boolean ? "1" : "0";
    default:
        return node.text;
    }
}

/// Guaranteed size of the caller's buffer in bytes: callers may pass a short one for enumerations.
std::size_t textCapacity(const char *name)
{
    std::size_t size = ORVALIS_NAME_SIZE;
    fakeorvalis::withState([&](State &state) {
        const auto found = name ? state.nodes.find(name) : state.nodes.end();
        if (found != state.nodes.end() && found->second.type != ORVALIS_NODE_ENUMERATION)
            size = ORVALIS_TEXT_SIZE;
    });
    return size;
}

/// Writes `names` up to the capacity of the caller's table.
template <std::size_t capacity>
std::uint32_t putNames(char (&table)[capacity][ORVALIS_TEXT_SIZE], std::uint32_t room,
                       const std::vector<std::string> &names)
{
    const std::size_t count = std::min({capacity, std::size_t{room}, names.size()});
    for (std::size_t index = 0; index < count; ++index)
        putText(table[index], ORVALIS_TEXT_SIZE, names[index]);
    return static_cast<std::uint32_t>(count);
}

void describe(const std::string &name, const Node &node, ONodeInfo &info)
{
    info = {};
    info.type = node.type;
    info.accessMode = node.access;
    putText(info.displayName, sizeof info.displayName, name);
    putText(info.description, sizeof info.description, "Node " + name);
}

Result getEntries(const Node &node, OEnumNode &record)
{
    record.count = putNames(record.names, record.count, node.entries);
    record.currentIndex = -1;
    for (std::uint32_t index = 0; index < record.count; ++index) {
        record.values[index] = static_cast<std::int32_t>(index);
        if (node.entries[index] == node.text)
            record.currentIndex = static_cast<std::int32_t>(index);
    }
    return ORVALIS_OK;
}

Call nodeCall(const char *function, OCameraHandle handle, const char *name)
{
    Call call(function);
    call.handle(handle).in(name);
    return call;
}

} // namespace

int32_t OrvalisGetNodeList(OCameraHandle handle, const char *parent, ONodeList *list)
{
    Call call = nodeCall("OrvalisGetNodeList", handle, parent);
    const Result result =
        withNode(call.out(list), parent, anyType, Use::describe, [=](const Node &node) -> Result {
            list->count = putNames(list->names, list->count, node.children);
            return ORVALIS_OK;
        });
    // Callers read only the count, so even a failure must set it, except in hostile mode.
    fakeorvalis::Library &fake = fakeorvalis::library();
    const std::lock_guard lock(fake.mutex);
    if (result != ORVALIS_OK && list && !fake.hostile)
        list->count = 0;
    return result;
}

int32_t OrvalisGetNodeInfo(OCameraHandle handle, const char *name, ONodeInfo *info)
{
    Call call = nodeCall("OrvalisGetNodeInfo", handle, name);
    return withNode(call.out(info), name, anyType, Use::describe, [=](const Node &node) -> Result {
        describe(name, node, *info);
        return ORVALIS_OK;
    });
}

int32_t OrvalisGetNodeInt(OCameraHandle handle, const char *name, OIntNode *node)
{
    Call call = nodeCall("OrvalisGetNodeInt", handle, name);
    return withNode(call.out(node), name, ORVALIS_NODE_INTEGER, Use::read,
                    [=](const Node &held) -> Result {
                        *node = held.integer;
                        return ORVALIS_OK;
                    });
}

int32_t OrvalisSetNodeInt(OCameraHandle handle, const char *name, int32_t value)
{
    Call call = nodeCall("OrvalisSetNodeInt", handle, name);
    return withNode(call.in(value), name, ORVALIS_NODE_INTEGER, Use::write,
                    [=](Node &node) { return setNumber(node.integer, value); });
}

int32_t OrvalisGetNodeFloat(OCameraHandle handle, const char *name, OFloatNode *node)
{
    Call call = nodeCall("OrvalisGetNodeFloat", handle, name);
    return withNode(call.out(node), name, ORVALIS_NODE_FLOAT, Use::read,
                    [=](const Node &held) -> Result {
                        *node = held.real;
                        return ORVALIS_OK;
                    });
}

int32_t OrvalisSetNodeFloat(OCameraHandle handle, const char *name, double value)
{
    Call call = nodeCall("OrvalisSetNodeFloat", handle, name);
    return withNode(call.in(value), name, ORVALIS_NODE_FLOAT, Use::write,
                    [=](Node &node) { return setNumber(node.real, value); });
}

int32_t OrvalisGetNodeBoolean(OCameraHandle handle, const char *name, bool *value)
{
    Call call = nodeCall("OrvalisGetNodeBoolean", handle, name);
    return withNode(call.out(value), name, ORVALIS_NODE_BOOLEAN, Use::read,
                    [=](const Node &node) -> Result {
                        *value = node.boolean;
                        return ORVALIS_OK;
                    });
}

int32_t OrvalisSetNodeBoolean(OCameraHandle handle, const char *name, bool value)
{
    Call call = nodeCall("OrvalisSetNodeBoolean", handle, name);
    return withNode(call.in(value), name, ORVALIS_NODE_BOOLEAN, Use::write,
                    [=](Node &node) -> Result {
                        node.boolean = value;
                        return ORVALIS_OK;
                    });
}

int32_t OrvalisGetNodeEnum(OCameraHandle handle, const char *name, OEnumNode *node)
{
    Call call = nodeCall("OrvalisGetNodeEnum", handle, name);
    return withNode(call.out(node), name, ORVALIS_NODE_ENUMERATION, Use::read,
                    [=](const Node &held) { return getEntries(held, *node); });
}

int32_t OrvalisSetNodeEnum(OCameraHandle handle, const char *name, const char *entry)
{
    Call call = nodeCall("OrvalisSetNodeEnum", handle, name);
    return withNode(call.in(entry), name, ORVALIS_NODE_ENUMERATION, Use::write,
                    [=](Node &node) { return setEntry(node, entry); });
}

int32_t OrvalisGetNodeString(OCameraHandle handle, const char *name, char *text)
{
    const std::size_t size = textCapacity(name);
    Call call = nodeCall("OrvalisGetNodeString", handle, name);
    return withNode(call.textOut(text, size), name, anyType, Use::read,
                    [=](const Node &node) -> Result {
                        if (!hasText(node))
                            return ORVALIS_ERROR_WRONG_TYPE;
                        putText(text, size, textOf(node));
                        return ORVALIS_OK;
                    });
}

int32_t OrvalisSetNodeString(OCameraHandle handle, const char *name, const char *text)
{
    Call call = nodeCall("OrvalisSetNodeString", handle, name);
    return withNode(call.in(text), name, anyType, Use::write,
                    [=](Node &node) { return setFromText(node, text); });
}

int32_t OrvalisSetNodeCommand(OCameraHandle handle, const char *name)
{
    Call call = nodeCall("OrvalisSetNodeCommand", handle, name);
    return withNode(call, name, ORVALIS_NODE_COMMAND, Use::write,
                    [](Node &) -> Result { return ORVALIS_OK; });
}
