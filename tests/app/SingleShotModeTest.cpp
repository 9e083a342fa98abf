// SPDX-License-Identifier: MIT
// The acquisition mode that a single shot sets, and when it is reset.
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
    QTest::addColumn<int>("next"); // the camera opened afterwards
    QTest::addColumn<bool>("repaired");
    QTest::newRow("the same camera") << 0 << true;
    QTest::newRow("another camera") << 1 << false;
}

// A lost camera cannot be written to, and keeps its mode if it keeps its power.
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
    shell->slotStartCamera(); // resets the mode only once
    QVERIFY(!shell::calls().contains(mode));
}

void SingleShotModeTest::playKeepsAModeThatNoShotSet()
{
    const Shell shell;
    shell.open();
    fakeorvalis::fail("OrvalisSetNodeEnum"); // a camera without acquisition modes
    shell->slotOneGrab();
    shell->slotStopCamera();
    fakeorvalis::clearCalls();
    shell->slotStartCamera();
    QVERIFY(fakeorvalis::callsOf({"OrvalisSetNodeEnum"}).empty());
}

ORVALIS_QTEST_MAIN(SingleShotModeTest)
#include "SingleShotModeTest.moc"
