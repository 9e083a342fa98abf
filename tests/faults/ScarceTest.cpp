// SPDX-License-Identifier: MIT
// The window on a machine that runs out of a resource or whose clock is set: it keeps working,
// leaves no incomplete file, and recovers after the shortage.
#include "tests/faults/Bench.h"
#include "tests/faults/Shortage.h"
#include "tests/faults/SteppedClock.h"

#include <QDir>

#include <cmath>
#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>

using faults::Bench;

namespace {

constexpr QSize small(64, 48);
constexpr std::size_t diskBytes = 100'000;
constexpr std::size_t fileBytes = 1000;
constexpr std::size_t largeMemory = 200'000;
constexpr QSize large(512, 512); // none of its planes and images is smaller than that

/// Makes mounts private to this program; they disappear when it ends.
bool enterOwnMounts()
{
    return unshare(CLONE_NEWNS) == 0 &&
           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool isWhole(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    constexpr int pixels = small.width() * small.height();
    const QString format = path.section('.', -1);
    if (format == QLatin1String("RAW"))
        return bytes.size() == pixels;
    if (format == QLatin1String("RGB"))
        return bytes.size() == 3 * pixels;
    if (format == QLatin1String("PNG") && !bytes.right(8).startsWith("IEND"))
        return false;
    if (format == QLatin1String("JPG") && !bytes.endsWith("\xFF\xD9"))
        return false;
    if (format == QLatin1String("BMP") && bytes.size() < 3 * pixels)
        return false;
    return QImage::fromData(bytes).size() == small;
}

/// True if there is no room for the smallest saved file.
bool isFull(const QString &folder)
{
    struct statvfs space {};
    qint64 smallest = 100'000;
    for (const QFileInfo &file : QDir(folder).entryInfoList(QDir::Files))
        smallest = std::min(smallest, file.size());
    return statvfs(qPrintable(folder), &space) == 0 &&
           qint64(space.f_bavail * space.f_bsize) < smallest;
}

/// True if the event loop handles a posted event.
bool answers()
{
    bool answered = false;
    QTimer::singleShot(0, qApp, [&answered] { answered = true; });
    return faults::waitFor([&] { return answered; });
}

} // namespace

class ScarceTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void aDiskThatIsFull_data();
    void aDiskThatIsFull();
    void aFolderThatGoesAway_data() { aDiskThatIsFull_data(); }
    void aFolderThatGoesAway();
    void aClockThatIsSetWhileSaving();
    void ratesUnderAClockThatIsSet();
    void noMoreDescriptors();
    void noMoreThreads();
    void noMoreMemory_data();
    void noMoreMemory();

private:
    static void play(Bench *bench);
    static void playAndSave(Bench *bench, const QString &format);
};

void ScarceTest::play(Bench *bench)
{
    bench->start();
    bench->open();
    QVERIFY(bench->play(20000));
}

void ScarceTest::playAndSave(Bench *bench, const QString &format)
{
    play(bench);
    bench->armSaving(format);
    QVERIFY(bench->waitForPictures(3));
}

void ScarceTest::aDiskThatIsFull_data()
{
    QTest::addColumn<QString>("format");
    for (const char *format : {"BMP", "JPG", "PNG", "RAW", "RGB"})
        QTest::newRow(format) << QString::fromLatin1(format);
}

void ScarceTest::aDiskThatIsFull()
{
    QFETCH(QString, format);
    Bench bench(small);
    {
        const faults::SmallDisk disk(bench.folder(), diskBytes);
        std::unique_ptr<faults::FileSizeLimit> limit;
        if (!disk.isThere())
            limit = std::make_unique<faults::FileSizeLimit>(fileBytes);
        playAndSave(&bench, format);
        QVERIFY(limit != nullptr || faults::waitFor([&] { return isFull(bench.folder()); }, 60000));
        QVERIFY(bench.waitForPictures(10));
        bench.window().slotStopCamera();
        faults::waitForTasks();
        QVERIFY(limit != nullptr || !bench.files().isEmpty());
        for (const QString &name : bench.files())
            QVERIFY2(isWhole(bench.folder() + '/' + name), qPrintable(name));
        QVERIFY(bench.window().isVisible() && answers());
    }
    QCOMPARE(bench.wayBack(), QString());
}

void ScarceTest::aFolderThatGoesAway()
{
    QFETCH(QString, format);
    Bench bench(small);
    playAndSave(&bench, format);
    QVERIFY(faults::waitFor([&] { return !bench.files().isEmpty(); }));
    // Retry: a frame saved meanwhile makes the removal fail.
    QVERIFY(faults::waitFor([&] { return QDir(bench.folder()).removeRecursively(); }));
    QVERIFY(bench.waitForPictures(5));
    QVERIFY(!QDir(bench.folder()).exists());
    QVERIFY(QDir().mkpath(bench.folder()));
    QVERIFY(faults::waitFor([&] { return !bench.files().isEmpty(); }));
    bench.window().slotStopCamera();
    faults::waitForTasks();
    for (const QString &name : bench.files())
        QVERIFY2(isWhole(bench.folder() + '/' + name), qPrintable(name));
    QCOMPARE(bench.wayBack(), QString());
}

void ScarceTest::aClockThatIsSetWhileSaving()
{
    Bench bench(small);
    playAndSave(&bench, "RAW");
    for (const int seconds : {-5, -3600, 3600, -2, -4, 0}) {
        QVERIFY(bench.waitForPictures(20));
        faults::setClockOff(std::chrono::seconds(seconds));
    }
    QVERIFY(bench.waitForPictures(5));
    bench.window().slotStopCamera();
    QCOMPARE(bench.lostFrames(), QStringList());
    QCOMPARE(bench.wayBack(), QString());
}

void ScarceTest::ratesUnderAClockThatIsSet()
{
    Bench bench(small);
    bench.start();
    bench.open();
    QVector<double> rates;
    QObject::connect(&bench.window(), &MainWindow::sigStatusBar, &bench.window(),
                     [&rates](int kind, double a, double b) {
                         if (kind == 1)
                             rates << a << b;
                     });
    QVERIFY(bench.play(20000));
    for (const int seconds : {-1, -3600, 86400, 0, -86400, 3600, 0}) {
        faults::setClockOff(std::chrono::seconds(seconds));
        const int known = rates.size();
        QVERIFY(faults::waitFor([&] { return rates.size() > known; }));
        QVERIFY(!bench.shell().rateLabel()->text().contains('-'));
        QVERIFY(!bench.shell().rateLabel()->text().contains("inf"));
    }
    for (const double rate : qAsConst(rates))
        QVERIFY2(std::isfinite(rate) && rate >= 0, qPrintable(QString::number(rate)));
    QCOMPARE(bench.wayBack(), QString());
}

void ScarceTest::noMoreDescriptors()
{
    Bench bench(small);
    play(&bench);
    {
        const faults::NoDescriptors none;
        bench.armSaving("PNG");
        QVERIFY(bench.waitForPictures(10));
        bench.window().slotStopCamera();
        for (int i = 0; i < 3; ++i)
            bench.window().OnTimer();
        bench.window().slotOneGrab();
        QVERIFY(faults::waitFor([&] { return !bench.window().isAcquiring(); }));
        bench.window().slotCloseCamera();
        bench.open();
        QVERIFY(bench.isOpen());
        QVERIFY(bench.play(20000));
        QVERIFY(answers());
    }
    bench.window().slotStopCamera();
    faults::waitForTasks();
    for (const QString &name : bench.files())
        QVERIFY2(isWhole(bench.folder() + '/' + name), qPrintable(name));
    QCOMPARE(bench.wayBack(), QString());
}

void ScarceTest::noMoreThreads()
{
    Bench bench(small);
    play(&bench);
    {
        const faults::NoThreads none;
        bench.armSaving("PNG");
        QVERIFY(bench.waitForPictures(10));
        bench.restCamera(true);
        bench.window().slotStopCamera();
        QCOMPARE(bench.lostFrames(), QStringList());
        bench.window().slotStartCamera();
        QVERIFY(!bench.window().isAcquiring());
        QVERIFY(bench.shell().action("actionPlay")->isEnabled());
        QVERIFY(!bench.shell().action("actionPlay")->isChecked());
        bench.window().OnTimer();
        bench.window().slotCloseCamera();
        bench.open();
        QVERIFY(bench.isOpen());
        QVERIFY(answers());
    }
    bench.restCamera(false);
    QCOMPARE(bench.wayBack(), QString());
}

void ScarceTest::noMoreMemory_data() { aDiskThatIsFull_data(); }

void ScarceTest::noMoreMemory()
{
#ifdef ORVALIS_NO_MEMORY
    QFETCH(QString, format);
    viewertest::expectWarning(QRegularExpression("QImage: out of memory"));
    Bench bench(large);
    playAndSave(&bench, format);
    bench.shell().action("actionDrawCenter")->setChecked(true);
    {
        const faults::NoMemory none(largeMemory);
        QVERIFY(faults::waitFor([] { return faults::NoMemory::refused() > 10; }));
        QVERIFY(answers());
        bench.window().slotStopCamera();
        bench.window().slotStartCamera();
        bench.window().slotStopCamera();
        bench.window().slotOneGrab();
        QVERIFY(faults::waitFor([&] { return !bench.window().isAcquiring(); }));
        bench.window().slotCloseCamera();
        bench.open();
        QVERIFY(bench.isOpen());
    }
    QCOMPARE(bench.lostFrames(), QStringList());
    QCOMPARE(bench.wayBack(), QString());
#else
    QSKIP("sanitizers have memory of their own");
#endif
}

int main(int argc, char *argv[])
{
    if (!enterOwnMounts())
        fprintf(stderr,
                "no mounts of its own: a limit of file sizes takes the place of a full disk\n");
    QApplication application(argc, argv);
    viewertest::installWarningTrap();
    ScarceTest test;
    return QTest::qExec(&test, argc, argv) + static_cast<int>(viewertest::takeWarnings().size());
}

#include "ScarceTest.moc"
