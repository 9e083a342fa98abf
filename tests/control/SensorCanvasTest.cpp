// SPDX-License-Identifier: MIT
// The sensor preview's buffers and painting, with frames of any size.
#include "control/SensorCanvas.h"
#include "tests/support/QtTestMain.h"

#include <limits>

namespace {

constexpr QRgb white = 0xffffffff;

OSizeInfo sensor(int maxWidth, int maxHeight, int x = 0, int y = 0)
{
    return {x, y, 0, 0, maxWidth, maxHeight};
}

/// A grab that fills `bytes` bytes of `plane` with `value` and sets the size in the frame's record.
void grab(OImageFrame *frame, std::uint8_t *plane, std::size_t bytes, std::uint8_t value,
          std::uint32_t width, std::uint32_t height)
{
    std::fill(plane, plane + bytes, value);
    frame->width = width;
    frame->height = height;
}

int whitePixels(const QImage &image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == white ? 1 : 0;
    }
    return count;
}

} // namespace

class SensorCanvasTest : public QObject {
    Q_OBJECT

private slots:
    void startsEmpty();
    void startsWhiteInTheSensorsSize();
    void sameSensorKeepsItsBuffers();
    void impossibleSensorsAreEmpty_data();
    void impossibleSensorsAreEmpty();
    void colourFrameLiesAtItsOffset();
    void greyFrameLiesAtItsOffset();
    void wordsAreShownByTheirUpperBits();
    void oddWidthsHaveNoPadding();
    void previousFrameIsErased();
    void framesOfAnySizeStayInside_data();
    void framesOfAnySizeStayInside();
    void offsetsOutsideLeaveTheSensorWhite_data();
    void offsetsOutsideLeaveTheSensorWhite();
    void imageIsACopy();
};

void SensorCanvasTest::startsEmpty()
{
    const SensorCanvas canvas;
    QVERIFY(canvas.isEmpty());
    QVERIFY(canvas.image().isNull());
}

void SensorCanvasTest::startsWhiteInTheSensorsSize()
{
    SensorCanvas canvas;
    QVERIFY(canvas.fitTo(sensor(13, 7)));
    QCOMPARE(canvas.image().size(), QSize(13, 7));
    QCOMPARE(canvas.image().format(), QImage::Format_RGB888);
    QCOMPARE(whitePixels(canvas.image()), 13 * 7);
}

void SensorCanvasTest::sameSensorKeepsItsBuffers()
{
    SensorCanvas canvas;
    QVERIFY(canvas.fitTo(sensor(16, 8)));
    std::uint8_t *raw = canvas.frame()->raw;
    std::uint8_t *rgb = canvas.frame()->rgb;
    QVERIFY(!canvas.fitTo(sensor(16, 8, 4, 4)));
    QCOMPARE(canvas.frame()->raw, raw);
    QCOMPARE(canvas.frame()->rgb, rgb);
    QVERIFY(canvas.fitTo(sensor(32, 16)));
    QCOMPARE(canvas.image().size(), QSize(32, 16));
}

void SensorCanvasTest::impossibleSensorsAreEmpty_data()
{
    using Ints = std::numeric_limits<int>;
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::newRow("nothing") << 0 << 0;
    QTest::newRow("no width") << 0 << 100;
    QTest::newRow("no height") << 100 << 0;
    QTest::newRow("negative") << -5 << 100;
    QTest::newRow("smallest") << Ints::min() << Ints::min();
    QTest::newRow("largest") << Ints::max() << Ints::max();
    QTest::newRow("too long") << Ints::max() << 1;
    QTest::newRow("too many pixels") << 32767 << 32767;
}

void SensorCanvasTest::impossibleSensorsAreEmpty()
{
    QFETCH(int, width);
    QFETCH(int, height);
    SensorCanvas canvas;
    canvas.fitTo(sensor(16, 8));
    QVERIFY(!canvas.fitTo(sensor(width, height)));
    QVERIFY(canvas.isEmpty());
    QVERIFY(canvas.fitTo(sensor(16, 8)));
}

void SensorCanvasTest::colourFrameLiesAtItsOffset()
{
    SensorCanvas canvas;
    canvas.fitTo(sensor(16, 8));
    OImageFrame *frame = canvas.frame();
    grab(frame, frame->rgb, 4 * 2 * 3, 0, 4, 2);
    frame->rgb[0] = 255; // upper left: red
    canvas.paintRgb(sensor(16, 8, 5, 3));
    const QImage picture = canvas.image();
    QCOMPARE(picture.pixel(5, 3), qRgb(255, 0, 0));
    QCOMPARE(picture.pixel(8, 4), qRgb(0, 0, 0));
    QCOMPARE(picture.pixel(4, 3), white);
    QCOMPARE(picture.pixel(9, 3), white);
    QCOMPARE(whitePixels(picture), 16 * 8 - 4 * 2);
}

void SensorCanvasTest::greyFrameLiesAtItsOffset()
{
    SensorCanvas canvas;
    canvas.fitTo(sensor(16, 8));
    OImageFrame *frame = canvas.frame();
    grab(frame, frame->raw, 4 * 2, 77, 4, 2);
    canvas.paintGrey(sensor(16, 8, 12, 6));
    QCOMPARE(canvas.image().pixel(15, 7), qRgb(77, 77, 77));
    QCOMPARE(whitePixels(canvas.image()), 16 * 8 - 4 * 2);
}

void SensorCanvasTest::wordsAreShownByTheirUpperBits()
{
    SensorCanvas canvas;
    canvas.fitTo(sensor(4, 4));
    OImageFrame *frame = canvas.frame();
    grab(frame, frame->raw, 2 * 2 * 2, 0, 2, 2);
    const std::uint16_t words[] = {4095, 2048, 16, 15};
    for (std::size_t index = 0; index < 4; ++index) {
        frame->raw[2 * index] = static_cast<std::uint8_t>(words[index] & 0xff);
        frame->raw[2 * index + 1] = static_cast<std::uint8_t>(words[index] >> 8);
    }
    canvas.paintWords(sensor(4, 4), 12);
    const QImage picture = canvas.image();
    QCOMPARE(qRed(picture.pixel(0, 0)), 255);
    QCOMPARE(qRed(picture.pixel(1, 0)), 128);
    QCOMPARE(qRed(picture.pixel(0, 1)), 1);
    QCOMPARE(qRed(picture.pixel(1, 1)), 0);
}

void SensorCanvasTest::oddWidthsHaveNoPadding()
{
    SensorCanvas canvas;
    canvas.fitTo(sensor(8, 8));
    OImageFrame *frame = canvas.frame();
    grab(frame, frame->raw, 5 * 3, 10, 5, 3);
    frame->raw[5 * 2 + 4] = 200; // last pixel of the last row
    canvas.paintGrey(sensor(8, 8));
    QCOMPARE(qRed(canvas.image().pixel(4, 2)), 200);
    frame = canvas.frame();
    grab(frame, frame->rgb, 5 * 3 * 3, 10, 5, 3);
    frame->rgb[(5 * 2 + 4) * 3] = 201;
    canvas.paintRgb(sensor(8, 8));
    QCOMPARE(qRed(canvas.image().pixel(4, 2)), 201);
    QCOMPARE(qRed(canvas.image().pixel(3, 2)), 10);
}

void SensorCanvasTest::previousFrameIsErased()
{
    SensorCanvas canvas;
    canvas.fitTo(sensor(8, 8));
    OImageFrame *frame = canvas.frame();
    grab(frame, frame->raw, 64, 10, 8, 8);
    canvas.paintGrey(sensor(8, 8));
    frame = canvas.frame();
    grab(frame, frame->raw, 4, 10, 2, 2);
    canvas.paintGrey(sensor(8, 8, 6, 6));
    QCOMPARE(whitePixels(canvas.image()), 64 - 4);
}

void SensorCanvasTest::framesOfAnySizeStayInside_data()
{
    constexpr std::uint32_t huge = std::numeric_limits<std::uint32_t>::max();
    QTest::addColumn<quint32>("width");
    QTest::addColumn<quint32>("height");
    QTest::newRow("nothing") << 0U << 0U;
    QTest::newRow("no width") << 0U << 8U;
    QTest::newRow("no height") << 8U << 0U;
    QTest::newRow("as the sensor") << 8U << 8U;
    QTest::newRow("taller") << 8U << 1000U;
    QTest::newRow("wider") << 100U << 8U;
    QTest::newRow("one endless row") << huge << 1U;
    QTest::newRow("one endless column") << 1U << huge;
    QTest::newRow("endless") << huge << huge;
    QTest::newRow("product wraps") << 65536U << 65536U;
}

void SensorCanvasTest::framesOfAnySizeStayInside()
{
    QFETCH(quint32, width);
    QFETCH(quint32, height);
    SensorCanvas canvas;
    canvas.fitTo(sensor(8, 8));
    const auto pretend = [&] {
        OImageFrame *frame = canvas.frame();
        frame->width = width;
        frame->height = height;
    };
    for (const QPoint offset : {QPoint(0, 0), QPoint(3, 3), QPoint(7, 7)}) {
        const OSizeInfo size = sensor(8, 8, offset.x(), offset.y());
        pretend();
        canvas.paintRgb(size);
        pretend();
        canvas.paintGrey(size);
        pretend();
        canvas.paintWords(size, 12);
        QCOMPARE(canvas.image().size(), QSize(8, 8));
    }
}

void SensorCanvasTest::offsetsOutsideLeaveTheSensorWhite_data()
{
    using Ints = std::numeric_limits<int>;
    QTest::addColumn<QPoint>("offset");
    QTest::newRow("right") << QPoint(8, 0);
    QTest::newRow("below") << QPoint(0, 8);
    QTest::newRow("negative") << QPoint(-1, 0);
    QTest::newRow("largest") << QPoint(Ints::max(), Ints::max());
    QTest::newRow("smallest") << QPoint(Ints::min(), Ints::min());
}

void SensorCanvasTest::offsetsOutsideLeaveTheSensorWhite()
{
    QFETCH(QPoint, offset);
    SensorCanvas canvas;
    canvas.fitTo(sensor(8, 8));
    OImageFrame *frame = canvas.frame();
    grab(frame, frame->raw, 64, 10, 8, 8);
    canvas.paintGrey(sensor(8, 8, offset.x(), offset.y()));
    QCOMPARE(whitePixels(canvas.image()), 64);
}

void SensorCanvasTest::imageIsACopy()
{
    SensorCanvas canvas;
    canvas.fitTo(sensor(8, 8));
    const QImage before = canvas.image();
    OImageFrame *frame = canvas.frame();
    grab(frame, frame->raw, 64, 10, 8, 8);
    canvas.paintGrey(sensor(8, 8));
    QCOMPARE(whitePixels(before), 64);
}

ORVALIS_QTEST_MAIN(SensorCanvasTest)
#include "SensorCanvasTest.moc"
