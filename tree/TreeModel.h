// SPDX-License-Identifier: MIT
// The camera's feature nodes as a read-only item model of one column, at most three levels deep.
#pragma once

#include <QAbstractItemModel>
#include <QStringList>

#include <memory>

class TreeItem;

/// Built once, in the constructor, from the camera library's node lists. Contains names only and
/// never refreshes. GUI thread.
class TreeModel : public QAbstractItemModel {
    Q_OBJECT

public:
    /// Reads the whole tree from the camera, synchronously. `cameraHandle` is not owned and not
    /// used after construction. `headers` has one text per column.
    TreeModel(const QStringList &headers, void *cameraHandle, QObject *parent = nullptr);
    ~TreeModel() override;

    /// The item of an index, the invisible root for an invalid index.
    TreeItem *getItem(const QModelIndex &index) const;

    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /// Only column 0 has children.
    bool hasChildren(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    QModelIndex index(int row, int column,
                      const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    /// Selectable and enabled, never editable.
    Qt::ItemFlags flags(const QModelIndex &index) const override;

    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    bool setHeaderData(int section, Qt::Orientation orientation, const QVariant &value,
                       int role = Qt::EditRole) override;
    /// These four change nothing and emit nothing if the arguments are out of range.
    bool insertColumns(int position, int columns,
                       const QModelIndex &parent = QModelIndex()) override;
    bool removeColumns(int position, int columns,
                       const QModelIndex &parent = QModelIndex()) override;
    bool insertRows(int position, int rows, const QModelIndex &parent = QModelIndex()) override;
    bool removeRows(int position, int rows, const QModelIndex &parent = QModelIndex()) override;

private:
    void setupModelData(TreeItem *parent);
    void appendCategory(TreeItem *parent, const QByteArray &name);
    void appendFeature(TreeItem *category, const QByteArray &name);
    TreeItem *appendItem(TreeItem *parent, const QByteArray &name);

    void *m_pHandle;
    std::unique_ptr<TreeItem> rootItem; // its values are the header texts
};
