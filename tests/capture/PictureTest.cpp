// SPDX-License-Identifier: MIT
// Pictures: their samples, their screen image, and the reuse of their memory.
#include "capture/Picture.h"
#include "tests/support/QtTestMain.h"

#include <limits>
#include <numeric>
#include <vector>

class PictureTest : public QObject {
    Q_OBJECT

private slots:
    void samplesAndScreenAreThoseOfTheFrame_data();
    void samplesAndScreenAreThoseOfTheFrame();
    void rowsOfAStreamAreAlignedToFourBytes_data();
    void rowsOfAStreamAreAlignedToFourBytes();
    void colorBytesAreNeverSheared();
    void aHeldPictureDoesNotChange();
    void releasedMemoryIsReused();
    void aFrameWithoutItsPlaneMakesNoPicture();
    void aFrameTooLargeMakesNoPicture();
};

namespace {

constexpr std::uint64_t anySize = std::numeric_limits<std::uint64_t>::max();

/// A frame with every plane, all different.
struct Planes {
    Planes(std::uint32_t width, std::uint32_t height, std::uint32_t bits, int seed = 0)
        : raw(std::size_t{width} * height * bits / 8), rgb(std::size_t{width} * height * 3),
          mono8(std::size_t{width} * height)
    {
        std::iota(raw.begin(), raw.end(), static_cast<std::uint8_t>(seed));
        std::iota(rgb.begin(), rgb.end(), static_cast<std::uint8_t>(seed + 50));
        std::iota(mono8.begin(), mono8.end(), static_cast<std::uint8_t>(seed + 100));
        record = {static_cast<std::uint32_t>(raw.size()),
                  width,
                  height,
                  bits,
                  raw.data(),
                  rgb.data(),
                  mono8.data()};
    }
    PublishedFrame published() { return {&record, {7, {}, {}}}; }

    std::vector<std::uint8_t> raw;
    std::vector<std::uint8_t> rgb;
    std::vector<std::uint8_t> mono8;
    OImageFrame record{};
};

PictureMaker makerFor(const char *format, std::uint32_t code)
{
    StreamInfo info;
    info.pixelFormat = code;
    return {info, meaningOf(format, code)};
}

} // namespace

void PictureTest::samplesAndScreenAreThoseOfTheFrame_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<uint>("code");
    QTest::addColumn<uint>("bits");
    QTest::addColumn<QImage::Format>("depth");
    QTest::newRow("Mono8") << QByteArray("Mono8") << 0x01080001u << 8u << QImage::Format_Grayscale8;
    QTest::newRow("Mono12") << QByteArray("Mono12") << 0x01100005u << 16u
                            << QImage::Format_Grayscale8;
    QTest::newRow("BayerGR8") << QByteArray("BayerGR8") << 0x01080008u << 8u
                              << QImage::Format_RGB888;
    QTest::newRow("RGB8") << QByteArray("RGB8") << 0x02180014u << 24u << QImage::Format_RGB888;
}

void PictureTest::samplesAndScreenAreThoseOfTheFrame()
{
    QFETCH(QByteArray, format);
    QFETCH(uint, code);
    QFETCH(uint, bits);
    QFETCH(QImage::Format, depth);
    PictureMaker maker = makerFor(format.constData(), code);
    Planes planes(8, 5, bits);
    const PicturePtr picture = maker.make(planes.published(), Rows::AlignedTo4, anySize);
    QVERIFY(picture != nullptr);
    QCOMPARE(picture->width(), 8u);
    QCOMPARE(picture->height(), 5u);
    QCOMPARE(picture->bitsPerPixel(), bits);
    QCOMPARE(picture->stamp().index, std::uint64_t{7});
    QCOMPARE(
        std::vector<std::uint8_t>(picture->samples(), picture->samples() + picture->sampleBytes()),
        planes.raw);
    const std::uint8_t *plane = depth == QImage::Format_RGB888 ? planes.rgb.data()
                                : bits == 16                   ? planes.mono8.data()
                                                               : planes.raw.data();
    const QImage expected(plane, 8, 5, depth);
    QCOMPARE(picture->screenImage(), expected.convertToFormat(QImage::Format_RGB32));
    QCOMPARE(picture->screen().toImage(), picture->screenImage());
    QCOMPARE(picture->displayedImage(), expected);
    QCOMPARE(picture->displayedImage().format(), depth);
}

void PictureTest::rowsOfAStreamAreAlignedToFourBytes_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    for (const QSize size : {QSize(1, 64), QSize(2, 32), QSize(3, 21), QSize(4, 16), QSize(5, 13),
                             QSize(7, 9), QSize(64, 1), QSize(1, 1)})
        QTest::addRow("%d x %d", size.width(), size.height()) << size.width() << size.height();
}

// The address sanitizer reports an image that is read beyond the end of its memory.
void PictureTest::rowsOfAStreamAreAlignedToFourBytes()
{
    QFETCH(int, width);
    QFETCH(int, height);
    PictureMaker maker = makerFor("Mono8", 0x01080001);
    Planes planes(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), 8);
    std::vector<std::uint8_t> behind = planes.raw;
    const int row = (width + 3) / 4 * 4;
    behind.resize(static_cast<std::size_t>(row * height)); // zeros after the plane
    const PicturePtr sheared = maker.make(planes.published(), Rows::AlignedTo4, anySize);
    QCOMPARE(sheared->displayedImage(),
             QImage(behind.data(), width, height, row, QImage::Format_Grayscale8));
    const PicturePtr straight = maker.make(planes.published(), Rows::Packed, anySize);
    QCOMPARE(straight->displayedImage(),
             QImage(planes.raw.data(), width, height, width, QImage::Format_Grayscale8));
    PictureMaker color = makerFor("RGB8", 0x02180014);
    QVERIFY(color.make(planes.published(), Rows::AlignedTo4, anySize) != nullptr);
}

void PictureTest::colorBytesAreNeverSheared()
{
    PictureMaker maker = makerFor("RGB8", 0x02180014);
    for (const std::uint32_t width : {4u, 5u, 6u, 7u}) {
        Planes planes(width, 3, 24);
        const PicturePtr picture = maker.make(planes.published(), Rows::AlignedTo4, anySize);
        const QByteArray bytes = picture->rgb();
        QCOMPARE(std::vector<std::uint8_t>(bytes.begin(), bytes.end()), planes.rgb);
    }
    PictureMaker mono = makerFor("Mono8", 0x01080001);
    Planes planes(4, 4, 8);
    QVERIFY(mono.make(planes.published(), Rows::AlignedTo4, anySize)->rgb().isEmpty());
}

void PictureTest::aHeldPictureDoesNotChange()
{
    PictureMaker maker = makerFor("Mono8", 0x01080001);
    Planes first(16, 4, 8);
    const PicturePtr held = maker.make(first.published(), Rows::AlignedTo4, anySize);
    const QImage before = held->screenImage().copy();
    for (int seed = 1; seed < 10; ++seed) {
        Planes other(16, 4, 8, seed);
        QVERIFY(maker.make(other.published(), Rows::AlignedTo4, anySize) != nullptr);
    }
    QCOMPARE(held->screenImage(), before);
    QCOMPARE(std::vector<std::uint8_t>(held->samples(), held->samples() + held->sampleBytes()),
             first.raw);
}

void PictureTest::releasedMemoryIsReused()
{
    PictureMaker maker = makerFor("Mono8", 0x01080001);
    Planes planes(16, 4, 8);
    const Picture *first = maker.make(planes.published(), Rows::AlignedTo4, anySize).get();
    QCOMPARE(maker.make(planes.published(), Rows::AlignedTo4, anySize).get(), first);
}

void PictureTest::aFrameWithoutItsPlaneMakesNoPicture()
{
    PictureMaker maker = makerFor("RGB8", 0x02180014);
    Planes planes(4, 4, 24);
    planes.record.rgb = nullptr;
    QVERIFY(maker.make(planes.published(), Rows::AlignedTo4, anySize) == nullptr);
}

void PictureTest::aFrameTooLargeMakesNoPicture()
{
    PictureMaker maker = makerFor("Mono8", 0x01080001);
    Planes planes(4, 4, 8);
    QVERIFY(maker.make(planes.published(), Rows::AlignedTo4, 15) == nullptr);
    QVERIFY(maker.make(planes.published(), Rows::AlignedTo4, 16) != nullptr);
}

ORVALIS_QTEST_MAIN(PictureTest)
#include "PictureTest.moc"
