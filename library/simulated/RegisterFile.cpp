// SPDX-License-Identifier: MIT
// The dependencies between a simulated camera's registers.
#include "library/simulated/RegisterFile.h"

#include "library/simulated/Addresses.h"
#include "library/simulated/ToneCurve.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace orvalis::simulated {
namespace {

constexpr std::uint32_t kOutputLine = 2;
constexpr std::uint32_t kBurstTrigger = 1;
constexpr double kLongestExposure = 3e7; ///< microseconds, with SimulationLongExposure

/// The shortest decimal number with this single-precision value: 0.1f gives 0.1, not 0.100000001.
double shortest(float value)
{
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    double number = value;
    std::from_chars(text, end, number);
    return number;
}

/// The signed or unsigned value of a word, according to the node's bounds.
double wholeNumber(const NodeSpec &spec, std::uint32_t word)
{
    const bool isUnsigned = spec.range.maximum > std::numeric_limits<std::int32_t>::max();
    return isUnsigned ? double(word) : static_cast<std::int32_t>(word);
}

/// The nodes of one direction of the sensor.
struct Axis {
    std::uint32_t binning;
    std::uint32_t decimation;
    std::uint32_t largest;
    std::uint32_t size;
    std::uint32_t offset;
    std::uint32_t smallest;
    std::uint32_t CameraModel::*sensor;

    bool reducesBy(std::uint32_t address) const
    {
        return address == binning || address == decimation;
    }
    /// Sensor pixels for each image pixel. The registers are empty at first.
    std::uint32_t step(const RegisterFile &registers) const
    {
        return std::max(1u, registers.word(binning)) * std::max(1u, registers.word(decimation));
    }
};

constexpr std::array<Axis, 2> kAxes{
    {{address::kBinningHorizontal, address::kDecimationHorizontal, address::kWidthMax,
      address::kWidth, address::kOffsetX, kSmallestWidth, &CameraModel::width},
     {address::kBinningVertical, address::kDecimationVertical, address::kHeightMax,
      address::kHeight, address::kOffsetY, kSmallestHeight, &CameraModel::height}}};

std::uint32_t wholeSteps(std::uint32_t pixels) { return pixels / kRegionStep * kRegionStep; }

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
    if (model_.color) // the sensor is most sensitive to green
        for (std::uint32_t c = 0; c < 3; ++c)
            setReal(address::kBalanceRatio + 4 * c, kNeutralRatio[c]);
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
    case Selector::Trigger:
        return spec.address +
               (flag(address::kTriggerPerSelector) ? 4 * word(address::kTriggerSelector) : 0);
    case Selector::Strobe:
        return spec.address +
               (flag(address::kStrobePerLine) ? 4 * word(address::kLineSelector) : 0);
    case Selector::None:
        break;
    }
    return spec.address;
}

Range RegisterFile::bounds(const NodeSpec &spec, std::uint32_t address) const
{
    Range range = spec.range;
    for (const Axis &axis : kAxes) {
        if (address == axis.size)
            range.maximum = word(axis.largest) - word(axis.offset);
        else if (address == axis.offset)
            range.maximum = word(axis.largest) - word(axis.size);
        else if (axis.reducesBy(address)) // word(address) is this node's part of the product
            range.maximum = std::min<double>(range.maximum,
                                             kLargestReduction /
                                                 (axis.step(*this) / std::max(1u, word(address))));
    }
    if (address == address::kFrameRate)
        range.maximum = largestRate();
    if (address == address::kExposureTime && flag(address::kLongExposure))
        range.maximum = kLongestExposure;
    return range;
}

bool RegisterFile::belongsToOutputs(const NodeSpec &spec) const
{
    return !spec.isCategory() &&
           (spec.address == address::kLineSource ||
            (spec.address == address::kStrobeEnable && flag(address::kStrobePerLine)));
}

OAccessMode RegisterFile::access(const NodeSpec &spec, bool streaming) const
{
    if (spec.has(kColorOnly) && spec.address != address::kIlluminant &&
        isMono(word(address::kPixelFormat)))
        return ORVALIS_ACCESS_NOT_AVAILABLE;
    if (belongsToOutputs(spec) && word(address::kLineSelector) != kOutputLine)
        return ORVALIS_ACCESS_NOT_AVAILABLE;
    if (spec.address == address::kFrameRate && flag(address::kRateNeedsEnable) &&
        !flag(address::kFrameRateEnable))
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
        return wholeNumber(spec, word(address));
    }
}

OResult RegisterFile::setNumber(const NodeSpec &spec, std::uint32_t address, double value)
{
    if (spec.type == ORVALIS_NODE_ENUMERATION) {
        if (std::ranges::none_of(spec.entries,
                                 [&](const EntrySpec &e) { return e.value == value; }))
            return ORVALIS_ERROR_OUT_OF_RANGE;
        const std::uint32_t previous = word(address);
        setWord(address, static_cast<std::uint32_t>(value));
        changed(address, previous);
        return ORVALIS_OK;
    }
    const Range range = bounds(spec, address);
    if (!(value >= range.minimum && value <= range.maximum))
        return ORVALIS_ERROR_OUT_OF_RANGE;
    if (range.increment > 0)
        value =
            range.minimum + std::floor((value - range.minimum) / range.increment) * range.increment;
    const std::uint32_t previous = word(address);
    if (spec.type == ORVALIS_NODE_FLOAT)
        setReal(address, value);
    else
        setWord(address, static_cast<std::uint32_t>(static_cast<std::int64_t>(value)));
    changed(address, previous);
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
        return setNumber(spec, address, wholeNumber(spec, value));
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

std::uint32_t RegisterFile::activeTrigger() const
{
    if (!flag(address::kTriggerPerSelector))
        return word(address::kTriggerSelector);
    return flag(address::kTriggerMode + 4 * kBurstTrigger) ? kBurstTrigger : 0;
}

bool RegisterFile::selectsActiveTrigger() const
{
    return word(address::kTriggerSelector) == activeTrigger();
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

void RegisterFile::changed(std::uint32_t address, std::uint32_t previous)
{
    followReduction(address, previous);
    if (address == address::kGain)
        setWord(address::kGainRaw,
                static_cast<std::uint32_t>(std::lround(real(address::kGain) * 10)));
    if (address == address::kGainRaw)
        setReal(address::kGain, word(address::kGainRaw) / 10.0);
    updateDerived();
}

void RegisterFile::followReduction(std::uint32_t address, std::uint32_t previous)
{
    const auto *const axis =
        std::ranges::find_if(kAxes, [&](const Axis &a) { return a.reducesBy(address); });
    if (axis == kAxes.end() || word(axis->size) == 0)
        return;
    const std::uint32_t step = axis->step(*this);
    const std::uint32_t previousStep = step / word(address) * std::max(1u, previous);
    const std::uint32_t largest = wholeSteps(model_.*axis->sensor / step);
    const auto followed = [&](std::uint32_t pixels) {
        return wholeSteps(pixels * previousStep / step);
    };
    // A region of the whole sensor stays whole despite rounding.
    const std::uint32_t size =
        word(axis->size) == word(axis->largest)
            ? largest
            : std::clamp(followed(word(axis->size)), axis->smallest, largest);
    setWord(axis->offset, std::min(followed(word(axis->offset)), largest - size));
    setWord(axis->size, size);
}

void RegisterFile::updateDerived()
{
    for (const Axis &axis : kAxes)
        setWord(axis.largest, wholeSteps(model_.*axis.sensor / axis.step(*this)));
    const double width = word(address::kWidth);
    const double height = word(address::kHeight);
    if (width * height == 0)
        return; // the factory values are still being written
    const std::uint32_t pixelFormat = word(address::kPixelFormat);
    setWord(address::kPayloadSize,
            static_cast<std::uint32_t>(width * height * bytesPerPixel(pixelFormat)));
    const double longest =
        bounds(*table_.at(address::kExposureTime), address::kExposureTime).maximum;
    if (real(address::kExposureTime) > longest)
        setReal(address::kExposureTime, longest);
    if (real(address::kFrameRate) > largestRate())
        setReal(address::kFrameRate, largestRate());
    setReal(address::kReadOutTime, shortestPeriod());
    setReal(address::kResultingRate, rateOf(framePeriod()));
}

} // namespace orvalis::simulated
