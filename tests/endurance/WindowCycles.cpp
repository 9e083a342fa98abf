// SPDX-License-Identifier: MIT
// Opens, plays, grabs single shots and closes simulated cameras thousands of times through the
// actions of the window, in order and at random. Fails if the window's state is wrong, or the
// number of threads or descriptors or the memory grows.
//
//   window_cycles [--opens 10000] [--plays 10000] [--shots 5000] [--mix 5000] [--seed 1]
#include "app/CameraList.h"
#include "tests/live/LiveSession.h"
#include "tests/support/Arguments.h"
#include "tests/support/ProcessFigures.h"

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QStatusBar>

#include <algorithm>
#include <cstdio>
#include <random>

namespace {

constexpr char camera[] = "OV-SIM-0640F";
constexpr int patienceMs = 20000;

/// Every play and every close leaks a scene of the view until the window is destroyed.
constexpr long keptForAScene = 16;
constexpr long allowedGrowthKiB = 16 * 1024;

class Cycles {
public:
    bool begin();
    void open();
    void close();
    void play();
    void stop();
    void shot();
    void anything(std::mt19937 &random);
    long wrong() const { return m_wrong; }
    int scenes() { return m_session.window().findChildren<QGraphicsScene *>().size(); }
    void expect(bool right, const char *what);

private:
    bool isOpen() const { return m_session.action("actionClose")->isEnabled(); }
    bool isAcquiring() { return m_session.window().isAcquiring(); }
    bool received(int least) const;

    LiveSession m_session;
    int m_row = -1;
    long m_wrong = 0;
};

void Cycles::expect(bool right, const char *what)
{
    if (!right && ++m_wrong <= 10)
        std::printf("WRONG: %s\n", what);
}

bool Cycles::begin()
{
    if (!m_session.open(QLatin1String(camera)))
        return false;
    for (const char *field : {"spiWidth", "spiHeight"})
        m_session.typeInto(field, QStringLiteral("64"));
    QMetaObject::invokeMethod(m_session.widget<QObject>("CameraCtrl"), "on_btnROIApply_clicked");
    m_session.typeInto("spiShutter", QStringLiteral("500"));
    m_session.typeInto("spiFrameRate", QStringLiteral("1000"));
    auto *list = m_session.window().findChild<CameraList *>()->findChild<QListWidget *>();
    m_row = list->row(list->findItems(QLatin1String(camera), Qt::MatchContains).first());
    close();
    return true;
}

void Cycles::open()
{
    if (isOpen())
        return;
    m_session.window().slotOpenCamera(m_row);
    expect(isOpen() && m_session.window().windowTitle().contains(QLatin1String(camera)), "open");
}

void Cycles::close()
{
    m_session.window().slotCloseCamera();
    QCoreApplication::processEvents();
    // Deferred deletions would otherwise wait for an event loop that does not run here.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    expect(!isOpen() && !isAcquiring(), "closed");
}

/// Waits until the status bar has counted `least` frames.
bool Cycles::received(int least) const
{
    const auto labels =
        const_cast<LiveSession &>(m_session).window().statusBar()->findChildren<QLabel *>();
    return QTest::qWaitFor(
        [&] { return labels.at(1)->text().section(QLatin1Char(' '), -1).toLongLong() >= least; },
        patienceMs);
}

void Cycles::play()
{
    if (!isOpen() || isAcquiring())
        return;
    m_session.action("actionPlay")->trigger();
    expect(isAcquiring(), "plays");
    expect(received(1), "frames come");
}

void Cycles::stop()
{
    const bool was = isAcquiring();
    m_session.action("actionStop")->trigger();
    expect(!isAcquiring(), "stopped");
    expect(!was || m_session.action("actionPlay")->isEnabled(), "may be played again");
}

void Cycles::shot()
{
    if (!isOpen() || isAcquiring())
        return;
    m_session.action("actionOneGrab")->trigger();
    expect(isAcquiring(), "shoots");
    expect(received(1), "a frame comes");
    expect(QTest::qWaitFor([this] { return !isAcquiring(); }, patienceMs), "the shot ends");
}

void Cycles::anything(std::mt19937 &random)
{
    switch (random() % 8) {
    case 0:
        return random() % 2 == 0 ? close() : open();
    case 1:
        return open();
    case 2:
    case 3:
        return play();
    case 4:
        return shot();
    case 5:
        m_session.window().OnTimer();
        return;
    default:
        return stop();
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const auto option = [&](const char *name, long usual) {
        return viewertest::argument(argc, argv, name, usual);
    };
    Cycles cycles;
    if (!cycles.begin())
        return 1;
    for (int i = 0; i < 10; ++i) {
        cycles.open();
        cycles.play();
        cycles.stop();
        cycles.close();
    }
    const auto early = viewertest::processFigures();
    viewertest::printFigures("warm", early);
    viewertest::repeat("opens and closes", option("opens", 10000), [&] {
        cycles.open();
        cycles.close(); // processes events
    });
    cycles.open();
    viewertest::repeat("plays and stops", option("plays", 10000), [&] {
        cycles.play();
        cycles.stop();
    });
    viewertest::repeat("single shots", option("shots", 5000), [&] { cycles.shot(); });
    std::mt19937 random(static_cast<unsigned>(option("seed", 1)));
    viewertest::repeat("random steps", option("mix", 5000), [&] { cycles.anything(random); });
    cycles.close();
    const auto late = viewertest::processFigures();
    viewertest::printFigures("in the end", late);
    const long growth = late.residentKiB - early.residentKiB;
    std::printf("%d scenes are kept, memory has grown by %ld KiB\n", cycles.scenes(), growth);
    cycles.expect(growth <= allowedGrowthKiB + keptForAScene * cycles.scenes(), "memory stays");
    cycles.expect(late.descriptors <= early.descriptors + 4, "descriptors stay");
    cycles.expect(late.threads <= early.threads + 2, "threads stay");
    std::printf("%ld wrong\n", cycles.wrong());
    return cycles.wrong() == 0 ? 0 : 1;
}
