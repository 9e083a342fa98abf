// SPDX-License-Identifier: MIT
// Concurrent streams, nodes, registers and faults on many threads. For the sanitizers.
#include "library/convert/PixelFormat.h"
#include "tests/library/simulated/Bench.h"

#include <atomic>
#include <functional>
#include <random>
#include <string_view>
#include <thread>
#include <vector>

namespace orvalis::test {
namespace {

using namespace std::chrono_literals;

class Hammer : public Bench {};

std::size_t sumOf(const RawImage &image)
{
    return std::hash<std::string_view>{}({reinterpret_cast<const char *>(image.data), image.size});
}

/// Checks that the image has the size of its format, whatever was set while it was taken.
void expectWhole(const RawImage &image)
{
    const PixelFormat *format = findPixelFormat(image.pixelFormat);
    ASSERT_NE(format, nullptr) << std::hex << image.pixelFormat;
    EXPECT_EQ(image.size, imageBytes(*format, image.width, image.height));
}

/// Streams and checks the images until `stop`.
void streamAgainAndAgain(Device &camera, const std::atomic<bool> &stop, std::atomic<int> &pictures)
{
    RawImage kept;
    std::size_t sum = 0;
    while (!stop) {
        if (camera.startStream() != ORVALIS_OK)
            continue;
        for (int i = 0; i < 5; ++i) {
            RawImage image;
            if (camera.nextImage(image, Clock::now() + 50ms) != ORVALIS_OK)
                continue;
            expectWhole(image);
            EXPECT_TRUE(!kept.data || sumOf(kept) == sum) << "an image in use has changed";
            kept = image;
            sum = sumOf(kept);
            ++pictures;
        }
        camera.stopStream();
    }
}

TEST_F(Hammer, hasNoRaceAndNoTornImage)
{
    open(kColor);
    region(0, 0, 320, 128);
    set("PixelFormat", "RGB8");
    std::atomic<bool> stop{false};
    std::atomic<int> pictures{0};
    std::vector<std::jthread> threads;
    threads.emplace_back([&] { streamAgainAndAgain(*camera_, stop, pictures); });
    for (unsigned seed = 1; seed <= 3; ++seed)
        threads.emplace_back([&, seed] { // settings
            std::mt19937 engine(seed);
            const auto random = [&] { return static_cast<unsigned>(engine()); };
            const char *const modes[] = {"Off", "Continuous"};
            while (!stop) {
                auto &map = nodes();
                map.setFloat("ExposureTime", 50.0 + random() % 20000);
                map.setFloat("Gain", random() % 24);
                map.setInteger("Hue", random() % 1017);
                map.setInteger("OffsetX", random() % 2000);
                map.setInteger("Height", 64 + random() % 128);
                map.setEnumeration("ExposureAuto", modes[random() % 2]);
                map.setEnumeration("BalanceWhiteAuto", random() % 8 ? "Continuous" : "Once");
                map.setEnumeration("PixelFormat", random() % 2 ? "RGB8" : "BayerGR12");
                map.setEnumeration("TriggerMode", random() % 4 ? "Off" : "On");
                map.execute("TriggerSoftware");
                map.execute(random() % 2 ? "UserSetLoad" : "UserSetSave");
                std::uint32_t word = 0;
                camera_->readRegister(0x1000 + random() % 64 * 4, word);
                camera_->writeRegister(0x1200 + random() % 64 * 4, word);
                std::vector<std::string> names;
                map.list("Root", names);
            }
        });
    threads.emplace_back([&] { // the rest
        while (!stop) {
            camera_->wake();
            RawImage image;
            camera_->takeImage(image, Clock::now() + 10ms);
            bus_->discover();
            std::unique_ptr<Device> other;
            bus_->open(kColor, other);
            std::this_thread::sleep_for(1ms);
        }
    });
    for (const auto limit = soon(); pictures < 20 && Clock::now() < limit;)
        std::this_thread::sleep_for(1ms);
    stop = true;
    EXPECT_GE(pictures, 20);
}

TEST_F(Hammer, survivesACameraThatComesAndGoes)
{
    std::atomic<bool> stop{false};
    std::atomic<int> frames{0};
    std::atomic<int> opened{0};
    std::vector<std::jthread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            while (!stop) {
                std::unique_ptr<Device> device;
                if (bus_->open(kFast, device) != ORVALIS_OK) {
                    std::this_thread::sleep_for(1ms);
                    continue;
                }
                ++opened;
                device->nodes().setInteger("SimulationLeaveDuration", 5);
                std::jthread puller([&] { device->nodes().execute("SimulationLeaveBus"); });
                RawImage image;
                device->startStream();
                for (int n = 0; n < 3; ++n)
                    frames += device->nextImage(image, Clock::now() + 20ms) == ORVALIS_OK;
                device->stopStream();
            }
        });
    // On a slow machine the camera usually disappears before its frame.
    for (const auto limit = Clock::now() + 4min;
         (frames < 1 || opened < 20) && Clock::now() < limit;)
        std::this_thread::sleep_for(1ms);
    stop = true;
    threads.clear();
    EXPECT_GE(frames, 1);
    EXPECT_GE(opened, 20);
    while (bus_->open(kFast, camera_) != ORVALIS_OK)
        std::this_thread::sleep_for(1ms);
    take();
}

} // namespace
} // namespace orvalis::test
