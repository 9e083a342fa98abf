// SPDX-License-Identifier: MIT
// The sensor preview thread, from start to end.
#include "tests/control/Gate.h"
#include "tests/control/PanelFixture.h"
#include "tests/support/QtTestMain.h"

#include <QLabel>
#include <QPushButton>
#include <QThread>

#include <atomic>

namespace {

struct Preview {
    /// Opens a camera with its region at 32, 24 on a sensor of 128 x 96.
    void open(const char *format)
    {
        fakeorvalis::withState([=](fakeorvalis::State &state) {
            state.size = {32, 24, 64, 48, 128, 96};
            state.lists["PixelFormat"].entries.push_back(format);
            state.lists["PixelFormat"].current = format;
        });
        panel.openCamera();
        panel.find<QLabel>("laROI")->setFixedSize(130,
                                                  98); // a pixel of the label is one of the sensor
    }
    QImage shown() const
    {
        return panel.find<QLabel>("laROI")->pixmap(Qt::ReturnByValue).toImage();
    }
    /// Whether the pixel in the middle of the region is `colour`.
    bool shows(QRgb colour) const
    {
        const QImage image = shown();
        return !image.isNull() && image.pixel(64, 48) == colour;
    }

    Panel panel;
};

constexpr QRgb white = 0xffffffff;

} // namespace

class CameraCtrlPreviewTest : public QObject {
    Q_OBJECT

private slots:
    void whiteSensorIsShownFirst();
    void formatChoosesTheGrab_data();
    void formatChoosesTheGrab();
    void regionLiesAtItsPlaceOnWhite();
    void grabsOnceASecond();
    void failedGrabKeepsTheLabel();
    void cameraOpenedLaterIsDisplayed();
    void sensorThatGrowsAfterTheLoad_data();
    void sensorThatGrowsAfterTheLoad();
    void secondStartDoesNothing();
    void stopWaitsForTheGrabAndDiscardsItsImage();
    void stopWithoutStart();
    void restartsAfterStop();
    void destructorStopsTheThread();
    void frameOfAnotherSizeThanTheRecord();
    void noGrabBeginsWhileSettingsAreReloaded_data();
    void noGrabBeginsWhileSettingsAreReloaded();
    void writesOfTheSizeWaitForTheGrab_data();
    void writesOfTheSizeWaitForTheGrab();
    void pausesNest();
    void pausedThreadCanEnd();
    void formatChangeReachesTheThread();
    void rawConversion_data();
    void rawConversion();
    void rawConversionOfEightBitsWritesNothing();
};

void CameraCtrlPreviewTest::whiteSensorIsShownFirst()
{
    Preview preview;
    preview.open("Mono8");
    fakeorvalis::fail("OrvalisGrabRAWData");
    preview.panel.panel.CreateGrabThread();
    QTRY_VERIFY(!preview.shown().isNull());
    QCOMPARE(preview.shown().size(), QSize(128, 96));
    QVERIFY(preview.shows(white));
}

void CameraCtrlPreviewTest::formatChoosesTheGrab_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<QRgb>("colour"); // of raw bytes 0x40 0x0A and RGB 1 2 3
    const QString rgb = "OrvalisGrabRGBData(h1, 1000)";
    const QString raw = "OrvalisGrabRAWData(h1, 1000)";
    QTest::newRow("BayerGR8") << rgb << qRgb(1, 2, 3);
    QTest::newRow("BayerGR12") << rgb << qRgb(1, 2, 3);
    QTest::newRow("YUV422_8") << rgb << qRgb(1, 2, 3);
    QTest::newRow("Mono8") << raw << qRgb(0x40, 0x40, 0x40);
    QTest::newRow("Mono12") << raw << qRgb(0xA4, 0xA4, 0xA4);
    QTest::newRow("Mono12Packed") << raw << qRgb(0xA4, 0xA4, 0xA4);
    QTest::newRow("RGB8") << raw << qRgb(0x40, 0x40, 0x40);
    QTest::newRow("bayer8") << raw << qRgb(0x40, 0x40, 0x40);
}

void CameraCtrlPreviewTest::formatChoosesTheGrab()
{
    QFETCH(QRgb, colour);
    const bool deep = QByteArray(QTest::currentDataTag()).contains("12");
    std::vector<std::uint8_t> raw(64 * 48 * 2, 0x40);
    std::vector<std::uint8_t> rgb(64 * 48 * 3);
    for (std::size_t index = 0; index < rgb.size(); ++index)
        rgb[index] = static_cast<std::uint8_t>(index % 3 + 1);
    for (std::size_t index = 1; deep && index < raw.size(); index += 2)
        raw[index] = 0x0A;
    Preview preview;
    preview.open(QTest::currentDataTag());
    fakeorvalis::setGrabPixels(raw, rgb);
    preview.panel.panel.CreateGrabThread();
    QTRY_VERIFY(preview.shows(colour));
    preview.panel.panel.DeleteGrabThread();
    QFETCH(QString, call);
    QCOMPARE(preview.panel.log().mid(0, 2), (QStringList{"OrvalisGetSizeInfo(h1)", call}));
}

void CameraCtrlPreviewTest::regionLiesAtItsPlaceOnWhite()
{
    Preview preview;
    preview.open("Mono8");
    preview.panel.panel.CreateGrabThread();
    QTRY_VERIFY(preview.shows(qRgb(128, 128, 128)));
    const QImage image = preview.shown();
    for (int y = 0; y < 96; ++y) {
        for (int x = 0; x < 128; ++x) {
            const bool inside = QRect(32, 24, 64, 48).contains(x, y);
            QCOMPARE(image.pixel(x, y), inside ? qRgb(128, 128, 128) : white);
        }
    }
}

void CameraCtrlPreviewTest::grabsOnceASecond()
{
    Gate gate(true);
    Preview preview;
    preview.open("Mono8");
    using Clock = std::chrono::steady_clock;
    std::vector<Clock::time_point> grabs; // written by the preview thread until it ends
    fakeorvalis::onCall("OrvalisGrabRAWData", [&] {
        grabs.push_back(Clock::now());
        gate.pass();
    });
    preview.panel.panel.CreateGrabThread();
    QVERIFY(gate.wait(2));
    preview.panel.panel.DeleteGrabThread();
    const QStringList turn{"OrvalisGetSizeInfo(h1)", "OrvalisGrabRAWData(h1, 1000)"};
    QCOMPARE(preview.panel.log(), turn + turn);                    // nothing else is called
    QVERIFY(grabs.at(1) - grabs.at(0) >= std::chrono::seconds(1)); // never sooner
}

void CameraCtrlPreviewTest::failedGrabKeepsTheLabel()
{
    Gate gate(true);
    Preview preview;
    preview.open("Mono8");
    preview.panel.panel.CreateGrabThread();
    QTRY_VERIFY(preview.shows(qRgb(128, 128, 128)));
    fakeorvalis::fail("OrvalisGrabRAWData", ORVALIS_ERROR_TIMEOUT);
    fakeorvalis::onCall("OrvalisGrabRAWData", [&] { gate.pass(); });
    QVERIFY(gate.wait(1));
    preview.panel.panel.DeleteGrabThread();
    QCoreApplication::processEvents();
    QVERIFY(preview.shows(qRgb(128, 128, 128)));
}

/// SensorPreviewTest covers a pass without a camera. Here: the pass after it finds the camera.
void CameraCtrlPreviewTest::cameraOpenedLaterIsDisplayed()
{
    Preview preview;
    preview.panel.panel.CreateGrabThread();
    preview.open("Mono8");
    QTRY_VERIFY(preview.shows(qRgb(128, 128, 128)));
}

void CameraCtrlPreviewTest::sensorThatGrowsAfterTheLoad_data()
{
    QTest::addColumn<QString>("format");
    QTest::newRow("grey") << "Mono8";
    QTest::newRow("colour") << "BayerGR8";
}

/// Other code may enlarge the sensor without the panel, for example by switching binning off. The
/// library then writes more bytes than the size known at the load requires.
void CameraCtrlPreviewTest::sensorThatGrowsAfterTheLoad()
{
    QFETCH(QString, format);
    Preview preview;
    preview.open(format.toLatin1().constData());
    fakeorvalis::withState(
        [](fakeorvalis::State &state) { state.size = {0, 0, 1024, 768, 1024, 768}; });
    preview.panel.panel.CreateGrabThread();
    QTRY_VERIFY(preview.shows(qRgb(128, 128, 128)));
    QCOMPARE(preview.shown().pixel(127, 95), qRgb(128, 128, 128));
    QVERIFY(preview.panel.log().contains("OrvalisGetSizeInfo(h1)"));
}

void CameraCtrlPreviewTest::secondStartDoesNothing()
{
    Gate gate(false);
    Preview preview;
    preview.open("Mono8");
    fakeorvalis::onCall("OrvalisGrabRAWData", [&] { gate.pass(); });
    preview.panel.panel.CreateGrabThread();
    QVERIFY(gate.wait(1));
    preview.panel.panel.CreateGrabThread();
    QVERIFY(!gate.wait(2, std::chrono::milliseconds(100)));
    gate.open();
    preview.panel.panel.DeleteGrabThread();
}

void CameraCtrlPreviewTest::stopWaitsForTheGrabAndDiscardsItsImage()
{
    Gate gate(false);
    Preview preview;
    preview.open("Mono8");
    fakeorvalis::onCall("OrvalisGrabRAWData", [&] { gate.pass(); });
    preview.panel.panel.CreateGrabThread();
    QVERIFY(gate.wait(1));
    QTRY_VERIFY(preview.shows(white));
    std::thread opener([&] { gate.open(); });
    preview.panel.panel.DeleteGrabThread();
    opener.join();
    QCoreApplication::processEvents();
    QVERIFY(preview.shows(white)); // the grab's image came too late
    QCOMPARE(preview.panel.log(),
             (QStringList{"OrvalisGetSizeInfo(h1)", "OrvalisGrabRAWData(h1, 1000)"}));
}

void CameraCtrlPreviewTest::stopWithoutStart()
{
    Panel panel;
    panel.panel.DeleteGrabThread();
    panel.panel.DeleteGrabThread();
    QCOMPARE(panel.log(), QStringList());
}

void CameraCtrlPreviewTest::restartsAfterStop()
{
    Preview preview;
    preview.open("Mono8");
    for (int round = 0; round < 50; ++round) {
        preview.panel.panel.CreateGrabThread();
        preview.panel.panel.DeleteGrabThread();
    }
    QCoreApplication::processEvents();
    preview.panel.panel.CreateGrabThread();
    QTRY_VERIFY(preview.shows(qRgb(128, 128, 128)));
}

void CameraCtrlPreviewTest::destructorStopsTheThread()
{
    Gate gate(true);
    {
        fakeorvalis::reset();
        OCameraHandle handle = nullptr;
        OrvalisOpenCamera("CAM-A", &handle);
        CameraCtrl panel;
        panel.loadConfigurationValue(handle);
        fakeorvalis::onCall("OrvalisGrabRGBData", [&] { gate.pass(); });
        panel.CreateGrabThread();
        QVERIFY(gate.wait(1));
    }
    fakeorvalis::clearCalls();
    QCoreApplication::processEvents();
    QVERIFY(fakeorvalis::calls().empty());
}

void CameraCtrlPreviewTest::frameOfAnotherSizeThanTheRecord()
{
    Preview preview;
    preview.open("Mono8");
    // The camera's region changes without the panel.
    fakeorvalis::withState([](fakeorvalis::State &state) { state.size.width = 128; });
    preview.panel.panel.CreateGrabThread();
    QTRY_VERIFY(preview.shows(qRgb(128, 128, 128)));
    QCOMPARE(preview.shown().pixel(127, 48), qRgb(128, 128, 128));
    QCOMPARE(preview.shown().pixel(31, 48), white);
}

void CameraCtrlPreviewTest::noGrabBeginsWhileSettingsAreReloaded_data()
{
    QTest::addColumn<QString>("function");
    QTest::newRow("btnUserSetLoad") << "OrvalisSetNodeCommand";
    QTest::newRow("btnWBDefault") << "OrvalisSetUserDefault";
}

void CameraCtrlPreviewTest::noGrabBeginsWhileSettingsAreReloaded()
{
    QFETCH(QString, function);
    Gate gate(true);
    Preview preview;
    preview.open("Mono8");
    fakeorvalis::onCall("OrvalisGrabRAWData", [&] { gate.pass(); });
    bool grabbed = true;
    fakeorvalis::onCall(function.toStdString(), [&] {
        preview.panel.panel.CreateGrabThread(); // would grab at once
        grabbed = gate.wait(1, std::chrono::milliseconds(200));
    });
    preview.panel.find<QPushButton>(QTest::currentDataTag())->click();
    QVERIFY(!grabbed);
    QVERIFY(gate.wait(1)); // but now
}

void CameraCtrlPreviewTest::writesOfTheSizeWaitForTheGrab_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QString>("write");
    QTest::addColumn<QString>("held"); // where the preview is
    for (const char *held : {"OrvalisGetSizeInfo", "OrvalisGrabRAWData"}) {
        const auto row = [held](const char *widget, const char *write) {
            QTest::addRow("%s, %s", write, held) << widget << write << held;
        };
        row("btnUserSetLoad", "OrvalisSetNodeCommand");
        row("btnWBDefault", "OrvalisSetUserDefault");
        row("btnROIApply", "OrvalisSetSizeInfo");
        row("cbPixelFormat", "OrvalisSetPixelFormatStr");
        row("", "OrvalisSetNodeInt"); // as the feature tree writes
    }
}

/// A grab uses buffers of the size that was read before it.
void CameraCtrlPreviewTest::writesOfTheSizeWaitForTheGrab()
{
    QFETCH(QString, widget);
    QFETCH(QString, write);
    QFETCH(QString, held);
    Gate gate(false);
    Gate written(true);
    Preview preview;
    preview.open("Mono8");
    const QThread *gui = QThread::currentThread();
    fakeorvalis::onCall(held.toStdString(), [&] {
        if (QThread::currentThread() != gui)
            gate.pass();
    });
    preview.panel.panel.CreateGrabThread();
    QVERIFY(gate.wait(1));
    fakeorvalis::onCall(write.toStdString(), [&] { written.pass(); });
    bool early = false;
    std::thread opener([&] {
        early = written.wait(1, std::chrono::milliseconds(200));
        gate.open();
    });
    if (widget.isEmpty()) {
        preview.panel.panel.pausePreview();
        OrvalisSetNodeInt(preview.panel.handle, "BinningHorizontal", 1);
        preview.panel.panel.resumePreview();
    } else if (widget.startsWith("btn")) {
        preview.panel.find<QPushButton>(qPrintable(widget))->click();
    } else {
        preview.panel.choose("cbPixelFormat", "Mono12");
    }
    opener.join();
    QVERIFY(written.wait(1));
    QVERIFY(!early);
}

void CameraCtrlPreviewTest::pausesNest()
{
    Gate gate(true);
    Preview preview;
    preview.open("Mono8");
    fakeorvalis::onCall("OrvalisGetSizeInfo", [&] { gate.pass(); });
    preview.panel.panel.pausePreview();
    preview.panel.panel.pausePreview();
    preview.panel.panel.resumePreview();
    preview.panel.panel.CreateGrabThread();
    QVERIFY(!gate.wait(1, std::chrono::milliseconds(100)));
    preview.panel.panel.resumePreview();
    QVERIFY(gate.wait(1));
}

void CameraCtrlPreviewTest::pausedThreadCanEnd()
{
    Preview preview;
    preview.open("Mono8");
    preview.panel.panel.pausePreview();
    preview.panel.panel.CreateGrabThread();
    preview.panel.panel.DeleteGrabThread();
    preview.panel.panel.resumePreview();
    QCOMPARE(preview.panel.log(), QStringList());
}

void CameraCtrlPreviewTest::formatChangeReachesTheThread()
{
    Gate gate(true);
    Preview preview;
    preview.open("Mono8");
    preview.panel.choose("cbPixelFormat", "BayerGR8");
    preview.panel.forget();
    fakeorvalis::onCall("OrvalisGrabRGBData", [&] { gate.pass(); });
    preview.panel.panel.CreateGrabThread();
    QVERIFY(gate.wait(1));
}

void CameraCtrlPreviewTest::rawConversion_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<int>("word");
    QTest::addColumn<int>("grey");
    QTest::newRow("10 bits, 1023") << 10 << 1023 << 255;
    QTest::newRow("10 bits, 512") << 10 << 512 << 128;
    QTest::newRow("12 bits, 4095") << 12 << 4095 << 255;
    QTest::newRow("12 bits, 15") << 12 << 15 << 0;
    QTest::newRow("12 bits, 65535") << 12 << 65535 << 255;
    QTest::newRow("16 bits, 65535") << 16 << 65535 << 127;
}

void CameraCtrlPreviewTest::rawConversion()
{
    QFETCH(int, bits);
    QFETCH(int, word);
    Preview preview;
    preview.open("Mono12");
    constexpr std::size_t pixels = 64 * 48;
    std::vector<unsigned char> src(pixels * 2);
    for (std::size_t index = 0; index < src.size(); index += 2) {
        src[index] = static_cast<unsigned char>(word & 0xff);
        src[index + 1] = static_cast<unsigned char>(word >> 8);
    }
    std::vector<unsigned char> dst(pixels + 1, 99);
    preview.panel.panel.RawXXtoRaw8(dst.data(), src.data(), bits);
    QFETCH(int, grey);
    for (std::size_t index = 0; index < pixels; ++index)
        QCOMPARE(int{dst[index]}, grey);
    QCOMPARE(int{dst[pixels]}, 99);
}

void CameraCtrlPreviewTest::rawConversionOfEightBitsWritesNothing()
{
    Preview preview;
    preview.open("Mono8");
    std::vector<unsigned char> src(64 * 48 * 2, 1);
    std::vector<unsigned char> dst(64 * 48, 99);
    preview.panel.panel.RawXXtoRaw8(dst.data(), src.data(), 8);
    QCOMPARE(std::count(dst.begin(), dst.end(), 99), std::ptrdiff_t{64 * 48});
}

ORVALIS_QTEST_MAIN(CameraCtrlPreviewTest)
#include "CameraCtrlPreviewTest.moc"
