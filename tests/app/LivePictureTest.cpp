// SPDX-License-Identifier: MIT
// Which frame of a stream is displayed and how: planes, rows, zoom and the centre cross.
#include "tests/app/BusyPool.h"
#include "tests/app/Shell.h"

#include <QComboBox>
#include <QMouseEvent>
#include <QSpinBox>
#include <QTimeLine>
#include <QWheelEvent>

using shell::bayerGR12;
using shell::BusyPool;
using shell::Frame;
using shell::gray;
using shell::mono12;
using shell::mono8;
using shell::Shell;
using shell::shows;

class LivePictureTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void theNewestFrameIsDisplayed();
    void planesAreChosenByFormat_data();
    void planesAreChosenByFormat();
    void aWidthNotDivisibleBy4ShowsAlignedRows_data();
    void aWidthNotDivisibleBy4ShowsAlignedRows();
    void greyIsDisplayedWhileThePoolIsBusy();
    void brokenFramesAreDropped();
    void framesAfterAStopAreNotDisplayed();
    void fitFollowsEveryFrame();
    void zoomActionsSetTheScale();
    void theCrossIsPainted_data();
    void theCrossIsPainted();
    void newValuesOfTheCrossApplyToTheNextFrame();
    void theCrossIsTwoWideAtFirst();
    void theCrossDialogChangesTheImage();
    void closingTheDialogKeepsTheCross();
    void theCrossWaitsForTheNextFrame();
    void aDragMovesTheImageAtEveryScale_data();
    void aDragMovesTheImageAtEveryScale();
    void zoomActionsKeepAStoppedImage();
    void theWheelEndsFitMode();
    void aFrameWithoutARawSizeIsDisplayed();
    void everyDisplayedFrameIsEmittedAsAPicture_data();
    void everyDisplayedFrameIsEmittedAsAPicture();
};

namespace {

constexpr std::uint32_t bayerGR8 = 0x01080008;
constexpr std::uint32_t rgb8 = 0x02180014;

} // namespace

void LivePictureTest::theNewestFrameIsDisplayed()
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
    QTest::addColumn<int>("plane"); // value of the plane to be displayed
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
    // Rows start at multiples of 4 bytes although the frame's rows have no padding.
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

void LivePictureTest::greyIsDisplayedWhileThePoolIsBusy()
{
    const Shell shell([] {
        shell::setPixelFormat("Mono8", mono8);
        shell::setRegion(640, 480);
    });
    shell.play();
    Frame frame(640, 480, 77);
    const BusyPool pool; // as while many frames are saved
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

void LivePictureTest::framesAfterAStopAreNotDisplayed()
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
    QCOMPARE(pixmap.toImage().pixelColor(0, 0),
             QColor(Qt::blue)); // the cross is not painted into the signal's image
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

void LivePictureTest::newValuesOfTheCrossApplyToTheNextFrame()
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

void LivePictureTest::theCrossIsTwoWideAtFirst()
{
    const Shell shell;
    shell.play();
    shell.action("actionDrawCenter")->setChecked(true);
    QPixmap pixmap(64, 48);
    pixmap.fill(Qt::blue);
    shell->slotDisplayFrame(pixmap);
    const QImage painted = shell.picture();
    for (const int x : {31, 32})
        QCOMPARE(painted.pixelColor(x, 5), QColor(Qt::red));
    for (const int y : {23, 24})
        QCOMPARE(painted.pixelColor(5, y), QColor(Qt::red));
    for (const int x : {30, 33})
        QCOMPARE(painted.pixelColor(x, 5), QColor(Qt::blue));
    for (const int y : {22, 25})
        QCOMPARE(painted.pixelColor(5, y), QColor(Qt::blue));
}

void LivePictureTest::theCrossDialogChangesTheImage()
{
    const Shell shell;
    shell.play();
    shell.action("actionDrawCenter")->setChecked(true);
    auto *dialog = shell.child<QDialog>("DrawCenterDlg");
    dialog->findChild<QSpinBox *>()->setValue(1);
    dialog->findChild<QComboBox *>()->setCurrentIndex(4);
    QPixmap pixmap(9, 9);
    pixmap.fill(Qt::white);
    shell->slotDisplayFrame(pixmap);
    QCOMPARE(shell.picture().pixelColor(4, 1), QColor(Qt::red)); // not applied yet
    dialog->findChild<QPushButton *>("btnApply")->click();
    shell->slotDisplayFrame(pixmap);
    QCOMPARE(shell.picture().pixelColor(4, 1), QColor(Qt::blue));
    QCOMPARE(shell.picture().pixelColor(3, 1), QColor(Qt::white));
    QVERIFY(dialog->isVisibleTo(shell.window.get()));
}

void LivePictureTest::closingTheDialogKeepsTheCross()
{
    const Shell shell;
    shell->show();
    shell.play();
    shell.action("actionDrawCenter")->setChecked(true);
    auto *dialog = shell.child<QDialog>("DrawCenterDlg");
    QVERIFY(dialog->isVisible());
    dialog->close();
    QVERIFY(shell.action("actionDrawCenter")->isChecked());
    QPixmap pixmap(9, 9);
    pixmap.fill(Qt::white);
    shell->slotDisplayFrame(pixmap);
    QCOMPARE(shell.picture().pixelColor(4, 1), QColor(Qt::red));
}

void LivePictureTest::theCrossWaitsForTheNextFrame()
{
    const Shell shell;
    const QImage logo = shell.picture();
    shell.action("actionDrawCenter")->setChecked(true);
    QCOMPARE(shell.picture(), logo);
    shell.action("actionDrawCenter")->setChecked(false);
    shell.play();
    Frame frame(64, 48, 30);
    QVERIFY(shows(shell, frame, gray(30)));
    shell->slotStopCamera();
    const QImage last = shell.picture();
    shell.action("actionDrawCenter")->setChecked(true);
    QCOMPARE(shell.picture(), last);
}

void LivePictureTest::aDragMovesTheImageAtEveryScale_data()
{
    QTest::addColumn<double>("scale");
    for (const double scale : {20.0, 40.0, 100.0})
        QTest::addRow("%.0f", scale) << scale;
}

void LivePictureTest::aDragMovesTheImageAtEveryScale()
{
    QFETCH(double, scale);
    const Shell shell;
    shell->show();
    shell.play();
    QPixmap pixmap(2000, 2000);
    shell->slotDisplayFrame(pixmap);
    shell.view()->scale(scale, scale);
    QWidget *viewport = shell.view()->viewport();
    const QPoint from = viewport->rect().center();
    const QPointF held = shell.view()->mapToScene(from);
    const QPoint to = from + QPoint(-40, -30);
    QTest::mousePress(viewport, Qt::LeftButton, Qt::NoModifier, from);
    QMouseEvent drag(QEvent::MouseMove, to, viewport->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QCoreApplication::sendEvent(viewport, &drag);
    QTest::mouseRelease(viewport, Qt::LeftButton, Qt::NoModifier, to);
    QCOMPARE(shell.view()->mapFromScene(held),
             to); // the same point of the image is under the mouse
}

void LivePictureTest::zoomActionsKeepAStoppedImage()
{
    const Shell shell;
    shell.play();
    Frame frame(64, 48, 30);
    QVERIFY(shows(shell, frame, gray(30)));
    shell->slotStopCamera();
    const QImage last = shell.picture();
    for (const auto zoom : {&MainWindow::slotZoom100, &MainWindow::slotZoomFit}) {
        shell.view()->scale(3, 3);
        (*shell.*zoom)();
        QVERIFY(shell.view()->transform().isIdentity());
        QCOMPARE(shell.picture(), last);
    }
}

void LivePictureTest::theWheelEndsFitMode()
{
    const Shell shell;
    shell->show();
    shell.play();
    shell.action("actionZoomFIT")->trigger();
    Frame frame(64, 48, 30);
    QVERIFY(shows(shell, frame, gray(30)));
    QTRY_VERIFY(!shell.view()->transform().isIdentity());
    const qreal fitted = shell.view()->transform().m11();
    const QPointF middle = shell.view()->viewport()->rect().center();
    QWheelEvent turn(middle, shell.view()->viewport()->mapToGlobal(middle.toPoint()), {}, {0, -120},
                     Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(shell.view()->viewport(), &turn);
    QTRY_VERIFY(shell.view()->findChildren<QTimeLine *>().isEmpty());
    Frame next(64, 48, 31);
    QVERIFY(shows(shell, next, gray(31)));
    QVERIFY(shell.view()->transform().m11() < fitted);
}

void LivePictureTest::aFrameWithoutARawSizeIsDisplayed()
{
    const Shell shell([] { shell::setPixelFormat("Mono8", mono8); });
    shell.play();
    Frame frame(64, 48, 9);
    frame.record.rawSize = 0;
    QVERIFY(shows(shell, frame, gray(9)));
}

void LivePictureTest::everyDisplayedFrameIsEmittedAsAPicture_data()
{
    QTest::addColumn<bool>("live");
    QTest::newRow("stream") << true;
    QTest::newRow("single shot") << false;
}

void LivePictureTest::everyDisplayedFrameIsEmittedAsAPicture()
{
    QFETCH(bool, live);
    PicturePtr newest; // outlives the window, which may emit another one when it is destroyed
    const Shell shell;
    shell.open();
    shell::setPixelFormat("Mono8", shell::mono8);
    QObject::connect(
        shell.window.get(), &MainWindow::sigPicture, shell.window.get(),
        [&](const PicturePtr &picture) { newest = picture; }, Qt::QueuedConnection);
    live ? shell->slotStartCamera() : shell->slotOneGrab();
    Frame frame(64, 48, 77);
    QTRY_VERIFY((frame.deliver(), newest != nullptr));
    QCOMPARE(newest->width(), 64U);
    QCOMPARE(newest->sampleBytes(), std::size_t{64 * 48});
    QCOMPARE(newest->samples()[64 * 48 - 1], std::uint8_t{77});
    QCOMPARE(newest->stream().pixelFormat, shell::mono8);
    QVERIFY(newest->stamp().index > 0);
    QCOMPARE(newest->screenImage().pixel(0, 0), gray(77));
}

ORVALIS_QTEST_MAIN(LivePictureTest)
#include "LivePictureTest.moc"
