// SPDX-License-Identifier: MIT
// TIFF files that are written without a plugin of Qt.
#include "capture/TiffWriter.h"
#include "capture/FrameSaveJob.h"
#include "tests/support/QtTestMain.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtEndian>

class TiffWriterTest : public QObject {
    Q_OBJECT

private slots:
    void fileHoldsThePicture_data();
    void fileHoldsThePicture();
    void otherFormatsBecomeColour();
    void noPictureIsNoFile();
    void saveTaskWritesTif();
};

namespace {

/// What a reader of baseline TIFF looks at.
class TiffFile {
public:
    explicit TiffFile(QByteArray bytes) : m_bytes(std::move(bytes)) {}

    bool isLittleEndianTiff() const { return m_bytes.startsWith(QByteArray("II\x2A\0", 4)); }

    /// The value of a field, or the offset of its values; -1 if the directory lacks it.
    qint64 field(quint16 tag) const
    {
        const quint32 directory = number<quint32>(4);
        const quint16 count = number<quint16>(directory);
        for (quint32 at = directory + 2; at < directory + 2 + count * 12U; at += 12) {
            if (number<quint16>(at) == tag)
                return number<quint32>(at + 8);
        }
        return -1;
    }

    /// Bits of each channel.
    QVector<int> depths() const
    {
        const auto channels = static_cast<int>(field(277));
        if (channels == 1)
            return {static_cast<int>(field(258))};
        QVector<int> bits;
        for (int channel = 0; channel < channels; ++channel)
            bits.append(number<quint16>(static_cast<quint32>(field(258) + channel * 2)));
        return bits;
    }

    QByteArray pixels() const
    {
        return m_bytes.mid(static_cast<int>(field(273)), static_cast<int>(field(279)));
    }

private:
    template <typename Number> Number number(quint32 at) const
    {
        const QByteArray bytes = m_bytes.mid(static_cast<int>(at), sizeof(Number));
        return bytes.size() == sizeof(Number) ? qFromLittleEndian<Number>(bytes.constData()) : 0;
    }

    QByteArray m_bytes;
};

/// Rows of an odd length, so that padding would show.
QImage testPicture(QImage::Format format)
{
    QImage picture(13, 7, QImage::Format_RGB888);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, qRgb(x * 19, y * 36, (x * y * 7) % 256));
    }
    return picture.convertToFormat(format);
}

QByteArray pixelsOf(const QImage &picture)
{
    QByteArray pixels;
    for (int y = 0; y < picture.height(); ++y)
        pixels.append(reinterpret_cast<const char *>(picture.constScanLine(y)),
                      picture.width() * picture.depth() / 8);
    return pixels;
}

} // namespace

void TiffWriterTest::fileHoldsThePicture_data()
{
    QTest::addColumn<QImage>("picture");
    QTest::addColumn<QVector<int>>("depths");
    QTest::addColumn<int>("meaning");
    QTest::newRow("grey") << testPicture(QImage::Format_Grayscale8) << QVector<int>{8} << 1;
    QTest::newRow("colour") << testPicture(QImage::Format_RGB888) << QVector<int>{8, 8, 8} << 2;
}

void TiffWriterTest::fileHoldsThePicture()
{
    QFETCH(QImage, picture);
    const TiffFile file(tiffFile(picture));
    QVERIFY(file.isLittleEndianTiff());
    QCOMPARE(file.field(256), 13);
    QCOMPARE(file.field(257), 7);
    QTEST(file.depths(), "depths");
    QCOMPARE(file.field(259), 1);
    QTEST(static_cast<int>(file.field(262)), "meaning");
    QCOMPARE(file.field(278), 7);
    QCOMPARE(file.pixels(), pixelsOf(picture));
}

void TiffWriterTest::otherFormatsBecomeColour()
{
    const TiffFile file(tiffFile(testPicture(QImage::Format_RGB32)));
    QCOMPARE(file.pixels(), pixelsOf(testPicture(QImage::Format_RGB888)));
}

void TiffWriterTest::noPictureIsNoFile() { QCOMPARE(tiffFile(QImage()), QByteArray()); }

void TiffWriterTest::saveTaskWritesTif()
{
    const QTemporaryDir directory;
    auto *job = new FrameSaveJob;
    job->image = testPicture(QImage::Format_RGB888);
    job->path = directory.path();
    job->format = QStringLiteral("TIF");
    SaveThread(job);
    const QStringList files = QDir(directory.path()).entryList(QDir::Files);
    QCOMPARE(files.size(), 1);
    QVERIFY(files.constFirst().endsWith(QLatin1String(".TIF")));
    QFile file(directory.filePath(files.constFirst()));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const TiffFile tiff(file.readAll());
    QVERIFY(tiff.isLittleEndianTiff());
    QCOMPARE(tiff.field(256), 13);
    QCOMPARE(tiff.field(257), 7);
}

ORVALIS_QTEST_MAIN(TiffWriterTest)
#include "TiffWriterTest.moc"
