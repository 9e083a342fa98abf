// SPDX-License-Identifier: MIT
// The acquisition mode that a single shot sets, and who puts it back.
#include "tests/app/Shell.h"

using shell::Shell;

class SingleShotModeTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void playEndsTheModeOfAShotThatWasLost_data();
    void playEndsTheModeOfAShotThatWasLost();
    void playKeepsAModeThatNoShotSet();
};

void SingleShotModeTest::playEndsTheModeOfAShotThatWasLost_data()
{
    QTest::addColumn<int>("next"); // the camera that is opened then
    QTest::addColumn<bool>("repaired");
    QTest::newRow("the same camera") << 0 << true;
    QTest::newRow("another camera") << 1 << false;
}

void SingleShotModeTest::playEndsTheModeOfAShotThatWasLost()
{
    QFETCH(int, next);
    QFETCH(bool, repaired);
    const Shell shell;
    shell.open();
    shell->slotOneGrab();
    fakeorvalis::fail("OrvalisSetNodeEnum");
    shell->loseCamera();
    fakeorvalis::fail("OrvalisSetNodeEnum", ORVALIS_OK);
    shell.open(next);
    shell->slotStartCamera();
    const QString mode = QString("OrvalisSetNodeEnum(h2, \"AcquisitionMode\", \"Continuous\")");
    QStringList calls = shell::calls();
    QCOMPARE(calls.count(mode), repaired ? 1 : 0);
    QVERIFY(calls.last().startsWith("OrvalisStartAcquisition(h2"));

    shell->slotStopCamera();
    fakeorvalis::clearCalls();
    shell->slotStartCamera(); // once is enough
    QVERIFY(!shell::calls().contains(mode));
}

void SingleShotModeTest::playKeepsAModeThatNoShotSet()
{
    const Shell shell;
    shell.open();
    fakeorvalis::fail("OrvalisSetNodeEnum"); // a camera without modes
    shell->slotOneGrab();
    shell->slotStopCamera();
    fakeorvalis::clearCalls();
    shell->slotStartCamera();
    QVERIFY(fakeorvalis::callsOf({"OrvalisSetNodeEnum"}).empty());
}

ORVALIS_QTEST_MAIN(SingleShotModeTest)
#include "SingleShotModeTest.moc"
