// SPDX-License-Identifier: MIT
// Converts node values to text and back, independent of the locale.
#include "library/core/NodeText.h"

#include <charconv>

namespace orvalis {

namespace {

template <class Value> std::string decimal(Value value)
{
    char text[64];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value);
    return error == std::errc() ? std::string(text, end) : std::string();
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kBlank = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlank);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

template <class Value> OResult parse(std::string_view text, Value &value)
{
    text = trimmed(text);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (stop != end || error == std::errc::invalid_argument)
        return ORVALIS_ERROR_BAD_ARGUMENT;
    return error == std::errc() ? ORVALIS_OK : ORVALIS_ERROR_OUT_OF_RANGE;
}

OResult readInteger(NodeMap &nodes, std::string_view name, std::string &text)
{
    IntegerValue value;
    const OResult result = nodes.getInteger(name, value);
    if (result == ORVALIS_OK)
        text = decimal(value.value);
    return result;
}

OResult readFloat(NodeMap &nodes, std::string_view name, std::string &text)
{
    FloatValue value;
    const OResult result = nodes.getFloat(name, value);
    if (result == ORVALIS_OK)
        text = decimal(value.value);
    return result;
}

OResult readBoolean(NodeMap &nodes, std::string_view name, std::string &text)
{
    bool value = false;
    const OResult result = nodes.getBoolean(name, value);
    if (result == ORVALIS_OK)
        text = value ? "1" : "0";
    return result;
}

OResult writeInteger(NodeMap &nodes, std::string_view name, std::string_view text)
{
    std::int64_t value = 0;
    const OResult result = parse(text, value);
    return result == ORVALIS_OK ? nodes.setInteger(name, value) : result;
}

OResult writeFloat(NodeMap &nodes, std::string_view name, std::string_view text)
{
    double value = 0;
    const OResult result = parse(text, value);
    return result == ORVALIS_OK ? nodes.setFloat(name, value) : result;
}

OResult writeBoolean(NodeMap &nodes, std::string_view name, std::string_view text)
{
    text = trimmed(text);
    if (text != "0" && text != "1")
        return ORVALIS_ERROR_BAD_ARGUMENT;
    return nodes.setBoolean(name, text == "1");
}

OResult writeText(NodeMap &nodes, std::string_view name, std::string_view text)
{
    return text.size() < ORVALIS_TEXT_SIZE ? nodes.setText(name, text) : ORVALIS_ERROR_OUT_OF_RANGE;
}

} // namespace

OResult readAsText(NodeMap &nodes, std::string_view name, std::string &text)
{
    NodeInfo info;
    if (const OResult result = nodes.info(name, info); result != ORVALIS_OK)
        return result;
    switch (info.type) {
    case ORVALIS_NODE_STRING:
        return nodes.getText(name, text);
    case ORVALIS_NODE_ENUMERATION:
        return nodes.getEntry(name, text);
    case ORVALIS_NODE_INTEGER:
        return readInteger(nodes, name, text);
    case ORVALIS_NODE_FLOAT:
        return readFloat(nodes, name, text);
    case ORVALIS_NODE_BOOLEAN:
        return readBoolean(nodes, name, text);
    default:
        return ORVALIS_ERROR_WRONG_TYPE;
    }
}

OResult writeAsText(NodeMap &nodes, std::string_view name, std::string_view text)
{
    NodeInfo info;
    if (const OResult result = nodes.info(name, info); result != ORVALIS_OK)
        return result;
    switch (info.type) {
    case ORVALIS_NODE_STRING:
        return writeText(nodes, name, text);
    case ORVALIS_NODE_ENUMERATION:
        return nodes.setEnumeration(name, text);
    case ORVALIS_NODE_INTEGER:
        return writeInteger(nodes, name, text);
    case ORVALIS_NODE_FLOAT:
        return writeFloat(nodes, name, text);
    case ORVALIS_NODE_BOOLEAN:
        return writeBoolean(nodes, name, text);
    default:
        return ORVALIS_ERROR_WRONG_TYPE;
    }
}

} // namespace orvalis
