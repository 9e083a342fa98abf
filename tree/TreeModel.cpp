// SPDX-License-Identifier: MIT
// The camera's feature nodes as a read-only item model of one column, at most three levels deep.
#include "tree/TreeModel.h"

#include <algorithm>
#include <array>

#include "sdk/OrvalisAPI.h"
#include "tree/NodeText.h"
#include "tree/TreeItem.h"

namespace {

/// The only features that are listed like categories. All others are leaves, even if the camera
/// lists names below them.
constexpr std::array subCategories = {"LUTKneePointControls",
                                      "SnowNoiseRemoveControls",
                                      "AutoIris",
                                      "WDGControl",
                                      "AutoAreaControl",
                                      "AutoFocusControl",
                                      "DeviceTemperatureRange",
                                      "AlarmCommonControls",
                                      "TemperatureCompensations"};

bool isSubCategory(const QByteArray &name)
{
    return std::any_of(
        subCategories.begin(), subCategories.end(),
        [&name](const char *known) { return name == known; });
}

QVector<QVariant> toItemData(const QStringList &texts)
{
    QVector<QVariant> data;
    data.reserve(texts.size());
    for (const QString &text : texts)
        data.append(text);
    return data;
}

/// Calls `take` for every name below `parent`, in the camera's order. Names are Latin-1 throughout,
/// so that they reach the library unchanged. The result of the call is ignored: a library that
/// fails sets the count to 0. The record is zeroed for libraries that do not.
template <typename Take> void forEachName(void *handle, const QByteArray &parent, Take take)
{
    const auto list = std::make_unique<ONodeList>();
    list->count = ORVALIS_NODE_LIST_SIZE;
    OrvalisGetNodeList(handle, parent.constData(), list.get());
    const auto count = std::min<std::uint32_t>(list->count, ORVALIS_NODE_LIST_SIZE);
    for (std::uint32_t i = 0; i < count; ++i)
        take(bytesOf(list->names[i]));
}

} // namespace

TreeModel::TreeModel(const QStringList &headers, void *cameraHandle, QObject *parent)
    : QAbstractItemModel(parent), m_pHandle(cameraHandle),
      rootItem(std::make_unique<TreeItem>(toItemData(headers)))
{
    setupModelData(rootItem.get());
}

TreeModel::~TreeModel() = default;

TreeItem *TreeModel::getItem(const QModelIndex &index) const
{
    if (index.isValid() && index.internalPointer())
        return static_cast<TreeItem *>(index.internalPointer());
    return rootItem.get();
}

int TreeModel::columnCount(const QModelIndex & /*parent*/) const { return rootItem->columnCount(); }

int TreeModel::rowCount(const QModelIndex &parent) const { return getItem(parent)->childCount(); }

bool TreeModel::hasChildren(const QModelIndex &parent) const
{
    return parent.column() <= 0 && rowCount(parent) > 0;
}

QVariant TreeModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return QVariant();
    return getItem(index)->data(index.column());
}

QVariant TreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    return rootItem->data(section);
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex &parent) const
{
    if (parent.isValid() && parent.column() != 0)
        return QModelIndex();
    TreeItem *child = getItem(parent)->child(row);
    return child ? createIndex(row, column, child) : QModelIndex();
}

QModelIndex TreeModel::parent(const QModelIndex &index) const
{
    if (!index.isValid())
        return QModelIndex();
    TreeItem *parentItem = getItem(index)->parent();
    if (!parentItem || parentItem == rootItem.get())
        return QModelIndex();
    return createIndex(parentItem->childNumber(), 0, parentItem);
}

Qt::ItemFlags TreeModel::flags(const QModelIndex &index) const
{
    return index.isValid() ? QAbstractItemModel::flags(index) : Qt::NoItemFlags;
}

bool TreeModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !getItem(index)->setData(index.column(), value))
        return false;
    emit dataChanged(index, index);
    return true;
}

bool TreeModel::setHeaderData(int section, Qt::Orientation orientation, const QVariant &value,
                              int role)
{
    if (role != Qt::EditRole || orientation != Qt::Horizontal || !rootItem->setData(section, value))
        return false;
    emit headerDataChanged(orientation, section, section);
    return true;
}

// Qt requires begin and end calls only around a real change of at least one row or column.
// Arguments that ask for none, or for an impossible one, go straight to the item for its answer.

bool TreeModel::insertColumns(int position, int columns, const QModelIndex &parent)
{
    if (position < 0 || position > rootItem->columnCount() || columns < 1)
        return rootItem->insertColumns(position, columns);
    beginInsertColumns(parent, position, position + columns - 1);
    const bool success = rootItem->insertColumns(position, columns);
    endInsertColumns();
    return success;
}

bool TreeModel::removeColumns(int position, int columns, const QModelIndex &parent)
{
    if (position < 0 || columns < 1 || columns > rootItem->columnCount() - position)
        return rootItem->removeColumns(position, columns);
    beginRemoveColumns(parent, position, position + columns - 1);
    const bool success = rootItem->removeColumns(position, columns);
    endRemoveColumns();
    if (rootItem->columnCount() == 0)
        removeRows(0, rowCount());
    return success;
}

bool TreeModel::insertRows(int position, int rows, const QModelIndex &parent)
{
    TreeItem *parentItem = getItem(parent);
    if (position < 0 || position > parentItem->childCount() || rows < 1)
        return parentItem->insertChildren(position, rows, rootItem->columnCount());
    beginInsertRows(parent, position, position + rows - 1);
    const bool success = parentItem->insertChildren(position, rows, rootItem->columnCount());
    endInsertRows();
    return success;
}

bool TreeModel::removeRows(int position, int rows, const QModelIndex &parent)
{
    TreeItem *parentItem = getItem(parent);
    if (position < 0 || rows < 1 || rows > parentItem->childCount() - position)
        return parentItem->removeChildren(position, rows);
    beginRemoveRows(parent, position, position + rows - 1);
    const bool success = parentItem->removeChildren(position, rows);
    endRemoveRows();
    return success;
}

void TreeModel::setupModelData(TreeItem *parent)
{
    forEachName(
        m_pHandle, QByteArrayLiteral("Root"),
        [this, parent](const QByteArray &name) {
            if (!name.isEmpty())
                appendCategory(parent, name);
        });
}

void TreeModel::appendCategory(TreeItem *parent, const QByteArray &name)
{
    TreeItem *category = appendItem(parent, name);
    forEachName(m_pHandle, name,
                [this, category](const QByteArray &feature) { appendFeature(category, feature); });
}

void TreeModel::appendFeature(TreeItem *category, const QByteArray &name)
{
    TreeItem *feature = appendItem(category, name);
    if (!isSubCategory(name))
        return;
    forEachName(m_pHandle, name,
                [this, feature](const QByteArray &child) { appendItem(feature, child); });
}

TreeItem *TreeModel::appendItem(TreeItem *parent, const QByteArray &name)
{
    parent->insertChildren(parent->childCount(), 1, rootItem->columnCount());
    TreeItem *item = parent->child(parent->childCount() - 1);
    item->setData(0, QString::fromLatin1(name));
    return item;
}
