// SPDX-License-Identifier: MIT
// Invalid answers, of exactly the sizes that OrvalisAPI.h documents.
#include "tests/fakelibrary/FakeHostile.h"

#include <algorithm>
#include <array>
#include <limits>

namespace fakeorvalis {

namespace {

/// Fills the table of a record completely, even if its count exceeds the capacity.
template <std::size_t capacity>
std::span<char[ORVALIS_TEXT_SIZE]> counted(char (&names)[capacity][ORVALIS_TEXT_SIZE],
                                           std::uint32_t count)
{
    return std::span(names).first(std::min<std::size_t>(count, capacity));
}

} // namespace

std::uint32_t HostileSource::below(std::uint32_t limit)
{
    return tape_ ? tape_->below(limit) : static_cast<std::uint32_t>(generator_()) % limit;
}

std::uint32_t HostileSource::word()
{
    return tape_ ? tape_->number<std::uint32_t>() : static_cast<std::uint32_t>(generator_());
}

std::int32_t HostileSource::result()
{
    if (chance(75))
        return ORVALIS_OK;
    constexpr std::array<std::int32_t, 7> failures{-1, -4, -7, -10, -11, 1, 77777};
    return failures[below(failures.size())];
}

void HostileSource::fill(std::int32_t &value)
{
    using Limits = std::numeric_limits<std::int32_t>;
    constexpr std::array<std::int32_t, 10> favourites{0,  -1, 1,   Limits::min(), Limits::max(),
                                                      64, 65, 129, 257,           -128};
    const auto pick = below(favourites.size() + 2);
    value = pick < favourites.size() ? favourites[pick] : static_cast<std::int32_t>(word());
}

void HostileSource::fill(std::uint32_t &value)
{
    std::int32_t number = 0;
    fill(number);
    value = static_cast<std::uint32_t>(number);
}

void HostileSource::fill(double &value)
{
    using Limits = std::numeric_limits<double>;
    constexpr std::array<double, 9> favourites{0,
                                               -1,
                                               1,
                                               Limits::infinity(),
                                               -Limits::infinity(),
                                               Limits::quiet_NaN(),
                                               1e300,
                                               -1e300,
                                               Limits::denorm_min()};
    const auto pick = below(favourites.size() + 2);
    value = pick < favourites.size() ? favourites[pick] : static_cast<double>(word()) / 1000.0;
}

void HostileSource::fill(float &value)
{
    double number = 0;
    fill(number);
    value = number > 1e30    ? std::numeric_limits<float>::infinity()
            : number < -1e30 ? -std::numeric_limits<float>::infinity()
                             : static_cast<float>(number);
}

void HostileSource::text(std::span<char> buffer)
{
    if (tape_)
        return textFromTape(buffer);
    if (chance(10)) {
        buffer.front() = '\0';
        return;
    }
    for (char &character : buffer)
        character = static_cast<char>(1 + below(255));
}

/// The first byte is the length; the largest ones ask for a full buffer.
void HostileSource::textFromTape(std::span<char> buffer)
{
    constexpr std::uint32_t firstFull = 250;
    const std::uint32_t length = below(256);
    if (length >= firstFull) {
        std::ranges::fill(buffer, static_cast<char>(below(256)));
        return;
    }
    const auto bytes = tape_->bytes(std::min<std::size_t>(length, buffer.size()));
    std::ranges::copy(bytes, buffer.begin());
    if (bytes.size() < buffer.size())
        buffer[bytes.size()] = '\0';
}

void HostileSource::fill(OCameraInfo &info)
{
    for (char *name : {info.cameraId, info.displayName, info.vendor, info.model, info.serialNumber,
                       info.firmware})
        text({name, ORVALIS_NAME_SIZE});
    fill(info.pixelFormat);
    fill(info.sensorPixelFormat);
}

void HostileSource::fill(OSizeInfo &size)
{
    for (std::int32_t *value :
         {&size.offsetX, &size.offsetY, &size.width, &size.height, &size.maxWidth, &size.maxHeight})
        fill(*value);
}

void HostileSource::fill(ONodeList &list)
{
    fill(list.count);
    for (auto &name : counted(list.names, list.count))
        text(name);
}

void HostileSource::fill(ONodeInfo &info)
{
    // Existing types and access modes are frequent enough to reach the code behind them.
    info.type = static_cast<std::int32_t>(below(12)) - 1;
    info.accessMode = static_cast<std::int32_t>(below(8)) - 1;
    info.lockable = static_cast<std::uint8_t>(below(256));
    info.visibility = static_cast<std::uint8_t>(below(256));
    text(info.displayName);
    text(info.description);
    text(info.unit);
}

void HostileSource::fill(OIntNode &node)
{
    for (std::int32_t *value : {&node.value, &node.minimum, &node.maximum, &node.increment})
        fill(*value);
}

void HostileSource::fill(OFloatNode &node)
{
    for (double *value : {&node.value, &node.minimum, &node.maximum, &node.increment})
        fill(*value);
}

void HostileSource::fill(OEnumNode &node)
{
    fill(node.count);
    fill(node.currentIndex);
    for (auto &name : counted(node.names, node.count))
        text(name);
    for (std::int32_t &value : node.values)
        fill(value);
}

void HostileSource::fill(OImageFrame &frame)
{
    for (std::uint32_t *value : {&frame.rawSize, &frame.width, &frame.height, &frame.bitsPerPixel})
        fill(*value);
}

} // namespace fakeorvalis
