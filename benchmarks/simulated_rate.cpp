// SPDX-License-Identifier: MIT
// Measures rate and processor time of the simulated cameras through the C interface: colour at full
// size with conversion to RGB, and the fast camera. Run it on one core: taskset -c 0.
#include "benchmarks/Turns.h"
#include "sdk/OrvalisAPI.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <vector>

namespace {

/// Settings of a measurement.
struct Demand {
    const char *camera;
    std::uint32_t exposureUs;
    float framesPerSecond;
    bool rgb;
    std::size_t frames; ///< number of frames to count
};

constexpr Demand demands[] = {
    {"OV-SIM-2448C-0002", 10000, 60, true, 600},
    {"OV-SIM-2448C-0002", 10000, 89, true, 900}, // the limit of its link
    {"OV-SIM-0640F-0003", 500, 1000, false, 10000},
};

/// Received frames.
struct Arrivals {
    std::mutex mutex; // guards all other members
    std::condition_variable complete;
    std::size_t wanted = 0;
    std::vector<double> seconds; ///< time of each frame
    std::size_t withRgb = 0;
} arrivals;

void frameCame(OImageFrame *frame)
{
    const double now = secondsOf(CLOCK_MONOTONIC);
    const std::lock_guard lock(arrivals.mutex);
    arrivals.withRgb += frame->rgb != nullptr ? 1 : 0;
    arrivals.seconds.push_back(now);
    if (arrivals.seconds.size() == arrivals.wanted)
        arrivals.complete.notify_all();
}

/// Waits for `frames` further frames. Returns false after a time-out.
bool waitForFrames(std::size_t frames)
{
    std::unique_lock lock(arrivals.mutex);
    arrivals.wanted = frames;
    arrivals.withRgb = 0;
    arrivals.seconds.clear();
    arrivals.seconds.reserve(2 * frames);
    return arrivals.complete.wait_for(lock, std::chrono::seconds(60),
                                      [&] { return arrivals.seconds.size() >= frames; });
}

void print(const Demand &demand, double processorSeconds, std::int64_t skipped)
{
    const std::lock_guard lock(arrivals.mutex);
    const double frames = static_cast<double>(demand.frames - 1);
    const double elapsed = arrivals.seconds[demand.frames - 1] - arrivals.seconds.front();
    std::printf("%s, %.0f fps set%s: %.2f fps (%+.2f %%), %lld skipped, "
                "%.3f ms of a core for each frame, %.1f %% of a core\n",
                demand.camera, demand.framesPerSecond, arrivals.withRgb > 0 ? ", with RGB" : "",
                frames / elapsed, 100 * (frames / elapsed / demand.framesPerSecond - 1),
                static_cast<long long>(skipped), processorSeconds / frames * 1000,
                100 * processorSeconds / elapsed);
}

bool measure(OCameraHandle camera, const Demand &demand)
{
    (void)OrvalisSetShutter(camera, demand.exposureUs, false);
    (void)OrvalisSetFrameRate(camera, demand.framesPerSecond);
    (void)OrvalisSetBayerConversion(camera, demand.rgb ? 1 : 0);
    if (OrvalisStartAcquisition(camera, frameCame) != ORVALIS_OK)
        return false;
    OIntNode before{}, after{};
    bool complete = waitForFrames(static_cast<std::size_t>(demand.framesPerSecond)); // warms up
    (void)OrvalisGetNodeInt(camera, "StreamUnderrunCount", &before);
    const double start = secondsOf(CLOCK_PROCESS_CPUTIME_ID);
    complete = waitForFrames(demand.frames) && complete;
    const double used = secondsOf(CLOCK_PROCESS_CPUTIME_ID) - start;
    (void)OrvalisGetNodeInt(camera, "StreamUnderrunCount", &after);
    (void)OrvalisStopAcquisition(camera);
    if (complete)
        print(demand, used, after.value - before.value);
    return complete;
}

bool measure(const Demand &demand)
{
    OCameraHandle camera = nullptr;
    if (OrvalisOpenCamera(demand.camera, &camera) != ORVALIS_OK)
        return false;
    const bool complete = measure(camera, demand);
    (void)OrvalisCloseCamera(camera);
    return complete;
}

} // namespace

int main()
{
    (void)setenv("ORVALIS_BACKENDS", "simulated", 1);
    (void)OrvalisInit();
    int result = EXIT_SUCCESS;
    for (const Demand &demand : demands) {
        if (!measure(demand)) {
            std::fprintf(stderr, "simulated_rate: no stream of %s\n", demand.camera);
            result = EXIT_FAILURE;
        }
    }
    (void)OrvalisUninit();
    return result;
}
