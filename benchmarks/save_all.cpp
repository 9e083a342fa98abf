// SPDX-License-Identifier: MIT
// Saves every displayed image of the colour camera as PNG while it streams at full rate. Measures
// the memory of frames queued for saving and the response time of the window. Fails if a displayed
// image is missing or incomplete on disk, or if the memory exceeds its limit.
//
//   save_all [--frames 300] [--format PNG] [--seconds 1500]
#include "tests/live/FrameNumber.h"
#include "tests/live/LiveSession.h"
#include "tests/support/Arguments.h"
#include "tests/support/ProcessFigures.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QSet>
#include <QThreadPool>

#include <algorithm>
#include <cstdio>

namespace {

constexpr std::size_t mostWaiting = std::size_t{512} * 1024 * 1024;

/// In addition to the queued frames, each task holds the image that it encodes and the encoded
/// file.
constexpr long encoderKiB = 64 * 1024;

/// The number in the first rows. Reads the pixels directly, because Qt converts images on the
/// thread pool, where the GUI thread would wait for pending save tasks.
quint32 numberOf(const QImage &picture)
{
    QByteArray rows;
    for (int y = 0; y < std::min(8, picture.height()); ++y)
        for (int x = 0; x < picture.width(); ++x)
            rows.append(static_cast<char>(qGray(picture.pixel(x, y))));
    return frameNumber(rows, picture.width());
}

/// Measures the delay of events and the memory ten times a second.
class Watch {
public:
    explicit Watch(LiveSession &session) : m_session(session)
    {
        m_timer.setInterval(periodMs);
        QObject::connect(&m_timer, &QTimer::timeout, [this] { look(); });
        m_since.start();
        m_timer.start();
    }
    void print() const
    {
        std::printf("queued frames, by the limiter     %8.1f MiB at most\n", mebibytes(m_waiting));
        std::printf("memory of the program             %8.1f MiB at most, %.1f MiB before\n",
                    double(m_resident) / 1024, double(m_before.residentKiB) / 1024);
        std::printf("delay of events                   %8lld ms at most, %.1f ms on average\n",
                    m_latest, double(m_sum) / double(std::max(1L, m_looks)));
    }
    bool withinBounds() const
    {
        const auto tasks = QThreadPool::globalInstance()->maxThreadCount();
        const auto frames = static_cast<long>(mostWaiting / 1024);
        return m_waiting <= mostWaiting &&
               m_resident - m_before.residentKiB <= frames + tasks * encoderKiB;
    }

private:
    static constexpr int periodMs = 100;
    static double mebibytes(std::size_t bytes) { return double(bytes) / 1024 / 1024; }
    void look()
    {
        const qint64 late = std::max<qint64>(0, m_since.restart() - periodMs);
        m_latest = std::max(m_latest, late);
        m_sum += late;
        ++m_looks;
        m_waiting = std::max(m_waiting, m_session.window().bytesToSave());
        m_resident = std::max(m_resident, viewertest::processFigures().residentKiB);
    }

    LiveSession &m_session;
    const viewertest::ProcessFigures m_before = viewertest::processFigures();
    QTimer m_timer;
    QElapsedTimer m_since;
    std::size_t m_waiting = 0;
    long m_resident = 0;
    qint64 m_latest = 0;
    qint64 m_sum = 0;
    long m_looks = 0;
};

/// Compares the displayed images with the files. Returns false if one is missing or incomplete.
bool compare(const QVector<quint32> &shown, const QString &folder)
{
    QSet<quint32> saved;
    int broken = 0;
    for (const QFileInfo &file : QDir(folder).entryInfoList(QDir::Files)) {
        const QImage picture(file.filePath());
        broken += picture.isNull() ? 1 : 0;
        if (!picture.isNull())
            saved.insert(numberOf(picture));
    }
    if (saved.isEmpty())
        return false;
    // Saving was armed and disarmed between two frames: compare from the first frame on disk to the
    // last.
    const auto [first, last] = std::minmax_element(saved.begin(), saved.end());
    int counted = 0;
    int missing = 0;
    for (const quint32 number : shown) {
        const bool counts = number >= *first && number <= *last;
        counted += counts ? 1 : 0;
        missing += counts && !saved.contains(number) ? 1 : 0;
    }
    std::printf("images displayed while saving     %8d\n", counted);
    std::printf("files                             %8d, %d incomplete, %d images missing\n",
                int(saved.size()), broken, missing);
    return broken == 0 && missing == 0;
}

bool run(LiveSession &session, int frames, const QString &format, int seconds)
{
    if (!session.open(QStringLiteral("OV-SIM-2448C")) ||
        !session.commitNode(QStringLiteral("FrameNumberOverlay"), QStringLiteral("1")))
        return false;
    session.typeInto("spiFrameRate", QStringLiteral("89")); // as fast as it can
    session.choose("cmbSaveExt", format);
    QMetaObject::invokeMethod(session.widget<QObject>("CameraCtrl"), "on_radioSaveAll_clicked");
    QVector<quint32> shown;
    QObject::connect(&session.window(), &MainWindow::sigDisplayFrame, &session.window(),
                     [&](const QPixmap &pixmap) { shown.append(numberOf(pixmap.toImage())); });
    if (!session.play())
        return false;
    std::printf("camera set to %.1f frames a second, %d x %d\n", session.value("spiFrameRate"),
                session.shown().width(), session.shown().height());
    Watch watch(session);
    QElapsedTimer timer;
    timer.start();
    session.action("actionSave")->trigger();
    const int from = shown.size();
    (void)QTest::qWaitFor([&] { return shown.size() - from >= frames; }, seconds * 1000);
    session.action("actionSave")->trigger();
    std::printf("saved for                         %8.0f s\n", double(timer.elapsed()) / 1000);
    session.stop();
    (void)QTest::qWaitFor([&] { return session.window().bytesToSave() == 0; }, seconds * 1000);
    std::printf("the last file after               %8.0f s\n", double(timer.elapsed()) / 1000);
    watch.print();
    return compare(shown, session.saveFolder()) && watch.withinBounds();
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const auto frames = static_cast<int>(viewertest::argument(argc, argv, "frames", 300));
    const auto seconds = static_cast<int>(viewertest::argument(argc, argv, "seconds", 1500));
    const std::string format = viewertest::textArgument(argc, argv, "format", "PNG");
    LiveSession session;
    return run(session, frames, QString::fromStdString(format), seconds) ? 0 : 1;
}
