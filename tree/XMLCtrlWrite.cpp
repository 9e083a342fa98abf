// SPDX-License-Identifier: MIT
// The feature dock's three ways to write to the camera, and what each asks the control panel to
// reload.
#include "tree/XMLCtrl.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>
#include <cmath>

#include "capture/StreamControl.h"
#include "sdk/OrvalisAPI.h"
#include "tree/AddressNode.h"
#include "tree/NodeText.h"
#include "tree/ui_XMLCtrl.h"

/// Asks for a reload when the node's name contains one of `parts`; null entries are unused.
struct XMLCtrl::NotificationRule {
    void (*notify)(XMLCtrl &);
    std::array<const char *, 9> parts;

    bool matches(const QString &name) const
    {
        return std::any_of(parts.begin(), parts.end(), [&name](const char *part) {
            return part && name.contains(QLatin1String(part));
        });
    }
};

template <std::size_t N> void XMLCtrl::notify(const NotificationRule (&rules)[N])
{
    const QString name = m_strNodeName; // a receiver may lead to another click
    for (const NotificationRule &rule : rules) {
        if (rule.matches(name))
            rule.notify(*this);
    }
}

namespace {

/// Who is to let the preview of the sensor wait while a node of this name is written: any node may
/// change the sensor's size. None for a trigger: the grab may be waiting for that very trigger.
StreamControl *previewOwner(StreamControl *window, const QString &name)
{
    return name.contains(QLatin1String("Trigger")) ? nullptr : window;
}

void reloadFeatures(XMLCtrl &dock) { emit dock.sigUpdateFeatureInfo(false); }
void reloadVideo(XMLCtrl &dock) { emit dock.sigUpdateVideoInfo(); }
void reloadTrigger(XMLCtrl &dock) { emit dock.sigUpdateTriggerInfo(); }
void reloadStrobe(XMLCtrl &dock) { emit dock.sigUpdateStrobeInfo(); }
void reloadUserSets(XMLCtrl &dock) { emit dock.sigUpdateUSerSetInfo(); }

/// The number that was typed into an integer node; 0 for text that is none. The numbers of address
/// nodes are bit patterns, so that half of the addresses are negative here.
std::int32_t integerFrom(const QByteArray &name, const QString &text)
{
    const auto address = isAddressNode(name) ? addressFrom(text) : std::nullopt;
    return address ? static_cast<std::int32_t>(*address) : text.toInt();
}

} // namespace

void XMLCtrl::on_cmbXMLValue_activated(const QString &text)
{
    // Order and names differ from those of the value field on purpose.
    static constexpr NotificationRule rules[] = {
        {reloadVideo, {"PixelFormat"}},
        {reloadFeatures, {"GainAuto", "ExposureTime", "ExposureAuto", "BalanceWhite"}},
        {reloadTrigger, {"Trigger", "ExposureMode"}},
        {reloadStrobe, {"Timer"}},
    };
    // Also while the panel reloads, which may write: the GUI thread waits for one grab, not for
    // two.
    const PreviewHold hold(previewOwner(m_pMainWindow, m_strNodeName));
    OrvalisSetNodeString(m_pHandle, m_strNodeName.toLatin1().constData(),
                         text.toLatin1().constData());
    notify(rules);
}

void XMLCtrl::on_btnXMLExcute_clicked()
{
    static constexpr NotificationRule rules[] = {
        {reloadFeatures, {"UserSetLoad"}}, {reloadVideo, {"UserSetLoad"}},
        {reloadTrigger, {"UserSetLoad"}},  {reloadStrobe, {"UserSetLoad"}},
        {reloadUserSets, {"UserSetLoad"}},
    };
    const bool isLoad = m_strNodeName.contains(QLatin1String("UserSetLoad"));
    const bool restart = isLoad && m_pMainWindow && m_pMainWindow->isStreaming();
    if (restart)
        m_pMainWindow->slotStopCamera();
    {
        const PreviewHold hold(previewOwner(m_pMainWindow, m_strNodeName));
        OrvalisSetNodeCommand(m_pHandle, m_strNodeName.toLatin1().constData());
        notify(rules);
    }
    if (restart)
        m_pMainWindow->slotStartCamera();
}

void XMLCtrl::keyPressEvent(QKeyEvent *event)
{
    static constexpr NotificationRule rules[] = {
        {reloadFeatures,
         {"Gamma", "Gain", "BlackLevel", "Contrast", "Hue", "Saturation", "Sharpness",
          "ExposureTime", "AutoExposure"}},
        {reloadTrigger, {"Trigger"}},
        {reloadStrobe, {"Timer"}},
        {reloadUserSets, {"UserSet"}},
        {reloadVideo, {"Width", "Height", "OffsetX", "OffsetY", "AcquisitionFrameRate"}},
    };
    if (event->key() != Qt::Key_Enter) {
        QDockWidget::keyPressEvent(event);
        return;
    }
    event->accept();
    if (focusWidget() != ui->edXMLValue)
        return;
    const PreviewHold hold(previewOwner(m_pMainWindow, m_strNodeName));
    commitValue(ui->edXMLValue->text());
    notify(rules);
}

/// Shows what the camera holds afterwards, whatever became of the write.
void XMLCtrl::commitValue(const QString &text)
{
    const QByteArray name = m_strNodeName.toLatin1();
    switch (m_nNodeType) {
    case ORVALIS_NODE_BOOLEAN:
        return ui->edXMLValue->setText(commitBoolean(name, text));
    case ORVALIS_NODE_STRING:
        return ui->edXMLValue->setText(commitString(name, text));
    case ORVALIS_NODE_FLOAT:
        return ui->edXMLValue->setText(commitFloat(name, text));
    case ORVALIS_NODE_INTEGER:
        return ui->edXMLValue->setText(commitInteger(name, text));
    default:
        return;
    }
}

QString XMLCtrl::commitBoolean(const QByteArray &name, const QString &text)
{
    OrvalisSetNodeBoolean(m_pHandle, name.constData(), text.toInt() != 0);
    bool flag = false;
    OrvalisGetNodeBoolean(m_pHandle, name.constData(), &flag);
    return QString::number(numberOf(flag));
}

QString XMLCtrl::commitString(const QByteArray &name, const QString &text)
{
    char buffer[ORVALIS_TEXT_SIZE] = {};
    OrvalisSetNodeString(m_pHandle, name.constData(), text.toLatin1().constData());
    OrvalisGetNodeString(m_pHandle, name.constData(), buffer);
    return QString::fromLatin1(bytesOf(buffer));
}

// Bounds that cannot be read stay 0, and so does then the value written. Where a camera's bounds
// contradict each other, the minimum wins.

QString XMLCtrl::commitFloat(const QByteArray &name, const QString &text)
{
    OFloatNode node{0, 0, 0, 0.001};
    const double typed = text.toDouble();
    OrvalisGetNodeFloat(m_pHandle, name.constData(), &node);
    const double value =
        std::max(std::min(std::isnan(typed) ? 0 : typed, node.maximum), node.minimum);
    OrvalisSetNodeFloat(m_pHandle, name.constData(), value);
    OrvalisGetNodeFloat(m_pHandle, name.constData(), &node);
    return QStringLiteral("%1").arg(node.value, 0, 'g', -1);
}

QString XMLCtrl::commitInteger(const QByteArray &name, const QString &text)
{
    OIntNode node{};
    const std::int32_t typed = integerFrom(name, text);
    OrvalisGetNodeInt(m_pHandle, name.constData(), &node);
    const std::int32_t value = std::max(std::min(typed, node.maximum), node.minimum);
    OrvalisSetNodeInt(m_pHandle, name.constData(), value);
    OrvalisGetNodeInt(m_pHandle, name.constData(), &node);
    // Kept: decimal also for address nodes, which a click shows dotted.
    return QStringLiteral("%1").arg(node.value);
}
