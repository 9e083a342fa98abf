// SPDX-License-Identifier: MIT
// The main window on the recording library, with a simulated user and camera.
#include "tests/faults/Bench.h"

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QSet>
#include <QThreadPool>

#include <algorithm>

namespace faults {

namespace {

constexpr std::chrono::milliseconds framePeriod{4};
constexpr std::size_t framesKept = 100;

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// First pixels of a saved frame, as in its planes; empty if the file is incomplete.
QByteArray firstPixels(const QString &path)
{
    if (path.endsWith(QLatin1String(".RAW")) || path.endsWith(QLatin1String(".RGB")))
        return fileBytes(path);
    const QImage picture = QImage::fromData(fileBytes(path)).convertToFormat(QImage::Format_RGB888);
    if (picture.isNull())
        return {};
    return {reinterpret_cast<const char *>(picture.constBits()), 3 * picture.width()};
}

} // namespace

bool waitFor(const std::function<bool()> &done, int longestMs)
{
    return QTest::qWaitFor(done, longestMs);
}

void waitForTasks()
{
    const auto *pool = QThreadPool::globalInstance();
    (void)waitFor([pool] { return pool->activeThreadCount() <= 0; }, 60000);
}

Feeder::Feeder(QSize size) : m_ring(framesKept)
{
    const auto width = static_cast<std::uint32_t>(size.width());
    const auto height = static_cast<std::uint32_t>(size.height());
    for (Picture &picture : m_ring) {
        picture.plane.assign(std::size_t{width} * height * 3, 100);
        std::uint8_t *plane = picture.plane.data();
        picture.record = {width * height, width, height, 8, plane, plane, plane};
    }
    m_thread = std::thread(&Feeder::run, this);
}

Feeder::~Feeder()
{
    m_stop = true;
    m_thread.join();
}

void Feeder::run()
{
    while (!m_stop) {
        if (!m_resting)
            (void)fakeorvalis::deliverEach([this] { return next(); });
        std::this_thread::sleep_for(framePeriod);
    }
}

OImageFrame *Feeder::next()
{
    if (m_stop || m_resting || fakeorvalis::callback() == nullptr)
        return nullptr;
    std::this_thread::sleep_for(framePeriod);
    Picture &picture = m_ring[++m_number % framesKept];
    for (std::size_t byte = 0; byte < sizeof m_number; ++byte)
        picture.plane[byte] = static_cast<std::uint8_t>(m_number >> (8 * byte));
    return &picture.record;
}

std::uint64_t Feeder::numberIn(const QByteArray &pixels)
{
    std::uint64_t number = 0;
    for (int byte = 0; byte < std::min(pixels.size(), int{sizeof number}); ++byte)
        number |= std::uint64_t{static_cast<std::uint8_t>(pixels.at(byte))} << (8 * byte);
    return number;
}

Bench::Bench(QSize size) : m_size(size), m_feeder(size)
{
    m_boxTimer.setInterval(5);
    QObject::connect(&m_boxTimer, &QTimer::timeout, [this] { answerBox(); });
    m_boxTimer.start();
}

Bench::~Bench() { exit(); }

void Bench::answerBox()
{
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (box == nullptr)
        return;
    ++m_boxes;
    box->done(box->standardButtons() & QMessageBox::Yes ? QMessageBox::Yes : QMessageBox::Ok);
}

void Bench::setDefaults() const
{
    fakeorvalis::withState([this](fakeorvalis::State &state) {
        state = fakeorvalis::defaultState();
        state.size = {
            0, 0, m_size.width(), m_size.height(), 2 * m_size.width(), 2 * m_size.height()};
    });
}

void Bench::start()
{
    m_shell = std::make_unique<shell::Shell>([this] {
        setDefaults();
        m_beforeStart();
    });
    window().show();
    QObject::connect(&window(), &MainWindow::sigDisplayFrame, &window(),
                     [this](const QPixmap &pixmap) { shown(pixmap); });
}

void Bench::shown(const QPixmap &pixmap)
{
    ++m_pictures;
    const QImage picture = pixmap.toImage().convertToFormat(QImage::Format_RGB888);
    const bool colour = picture.depth() == 24;
    if (!picture.isNull() && colour)
        m_numbers.append(Feeder::numberIn(
            {reinterpret_cast<const char *>(picture.constBits()), 3 * picture.width()}));
}

bool Bench::isOpen() { return shell().action("actionClose")->isEnabled(); }

bool Bench::waitForPictures(int count, int longestMs)
{
    const int due = m_pictures + count;
    return waitFor([&] { return m_pictures >= due; }, longestMs);
}

bool Bench::play(int longestMs)
{
    window().slotStartCamera();
    return waitForPictures(2, longestMs);
}

void Bench::armSaving(const QString &format)
{
    shell().child<QLineEdit>("edSavePath")->setText(folder());
    shell().child<QComboBox>("cmbSaveExt")->setCurrentText(format);
    QMetaObject::invokeMethod(shell().dock("CameraCtrl"), "on_radioSaveAll_clicked");
    waitForTasks();
    for (const QString &old : files())
        QFile::remove(folder() + '/' + old);
    m_numbers.clear();
    window().slotSaveImg(true);
}

void Bench::disarmSaving() { window().slotSaveImg(false); }

QStringList Bench::lostFrames()
{
    waitForTasks();
    QSet<std::uint64_t> saved;
    QStringList wrong;
    for (const QString &name : files()) {
        const QByteArray pixels = firstPixels(folder() + '/' + name);
        if (pixels.isEmpty())
            wrong << "not whole: " + name;
        saved.insert(Feeder::numberIn(pixels));
    }
    // Saving is armed and disarmed between two frames: compare from the first frame on disk to the
    // last.
    if (saved.isEmpty())
        return wrong << "no file";
    const auto [first, last] = std::minmax_element(saved.begin(), saved.end());
    for (const std::uint64_t number : std::exchange(m_numbers, {})) {
        if (number >= *first && number <= *last && !saved.contains(number))
            wrong << "lost: " + QString::number(number);
    }
    return wrong;
}

QStringList Bench::files() const { return QDir(folder()).entryList(QDir::Files); }

QString Bench::wayBack()
{
    window().slotCloseCamera();
    if (isOpen() || window().isAcquiring())
        return QStringLiteral("does not close");
    setDefaults();
    // A library that refuses to close a camera keeps it open; use the other one then.
    for (int index = 0; index < 2 && !isOpen(); ++index)
        open(index);
    if (!isOpen())
        return QStringLiteral("does not open again");
    if (!play(20000))
        return QStringLiteral("no picture again");
    armSaving(QStringLiteral("BMP"));
    // Images of earlier frames may still be queued.
    const bool went = waitForPictures(4) && waitFor([this] { return !files().isEmpty(); });
    disarmSaving();
    window().slotStopCamera();
    if (const QStringList lost = lostFrames(); !went || !lost.isEmpty())
        return QStringLiteral("not saved: ") + lost.join(QStringLiteral(", "));
    window().slotCloseCamera();
    return isOpen() ? QStringLiteral("does not close again") : QString();
}

} // namespace faults
