// SPDX-License-Identifier: MIT
// Every image feature changes saved images as its name says: two images and one measure each.
#include "tests/live/LiveSession.h"
#include "tests/live/PictureMeasures.h"
#include "tests/support/QtTestMain.h"

#include <cmath>
#include <memory>

namespace {

/// A spin box of the panel, two values to compare, and the minimum rise of the measure from the
/// first to the second.
struct Feature {
    const char *spinBox;
    const char *low;
    const char *high;
    double (*measure)(const QImage &);
    double leastRise;
};

using namespace picturemeasures;

const Feature features[] = {
    {"spiShutter", "4000", "12000", meanBrightness, 20},
    {"spiGain", "0", "6", meanBrightness, 10},
    {"spiBlackLevel", "0", "400", darkestBrightness, 8},
    {"spiGamma", "1.0", "0.5", meanBrightness, 10},
    {"spiRGain", "800", "1400", redOverGreen, 0.15},
    {"spiGGain", "800", "1400", greenOverBlue, 0.15},
    {"spiBGain", "800", "1400", blueOverGreen, 0.15},
    {"spiContrast", "300", "700", contrast, 5},
    {"spiSaturation", "100", "700", saturation, 0.05},
    {"spiSharp", "10", "20", edgeEnergy, 0.3},
};

/// The most colourful square of 32 pixels in the image, for measuring hues.
QRect colourfulSquare(const QImage &picture)
{
    QRect best(0, 0, 32, 32);
    double most = -1;
    for (int y = 0; y + 32 <= picture.height(); y += 32) {
        for (int x = 0; x + 32 <= picture.width(); x += 32) {
            const QRect square(x, y, 32, 32);
            const double here = saturation(picture.copy(square));
            if (here > most && meanBrightness(picture.copy(square)) > 40) {
                most = here;
                best = square;
            }
        }
    }
    return best;
}

} // namespace

class LiveFeaturesTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void featureChangesTheSavedPicture_data();
    void featureChangesTheSavedPicture();
    void hueTurnsTheColoursOfTheSavedPicture();
    void cleanupTestCase() { m_session.reset(); }

private:
    QImage pictureWith(const char *spinBox, const QString &value);
    std::unique_ptr<LiveSession> m_session;
};

void LiveFeaturesTest::initTestCase()
{
    m_session = std::make_unique<LiveSession>();
    QVERIFY(m_session->open(QStringLiteral("OV-SIM-2448C")));
    m_session->choose("cbPixelFormat", QStringLiteral("BayerGR8"));
    QVERIFY(m_session->play());
}

QImage LiveFeaturesTest::pictureWith(const char *spinBox, const QString &value)
{
    m_session->typeInto(spinBox, value);
    // Queued frames were taken before the change; the third one was not.
    if (!m_session->waitForPictures(3))
        return {};
    return m_session->savedPicture();
}

void LiveFeaturesTest::featureChangesTheSavedPicture_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < static_cast<int>(std::size(features)); ++row)
        QTest::newRow(features[row].spinBox) << row;
}

void LiveFeaturesTest::featureChangesTheSavedPicture()
{
    QFETCH(int, row);
    const Feature &feature = features[row];
    const QString before = QString::number(m_session->value(feature.spinBox));
    const QImage low = pictureWith(feature.spinBox, QLatin1String(feature.low));
    const QImage high = pictureWith(feature.spinBox, QLatin1String(feature.high));
    m_session->typeInto(feature.spinBox, before);
    QVERIFY(!low.isNull());
    QVERIFY(!high.isNull());
    const double lowMeasure = feature.measure(low);
    const double highMeasure = feature.measure(high);
    qInfo("%s %s -> %s: %g -> %g", feature.spinBox, feature.low, feature.high, lowMeasure,
          highMeasure);
    QVERIFY(highMeasure - lowMeasure >= feature.leastRise);
}

void LiveFeaturesTest::hueTurnsTheColoursOfTheSavedPicture()
{
    // 508 steps are a quarter turn.
    const QImage neutral = pictureWith("spiHue", QStringLiteral("508"));
    const QImage turned = pictureWith("spiHue", QStringLiteral("762"));
    m_session->typeInto("spiHue", QStringLiteral("508"));
    QVERIFY(!neutral.isNull());
    QVERIFY(!turned.isNull());
    const QRect square = colourfulSquare(neutral);
    const double turn =
        std::remainder(hueAngle(turned.copy(square)) - hueAngle(neutral.copy(square)), 360.0);
    qInfo("hue 508 -> 762 (45 degrees): %g degrees", turn);
    QVERIFY(std::abs(std::abs(turn) - 45) < 20);
}

#include "LiveFeaturesTest.moc"
ORVALIS_QTEST_MAIN(LiveFeaturesTest)
