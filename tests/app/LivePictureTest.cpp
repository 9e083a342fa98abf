// SPDX-License-Identifier: MIT
// Which frame of a stream is shown and how: planes, rows, zoom and the centre cross.
#include "tests/app/Shell.h"

#include <QTimeLine>
#include <QtConcurrent>

#include <latch>

using shell::Frame;
using shell::gray;
using shell::mono8;
using shell::Shell;
using shell::shows;

class LivePictureTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void theNewestFrameIsShown();
    void planesAreChosenByFormat_data();
    void planesAreChosenByFormat();
    void aWidthNotDivisibleBy4ShowsAlignedRows_data();
    void aWidthNotDivisibleBy4ShowsAlignedRows();
    void greyIsShownWhileThePoolIsBusy();
    void brokenFramesAreDropped();
    void framesBehindAStopAreNotShown();
    void fitFollowsEveryFrame();
    void zoomActionsSetTheScale();
    void theCrossIsPainted_data();
    void theCrossIsPainted();
    void theCrossTakesNewValuesWithTheNextFrame();
};

namespace {

constexpr std::uint32_t bayerGR8 = 0x01080008;
constexpr std::uint32_t bayerGR12 = 0x01100010;
constexpr std::uint32_t mono12 = 0x01100005;
constexpr std::uint32_t rgb8 = 0x02180014;

/// Keeps every thread of the global pool busy while it lives.
class BusyPool {
public:
    BusyPool()
    {
        for (int i = 0; i < QThreadPool::globalInstance()->maxThreadCount(); ++i)
            m_tasks.addFuture(QtConcurrent::run([this] { m_end.wait(); }));
    }
    ~BusyPool()
    {
        m_end.count_down();
        m_tasks.waitForFinished();
    }

private:
    std::latch m_end{1};
    QFutureSynchronizer<void> m_tasks;
};

} // namespace

void LivePictureTest::theNewestFrameIsShown()
{
    const Shell shell;
    shell.play();
    Frame old(64, 48, 10);
    Frame newest(64, 48, 200);
    QVERIFY(shows(shell, old, gray(10)));
    QVERIFY(shows(shell, newest, gray(200)));
    QCOMPARE(shell.picture().size(), QSize(64, 48));
}

void LivePictureTest::planesAreChosenByFormat_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<uint>("code");
    QTest::addColumn<int>("plane"); // value of the plane that is to be shown
    QTest::newRow("Mono8") << "Mono8" << mono8 << 1;
    QTest::newRow("Mono12") << "Mono12" << mono12 << 3;
    QTest::newRow("12-bit code") << "Mono8" << bayerGR12 << 3;
    QTest::newRow("Bayer") << "BayerGR8" << bayerGR8 << 2;
    QTest::newRow("Bayer 12") << "BayerGR12" << bayerGR12 << 2;
    QTest::newRow("RGB") << "RGB8" << rgb8 << 2;
}

void LivePictureTest::planesAreChosenByFormat()
{
    QFETCH(QString, format);
    QFETCH(uint, code);
    QFETCH(int, plane);
    const Shell shell;
    shell.open();
    shell::setPixelFormat(format.toStdString(), code);
    shell->slotStartCamera();
    std::vector<std::uint8_t> raw(64 * 48, 1);
    std::vector<std::uint8_t> rgb(64 * 48 * 3, 2);
    std::vector<std::uint8_t> grey(64 * 48, 3);
    OImageFrame record{64 * 48, 64, 48, 8, raw.data(), rgb.data(), grey.data()};
    QTRY_VERIFY((fakeorvalis::deliver(record), !shell.item()->pixmap().isNull()));
    QCOMPARE(shell.picture().pixel(63, 47), gray(plane));
    shell->slotStopCamera();
}

void LivePictureTest::aWidthNotDivisibleBy4ShowsAlignedRows_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<int>("bytes");
    QTest::newRow("grey") << "Mono8" << 1;
    QTest::newRow("colour") << "RGB8" << 3;
}

void LivePictureTest::aWidthNotDivisibleBy4ShowsAlignedRows()
{
    QFETCH(QString, format);
    QFETCH(int, bytes);
    constexpr int width = 37;
    constexpr int height = 11;
    const Shell shell;
    shell.open();
    shell::setRegion(width, height);
    shell::setPixelFormat(format.toStdString(), mono8);
    shell->slotStartCamera();
    Frame frame(width, height, 0);
    for (std::size_t i = 0; i < frame.plane().size(); ++i)
        frame.plane()[i] = static_cast<std::uint8_t>(1 + i % 251);
    QTRY_VERIFY((frame.deliver(), !shell.item()->pixmap().isNull()));
    // Rows start at multiples of 4 bytes although the frame's rows follow each other closely.
    const int stride = (width * bytes + 3) / 4 * 4;
    const QImage picture = shell.picture();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto at = [&](int channel) {
                const auto place = static_cast<std::size_t>(y * stride + x * bytes + channel);
                const auto end = static_cast<std::size_t>(width * height * bytes);
                return place < end ? frame.plane()[place] : 0;
            };
            const QRgb expected = bytes == 1 ? gray(at(0)) : qRgb(at(0), at(1), at(2));
            QVERIFY2(picture.pixel(x, y) == expected, qPrintable(QString("%1,%2").arg(x).arg(y)));
        }
    }
    shell->slotStopCamera();
}

void LivePictureTest::greyIsShownWhileThePoolIsBusy()
{
    const Shell shell([] {
        shell::setPixelFormat("Mono8", mono8);
        shell::setRegion(640, 480);
    });
    shell.play();
    Frame frame(640, 480, 77);
    const BusyPool pool; // as with many frames to be saved
    QVERIFY(shows(shell, frame, gray(77)));
    shell.action("actionDrawCenter")->setChecked(true);
    QVERIFY(frame.deliver());
    QTRY_COMPARE(shell.picture().pixelColor(320, 240), QColor(Qt::red));
}

void LivePictureTest::brokenFramesAreDropped()
{
    const Shell shell;
    shell.play();
    std::vector<std::uint8_t> plane(64 * 48 * 3, 77);
    std::uint8_t *bytes = plane.data();
    std::vector<OImageFrame> broken{
        {64 * 48, 64, 48, 8, nullptr, nullptr, nullptr},
        {65 * 48, 65, 48, 8, bytes, bytes, bytes},
        {64 * 49, 64, 49, 8, bytes, bytes, bytes},
        {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, bytes, bytes, bytes},
        {0, 0, 0, 0, bytes, bytes, bytes},
    };
    QSignalSpy shown(shell.window.get(), SIGNAL(sigDisplayFrame(QPixmap)));
    for (OImageFrame &frame : broken)
        QVERIFY(fakeorvalis::deliver(frame));
    fakeorvalis::callback()(nullptr);
    QTRY_COMPARE(shell.recv(), QString("5"));
    Frame good(64, 48, 5);
    QVERIFY(shows(shell, good, gray(5)));
    for (const QVariantList &signal : qAsConst(shown))
        QCOMPARE(signal.at(0).value<QPixmap>().toImage().pixel(0, 0), gray(5));
    shell->slotStopCamera();
}

void LivePictureTest::framesBehindAStopAreNotShown()
{
    const Shell shell;
    shell.play();
    Frame first(64, 48, 10);
    QVERIFY(shows(shell, first, gray(10)));
    QPixmap late(64, 48);
    late.fill(Qt::blue);
    shell->slotStopCamera();
    shell->slotDisplayFrame(late);
    QCOMPARE(shell.picture().pixel(0, 0), gray(10));
    Frame behind(64, 48, 20);
    QVERIFY(!behind.deliver());
}

void LivePictureTest::fitFollowsEveryFrame()
{
    const Shell shell;
    shell->show();
    shell.play();
    Frame frame(64, 48, 30);
    QVERIFY(shows(shell, frame, gray(30)));
    QVERIFY(shell.view()->transform().isIdentity());
    shell.action("actionZoomFIT")->trigger();
    QVERIFY(shell.view()->transform().isIdentity());
    frame.deliver();
    QTRY_VERIFY(!shell.view()->transform().isIdentity());
    QCOMPARE(shell.view()->transform().m11(), shell.view()->transform().m22());
    shell.action("actionZoom100")->trigger();
    QVERIFY(shell.view()->transform().isIdentity());
    Frame next(64, 48, 31);
    QVERIFY(shows(shell, next, gray(31)));
    QVERIFY(shell.view()->transform().isIdentity());
}

void LivePictureTest::zoomActionsSetTheScale()
{
    const Shell shell;
    shell->show();
    shell.play();
    shell.action("actionZoomFIT")->trigger();
    shell.action("actionZoomIN")->trigger();
    QTRY_VERIFY(shell.view()->transform().m11() > 1.0);
    QTRY_VERIFY(shell.view()->findChildren<QTimeLine *>().isEmpty());
    shell.action("actionZoom100")->trigger();
    shell.action("actionZoomOUT")->trigger();
    QTRY_VERIFY(shell.view()->transform().m11() < 1.0);
}

void LivePictureTest::theCrossIsPainted_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("width");
    const QList<QSize> sizes{{64, 48}, {65, 49}, {1, 1}, {2, 1}, {3, 2}, {7, 7}};
    for (const QSize &size : sizes) {
        for (const int width : {1, 2, 3, 50})
            QTest::addRow("%dx%d, %d", size.width(), size.height(), width) << size << width;
    }
}

void LivePictureTest::theCrossIsPainted()
{
    QFETCH(QSize, size);
    QFETCH(int, width);
    const Shell shell;
    shell.play();
    shell.action("actionDrawCenter")->setChecked(true);
    shell->slotCenterValue(width, Qt::green);
    QPixmap pixmap(size);
    pixmap.fill(Qt::blue);
    shell->slotDisplayFrame(pixmap);
    const QImage painted = shell.picture();
    QCOMPARE(pixmap.toImage().pixelColor(0, 0), QColor(Qt::blue)); // the signal's copy is untouched
    const int middleX = size.width() / 2;
    const int middleY = size.height() / 2;
    const int before = width / 2;
    const int behind = (width - 1) / 2;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const bool cross = (x >= middleX - before && x <= middleX + behind) ||
                               (y >= middleY - before && y <= middleY + behind);
            QVERIFY2(painted.pixelColor(x, y) == QColor(cross ? Qt::green : Qt::blue),
                     qPrintable(QString("%1,%2").arg(x).arg(y)));
        }
    }
}

void LivePictureTest::theCrossTakesNewValuesWithTheNextFrame()
{
    const Shell shell;
    shell.play();
    shell.action("actionDrawCenter")->setChecked(true);
    QPixmap pixmap(9, 9);
    pixmap.fill(Qt::blue);
    shell->slotDisplayFrame(pixmap);
    QCOMPARE(shell.picture().pixelColor(4, 4), QColor(Qt::red));
    shell->slotCenterValue(1, Qt::white);
    QCOMPARE(shell.picture().pixelColor(4, 4), QColor(Qt::red));
    shell->slotDisplayFrame(pixmap);
    QCOMPARE(shell.picture().pixelColor(4, 4), QColor(Qt::white));
    shell.action("actionDrawCenter")->setChecked(false);
    shell->slotDisplayFrame(pixmap);
    QCOMPARE(shell.picture().pixelColor(4, 4), QColor(Qt::blue));
}

ORVALIS_QTEST_MAIN(LivePictureTest)
#include "LivePictureTest.moc"
