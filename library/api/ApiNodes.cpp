// SPDX-License-Identifier: MIT
// Entry points: feature nodes and registers.
#include "library/api/ApiCall.h"
#include "library/core/NodeText.h"

using namespace orvalis;
using namespace orvalis::api;

namespace {

/// Reads a node with a getter of NodeMap and fills the record.
template <class Value, class Record>
std::int32_t readNode(OCameraHandle handle, const char *name, Record *record,
                      OResult (NodeMap::*read)(std::string_view, Value &)) noexcept
{
    return reading(
        handle, name && record,
        [&](Camera &camera) {
            Value value{};
            const OResult result = camera.withNode(
                boundedText(name),
                [&](NodeMap &nodes, std::string_view node) { return (nodes.*read)(node, value); });
            if (result == ORVALIS_OK)
                fillRecord(value, *record);
            return result;
        });
}

/// Runs `write(nodes, name)`.
template <class Write>
std::int32_t writeNode(OCameraHandle handle, const char *name, bool complete, Write write) noexcept
{
    return writing(
        handle, name && complete,
        [&](Camera &camera) { return camera.withNode(boundedText(name), write); });
}

OResult writeInteger(NodeMap &nodes, std::string_view name, std::int32_t bits)
{
    IntegerValue present;
    std::int64_t number = bits;
    OResult result = nodes.getInteger(name, present);
    if (result == ORVALIS_OK)
        result = fromInt32(bits, present, number);
    else if (result == ORVALIS_ERROR_ACCESS_DENIED)
        result = ORVALIS_OK; // a write-only node has no readable bounds
    return result == ORVALIS_OK ? nodes.setInteger(name, number) : result;
}

bool isRegisterAddress(std::uint32_t address) { return address % 4 == 0; }

} // namespace

std::int32_t OrvalisGetNodeList(OCameraHandle handle, const char *parent, ONodeList *list)
{
    const std::int32_t result = readNode(handle, parent, list, &NodeMap::list);
    if (result != ORVALIS_OK && list)
        list->count = 0;
    return result;
}

std::int32_t OrvalisGetNodeInfo(OCameraHandle handle, const char *name, ONodeInfo *info)
{
    return readNode(handle, name, info, &NodeMap::info);
}

std::int32_t OrvalisGetNodeInt(OCameraHandle handle, const char *name, OIntNode *node)
{
    return readNode(handle, name, node, &NodeMap::getInteger);
}

std::int32_t OrvalisSetNodeInt(OCameraHandle handle, const char *name, std::int32_t value)
{
    return writeNode(
        handle, name, true,
        [&](NodeMap &nodes, std::string_view node) { return writeInteger(nodes, node, value); });
}

std::int32_t OrvalisGetNodeFloat(OCameraHandle handle, const char *name, OFloatNode *node)
{
    return readNode(handle, name, node, &NodeMap::getFloat);
}

std::int32_t OrvalisSetNodeFloat(OCameraHandle handle, const char *name, double value)
{
    return writeNode(
        handle, name, true,
        [&](NodeMap &nodes, std::string_view node) { return nodes.setFloat(node, value); });
}

std::int32_t OrvalisGetNodeBoolean(OCameraHandle handle, const char *name, bool *value)
{
    return reading(
        handle, name && value,
        [&](Camera &camera) {
            return camera.withNode(
                boundedText(name),
                [&](NodeMap &nodes, std::string_view node) {
                    return nodes.getBoolean(node, *value);
                });
        });
}

std::int32_t OrvalisSetNodeBoolean(OCameraHandle handle, const char *name, bool value)
{
    return writeNode(
        handle, name, true,
        [&](NodeMap &nodes, std::string_view node) { return nodes.setBoolean(node, value); });
}

std::int32_t OrvalisGetNodeEnum(OCameraHandle handle, const char *name, OEnumNode *node)
{
    return readNode(handle, name, node, &NodeMap::getEnumeration);
}

std::int32_t OrvalisSetNodeEnum(OCameraHandle handle, const char *name, const char *entry)
{
    return writeNode(
        handle, name, entry,
        [&](NodeMap &nodes, std::string_view node) {
            return nodes.setEnumeration(node, boundedText(entry));
        });
}

std::int32_t OrvalisGetNodeString(OCameraHandle handle, const char *name, char *text)
{
    return reading(
        handle, name && text,
        [&](Camera &camera) {
            return camera.withNode(
                boundedText(name),
                [&](NodeMap &nodes, std::string_view node) {
                    std::string value;
                    const OResult result = readAsText(nodes, node, value);
                    if (result == ORVALIS_OK)
                        copyText(text, ORVALIS_TEXT_SIZE, value);
                    return result;
                });
        });
}

std::int32_t OrvalisSetNodeString(OCameraHandle handle, const char *name, const char *text)
{
    return writeNode(
        handle, name, text,
        [&](NodeMap &nodes, std::string_view node) {
            return writeAsText(nodes, node, boundedText(text));
        });
}

std::int32_t OrvalisSetNodeCommand(OCameraHandle handle, const char *name)
{
    return writeNode(
        handle, name, true,
        [](NodeMap &nodes, std::string_view node) { return nodes.execute(node); });
}

std::int32_t OrvalisReadRegister(OCameraHandle handle, std::uint32_t address, std::uint32_t *data)
{
    return reading(
        handle, data && isRegisterAddress(address),
        [&](Camera &camera) { return camera.device().readRegister(address, *data); });
}

std::int32_t OrvalisWriteRegiser(OCameraHandle handle, std::uint32_t address, std::uint32_t data)
{
    return writing(
        handle, isRegisterAddress(address),
        [&](Camera &camera) { return camera.device().writeRegister(address, data); });
}
