// SPDX-License-Identifier: MIT
// One cell of the fault matrix: the fault, its visible effect, and the recovery.
#include "tests/faults/Cell.h"

#include <QThread>

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace faults {

namespace {

constexpr int cellPatienceMs = 700;

bool onGuiThread() { return QThread::currentThread() == QCoreApplication::instance()->thread(); }

/// The calls that a hook blocks.
class Waits {
public:
    void sleep(std::chrono::milliseconds time)
    {
        note();
        std::this_thread::sleep_for(time);
    }
    /// Blocks the caller until release(), at most `longest`.
    void hang(std::chrono::milliseconds longest)
    {
        note();
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, longest, [this] { return m_released; });
        m_released = true;
    }
    void release()
    {
        const std::lock_guard lock(m_mutex);
        m_released = true;
        m_changed.notify_all();
    }
    bool anywhere() const { return m_onGui || m_elsewhere; }
    bool onGui() const { return m_onGui; }

private:
    void note() { (onGuiThread() ? m_onGui : m_elsewhere) = true; }

    std::atomic<bool> m_onGui{false};
    std::atomic<bool> m_elsewhere{false};
    std::mutex m_mutex; // guards m_released
    std::condition_variable m_changed;
    bool m_released = false;
};

/// Makes one function faulty. End the fault before the window is destroyed.
class Fault {
public:
    Fault(std::string function, Kind kind, const Timing &timing, unsigned seed)
        : m_function(std::move(function)), m_kind(kind), m_timing(timing), m_seed(seed)
    {
    }
    void arm();
    void end();
    const Waits &waits() const { return *m_waits; }

private:
    void armHang();

    const std::string m_function;
    const Kind m_kind;
    const Timing m_timing;
    const unsigned m_seed;
    std::shared_ptr<Waits> m_waits = std::make_shared<Waits>();
};

void Fault::arm()
{
    fakeorvalis::clearCalls();
    switch (m_kind) {
    case Kind::Error:
        return fakeorvalis::fail(m_function);
    case Kind::Slow:
        return fakeorvalis::onCall(m_function,
                                   [waits = m_waits, time = m_timing.slow] { waits->sleep(time); });
    case Kind::Hang:
        return armHang();
    case Kind::Hostile:
        return fakeorvalis::hostile(m_seed, m_function);
    }
}

void Fault::armHang()
{
    for (const char *ending : {"OrvalisStopAcquisition", "OrvalisCloseCamera"})
        fakeorvalis::onCall(ending, [waits = m_waits] { waits->release(); });
    fakeorvalis::onCall(m_function, [waits = m_waits, time = m_timing.hang] { waits->hang(time); });
}

void Fault::end()
{
    fakeorvalis::fail(m_function, ORVALIS_OK);
    fakeorvalis::hostile(0);
    for (const std::string &hooked :
         {m_function, std::string("OrvalisStopAcquisition"), std::string("OrvalisCloseCamera")})
        fakeorvalis::onCall(hooked, {});
    m_waits->release();
}

QString stateOf(Bench &bench)
{
    if (!bench.hasWindow())
        return QStringLiteral("left");
    const QString box = bench.boxes() > 0 ? QStringLiteral("message, ") : QString();
    if (!bench.window().isAcquiring())
        return box + (bench.isOpen() ? QStringLiteral("open") : QStringLiteral("closed"));
    return box + (bench.waitForPictures(1, cellPatienceMs) ? QStringLiteral("plays")
                                                           : QStringLiteral("plays, no picture"));
}

QString waitingOf(const Waits &waits)
{
    if (!waits.anywhere())
        return {};
    return waits.onGui() ? QStringLiteral("waits, ") : QStringLiteral("answers, ");
}

/// Frames lost while saving was armed during the fault.
QString lostWhileArmed(const Action &action, Bench &bench)
{
    if (action.name.substr(0, 4) != "save" || !bench.hasWindow())
        return {};
    bench.window().slotStopCamera();
    const QStringList lost = bench.lostFrames();
    const bool nothingShown = lost == QStringList("no file") && bench.pictures() == 0;
    return lost.isEmpty() || nothingShown ? QString() : lost.join(QStringLiteral(", "));
}

Outcome runOnce(const Action &action, Fault &fault)
{
    Bench bench;
    if (action.prepare == nullptr) {
        bench.beforeStart([&fault] { fault.arm(); });
    } else {
        action.prepare(bench);
        fault.arm();
    }
    action.act(bench);
    QCoreApplication::processEvents();
    Outcome outcome;
    outcome.words = waitingOf(fault.waits()) + stateOf(bench);
    const bool stillOpen = bench.hasWindow() && bench.isOpen();
    if (stillOpen && fault.waits().anywhere() && !fault.waits().onGui())
        bench.window().slotCloseCamera(); // while the call hangs
    fault.end();
    outcome.trouble = lostWhileArmed(action, bench);
    if (outcome.trouble.isEmpty() && bench.hasWindow())
        outcome.trouble = bench.wayBack();
    return outcome;
}

bool comesByItself(const std::string &function)
{
    return function == "OrvalisNumberOfCameras" || function == "OrvalisGetDisplayName" ||
           function == "OrvalisGrabRGBData" || function == "OrvalisGrabRAWData";
}

bool isAboutTheBus(const Action &action)
{
    return action.name == "start" || action.name == "refresh" || action.name == "camera leaves";
}

} // namespace

std::vector<std::string> functionsOf(const Action &action)
{
    if (!action.only.empty())
        return {std::string(action.only)};
    Bench bench;
    if (action.prepare == nullptr)
        bench.beforeStart([] { fakeorvalis::clearCalls(); });
    else
        action.prepare(bench);
    fakeorvalis::clearCalls();
    action.act(bench);
    std::vector<std::string> functions;
    // The preview reads the size at any time; that call does not belong to this action.
    for (const std::string &call :
         isAboutTheBus(action) ? fakeorvalis::calls() : fakeorvalis::callsHere()) {
        const std::string function = call.substr(0, call.find('('));
        const bool known =
            std::find(functions.begin(), functions.end(), function) != functions.end();
        const bool grab = function.find("OrvalisGrab") == 0;
        if (!known && !grab && (isAboutTheBus(action) || !comesByItself(function)))
            functions.push_back(function);
    }
    return functions;
}

Outcome runCell(const Action &action, const std::string &function, Kind kind, const Timing &timing)
{
    Outcome all;
    const unsigned runs = kind == Kind::Hostile ? timing.seeds : 1;
    QStringList words;
    for (unsigned seed = 1; seed <= runs && all.trouble.isEmpty(); ++seed) {
        Fault fault(function, kind, timing, seed);
        const Outcome one = runOnce(action, fault);
        words << one.words;
        all.trouble = one.trouble;
    }
    words.removeDuplicates();
    words.sort();
    all.words = words.join(QStringLiteral(" or "));
    return all;
}

} // namespace faults
