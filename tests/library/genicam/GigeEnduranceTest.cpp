// SPDX-License-Identifier: MIT
// Endurance: a camera that is killed and restarted repeatedly while it streams, ORVALIS_GIGE_CYCLES
// times (default 3), and a stream that must not lose frames, for ORVALIS_GIGE_SECONDS if that is
// set.
#include "tests/library/genicam/GenicamFixture.h"
#include "tests/support/ProcessFigures.h"

#include <algorithm>
#include <cstdio>
#include <map>

using namespace genicamtest;

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

/// Records the longest time of each kind of call.
class Stopwatch {
public:
    template <typename Call> auto operator()(const char *what, Call call)
    {
        const Clock::time_point begin = Clock::now();
        auto result = call();
        Milliseconds &longest = longest_[what];
        longest = std::max<Milliseconds>(longest, Clock::now() - begin);
        return result;
    }
    void printAndCheck() const
    {
        for (const auto &[what, time] : longest_) {
            std::printf("longest %-28s %8.1f ms\n", what.c_str(), time.count());
            EXPECT_LT(time, 30s) << what;
        }
    }

private:
    std::map<std::string, Milliseconds> longest_;
};

int setting(const char *variable, int usual)
{
    const char *value = std::getenv(variable);
    return value != nullptr ? std::atoi(value) : usual;
}

void streamUntilLost(Device &device, CameraProcess &camera, Stopwatch &watch)
{
    RawImage image;
    ASSERT_EQ(watch("startStream", [&] { return device.startStream(); }), ORVALIS_OK);
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(nextImage(device, image), ORVALIS_OK);
        ASSERT_TRUE(isWhole(image));
    }
    camera.kill();
    OResult result = ORVALIS_OK;
    watch("from kill to loss", [&] {
        while (result == ORVALIS_OK || result == ORVALIS_ERROR_TIMEOUT) {
            result = nextImage(device, image);
        }
        return result;
    });
    EXPECT_EQ(result, ORVALIS_ERROR_CONNECTION_LOST);
    orvalis::IntegerValue value;
    EXPECT_EQ(watch("node call after the loss",
                    [&] { return device.nodes().getInteger("Width", value); }),
              ORVALIS_ERROR_CONNECTION_LOST);
    watch("stopStream after the loss", [&] {
        device.stopStream();
        return 0;
    });
}

class GigeEndurance : public GigeFixture {};

TEST_F(GigeEndurance, aCameraKilledRepeatedlyIsReopenedEachTime)
{
    CameraProcess camera(1);
    ASSERT_EQ(backend_->discover().size(), 1U);
    Stopwatch watch;
    long early = 0;
    const int cycles = setting("ORVALIS_GIGE_CYCLES", 3);
    for (int i = 0; i < cycles; ++i) {
        std::unique_ptr<Device> device;
        ASSERT_EQ(watch("open", [&] { return backend_->open(camera.id(), device); }), ORVALIS_OK)
            << "cycle " << i;
        streamUntilLost(*device, camera, watch);
        watch("close after the loss", [&] {
            device.reset();
            return 0;
        });
        camera.start();
        early = i == 10 ? viewertest::processFigures().residentKiB : early;
    }
    watch.printAndCheck();
    const long late = viewertest::processFigures().residentKiB;
    std::printf("resident after the 10th cycle %ld KiB, in the end %ld KiB\n", early, late);
    if (cycles >= 50) {
        EXPECT_LT(late, early + early / 20) << "within 5 per cent";
    }
}

TEST_F(GigeEndurance, nothingIsLostAtAHundredFramesASecond)
{
    if (std::getenv("ORVALIS_GIGE_SECONDS") == nullptr) {
        GTEST_SKIP() << "needs an idle machine: ORVALIS_GIGE_SECONDS";
    }
    constexpr int rate = 100;
    const CameraProcess camera(1);
    const auto device = discoveredAndOpened(camera);
    ASSERT_TRUE(device);
    ASSERT_EQ(device->nodes().setFloat("AcquisitionFrameRate", rate), ORVALIS_OK);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    const int wanted = rate * setting("ORVALIS_GIGE_SECONDS", 0);
    const Clock::time_point begin = Clock::now();
    for (int i = 0; i < wanted; ++i) {
        RawImage image;
        ASSERT_EQ(nextImage(*device, image), ORVALIS_OK);
        ASSERT_TRUE(isWhole(image));
    }
    const std::chrono::duration<double> time = Clock::now() - begin;
    device->stopStream();
    double load = 0;
    EXPECT_EQ(getloadavg(&load, 1), 1);
    std::printf("%d frames of 512 x 512 in %.1f s, %.1f a second; load of the machine %.1f\n",
                wanted, time.count(), wanted / time.count(), load);
    for (const char *counter :
         {"StreamFailedFrameCount", "StreamUnderrunCount", "StreamMissingPacketCount"}) {
        EXPECT_EQ(integer(*device, counter), 0) << counter;
    }
}

} // namespace
