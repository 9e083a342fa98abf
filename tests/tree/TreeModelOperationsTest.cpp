// SPDX-License-Identifier: MIT
// The feature tree's model: every model operation.
#include "tests/tree/ModelBench.h"

class TreeModelOperationsTest : public ModelBench {
    Q_OBJECT

private slots:
    void headersBecomeColumns();
    void headerDataIsHorizontalDisplayOnly();
    void dataHasTwoRoles();
    void onlyColumnZeroHasChildren();
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
};

void TreeModelOperationsTest::headersBecomeColumns()
{
    const TreeModel model({"a", "b", "c"}, m_handle);
    QCOMPARE(model.columnCount(), 3);
    QCOMPARE(model.columnCount(model.index(0, 0)), 3);
    QCOMPARE(model.headerData(2, Qt::Horizontal), QVariant("c"));
    QCOMPARE(model.getItem(model.index(0, 0))->columnCount(), 3);
    QCOMPARE(model.index(0, 0).data(), QVariant("Analog"));
    QVERIFY(!model.index(0, 1).data().isValid());
}

void TreeModelOperationsTest::headerDataIsHorizontalDisplayOnly()
{
    const TreeModel model(oneHeader, m_handle);
    QCOMPARE(model.headerData(0, Qt::Horizontal, Qt::DisplayRole), QVariant("Root"));
    QVERIFY(!model.headerData(0, Qt::Vertical, Qt::DisplayRole).isValid());
    QVERIFY(!model.headerData(0, Qt::Horizontal, Qt::EditRole).isValid());
    QVERIFY(!model.headerData(1, Qt::Horizontal, Qt::DisplayRole).isValid());
    QVERIFY(!model.headerData(-1, Qt::Horizontal, Qt::DisplayRole).isValid());
}

void TreeModelOperationsTest::dataHasTwoRoles()
{
    const TreeModel model(oneHeader, m_handle);
    const QModelIndex index = model.index(0, 0);
    for (int role = 0; role < 40; ++role) {
        const bool has = role == Qt::DisplayRole || role == Qt::EditRole;
        QCOMPARE(model.data(index, role), has ? QVariant("Analog") : QVariant());
    }
    QVERIFY(!model.data(QModelIndex(), Qt::DisplayRole).isValid());
}

void TreeModelOperationsTest::onlyColumnZeroHasChildren()
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

void TreeModelOperationsTest::indexOutsideIsInvalid()
{
    const TreeModel model(oneHeader, m_handle);
    QVERIFY(model.index(1, 0).isValid());
    QVERIFY(!model.index(2, 0).isValid());
    QVERIFY(!model.index(-1, 0).isValid());
    QVERIFY(!model.index(0, 0, model.index(0, 0, model.index(0, 0))).isValid());
}

void TreeModelOperationsTest::parentOfATopItemIsInvalid()
{
    const TreeModel model(oneHeader, m_handle);
    const QModelIndex top = model.index(1, 0);
    const QModelIndex iris = model.index(0, 0, top);
    QVERIFY(!model.parent(QModelIndex()).isValid());
    QVERIFY(!model.parent(top).isValid());
    QCOMPARE(model.parent(iris), top);
    QCOMPARE(model.parent(model.index(0, 0, iris)), iris);
}

void TreeModelOperationsTest::nothingIsEditable()
{
    const TreeModel model(oneHeader, m_handle);
    const QModelIndex top = model.index(1, 0);
    QCOMPARE(model.flags(QModelIndex()), Qt::ItemFlags());
    QCOMPARE(model.flags(top), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    QCOMPARE(model.flags(model.index(0, 0, top)), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
}

void TreeModelOperationsTest::setDataNeedsTheEditRole()
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

void TreeModelOperationsTest::setHeaderDataNeedsEditRoleAndHorizontal()
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

using Change = bool (TreeModel::*)(int, int, const QModelIndex &);

/// Applies the row's `change` below `parent`. Compares its result with the row's, and checks that
/// `begin` and `end` are emitted as often as the row states, with the changed range.
template <class Begin, class End>
void checkChange(TreeModel &model, Change change, Begin begin, End end, const QModelIndex &parent)
{
    QFETCH(int, position);
    QFETCH(int, count);
    QFETCH(int, announced);
    QSignalSpy before(&model, begin);
    QSignalSpy after(&model, end);
    QTEST((model.*change)(position, count, parent), "result");
    QCOMPARE(before.count(), announced);
    QCOMPARE(after.count(), announced);
    if (announced == 0)
        return;
    QCOMPARE(before[0][1].toInt(), position);
    QCOMPARE(before[0][2].toInt(), position + count - 1);
}

/// Number of entries after `count` were added to two, or removed if negative.
int twoAnd(int count)
{
    QFETCH(int, announced);
    return 2 + announced * count;
}

} // namespace

void TreeModelOperationsTest::insertRowsKeepsTheContract_data() { addInsertRows(); }

void TreeModelOperationsTest::insertRowsKeepsTheContract()
{
    QFETCH(int, count);
    TreeModel model(oneHeader, m_handle);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QModelIndex parent = model.index(0, 0);
    checkChange(model, &TreeModel::insertRows, &TreeModel::rowsAboutToBeInserted,
                &TreeModel::rowsInserted, parent);
    QCOMPARE(model.rowCount(parent), twoAnd(count));
}

void TreeModelOperationsTest::removeRowsKeepsTheContract_data() { addRemoveRows(); }

void TreeModelOperationsTest::removeRowsKeepsTheContract()
{
    QFETCH(int, count);
    TreeModel model(oneHeader, m_handle);
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QModelIndex parent = model.index(0, 0);
    checkChange(model, &TreeModel::removeRows, &TreeModel::rowsAboutToBeRemoved,
                &TreeModel::rowsRemoved, parent);
    QCOMPARE(model.rowCount(parent), twoAnd(-count));
}

void TreeModelOperationsTest::insertColumnsKeepsTheContract_data() { addInsertRows(); }

void TreeModelOperationsTest::insertColumnsKeepsTheContract()
{
    QFETCH(int, count);
    TreeModel model({"a", "b"}, m_handle);
    checkChange(model, &TreeModel::insertColumns, &TreeModel::columnsAboutToBeInserted,
                &TreeModel::columnsInserted, {});
    QCOMPARE(model.columnCount(), twoAnd(count));
    QCOMPARE(model.getItem(model.index(0, 0, model.index(0, 0)))->columnCount(),
             model.columnCount());
}

void TreeModelOperationsTest::removeColumnsKeepsTheContract_data() { addRemoveRows(); }

void TreeModelOperationsTest::removeColumnsKeepsTheContract()
{
    QFETCH(int, count);
    TreeModel model({"a", "b"}, m_handle);
    checkChange(model, &TreeModel::removeColumns, &TreeModel::columnsAboutToBeRemoved,
                &TreeModel::columnsRemoved, {});
    QCOMPARE(model.columnCount(), twoAnd(-count));
}

void TreeModelOperationsTest::removingTheOnlyColumnRemovesEveryRow()
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

ORVALIS_QTEST_MAIN(TreeModelOperationsTest)
#include "TreeModelOperationsTest.moc"
