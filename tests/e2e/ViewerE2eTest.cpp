// SPDX-License-Identifier: MIT
// A user's session with the executable: mouse, keyboard and screenshots.
#include "tests/e2e/Pixels.h"
#include "tests/e2e/ViewerSession.h"

#include <QDir>
#include <QImageReader>
#include <QtTest>

using e2e::differences;
using e2e::pictureCentre;

namespace {

constexpr int patience = 30000;
constexpr int colourRow = 1;

const QString openTool = QStringLiteral("20x20/camera-open.png");
const QString closeTool = QStringLiteral("20x20/camera-close.png");
const QString playTool = QStringLiteral("20x20/camera-play.png");
const QString stopTool = QStringLiteral("20x20/camera-stop.png");
const QString saveTool = QStringLiteral("20x20/camera-save.png");
const QString fitTool = QStringLiteral("20x20/camera-fit.png");
const QString fullSizeTool = QStringLiteral("20x20/camera-z100.png");

} // namespace

class ViewerE2eTest : public QObject {
    Q_OBJECT

private slots:
    void showsTheCamerasFound();
    void theWindowHasTheApplicationsIcon();
    void opensByDoubleClickPlaysZoomsSavesAndStops();
    void singleShotShowsNoError();
    void endsWhileStreaming_data();
    void endsWhileStreaming();
    void closesACameraThatLeaves();
    void runsOnAnotherLibrary();

private:
    static QStringList savedFiles(const e2e::ViewerSession &session);
};

QStringList ViewerE2eTest::savedFiles(const e2e::ViewerSession &session)
{
    return QDir(session.documents()).entryList(QDir::Files);
}

void ViewerE2eTest::showsTheCamerasFound()
{
    e2e::ViewerSession session;
    QVERIFY2(session.start(), qPrintable(session.error()));
    QVERIFY(session.waitForCameras(4));
    QCOMPARE(session.title(), QStringLiteral("OrvalisViewer"));
    QVERIFY(!session.isToolEnabled(playTool));
    session.keepScreenshot(QStringLiteral("start"));
}

void ViewerE2eTest::theWindowHasTheApplicationsIcon()
{
    e2e::ViewerSession session;
    QVERIFY2(session.start(), qPrintable(session.error()));
    const QImage shown = session.icon();
    QVERIFY(!shown.isNull());
    QImageReader file(QStringLiteral(E2E_ICONS "/../OrvalisViewer.ico"));
    QImage drawn;
    for (int i = 0; i < file.imageCount() && drawn.size() != shown.size(); ++i) {
        QVERIFY(file.jumpToImage(i));
        drawn = file.read();
    }
    QCOMPARE(shown, drawn.convertToFormat(QImage::Format_ARGB32));
}

void ViewerE2eTest::opensByDoubleClickPlaysZoomsSavesAndStops()
{
    e2e::ViewerSession session;
    QVERIFY2(session.start(), qPrintable(session.error()));
    QVERIFY(session.waitForCameras(4));

    session.openCamera(colourRow);
    QTRY_COMPARE_WITH_TIMEOUT(
        session.title(), QStringLiteral("OrvalisViewer - OV-SIM-2448C-0002 2448x2048"), patience);
    const QImage opened = session.keepScreenshot(QStringLiteral("opened"));

    QVERIFY(session.clickTool(playTool));
    QTRY_VERIFY_WITH_TIMEOUT(session.showsPicture(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(
        differences(opened, session.desktop().screenshot(), e2e::statusBar()) > 50, patience);

    QVERIFY(session.clickTool(fullSizeTool));
    session.keepScreenshot(QStringLiteral("full-size"));
    QVERIFY(session.clickTool(fitTool));
    session.keepScreenshot(QStringLiteral("fitted"));
    session.desktop().moveTo(pictureCentre().center());
    session.desktop().wheel(3);
    session.keepScreenshot(QStringLiteral("zoomed"));

    QVERIFY(session.clickTool(saveTool));
    QTRY_COMPARE_WITH_TIMEOUT(savedFiles(session).size(), 1, patience);
    const QString name = savedFiles(session).constFirst();
    QVERIFY2(name.startsWith(QStringLiteral("OV-SIM-2448C-0002_")) &&
                 name.endsWith(QStringLiteral(".BMP")),
             qPrintable(name));
    QTRY_COMPARE_WITH_TIMEOUT(QImage(session.documents() + QLatin1Char('/') + name).size(),
                              QSize(2448, 2048), patience);

    QVERIFY(session.clickTool(stopTool));
    QTRY_VERIFY_WITH_TIMEOUT(session.isToolEnabled(playTool), patience);
    QVERIFY(session.clickTool(closeTool));
    QTRY_VERIFY_WITH_TIMEOUT(session.isToolEnabled(openTool), patience);
    session.keepScreenshot(QStringLiteral("closed"));
    session.desktop().key(QStringLiteral("ctrl+q"));
    QVERIFY(session.waitForExit() >= 0);
    QCOMPARE(session.exitCode(), 0);
    QCOMPARE(session.output(), QString());
}

void ViewerE2eTest::singleShotShowsNoError()
{
    e2e::ViewerSession session;
    QVERIFY2(session.start(), qPrintable(session.error()));
    QVERIFY(session.waitForCameras(4));
    session.openCamera(0);
    QTRY_VERIFY_WITH_TIMEOUT(session.title().contains(QLatin1String("1280x1024")), patience);
    QVERIFY(session.clickTool(QStringLiteral("20x20/camera-grab.png")));
    QTRY_VERIFY_WITH_TIMEOUT(session.showsPicture(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(session.isToolEnabled(playTool), patience);
    session.keepScreenshot(QStringLiteral("single-shot"));
}

void ViewerE2eTest::endsWhileStreaming_data()
{
    QTest::addColumn<QString>("keys");
    QTest::newRow("window manager") << "alt+F4";
    QTest::newRow("exit action") << "ctrl+q";
}

void ViewerE2eTest::endsWhileStreaming()
{
    QFETCH(QString, keys);
    e2e::ViewerSession session;
    QVERIFY2(session.start(), qPrintable(session.error()));
    QVERIFY(session.waitForCameras(4));
    session.openCamera(colourRow);
    QVERIFY(session.clickTool(playTool));
    QTRY_VERIFY_WITH_TIMEOUT(session.showsPicture(), patience);
    session.desktop().key(keys);
    const int milliseconds = session.waitForExit();
    QVERIFY2(milliseconds >= 0, "the viewer hangs");
    qInfo("ended after %d ms", milliseconds);
    QVERIFY2(milliseconds <= 3000, "a user must not wait longer than 3 s");
    QVERIFY(session.exitedNormally());
    QCOMPARE(session.exitCode(), 0);
    QCOMPARE(session.output(), QString());
}

void ViewerE2eTest::closesACameraThatLeaves()
{
    e2e::ViewerSession session;
    QVERIFY2(session.start(), qPrintable(session.error()));
    QVERIFY(session.waitForCameras(4));
    session.openCamera(0);
    QVERIFY(session.clickTool(QStringLiteral("20x20/camera-reset.png")));
    session.desktop().key(QStringLiteral("alt+y")); // "Do you want to reboot camera?"
    QTRY_VERIFY_WITH_TIMEOUT(session.cameraRows().size() == 3, patience);
    session.keepScreenshot(QStringLiteral("camera-rebooting"));
    QVERIFY(session.waitForCameras(4));
    QVERIFY(session.isRunning());
}

void ViewerE2eTest::runsOnAnotherLibrary()
{
    e2e::ViewerSession session;
    QTemporaryDir folder;
    const QString trace = folder.filePath(QStringLiteral("calls"));
    session.setVariable(QStringLiteral("LD_LIBRARY_PATH"), QStringLiteral(E2E_OTHER_LIBRARY));
    session.setVariable(QStringLiteral("FAKE_ORVALIS_TRACE"), trace);
    QVERIFY2(session.start(), qPrintable(session.error()));
    QVERIFY(session.waitForCameras(2));
    session.openCamera(1);
    QTRY_COMPARE_WITH_TIMEOUT(session.title(), QStringLiteral("OrvalisViewer - CAM-B 64x48"),
                              patience);
    session.keepScreenshot(QStringLiteral("another-library"));
    session.desktop().key(QStringLiteral("ctrl+q"));
    QVERIFY(session.waitForExit() >= 0);
    QFile file(trace);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray calls = file.readAll();
    QVERIFY(calls.startsWith("OrvalisInit()\n"));
    QVERIFY(calls.contains("\nOrvalisOpenCamera(\"CAM-B\")\n"));
    QVERIFY(calls.contains("\nOrvalisCloseCamera(h1)\n"));
}

QTEST_GUILESS_MAIN(ViewerE2eTest)
#include "ViewerE2eTest.moc"
