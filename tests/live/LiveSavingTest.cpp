// SPDX-License-Identifier: MIT
// A thousand frames saved with "All": every displayed frame is on disk exactly once, byte for byte.
#include "tests/live/FrameNumber.h"
#include "tests/live/LiveSession.h"
#include "tests/support/QtTestMain.h"

#include <QComboBox>
#include <QCryptographicHash>
#include <QDir>
#include <QHash>

#include <memory>

namespace {

constexpr int framesToSave = 1000;

QByteArray digest(const QByteArray &pixels)
{
    return QCryptographicHash::hash(pixels, QCryptographicHash::Md5);
}

/// The pixels of a saved file, empty if it is incomplete.
QByteArray filePixels(const QString &path, QSize size)
{
    if (!path.endsWith(QLatin1String(".RAW")))
        return grayPixels(QImage(path));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() != qint64(size.width()) * size.height())
        return {};
    return file.readAll();
}

} // namespace

class LiveSavingTest : public QObject {
    Q_OBJECT

private slots:
    void everyFrameShownIsOnDisk_data();
    void everyFrameShownIsOnDisk();
};

void LiveSavingTest::everyFrameShownIsOnDisk_data()
{
    QTest::addColumn<QString>("format");
    QTest::newRow("RAW") << "RAW";
    QTest::newRow("BMP") << "BMP";
}

void LiveSavingTest::everyFrameShownIsOnDisk()
{
    QFETCH(QString, format);
    LiveSession session;
    QVERIFY(session.open(QStringLiteral("OV-SIM-0640F")));
    QVERIFY(session.commitNode(QStringLiteral("FrameNumberOverlay"), QStringLiteral("1")));
    session.typeInto("spiFrameRate", QStringLiteral("100"));
    session.choose("cmbSaveExt", format);
    QMetaObject::invokeMethod(session.widget<QObject>("CameraCtrl"), "on_radioSaveAll_clicked");

    QHash<quint32, QByteArray> shown;
    QVector<quint32> order;
    QObject::connect(&session.window(), &MainWindow::sigDisplayFrame, &session.window(),
                     [&](const QPixmap &pixmap) {
                         const QByteArray pixels = grayPixels(pixmap.toImage());
                         const quint32 number = frameNumber(pixels, pixmap.width());
                         shown.insert(number, digest(pixels));
                         order.append(number);
                     });
    QVERIFY(session.play());
    session.action("actionSave")->trigger();
    const int from = order.size();
    QVERIFY(QTest::qWaitFor([&] { return order.size() - from > framesToSave; }, 120000));
    session.action("actionSave")->trigger();
    QVERIFY(session.waitForPictures(2));
    const QSize size = session.shown().size();
    session.stop();

    const QDir folder(session.saveFolder());
    QTRY_VERIFY(folder.entryList(QDir::Files).size() >= framesToSave);
    QHash<quint32, int> saved;
    for (const QString &name : folder.entryList(QDir::Files)) {
        const QByteArray pixels = filePixels(folder.filePath(name), size);
        QVERIFY2(!pixels.isEmpty(), qPrintable(name));
        const quint32 number = frameNumber(pixels, size.width());
        QVERIFY2(shown.contains(number), qPrintable(name));
        QCOMPARE(digest(pixels), shown.value(number));
        ++saved[number];
    }
    // Saving was armed and disarmed between two frames: from the first frame on disk to the last,
    // every displayed frame must be there exactly once.
    const auto numbers = saved.keys();
    const quint32 first = *std::min_element(numbers.begin(), numbers.end());
    const quint32 last = *std::max_element(numbers.begin(), numbers.end());
    for (const quint32 number : qAsConst(order)) {
        if (number >= first && number <= last)
            QCOMPARE(saved.value(number), 1);
    }
    QVERIFY(saved.size() >= framesToSave);
    qInfo("%d frames shown while saving, %d files", order.size() - from, saved.size());
}

#include "LiveSavingTest.moc"
ORVALIS_QTEST_MAIN(LiveSavingTest)
