// SPDX-License-Identifier: MIT
// When discovery returns, when it waits, and which snapshot names come from.
#include "library/core/Discovery.h"
#include "tests/library/core/ScriptedCamera.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

using namespace orvalis;
using namespace orvalis::test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Cameras = std::vector<DeviceDescription>;

Cameras cameras(std::initializer_list<const char *> ids)
{
    Cameras result;
    for (const char *id : ids)
        result.push_back({id, std::string("Camera ") + id});
    return result;
}

std::vector<std::string> idsOf(const Snapshot &snapshot)
{
    std::vector<std::string> ids;
    for (const auto &camera : *snapshot)
        ids.push_back(camera.id);
    return ids;
}

/// A back end that lists what a test sets, and counts calls.
struct ListedCameras {
    void show(Cameras now)
    {
        const std::lock_guard lock(mutex);
        cameras = std::move(now);
    }
    Cameras ask()
    {
        asked.add();
        gate.wait();
        const std::lock_guard lock(mutex);
        return cameras;
    }
    std::mutex mutex; // guards cameras
    Cameras cameras;
    Counter asked;
    Latch gate; // closed: discover() does not return
};

std::unique_ptr<Backend> backendOf(const std::shared_ptr<ListedCameras> &listed, bool atOnce)
{
    auto backend = std::make_unique<ScriptedBackend>();
    backend->atOnce = atOnce;
    backend->onDiscover = [listed] { return listed->ask(); };
    return backend;
}

class DiscoveryTest : public testing::Test {
protected:
    void SetUp() override { fast_->gate.open(); }

    std::shared_ptr<Bus> bus(bool withQuick, bool withSlow)
    {
        Backends backends;
        if (withQuick)
            backends.push_back(backendOf(fast_, true));
        if (withSlow)
            backends.push_back(backendOf(slow_, false));
        return std::make_shared<Bus>(std::move(backends));
    }

    std::shared_ptr<ListedCameras> fast_ = std::make_shared<ListedCameras>();
    std::shared_ptr<ListedCameras> slow_ = std::make_shared<ListedCameras>();
    std::atomic<Clock::time_point> time_{Clock::time_point{}};
    Discovery::Now now_ = [this] { return time_.load(); };
};

} // namespace

TEST_F(DiscoveryTest, fastBackEndIsQueriedDuringTheCall)
{
    Discovery discovery(bus(true, false));
    EXPECT_THAT(idsOf(discovery.take()), IsEmpty());
    fast_->show(cameras({"A", "B"}));
    EXPECT_THAT(idsOf(discovery.take()), ElementsAre("A", "B"));
}

TEST_F(DiscoveryTest, knownCamerasAreReturnedWhileTheFirstPassRuns)
{
    fast_->show(cameras({"A"}));
    slow_->show(cameras({"B"}));
    Discovery discovery(bus(true, true));
    slow_->asked.waitFor(1);
    EXPECT_THAT(idsOf(discovery.take()), ElementsAre("A")) << "does not wait for the slow one";
    slow_->gate.open();
}

TEST_F(DiscoveryTest, callWaitsForTheFirstPassWhileNoCameraIsKnown)
{
    slow_->show(cameras({"B"}));
    Discovery discovery(bus(true, true));
    slow_->asked.waitFor(1);
    // The result arrives from a thread that starts after the call, usually while the call waits.
    std::thread later([this] { slow_->gate.open(); });
    EXPECT_THAT(idsOf(discovery.take()), ElementsAre("B"));
    later.join();
}

TEST_F(DiscoveryTest, waitForTheFirstPassIsLimited)
{
    Discovery discovery(bus(false, true));
    EXPECT_THAT(idsOf(discovery.take()), IsEmpty());
    slow_->gate.open();
}

TEST_F(DiscoveryTest, stopEndsAWait)
{
    Discovery discovery(bus(false, true));
    slow_->asked.waitFor(1);
    std::thread waiter([&] { EXPECT_THAT(idsOf(discovery.take()), IsEmpty()); });
    discovery.beginStop();
    waiter.join();
    slow_->gate.open();
    discovery.waitUntilStopped(Clock::time_point::max());
}

TEST_F(DiscoveryTest, slowBackEndIsQueriedPeriodically)
{
    slow_->gate.open();
    Discovery discovery(bus(false, true));
    slow_->asked.waitFor(2);
}

TEST_F(DiscoveryTest, camerasKeepTheirPlacesWhileOthersComeAndGo)
{
    slow_->gate.open();
    slow_->show(cameras({"B", "A"}));
    Discovery discovery(bus(false, true));
    slow_->asked.waitFor(1);
    EXPECT_THAT(idsOf(discovery.take()), ElementsAre("B", "A"));
    slow_->show(cameras({"C", "A", "B"}));
    slow_->asked.waitFor(3); // the second pass is complete
    EXPECT_THAT(idsOf(discovery.take()), ElementsAre("B", "A", "C"));
}

TEST_F(DiscoveryTest, cameraOnTwoBackEndsIsListedOnce)
{
    fast_->show(cameras({"A", "", "A"}));
    slow_->show(cameras({"A", "B"}));
    slow_->gate.open();
    Discovery discovery(bus(true, true));
    slow_->asked.waitFor(2);
    EXPECT_THAT(idsOf(discovery.take()), ElementsAre("A", "B"));
}

TEST_F(DiscoveryTest, failingBackEndKeepsItsKnownCameras)
{
    auto backend = std::make_unique<ScriptedBackend>();
    backend->atOnce = false;
    auto asked = std::make_shared<Counter>();
    backend->onDiscover = [asked]() -> Cameras {
        asked->add();
        if (asked->value() > 1)
            throw std::runtime_error("the network is down");
        return cameras({"A"});
    };
    Discovery discovery(std::make_shared<Bus>(onlyBackend(std::move(backend))));
    asked->waitFor(3);
    EXPECT_THAT(idsOf(discovery.take()), ElementsAre("A"));
}

TEST_F(DiscoveryTest, threadReadsItsOwnSnapshotForHalfASecond)
{
    fast_->show(cameras({"A"}));
    Discovery discovery(bus(true, false), now_);
    discovery.take();
    fast_->show(cameras({"B", "C"}));
    std::thread([&] { discovery.take(); }).join();
    EXPECT_THAT(idsOf(discovery.present()), ElementsAre("A"));
    time_ = Clock::time_point{} + 499ms;
    EXPECT_THAT(idsOf(discovery.present()), ElementsAre("A"));
    time_ = Clock::time_point{} + 500ms;
    EXPECT_THAT(idsOf(discovery.present()), ElementsAre("B", "C"));
}

TEST_F(DiscoveryTest, threadWithoutASnapshotReadsTheNewest)
{
    fast_->show(cameras({"A"}));
    Discovery discovery(bus(true, false), now_);
    discovery.take();
    fast_->show(cameras({"B"}));
    std::thread([&] { EXPECT_THAT(idsOf(discovery.present()), ElementsAre("A")); }).join();
}

TEST_F(DiscoveryTest, namesCanBeReadBeforeAnyCount)
{
    fast_->show(cameras({"A"}));
    Discovery discovery(bus(true, false), now_);
    EXPECT_THAT(idsOf(discovery.present()), ElementsAre("A"));
}

TEST_F(DiscoveryTest, snapshotOfAnEarlierDiscoveryIsIgnored)
{
    fast_->show(cameras({"A"}));
    {
        Discovery(bus(true, false), now_).take();
    }
    fast_->show(cameras({"B"}));
    Discovery discovery(bus(true, false), now_);
    EXPECT_THAT(idsOf(discovery.present()), ElementsAre("B"));
}

TEST(Bus, backEndsAreNamedInAList)
{
    EXPECT_EQ(makeBackends("simulated").size(), 1u);
    EXPECT_EQ(makeBackends(" simulated , unheard-of,,").size(), 1u);
    EXPECT_TRUE(makeBackends("none").empty());
    EXPECT_TRUE(makeBackends("").empty());
}

#ifdef ORVALIS_WITH_GENICAM
TEST(Bus, realCamerasComeBeforeSimulatedOnes)
{
    for (const char *list : {"simulated,genicam,fake", "genicam,simulated,fake"}) {
        std::vector<std::string> names;
        for (const auto &backend : makeBackends(list))
            names.emplace_back(backend->name());
        EXPECT_THAT(names, ElementsAre("genicam", "fake", "simulated")) << list;
    }
}
#endif

TEST(Bus, cameraIsOpenedOnItsBackEnd)
{
    Backends backends;
    backends.push_back(std::make_unique<ScriptedBackend>());
    auto script = std::make_shared<Script>();
    backends.push_back(backendFor(script));
    Bus bus(std::move(backends));
    std::unique_ptr<Device> device;
    EXPECT_EQ(bus.open("elsewhere", device), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(bus.open(script->identity.id, device), ORVALIS_OK);
    EXPECT_EQ(device->identity().id, script->identity.id);
}
