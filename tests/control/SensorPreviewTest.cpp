// SPDX-License-Identifier: MIT
// One refresh of the sensor preview: its calls in order, and the images that it displays.
#include "control/SensorPreview.h"
#include "control/SensorCanvas.h"
#include "tests/fakelibrary/FakeOrvalis.h"
#include "tests/support/QtTestMain.h"

namespace {

/// A camera, a canvas, and the displayed images.
struct Look {
    explicit Look(const char *format)
    {
        fakeorvalis::reset();
        OrvalisOpenCamera("CAM-A", &source.camera);
        source.pixelFormat = format;
        fakeorvalis::clearCalls();
    }
    void look()
    {
        refreshPreview(source, canvas, [this](const QImage &image) { shown.append(image); });
    }
    static QStringList calls()
    {
        QStringList made;
        for (const std::string &call : fakeorvalis::calls())
            made << QString::fromStdString(call);
        return made;
    }

    PreviewSource source;
    SensorCanvas canvas;
    QVector<QImage> shown;
};

void setSize(const OSizeInfo &size)
{
    fakeorvalis::withState([&](fakeorvalis::State &state) { state.size = size; });
}

constexpr QRgb whitePixel = 0xffffffff;

} // namespace

class SensorPreviewTest : public QObject {
    Q_OBJECT

private slots:
    void withoutCameraNothingIsCalled();
    void sizeIsReadRightBeforeEachGrab();
    void unreadSizeMeansNoGrab();
    void sensorWithoutSizeIsNotGrabbed();
    void newSensorIsShownWhiteFirst();
    void failedGrabShowsNothing();
    void sensorThatGrewGetsLargerBuffers_data();
    void sensorThatGrewGetsLargerBuffers();
    void sensorThatShrankIsShownWhole();
    void movedRegionIsDisplayedAtItsPosition();
};

void SensorPreviewTest::withoutCameraNothingIsCalled()
{
    Look look("Mono8");
    look.source.camera = nullptr;
    look.look();
    QCOMPARE(Look::calls(), QStringList());
    QVERIFY(look.shown.isEmpty());
}

void SensorPreviewTest::sizeIsReadRightBeforeEachGrab()
{
    Look look("Mono8");
    look.look();
    look.look();
    const QStringList turn{"OrvalisGetSizeInfo(h1)", "OrvalisGrabRAWData(h1, 1000)"};
    QCOMPARE(Look::calls(), turn + turn);
}

void SensorPreviewTest::unreadSizeMeansNoGrab()
{
    Look look("Mono8");
    look.look();
    look.shown.clear();
    fakeorvalis::clearCalls();
    fakeorvalis::fail("OrvalisGetSizeInfo");
    look.look();
    QCOMPARE(Look::calls(), QStringList("OrvalisGetSizeInfo(h1)"));
    QVERIFY(look.shown.isEmpty());
}

void SensorPreviewTest::sensorWithoutSizeIsNotGrabbed()
{
    Look look("Mono8");
    setSize({0, 0, 64, 48, -1, 0});
    look.look();
    QCOMPARE(Look::calls(), QStringList("OrvalisGetSizeInfo(h1)"));
}

void SensorPreviewTest::newSensorIsShownWhiteFirst()
{
    Look look("Mono8");
    look.look();
    look.look();
    QCOMPARE(look.shown.size(), 3); // white only once
    QCOMPARE(look.shown.at(0).size(), QSize(128, 96));
    QCOMPARE(look.shown.at(0).pixel(0, 0), whitePixel);
    QCOMPARE(look.shown.at(1).pixel(0, 0), qRgb(128, 128, 128));
}

void SensorPreviewTest::failedGrabShowsNothing()
{
    Look look("Mono8");
    look.look();
    look.shown.clear();
    fakeorvalis::fail("OrvalisGrabRAWData", ORVALIS_ERROR_TIMEOUT);
    look.look();
    QVERIFY(look.shown.isEmpty());
}

void SensorPreviewTest::sensorThatGrewGetsLargerBuffers_data()
{
    QTest::addColumn<QRgb>("colour"); // of bytes 128, of words 0x8080
    QTest::newRow("BayerGR8") << qRgb(128, 128, 128);
    QTest::newRow("Mono8") << qRgb(128, 128, 128);
    QTest::newRow("Mono12") << qRgb(255, 255, 255);
}

/// Like any library, the recording library writes as many pixels as the sensor has, which would
/// overrun smaller buffers.
void SensorPreviewTest::sensorThatGrewGetsLargerBuffers()
{
    Look look(QTest::currentDataTag());
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.lists["PixelFormat"].current = QTest::currentDataTag();
    });
    look.look();
    look.shown.clear();
    setSize({0, 0, 1024, 768, 1024, 768}); // binning was switched off
    look.look();
    QCOMPARE(look.shown.size(), 2);
    QCOMPARE(look.shown.last().size(), QSize(1024, 768));
    QTEST(look.shown.last().pixel(1023, 767), "colour");
}

void SensorPreviewTest::sensorThatShrankIsShownWhole()
{
    Look look("Mono8");
    look.look();
    setSize({0, 0, 32, 24, 64, 48});
    look.look();
    QCOMPARE(look.shown.last().size(), QSize(64, 48));
    QCOMPARE(look.shown.last().pixel(31, 23), qRgb(128, 128, 128));
    QCOMPARE(look.shown.last().pixel(32, 23), whitePixel);
}

void SensorPreviewTest::movedRegionIsDisplayedAtItsPosition()
{
    Look look("Mono8");
    look.look();
    setSize({64, 48, 64, 48, 128, 96});
    look.look();
    QCOMPARE(look.shown.last().pixel(63, 47), whitePixel);
    QCOMPARE(look.shown.last().pixel(64, 48), qRgb(128, 128, 128));
}

ORVALIS_QTEST_MAIN(SensorPreviewTest)
#include "SensorPreviewTest.moc"
