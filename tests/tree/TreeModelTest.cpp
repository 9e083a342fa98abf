// SPDX-License-Identifier: MIT
// The feature tree's model: reading it from the camera, also from a hostile one.
#include "tests/tree/ModelBench.h"

class TreeModelTest : public ModelBench {
    Q_OBJECT

private slots:
    void listsTheCameraInOrder();
    void readsOnlyTheseLists();
    void emptyRootListLeavesAHeaderAndNoRows();
    void failingListsCountAsEmpty();
    void emptyNamesAreSkippedAtTheTopOnly();
    void onlySubCategoriesAreExpanded_data();
    void onlySubCategoriesAreExpanded();
    void thirdLevelIsNeverExpanded();
    void atMostACapacityOfNamesIsRead_data();
    void atMostACapacityOfNamesIsRead();
    void duplicateNamesStay();
    void listNamingItsOwnParentEnds();
    void namesAreLatin1AndGoBackUnchanged();
    void longestNameIsReadCompletely();
    void hostileListsAreReadWithinBounds_data();
    void hostileListsAreReadWithinBounds();
    void nullHandleGivesAnEmptyTree();
    void passesTheModelTester();
    void passesTheModelTesterWhileChanging();
};

void TreeModelTest::listsTheCameraInOrder()
{
    const TreeModel model(oneHeader, m_handle);
    QCOMPARE(outline(model), QStringLiteral("Analog(Gain Gamma) Focus(AutoIris(Speed) Zoom)"));
}

void TreeModelTest::readsOnlyTheseLists()
{
    const TreeModel model(oneHeader, m_handle);
    const Names expected = {
        "OrvalisGetNodeList(h1, \"Root\")", "OrvalisGetNodeList(h1, \"Analog\")",
        "OrvalisGetNodeList(h1, \"Focus\")", "OrvalisGetNodeList(h1, \"AutoIris\")"};
    QCOMPARE(fakeorvalis::calls(), expected);
}

void TreeModelTest::emptyRootListLeavesAHeaderAndNoRows()
{
    setTree({{"Root", {}}});
    const TreeModel model(oneHeader, m_handle);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.headerData(0, Qt::Horizontal), QVariant("Root"));
    QCOMPARE(fakeorvalis::calls().size(), 1U);
}

void TreeModelTest::failingListsCountAsEmpty()
{
    fakeorvalis::fail("OrvalisGetNodeList");
    const TreeModel model(oneHeader, m_handle);
    QCOMPARE(outline(model), QString());
}

void TreeModelTest::emptyNamesAreSkippedAtTheTopOnly()
{
    setTree({{"Root", {"", "A", ""}}, {"A", {"", "AutoIris"}}, {"AutoIris", {"", "x"}}});
    const TreeModel model(oneHeader, m_handle);
    QCOMPARE(outline(model), QStringLiteral("A( AutoIris( x))"));
    QCOMPARE(fakeorvalis::calls().size(), 3U);
}

void TreeModelTest::onlySubCategoriesAreExpanded_data()
{
    QTest::addColumn<bool>("expanded");
    for (const char *name :
         {"LUTKneePointControls", "SnowNoiseRemoveControls", "AutoIris", "WDGControl",
          "AutoAreaControl", "AutoFocusControl", "DeviceTemperatureRange", "AlarmCommonControls",
          "TemperatureCompensations"})
        QTest::newRow(name) << true;
    for (const char *name : {"AutoIrisMode", "autoiris", "AutoIri", "Auto", "WDGControls", "Gain"})
        QTest::newRow(name) << false;
}

void TreeModelTest::onlySubCategoriesAreExpanded()
{
    const std::string name = QTest::currentDataTag();
    setTree({{"Root", {"Top"}}, {"Top", {name}}, {name, {"Below"}}});
    const TreeModel model(oneHeader, m_handle);
    const QModelIndex feature = model.index(0, 0, model.index(0, 0));
    QCOMPARE(feature.data().toString().toStdString(), name);
    QTEST(model.rowCount(feature) == 1, "expanded");
}

void TreeModelTest::thirdLevelIsNeverExpanded()
{
    setTree({{"Root", {"Top"}},
             {"Top", {"AutoIris"}},
             {"AutoIris", {"WDGControl"}},
             {"WDGControl", {"x"}}});
    const TreeModel model(oneHeader, m_handle);
    QCOMPARE(outline(model), QStringLiteral("Top(AutoIris(WDGControl))"));
}

void TreeModelTest::atMostACapacityOfNamesIsRead_data()
{
    QTest::addColumn<int>("level");
    QTest::newRow("categories") << 1;
    QTest::newRow("features") << 2;
    QTest::newRow("third level") << 3;
}

/// A shorter list precedes the long one: each list can use the whole capacity.
void TreeModelTest::atMostACapacityOfNamesIsRead()
{
    QFETCH(int, level);
    Names many;
    for (int i = 0; i < 300; ++i)
        many.push_back("N" + std::to_string(i));
    const Names path[] = {{"Top"}, {"AutoIris"}, {"Speed"}};
    const std::string parents[] = {"Root", "Top", "AutoIris"};
    std::map<std::string, Names> lists;
    QModelIndex parent;
    for (int i = 0; i < level; ++i)
        lists[parents[i]] = i + 1 < level ? path[i] : many;
    setTree(lists);
    const TreeModel model(oneHeader, m_handle);
    for (int i = 1; i < level; ++i)
        parent = model.index(0, 0, parent);
    QCOMPARE(model.rowCount(parent), 128);
    QCOMPARE(model.index(127, 0, parent).data().toString(), QString("N127"));
}

void TreeModelTest::duplicateNamesStay()
{
    setTree({{"Root", {"A", "A"}}, {"A", {"x", "x"}}});
    const TreeModel model(oneHeader, m_handle);
    QCOMPARE(outline(model), QStringLiteral("A(x x) A(x x)"));
}

void TreeModelTest::listNamingItsOwnParentEnds()
{
    setTree({{"Root", {"Root", "AutoIris"}}, {"AutoIris", {"AutoIris"}}});
    const TreeModel model(oneHeader, m_handle);
    QCOMPARE(outline(model),
             QStringLiteral("Root(Root AutoIris(AutoIris)) AutoIris(AutoIris(AutoIris))"));
}

void TreeModelTest::namesAreLatin1AndGoBackUnchanged()
{
    setTree({{"Root",
              {"Gr\xF6\xDF"
               "e"}},
             {"Gr\xF6\xDF"
              "e",
              {"x"}}});
    const TreeModel model(oneHeader, m_handle);
    QCOMPARE(model.index(0, 0).data().toString(), QStringLiteral("Größe"));
    QCOMPARE(model.rowCount(model.index(0, 0)), 1);
}

void TreeModelTest::longestNameIsReadCompletely()
{
    const std::string name(255, 'n');
    setTree({{"Root", {name}}, {name, {"x"}}});
    const TreeModel model(oneHeader, m_handle);
    QCOMPARE(model.index(0, 0).data().toString().size(), 255);
    QCOMPARE(model.rowCount(model.index(0, 0)), 1);
}

void TreeModelTest::hostileListsAreReadWithinBounds_data()
{
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= 20; ++seed)
        QTest::addRow("%u", seed) << seed;
}

void TreeModelTest::hostileListsAreReadWithinBounds()
{
    QFETCH(unsigned, seed);
    fakeorvalis::hostile(seed);
    TreeModel model(oneHeader, m_handle);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    QVERIFY(model.rowCount() <= 128);
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex category = model.index(row, 0);
        QVERIFY(model.rowCount(category) <= 128);
        QVERIFY(category.data().toString().size() <= 256);
    }
    fakeorvalis::hostile(0);
}

void TreeModelTest::nullHandleGivesAnEmptyTree()
{
    const TreeModel model(oneHeader, nullptr);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(fakeorvalis::calls(), Names{"OrvalisGetNodeList(null, \"Root\")"});
}

void TreeModelTest::passesTheModelTester()
{
    TreeModel model(oneHeader, m_handle);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    QCOMPARE(model.rowCount(), 2);
}

void TreeModelTest::passesTheModelTesterWhileChanging()
{
    TreeModel model(oneHeader, m_handle);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    QVERIFY(model.insertRows(0, 2));
    QVERIFY(model.insertRows(1, 3, model.index(3, 0)));
    QVERIFY(model.setData(model.index(2, 0, model.index(3, 0)), "x"));
    QVERIFY(model.removeRows(0, 1, model.index(2, 0)));
    QVERIFY(model.setHeaderData(0, Qt::Horizontal, "c"));
    QVERIFY(model.removeColumns(0, 1));
    QCOMPARE(model.rowCount(), 0);
}

ORVALIS_QTEST_MAIN(TreeModelTest)
#include "TreeModelTest.moc"
