// SPDX-License-Identifier: MIT
// Stops, settings and events while a stream starts.
#include "tests/app/Shell.h"

#include <QComboBox>

using shell::Frame;
using shell::gray;
using shell::mono12;
using shell::settle;
using shell::Shell;
using shell::shows;

class StreamStartTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void eventsDuringStartMayCloseTheCamera();
    void eventsDuringStartMayStartAgain();
    void aStopDuringTheStartCancelsIt_data();
    void aStopDuringTheStartCancelsIt();
    void aStopWhileARestartIsPendingCancelsIt();
    void aStartAfterACancelledOneRuns();
    void everyStartReadsTheFormat();
    void aSettingChangedDuringTheStartIsUsed();
    void quickKeysOnThePixelFormatLeaveNoBlankImage();
};

void StreamStartTest::eventsDuringStartMayCloseTheCamera()
{
    const Shell shell;
    shell.open();
    QTimer::singleShot(0, shell.window.get(), SLOT(slotCloseCamera()));
    shell->slotStartCamera();
    QVERIFY(!shell->isStreaming());
    QVERIFY(fakeorvalis::openHandles().empty());
    QVERIFY(fakeorvalis::callsOf({"OrvalisStartAcquisition"}).empty());
    QVERIFY(shell.action("actionOpen")->isEnabled());
    QVERIFY(!shell.action("actionPlay")->isChecked());
}

void StreamStartTest::eventsDuringStartMayStartAgain()
{
    const Shell shell;
    shell.open();
    QTimer::singleShot(0, shell.window.get(), SLOT(slotStartCamera()));
    shell->slotStartCamera();
    QVERIFY(shell->isStreaming());
    QCOMPARE(fakeorvalis::callsOf({"OrvalisStartAcquisition"}).size(), std::size_t{1});
    QVERIFY(shell.action("actionPlay")->isChecked());
}

void StreamStartTest::aStopDuringTheStartCancelsIt_data()
{
    QTest::addColumn<bool>("shotBefore");
    QTest::newRow("start") << false;
    QTest::newRow("start with a single shot in it") << true;
}

void StreamStartTest::aStopDuringTheStartCancelsIt()
{
    QFETCH(bool, shotBefore);
    const Shell shell;
    shell.open();
    if (shotBefore)
        QTimer::singleShot(0, shell.window.get(), SLOT(slotOneGrab()));
    QTimer::singleShot(0, shell.action("actionStop"), &QAction::trigger);
    shell.action("actionPlay")->trigger();
    QVERIFY(!shell->isAcquiring());
    QVERIFY(fakeorvalis::callback() == nullptr);
    QVERIFY(!shell.log().contains("start stream Camera[CAM-A]"));
    QVERIFY(shell.action("actionPlay")->isEnabled());
    QVERIFY(!shell.action("actionPlay")->isChecked());
    QVERIFY(shell.action("actionOneGrab")->isEnabled());
    for (const char *name : {"actionStop", "actionSave", "actionZoomIN", "actionDrawCenter"})
        QVERIFY2(!shell.action(name)->isEnabled(), name);
    settle();
    QVERIFY(!shell->isAcquiring());
    shell.action("actionPlay")->trigger();
    QVERIFY(shell->isStreaming());
}

void StreamStartTest::aStopWhileARestartIsPendingCancelsIt()
{
    const Shell shell;
    shell->show();
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.lists["PixelFormat"] = {{"BayerGR8", "RGB8", "Mono8"}, "BayerGR8"};
    });
    shell.play();
    auto *formats = shell.child<QComboBox>("cbPixelFormat");
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
        QCoreApplication::postEvent(formats, new QKeyEvent(type, Qt::Key_Down, Qt::NoModifier));
    QMetaObject::invokeMethod(shell.action("actionStop"), "trigger", Qt::QueuedConnection);
    settle();
    QCOMPARE(formats->currentText(), QString("RGB8"));
    QVERIFY(!shell->isAcquiring());
    QVERIFY(fakeorvalis::callback() == nullptr);
    QCOMPARE(shell.log().count("stop steam Camera[CAM-A]"), 1);
    QVERIFY(shell.action("actionPlay")->isEnabled());
    QVERIFY(!shell.action("actionPlay")->isChecked());
    QVERIFY(!shell.action("actionStop")->isEnabled());
}

void StreamStartTest::aStartAfterACancelledOneRuns()
{
    const Shell shell;
    shell.open();
    QTimer::singleShot(0, shell.action("actionStop"), &QAction::trigger);
    QTimer::singleShot(0, shell.action("actionPlay"), &QAction::trigger);
    shell->slotStartCamera();
    QVERIFY(shell->isStreaming());
    QCOMPARE(fakeorvalis::callsOf({"OrvalisStartAcquisition"}).size(), std::size_t{1});
    QVERIFY(shell.action("actionStop")->isEnabled());
    QVERIFY(shell.action("actionPlay")->isChecked());
}

void StreamStartTest::everyStartReadsTheFormat()
{
    const Shell shell;
    shell.play();
    shell->slotStopCamera();
    shell::setPixelFormat("Mono8", shell::mono8);
    shell::setRegion(16, 8);
    shell->slotStartCamera();
    Frame frame(16, 8, 99);
    frame.record.rgb = nullptr;
    QVERIFY(shows(shell, frame, gray(99)));
    QCOMPARE(shell.picture().size(), QSize(16, 8));
}

void StreamStartTest::aSettingChangedDuringTheStartIsUsed()
{
    const Shell shell;
    shell.open();
    QTimer::singleShot(0, shell.window.get(), [] {
        shell::setPixelFormat("Mono12", mono12);
        shell::setRegion(16, 8);
    });
    shell->slotStartCamera();
    QCOMPARE(shell->windowTitle(), QString("OrvalisViewer - CAM-A 16x8"));
    const auto conversions = fakeorvalis::callsOf({"OrvalisSetBayerConversion"});
    QCOMPARE(QString::fromStdString(conversions.back()),
             QString("OrvalisSetBayerConversion(h1, 0)"));
    Frame frame(16, 8, 99);
    frame.record.raw = frame.record.rgb = nullptr;
    QVERIFY(shows(shell, frame, gray(99)));
    QCOMPARE(shell.picture().size(), QSize(16, 8));
}

// Each key restarts the stream; the second arrives while the first restart is pending.
void StreamStartTest::quickKeysOnThePixelFormatLeaveNoBlankImage()
{
    const Shell shell;
    shell->show();
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.lists["PixelFormat"] = {{"BayerGR8", "RGB8", "Mono8"}, "BayerGR8"};
    });
    shell.play();
    auto *formats = shell.child<QComboBox>("cbPixelFormat");
    for (int key = 0; key < 2; ++key) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
            QCoreApplication::postEvent(formats, new QKeyEvent(type, Qt::Key_Down, Qt::NoModifier));
    }
    settle();
    QCOMPARE(formats->currentText(), QString("Mono8"));
    QVERIFY(shell->isStreaming());
    Frame frame(64, 48, 99);
    frame.record.rgb = nullptr;
    QVERIFY(shows(shell, frame, gray(99)));
}

ORVALIS_QTEST_MAIN(StreamStartTest)
#include "StreamStartTest.moc"
