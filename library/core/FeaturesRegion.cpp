// SPDX-License-Identifier: MIT
// The region of interest.
#include "library/core/Features.h"

#include <algorithm>
#include <limits>

namespace orvalis {

namespace {

/// The nodes of one direction.
struct Axis {
    const char *offset;
    const char *size;
    const char *whole;      ///< the largest extent of a region
    const char *sensor;     ///< if that is missing: the sensor's pixels ...
    const char *reduced[2]; ///< ... divided by binning and decimation
};

constexpr Axis kHorizontal{
    "OffsetX", "Width", "WidthMax", "SensorWidth", {"BinningHorizontal", "DecimationHorizontal"}};
constexpr Axis kVertical{
    "OffsetY", "Height", "HeightMax", "SensorHeight", {"BinningVertical", "DecimationVertical"}};

struct Span {
    std::int64_t offset = 0;
    std::int64_t size = 0;
    std::int64_t whole = 0;
};

std::int32_t narrow(std::int64_t value)
{
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

/// The nearest value that the node accepts: clamped to the bounds, rounded down to the increment.
std::int64_t nearest(std::int64_t wanted, const IntegerValue &node)
{
    if (node.maximum <= node.minimum)
        return node.minimum;
    const std::int64_t bounded = std::clamp(wanted, node.minimum, node.maximum);
    const std::int64_t increment = std::max<std::int64_t>(node.increment, 1);
    return bounded - (bounded - node.minimum) % increment;
}

bool isWritable(NodeMap &nodes, const char *name)
{
    NodeInfo info;
    return nodes.info(name, info) == ORVALIS_OK && info.access == ORVALIS_ACCESS_READ_WRITE;
}

/// The largest extent of a region at present; 0 if the camera does not report it.
std::int64_t readWhole(NodeMap &nodes, const Axis &axis)
{
    IntegerValue whole;
    if (nodes.getInteger(axis.whole, whole) == ORVALIS_OK && whole.value > 0)
        return whole.value;
    if (nodes.getInteger(axis.sensor, whole) != ORVALIS_OK)
        return 0;
    for (const char *name : axis.reduced) {
        IntegerValue factor;
        if (nodes.getInteger(name, factor) == ORVALIS_OK && factor.value > 1)
            whole.value /= factor.value;
    }
    return whole.value;
}

OResult readSpan(NodeMap &nodes, const Axis &axis, Span &span)
{
    IntegerValue size;
    if (const OResult result = nodes.getInteger(axis.size, size); result != ORVALIS_OK)
        return result;
    IntegerValue offset;
    const OResult result = nodes.getInteger(axis.offset, offset);
    if (result == ORVALIS_ERROR_CONNECTION_LOST)
        return result; // any other failure: the camera has no offset, regions begin at 0
    span = {offset.value, size.value, 0};
    const std::int64_t whole = readWhole(nodes, axis);
    span.whole = whole > 0 ? whole : std::max(size.maximum, span.offset + span.size);
    return ORVALIS_OK;
}

OResult setNearest(NodeMap &nodes, const char *name, std::int64_t wanted,
                   std::int64_t limit = std::numeric_limits<std::int64_t>::max())
{
    IntegerValue node;
    if (const OResult result = nodes.getInteger(name, node); result != ORVALIS_OK)
        return result;
    node.maximum = std::min(node.maximum, std::max(limit, node.minimum));
    const std::int64_t value = nearest(wanted, node);
    return value == node.value ? ORVALIS_OK : nodes.setInteger(name, value);
}

/// Sets the offset to its minimum first, so that every size fits, and to its value last, within the
/// bounds that the size leaves.
OResult writeSpan(NodeMap &nodes, const Axis &axis, const Span &span)
{
    const bool hasOffset = isWritable(nodes, axis.offset);
    if (hasOffset) {
        const OResult result =
            setNearest(nodes, axis.offset, std::numeric_limits<std::int64_t>::min());
        if (result != ORVALIS_OK)
            return result;
    }
    const bool fixed = !isWritable(nodes, axis.size); // line scan cameras have one fixed dimension
    const OResult sized = fixed ? ORVALIS_OK : setNearest(nodes, axis.size, span.size);
    if (sized != ORVALIS_OK)
        return sized;
    if (!hasOffset)
        return ORVALIS_OK;
    // Some cameras accept a region that extends beyond the sensor.
    IntegerValue size;
    if (const OResult result = nodes.getInteger(axis.size, size); result != ORVALIS_OK)
        return result;
    return setNearest(nodes, axis.offset, span.offset, span.whole - size.value);
}

/// A camera without region nodes is unusable.
OResult asDeviceError(OResult result)
{
    const bool missing = result == ORVALIS_ERROR_NOT_FOUND || result == ORVALIS_ERROR_WRONG_TYPE ||
                         result == ORVALIS_ERROR_ACCESS_DENIED ||
                         result == ORVALIS_ERROR_OUT_OF_RANGE;
    return missing ? ORVALIS_ERROR_DEVICE : result;
}

OResult readSpans(NodeMap &nodes, Span &x, Span &y)
{
    OResult result = readSpan(nodes, kHorizontal, x);
    if (result == ORVALIS_OK)
        result = readSpan(nodes, kVertical, y);
    return asDeviceError(result);
}

} // namespace

OResult Features::getRegion(OSizeInfo &size)
{
    const NodeAccess access(nodes_, mutex_);
    Span x;
    Span y;
    const OResult result = readSpans(nodes_, x, y);
    if (result != ORVALIS_OK)
        return result;
    size = {narrow(x.offset), narrow(y.offset), narrow(x.size),
            narrow(y.size),   narrow(x.whole),  narrow(y.whole)};
    return ORVALIS_OK;
}

OResult Features::setRegion(const OSizeInfo &size)
{
    const NodeAccess access(nodes_, mutex_);
    Span x;
    Span y;
    OResult result = readSpans(nodes_, x, y);
    if (result != ORVALIS_OK)
        return result;
    // Offsets may be writable while sizes are locked: change nothing then.
    if (!isWritable(nodes_, kHorizontal.size) && !isWritable(nodes_, kVertical.size))
        return ORVALIS_ERROR_ACCESS_DENIED;
    result = writeSpan(nodes_, kHorizontal, {size.offsetX, size.width, x.whole});
    if (result == ORVALIS_OK)
        result = writeSpan(nodes_, kVertical, {size.offsetY, size.height, y.whole});
    if (result != ORVALIS_OK) {
        writeSpan(nodes_, kHorizontal, x);
        writeSpan(nodes_, kVertical, y);
    }
    return result;
}

} // namespace orvalis
