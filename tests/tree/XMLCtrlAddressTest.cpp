// SPDX-License-Identifier: MIT
// Addresses in the feature dock: dotted text and unsigned numbers are written as the address's
// value.
#include "tests/tree/DockBench.h"

class XMLCtrlAddressTest : public QObject {
    Q_OBJECT

private slots:
    void init() { fakeorvalis::reset(); }
    void cleanup() { QCOMPARE(viewertest::takeWarnings(), QStringList()); }

    void addressNodesAreReadBackInDecimal();
    void addressesAreTyped_data();
    void addressesAreTyped();
    void onlyAddressNodesTakeAddresses_data();
    void onlyAddressNodesTakeAddresses();
    void addressesAreClampedToo();
};

void XMLCtrlAddressTest::addressNodesAreReadBackInDecimal()
{
    setOnlyNode("GevSCDA", integerNode(static_cast<int>(3232235777U), INT32_MIN, INT32_MAX));
    DockBench bench;
    bench.click("GevSCDA");
    QCOMPARE(bench.edit()->text(), QString("192.168.1.1"));
    bench.type("-1062731518");
    QCOMPARE(bench.edit()->text(), QString("-1062731518"));
    bench.click("GevSCDA");
    QCOMPARE(bench.edit()->text(), QString("192.168.1.2"));
}

void XMLCtrlAddressTest::addressesAreTyped_data()
{
    QTest::addColumn<int>("written");
    const auto row = [](const char *typed, unsigned written) {
        QTest::newRow(typed) << static_cast<int>(written);
    };
    row("192.168.1.1", 0xC0A80101);
    row(" 10.0.0.255\t", 0x0A0000FF);
    row("255.255.255.0", 0xFFFFFF00);
    row("0.0.0.0", 0);
    row("192.168.001.010", 0xC0A8010A); // decimal, leading zeros or not
    row("3232235777", 0xC0A80101);
    row("4294967295", 0xFFFFFFFF);
    row("2147483648", 0x80000000);
    row("17", 17);
    row("-1062731519", 0xC0A80101);
    row("-2147483648", 0x80000000);
    // No address, and no number:
    for (const char *typed :
         {"4294967296", "-2147483649", "192.168.1", "192.168.1.256", "192.168.1.1.1", "192.168..1",
          "1.2.3.-4", "1.2.3.+4", "1.2.3. 4", "1.2.3.0004", "0x0A000001", "a.b.c.d", "1.2.3.4x",
          "abc", "", "...", "\331\241.2.3.4"})
        row(typed, 0);
}

void XMLCtrlAddressTest::addressesAreTyped()
{
    QFETCH(int, written);
    for (const char *name : {"GevSCDA", "GevPersistentIPAddress", "XPersistent"}) {
        setOnlyNode(name, integerNode(5, INT32_MIN, INT32_MAX));
        DockBench bench;
        bench.click(name);
        bench.type(QTest::currentDataTag());
        QCOMPARE(fakeorvalis::callsOf({"OrvalisSetNodeInt"}),
                 Calls{std::string("OrvalisSetNodeInt(h1, \"") + name + "\", " +
                       std::to_string(written) + ")"});
        QCOMPARE(bench.edit()->text(), QString::number(written));
        fakeorvalis::reset();
    }
}

void XMLCtrlAddressTest::onlyAddressNodesTakeAddresses_data()
{
    QTest::addColumn<int>("written");
    QTest::newRow("192.168.1.1") << 0;
    QTest::newRow("3232235777") << 0;
    QTest::newRow("4294967295") << 0;
    QTest::newRow("-3") << -3;
}

void XMLCtrlAddressTest::onlyAddressNodesTakeAddresses()
{
    QFETCH(int, written);
    for (const char *name : {"GevSCDAx", "xGevSCDA", "GevCurrentIPAddress", "persistent"}) {
        setOnlyNode(name, integerNode(5, INT32_MIN, INT32_MAX));
        DockBench bench;
        bench.click(name);
        bench.type(QTest::currentDataTag());
        QCOMPARE(bench.edit()->text(), QString::number(written));
        fakeorvalis::reset();
    }
}

void XMLCtrlAddressTest::addressesAreClampedToo()
{
    setOnlyNode("GevSCDA", integerNode(5, 0, 9));
    DockBench bench;
    bench.click("GevSCDA");
    bench.type("0.0.1.0");
    QCOMPARE(bench.edit()->text(), QString("9"));
    bench.type("192.168.1.1");
    QCOMPARE(bench.edit()->text(), QString("0"));
}

ORVALIS_QTEST_MAIN(XMLCtrlAddressTest)
#include "XMLCtrlAddressTest.moc"
