// SPDX-License-Identifier: MIT
// Measures for each user action the longest time in which the window does not respond, while a
// camera sends 1000 frames a second, or as many as it can: stalls [rounds] [camera].
#include "sdk/OrvalisAPI.h"
#include "tests/live/LiveSession.h"
#include "tree/XMLCtrl.h"

#include <QApplication>
#include <QPushButton>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <map>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr char fastCamera[] = "OV-SIM-0640F-0003";
constexpr char otherCamera[] = "OV-SIM-1280M-0001";
constexpr double goalMs = 100;
constexpr int settleMs = 300;

/// Posts an event to the GUI thread every millisecond and measures its delay.
class Heartbeat {
public:
    explicit Heartbeat(QObject *window) : m_thread([this, window] { beat(window); }) {}

    ~Heartbeat()
    {
        m_ended = true;
        while (!m_left)
            QCoreApplication::processEvents();
        m_thread.join();
    }
    Heartbeat(const Heartbeat &) = delete;
    Heartbeat &operator=(const Heartbeat &) = delete;

    /// The longest delay since the last call. GUI thread.
    double takeLongestMs() { return std::exchange(m_longestMs, 0.0); }

private:
    void beat(QObject *window)
    {
        while (!m_ended) {
            QMetaObject::invokeMethod(
                window, [this, asked = Clock::now()] { answered(asked); },
                Qt::BlockingQueuedConnection);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        m_left = true;
    }

    void answered(Clock::time_point asked)
    {
        const std::chrono::duration<double, std::milli> waited = Clock::now() - asked;
        m_longestMs = std::max(m_longestMs, waited.count());
    }

    double m_longestMs = 0; // GUI thread only
    std::atomic<bool> m_ended{false};
    std::atomic<bool> m_left{false};
    std::thread m_thread; // last member: uses the others
};

class Measurement {
public:
    explicit Measurement(LiveSession &session) : m_session(session), m_heartbeat(&session.window())
    {
    }

    /// Records the longest stall while `act` runs and shortly after.
    void stall(const QString &what, const std::function<void()> &act)
    {
        QTest::qWait(settleMs);
        (void)m_heartbeat.takeLongestMs();
        act();
        QTest::qWait(settleMs);
        m_stalls[what].push_back(m_heartbeat.takeLongestMs());
        if (!m_order.contains(what))
            m_order.append(what);
    }

    void trigger(const QString &what, const char *action)
    {
        stall(
            what, [this, action] { m_session.action(action)->trigger(); });
    }

    bool print()
    {
        bool reached = true;
        for (const QString &what : m_order) {
            std::vector<double> &times = m_stalls[what];
            std::sort(times.begin(), times.end());
            std::printf("%-32s %6.1f ms median, %6.1f ms longest of %zu\n", qPrintable(what),
                        times[times.size() / 2], times.back(), times.size());
            reached = reached && times.back() < goalMs;
        }
        std::printf("goal: each less than %.0f ms\n", goalMs);
        return reached;
    }

private:
    LiveSession &m_session;
    Heartbeat m_heartbeat;
    std::map<QString, std::vector<double>> m_stalls;
    QStringList m_order;
};

/// Reads the tree of a second camera while the first one streams, and removes it again.
void buildTree(LiveSession &session, Measurement &measurement)
{
    OCameraHandle other = nullptr;
    if (OrvalisOpenCamera(otherCamera, &other) != ORVALIS_OK)
        return;
    auto *tree = session.window().findChild<XMLCtrl *>();
    measurement.stall(QStringLiteral("tree of 655 nodes, streaming"),
                      [tree, other] { tree->CreateXMLTree(other); });
    tree->DeleteXMLTree();
    (void)OrvalisCloseCamera(other);
}

void applyRegion(LiveSession &session) { session.widget<QPushButton>("btnROIApply")->click(); }

bool oneRound(LiveSession &session, const QString &camera, Measurement &measurement)
{
    bool opened = false;
    measurement.stall(QStringLiteral("open"), [&] { opened = session.open(camera); });
    if (!opened)
        return false;
    measurement.trigger(QStringLiteral("play"), "actionPlay");
    if (!session.waitForPictures(1))
        return false;
    measurement.stall(QStringLiteral("streaming, nothing else"), [] {});
    measurement.trigger(QStringLiteral("refresh, streaming"), "actionDiscovery");
    measurement.stall(QStringLiteral("apply region, streaming"), [&] { applyRegion(session); });
    buildTree(session, measurement);
    measurement.trigger(QStringLiteral("stop"), "actionStop");
    measurement.trigger(QStringLiteral("play again"), "actionPlay");
    if (!session.waitForPictures(1))
        return false;
    measurement.trigger(QStringLiteral("close, streaming"), "actionClose");
    return true;
}

void makeFast(LiveSession &session)
{
    session.typeInto("spiShutter", QStringLiteral("500"));
    session.typeInto("spiFrameRate", QStringLiteral("1000"));
    session.action("actionClose")->trigger();
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("ORVALIS_BACKENDS", "simulated");
    qputenv("ORVALIS_SIMULATED_EXTRA_NODES", "500");
    QApplication application(argc, argv);
    const int rounds = argc > 1 ? QByteArray(argv[1]).toInt() : 11;
    const QString camera = QString::fromLatin1(argc > 2 ? argv[2] : fastCamera);
    LiveSession session;
    if (!session.open(camera))
        return EXIT_FAILURE;
    makeFast(session);
    Measurement measurement(session);
    for (int round = 0; round < rounds; ++round) {
        if (!oneRound(session, camera, measurement)) {
            std::fprintf(stderr, "stalls: no image\n");
            return EXIT_FAILURE;
        }
    }
    return measurement.print() ? EXIT_SUCCESS : EXIT_FAILURE;
}
