// SPDX-License-Identifier: MIT
// Opens and closes a camera, streams and grabs, thousands of times, in order and at random. Fails
// if a call returns a wrong result, a frame arrives after a stop, or the number of threads or
// descriptors or the memory grows.
//
//   library_cycles [--opens 10000] [--streams 10000] [--shots 5000] [--mix 20000] [--seed 1]
//                  [--camera <part of an ID>]
#include "sdk/OrvalisAPI.h"
#include "tests/support/Arguments.h"
#include "tests/support/ProcessFigures.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <random>
#include <vector>

namespace {

constexpr std::chrono::seconds patience{20};
constexpr std::int32_t side = 64; // small, so that frames are fast
constexpr long allowedGrowthKiB = 8 * 1024;

/// Counts frames. A frame between a stop and the next start is an error.
struct Frames {
    std::mutex mutex; // guards all other members
    std::condition_variable came;
    bool running = false;
    std::uint64_t count = 0;
    std::uint64_t late = 0;

    static void callback(OImageFrame *frame);
    void setRunning(bool on)
    {
        const std::lock_guard lock(mutex);
        running = on;
        count = 0;
    }
    bool waitForOne()
    {
        std::unique_lock lock(mutex);
        return came.wait_for(lock, patience, [this] { return count > 0; });
    }
} frames;

void Frames::callback(OImageFrame *frame)
{
    const std::lock_guard lock(frames.mutex);
    frames.late += frames.running && frame != nullptr ? 0 : 1;
    ++frames.count;
    frames.came.notify_all();
}

/// Counts wrong results and prints the first of them.
class Judge {
public:
    void expect(bool right, const char *what, long result = 0)
    {
        if (right)
            return;
        if (++m_wrong <= 10)
            std::printf("WRONG: %s (%ld)\n", what, result);
    }
    void ok(std::int32_t result, const char *what) { expect(result == ORVALIS_OK, what, result); }
    long wrong() const { return m_wrong; }

private:
    long m_wrong = 0;
};

/// One camera and its expected state.
class Cycles {
public:
    Cycles(std::string camera, Judge &judge) : m_id(std::move(camera)), m_judge(judge) {}
    ~Cycles() { close(); }
    Cycles(const Cycles &) = delete;
    Cycles &operator=(const Cycles &) = delete;

    void open();
    void close();
    void start();
    void stop();
    void shot();
    void grab();
    void round();
    void anything(std::mt19937 &random);

private:
    void makeSmall();

    const std::string m_id;
    Judge &m_judge;
    OCameraHandle m_camera = nullptr;
    bool m_streaming = false;
    std::vector<std::uint8_t> m_raw;
    std::vector<std::uint8_t> m_rgb;
};

void Cycles::open()
{
    if (m_camera != nullptr)
        return;
    m_judge.ok(OrvalisOpenCamera(m_id.c_str(), &m_camera), "open");
    makeSmall();
}

void Cycles::makeSmall()
{
    OSizeInfo size{};
    m_judge.ok(OrvalisGetSizeInfo(m_camera, &size), "size");
    const auto pixels = static_cast<std::size_t>(size.maxWidth * size.maxHeight);
    m_raw.resize(2 * pixels);
    m_rgb.resize(3 * pixels);
    size.width = side;
    size.height = side;
    m_judge.ok(OrvalisSetSizeInfo(m_camera, size), "set size");
    (void)OrvalisSetShutter(m_camera, 100, false);
    float minimum = 0;
    float maximum = 0;
    m_judge.ok(OrvalisGetFrameRateMinMax(m_camera, &minimum, &maximum), "rates");
    (void)OrvalisSetFrameRate(m_camera, maximum);
}

void Cycles::close()
{
    if (m_camera == nullptr)
        return;
    m_judge.ok(OrvalisCloseCamera(m_camera), "close");
    frames.setRunning(false);
    m_streaming = false;
    OSizeInfo size{};
    m_judge.expect(OrvalisGetSizeInfo(m_camera, &size) == ORVALIS_ERROR_BAD_HANDLE,
                   "a handle is dead behind its close");
    m_camera = nullptr;
}

void Cycles::start()
{
    if (m_camera == nullptr || m_streaming)
        return;
    frames.setRunning(true);
    m_judge.ok(OrvalisStartAcquisition(m_camera, &Frames::callback), "start");
    m_streaming = true;
    m_judge.expect(frames.waitForOne(), "a frame comes");
}

void Cycles::stop()
{
    if (m_camera == nullptr)
        return;
    m_judge.ok(OrvalisStopAcquisition(m_camera), "stop");
    frames.setRunning(false);
    m_streaming = false;
}

void Cycles::shot()
{
    if (m_camera == nullptr || m_streaming)
        return;
    m_judge.ok(OrvalisSetNodeEnum(m_camera, "AcquisitionMode", "SingleFrame"), "single frame");
    start();
    {
        const std::lock_guard lock(frames.mutex);
        m_judge.expect(frames.count == 1, "one frame", static_cast<long>(frames.count));
    }
    stop();
    m_judge.ok(OrvalisSetNodeEnum(m_camera, "AcquisitionMode", "Continuous"), "continuous");
}

void Cycles::grab()
{
    if (m_camera == nullptr)
        return;
    OImageFrame frame{};
    frame.raw = m_raw.data();
    frame.rgb = m_rgb.data();
    m_judge.ok(OrvalisGrabRAWData(m_camera, &frame, 5000), "grab");
    m_judge.expect(frame.width == std::uint32_t{side}, "size of a grab", frame.width);
}

void Cycles::round()
{
    open();
    start();
    stop();
    grab();
    close();
}

void Cycles::anything(std::mt19937 &random)
{
    switch (random() % 8) {
    case 0:
        return open();
    case 1:
        return random() % 4 == 0 ? close() : open();
    case 2:
    case 3:
        return start();
    case 4:
    case 5:
        return stop();
    case 6:
        return shot();
    default:
        return grab();
    }
}

std::string findCamera(const std::string &part)
{
    std::uint32_t count = 0;
    (void)OrvalisNumberOfCameras(&count);
    for (std::uint32_t i = 0; i < count; ++i) {
        char id[ORVALIS_NAME_SIZE] = "";
        if (OrvalisGetCameraID(i, id) == ORVALIS_OK &&
            std::string(id).find(part) != std::string::npos)
            return id;
    }
    return {};
}

} // namespace

int main(int argc, char *argv[])
{
    const auto option = [&](const char *name, long usual) {
        return viewertest::argument(argc, argv, name, usual);
    };
    (void)OrvalisInit();
    const std::string id =
        findCamera(viewertest::textArgument(argc, argv, "camera", "OV-SIM-0640F"));
    Judge judge;
    judge.expect(!id.empty(), "there is a camera");
    Cycles cycles(id, judge);
    for (int i = 0; i < 20; ++i)
        cycles.round();
    const auto early = viewertest::processFigures();
    viewertest::printFigures("warm", early);
    viewertest::repeat("opens and closes", option("opens", 10000), [&] {
        cycles.open();
        cycles.close();
    });
    cycles.open();
    viewertest::repeat("starts and stops", option("streams", 10000), [&] {
        cycles.start();
        cycles.stop();
    });
    viewertest::repeat("single shots", option("shots", 5000), [&] { cycles.shot(); });
    std::mt19937 random(static_cast<unsigned>(option("seed", 1)));
    viewertest::repeat("random steps", option("mix", 20000), [&] { cycles.anything(random); });
    cycles.close();
    cycles.round();
    const auto late = viewertest::processFigures();
    viewertest::printFigures("in the end", late);
    judge.expect(late.residentKiB - early.residentKiB <= allowedGrowthKiB, "memory stays",
                 late.residentKiB - early.residentKiB);
    judge.expect(late.descriptors <= early.descriptors, "descriptors stay", late.descriptors);
    judge.expect(late.threads <= early.threads + 1, "threads stay", late.threads);
    judge.expect(frames.late == 0, "no frame behind a stop", static_cast<long>(frames.late));
    (void)OrvalisUninit();
    std::printf("%ld wrong\n", judge.wrong());
    return judge.wrong() == 0 ? 0 : 1;
}
