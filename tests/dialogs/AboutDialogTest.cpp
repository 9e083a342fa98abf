// SPDX-License-Identifier: MIT
// The about dialog: its form, and reading of intact and broken headers of the camera library.
#include "dialogs/AboutDialog.h"
#include "tests/support/QtTestMain.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char versionBlock[] =
    "/*\n * A header.\n\n[VERSION_INFO]\nPACKAGE_VERSION=1.0.5\nLIBRARY_VERSION=2.1.0\n\n */\n"
    "#define TEXT \"a; b\"\n[OTHER]\nPACKAGE_VERSION=9\n";

} // namespace

class AboutDialogTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }
    void textsAndStyles_data();
    void textsAndStyles();
    void titleIsFixedAndFits();
    void iconButtonHasNoTextAndNoAction();
    void nothingIsCutOff_data();
    void nothingIsCutOff();
    void textsAreReadableOnADarkDesktop();
    void operatingSystemLine();
    void versionLabelsShowTheHeader();
    void versionLabelsAreEmptyWithoutAHeader();
    void dialogReadsTheInstalledHeader();
    void okAndEscapeClose();
    void headerPathIsTheInstalledOne();
    void readsTheVersionBlock();
    void readsTheHeaderOfThisProject();
    void headersWithoutVersions_data();
    void headersWithoutVersions();
    void aMissingKeyKeepsTheOther();
    void utf8Values();
    void changedHeaderIsReadAgain();
    void longVersionsAreTruncated();
    void hugeHeaderIsNotRead();
    void invalidHeaderPaths();
    void fifoDoesNotBlock();
    void unreadableHeaderIsEmpty();
    void readingWritesNothing();

private:
    QString write(const QByteArray &content, const QString &name = "Header.h") const
    {
        const QString path = m_directory.filePath(name);
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
            file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(path));
        return path;
    }

    QTemporaryDir m_directory;
};

void AboutDialogTest::textsAndStyles_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("style");
    QTest::newRow("label") << "OrvalisViewer v1.2.0.0"
                           << "color : rgb(0,0,255)";
    QTest::newRow("label_3") << "Package Version :"
                             << "";
    QTest::newRow("label_4") << "Library Version   :"
                             << "";
    QTest::newRow("label_5") << "OS Version           : "
                             << "";
}

void AboutDialogTest::textsAndStyles()
{
    const AboutDialog dialog;
    QCOMPARE(dialog.windowTitle(), QString("About OrvalisViewer"));
    const auto *label = dialog.findChild<QLabel *>(QTest::currentDataTag());
    QTEST(label->text(), "text");
    QTEST(label->styleSheet(), "style");
    for (const char *name : {"laPackage", "laLibrary", "laOS"})
        QCOMPARE(dialog.findChild<QLabel *>(name)->styleSheet(), QString("color : rgb(255,0,0)"));
    QCOMPARE(dialog.findChild<QWidget *>("widget")->styleSheet(),
             QString("background-color: rgb(255,255,255)"));
    const QString notice = dialog.findChild<QLabel *>("label_6")->text();
    QVERIFY(!notice.isEmpty() && !notice.contains('\n'));
}

void AboutDialogTest::titleIsFixedAndFits()
{
    const AboutDialog dialog;
    const auto *title = dialog.findChild<QLabel *>("label");
    QCOMPARE(title->minimumSize(), QSize(300, 50));
    QCOMPARE(title->maximumSize(), QSize(300, 50));
    QCOMPARE(title->font().family(), QString("Ubuntu"));
    QCOMPARE(title->font().pointSize(), 18);
    QCOMPARE(title->font().weight(), 75);
    QVERIFY(title->fontMetrics().horizontalAdvance(title->text()) <= 300);
}

void AboutDialogTest::iconButtonHasNoTextAndNoAction()
{
    const AboutDialog dialog;
    auto *button = dialog.findChild<QPushButton *>("btnGoZEB");
    QCOMPARE(button->minimumSize(), QSize(64, 64));
    QCOMPARE(button->maximumSize(), QSize(64, 64));
    QCOMPARE(button->iconSize(), QSize(64, 64));
    QVERIFY(button->text().isEmpty());
    QVERIFY(!button->icon().pixmap(64, 64).isNull());
    button->click();
}

void AboutDialogTest::nothingIsCutOff_data()
{
    QTest::addColumn<int>("points");
    for (const int points : {7, 9, 11, 14, 20})
        QTest::addRow("%d pt", points) << points;
}

void AboutDialogTest::nothingIsCutOff()
{
    QFETCH(int, points);
    QApplication::setFont(QFont("DejaVu Sans", points));
    AboutDialog dialog;
    dialog.show();
    for (const QLabel *label : dialog.findChildren<QLabel *>()) {
        QVERIFY2(label->width() >= label->sizeHint().width(), qPrintable(label->objectName()));
        QVERIFY2(label->height() >= label->sizeHint().height(), qPrintable(label->objectName()));
        QVERIFY(dialog.rect().contains(QRect(label->mapTo(&dialog, QPoint()), label->size())));
    }
    QApplication::setFont(QFont());
}

void AboutDialogTest::textsAreReadableOnADarkDesktop()
{
    const QPalette before = QApplication::palette();
    QPalette dark(Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    QApplication::setPalette(dark);
    AboutDialog dialog;
    dialog.show();
    const QImage picture = dialog.findChild<QLabel *>("label_3")->grab().toImage();
    QApplication::setPalette(before);
    int darkPixels = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            darkPixels += qGray(picture.pixel(x, y)) < 64;
    }
    QVERIFY(darkPixels > 20);
    QVERIFY(darkPixels < picture.width() * picture.height() / 2);
}

void AboutDialogTest::operatingSystemLine()
{
    const AboutDialog dialog;
    QCOMPARE(dialog.findChild<QLabel *>("laOS")->text(),
             QSysInfo::prettyProductName() + ", " + QSysInfo::kernelVersion() + " (" +
                 QSysInfo::currentCpuArchitecture() + ")");
}

void AboutDialogTest::versionLabelsShowTheHeader()
{
    const AboutDialog dialog(nullptr, write(versionBlock));
    QCOMPARE(dialog.findChild<QLabel *>("laPackage")->text(), QString("1.0.5"));
    QCOMPARE(dialog.findChild<QLabel *>("laLibrary")->text(), QString("2.1.0"));
}

void AboutDialogTest::versionLabelsAreEmptyWithoutAHeader()
{
    AboutDialog dialog(nullptr, m_directory.filePath("missing.h"));
    dialog.show();
    QVERIFY(dialog.isVisible());
    QCOMPARE(dialog.findChild<QLabel *>("laPackage")->text(), QString());
    QCOMPARE(dialog.findChild<QLabel *>("laLibrary")->text(), QString());
}

/// The header may be missing on the machine that runs the test.
void AboutDialogTest::dialogReadsTheInstalledHeader()
{
    const AboutDialog dialog;
    const auto versions = AboutDialog::readSdkVersions(AboutDialog::sdkHeaderPath());
    QCOMPARE(dialog.findChild<QLabel *>("laPackage")->text(), versions.package);
    QCOMPARE(dialog.findChild<QLabel *>("laLibrary")->text(), versions.library);
}

void AboutDialogTest::okAndEscapeClose()
{
    AboutDialog dialog;
    auto *box = dialog.findChild<QDialogButtonBox *>("buttonBox");
    QCOMPARE(box->standardButtons(), QDialogButtonBox::Ok);
    QCOMPARE(box->orientation(), Qt::Horizontal);
    dialog.show();
    QTest::mouseClick(box->button(QDialogButtonBox::Ok), Qt::LeftButton);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QCOMPARE(dialog.result(), int(QDialog::Rejected));
    QVERIFY(!dialog.isVisible());
}

void AboutDialogTest::headerPathIsTheInstalledOne()
{
    QCOMPARE(AboutDialog::sdkHeaderPath(), QString("/usr/local/include/orvalis/OrvalisAPI.h"));
}

void AboutDialogTest::readsTheVersionBlock()
{
    const auto versions = AboutDialog::readSdkVersions(write(versionBlock));
    QCOMPARE(versions.package, QString("1.0.5"));
    QCOMPARE(versions.library, QString("2.1.0"));
}

void AboutDialogTest::readsTheHeaderOfThisProject()
{
    const auto versions = AboutDialog::readSdkVersions(QStringLiteral(ORVALIS_SDK_HEADER));
    QCOMPARE(versions.package, QString("1.2.0.0"));
    QCOMPARE(versions.library, QString("1.2.0.0"));
}

void AboutDialogTest::headersWithoutVersions_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no group") << QByteArray("#define X 1\nPACKAGE_VERSION=1\n");
    QTest::newRow("other group") << QByteArray("[VERSION]\nPACKAGE_VERSION=1\n");
    QTest::newRow("group without keys") << QByteArray("[VERSION_INFO]\nX=1\n");
    QTest::newRow("group without end") << QByteArray("[VERSION_INFO");
    QTest::newRow("NULs") << QByteArray(5000, '\0');
    QByteArray binary;
    for (int i = 0; i < 100000; ++i)
        binary.append(static_cast<char>((i * 2654435761U) >> 13));
    QTest::newRow("binary") << binary;
    QTest::newRow("brackets") << QByteArray(200000, '[');
    QTest::newRow("quotes") << QByteArray(200001, '"');
    QTest::newRow("backslashes") << QByteArray(200001, '\\');
}

void AboutDialogTest::headersWithoutVersions()
{
    QFETCH(QByteArray, content);
    const auto versions = AboutDialog::readSdkVersions(write(content));
    QVERIFY(versions.package.isEmpty());
    QVERIFY(versions.library.isEmpty());
}

void AboutDialogTest::aMissingKeyKeepsTheOther()
{
    const auto versions =
        AboutDialog::readSdkVersions(write("[VERSION_INFO]\nLIBRARY_VERSION=3\n"));
    QCOMPARE(versions.package, QString());
    QCOMPARE(versions.library, QString("3"));
}

void AboutDialogTest::utf8Values()
{
    const auto versions =
        AboutDialog::readSdkVersions(write("[VERSION_INFO]\nPACKAGE_VERSION=1.0-größe\n"));
    QCOMPARE(versions.package, QStringLiteral("1.0-größe"));
}

void AboutDialogTest::changedHeaderIsReadAgain()
{
    for (int i = 0; i < 50; ++i) {
        const QByteArray version(i + 1, '7'); // changes the size, as the file's time may not change
        const auto versions = AboutDialog::readSdkVersions(
            write("[VERSION_INFO]\nPACKAGE_VERSION=" + version + "\n"));
        QCOMPARE(versions.package, QString(version));
    }
}

void AboutDialogTest::longVersionsAreTruncated()
{
    const auto versions = AboutDialog::readSdkVersions(
        write("[VERSION_INFO]\nPACKAGE_VERSION=" + QByteArray(100000, '1') + "\n"));
    QCOMPARE(versions.package, QString(64, '1'));
}

void AboutDialogTest::hugeHeaderIsNotRead()
{
    const QString path = write(versionBlock, "Huge.h");
    QVERIFY(QFile::resize(path, qint64(1) << 40)); // sparse
    QVERIFY(AboutDialog::readSdkVersions(path).package.isEmpty());
}

void AboutDialogTest::invalidHeaderPaths()
{
    for (const QString &path :
         {m_directory.path(), m_directory.filePath("missing/x.h"), QString(), QString("/dev/zero")})
        QVERIFY(AboutDialog::readSdkVersions(path).package.isEmpty());
}

void AboutDialogTest::fifoDoesNotBlock()
{
    const QString path = m_directory.filePath("Fifo.h");
    QCOMPARE(mkfifo(qPrintable(path), 0600), 0);
    QVERIFY(AboutDialog::readSdkVersions(path).package.isEmpty());
}

void AboutDialogTest::unreadableHeaderIsEmpty()
{
    if (geteuid() == 0)
        QSKIP("the superuser reads everything");
    const QString path = write(versionBlock, "Locked.h");
    QVERIFY(QFile::setPermissions(path, QFileDevice::Permissions()));
    QVERIFY(AboutDialog::readSdkVersions(path).package.isEmpty());
}

void AboutDialogTest::readingWritesNothing()
{
    const QString path = write(versionBlock, "Trace.h");
    const QStringList before = QDir(m_directory.path()).entryList(QDir::AllEntries | QDir::Hidden);
    const QDateTime modified = QFileInfo(path).lastModified();
    AboutDialog::readSdkVersions(path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray(versionBlock));
    QCOMPARE(QFileInfo(path).lastModified(), modified);
    QCOMPARE(QDir(m_directory.path()).entryList(QDir::AllEntries | QDir::Hidden), before);
}

ORVALIS_QTEST_MAIN(AboutDialogTest)
#include "AboutDialogTest.moc"
