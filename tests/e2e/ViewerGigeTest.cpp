// SPDX-License-Identifier: MIT
// The executable with a GigE Vision camera in another process on the loopback network. Must run in
// its own network namespace.
#include "tests/e2e/Pixels.h"
#include "tests/e2e/ViewerSession.h"

#include <QtTest>

namespace {

constexpr int patience = 40000; // discovery over the network takes seconds

const QString playTool = QStringLiteral("20x20/camera-play.png");
const QString stopTool = QStringLiteral("20x20/camera-stop.png");

} // namespace

class ViewerGigeTest : public QObject {
    Q_OBJECT

public:
    ~ViewerGigeTest() override { cleanup(); }

private slots:
    void cleanup();
    void showsTheLivePicture();
    void closesTheCameraThatIsUnplugged();

private:
    void plugCamera();
    void startViewer();
    void openAndPlay();

    QProcess m_camera;
    std::unique_ptr<e2e::ViewerSession> m_session;
};

void ViewerGigeTest::plugCamera()
{
    m_camera.start(QStringLiteral("arv-fake-gv-camera-0.8"),
                   {QStringLiteral("-i"), QStringLiteral("127.0.0.1"), QStringLiteral("-s"),
                    QStringLiteral("GV01")});
    QVERIFY(m_camera.waitForStarted());
}

void ViewerGigeTest::startViewer()
{
    m_session = std::make_unique<e2e::ViewerSession>();
    m_session->setVariable(QStringLiteral("ORVALIS_BACKENDS"), QStringLiteral("genicam"));
    QVERIFY2(m_session->start(), qPrintable(m_session->error()));
}

void ViewerGigeTest::cleanup()
{
    m_session.reset();
    m_camera.kill();
    m_camera.waitForFinished();
}

void ViewerGigeTest::openAndPlay()
{
    QTRY_COMPARE_WITH_TIMEOUT(m_session->cameraRows().size(), 1, patience);
    m_session->openCamera(0);
    QTRY_VERIFY_WITH_TIMEOUT(m_session->title().contains(QLatin1String("GV01")), patience);
    QVERIFY(m_session->clickTool(playTool));
    QTRY_VERIFY_WITH_TIMEOUT(m_session->showsPicture(), patience);
}

void ViewerGigeTest::showsTheLivePicture()
{
    plugCamera();
    startViewer();
    openAndPlay();
    const QImage first = m_session->keepScreenshot(QStringLiteral("gige-first"));
    QTRY_VERIFY_WITH_TIMEOUT(
        e2e::differences(first, m_session->desktop().screenshot(), e2e::pictureCentre()) > 1000,
        patience);
    QTRY_VERIFY_WITH_TIMEOUT(
        e2e::differences(first, m_session->desktop().screenshot(), e2e::statusBar()) > 20,
        patience);
    m_session->keepScreenshot(QStringLiteral("gige"));
    QVERIFY(m_session->clickTool(stopTool));
    QTRY_VERIFY_WITH_TIMEOUT(m_session->isToolEnabled(playTool), patience);
    m_session->desktop().key(QStringLiteral("ctrl+q"));
    QVERIFY(m_session->waitForExit() >= 0);
    QCOMPARE(m_session->exitCode(), 0);
}

void ViewerGigeTest::closesTheCameraThatIsUnplugged()
{
    // The viewer counts cameras every three seconds and searches for the open one when their number
    // changes. A camera that is plugged in after the start has been counted once it is listed.
    startViewer();
    plugCamera();
    openAndPlay();
    m_camera.kill();
    QTRY_VERIFY_WITH_TIMEOUT(!m_session->isToolEnabled(stopTool), patience);
    QTRY_VERIFY_WITH_TIMEOUT(m_session->cameraRows().isEmpty(), patience);
    m_session->keepScreenshot(QStringLiteral("gige-unplugged"));
    QVERIFY(m_session->isRunning());
    m_session->desktop().key(QStringLiteral("ctrl+q"));
    QVERIFY(m_session->waitForExit() >= 0);
    QCOMPARE(m_session->exitCode(), 0);
}

QTEST_GUILESS_MAIN(ViewerGigeTest)
#include "ViewerGigeTest.moc"
