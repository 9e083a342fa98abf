// SPDX-License-Identifier: MIT
// Measures the effect of the sensor preview on a stream: the same camera with and without the grabs
// of the preview. Prints figures without a verdict.
//   preview_rates [camera [frames per second [seconds]]]
#include "control/CameraCtrl.h"
#include "tests/live/LiveSession.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

struct Run {
    int received = 0;          ///< frames counted by the window
    double seconds = 0;        ///< from the first count to the last
    std::vector<double> rates; ///< frames per second, one for each measuring window
    int previews = 0;          ///< images in the preview
};

/// Streams for `seconds` and records the figures for the status bar.
Run stream(LiveSession &session, bool withPreview, int seconds)
{
    auto *panel = session.window().findChild<CameraCtrl *>();
    if (withPreview)
        panel->CreateGrabThread();
    else
        panel->DeleteGrabThread();

    Run run;
    QElapsedTimer clock;
    int first = 0;
    QObject listener;
    QObject::connect(&session.window(), &MainWindow::sigStatusBar, &listener,
                     [&](int kind, double value) {
                         if (kind == 1)
                             run.rates.push_back(value);
                         if (kind != 0)
                             return;
                         if (!clock.isValid()) {
                             clock.start();
                             first = static_cast<int>(value);
                         }
                         run.received = static_cast<int>(value) - first;
                         run.seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
                     });
    const auto *label = session.widget<QLabel>("laROI");
    qint64 lastPicture = label->pixmap(Qt::ReturnByValue).cacheKey();
    if (!session.play())
        return run;
    QElapsedTimer total;
    total.start();
    while (total.elapsed() < 1000LL * seconds) {
        QTest::qWait(50);
        const qint64 picture = label->pixmap(Qt::ReturnByValue).cacheKey();
        run.previews += picture != lastPicture ? 1 : 0;
        lastPicture = picture;
    }
    session.stop();
    return run;
}

void print(const char *name, const Run &run)
{
    if (run.rates.empty() || run.seconds <= 0)
        return;
    const auto [low, high] = std::minmax_element(run.rates.begin(), run.rates.end());
    std::printf(
        "%-16s %5d frames in %.1f s, %.2f per second; windows of 31 frames say %.2f to %.2f; "
        "%d preview pictures\n",
        name, run.received, run.seconds, run.received / run.seconds, *low, *high, run.previews);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    LiveSession session;
    if (!session.open(arguments.value(1, QStringLiteral("OV-SIM-2448C-0002"))))
        return 1;
    session.action("actionControl")->trigger();
    if (arguments.size() > 2)
        session.typeInto("spiFrameRate", arguments[2]);
    const int seconds = arguments.value(3, QStringLiteral("60")).toInt();
    const Run without = stream(session, false, seconds);
    print("without preview", without);
    const Run with = stream(session, true, seconds);
    print("with preview", with);
    if (without.received > 0 && with.seconds > 0)
        std::printf("ratio of the rates  %.4f\n",
                    with.received / with.seconds * without.seconds / without.received);
    return 0;
}
