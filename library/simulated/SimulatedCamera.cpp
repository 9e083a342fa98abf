// SPDX-License-Identifier: MIT
// A simulated camera on the bus: presence, registers and commands.
#include "library/simulated/SimulatedCamera.h"

#include "library/simulated/Addresses.h"
#include "library/simulated/AutoControl.h"
#include "library/simulated/UserSets.h"

#include <algorithm>
#include <cmath>

namespace orvalis::simulated {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kRebootTime{3000};
constexpr std::uint32_t kBalanceOnce = 1;

} // namespace

SimulatedCamera::SimulatedCamera(const CameraModel &model, std::size_t extraNodes)
    : model_(model), renderer_(model), registers_(model, extraNodes), table_(registers_.table())
{
    registers_.setWord(address::kUserSetDefault, UserSets::of(model.id).powerOn());
    powerOn();
}

bool SimulatedCamera::isOnBus() const
{
    const std::lock_guard lock(mutex_);
    return Clock::now() >= awayUntil_;
}

OResult SimulatedCamera::open(Session &session)
{
    const std::lock_guard lock(mutex_);
    if (Clock::now() < awayUntil_)
        return ORVALIS_ERROR_NOT_FOUND;
    if (session_ != 0 || Clock::now() < heldUntil_)
        return ORVALIS_ERROR_BUSY;
    if (const std::uint32_t refusals = registers_.word(address::kRefuseOpens)) {
        registers_.setWord(address::kRefuseOpens, refusals - 1);
        return ORVALIS_ERROR_DEVICE;
    }
    session = session_ = ++lastSession_;
    woken_ = false;
    return ORVALIS_OK;
}

void SimulatedCamera::close(Session session)
{
    const std::lock_guard lock(mutex_);
    if (session != session_)
        return;
    session_ = 0;
    acquisition_ = Acquisition::None;
    heldUntil_ = Clock::now() + milliseconds(registers_.word(address::kHoldElsewhere));
    registers_.setWord(address::kHoldElsewhere, 0);
    changed_.notify_all();
}

void SimulatedCamera::waitUntil(Lock &lock, Clock::time_point when)
{
    // distant deadlines overflow the operating system's clock
    changed_.wait_until(lock, std::min(when, Clock::now() + std::chrono::hours(1)));
}

OResult SimulatedCamera::answer(Lock &lock, Session session)
{
    if (const OResult result = pass(lock, session, registers_.word(address::kAnswerDelay)))
        return result;
    refreshMeasurements();
    return ORVALIS_OK;
}

OResult SimulatedCamera::pass(Lock &lock, Session session, std::uint32_t duration)
{
    const auto ready = Clock::now() + milliseconds(duration);
    while (session == session_ && Clock::now() < ready)
        waitUntil(lock, ready);
    return session == session_ ? ORVALIS_OK : ORVALIS_ERROR_CONNECTION_LOST;
}

void SimulatedCamera::refreshMeasurements()
{
    const auto now = Clock::now();
    const std::chrono::duration<double> uptime = now - poweredOn_;
    const double temperature = 38 + 2 * std::sin(uptime.count() / 60);
    registers_.setReal(address::kTemperature, std::round(temperature * 10) / 10);
    registers_.setWord(address::kUptime, static_cast<std::uint32_t>(uptime.count()));
    for (std::uint32_t line = 0; line < 2; ++line) {
        const bool high = lineIsHigh(registers_.real(address::kLine0Rate + 4 * line), now);
        registers_.setWord(address::kLineStatus + 4 * line,
                           high != registers_.flag(address::kLineInverter + 4 * line) ? 1 : 0);
    }
    registers_.setWord(address::kLineStatus + 8, registers_.word(address::kLineInverter + 8));
    if (registers_.flag(address::kAlarmEnable) &&
        temperature >= registers_.real(address::kAlarmTemperature))
        registers_.setWord(address::kAlarmStatus, 1);
}

OResult SimulatedCamera::mayWrite(const NodeSpec &spec) const
{
    const OAccessMode access = registers_.access(spec, streaming());
    return access == ORVALIS_ACCESS_READ_WRITE || access == ORVALIS_ACCESS_WRITE_ONLY
               ? ORVALIS_OK
               : ORVALIS_ERROR_ACCESS_DENIED;
}

OResult SimulatedCamera::written(Lock &lock, const NodeSpec &spec)
{
    if (spec.address == address::kUserSetDefault)
        UserSets::of(model_.id).setPowerOn(registers_.word(address::kUserSetDefault));
    changed_.notify_all();
    if (spec.address == address::kBalanceWhiteAuto &&
        registers_.word(address::kBalanceWhiteAuto) == kBalanceOnce)
        balanceOnce(lock);
    return ORVALIS_OK;
}

void SimulatedCamera::balanceOnce(Lock &lock)
{
    const SensorSettings present = settings();
    lock.unlock(); // measuring takes a while
    const auto meanLight = renderer_.meanLight(present);
    lock.lock();
    if (registers_.word(address::kBalanceWhiteAuto) != kBalanceOnce)
        return;
    adjustBalance(meanLight, true);
    registers_.setWord(address::kBalanceWhiteAuto, 0);
}

OResult SimulatedCamera::execute(Session session, const NodeSpec &spec)
{
    Lock lock(mutex_);
    if (const OResult result = answer(lock, session))
        return result;
    if (const OResult result = mayWrite(spec))
        return result;
    if (const OResult result = pass(lock, session, registers_.word(address::kCommandDuration)))
        return result;
    if (spec.has(kLockable) && streaming())
        return ORVALIS_ERROR_ACCESS_DENIED;
    const OResult result = run(spec.address);
    changed_.notify_all();
    return result;
}

OResult SimulatedCamera::run(std::uint32_t command)
{
    const auto now = Clock::now();
    switch (command) {
    case address::kReset:
        leaveBus(kRebootTime);
        powerOn();
        break;
    case address::kLeaveBus:
        leaveBus(milliseconds(registers_.word(address::kLeaveDuration)));
        break;
    case address::kStall:
        stalledUntil_ = now + milliseconds(registers_.word(address::kStallDuration));
        break;
    case address::kTriggerSoftware:
        if (acquisition_ != Acquisition::None && registers_.selectsActiveTrigger())
            scheduler_.softwareTrigger(timing(), now);
        break;
    case address::kUserSetLoad:
        return loadUserSet();
    case address::kUserSetSave:
        return saveUserSet();
    case address::kStatisticsReset:
        for (const auto counter : {address::kDelivered, address::kFailed, address::kUnderruns,
                                   address::kResent, address::kMissing})
            registers_.setWord(counter, 0);
        break;
    case address::kTimestampLatch:
        registers_.setWord(address::kTimestampValue,
                           static_cast<std::uint32_t>((now - timestampZero_) / milliseconds(1)));
        break;
    case address::kTimestampReset:
        timestampZero_ = now;
        break;
    case address::kAlarmReset:
        registers_.setWord(address::kAlarmStatus, 0);
        break;
    default: // commands without a visible effect
        break;
    }
    return ORVALIS_OK;
}

void SimulatedCamera::leaveBus(milliseconds duration)
{
    session_ = 0;
    acquisition_ = Acquisition::None;
    awayUntil_ = Clock::now() + duration;
    changed_.notify_all();
}

void SimulatedCamera::powerOn()
{
    poweredOn_ = timestampZero_ = std::max(Clock::now(), awayUntil_);
    const auto saved = UserSets::of(model_.id).load(registers_.word(address::kUserSetDefault));
    registers_.loadUserSet(saved ? *saved : registers_.factorySet());
}

OResult SimulatedCamera::loadUserSet()
{
    const auto saved = UserSets::of(model_.id).load(registers_.word(address::kUserSetSelector));
    registers_.loadUserSet(saved ? *saved : registers_.factorySet());
    return ORVALIS_OK;
}

OResult SimulatedCamera::saveUserSet()
{
    const std::uint32_t number = registers_.word(address::kUserSetSelector);
    if (number == 0)
        return ORVALIS_ERROR_ACCESS_DENIED; // factory settings are read-only
    UserSets::of(model_.id).save(number, registers_.userSet());
    return ORVALIS_OK;
}

} // namespace orvalis::simulated
