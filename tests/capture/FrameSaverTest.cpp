// SPDX-License-Identifier: MIT
// Frames are saved while the saver is armed, as its options say.
#include "capture/FrameSaver.h"
#include "capture/Picture.h"
#include "tests/support/QtTestMain.h"

#include <QDir>
#include <QTemporaryDir>

#include <array>
#include <vector>

class FrameSaverTest : public QObject {
    Q_OBJECT

private slots:
    void init();

    void anUnarmedSaverSavesNothing();
    void onceEndsTheRequest();
    void allGoesOnUntilDisarmed();
    void withoutAFormatNothingIsWritten();
    void everyFormatHasItsName();

private:
    std::optional<FrameSaver::Saved> save();
    QStringList files() const { return QDir(m_directory->path()).entryList(QDir::Files); }

    std::unique_ptr<QTemporaryDir> m_directory;
    SaveOptions m_options;
    FrameSaver m_saver{[this] { return m_options; }};
};

void FrameSaverTest::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    m_options = {m_directory->path(), SaveFormat::Raw, false};
    m_saver.request().set(false);
}

std::optional<FrameSaver::Saved> FrameSaverTest::save()
{
    std::vector<unsigned char> plane(64 * 48, 7);
    OImageFrame frame{64 * 48, 64, 48, 8, plane.data(), nullptr, nullptr};
    PictureMaker maker({}, meaningOf("Mono8"));
    const PicturePtr picture = maker.make({&frame, {}}, Rows::AlignedTo4, 64 * 48);
    auto saved = m_saver.saveIfArmed(*picture, {'C', 'A', 'M'});
    if (saved)
        saved->task.waitForFinished();
    return saved;
}

void FrameSaverTest::anUnarmedSaverSavesNothing()
{
    QVERIFY(!save());
    QCOMPARE(files(), QStringList());
}

void FrameSaverTest::onceEndsTheRequest()
{
    m_saver.request().set(true);
    const auto saved = save();
    QVERIFY(saved && saved->last);
    QVERIFY(!m_saver.request());
    QVERIFY(!save());
    QCOMPARE(files().size(), 1);
    QVERIFY2(files().first().startsWith("CAM_") && files().first().endsWith(".RAW"),
             qPrintable(files().first()));
    m_saver.limiter().waitUntilEmpty();
}

void FrameSaverTest::allGoesOnUntilDisarmed()
{
    m_options.everyFrame = true;
    m_options.format = SaveFormat::Bmp;
    m_saver.request().set(true);
    for (int frame = 0; frame < 3; ++frame) {
        const auto saved = save();
        QVERIFY(saved && !saved->last);
    }
    m_saver.request().set(false);
    QVERIFY(!save());
    QCOMPARE(files().size(), 3);
}

void FrameSaverTest::withoutAFormatNothingIsWritten()
{
    m_options.format.reset();
    m_saver.request().set(true);
    const auto saved = save();
    QVERIFY(saved && saved->last);
    QVERIFY(!m_saver.request());
    QCOMPARE(files(), QStringList());
}

void FrameSaverTest::everyFormatHasItsName()
{
    for (const SaveFormat format : {SaveFormat::Bmp, SaveFormat::Jpg, SaveFormat::Png,
                                    SaveFormat::Tif, SaveFormat::Raw, SaveFormat::Rgb})
        QVERIFY(saveFormatNamed(nameOf(format)) == format);
    QVERIFY(!saveFormatNamed("bmp"));
    QVERIFY(!saveFormatNamed({}));
}

ORVALIS_QTEST_MAIN(FrameSaverTest)
#include "FrameSaverTest.moc"
