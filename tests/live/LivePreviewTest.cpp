// SPDX-License-Identifier: MIT
// The sensor preview during a stream: it takes no frame from the stream and displays the region at
// its position on the sensor.
#include "tests/live/LiveSession.h"
#include "tests/support/QtTestMain.h"

#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPushButton>

#include <cstdlib>
#include <memory>

namespace {

constexpr QSize sensor(2448, 2048);

/// The expected preview: white, with `picture` at the position of the region.
QImage expectedPreview(const QImage &picture, QPoint place, QSize size)
{
    QImage canvas(sensor, QImage::Format_RGB888);
    canvas.fill(Qt::white);
    QPainter(&canvas).drawImage(place, picture);
    return canvas.scaled(size, Qt::IgnoreAspectRatio, Qt::FastTransformation);
}

/// Mean difference of the channels, 0 to 255; 255 for images of different sizes.
double difference(const QImage &one, const QImage &other)
{
    if (one.size() != other.size() || one.isNull())
        return 255;
    const QImage a = one.convertToFormat(QImage::Format_RGB888);
    const QImage b = other.convertToFormat(QImage::Format_RGB888);
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width() * 3; ++x)
            sum += std::abs(a.constScanLine(y)[x] - b.constScanLine(y)[x]);
    }
    return sum / (3.0 * a.width() * a.height());
}

/// True if every pixel outside `region`, in sensor pixels, is white. Ignores the border of the
/// region, which lies between pixels of the preview.
bool isWhiteOutside(const QImage &preview, const QRect &region)
{
    const double scaleX = double(preview.width()) / sensor.width();
    const double scaleY = double(preview.height()) / sensor.height();
    const QRect inside = QRectF(region.x() * scaleX, region.y() * scaleY, region.width() * scaleX,
                                region.height() * scaleY)
                             .toAlignedRect()
                             .adjusted(-1, -1, 1, 1);
    for (int y = 0; y < preview.height(); ++y) {
        for (int x = 0; x < preview.width(); ++x) {
            if (!inside.contains(x, y) && preview.pixel(x, y) != qRgb(255, 255, 255))
                return false;
        }
    }
    return true;
}

} // namespace

class LivePreviewTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_session.reset(); }
    void previewTakesNoFrameFromTheStream_data();
    void previewTakesNoFrameFromTheStream();
    void regionIsShownAtItsPlace_data();
    void regionIsShownAtItsPlace();
    void previewFollowsTheRegionWhileStreaming();

private:
    QPixmap label() const;
    QImage preview() const { return label().toImage(); }
    bool waitForPreviews(int count);
    bool previewShows(const QRect &region) const;
    void applyRegion(const QRect &region);
    QString node(const QString &name);

    std::unique_ptr<LiveSession> m_session;
};

void LivePreviewTest::init()
{
    m_session = std::make_unique<LiveSession>();
    QVERIFY(m_session->open(QStringLiteral("OV-SIM-2448C")));
    m_session->action("actionControl")->trigger();
    // So that two frames can be compared.
    QVERIFY(m_session->commitNode(QStringLiteral("SimulationMotion"), QStringLiteral("0")));
    QVERIFY(m_session->commitNode(QStringLiteral("SimulationNoise"), QStringLiteral("0")));
}

QPixmap LivePreviewTest::label() const
{
    return m_session->widget<QLabel>("laROI")->pixmap(Qt::ReturnByValue);
}

bool LivePreviewTest::waitForPreviews(int count)
{
    for (int i = 0; i < count; ++i) {
        const qint64 last = label().cacheKey();
        if (!QTest::qWaitFor([&] { return label().cacheKey() != last; }, 20000))
            return false;
    }
    return true;
}

bool LivePreviewTest::previewShows(const QRect &region) const
{
    const QImage shown = m_session->shown();
    return shown.size() == region.size() && isWhiteOutside(preview(), region) &&
           difference(preview(), expectedPreview(shown, region.topLeft(), preview().size())) < 3;
}

void LivePreviewTest::applyRegion(const QRect &region)
{
    m_session->typeInto("spiOffsetX", QString::number(region.x()));
    m_session->typeInto("spiOffsetY", QString::number(region.y()));
    m_session->typeInto("spiWidth", QString::number(region.width()));
    m_session->typeInto("spiHeight", QString::number(region.height()));
    m_session->widget<QPushButton>("btnROIApply")->click();
}

QString LivePreviewTest::node(const QString &name)
{
    return m_session->clickNode(name) ? m_session->widget<QLineEdit>("edXMLValue")->text()
                                      : QString();
}

void LivePreviewTest::previewTakesNoFrameFromTheStream_data()
{
    QTest::addColumn<QString>("format");
    QTest::newRow("grabbed as RGB") << "BayerGR8";
    QTest::newRow("grabbed raw") << "Mono8";
}

void LivePreviewTest::previewTakesNoFrameFromTheStream()
{
    QFETCH(QString, format);
    m_session->choose("cbPixelFormat", format);
    int received = 0;
    QObject::connect(&m_session->window(), &MainWindow::sigStatusBar, &m_session->window(),
                     [&received](int kind, double count) {
                         if (kind == 0)
                             received = static_cast<int>(count);
                     });
    QVERIFY(m_session->play());
    QVERIFY(waitForPreviews(4));
    m_session->stop();
    QCoreApplication::processEvents(); // queued frame counts
    QVERIFY(received > 0);
    QCOMPARE(QString::number(received), node(QStringLiteral("StreamDeliveredFrameCount")));
}

void LivePreviewTest::regionIsShownAtItsPlace_data()
{
    QTest::addColumn<QString>("format");
    for (const char *format : {"BayerGR8", "BayerGR12", "YUV422_8", "Mono8"})
        QTest::newRow(format) << QString::fromLatin1(format);
}

void LivePreviewTest::regionIsShownAtItsPlace()
{
    QFETCH(QString, format);
    const QRect region(1224, 512, 816, 1024);
    m_session->choose("cbPixelFormat", format);
    applyRegion(region);
    QVERIFY(m_session->play());
    QTRY_VERIFY_WITH_TIMEOUT(previewShows(region), 20000);
}

void LivePreviewTest::previewFollowsTheRegionWhileStreaming()
{
    QVERIFY(m_session->play());
    for (const QRect &region :
         {QRect(0, 0, 2448, 2048), QRect(0, 0, 1224, 1024), QRect(1224, 1024, 1224, 1024),
          QRect(80, 80, 2288, 1888), QRect(2048, 0, 400, 2048), QRect(0, 0, 2448, 2048)}) {
        applyRegion(region);
        QVERIFY(m_session->window().isStreaming());
        QTRY_VERIFY_WITH_TIMEOUT(previewShows(region), 20000);
    }
}

#include "LivePreviewTest.moc"
ORVALIS_QTEST_MAIN(LivePreviewTest)
