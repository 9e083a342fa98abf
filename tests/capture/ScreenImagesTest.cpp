// SPDX-License-Identifier: MIT
// Pixmaps of frames: their pixels, and that no two held pixmaps share memory.
#include "capture/ScreenImages.h"
#include "tests/support/QtTestMain.h"

#include <QPixmap>

#include <set>
#include <vector>

class ScreenImagesTest : public QObject {
    Q_OBJECT

private slots:
    void everyPixelIsThatOfTheImage_data();
    void everyPixelIsThatOfTheImage();
    void aHeldPixmapKeepsItsPixels();
    void aPixmapOutlivesItsMaker();
    void everyPixmapHasItsOwnCacheKey();
    void releasedMemoryIsReused();
    void theSizeMayChange();
};

namespace {

/// An image whose pixels differ from each other and from those of other seeds.
QImage patterned(const QSize &size, QImage::Format format, int seed)
{
    QImage image(size, format);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.bytesPerLine(); ++x)
            image.scanLine(y)[x] = static_cast<uchar>(seed + 31 * y + 7 * x);
    }
    return image;
}

bool isPictureOf(const QPixmap &pixmap, const QImage &image)
{
    return pixmap.toImage() == image.convertToFormat(QImage::Format_RGB32);
}

QPixmap pixmapOf(ScreenImages &images, const QImage &image)
{
    return QPixmap::fromImage(images.imageOf(image));
}

/// Equal for pixmaps that share an image's memory: the number of the image.
qint64 memoryOf(const QPixmap &pixmap) { return pixmap.cacheKey() >> 32; }

const QSize size(37, 5);

} // namespace

void ScreenImagesTest::everyPixelIsThatOfTheImage_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<QSize>("size");
    for (const int width : {1, 2, 3, 4, 5, 15, 16, 17, 130}) {
        const QByteArray name = QByteArray::number(width);
        QTest::newRow(("grey " + name).constData()) << QImage::Format_Grayscale8 << QSize(width, 3);
        QTest::newRow(("colour " + name).constData()) << QImage::Format_RGB888 << QSize(width, 3);
    }
}

void ScreenImagesTest::everyPixelIsThatOfTheImage()
{
    QFETCH(QImage::Format, format);
    QFETCH(QSize, size);
    ScreenImages images;
    for (int seed = 0; seed < 5; ++seed) {
        const QImage image = patterned(size, format, seed);
        QVERIFY(isPictureOf(pixmapOf(images, image), image));
    }
}

void ScreenImagesTest::aHeldPixmapKeepsItsPixels()
{
    ScreenImages images;
    std::vector<QPixmap> held;
    for (int seed = 0; seed < 10; ++seed)
        held.push_back(pixmapOf(images, patterned(size, QImage::Format_RGB888, seed)));
    for (int seed = 0; seed < 10; ++seed) {
        const QImage image = patterned(size, QImage::Format_RGB888, seed);
        QVERIFY2(isPictureOf(held[static_cast<std::size_t>(seed)], image),
                 qPrintable(QString::number(seed)));
    }
}

void ScreenImagesTest::aPixmapOutlivesItsMaker()
{
    const QImage image = patterned(size, QImage::Format_Grayscale8, 3);
    QPixmap pixmap;
    {
        ScreenImages images;
        pixmap = pixmapOf(images, image);
    }
    QVERIFY(isPictureOf(pixmap, image));
}

void ScreenImagesTest::everyPixmapHasItsOwnCacheKey()
{
    ScreenImages images;
    std::set<qint64> keys;
    for (int seed = 0; seed < 20; ++seed)
        keys.insert(pixmapOf(images, patterned(size, QImage::Format_Grayscale8, 0)).cacheKey());
    QCOMPARE(keys.size(), std::size_t{20});
}

void ScreenImagesTest::releasedMemoryIsReused()
{
    ScreenImages images;
    std::set<qint64> memories;
    QPixmap shown; // as in the window: one is displayed while the next is made
    for (int seed = 0; seed < 50; ++seed) {
        shown = pixmapOf(images, patterned(size, QImage::Format_RGB888, seed));
        memories.insert(memoryOf(shown));
    }
    QVERIFY2(memories.size() <= 3, qPrintable(QString::number(memories.size())));
}

void ScreenImagesTest::theSizeMayChange()
{
    ScreenImages images;
    for (const QSize &other : {QSize(8, 8), QSize(20, 3), QSize(8, 8), QSize(1, 1)}) {
        const QImage image = patterned(other, QImage::Format_RGB888, other.width());
        QVERIFY(isPictureOf(pixmapOf(images, image), image));
    }
}

ORVALIS_QTEST_MAIN(ScreenImagesTest)
#include "ScreenImagesTest.moc"
