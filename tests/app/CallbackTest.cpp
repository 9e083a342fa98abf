// SPDX-License-Identifier: MIT
// What the frame callback may cost the camera library's thread.
#include "tests/app/Shell.h"
#include "tests/support/CountedAllocations.h"

#include <thread>

using shell::Frame;
using shell::Shell;

class CallbackTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void theCallbackAllocatesNothing();
};

// 100 frames are more than three full windows of the rates.
void CallbackTest::theCallbackAllocatesNothing()
{
    const Shell shell;
    shell.play();
    Frame frame(64, 48, 9);
    const OFrameCallback callback = fakeorvalis::callback();
    int allocations = -1;
    std::thread([&] {
        callback(&frame.record); // the first call on a thread may allocate
        const CountedAllocations counted;
        for (int i = 0; i < 100; ++i)
            callback(&frame.record);
        allocations = counted.count();
    }).join();
    QCOMPARE(allocations, 0);
    QTRY_COMPARE(shell.recv(), QString("101"));
}

ORVALIS_QTEST_MAIN(CallbackTest)
#include "CallbackTest.moc"
