// SPDX-License-Identifier: MIT
// Saved frames: names, formats, and files that could not be written completely.
#include "capture/FrameSaveJob.h"
#include "capture/Picture.h"
#include "capture/SaveFileName.h"
#include "tests/support/QtTestMain.h"

#include <QDir>
#include <QFutureSynchronizer>
#include <QTemporaryDir>
#include <QtConcurrent>

#include <csignal>
#include <cstdlib>
#include <new>
#include <numeric>
#include <sys/resource.h>
#include <vector>

namespace {

thread_local bool noMemory = false; // for operator new in this thread

} // namespace

void *operator new(std::size_t size)
{
    void *memory = noMemory ? nullptr : std::malloc(size);
    return memory != nullptr ? memory : throw std::bad_alloc();
}
void operator delete(void *memory) noexcept { std::free(memory); }
void operator delete(void *memory, std::size_t) noexcept { std::free(memory); }

class SaveTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void namesFollowThePattern_data();
    void namesFollowThePattern();
    void anUnterminatedCameraIdIsReadWithinItsBuffer();

    void imagesAreWrittenByTheirSuffix_data();
    void imagesAreWrittenByTheirSuffix();
    void dumpsContainOnlyTheBytes_data();
    void dumpsContainOnlyTheBytes();
    void aFormatThatNamesADumpIsADump();
    void nothingToWriteLeavesNoFile_data();
    void nothingToWriteLeavesNoFile();
    void aMissingDirectoryIsSilent_data();
    void aMissingDirectoryIsSilent();
    void aFullDiskLeavesNoFile_data();
    void aFullDiskLeavesNoFile();
    void tasksOfTheSameMillisecondWriteSeparateFiles();
    void anExistingFileIsKept_data();
    void anExistingFileIsKept();
    void aNullJobIsIgnored();

    void aJobKeepsTheBytesOfItsFrame_data();
    void aJobKeepsTheBytesOfItsFrame();
    void aJobKeepsItsOwnImage();
    void aJobOfAFrameWithoutThePlaneWritesNothing_data();
    void aJobOfAFrameWithoutThePlaneWritesNothing();
    void aRawSizeBeyondThePixelsIsCut();
    void thePlaceIsReleasedWithTheJob();
    void aTaskThatCannotStartReleasesItsPlace();
    void aStartedTaskWritesItsFile();

private:
    /// @param pixelFormat name of the frame's pixel format
    static PicturePtr pictureOf(OImageFrame &frame, const char *pixelFormat)
    {
        PictureMaker maker({}, meaningOf(pixelFormat));
        return maker.make({&frame, {}}, Rows::AlignedTo4, 20000);
    }
    FrameSaveJob *newJob(const QString &format) const;
    QStringList files() const { return QDir(m_directory->path()).entryList(QDir::Files); }
    QByteArray onlyFile() const;

    QScopedPointer<QTemporaryDir> m_directory;
    QImage m_image;
    std::vector<unsigned char> m_bytes;
};

namespace {

/// While it exists, files of this process cannot grow beyond `bytes`.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before{};
};

void addFormats()
{
    QTest::addColumn<QString>("format");
    for (const char *format : {"BMP", "JPG", "PNG", "RAW", "RGB"})
        QTest::newRow(format) << QString::fromLatin1(format);
}

} // namespace

void SaveTest::init()
{
    m_directory.reset(new QTemporaryDir);
    QVERIFY(m_directory->isValid());
    m_image = QImage(201, 100, QImage::Format_RGB888);
    for (int y = 0; y < m_image.height(); ++y) {
        for (int x = 0; x < m_image.width(); ++x)
            m_image.setPixel(x, y, qRgb(x, (x * y) % 256, (x ^ y) * 7 % 256));
    }
    m_bytes.resize(60000);
    std::iota(m_bytes.begin(), m_bytes.end(), static_cast<unsigned char>(3));
}

void SaveTest::cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

FrameSaveJob *SaveTest::newJob(const QString &format) const
{
    auto *job = new FrameSaveJob;
    job->image = m_image;
    job->path = m_directory->path();
    job->format = format;
    job->cameraId = "CAM-A";
    job->width = 200;
    job->height = 100;
    job->size = static_cast<int>(m_bytes.size());
    job->raw = m_bytes.data();
    job->rgb = m_bytes.data();
    return job;
}

QByteArray SaveTest::onlyFile() const
{
    if (files().size() != 1)
        return "not one file";
    QFile file(QDir(m_directory->path()).filePath(files().constFirst()));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

void SaveTest::namesFollowThePattern_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("camera");
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("name");
    const QDateTime march(QDate(2025, 3, 5), QTime(9, 7, 3, 45));
    const QDateTime december(QDate(2025, 12, 31), QTime(23, 59, 58, 999));
    QTest::newRow("unpadded") << "/home/u" << QByteArray("X1") << march << "PNG"
                              << "/home/u/X1_3_5_9_7_3_45.PNG";
    QTest::newRow("longest") << "/d" << QByteArray("X1") << december << "JPG"
                             << "/d/X1_12_31_23_59_58_999.JPG";
    QTest::newRow("no path") << "" << QByteArray("X1") << march << "RAW"
                             << "/X1_3_5_9_7_3_45.RAW";
    QTest::newRow("no camera") << "/d" << QByteArray() << march << "BMP"
                               << "/d/_3_5_9_7_3_45.BMP";
    QTest::newRow("latin-1") << "/d"
                             << QByteArray("K\xE4"
                                           "fer")
                             << march << "BMP" << QStringLiteral("/d/K\u00e4fer_3_5_9_7_3_45.BMP");
    QTest::newRow("per cent signs") << "/100%2" << QByteArray("%3") << march << "%1"
                                    << "/100%2/%3_3_5_9_7_3_45.%1";
}

void SaveTest::namesFollowThePattern()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, camera);
    QFETCH(QDateTime, time);
    QFETCH(QString, format);
    const char *id = camera.isNull() ? nullptr : camera.constData();
    QTEST(saveFileName(path, id, time, format), "name");
}

void SaveTest::anUnterminatedCameraIdIsReadWithinItsBuffer()
{
    const std::vector<char> id(64, 'x');
    const QString name = saveFileName(QString(), id.data(), QDateTime::currentDateTime(), "RAW");
    QVERIFY(name.startsWith('/' + QString(64, 'x') + '_'));
}

void SaveTest::imagesAreWrittenByTheirSuffix_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<bool>("lossless");
    QTest::newRow("BMP") << "BMP" << QByteArray("BM") << true;
    QTest::newRow("JPG") << "JPG" << QByteArray("\xFF\xD8\xFF") << false;
    QTest::newRow("PNG") << "PNG" << QByteArray("\x89PNG") << true;
    QTest::newRow("TIF") << "TIF" << QByteArray("II*\0", 4) << true;
}

void SaveTest::imagesAreWrittenByTheirSuffix()
{
    QFETCH(QString, format);
    QFETCH(QByteArray, signature);
    QFETCH(bool, lossless);
    SaveThread(newJob(format));
    QVERIFY(onlyFile().startsWith(signature));
    QVERIFY(files().constFirst().startsWith("CAM-A_"));
    QVERIFY(files().constFirst().endsWith('.' + format));
    const QImage saved = QImage::fromData(onlyFile());
    QCOMPARE(saved.size(), m_image.size());
    if (lossless)
        QCOMPARE(saved.convertToFormat(QImage::Format_RGB888), m_image);
}

void SaveTest::dumpsContainOnlyTheBytes_data()
{
    QTest::addColumn<QString>("format");
    QTest::newRow("RAW") << "RAW";
    QTest::newRow("RGB") << "RGB";
}

void SaveTest::dumpsContainOnlyTheBytes()
{
    QFETCH(QString, format);
    FrameSaveJob *job = newJob(format);
    (format == "RAW" ? job->rgb : job->raw) = nullptr;
    SaveThread(job);
    QCOMPARE(onlyFile(), QByteArray(reinterpret_cast<const char *>(m_bytes.data()), 60000));
}

void SaveTest::aFormatThatNamesADumpIsADump()
{
    FrameSaveJob *job = newJob("xRAW16");
    SaveThread(job);
    QCOMPARE(onlyFile().size(), 60000);
    QVERIFY(files().constFirst().endsWith(".xRAW16"));
}

void SaveTest::nothingToWriteLeavesNoFile_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("bytes");
    QTest::newRow("no raw plane") << "RAW" << 100 << false;
    QTest::newRow("no rgb plane") << "RGB" << 100 << false;
    QTest::newRow("no size") << "RAW" << 0 << true;
    QTest::newRow("negative size") << "RGB" << -5 << true;
    QTest::newRow("no image") << "PNG" << 100 << true;
    QTest::newRow("no format") << "" << 100 << true;
    QTest::newRow("unknown format") << "XYZ" << 100 << true;
}

void SaveTest::nothingToWriteLeavesNoFile()
{
    QFETCH(QString, format);
    QFETCH(int, size);
    QFETCH(bool, bytes);
    FrameSaveJob *job = newJob(format);
    job->size = size;
    if (!bytes)
        job->raw = job->rgb = nullptr;
    if (format == "PNG")
        job->image = QImage();
    SaveThread(job);
    QCOMPARE(files(), QStringList());
}

void SaveTest::aMissingDirectoryIsSilent_data() { addFormats(); }

void SaveTest::aMissingDirectoryIsSilent()
{
    QFETCH(QString, format);
    FrameSaveJob *job = newJob(format);
    job->path = m_directory->filePath("not/there");
    SaveThread(job);
    QCOMPARE(files(), QStringList());
    QVERIFY(!QFile::exists(m_directory->filePath("not")));
}

void SaveTest::aFullDiskLeavesNoFile_data() { addFormats(); }

void SaveTest::aFullDiskLeavesNoFile()
{
    QFETCH(QString, format);
    {
        const FullDisk disk(1000);
        SaveThread(newJob(format));
    }
    QCOMPARE(files(), QStringList());
}

void SaveTest::tasksOfTheSameMillisecondWriteSeparateFiles()
{
    constexpr int tasks = 100;
    QFutureSynchronizer<void> started;
    for (int i = 0; i < tasks; ++i)
        started.addFuture(QtConcurrent::run(SaveThread, static_cast<void *>(newJob("RAW"))));
    started.waitForFinished();
    const auto saved = files();
    QCOMPARE(saved.size(), tasks);
    for (const QString &name : saved)
        QCOMPARE(QFileInfo(m_directory->filePath(name)).size(), 60000);
}

void SaveTest::anExistingFileIsKept_data() { addFormats(); }

// Happens when the clock is set back while every frame is saved.
void SaveTest::anExistingFileIsKept()
{
    QFETCH(QString, format);
    const QDateTime now = QDateTime::currentDateTime();
    constexpr int earlier = 300;
    for (int ms = 0; ms < earlier; ++ms) {
        QFile file(saveFileName(m_directory->path(), "CAM-A", now.addMSecs(ms), format));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("earlier") == 7);
    }
    SaveThread(newJob(format));
    int kept = 0;
    for (const QString &name : files()) {
        QFile file(m_directory->filePath(name));
        kept += file.open(QIODevice::ReadOnly) && file.readAll() == "earlier" ? 1 : 0;
    }
    QCOMPARE(kept, earlier);
    QCOMPARE(files().size(), earlier + 1);
}

void SaveTest::aNullJobIsIgnored() { SaveThread(nullptr); }

void SaveTest::aJobKeepsTheBytesOfItsFrame_data() { dumpsContainOnlyTheBytes_data(); }

void SaveTest::aJobKeepsTheBytesOfItsFrame()
{
    QFETCH(QString, format);
    std::vector<unsigned char> plane(m_bytes.begin(), m_bytes.end());
    OImageFrame frame{60000, 200, 100, 24, plane.data(), plane.data(), nullptr};
    auto job = makeSaveJob(*pictureOf(frame, "RGB8"), *saveFormatNamed(format));
    QCOMPARE(job->size, 60000);
    QCOMPARE(job->width, 200);
    QCOMPARE(job->height, 100);
    QCOMPARE(heldBytes(*job), std::size_t{60000});
    QVERIFY(job->image.isNull());
    job->path = m_directory->path();
    std::fill(plane.begin(), plane.end(),
              static_cast<unsigned char>(0)); // the camera reuses the plane
    SaveThread(job.release());
    QCOMPARE(onlyFile(), QByteArray(reinterpret_cast<const char *>(m_bytes.data()), 60000));
}

void SaveTest::aJobKeepsItsOwnImage()
{
    const QImage before(m_bytes.data(), 200, 100, 600, QImage::Format_RGB888);
    std::vector<unsigned char> plane(m_bytes.begin(), m_bytes.end());
    OImageFrame frame{0, 200, 100, 24, nullptr, plane.data(), nullptr};
    const auto job = makeSaveJob(*pictureOf(frame, "RGB8"), SaveFormat::Png);
    std::fill(plane.begin(), plane.end(),
              static_cast<unsigned char>(0)); // the camera reuses the plane
    QCOMPARE(job->image, before);
    QCOMPARE(heldBytes(*job), static_cast<std::size_t>(before.sizeInBytes()));
}

void SaveTest::aJobOfAFrameWithoutThePlaneWritesNothing_data() { dumpsContainOnlyTheBytes_data(); }

void SaveTest::aJobOfAFrameWithoutThePlaneWritesNothing()
{
    QFETCH(QString, format);
    OImageFrame frame{60000, 200, 100, 24, m_bytes.data(), nullptr, nullptr};
    if (format == "RAW")
        frame = {60000, 200, 100, 24, nullptr, m_bytes.data(), nullptr};
    auto job = makeSaveJob(*pictureOf(frame, format == "RAW" ? "RGB8" : "Mono8"),
                           *saveFormatNamed(format));
    job->path = m_directory->path();
    SaveThread(job.release());
    QCOMPARE(files(), QStringList());
}

void SaveTest::aRawSizeBeyondThePixelsIsCut()
{
    OImageFrame frame{0xFFFFFFFF, 200, 100, 24, m_bytes.data(), nullptr, nullptr};
    QCOMPARE(makeSaveJob(*pictureOf(frame, "Mono8"), SaveFormat::Raw)->size, 60000);
}

void SaveTest::aTaskThatCannotStartReleasesItsPlace()
{
    SaveLimiter limiter;
    std::unique_ptr<FrameSaveJob> job(newJob("RAW"));
    job->place = limiter.take(10);
    bool failed = false;
    noMemory = true;
    try {
        (void)startSaveTask(std::move(job));
    } catch (const std::bad_alloc &) {
        failed = true;
    }
    noMemory = false;
    QVERIFY(failed);
    QCOMPARE(limiter.taken(), std::size_t{0});
}

void SaveTest::aStartedTaskWritesItsFile()
{
    SaveLimiter limiter;
    std::unique_ptr<FrameSaveJob> job(newJob("RAW"));
    job->place = limiter.take(0);
    (void)startSaveTask(std::move(job));
    limiter.waitUntilEmpty();
    QCOMPARE(onlyFile().size(), 60000);
}

void SaveTest::thePlaceIsReleasedWithTheJob()
{
    SaveLimiter limiter;
    FrameSaveJob *job = newJob("RAW");
    job->place = limiter.take(60000);
    QCOMPARE(limiter.taken(), std::size_t{60000});
    SaveThread(job);
    QCOMPARE(limiter.taken(), std::size_t{0});
}

ORVALIS_QTEST_MAIN(SaveTest)
#include "SaveTest.moc"
