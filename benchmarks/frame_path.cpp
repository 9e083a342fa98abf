// SPDX-License-Identifier: MIT
// Measures the path of a frame in the viewer, from the library's callback to the scene. The
// recording library replaces the camera, so that only the viewer is measured.
#include "app/MainWindow.h"
#include "benchmarks/Pause.h"
#include "benchmarks/Turns.h"
#include "tests/fakelibrary/FakeOrvalis.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <optional>
#include <thread>
#include <vector>

extern "C" void *__libc_malloc(std::size_t size);

namespace {

thread_local std::size_t t_allocations = 0;

} // namespace

/// Counts allocations of the calling thread, including those of operator new.
extern "C" void *malloc(std::size_t size)
{
    ++t_allocations;
    return __libc_malloc(size);
}

namespace {

constexpr std::uint32_t width = 2448;
constexpr std::uint32_t height = 2048;
constexpr std::size_t pixels = std::size_t{width} * height;
constexpr int callbacks = 4000;
constexpr std::size_t fullQueue = 10000;
constexpr int shownFrames = 120;

/// A streaming camera and its frames.
class Stream {
public:
    Stream(const char *format, std::uint32_t code, std::uint32_t w, std::uint32_t h)
        : m_planes(8, std::vector<std::uint8_t>(std::size_t{w} * h * 3))
    {
        pausing::holdPauses();
        fakeorvalis::reset();
        fakeorvalis::withState([&](fakeorvalis::State &state) {
            const auto signedWidth = static_cast<std::int32_t>(w);
            const auto signedHeight = static_cast<std::int32_t>(h);
            state.size = {0, 0, signedWidth, signedHeight, signedWidth, signedHeight};
            state.lists["PixelFormat"].current = format;
            state.info.pixelFormat = code;
        });
        m_window.emplace();
        m_window->show();
        m_window->slotOpenCamera(0);
        connectTo(beforeSlot);
        m_window->slotStartCamera();
        connectTo(afterSlot);
        m_callback = fakeorvalis::callback();
        std::uint8_t value = 0;
        for (auto &plane : m_planes) {
            std::memset(plane.data(), ++value, plane.size());
            m_frames.push_back({w * h, w, h, 8, plane.data(), plane.data(), plane.data()});
        }
        pausing::waitForPause();
    }
    ~Stream()
    {
        pausing::letPausesGo();
        m_window->slotStopCamera();
    }
    Stream(const Stream &) = delete;
    Stream &operator=(const Stream &) = delete;

    OImageFrame &nextFrame() { return m_frames[m_next++ % m_frames.size()]; }
    void call(OImageFrame &frame) const { m_callback(&frame); }

    /// Run on the GUI thread immediately before and after the slot that displays a frame.
    std::function<void()> beforeSlot = [] {};
    std::function<void()> afterSlot = [] {};

private:
    void connectTo(const std::function<void()> &run)
    {
        QObject::connect(
            &*m_window, &MainWindow::sigDisplayFrame, &*m_window, [&run] { run(); },
            Qt::QueuedConnection);
    }

    std::vector<std::vector<std::uint8_t>> m_planes;
    std::vector<OImageFrame> m_frames;
    std::size_t m_next = 0;
    OFrameCallback m_callback = nullptr;
    std::optional<MainWindow> m_window;
};

/// Waits until the display thread has taken all queued frames.
void emptyTheQueue()
{
    pausing::endPause();
    pausing::waitForPause();
}

/// Runs the callback on its own thread while this one, the GUI thread, is blocked.
void measureCallback(Stream &stream, const char *what, std::size_t queued)
{
    std::vector<double> seconds, blocks;
    std::thread([&] {
        for (std::size_t i = 0; i < queued; ++i)
            stream.call(stream.nextFrame());
        for (int i = 0; i < callbacks; ++i) {
            if (queued == 0)
                emptyTheQueue();
            OImageFrame &frame = stream.nextFrame();
            const std::size_t before = t_allocations;
            seconds.push_back(timed(CLOCK_MONOTONIC, [&] { stream.call(frame); }));
            blocks.push_back(static_cast<double>(t_allocations - before));
        }
    }).join();
    emptyTheQueue();
    std::printf("callback, %s, window busy: median %.2f us, 99 of 100 within %.2f us, "
                "%.0f allocations (median)\n",
                what, median(seconds) * 1e6, percentile(seconds, 99) * 1e6, median(blocks));
    QCoreApplication::processEvents();
}

void measureCallbacks()
{
    Stream stream("Mono8", 0x01080001, 64, 48);
    measureCallback(stream, "slot empty", 0);
    measureCallback(stream, "10000 frames before", fullQueue);
}

/// One copy of the frame and one conversion to 32 bits, in existing memory: two images in turn, as
/// the displayed one must not be overwritten.
class Floor {
public:
    explicit Floor(std::size_t bytesPerPixel)
        : m_bytesPerPixel(bytesPerPixel),
          m_copy(pixels * bytesPerPixel), m_shown{std::vector<QRgb>(pixels),
                                                  std::vector<QRgb>(pixels)}
    {
    }
    void operator()(const OImageFrame &frame)
    {
        copy(frame.rgb, pixels * m_bytesPerPixel, m_copy.data());
        if (m_bytesPerPixel == 1)
            fromGray(m_copy.data(), m_shown[m_next++ % 2].data());
        else
            fromRgb(m_copy.data(), m_shown[m_next++ % 2].data());
    }

private:
    static void copy(const std::uint8_t *__restrict in, std::size_t bytes,
                     std::uint8_t *__restrict out)
    {
        for (std::size_t i = 0; i < bytes; ++i)
            out[i] = in[i];
    }
    static void fromGray(const std::uint8_t *__restrict in, QRgb *__restrict out)
    {
        for (std::size_t i = 0; i < pixels; ++i)
            out[i] = qRgb(in[i], in[i], in[i]);
    }
    static void fromRgb(const std::uint8_t *__restrict in, QRgb *__restrict out)
    {
        for (std::size_t i = 0; i < pixels; ++i)
            out[i] = qRgb(in[i * 3], in[i * 3 + 1], in[i * 3 + 2]);
    }

    std::size_t m_bytesPerPixel;
    std::vector<std::uint8_t> m_copy;
    std::vector<QRgb> m_shown[2];
    unsigned m_next = 0;
};

/// Elapsed time and processor time of the path of a frame and of the floor.
struct Times {
    std::vector<double> wall;
    std::vector<double> processor;
};

/// Calls back with a frame and waits until its pixels are in the scene.
void showFrame(Stream &stream, const bool &shown)
{
    stream.call(stream.nextFrame());
    pausing::endPause();
    while (!shown)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

Times measurePath(Stream &stream, Floor &floor, Times &floors)
{
    Times paths;
    double slotBegan = 0;
    double slotSeconds = 0;
    bool shown = false;
    // The window's own queued connection runs between these two.
    stream.beforeSlot = [&] { slotBegan = secondsOf(CLOCK_THREAD_CPUTIME_ID); };
    stream.afterSlot = [&] {
        slotSeconds = secondsOf(CLOCK_THREAD_CPUTIME_ID) - slotBegan;
        shown = true;
    };
    const clockid_t display = pausing::displayThreadClock();
    for (int i = 0; i < shownFrames; ++i) {
        const auto plainly = [&] { floor(stream.nextFrame()); };
        floors.processor.push_back(timed(CLOCK_THREAD_CPUTIME_ID, [&] {
            floors.wall.push_back(timed(CLOCK_MONOTONIC, plainly));
        }));
        shown = false;
        const double start = secondsOf(display);
        paths.wall.push_back(timed(CLOCK_MONOTONIC, [&] { showFrame(stream, shown); }));
        pausing::waitForPause();
        paths.processor.push_back(secondsOf(display) - start + slotSeconds);
        QCoreApplication::processEvents(); // paints the image, not measured
    }
    return paths;
}

void measureToScreen(const char *what, const char *format, std::uint32_t code,
                     std::size_t bytesPerPixel)
{
    Stream stream(format, code, width, height);
    Floor floor(bytesPerPixel);
    Times floors;
    const Times paths = measurePath(stream, floor, floors);
    const auto print = [&](const char *clock, const std::vector<double> &path,
                           const std::vector<double> &plain) {
        std::printf("%s, 5 megapixels, callback to scene, %s: %.2f ms, floor %.2f ms, ratio %.2f "
                    "(medians)\n",
                    what, clock, median(path) * 1e3, median(plain) * 1e3, medianRatio(path, plain));
    };
    print("clock on the wall", paths.wall, floors.wall);
    print("processor time", paths.processor, floors.processor);
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    (void)std::setvbuf(stdout, nullptr, _IOLBF, 0);
    measureCallbacks();
    measureToScreen("mono", "Mono8", 0x01080001, 1);
    measureToScreen("colour", "BayerGR8", 0x01080008, 3);
    return 0;
}
