// SPDX-License-Identifier: MIT
// Passes the frames of a working day through the viewer's receive path at full speed: callback,
// rate meter, queue, display thread, status bar, screen. Fails if a count is wrong or memory grows.
//
//   long_stream [--frames 28800000] [--seconds 600]
#include "tests/app/Shell.h"
#include "tests/support/Arguments.h"
#include "tests/support/ProcessFigures.h"

#include <QElapsedTimer>

#include <array>
#include <atomic>
#include <cstdio>
#include <thread>

using shell::Shell;

namespace {

constexpr int side = 16;
constexpr std::uint32_t mono8 = 0x01080001;
constexpr std::uint64_t windowFrames = 31;

/// Frames per marker, and the number of markers that may be queued for the GUI thread: a camera
/// with 1000 frames a second is never that far ahead.
constexpr std::uint64_t perMarker = 1000;
constexpr std::uint64_t mostMarkers = 8;

constexpr long allowedGrowthKiB = 16 * 1024;

/// Numbered frames, as many as a library keeps valid: the display thread reads a frame after its
/// callback.
class NumberedFrames {
public:
    NumberedFrames() : m_records(ring), m_planes(ring)
    {
        for (std::size_t i = 0; i < ring; ++i)
            m_records[i] = {side * side, side, side, 8, m_planes[i].data(), nullptr, nullptr};
    }

    /// Frame `number`, valid until `ring` further ones are made.
    OImageFrame *make(std::uint64_t number)
    {
        auto &plane = m_planes[number % ring];
        for (std::size_t byte = 0; byte < sizeof number; ++byte)
            plane[byte] = static_cast<std::uint8_t>(number >> (8 * byte));
        return &m_records[number % ring];
    }

    static std::uint64_t numberOf(const QImage &picture)
    {
        std::uint64_t number = 0;
        for (int byte = 0; byte < int{sizeof number}; ++byte)
            number |= static_cast<std::uint64_t>(qGray(picture.pixel(byte, 0))) << (8 * byte);
        return number;
    }

private:
    static constexpr std::size_t ring = std::size_t{1} << 16;
    std::vector<OImageFrame> m_records;
    std::vector<std::array<std::uint8_t, side * side>> m_planes;
};

/// Results, counted on the GUI thread unless stated otherwise.
struct Seen {
    std::uint64_t displayed = 0;
    std::uint64_t disordered = 0; ///< images whose number was not above the previous one
    std::uint64_t lastDisplayed = 0;
    std::atomic<std::uint64_t> counted{0}; ///< by the delivery thread: signals of the frame count
    std::atomic<std::uint64_t> wrongCounts{0};
    std::atomic<std::uint64_t> rates{0};
    std::atomic<std::uint64_t> wrongRates{0};
};

class LongStream {
public:
    LongStream(std::uint64_t frames, std::chrono::seconds longest)
        : m_wanted(frames), m_end(std::chrono::steady_clock::now() + longest)
    {
        shell::setRegion(side, side);
        m_shell.open();
        shell::setPixelFormat("Mono8", mono8);
        listen();
        m_shell->slotStartCamera();
        fakeorvalis::clearCalls();
    }
    ~LongStream() { m_shell->slotStopCamera(); }

    void run();
    /// Prints the results. Returns false if any is wrong.
    bool report();

private:
    void listen();
    void deliver();
    OImageFrame *next();
    void markIfDue();
    void tellProgress();

    const std::uint64_t m_wanted;
    const std::chrono::steady_clock::time_point m_end;
    NumberedFrames m_frames;
    Shell m_shell{[] { shell::setRegion(side, side); }};
    Seen m_seen;
    std::uint64_t m_made = 0;
    std::atomic<std::uint64_t> m_marksSet{0};
    std::atomic<std::uint64_t> m_marksPassed{0};
    std::atomic<std::uint64_t> m_delivered{0};
    std::atomic<bool> m_ended{false};
    int m_tenths = 0;
    viewertest::ProcessFigures m_early;
    double m_seconds = 0;
};

void LongStream::listen()
{
    MainWindow *window = m_shell.window.get();
    QObject::connect(window, &MainWindow::sigStatusBar, [this](int kind, double a, double b) {
        if (kind == 0) {
            const std::uint64_t count = ++m_seen.counted;
            m_seen.wrongCounts += a == static_cast<double>(count) ? 0 : 1;
        } else {
            ++m_seen.rates;
            m_seen.wrongRates += std::isfinite(a) && a >= 0 && std::isfinite(b) && b >= 0 ? 0 : 1;
        }
    });
    QObject::connect(
        window, &MainWindow::sigDisplayFrame, window,
        [this](const QPixmap &pixmap) {
            const std::uint64_t number = NumberedFrames::numberOf(pixmap.toImage());
            if (m_seen.displayed > 0 && number <= m_seen.lastDisplayed)
                ++m_seen.disordered;
            m_seen.lastDisplayed = number;
            ++m_seen.displayed;
        },
        Qt::QueuedConnection);
}

void LongStream::markIfDue()
{
    if (m_made % perMarker != 0)
        return;
    ++m_marksSet;
    QMetaObject::invokeMethod(
        m_shell.window.get(), [this] { ++m_marksPassed; }, Qt::QueuedConnection);
    while (m_marksSet - m_marksPassed > mostMarkers)
        std::this_thread::sleep_for(std::chrono::microseconds(50));
}

OImageFrame *LongStream::next()
{
    markIfDue();
    const bool late = m_made % perMarker == 0 && std::chrono::steady_clock::now() >= m_end;
    return m_made == m_wanted || late ? nullptr : m_frames.make(m_made++);
}

void LongStream::tellProgress()
{
    const std::uint64_t passed = m_marksPassed * perMarker;
    const int tenths = static_cast<int>(10 * passed / m_wanted);
    if (tenths == m_tenths)
        return;
    const auto figures = viewertest::processFigures();
    if (m_tenths == 0)
        m_early = figures;
    m_tenths = tenths;
    char text[64];
    (void)std::snprintf(text, sizeof text, "%12llu frames",
                        static_cast<unsigned long long>(passed));
    viewertest::printFigures(text, figures);
}

void LongStream::run()
{
    QElapsedTimer timer;
    timer.start();
    std::thread delivery([this] {
        m_delivered = fakeorvalis::deliverEach([this] { return next(); });
        m_ended = true;
    });
    while (!m_ended) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
        tellProgress();
    }
    delivery.join();
    m_seconds = static_cast<double>(timer.elapsed()) / 1000;
    // The newest frame is always displayed in the end.
    (void)QTest::qWaitFor([this] { return m_seen.lastDisplayed + 1 == m_delivered; }, 20000);
    QCoreApplication::processEvents();
}

bool LongStream::report()
{
    const auto late = viewertest::processFigures();
    const auto number = [](std::uint64_t value) { return QString::number(value).toLatin1(); };
    struct Check {
        const char *what;
        QByteArray is;
        QByteArray due;
    };
    const Check checks[] = {
        {"frames delivered", number(m_delivered), number(m_wanted)},
        {"frame counts signalled", number(m_seen.counted), number(m_wanted)},
        {"frame counts out of order", number(m_seen.wrongCounts), "0"},
        {"status bar", m_shell.recv().toLatin1(), number(m_wanted)},
        {"rates signalled", number(m_seen.rates), number(m_wanted / windowFrames)},
        {"rates negative or infinite", number(m_seen.wrongRates), "0"},
        {"number of the last picture", number(m_seen.lastDisplayed), number(m_wanted - 1)},
        {"pictures out of order", number(m_seen.disordered), "0"},
    };
    bool right = true;
    for (const Check &check : checks) {
        const bool same = check.is == check.due;
        std::printf("%-32s %12s%s%s\n", check.what, check.is.constData(),
                    same ? "" : "  instead of ", same ? "" : check.due.constData());
        right = right && same;
    }
    const long growth = late.residentKiB - m_early.residentKiB;
    std::printf("%-32s %12llu\n", "pictures shown",
                static_cast<unsigned long long>(m_seen.displayed));
    std::printf("%-32s %12.1f MiB, from the first tenth on\n", "growth of memory",
                static_cast<double>(growth) / 1024);
    std::printf("%-32s %12.0f, in %.0f s\n", "frames a second",
                static_cast<double>(m_delivered) / m_seconds, m_seconds);
    return right && growth <= allowedGrowthKiB;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const long frames = viewertest::argument(argc, argv, "frames", 28'800'000);
    const long seconds = viewertest::argument(argc, argv, "seconds", 600);
    LongStream stream(static_cast<std::uint64_t>(frames), std::chrono::seconds(seconds));
    stream.run();
    return stream.report() ? 0 : 1;
}
