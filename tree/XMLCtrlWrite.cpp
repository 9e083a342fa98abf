// SPDX-License-Identifier: MIT
// The feature dock's three ways to write to the camera, and the settings that the control panel
// reloads after each.
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

/// Emits a reload signal if the node's name contains one of `parts`; null entries are unused.
struct XMLCtrl::NotificationRule {
    void (*notify)(XMLCtrl &);
    std::array<const char *, 9> parts;

    bool matches(const QString &name) const
    {
        return std::any_of(
            parts.begin(), parts.end(),
            [&name](const char *part) { return part && name.contains(QLatin1String(part)); });
    }
};

template <std::size_t N> void XMLCtrl::notify(const NotificationRule (&rules)[N])
{
    const QString name = m_strNodeName; // copied: a receiver may change the current node
    for (const NotificationRule &rule : rules)
        if (rule.matches(name))
            rule.notify(*this);
}

namespace {

/// The window whose preview must pause while a node of this name is written, as any node may change
/// the sensor's size. Null for a trigger: the pending grab may be waiting for that trigger.
StreamControl *previewOwner(StreamControl *window, const QString &name)
{
    return name.contains(QLatin1String("Trigger")) ? nullptr : window;
}

void reloadFeatures(XMLCtrl &dock) { emit dock.sigUpdateFeatureInfo(false); }
void reloadVideo(XMLCtrl &dock) { emit dock.sigUpdateVideoInfo(); }
void reloadTrigger(XMLCtrl &dock) { emit dock.sigUpdateTriggerInfo(); }
void reloadStrobe(XMLCtrl &dock) { emit dock.sigUpdateStrobeInfo(); }
void reloadUserSets(XMLCtrl &dock) { emit dock.sigUpdateUSerSetInfo(); }

/// The number typed into an integer node; 0 for other text. The values of address nodes are bit
/// patterns, so half of the addresses are negative here.
std::int32_t integerFrom(const QByteArray &name, const QString &text)
{
    const auto address = isAddressNode(name) ? addressFrom(text) : std::nullopt;
    return address ? static_cast<std::int32_t>(*address) : text.toInt();
}

} // namespace

void XMLCtrl::on_cmbXMLValue_activated(const QString &text)
{
    // Deliberate: order and names differ from those of the value field.
    static constexpr NotificationRule rules[] = {
        {reloadVideo, {"PixelFormat"}},
        {reloadFeatures, {"GainAuto", "ExposureTime", "ExposureAuto", "BalanceWhite"}},
        {reloadTrigger, {"Trigger", "ExposureMode"}},
        {reloadStrobe, {"Timer"}},
    };
    // Held while the panel reloads too, which may write: the GUI thread then waits for one grab
    // instead of two.
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
    const StreamPause streamPause(isLoad ? m_pMainWindow : nullptr);
    const PreviewHold hold(previewOwner(m_pMainWindow, m_strNodeName));
    OrvalisSetNodeCommand(m_pHandle, m_strNodeName.toLatin1().constData());
    notify(rules);
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

/// Writes `text`, then displays the value that the camera reports, even if the write fails.
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

// Deliberate: bounds that cannot be read are 0, so 0 is written. If a camera's bounds contradict
// each other, the minimum wins.

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
    // Deliberate: decimal for address nodes too, although a click displays them dotted.
    return QStringLiteral("%1").arg(node.value);
}
