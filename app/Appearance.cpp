// SPDX-License-Identifier: MIT
// Corrections to desktop colours that make texts unreadable or borders invisible.
#include "app/Appearance.h"

#include <QApplication>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>

#include <algorithm>
#include <cmath>

namespace {

constexpr double readable = 3.5; ///< contrast of a disabled text
constexpr double visible = 3.0;  ///< contrast of a border
constexpr int mixSteps = 20;     ///< steps from one colour to the other

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &colour)
{
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

QColor mixed(const QColor &from, const QColor &to, double share)
{
    const auto part = [share](double a, double b) {
        return std::clamp(a + share * (b - a), 0.0, 1.0);
    };
    return QColor::fromRgbF(part(from.redF(), to.redF()), part(from.greenF(), to.greenF()),
                            part(from.blueF(), to.blueF()));
}

/// The first mix on the way from `from` to `to` that has this contrast with `background`.
QColor mixedForContrast(const QColor &from, const QColor &to, const QColor &background,
                        double contrast)
{
    for (int step = 0; step < mixSteps; ++step) {
        QColor colour = mixed(from, to, double(step) / mixSteps);
        if (contrastOf(colour, background) >= contrast)
            return colour;
    }
    return to;
}

struct TextOn {
    QPalette::ColorRole text;
    QPalette::ColorRole background;
};
constexpr TextOn texts[] = {{QPalette::WindowText, QPalette::Window},
                            {QPalette::Text, QPalette::Base},
                            {QPalette::ButtonText, QPalette::Button}};

/// Corrects the application's colours whenever Qt reads them from the desktop. A palette set on the
/// application would override later changes of the desktop.
///
/// Fusion draws borders in a darkened window colour, which makes them invisible on black.
class ReadableStyle : public QProxyStyle {
public:
    /// @param base the style to correct; this style takes ownership
    explicit ReadableStyle(QStyle *base)
        : QProxyStyle(base), m_borders(base->objectName() == QLatin1String("fusion"))
    {
    }

    using QProxyStyle::polish;
    void polish(QPalette &colours) override
    {
        QProxyStyle::polish(colours);
        colours = withReadableDisabledTexts(colours);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override
    {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        if (element == PE_IndicatorCheckBox || element == PE_FrameLineEdit ||
            element == PE_PanelButtonCommand)
            drawBorder(*option, painter);
        else if (element == PE_IndicatorRadioButton)
            drawBorder(*option, painter, option->rect.width() / 2.0);
    }

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override
    {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        if (control == CC_SpinBox || control == CC_ComboBox)
            drawBorder(*option, painter);
    }

private:
    void drawBorder(const QStyleOption &option, QPainter *painter, double radius = 2) const
    {
        if (!m_borders)
            return;
        const QColor window = option.palette.color(QPalette::Window);
        if (contrastOf(window, Qt::black) >= visible || option.state & State_HasFocus)
            return;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(
            mixedForContrast(window, option.palette.color(QPalette::WindowText), window, visible));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), radius,
                                 radius);
        painter->restore();
    }

    const bool m_borders;
};

} // namespace

double contrastOf(const QColor &first, const QColor &second)
{
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

QPalette withReadableDisabledTexts(QPalette colours)
{
    for (const TextOn &role : texts) {
        const QColor text = colours.color(QPalette::Disabled, role.text);
        const QColor background = colours.color(QPalette::Disabled, role.background);
        if (contrastOf(text, background) < readable) {
            colours.setColor(QPalette::Disabled, role.text,
                             mixedForContrast(text, colours.color(QPalette::Active, role.text),
                                              background, readable));
        }
    }
    return colours;
}

void applyAppearance() { QApplication::setStyle(new ReadableStyle(QApplication::style())); }
