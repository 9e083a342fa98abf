// SPDX-License-Identifier: MIT
// String nodes with registers of any length.
#include "library/genicam/StringNode.h"

#include "library/genicam/NodeReach.h"

#include <algorithm>
#include <array>

namespace orvalis {
namespace {

/// Memory is accessed in words.
constexpr std::size_t wordSize = 4;

/// The location of a long text in the camera; no device if the engine can handle the text.
struct LongText {
    ArvDevice *device = nullptr;
    std::uint64_t address = 0;
};

/// The register of a string node; null for a text that is part of the description.
ArvGcRegister *registerOf(ArvGcFeatureNode *node)
{
    ArvGcNode *source = ARV_GC_NODE(node);
    while (source != nullptr && !ARV_IS_GC_REGISTER(source))
        source = valueNodeOf(source);
    return source != nullptr ? ARV_GC_REGISTER(source) : nullptr;
}

/// True for device memory; chunks and events have separate ports.
bool isInDevice(ArvGcRegister *memory)
{
    ArvGcPropertyNode *link = propertyOf(ARV_GC_NODE(memory), ARV_GC_PROPERTY_NODE_TYPE_P_PORT);
    ArvGcNode *port = link != nullptr ? arv_gc_property_node_get_linked_node(link) : nullptr;
    return port != nullptr && propertyOf(port, ARV_GC_PROPERTY_NODE_TYPE_CHUNK_ID) == nullptr &&
           propertyOf(port, ARV_GC_PROPERTY_NODE_TYPE_EVENT_ID) == nullptr;
}

OResult locate(ArvGcFeatureNode *node, LongText &text, Failure &failure)
{
    ArvGcRegister *const memory = registerOf(node);
    if (memory == nullptr)
        return ORVALIS_OK;
    const std::uint64_t length = arv_gc_register_get_length(memory, failure.slot());
    if (failure || length <= ORVALIS_TEXT_SIZE)
        return ORVALIS_OK;
    if (!isInDevice(memory))
        return ORVALIS_ERROR_DEVICE;
    text.address = arv_gc_register_get_address(memory, failure.slot());
    text.device = arv_gc_get_device(arv_gc_node_get_genicam(ARV_GC_NODE(node)));
    return ORVALIS_OK;
}

} // namespace

OResult readText(ArvGcFeatureNode *node, std::string &text, Failure &failure)
{
    LongText place;
    const OResult result = locate(node, place, failure);
    if (result != ORVALIS_OK || failure)
        return result;
    if (place.device == nullptr) {
        const std::string found =
            textOf(arv_gc_string_get_value(ARV_GC_STRING(node), failure.slot()));
        text = failure ? text : found;
        return ORVALIS_OK;
    }
    std::array<char, ORVALIS_TEXT_SIZE> bytes{};
    arv_device_read_memory(place.device, place.address, bytes.size(), bytes.data(), failure.slot());
    if (!failure)
        text.assign(bytes.begin(), std::ranges::find(bytes, '\0'));
    return ORVALIS_OK;
}

OResult writeText(ArvGcFeatureNode *node, const std::string &text, Failure &failure)
{
    ArvGcString *string = ARV_GC_STRING(node);
    LongText place;
    const OResult result = locate(node, place, failure);
    if (result != ORVALIS_OK || failure)
        return result;
    if (place.device != nullptr) {
        std::array<char, ORVALIS_TEXT_SIZE + wordSize> bytes{};
        if (text.size() >= ORVALIS_TEXT_SIZE)
            return ORVALIS_ERROR_OUT_OF_RANGE;
        std::ranges::copy(text, bytes.begin());
        const std::size_t size = (text.size() / wordSize + 1) * wordSize; // with a NUL
        arv_device_write_memory(place.device, place.address, static_cast<guint32>(size),
                                bytes.data(), failure.slot());
        return ORVALIS_OK;
    }
    const gint64 longest = arv_gc_string_get_max_length(string, failure.slot());
    if (!failure && longest > 0 && text.size() > static_cast<std::uint64_t>(longest))
        return ORVALIS_ERROR_OUT_OF_RANGE;
    arv_gc_string_set_value(string, text.c_str(), failure.slot());
    return ORVALIS_OK;
}

} // namespace orvalis
