// SPDX-License-Identifier: MIT
// Streams and single images of a simulated camera.
#include "library/simulated/Addresses.h"
#include "library/simulated/AutoControl.h"
#include "library/simulated/SimulatedCamera.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <numbers>

namespace orvalis::simulated {
namespace {

using std::chrono::nanoseconds;

constexpr std::uint32_t kSingleFrame = 1, kMultiFrame = 2; ///< values of AcquisitionMode
constexpr std::uint32_t kBurst = 1;                        ///< entry of TriggerSelector
constexpr std::uint32_t kContinuous = 2;                   ///< entry of automatic controls

enum class Payload : std::uint32_t { Image, TrailingData, MissingRows, UnknownFormat };
constexpr std::uint32_t kTrailingBytes = 64;
constexpr std::uint32_t kUnknownFormat = 0x810800FF; ///< PFNC: vendor-specific codes begin with 8

nanoseconds fromMicroseconds(double us)
{
    return nanoseconds(static_cast<std::int64_t>(std::llround(us * 1000)));
}

Reduction reductionOf(const RegisterFile &r)
{
    const std::uint32_t binX = r.word(address::kBinningHorizontal);
    const std::uint32_t binY = r.word(address::kBinningVertical);
    return {.binX = binX,
            .binY = binY,
            .stepX = binX * r.word(address::kDecimationHorizontal),
            .stepY = binY * r.word(address::kDecimationVertical),
            .width = r.word(address::kWidthMax),
            .height = r.word(address::kHeightMax)};
}

} // namespace

OResult SimulatedCamera::startStream(Session session)
{
    const std::lock_guard lock(mutex_);
    if (session != session_)
        return ORVALIS_ERROR_CONNECTION_LOST;
    if (streaming())
        return ORVALIS_ERROR_BUSY;
    begin(Acquisition::Stream);
    const std::uint32_t mode = registers_.word(address::kAcquisitionMode);
    framesLeft_ = mode == kSingleFrame  ? 1
                  : mode == kMultiFrame ? registers_.word(address::kFrameCount)
                                        : std::numeric_limits<std::uint64_t>::max();
    return run(address::kStatisticsReset);
}

OResult SimulatedCamera::stopStream(Session session)
{
    const std::lock_guard lock(mutex_);
    if (session != session_)
        return ORVALIS_ERROR_CONNECTION_LOST;
    acquisition_ = Acquisition::None;
    woken_ = false;
    changed_.notify_all();
    return ORVALIS_OK;
}

void SimulatedCamera::begin(Acquisition acquisition)
{
    acquisition_ = acquisition;
    ++acquisitionNumber_;
    framesLeft_ = 1;
    frameNumber_ = 0;
    woken_ = woken_ && acquisition == Acquisition::Snapshot;
    scheduler_.start(Clock::now());
}

void SimulatedCamera::wake(Session session)
{
    const std::lock_guard lock(mutex_);
    if (session != session_)
        return;
    woken_ = true;
    changed_.notify_all();
}

OResult SimulatedCamera::nextImage(Session session, RawImage &image, Clock::time_point deadline)
{
    Lock lock(mutex_);
    return waitForFrame(lock, session, image, deadline);
}

OResult SimulatedCamera::takeImage(Session session, RawImage &image, Clock::time_point deadline)
{
    Lock lock(mutex_);
    if (session != session_)
        return ORVALIS_ERROR_CONNECTION_LOST;
    if (streaming())
        return ORVALIS_ERROR_BUSY;
    begin(Acquisition::Snapshot);
    const std::uint64_t number = acquisitionNumber_;
    const OResult result = waitForFrame(lock, session, image, deadline);
    if (number == acquisitionNumber_)
        acquisition_ = Acquisition::None;
    return result;
}

OResult SimulatedCamera::waitForFrame(Lock &lock, Session session, RawImage &image,
                                      Clock::time_point deadline)
{
    const std::uint64_t number = acquisitionNumber_;
    for (;;) {
        if (session != session_)
            return ORVALIS_ERROR_CONNECTION_LOST;
        if (woken_ || number != acquisitionNumber_) {
            woken_ = false;
            return ORVALIS_ERROR_ABORTED;
        }
        const auto now = Clock::now();
        auto due = framesLeft_ > 0 && acquisition_ != Acquisition::None
                       ? scheduler_.due(timing(), now)
                       : std::nullopt;
        if (due)
            due = std::max(*due, stalledUntil_);
        if (due && *due <= now) {
            bool delivered = false;
            const OResult result = exposeFrame(lock, *due, now, image, delivered);
            if (result != ORVALIS_OK || delivered)
                return session == session_ ? result : ORVALIS_ERROR_CONNECTION_LOST;
            continue;
        }
        if (now >= deadline)
            return ORVALIS_ERROR_TIMEOUT;
        waitUntil(lock, due ? std::min(*due, deadline) : deadline);
    }
}

OResult SimulatedCamera::exposeFrame(Lock &lock, Clock::time_point due, Clock::time_point now,
                                     RawImage &image, bool &delivered)
{
    const std::uint64_t number = acquisitionNumber_;
    const std::uint64_t skipped = scheduler_.take(timing(), now);
    const SensorSettings present = settings();
    const FrameStamp presentStamp = stamp(due);
    frameNumber_ += static_cast<std::uint32_t>(1 + skipped);
    --framesLeft_;
    count(address::kUnderruns, skipped);
    if (streaming() && losesFrame()) {
        count(address::kFailed, 1);
        count(address::kResent, 1);
        count(address::kMissing, 1);
        return ORVALIS_OK;
    }
    const std::uint32_t bytes = registers_.word(address::kPayloadSize);
    lock.unlock(); // nodes stay accessible while the image is rendered
    std::shared_ptr<std::uint8_t> buffer;
    try {
        buffer = pool_.take(bytes + kTrailingBytes);
        renderer_.render(present, presentStamp, buffer.get());
    } catch (const std::bad_alloc &) {
        lock.lock();
        count(address::kUnderruns, 1);
        return ORVALIS_ERROR_OUT_OF_MEMORY;
    }
    lock.lock();
    count(address::kDelivered, 1);
    if (presentStamp.number == 0 && number == acquisitionNumber_)
        scheduler_.firstFrameDone(timing(), Clock::now());
    adjustAutomatic(lock, present);
    const std::uint8_t *const data = buffer.get();
    image = {.data = data,
             .size = bytes,
             .width = present.region.width,
             .height = present.region.height,
             .pixelFormat = present.pixelFormat,
             .owner = std::move(buffer)};
    disguise(image);
    delivered = true;
    return ORVALIS_OK;
}

void SimulatedCamera::disguise(RawImage &image) const
{
    switch (static_cast<Payload>(registers_.word(address::kPayload))) {
    case Payload::TrailingData:
        image.size += kTrailingBytes;
        break;
    case Payload::MissingRows:
        image.size -= image.size / 4;
        break;
    case Payload::UnknownFormat:
        image.pixelFormat = kUnknownFormat;
        break;
    case Payload::Image:
        break;
    }
}

bool SimulatedCamera::losesFrame()
{
    lossState_ ^= lossState_ << 13;
    lossState_ ^= lossState_ >> 17;
    lossState_ ^= lossState_ << 5;
    const double percent = (lossState_ >> 8) % 100000 / 1000.0;
    return percent < registers_.real(address::kFrameLoss);
}

void SimulatedCamera::count(std::uint32_t address, std::uint64_t frames)
{
    constexpr std::uint64_t kMaximum = std::numeric_limits<std::int32_t>::max();
    if (streaming())
        registers_.setWord(address, static_cast<std::uint32_t>(
                                        std::min(registers_.word(address) + frames, kMaximum)));
}

void SimulatedCamera::adjustAutomatic(Lock &lock, const SensorSettings &present)
{
    const bool brightness =
        registers_.flag(address::kExposureAuto) || registers_.flag(address::kGainAuto);
    const bool balance = model_.color && !isMono(present.pixelFormat) &&
                         registers_.word(address::kBalanceWhiteAuto) == kContinuous;
    if (!brightness && !balance)
        return;
    const Region area = autoArea(present);
    lock.unlock();
    const double mean = brightness ? renderer_.meanBrightness(area) : 0;
    const auto meanLight = balance ? renderer_.meanLight(present) : std::array<double, 3>{};
    lock.lock();
    if (brightness)
        adjustBrightness(mean);
    if (balance && registers_.word(address::kBalanceWhiteAuto) == kContinuous)
        adjustBalance(meanLight, false);
}

void SimulatedCamera::adjustBrightness(double mean)
{
    const auto &r = registers_;
    const double gamma = r.flag(address::kGammaEnable) ? r.real(address::kGamma) : 1;
    const double contrast = r.word(address::kContrast) / 508.0;
    const double period = r.flag(address::kFrameRateEnable) ? 1e6 / r.real(address::kFrameRate)
                                                            : std::numeric_limits<double>::max();
    BrightnessState state{
        .mean = mean,
        .target = r.word(address::kAutoTarget) / 100.0,
        .steepness = gamma * std::max(1.0, contrast),
        .exposureAuto = r.flag(address::kExposureAuto),
        .gainAuto = r.flag(address::kGainAuto),
        .exposure = r.real(address::kExposureTime),
        .exposureMinimum =
            std::max<double>(model_.exposureMinimum, r.real(address::kAutoExposureLower)),
        .exposureMaximum = std::min<double>(period, r.real(address::kAutoExposureUpper)),
        .gain = r.real(address::kGain),
        .gainMaximum = r.real(address::kAutoGainUpper)};
    if (!state.exposureAuto && !state.gainAuto)
        return; // automatic control switched off meanwhile
    state.exposureMaximum = std::max(state.exposureMaximum, state.exposureMinimum);
    const Brightness next = nextBrightness(state);
    registers_.setNumber(*table_.at(address::kExposureTime), address::kExposureTime,
                         std::round(next.exposure * 10) / 10);
    registers_.setNumber(*table_.at(address::kGain), address::kGain,
                         std::round(next.gain * 100) / 100);
}

void SimulatedCamera::adjustBalance(const std::array<double, 3> &meanLight, bool atOnce)
{
    std::array<double, 3> ratio{};
    for (std::uint32_t c = 0; c < 3; ++c)
        ratio[c] = registers_.real(address::kBalanceRatio + 4 * c);
    const auto next = nextBalance(ratio, meanLight, atOnce);
    for (std::uint32_t c = 0; c < 3; ++c)
        registers_.setReal(address::kBalanceRatio + 4 * c, std::round(next[c] * 1000) / 1000);
}

Region SimulatedCamera::autoArea(const SensorSettings &present) const
{
    const auto percent = [&](std::uint32_t address, std::uint32_t of) {
        return static_cast<std::uint32_t>(std::uint64_t(of) * registers_.word(address) / 100);
    };
    const std::uint32_t width = present.region.width, height = present.region.height;
    if (!registers_.flag(address::kAutoAreaEnable))
        return {0, 0, width, height};
    return {percent(address::kAutoAreaLeft, width) & ~1u, percent(address::kAutoAreaTop, height),
            percent(address::kAutoAreaWidth, width), percent(address::kAutoAreaHeight, height)};
}

FrameTiming SimulatedCamera::timing() const
{
    const auto &r = registers_;
    const double period = r.framePeriod();
    const std::uint32_t active = r.activeTrigger();
    const std::uint32_t own = r.flag(address::kTriggerPerSelector) ? 4 * active : 0;
    FrameTiming timing{.period = fromMicroseconds(period),
                       .exposure = fromMicroseconds(r.real(address::kExposureTime)),
                       .delay = fromMicroseconds(r.real(address::kTriggerDelay + own)),
                       .debounce = fromMicroseconds(r.word(address::kDebouncerTime)),
                       .triggered = r.flag(address::kTriggerMode + own),
                       .source = static_cast<TriggerSource>(r.word(address::kTriggerSource + own)),
                       .fallingEdge = r.flag(address::kTriggerActivation + own),
                       .burst = active == kBurst ? r.word(address::kBurstFrameCount) : 1,
                       .lineRate = {r.real(address::kLine0Rate), r.real(address::kLine1Rate)}};
    if (timing.source != TriggerSource::Software &&
        r.flag(address::kLineInverter + (timing.source == TriggerSource::Line1 ? 4 : 0)))
        timing.fallingEdge = !timing.fallingEdge;
    return timing;
}

SensorSettings SimulatedCamera::settings() const
{
    const auto &r = registers_;
    const auto percent = [&](std::uint32_t address) { return r.word(address) / 100.0; };
    SensorSettings s;
    s.region = {r.word(address::kOffsetX), r.word(address::kOffsetY), r.word(address::kWidth),
                r.word(address::kHeight)};
    s.reduction = reductionOf(r);
    s.pattern = static_cast<TestPattern>(r.word(address::kTestPattern));
    s.patternShift = moves(s.pattern) ? frameNumber_ : 0;
    s.pixelFormat = r.word(address::kPixelFormat);
    s.reverseX = r.flag(address::kReverseX);
    s.reverseY = r.flag(address::kReverseY);
    s.exposure = r.real(address::kExposureTime);
    s.gain = std::pow(10.0, r.real(address::kGain) / 20.0);
    s.black = r.word(address::kBlackLevel) / 4095.0;
    s.gamma = r.flag(address::kGammaEnable) ? r.real(address::kGamma) : 1.0;
    s.contrast = r.word(address::kContrast) / 508.0;
    s.sharpness = (r.word(address::kSharpness) - 10) * 0.3;
    s.illuminant = model_.color ? r.word(address::kIlluminant) : 0;
    s.ratio = kNeutralRatio;
    if (model_.color && !isMono(s.pixelFormat)) {
        s.hue = (int(r.word(address::kHue)) - 508) / 508.0 * std::numbers::pi / 2;
        s.saturation = r.word(address::kSaturation) / 512.0;
        for (std::uint32_t c = 0; c < 3; ++c)
            s.ratio[c] = r.real(address::kBalanceRatio + 4 * c);
    }
    s.knee = r.flag(address::kLutEnable);
    if (s.knee)
        s.kneePoints = {percent(address::kKneePoint1X), percent(address::kKneePoint1Y),
                        percent(address::kKneePoint2X), percent(address::kKneePoint2Y)};
    if (r.flag(address::kWideRangeEnable))
        s.shadowLift = percent(address::kWideRangeStrength);
    if (r.flag(address::kNoiseRemoveEnable))
        s.noise = 1 - 0.2 * r.word(address::kNoiseRemoveLevel);
    s.noise /= std::sqrt(s.reduction.binX * s.reduction.binY);
    s.uniform = !model_.thermal || r.flag(address::kNucMode);
    return s;
}

FrameStamp SimulatedCamera::stamp(Clock::time_point when) const
{
    return {.number = frameNumber_,
            .seconds = std::chrono::duration<double>(when - poweredOn_).count(),
            .motion = registers_.flag(address::kMotion),
            .noise = registers_.flag(address::kNoise),
            .overlay = registers_.flag(address::kOverlay)};
}

} // namespace orvalis::simulated
