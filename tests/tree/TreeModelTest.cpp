// SPDX-License-Identifier: MIT
// The feature tree's model: how it is read from the camera, and every model operation.
#include "tree/TreeModel.h"
#include "tests/fakelibrary/FakeOrvalis.h"
#include "tests/support/QtTestMain.h"
#include "tree/TreeItem.h"

#include <QAbstractItemModelTester>

#include <cstring>
#include <limits>

namespace {

using Names = std::vector<std::string>;

const QStringList oneHeader{QStringLiteral("Root")};

/// The tree in one line: "A(B C(D))".
QString outline(const TreeModel &model, const QModelIndex &parent = {})
{
    QStringList all;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        const QString below = outline(model, index);
        all += index.data().toString() + (below.isEmpty() ? below : "(" + below + ")");
    }
    return all.join(' ');
}

void setTree(const std::map<std::string, Names> &lists)
{
    fakeorvalis::withState([&lists](fakeorvalis::State &state) {
        state.nodes.clear();
        for (const auto &[name, children] : lists) {
            state.nodes[name].type = ORVALIS_NODE_CATEGORY;
            state.nodes[name].children = children;
        }
    });
}

const std::map<std::string, Names> smallTree = {
    {"Root", {"Analog", "Focus"}}, {"Analog", {"Gain", "Gamma"}}, {"Focus", {"AutoIris", "Zoom"}},
    {"AutoIris", {"Speed"}},       {"Zoom", {"Never"}},
};

} // namespace

class TreeModelTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void listsTheCameraInOrder();
    void asksTheLibraryForTheseListsOnly();
    void emptyRootListLeavesAHeaderAndNoRows();
    void failingListsCountAsEmpty();
    void emptyNamesAreSkippedAtTheTopOnly();
    void onlySubCategoriesAreExpanded_data();
    void onlySubCategoriesAreExpanded();
    void thirdLevelIsNeverExpanded();
    void atMostACapacityOfNamesIsRead();
    void duplicateNamesStay();
    void listNamingItsOwnParentEnds();
    void namesAreLatin1AndGoBackUnchanged();
    void longestNameIsReadWhole();
    void hostileListsAreReadWithinBounds_data();
    void hostileListsAreReadWithinBounds();
    void nullHandleGivesAnEmptyTree();
    void passesTheModelTester();
    void passesTheModelTesterWhileChanging();
    void headersBecomeColumns();
    void headerDataIsHorizontalDisplayOnly();
    void dataHasTwoRoles();
    void childrenHangOnColumnZeroOnly();
    void indexOutsideIsInvalid();
    void parentOfATopItemIsInvalid();
    void nothingIsEditable();
    void setDataNeedsTheEditRole();
    void setHeaderDataNeedsEditRoleAndHorizontal();
    void insertRowsKeepsTheContract_data();
    void insertRowsKeepsTheContract();
    void removeRowsKeepsTheContract_data();
    void removeRowsKeepsTheContract();
    void insertColumnsKeepsTheContract_data();
    void insertColumnsKeepsTheContract();
    void removeColumnsKeepsTheContract_data();
    void removeColumnsKeepsTheContract();
    void removingTheOnlyColumnRemovesEveryRow();

private:
    OCameraHandle m_handle = nullptr;
};

void TreeModelTest::init()
{
    fakeorvalis::reset();
    OrvalisInit();
    QCOMPARE(OrvalisOpenCamera("CAM-A", &m_handle), 0);
    setTree(smallTree);
    fakeorvalis::clearCalls();
}

void TreeModelTest::cleanup()
{
    OrvalisCloseCamera(m_handle);
    OrvalisUninit();
    QCOMPARE(viewertest::takeWarnings(), QStringList());
}

void TreeModelTest::listsTheCameraInOrder()
{
    const TreeModel model(oneHeader, m_handle);
    QCOMPARE(outline(model), QStringLiteral("Analog(Gain Gamma) Focus(AutoIris(Speed) Zoom)"));
}

void TreeModelTest::asksTheLibraryForTheseListsOnly()
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

void TreeModelTest::atMostACapacityOfNamesIsRead()
{
    Names many;
    for (int i = 0; i < 300; ++i)
        many.push_back("N" + std::to_string(i));
    setTree({{"Root", {"Top"}}, {"Top", many}});
    const TreeModel model(oneHeader, m_handle);
    QCOMPARE(model.rowCount(model.index(0, 0)), 128);
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

void TreeModelTest::longestNameIsReadWhole()
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

void TreeModelTest::headersBecomeColumns()
{
    const TreeModel model({"a", "b", "c"}, m_handle);
    QCOMPARE(model.columnCount(), 3);
    QCOMPARE(model.columnCount(model.index(0, 0)), 3);
    QCOMPARE(model.headerData(2, Qt::Horizontal), QVariant("c"));
    QCOMPARE(model.getItem(model.index(0, 0))->columnCount(), 3);
    QCOMPARE(model.index(0, 0).data(), QVariant("Analog"));
    QVERIFY(!model.index(0, 1).data().isValid());
}

void TreeModelTest::headerDataIsHorizontalDisplayOnly()
{
    const TreeModel model(oneHeader, m_handle);
    QCOMPARE(model.headerData(0, Qt::Horizontal, Qt::DisplayRole), QVariant("Root"));
    QVERIFY(!model.headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
    QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::EditRole).isValid());
    QVERIFY(!model.headerData(1, Qt::Horizontal, Qt::DisplayRole).isValid());
    QVERIFY(!model.headerData(-1, Qt::Horizontal, Qt::DisplayRole).isValid());
}

void TreeModelTest::dataHasTwoRoles()
{
    const TreeModel model(oneHeader, m_handle);
    const QModelIndex index = model.index(0, 0);
    for (int role = 0; role < 40; ++role) {
        const bool has = role == Qt::DisplayRole || role == Qt::EditRole;
        QCOMPARE(model.data(index, role), has ? QVariant("Analog") : QVariant());
    }
    QVERIFY(!model.data(QModelIndex(), Qt::DisplayRole).isValid());
}

void TreeModelTest::childrenHangOnColumnZeroOnly()
{
    const TreeModel model({"a", "b"}, m_handle);
    const QModelIndex parentOfColumn1 = model.index(0, 1);
    QVERIFY(parentOfColumn1.isValid());
    QVERIFY(!model.index(0, 1, parentOfColumn1).isValid());
    QVERIFY(!model.index(0, 0, parentOfColumn1).isValid());
    QVERIFY(model.index(0, 1, model.index(0, 0)).isValid());
    QVERIFY(model.hasChildren(model.index(0, 0)));
    QVERIFY(!model.hasChildren(parentOfColumn1));
}

void TreeModelTest::indexOutsideIsInvalid()
{
    const TreeModel model(oneHeader, m_handle);
    QVERIFY(model.index(1, 0).isValid());
    QVERIFY(!model.index(2, 0).isValid());
    QVERIFY(!model.index(-1, 0).isValid());
    QVERIFY(!model.index(0, 0, model.index(0, 0, model.index(0, 0))).isValid());
}

void TreeModelTest::parentOfATopItemIsInvalid()
{
    const TreeModel model(oneHeader, m_handle);
    const QModelIndex top = model.index(1, 0);
    const QModelIndex iris = model.index(0, 0, top);
    QVERIFY(!model.parent(QModelIndex()).isValid());
    QVERIFY(!model.parent(top).isValid());
    QCOMPARE(model.parent(iris), top);
    QCOMPARE(model.parent(model.index(0, 0, iris)), iris);
}

void TreeModelTest::nothingIsEditable()
{
    const TreeModel model(oneHeader, m_handle);
    const QModelIndex top = model.index(1, 0);
    QCOMPARE(model.flags(QModelIndex()), Qt::ItemFlags());
    QCOMPARE(model.flags(top), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    QCOMPARE(model.flags(model.index(0, 0, top)), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
}

void TreeModelTest::setDataNeedsTheEditRole()
{
    TreeModel model(oneHeader, m_handle);
    QSignalSpy changed(&model, &TreeModel::dataChanged);
    const QModelIndex top = model.index(0, 0);
    QVERIFY(!model.setData(top, "x", Qt::DisplayRole));
    QCOMPARE(top.data(), QVariant("Analog"));
    QVERIFY(!model.setData(QModelIndex(), "x", Qt::EditRole)); // column -1
    QCOMPARE(changed.count(), 0);
    QVERIFY(model.setData(top, "x", Qt::EditRole));
    QCOMPARE(top.data(), QVariant("x"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed[0][0].toModelIndex(), top);
    QCOMPARE(changed[0][1].toModelIndex(), top);
    QCOMPARE(changed[0][2].value<QVector<int>>(), QVector<int>());
}

void TreeModelTest::setHeaderDataNeedsEditRoleAndHorizontal()
{
    TreeModel model(oneHeader, m_handle);
    QStringList changed;
    connect(&model, &TreeModel::headerDataChanged, this,
            [&changed](Qt::Orientation orientation, int first, int last) {
                changed.append(QString("%1 %2 %3").arg(int(orientation)).arg(first).arg(last));
            });
    QVERIFY(!model.setHeaderData(0, Qt::Horizontal, "x", Qt::DisplayRole));
    QVERIFY(!model.setHeaderData(0, Qt::Vertical, "x", Qt::EditRole));
    QVERIFY(!model.setHeaderData(1, Qt::Horizontal, "x", Qt::EditRole));
    QCOMPARE(changed, QStringList());
    QVERIFY(model.setHeaderData(0, Qt::Horizontal, "x", Qt::EditRole));
    QCOMPARE(model.headerData(0, Qt::Horizontal), QVariant("x"));
    QCOMPARE(changed, QStringList{"1 0 0"});
}

namespace {

/// Rows of "position, count, result, announced" for a list of two entries.
void addRangeColumns()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("result");
    QTest::addColumn<int>("announced");
}

void addInsertRows()
{
    addRangeColumns();
    QTest::newRow("front") << 0 << 1 << true << 1;
    QTest::newRow("end") << 2 << 3 << true << 1;
    QTest::newRow("beyond") << 3 << 1 << false << 0;
    QTest::newRow("negative") << -1 << 1 << false << 0;
    QTest::newRow("none") << 1 << 0 << true << 0;
    QTest::newRow("negative count") << 1 << -3 << true << 0;
    QTest::newRow("beyond, none") << 3 << 0 << false << 0;
}

void addRemoveRows()
{
    addRangeColumns();
    QTest::newRow("first") << 0 << 1 << true << 1;
    QTest::newRow("all") << 0 << 2 << true << 1;
    QTest::newRow("too many") << 1 << 2 << false << 0;
    QTest::newRow("beyond") << 3 << 1 << false << 0;
    QTest::newRow("negative") << -1 << 1 << false << 0;
    QTest::newRow("none") << 1 << 0 << true << 0;
    QTest::newRow("negative count") << 1 << -1 << true << 0;
    QTest::newRow("sum beyond an int") << 1 << std::numeric_limits<int>::max() << false << 0;
}

/// Begin and end came equally often, and named `position` to `position + count - 1`.
void checkAnnounced(const QSignalSpy &begin, const QSignalSpy &end, int times, int position,
                    int count)
{
    QCOMPARE(begin.count(), times);
    QCOMPARE(end.count(), times);
    if (times == 0)
        return;
    QCOMPARE(begin[0][1].toInt(), position);
    QCOMPARE(begin[0][2].toInt(), position + count - 1);
}

} // namespace

void TreeModelTest::insertRowsKeepsTheContract_data() { addInsertRows(); }

void TreeModelTest::insertRowsKeepsTheContract()
{
    QFETCH(int, position);
    QFETCH(int, count);
    QFETCH(int, announced);
    TreeModel model(oneHeader, m_handle);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    QSignalSpy begin(&model, &TreeModel::rowsAboutToBeInserted);
    QSignalSpy end(&model, &TreeModel::rowsInserted);
    const QModelIndex parent = model.index(0, 0);
    QTEST(model.insertRows(position, count, parent), "result");
    checkAnnounced(begin, end, announced, position, count);
    QCOMPARE(model.rowCount(parent), 2 + announced * count);
}

void TreeModelTest::removeRowsKeepsTheContract_data() { addRemoveRows(); }

void TreeModelTest::removeRowsKeepsTheContract()
{
    QFETCH(int, position);
    QFETCH(int, count);
    QFETCH(int, announced);
    TreeModel model(oneHeader, m_handle);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    QSignalSpy begin(&model, &TreeModel::rowsAboutToBeRemoved);
    QSignalSpy end(&model, &TreeModel::rowsRemoved);
    const QModelIndex parent = model.index(0, 0);
    QTEST(model.removeRows(position, count, parent), "result");
    checkAnnounced(begin, end, announced, position, count);
    QCOMPARE(model.rowCount(parent), announced ? 2 - count : 2);
}

void TreeModelTest::insertColumnsKeepsTheContract_data() { addInsertRows(); }

void TreeModelTest::insertColumnsKeepsTheContract()
{
    QFETCH(int, position);
    QFETCH(int, count);
    QFETCH(int, announced);
    TreeModel model({"a", "b"}, m_handle);
    QSignalSpy begin(&model, &TreeModel::columnsAboutToBeInserted);
    QSignalSpy end(&model, &TreeModel::columnsInserted);
    QTEST(model.insertColumns(position, count), "result");
    checkAnnounced(begin, end, announced, position, count);
    QCOMPARE(model.columnCount(), 2 + announced * count);
    QCOMPARE(model.getItem(model.index(0, 0, model.index(0, 0)))->columnCount(),
             model.columnCount());
}

void TreeModelTest::removeColumnsKeepsTheContract_data() { addRemoveRows(); }

void TreeModelTest::removeColumnsKeepsTheContract()
{
    QFETCH(int, position);
    QFETCH(int, count);
    QFETCH(int, announced);
    TreeModel model({"a", "b"}, m_handle);
    QSignalSpy begin(&model, &TreeModel::columnsAboutToBeRemoved);
    QSignalSpy end(&model, &TreeModel::columnsRemoved);
    QTEST(model.removeColumns(position, count), "result");
    checkAnnounced(begin, end, announced, position, count);
    QCOMPARE(model.columnCount(), announced ? 2 - count : 2);
}

void TreeModelTest::removingTheOnlyColumnRemovesEveryRow()
{
    TreeModel model(oneHeader, m_handle);
    QSignalSpy rows(&model, &TreeModel::rowsRemoved);
    QVERIFY(model.removeColumns(0, 1));
    QCOMPARE(model.columnCount(), 0);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(rows.count(), 1);
    QCOMPARE(rows[0][2].toInt(), 1);
    QVERIFY(model.insertRows(0, 1)); // an item without columns
    QVERIFY(!model.setData(model.index(0, 0), "x"));
}

ORVALIS_QTEST_MAIN(TreeModelTest)
#include "TreeModelTest.moc"
