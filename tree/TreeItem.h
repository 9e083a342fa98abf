// SPDX-License-Identifier: MIT
// One node of the feature tree: its texts and its children.
#pragma once

#include <QList>
#include <QVariant>
#include <QVector>

/// Owns its children. Not thread-safe; used on the GUI thread.
class TreeItem {
public:
    /// `data` has one value per column. `parent` is not owned; the item is not added to its
    /// children.
    explicit TreeItem(const QVector<QVariant> &data, TreeItem *parent = nullptr);
    ~TreeItem();
    TreeItem(const TreeItem &) = delete;
    TreeItem &operator=(const TreeItem &) = delete;

    /// Null for a number outside 0..childCount() - 1.
    TreeItem *child(int number);
    int childCount() const;
    /// Position in the parent's list; 0 without a parent, -1 if the parent does not list this item.
    int childNumber() const;
    int columnCount() const;
    /// Invalid for a column that the item does not have.
    QVariant data(int column) const;
    /// Null for the root.
    TreeItem *parent();

    /// Inserts `count` children with `columns` invalid values each. Returns false for a position
    /// outside 0..childCount(); does nothing and returns true for a count below 1.
    bool insertChildren(int position, int count, int columns);
    /// Deletes `count` children from `position` on. Returns false if they exceed the list.
    bool removeChildren(int position, int count);
    /// Inserts invalid values here and, recursively, in every child. Returns false for a position
    /// outside 0..columnCount().
    bool insertColumns(int position, int columns);
    /// Removes values here and, recursively, in every child. Returns false if they exceed the
    /// columns.
    bool removeColumns(int position, int columns);
    /// Returns false for a column that the item does not have.
    bool setData(int column, const QVariant &value);

private:
    QList<TreeItem *> childItems; // owned
    QVector<QVariant> itemData;
    TreeItem *parentItem;
};
