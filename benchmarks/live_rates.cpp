// SPDX-License-Identifier: MIT
// Compares the rate in the status bar with the camera's setting, and measures the response time of
// the window at 1000 frames a second. Prints figures without a verdict.
#include "sdk/OrvalisAPI.h"
#include "tests/live/LiveSession.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QStatusBar>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>
#include <vector>

namespace {

constexpr char fastCamera[] = "OV-SIM-0640F-0003";

/// Frame numbers in order of arrival, read from the upper left corner of the image.
struct Numbers {
    std::mutex mutex; // guards all other members
    std::condition_variable complete;
    std::uint32_t frames = 0;
    std::uint32_t gaps = 0;
    std::uint32_t repeats = 0;
    std::uint32_t last = 0;
} numbers;

constexpr std::uint32_t framesWanted = 10000;

std::uint32_t frameNumber(const OImageFrame &frame)
{
    std::uint32_t number = 0;
    for (std::uint32_t bit = 0; bit < 32; ++bit)
        number |= (frame.raw[4 * frame.width + bit * 8 + 4] > 127 ? 1U : 0U) << bit;
    return number;
}

void countFrame(OImageFrame *frame)
{
    const std::uint32_t number = frameNumber(*frame);
    const std::lock_guard lock(numbers.mutex);
    if (numbers.frames > 0 && number <= numbers.last)
        ++numbers.repeats;
    else if (numbers.frames > 0)
        numbers.gaps += number - numbers.last - 1;
    numbers.last = number;
    if (++numbers.frames >= framesWanted)
        numbers.complete.notify_all();
}

void tenThousandFrames()
{
    (void)OrvalisInit();
    OCameraHandle camera = nullptr;
    if (OrvalisOpenCamera(fastCamera, &camera) == ORVALIS_OK) {
        (void)OrvalisSetNodeBoolean(camera, "FrameNumberOverlay", true);
        (void)OrvalisSetShutter(camera, 500, false);
        (void)OrvalisSetFrameRate(camera, 1000);
        QElapsedTimer timer;
        timer.start();
        (void)OrvalisStartAcquisition(camera, countFrame);
        std::unique_lock lock(numbers.mutex);
        numbers.complete.wait_for(lock, std::chrono::seconds(60),
                                  [] { return numbers.frames >= framesWanted; });
        std::printf("library, 1000 fps set: %u frames in %.2f s, %u missing, %u repeated\n",
                    numbers.frames, double(timer.elapsed()) / 1000, numbers.gaps, numbers.repeats);
        lock.unlock();
        (void)OrvalisStopAcquisition(camera);
        (void)OrvalisSetNodeBoolean(camera, "FrameNumberOverlay", false);
        (void)OrvalisCloseCamera(camera);
    }
    (void)OrvalisUninit();
}

double shownRate(LiveSession &session)
{
    for (const auto *label : session.window().statusBar()->findChildren<QLabel *>())
        if (label->text().contains(QLatin1String(" fps")))
            return label->text().trimmed().section(QLatin1Char(' '), 0, 0).toDouble();
    return 0;
}

void rateLabel(LiveSession &session, int framesPerSecond)
{
    session.typeInto("spiFrameRate", QString::number(framesPerSecond));
    QTest::qWait(62 * 1000 / framesPerSecond + 4000); // two windows of 31 frames and the start
    const double shown = shownRate(session);
    std::printf("status bar, %d fps set: %.1f fps shown, %.2f %% off\n", framesPerSecond, shown,
                100 * (shown - framesPerSecond) / framesPerSecond);
}

/// Measures for ten seconds how long an event from another thread waits for the GUI thread.
void answerTimes(LiveSession &session)
{
    session.typeInto("spiShutter", QStringLiteral("500"));
    session.typeInto("spiFrameRate", QStringLiteral("1000"));
    std::vector<double> waits;
    std::atomic<bool> ended{false};
    std::thread asker([&] {
        for (int i = 0; i < 500; ++i) {
            QElapsedTimer asked;
            asked.start();
            QMetaObject::invokeMethod(
                &session.window(),
                [&waits, asked] { waits.push_back(double(asked.nsecsElapsed()) / 1e6); },
                Qt::BlockingQueuedConnection);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        ended = true;
    });
    while (!ended)
        QTest::qWait(10);
    asker.join();
    std::sort(waits.begin(), waits.end());
    std::printf("window at %.1f fps: an event waits %.2f ms (median), %.2f ms (99 %%), %.2f ms "
                "(longest)\n",
                shownRate(session), waits[waits.size() / 2], waits[waits.size() * 99 / 100],
                waits.back());
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    tenThousandFrames();
    LiveSession session;
    if (!session.open(QString::fromLatin1(fastCamera)))
        return 1;
    session.typeInto("spiFrameRate", QStringLiteral("30"));
    if (!session.play())
        return 1;
    for (const int rate : {5, 30, 200})
        rateLabel(session, rate);
    answerTimes(session);
    session.stop();
    return 0;
}
