// SPDX-License-Identifier: MIT
// One node of the feature tree: its texts and its children.
#pragma once

#include <QList>
#include <QVariant>
#include <QVector>

/// Owns its children. Not thread-safe; used on the GUI thread.
class TreeItem {
public:
    /// `data` has one value a column. `parent` is not owned, and does not learn of this item.
    explicit TreeItem(const QVector<QVariant> &data, TreeItem *parent = nullptr);
    ~TreeItem();
    TreeItem(const TreeItem &) = delete;
    TreeItem &operator=(const TreeItem &) = delete;

    /// Null for a number that is negative or not below childCount().
    TreeItem *child(int number);
    /// Items directly below.
    int childCount() const;
    /// Position in the parent's list; 0 without a parent, -1 if the parent does not list this item.
    int childNumber() const;
    /// Columns of this item.
    int columnCount() const;
    /// Invalid for a column that the item does not have.
    QVariant data(int column) const;
    /// Null for the root.
    TreeItem *parent();

    /// Inserts `count` children of `columns` invalid values each. False for a position outside
    /// 0..childCount(); true without a change for a count below 1.
    bool insertChildren(int position, int count, int columns);
    /// Deletes `count` children from `position` on. False if that reaches outside the list.
    bool removeChildren(int position, int count);
    /// Inserts invalid values here and, recursively, in every child. False for a position outside
    /// 0..columnCount().
    bool insertColumns(int position, int columns);
    /// Removes values here and, recursively, in every child. False if that reaches outside the
    /// columns.
    bool removeColumns(int position, int columns);
    /// False for a column that the item does not have.
    bool setData(int column, const QVariant &value);

private:
    QList<TreeItem *> childItems; // owned
    QVector<QVariant> itemData;
    TreeItem *parentItem;
};
