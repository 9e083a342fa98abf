// SPDX-License-Identifier: MIT
// The rules between a simulated camera's registers.
#include "library/simulated/RegisterFile.h"

#include "library/simulated/Addresses.h"
#include "library/simulated/ToneCurve.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

namespace orvalis::simulated {
namespace {

constexpr std::uint32_t kOutputLine = 2;

/// The number that people mean by a single-precision value: 0.1f is 0.1, not 0.100000001.
double shortest(float value)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    double number = value;
    std::from_chars(text, end, number);
    return number;
}

double rateOf(double periodUs) { return std::floor(1e9 / periodUs + 1e-6) / 1000; }

} // namespace

RegisterFile::RegisterFile(const CameraModel &model, std::size_t extraNodes)
    : model_(model), table_(model, extraNodes), words_(table_.memoryWords())
{
    for (const NodeSpec &spec : table_.nodes())
        if (spec.access == ORVALIS_ACCESS_READ_WRITE && !spec.has(kKept) && !spec.has(kAlias))
            for (std::uint32_t word = 0; word < spec.words(); ++word)
                saved_.push_back(spec.address / 4 + word);
    setFactoryValues();
    factorySet_ = userSet();
}

void RegisterFile::setFactoryValues()
{
    for (const NodeSpec &spec : table_.nodes()) {
        if (spec.type == ORVALIS_NODE_STRING)
            setText(spec, spec.text);
        else if (!spec.has(kAlias))
            for (std::uint32_t i = 0; i < spec.words(); ++i)
                setNumber(spec, spec.address + 4 * i, spec.range.initial);
    }
    setWord(address::kLineMode + 4 * kOutputLine, 1);
    if (model_.color) { // the sensor sees green best
        for (std::uint32_t c = 0; c < 3; ++c)
            setReal(address::kBalanceRatio + 4 * c, kNeutralRatio[c]);
    }
    updateDerived();
}

std::uint32_t RegisterFile::addressOf(const NodeSpec &spec) const
{
    switch (spec.selector) {
    case Selector::Balance:
        return spec.address + 4 * word(address::kBalanceSelector);
    case Selector::Line:
        return spec.address + 4 * word(address::kLineSelector);
    case Selector::Timer:
        return spec.address + 4 * word(address::kTimerSelector);
    case Selector::None:
        break;
    }
    return spec.address;
}

Range RegisterFile::bounds(const NodeSpec &spec, std::uint32_t address) const
{
    Range range = spec.range;
    switch (address) {
    case address::kWidth:
        range.maximum = model_.width - word(address::kOffsetX);
        break;
    case address::kHeight:
        range.maximum = model_.height - word(address::kOffsetY);
        break;
    case address::kOffsetX:
        range.maximum = model_.width - word(address::kWidth);
        break;
    case address::kOffsetY:
        range.maximum = model_.height - word(address::kHeight);
        break;
    case address::kFrameRate:
        range.maximum = largestRate();
        break;
    default:
        break;
    }
    return range;
}

OAccessMode RegisterFile::access(const NodeSpec &spec, bool streaming) const
{
    if (spec.has(kColorOnly) && spec.address != address::kIlluminant &&
        isMono(word(address::kPixelFormat)))
        return ORVALIS_ACCESS_NOT_AVAILABLE;
    if (spec.address == address::kLineSource && !spec.isCategory() &&
        word(address::kLineSelector) != kOutputLine)
        return ORVALIS_ACCESS_NOT_AVAILABLE;
    if (spec.type == ORVALIS_NODE_COMMAND || spec.access != ORVALIS_ACCESS_READ_WRITE)
        return spec.access;
    const bool held = (spec.address == address::kExposureTime && flag(address::kExposureAuto)) ||
                      ((spec.address == address::kGain || spec.address == address::kGainRaw) &&
                       flag(address::kGainAuto)) ||
                      (spec.address == address::kBalanceRatio && flag(address::kBalanceWhiteAuto));
    return held || (streaming && spec.has(kLockable)) ? ORVALIS_ACCESS_READ_ONLY : spec.access;
}

float RegisterFile::real(std::uint32_t address) const
{
    return std::bit_cast<float>(word(address));
}

void RegisterFile::setReal(std::uint32_t address, double value)
{
    setWord(address, std::bit_cast<std::uint32_t>(static_cast<float>(value)));
}

double RegisterFile::number(const NodeSpec &spec, std::uint32_t address) const
{
    switch (spec.type) {
    case ORVALIS_NODE_FLOAT:
        return shortest(real(address));
    case ORVALIS_NODE_ENUMERATION:
        return word(address);
    default:
        return static_cast<std::int32_t>(word(address));
    }
}

OResult RegisterFile::setNumber(const NodeSpec &spec, std::uint32_t address, double value)
{
    if (spec.type == ORVALIS_NODE_ENUMERATION) {
        if (std::ranges::none_of(spec.entries,
                                 [&](const EntrySpec &e) { return e.value == value; }))
            return ORVALIS_ERROR_OUT_OF_RANGE;
        setWord(address, static_cast<std::uint32_t>(value));
        changed(address);
        return ORVALIS_OK;
    }
    const Range range = bounds(spec, address);
    if (!(value >= range.minimum && value <= range.maximum))
        return ORVALIS_ERROR_OUT_OF_RANGE;
    if (range.increment > 0)
        value =
            range.minimum + std::floor((value - range.minimum) / range.increment) * range.increment;
    if (spec.type == ORVALIS_NODE_FLOAT)
        setReal(address, value);
    else
        setWord(address, static_cast<std::uint32_t>(static_cast<std::int64_t>(value)));
    changed(address);
    return ORVALIS_OK;
}

std::string RegisterFile::text(const NodeSpec &spec) const
{
    char bytes[kTextBytes];
    std::memcpy(bytes, &words_[spec.address / 4], sizeof bytes);
    return {bytes, strnlen(bytes, sizeof bytes)};
}

OResult RegisterFile::setText(const NodeSpec &spec, std::string_view value)
{
    value = value.substr(0, value.find('\0'));
    if (value.size() >= kTextBytes)
        return ORVALIS_ERROR_OUT_OF_RANGE;
    char bytes[kTextBytes] = {};
    std::ranges::copy(value, bytes);
    std::memcpy(&words_[spec.address / 4], bytes, sizeof bytes);
    return ORVALIS_OK;
}

OResult RegisterFile::writeWord(const NodeSpec &spec, std::uint32_t address, std::uint32_t value)
{
    switch (spec.type) {
    case ORVALIS_NODE_STRING:
        setWord(address, value);
        return ORVALIS_OK;
    case ORVALIS_NODE_FLOAT:
        return setNumber(spec, address, shortest(std::bit_cast<float>(value)));
    case ORVALIS_NODE_ENUMERATION:
        return setNumber(spec, address, value);
    default:
        return setNumber(spec, address, static_cast<std::int32_t>(value));
    }
}

std::vector<std::uint32_t> RegisterFile::userSet() const
{
    std::vector<std::uint32_t> set;
    set.reserve(saved_.size());
    for (const std::uint32_t index : saved_)
        set.push_back(words_[index]);
    return set;
}

void RegisterFile::loadUserSet(const std::vector<std::uint32_t> &words)
{
    for (std::size_t i = 0; i < std::min(words.size(), saved_.size()); ++i)
        words_[saved_[i]] = words[i];
    updateDerived();
}

double RegisterFile::shortestPeriod() const
{
    return simulated::shortestPeriod(model_, word(address::kWidth), word(address::kHeight),
                                     word(address::kPixelFormat));
}

double RegisterFile::largestRate() const { return rateOf(shortestPeriod()); }

double RegisterFile::framePeriod() const
{
    double period = std::max<double>(shortestPeriod(), real(address::kExposureTime));
    if (flag(address::kFrameRateEnable))
        period = std::max(period, 1e6 / shortest(real(address::kFrameRate)));
    return period;
}

void RegisterFile::changed(std::uint32_t address)
{
    if (address == address::kGain)
        setWord(address::kGainRaw,
                static_cast<std::uint32_t>(std::lround(real(address::kGain) * 10)));
    if (address == address::kGainRaw)
        setReal(address::kGain, word(address::kGainRaw) / 10.0);
    updateDerived();
}

void RegisterFile::updateDerived()
{
    const double width = word(address::kWidth);
    const double height = word(address::kHeight);
    if (width * height == 0)
        return; // the factory values are still being written
    const std::uint32_t pixelFormat = word(address::kPixelFormat);
    setWord(address::kPayloadSize,
            static_cast<std::uint32_t>(width * height * bytesPerPixel(pixelFormat)));
    if (real(address::kFrameRate) > largestRate())
        setReal(address::kFrameRate, largestRate());
    setReal(address::kReadOutTime, shortestPeriod());
    setReal(address::kResultingRate, rateOf(framePeriod()));
}

} // namespace orvalis::simulated
