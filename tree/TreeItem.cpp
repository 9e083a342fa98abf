// SPDX-License-Identifier: MIT
// One node of the feature tree: its texts and its children.
#include "tree/TreeItem.h"

namespace {

/// Also false if the sum overflows an int.
bool isRange(int position, int count, int size)
{
    return position >= 0 && static_cast<qint64>(position) + count <= size;
}

} // namespace

TreeItem::TreeItem(const QVector<QVariant> &data, TreeItem *parent)
    : itemData(data), parentItem(parent)
{
}

TreeItem::~TreeItem() { qDeleteAll(childItems); }

TreeItem *TreeItem::child(int number) { return childItems.value(number, nullptr); }

int TreeItem::childCount() const { return childItems.count(); }

int TreeItem::childNumber() const
{
    if (!parentItem)
        return 0;
    return parentItem->childItems.indexOf(const_cast<TreeItem *>(this));
}

int TreeItem::columnCount() const { return itemData.count(); }

QVariant TreeItem::data(int column) const { return itemData.value(column); }

TreeItem *TreeItem::parent() { return parentItem; }

bool TreeItem::insertChildren(int position, int count, int columns)
{
    if (position < 0 || position > childItems.size())
        return false;
    for (int row = 0; row < count; ++row)
        childItems.insert(position, new TreeItem(QVector<QVariant>(qMax(columns, 0)), this));
    return true;
}

bool TreeItem::removeChildren(int position, int count)
{
    if (!isRange(position, count, childItems.size()))
        return false;
    for (int row = 0; row < count; ++row)
        delete childItems.takeAt(position);
    return true;
}

bool TreeItem::insertColumns(int position, int columns)
{
    if (position < 0 || position > itemData.size())
        return false;
    if (columns > 0)
        itemData.insert(position, columns, QVariant());
    for (TreeItem *child : qAsConst(childItems))
        child->insertColumns(position, columns);
    return true;
}

bool TreeItem::removeColumns(int position, int columns)
{
    if (!isRange(position, columns, itemData.size()))
        return false;
    if (columns > 0)
        itemData.remove(position, columns);
    for (TreeItem *child : qAsConst(childItems))
        child->removeColumns(position, columns);
    return true;
}

bool TreeItem::setData(int column, const QVariant &value)
{
    if (column < 0 || column >= itemData.size())
        return false;
    itemData[column] = value;
    return true;
}
