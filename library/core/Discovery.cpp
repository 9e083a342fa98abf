// SPDX-License-Identifier: MIT
// Which cameras there are, without ever making a caller wait for a slow bus.
#include "library/core/Discovery.h"

#include "library/core/Debug.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <system_error>

namespace orvalis {

namespace {

using namespace std::chrono_literals;

/// From the end of one pass over the slow back ends to the next.
constexpr auto kBetweenPasses = 2s;

std::uint64_t nextId()
{
    static std::atomic<std::uint64_t> last{0};
    return ++last;
}

/// The snapshot of the present thread.
struct Pinned {
    std::uint64_t discovery = 0;
    Clock::time_point taken{};
    Snapshot snapshot;
};
thread_local Pinned t_pinned;

bool contains(const std::vector<DeviceDescription> &cameras, const std::string &id)
{
    return std::any_of(cameras.begin(), cameras.end(),
                       [&](const DeviceDescription &camera) { return camera.id == id; });
}

} // namespace

Discovery::Discovery(std::shared_ptr<Bus> bus, Now now)
    : bus_(std::move(bus)), now_(std::move(now)), id_(nextId()), known_(bus_->size())
{
    bool slow = false;
    for (std::size_t i = 0; i < bus_->size(); ++i)
        slow = slow || !bus_->discoversAtOnce(i);
    firstPassDone_ = !slow;
    if (!slow)
        return;
    try {
        thread_ = std::thread(&Discovery::run, this);
    } catch (const std::system_error &) {
        throw std::bad_alloc(); // no more threads
    }
}

Discovery::~Discovery() { stop(); }

void Discovery::stop()
{
    std::thread ended;
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        changed_.notify_all();
        ended = std::move(thread_);
    }
    if (ended.joinable())
        ended.join();
}

void Discovery::run()
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
}

void Discovery::pass()
{
    for (std::size_t i = 0; i < bus_->size(); ++i) {
        if (bus_->discoversAtOnce(i))
            continue;
        try {
            std::vector<DeviceDescription> found;
            if (bus_->discover(i, found) && !keep(i, std::move(found)))
                return;
        } catch (const std::bad_alloc &) {
            debugPrint("no memory for what discovery found");
        }
    }
}

/// Cameras keep their places while others come and go. False if the pass should end.
bool Discovery::keep(std::size_t index, std::vector<DeviceDescription> found)
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

/// All cameras of all back ends, in the order of the back ends.
std::vector<DeviceDescription> Discovery::merge()
{
    std::vector<DeviceDescription> all;
    for (std::size_t i = 0; i < bus_->size(); ++i) {
        std::vector<DeviceDescription> found;
        if (bus_->discoversAtOnce(i)) {
            bus_->discover(i, found);
        } else {
            const std::lock_guard lock(mutex_);
            found = known_[i].cameras;
        }
        for (DeviceDescription &camera : found)
            if (!camera.id.empty() && !contains(all, camera.id))
                all.push_back(std::move(camera));
    }
    return all;
}

Snapshot Discovery::take()
{
    std::vector<DeviceDescription> cameras = merge();
    if (cameras.empty()) {
        std::unique_lock lock(mutex_);
        if (!firstPassDone_) {
            changed_.wait_for(lock, kFirstPassPatience,
                              [this] { return firstPassDone_ || stopping_; });
            lock.unlock();
            cameras = merge();
        }
    }
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
