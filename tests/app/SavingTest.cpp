// SPDX-License-Identifier: MIT
// Displayed frames are saved to disk.
#include "tests/app/Shell.h"

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QThreadPool>

using shell::Frame;
using shell::gray;
using shell::mono8;
using shell::Shell;
using shell::shows;

class SavingTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void onceSavesOneFilePerArming();
    void allSavesEveryDisplayedFrame();
    void dumpsContainTheDisplayedFrame();
    void savedImagesHaveNoCross();
    void aFormatWithoutItsPlaneStillDisarms();
    void aDumpWithoutARawSizeIsAsLongAsThePixels_data();
    void aDumpWithoutARawSizeIsAsLongAsThePixels();
    void framesArmedAtTheExitAreOnDisk();
};

namespace {

const QRegularExpression namePattern("^CAM-A(_\\d+){6}\\.(BMP|JPG|PNG|RAW|RGB)$");

/// Saves frames to a temporary directory with options chosen on the panel.
class Saving {
public:
    Saving(const Shell &shell, const QString &format, bool all) : m_shell(shell)
    {
        shell.child<QLineEdit>("edSavePath")->setText(directory.path());
        shell.child<QComboBox>("cmbSaveExt")->setCurrentText(format);
        shell.child<QRadioButton>(all ? "radioSaveAll" : "radioSaveOnce")->click();
    }
    QStringList files() const { return QDir(directory.path()).entryList(QDir::Files); }
    QByteArray bytes(int file = 0) const
    {
        QFile opened(directory.filePath(files().value(file)));
        return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
    }
    void arm() const { m_shell.action("actionSave")->trigger(); }
    bool isArmed() const { return m_shell.action("actionSave")->isChecked(); }

    QTemporaryDir directory;

private:
    const Shell &m_shell;
};

/// Deliberate: tasks that run in the same millisecond write the same file, so a few may be missing.
bool savedAll(const Saving &saving, int frames)
{
    return saving.files().size() <= frames && 2 * saving.files().size() > frames;
}

} // namespace

void SavingTest::onceSavesOneFilePerArming()
{
    const Shell shell;
    shell.play();
    const Saving saving(shell, "BMP", false);
    Frame frame(64, 48, 60);
    QVERIFY(shows(shell, frame, gray(60)));
    QCOMPARE(saving.files(), QStringList());
    saving.arm();
    QTRY_VERIFY((frame.deliver(), !saving.isArmed()));
    QTRY_COMPARE(saving.files().size(), 1);
    QVERIFY2(namePattern.match(saving.files().first()).hasMatch(),
             qPrintable(saving.files().first()));
    QTRY_COMPARE(QImage::fromData(saving.bytes()).size(), QSize(64, 48));
    Frame another(64, 48, 61);
    QVERIFY(shows(shell, another, gray(61)));
    QCOMPARE(saving.files().size(), 1);
    saving.arm();
    QTRY_VERIFY((frame.deliver(), !saving.isArmed()));
    QTRY_COMPARE(saving.files().size(), 2);
}

void SavingTest::allSavesEveryDisplayedFrame()
{
    const Shell shell;
    shell.play();
    const Saving saving(shell, "RAW", true);
    QSignalSpy shown(shell.window.get(), SIGNAL(sigDisplayFrame(QPixmap)));
    saving.arm();
    Frame frame(64, 48, 60);
    QTRY_VERIFY((frame.deliver(), shown.size() >= 10));
    QVERIFY(saving.isArmed());
    shell->slotStopCamera();
    QThreadPool::globalInstance()->waitForDone();
    QVERIFY(savedAll(saving, shown.size()));
    for (int i = 0; i < saving.files().size(); ++i)
        QCOMPARE(saving.bytes(i).size(), 64 * 48);
}

void SavingTest::dumpsContainTheDisplayedFrame()
{
    const Shell shell;
    shell.play();
    const Saving saving(shell, "RGB", false);
    std::vector<std::uint8_t> raw(64 * 48, 1);
    std::vector<std::uint8_t> rgb(64 * 48 * 3, 2);
    OImageFrame record{64 * 48, 64, 48, 8, raw.data(), rgb.data(), nullptr};
    saving.arm();
    QTRY_VERIFY((fakeorvalis::deliver(record), !saving.isArmed()));
    shell->slotStopCamera();
    std::fill(rgb.begin(), rgb.end(), std::uint8_t{9});
    QTRY_COMPARE(saving.bytes(), QByteArray(64 * 48 * 3, 2));
}

void SavingTest::savedImagesHaveNoCross()
{
    const Shell shell;
    shell.play();
    shell.action("actionDrawCenter")->setChecked(true);
    const Saving saving(shell, "PNG", false);
    saving.arm();
    Frame frame(64, 48, 60);
    QTRY_VERIFY((frame.deliver(), !saving.isArmed()));
    QTRY_VERIFY(!saving.bytes().isEmpty());
    QTRY_COMPARE(shell.picture().pixelColor(32, 24), QColor(Qt::red));
    QTRY_COMPARE(QImage::fromData(saving.bytes()).pixel(32, 24), gray(60));
}

void SavingTest::aFormatWithoutItsPlaneStillDisarms()
{
    const Shell shell;
    shell.open();
    shell::setPixelFormat("Mono8", mono8);
    shell->slotStartCamera();
    const Saving saving(shell, "RGB", false);
    saving.arm();
    Frame frame(64, 48, 60);
    frame.record.rgb = nullptr;
    QTRY_VERIFY((frame.deliver(), !saving.isArmed()));
    shell->slotStopCamera();
    QCOMPARE(saving.files(), QStringList());
}

void SavingTest::aDumpWithoutARawSizeIsAsLongAsThePixels_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<uint>("code");
    QTest::addColumn<int>("bytes");
    QTest::newRow("8 bits") << "Mono8" << mono8 << 64 * 48;
    QTest::newRow("12 bits") << "Mono12" << 0x01100005U << 64 * 48 * 2;
    QTest::newRow("Bayer of 12 bits") << "BayerGR12" << 0x01100010U << 64 * 48 * 2;
}

void SavingTest::aDumpWithoutARawSizeIsAsLongAsThePixels()
{
    QFETCH(QString, format);
    QFETCH(uint, code);
    QFETCH(int, bytes);
    const Shell shell;
    shell.open();
    shell::setPixelFormat(format.toStdString(), code);
    shell->slotStartCamera();
    const Saving saving(shell, "RAW", false);
    saving.arm();
    Frame frame(64, 48, 60); // its planes have three bytes per pixel
    frame.record.rawSize = 0;
    QTRY_VERIFY((frame.deliver(), !saving.isArmed()));
    QTRY_COMPARE(saving.bytes(), QByteArray(bytes, 60));
}

void SavingTest::framesArmedAtTheExitAreOnDisk()
{
    Shell shell;
    shell.play();
    const Saving saving(shell, "PNG", true);
    saving.arm();
    QSignalSpy shown(shell.window.get(), SIGNAL(sigDisplayFrame(QPixmap)));
    Frame frame(64, 48, 60);
    QTRY_VERIFY((frame.deliver(), shown.size() >= 5));
    shell.window.reset();
    QVERIFY(savedAll(saving, shown.size()));
    for (int i = 0; i < saving.files().size(); ++i)
        QVERIFY(!QImage::fromData(saving.bytes(i)).isNull());
}

ORVALIS_QTEST_MAIN(SavingTest)
#include "SavingTest.moc"
