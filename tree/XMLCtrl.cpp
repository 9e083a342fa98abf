// SPDX-License-Identifier: MIT
// The feature dock: its widgets, its tree, and the display of a clicked node.
#include "tree/XMLCtrl.h"

#include <QHeaderView>
#include <QHostAddress>
#include <QItemSelectionModel>
#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "sdk/OrvalisAPI.h"
#include "tree/AddressNode.h"
#include "tree/NodeText.h"
#include "tree/TreeModel.h"
#include "tree/ui_XMLCtrl.h"

namespace {

/// Layouts of the value panel, numbered as in HideShowXMLCtrl().
enum PanelMode { PanelNothing = 0, PanelValue = 1, PanelEnumeration = 2, PanelCommand = 3 };

/// Deliberate: the spelling "Acquisigion", so that AcquisitionFrameRateAbs is not locked.
constexpr std::array lockedWhileAcquiring = {"Width",   "Height",      "OffsetX",
                                             "OffsetY", "PixelFormat", "AcquisigionFrameRateAbs"};

} // namespace

XMLCtrl::XMLCtrl(QWidget *parent) : QDockWidget(parent), ui(std::make_unique<Ui_XMLCtrl>())
{
    ui->setupUi(this);
    // The dock's width is fixed: wider names need a horizontal scroll bar.
    ui->treeXML->header()->setStretchLastSection(false);
    fillHeader();
    ui->treeXML->header()->installEventFilter(this);
    HideShowXMLCtrl(PanelNothing, true);
    setFocusProxy(ui->treeXML);
    ui->treeXML->installEventFilter(this);
}

XMLCtrl::~XMLCtrl() = default;

/// Makes the column at least as wide as the dock, with or without a vertical scroll bar.
void XMLCtrl::fillHeader()
{
    QHeaderView *header = ui->treeXML->header();
    header->setMinimumSectionSize(header->width());
    header->setSectionResizeMode(QHeaderView::ResizeToContents); // also measures the sections again
}

bool XMLCtrl::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->treeXML->header() && event->type() == QEvent::Resize)
        fillHeader();
    // Return on a node acts like a click. Keypad Enter does not: it commits the value.
    if (watched != ui->treeXML || event->type() != QEvent::KeyPress ||
        static_cast<QKeyEvent *>(event)->key() != Qt::Key_Return)
        return QDockWidget::eventFilter(watched, event);
    on_treeXML_clicked(ui->treeXML->currentIndex());
    return true;
}

void XMLCtrl::CreateXMLTree(void *handle)
{
    const QStringList headers{tr("Root")};
    m_pHandle = handle;
    showModel(nullptr);
    m_pModel = new TreeModel(headers, handle, this);
    showModel(m_pModel);
    for (int column = 0; column < m_pModel->columnCount(); ++column)
        ui->treeXML->resizeColumnToContents(column);
}

void XMLCtrl::DeleteXMLTree()
{
    showModel(nullptr);
    m_pHandle = nullptr;
}

// View and header create a selection model for every model that is set. Qt never deletes those of
// the empty model that stands for null.
void XMLCtrl::showModel(TreeModel *model)
{
    ui->treeXML->setModel(model); // may be null; a deleted model makes the view warn on focus
    for (QItemSelectionModel *created : ui->treeXML->findChildren<QItemSelectionModel *>())
        if (created != ui->treeXML->selectionModel())
            delete created;
    if (model == nullptr)
        delete std::exchange(m_pModel, nullptr);
}

void XMLCtrl::HideShowXMLCtrl(int mode, bool enable)
{
    ui->edXMLValue->setEnabled(enable);
    ui->cmbXMLValue->setEnabled(enable);
    ui->btnXMLExcute->setEnabled(enable);
    if (mode < PanelNothing || mode > PanelCommand)
        return;
    ui->laXMLValue->setVisible(mode == PanelValue);
    ui->edXMLValue->setVisible(mode == PanelValue);
    ui->laXMLEnum->setVisible(mode == PanelEnumeration);
    ui->cmbXMLValue->setVisible(mode == PanelEnumeration);
    ui->laXMLExcute->setVisible(mode == PanelCommand);
    ui->btnXMLExcute->setVisible(mode == PanelCommand);
}

void XMLCtrl::UpdateAcqState(bool acquiring)
{
    const bool locked =
        std::any_of(lockedWhileAcquiring.begin(), lockedWhileAcquiring.end(),
                    [this](const char *name) { return m_strNodeName == QLatin1String(name); });
    if (!locked)
        return;
    ui->edXMLValue->setEnabled(!acquiring);
    ui->cmbXMLValue->setEnabled(!acquiring);
}

void XMLCtrl::on_treeXML_clicked(const QModelIndex &index)
{
    // An index of a deleted tree refers to freed items.
    if (!m_pHandle || !m_pModel || (index.isValid() && index.model() != m_pModel))
        return;
    const QString text = m_pModel->data(index, Qt::DisplayRole).toString();
    const QByteArray name = text.toLatin1();
    ONodeInfo info{};
    info.type = -1;
    info.accessMode = ORVALIS_ACCESS_READ_ONLY;
    OrvalisGetNodeInfo(m_pHandle, name.constData(), &info);
    showNode(name, info.type, info.accessMode == ORVALIS_ACCESS_READ_WRITE);
    m_strNodeName = text;
    m_nNodeType = info.type;
}

void XMLCtrl::showNode(const QByteArray &name, int type, bool readWrite)
{
    switch (type) {
    case ORVALIS_NODE_INTEGER:
        return showInteger(name, readWrite);
    case ORVALIS_NODE_FLOAT:
        return showFloat(name, readWrite);
    case ORVALIS_NODE_STRING:
        return showString(name, readWrite);
    case ORVALIS_NODE_BOOLEAN:
        return showBoolean(name, readWrite);
    case ORVALIS_NODE_ENUMERATION:
        return showEnumeration(name, readWrite);
    case ORVALIS_NODE_COMMAND:
        // Deliberate: only read-write commands are enabled, write-only ones are not.
        return HideShowXMLCtrl(PanelCommand, readWrite);
    default:
        return HideShowXMLCtrl(PanelNothing, true);
    }
}

/// Disables the field and keeps its text if the value cannot be read.
void XMLCtrl::showText(bool readable, bool readWrite, const QString &text)
{
    if (!readable) {
        ui->edXMLValue->setEnabled(false);
        return;
    }
    ui->edXMLValue->setEnabled(readWrite);
    ui->edXMLValue->setText(text);
}

void XMLCtrl::showInteger(const QByteArray &name, bool readWrite)
{
    HideShowXMLCtrl(PanelValue, readWrite);
    OIntNode node{};
    const bool readable = OrvalisGetNodeInt(m_pHandle, name.constData(), &node) == ORVALIS_OK;
    const QString text = isAddressNode(name)
                             ? QHostAddress(static_cast<quint32>(node.value)).toString()
                             : QStringLiteral("%1").arg(static_cast<qint64>(node.value));
    showText(readable, readWrite, text);
}

void XMLCtrl::showFloat(const QByteArray &name, bool readWrite)
{
    HideShowXMLCtrl(PanelValue, readWrite);
    OFloatNode node{0, 0, 0, 0.001};
    const bool readable = OrvalisGetNodeFloat(m_pHandle, name.constData(), &node) == ORVALIS_OK;
    showText(readable, readWrite, QStringLiteral("%1").arg(node.value, 0, 'g', -1));
}

void XMLCtrl::showString(const QByteArray &name, bool readWrite)
{
    HideShowXMLCtrl(PanelValue, readWrite);
    char text[ORVALIS_TEXT_SIZE] = {};
    const bool readable = OrvalisGetNodeString(m_pHandle, name.constData(), text) == ORVALIS_OK;
    showText(readable, readWrite, QString::fromLatin1(bytesOf(text)));
}

void XMLCtrl::showBoolean(const QByteArray &name, bool readWrite)
{
    HideShowXMLCtrl(PanelValue, readWrite);
    bool flag = false;
    const bool readable = OrvalisGetNodeBoolean(m_pHandle, name.constData(), &flag) == ORVALIS_OK;
    showText(readable, readWrite, QString::number(numberOf(flag)));
}

void XMLCtrl::showEnumeration(const QByteArray &name, bool readWrite)
{
    HideShowXMLCtrl(PanelEnumeration, readWrite);
    ui->cmbXMLValue->clear();
    const auto node = std::make_unique<OEnumNode>();
    node->count = ORVALIS_ENUM_SIZE;
    if (OrvalisGetNodeEnum(m_pHandle, name.constData(), node.get()) != ORVALIS_OK) {
        ui->cmbXMLValue->setEditable(false);
        return;
    }
    ui->cmbXMLValue->setEditable(readWrite);
    const auto count = std::min<std::uint32_t>(node->count, ORVALIS_ENUM_SIZE);
    for (std::uint32_t i = 0; i < count; ++i)
        ui->cmbXMLValue->addItem(QString::fromLatin1(bytesOf(node->names[i])));
    ui->cmbXMLValue->setCurrentIndex(node->currentIndex);
}
