// SPDX-License-Identifier: MIT
// The feature tree's node: bounds of every operation, ownership and recursion.
#include "tree/TreeItem.h"
#include "tests/support/QtTestMain.h"

#include <limits>

namespace {

const QVector<QVariant> twoColumns{QStringLiteral("a"), QStringLiteral("b")};
constexpr int intMax = std::numeric_limits<int>::max();
constexpr int intMin = std::numeric_limits<int>::min();

/// A root of two columns with three children named "0", "1", "2" in column 0.
void fill(TreeItem &root)
{
    root.insertChildren(0, 3, 2);
    for (int i = 0; i < 3; ++i)
        root.child(i)->setData(0, QString::number(i));
}

QString names(TreeItem &root)
{
    QString all;
    for (int i = 0; i < root.childCount(); ++i)
        all += root.child(i)->data(0).isValid() ? root.child(i)->data(0).toString() : "-";
    return all;
}

} // namespace

class TreeItemTest : public QObject {
    Q_OBJECT

private slots:
    void storesDataAndParent();
    void childOutsideTheListIsNull_data();
    void childOutsideTheListIsNull();
    void childNumberIsThePlaceInTheParent();
    void childNumberIsMinusOneIfTheParentDoesNotListIt();
    void dataOutsideTheColumnsIsInvalid();
    void insertChildrenChecksItsPosition_data();
    void insertChildrenChecksItsPosition();
    void insertedChildrenHaveInvalidValuesAndThisParent();
    void removeChildrenChecksItsRange_data();
    void removeChildrenChecksItsRange();
    void insertColumnsChecksItsPosition_data();
    void insertColumnsChecksItsPosition();
    void removeColumnsChecksItsRange_data();
    void removeColumnsChecksItsRange();
    void columnsChangeInAllDescendants();
    void setDataRefusesMissingColumns_data();
    void setDataRefusesMissingColumns();
};

void TreeItemTest::storesDataAndParent()
{
    TreeItem root(twoColumns);
    TreeItem item({QStringLiteral("x")}, &root);
    QCOMPARE(root.parent(), nullptr);
    QCOMPARE(item.parent(), &root);
    QCOMPARE(root.columnCount(), 2);
    QCOMPARE(root.data(1), QVariant(QStringLiteral("b")));
    QCOMPARE(root.childCount(), 0); // a parent given to the constructor does not list the item
}

void TreeItemTest::childOutsideTheListIsNull_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<bool>("exists");
    QTest::newRow("first") << 0 << true;
    QTest::newRow("last") << 2 << true;
    QTest::newRow("one past the end") << 3 << false;
    QTest::newRow("negative") << -1 << false;
    QTest::newRow("huge") << intMax << false;
}

void TreeItemTest::childOutsideTheListIsNull()
{
    QFETCH(int, number);
    TreeItem root(twoColumns);
    fill(root);
    QTEST(root.child(number) != nullptr, "exists");
}

void TreeItemTest::childNumberIsThePlaceInTheParent()
{
    TreeItem root(twoColumns);
    fill(root);
    QCOMPARE(root.childNumber(), 0);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(root.child(i)->childNumber(), i);
}

void TreeItemTest::childNumberIsMinusOneIfTheParentDoesNotListIt()
{
    TreeItem root(twoColumns);
    const TreeItem stranger(twoColumns, &root);
    QCOMPARE(stranger.childNumber(), -1);
}

void TreeItemTest::dataOutsideTheColumnsIsInvalid()
{
    const TreeItem root(twoColumns);
    QVERIFY(!root.data(-1).isValid());
    QVERIFY(!root.data(2).isValid());
    QVERIFY(!root.data(intMax).isValid());
}

void TreeItemTest::insertChildrenChecksItsPosition_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("left");
    QTest::newRow("front") << 0 << 2 << true << "--012";
    QTest::newRow("middle") << 1 << 1 << true << "0-12";
    QTest::newRow("end") << 3 << 1 << true << "012-";
    QTest::newRow("beyond the end") << 4 << 1 << false << "012";
    QTest::newRow("negative") << -1 << 1 << false << "012";
    QTest::newRow("none") << 1 << 0 << true << "012";
    QTest::newRow("negative count") << 1 << -5 << true << "012";
    QTest::newRow("bad position, no count") << 4 << 0 << false << "012";
}

void TreeItemTest::insertChildrenChecksItsPosition()
{
    QFETCH(int, position);
    QFETCH(int, count);
    TreeItem root(twoColumns);
    fill(root);
    QTEST(root.insertChildren(position, count, 2), "result");
    QTEST(names(root), "left");
}

void TreeItemTest::insertedChildrenHaveInvalidValuesAndThisParent()
{
    TreeItem root(twoColumns);
    QVERIFY(root.insertChildren(0, 1, 3));
    QCOMPARE(root.child(0)->columnCount(), 3);
    QCOMPARE(root.child(0)->parent(), &root);
    for (int column = 0; column < 3; ++column)
        QVERIFY(!root.child(0)->data(column).isValid());
}

void TreeItemTest::removeChildrenChecksItsRange_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("left");
    QTest::newRow("all") << 0 << 3 << true << "";
    QTest::newRow("middle") << 1 << 1 << true << "02";
    QTest::newRow("last two") << 1 << 2 << true << "0";
    QTest::newRow("too many") << 1 << 3 << false << "012";
    QTest::newRow("negative position") << -1 << 1 << false << "012";
    QTest::newRow("none") << 3 << 0 << true << "012";
    QTest::newRow("negative count") << 0 << -1 << true << "012";
    QTest::newRow("sum beyond an int") << 2 << intMax << false << "012";
}

void TreeItemTest::removeChildrenChecksItsRange()
{
    QFETCH(int, position);
    QFETCH(int, count);
    TreeItem root(twoColumns);
    fill(root);
    QTEST(root.removeChildren(position, count), "result");
    QTEST(names(root), "left");
}

void TreeItemTest::insertColumnsChecksItsPosition_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("columns");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QVariantList>("left");
    const QVariant a("a"), b("b"), none;
    QTest::newRow("front") << 0 << 1 << true << QVariantList{none, a, b};
    QTest::newRow("end") << 2 << 2 << true << QVariantList{a, b, none, none};
    QTest::newRow("beyond") << 3 << 1 << false << QVariantList{a, b};
    QTest::newRow("negative") << -1 << 1 << false << QVariantList{a, b};
    QTest::newRow("none") << 1 << 0 << true << QVariantList{a, b};
    QTest::newRow("negative count") << 1 << intMin << true << QVariantList{a, b};
}

void TreeItemTest::insertColumnsChecksItsPosition()
{
    QFETCH(int, position);
    QFETCH(int, columns);
    QFETCH(QVariantList, left);
    TreeItem root(twoColumns);
    QTEST(root.insertColumns(position, columns), "result");
    QCOMPARE(root.columnCount(), left.size());
    for (int column = 0; column < left.size(); ++column)
        QCOMPARE(root.data(column), left[column]);
}

void TreeItemTest::removeColumnsChecksItsRange_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("columns");
    QTest::addColumn<bool>("result");
    QTest::addColumn<int>("left");
    QTest::newRow("one") << 1 << 1 << true << 1;
    QTest::newRow("all") << 0 << 2 << true << 0;
    QTest::newRow("too many") << 1 << 2 << false << 2;
    QTest::newRow("negative") << -1 << 1 << false << 2;
    QTest::newRow("none") << 0 << 0 << true << 2;
    QTest::newRow("negative count") << 1 << -1 << true << 2;
    QTest::newRow("sum beyond an int") << 1 << intMax << false << 2;
}

void TreeItemTest::removeColumnsChecksItsRange()
{
    QFETCH(int, position);
    QFETCH(int, columns);
    TreeItem root(twoColumns);
    QTEST(root.removeColumns(position, columns), "result");
    QTEST(root.columnCount(), "left");
}

void TreeItemTest::columnsChangeInAllDescendants()
{
    TreeItem root(twoColumns);
    fill(root);
    root.child(1)->insertChildren(0, 1, 2);
    TreeItem *grandchild = root.child(1)->child(0);
    grandchild->setData(1, 7);
    QVERIFY(root.insertColumns(1, 2));
    QCOMPARE(grandchild->columnCount(), 4);
    QCOMPARE(grandchild->data(3), QVariant(7));
    QVERIFY(root.removeColumns(0, 3));
    QCOMPARE(root.child(2)->columnCount(), 1);
    QCOMPARE(grandchild->data(0), QVariant(7));
}

void TreeItemTest::setDataRefusesMissingColumns_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<bool>("result");
    QTest::newRow("first") << 0 << true;
    QTest::newRow("last") << 1 << true;
    QTest::newRow("beyond") << 2 << false;
    QTest::newRow("negative") << -1 << false;
}

void TreeItemTest::setDataRefusesMissingColumns()
{
    QFETCH(int, column);
    QFETCH(bool, result);
    TreeItem root(twoColumns);
    QCOMPARE(root.setData(column, 42), result);
    QCOMPARE(root.data(column) == QVariant(42), result);
    QCOMPARE(root.columnCount(), 2);
}

ORVALIS_QTEST_MAIN(TreeItemTest)
#include "TreeItemTest.moc"
