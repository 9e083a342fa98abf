// SPDX-License-Identifier: MIT
// Finds cameras without blocking callers on a slow bus.
#include "library/core/Discovery.h"

#include "library/core/Background.h"
#include "library/core/Debug.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <new>

namespace orvalis {

namespace {

using namespace std::chrono_literals;

/// The pause between two passes over the slow back ends.
constexpr auto kBetweenPasses = 2s;

std::uint64_t nextId()
{
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

/// The snapshot of the calling thread.
struct Pinned {
    std::uint64_t discovery = 0;
    Clock::time_point taken{};
    Snapshot snapshot;
};
thread_local Pinned t_pinned;

bool contains(const std::vector<DeviceDescription> &cameras, const std::string &id)
{
    return std::any_of(
        cameras.begin(), cameras.end(),
        [&](const DeviceDescription &camera) { return camera.id == id; });
}

bool hasSlowBackend(const Bus &bus)
{
    for (std::size_t i = 0; i < bus.size(); ++i)
        if (!bus.discoversAtOnce(i))
            return true;
    return false;
}

} // namespace

/// The background passes over the slow back ends: state shared by the thread and the Discovery.
class Discovery::Watch {
public:
    explicit Watch(std::shared_ptr<Bus> bus);

    /// The thread function. Returns after beginStop().
    void run();
    void beginStop();
    void waitUntilEnded(Clock::time_point limit);
    /// The cameras that a slow back end listed last.
    std::vector<DeviceDescription> cameras(std::size_t index) const;
    /// Waits until the first pass has ended, `timeout` at most. False if it had ended before the
    /// call.
    bool waitForFirstPass(std::chrono::milliseconds timeout);

private:
    struct Known {
        std::vector<DeviceDescription> cameras;
        std::vector<std::string> order; // IDs in the order in which they were first seen
    };
    void pass();
    bool keep(std::size_t index, std::vector<DeviceDescription> found);

    const std::shared_ptr<Bus> bus_;

    mutable std::mutex mutex_; // guards everything below
    std::condition_variable changed_;
    std::vector<Known> known_; // one for each back end; unused for fast ones
    bool firstPassDone_ = false;
    bool stopping_ = false;
    bool ended_ = false;
};

Discovery::Watch::Watch(std::shared_ptr<Bus> bus) : bus_(std::move(bus)), known_(bus_->size()) {}

void Discovery::Watch::run()
{
    std::unique_lock lock(mutex_);
    while (!stopping_) {
        lock.unlock();
        pass();
        lock.lock();
        firstPassDone_ = true;
        changed_.notify_all();
        changed_.wait_for(lock, kBetweenPasses, [this] { return stopping_; });
    }
    ended_ = true;
    changed_.notify_all();
}

void Discovery::Watch::beginStop()
{
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    changed_.notify_all();
}

void Discovery::Watch::waitUntilEnded(Clock::time_point limit)
{
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, limit, [this] { return ended_; });
}

std::vector<DeviceDescription> Discovery::Watch::cameras(std::size_t index) const
{
    const std::lock_guard lock(mutex_);
    return known_[index].cameras;
}

bool Discovery::Watch::waitForFirstPass(std::chrono::milliseconds timeout)
{
    std::unique_lock lock(mutex_);
    if (firstPassDone_)
        return false;
    changed_.wait_for(lock, timeout, [this] { return firstPassDone_ || stopping_; });
    return true;
}

void Discovery::Watch::pass()
{
    for (std::size_t i = 0; i < bus_->size(); ++i) {
        if (bus_->discoversAtOnce(i))
            continue;
        try {
            std::vector<DeviceDescription> found;
            if (bus_->discover(i, found) && !keep(i, std::move(found)))
                return;
        } catch (const std::bad_alloc &) {
            debugPrint("discovery: out of memory");
        }
    }
}

/// Stores what was found. Cameras keep their positions while others come and go. False if the pass
/// should end.
bool Discovery::Watch::keep(std::size_t index, std::vector<DeviceDescription> found)
{
    const std::lock_guard lock(mutex_);
    Known &known = known_[index];
    for (const DeviceDescription &camera : found)
        if (std::find(known.order.begin(), known.order.end(), camera.id) == known.order.end())
            known.order.push_back(camera.id);
    const auto place = [&](const DeviceDescription &camera) {
        return std::find(known.order.begin(), known.order.end(), camera.id) - known.order.begin();
    };
    std::stable_sort(found.begin(), found.end(),
                     [&](const auto &a, const auto &b) { return place(a) < place(b); });
    if (found.size() != known.cameras.size())
        debugPrint("discovery: %zu cameras", found.size());
    known.cameras = std::move(found);
    return !stopping_;
}

Discovery::Discovery(std::shared_ptr<Bus> bus, Now now)
    : bus_(std::move(bus)), now_(std::move(now)), id_(nextId()),
      watch_(hasSlowBackend(*bus_) ? std::make_shared<Watch>(bus_) : nullptr)
{
    if (watch_)
        Background::instance().run([watch = watch_] { watch->run(); });
}

Discovery::~Discovery() { beginStop(); }

void Discovery::beginStop()
{
    if (watch_)
        watch_->beginStop();
}

void Discovery::waitUntilStopped(Clock::time_point limit)
{
    if (watch_)
        watch_->waitUntilEnded(limit);
}

/// All cameras of all back ends, in the order of the back ends.
std::vector<DeviceDescription> Discovery::merge()
{
    std::vector<DeviceDescription> all;
    for (std::size_t i = 0; i < bus_->size(); ++i) {
        std::vector<DeviceDescription> found;
        if (bus_->discoversAtOnce(i))
            bus_->discover(i, found);
        else
            found = watch_->cameras(i);
        for (DeviceDescription &camera : found)
            if (!camera.id.empty() && !contains(all, camera.id))
                all.push_back(std::move(camera));
    }
    return all;
}

Snapshot Discovery::take()
{
    std::vector<DeviceDescription> cameras = merge();
    if (cameras.empty() && watch_ && watch_->waitForFirstPass(kFirstPassTimeout))
        cameras = merge();
    auto snapshot = std::make_shared<const std::vector<DeviceDescription>>(std::move(cameras));
    t_pinned = {id_, now_(), snapshot};
    const std::lock_guard lock(mutex_);
    newest_ = snapshot;
    return snapshot;
}

Snapshot Discovery::present()
{
    if (t_pinned.discovery == id_ && now_() - t_pinned.taken < kPinned)
        return t_pinned.snapshot;
    {
        const std::lock_guard lock(mutex_);
        if (newest_)
            return newest_;
    }
    return take();
}

} // namespace orvalis
