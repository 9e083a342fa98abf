// SPDX-License-Identifier: MIT
// Random clicks, keys and values on the feature dock while the library answers with hostile data.
#include "tests/tree/DockBench.h"

#include <random>

class XMLCtrlFuzzTest : public QObject {
    Q_OBJECT

private slots:
    void init() { fakeorvalis::reset(); }
    void cleanup() { fakeorvalis::hostile(0); }
    void survivesHostileAnswers_data();
    void survivesHostileAnswers();

private:
    int pick(int count) { return static_cast<int>(m_random() % static_cast<unsigned>(count)); }
    void step(DockBench &bench);
    void clickSomewhere(DockBench &bench);
    void pressSomething(DockBench &bench);
    void chooseSomething(DockBench &bench);

    std::mt19937 m_random;
};

void XMLCtrlFuzzTest::survivesHostileAnswers_data()
{
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 4; ++seed)
        QTest::addRow("%u", seed) << seed;
}

void XMLCtrlFuzzTest::survivesHostileAnswers()
{
    QFETCH(unsigned, seed);
    m_random.seed(seed);
    DockBench bench;
    fakeorvalis::hostile(seed);
    bench.dock->CreateXMLTree(bench.handle);
    for (int i = 0; i < 150; ++i) {
        step(bench);
        QVERIFY(bench.combo()->count() <= 64 + 150);
        QCOMPARE(bench.dock->width(), 300);
    }
    fakeorvalis::hostile(0);
}

void XMLCtrlFuzzTest::step(DockBench &bench)
{
    switch (pick(20)) {
    case 0: // hostile trees are large
        return pick(4) ? bench.dock->UpdateAcqState(true) : bench.dock->CreateXMLTree(bench.handle);
    case 1:
        return pick(8) ? bench.dock->UpdateAcqState(false) : bench.dock->DeleteXMLTree();
    case 2:
        return bench.dock->UpdateAcqState(pick(2));
    case 3:
        bench.window.streaming = pick(2);
        return bench.dock->on_btnXMLExcute_clicked();
    case 4:
    case 5:
    case 6:
        return chooseSomething(bench);
    case 7:
    case 8:
    case 9:
        return pressSomething(bench);
    default:
        return clickSomewhere(bench);
    }
}

/// Calls the slot for a random node of a random level: hostile trees are too large to scroll in.
void XMLCtrlFuzzTest::clickSomewhere(DockBench &bench)
{
    const QAbstractItemModel *model = bench.tree()->model();
    if (!model)
        return;
    QModelIndex index;
    for (int level = pick(3); level >= 0; --level) {
        if (const int rows = model->rowCount(index); rows > 0)
            index = model->index(pick(rows), 0, index);
    }
    bench.dock->on_treeXML_clicked(index);
}

void XMLCtrlFuzzTest::pressSomething(DockBench &bench)
{
    static const QStringList values{"",      "0",   "1",    "-1",     "2147483648", "nan",
                                    "1e999", "abc", "\xFF", "-1e308", "0x10",       "💥"};
    bench.dock->HideShowXMLCtrl(1, true);
    bench.type(values[pick(values.size())], pick(5) ? Qt::Key_Enter : Qt::Key_Return);
}

void XMLCtrlFuzzTest::chooseSomething(DockBench &bench)
{
    bench.dock->HideShowXMLCtrl(2, true);
    if (bench.combo()->isEditable() && pick(2))
        QTest::keyClick(bench.combo(), Qt::Key_Enter, Qt::KeypadModifier);
    else
        QTest::keyClick(bench.combo(), pick(2) ? Qt::Key_Down : Qt::Key_Up);
}

ORVALIS_QTEST_MAIN(XMLCtrlFuzzTest)
#include "XMLCtrlFuzzTest.moc"
