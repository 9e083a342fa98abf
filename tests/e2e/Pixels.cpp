// SPDX-License-Identifier: MIT
// Finds things in screenshots.
#include "tests/e2e/Pixels.h"

#include <QColor>

namespace e2e {

namespace {

/// Allows for rounding in icons that the tool bar scales down.
bool isNearly(QRgb one, QRgb other)
{
    constexpr int rounding = 3;
    return qAbs(qRed(one) - qRed(other)) <= rounding &&
           qAbs(qGreen(one) - qGreen(other)) <= rounding &&
           qAbs(qBlue(one) - qBlue(other)) <= rounding;
}

bool matchesAt(const QImage &screen, const QImage &icon, QPoint corner)
{
    int compared = 0;
    for (int y = 0; y < icon.height(); ++y) {
        for (int x = 0; x < icon.width(); ++x) {
            const QRgb pixel = icon.pixel(x, y);
            if (qAlpha(pixel) != 255)
                continue;
            ++compared;
            if (!isNearly(screen.pixel(corner + QPoint(x, y)), pixel))
                return false;
        }
    }
    return compared > 20;
}

bool isDark(QRgb pixel) { return qGray(pixel) < 128; }

bool isWhiteOrColoured(QRgb pixel)
{
    return (pixel & RGB_MASK) == RGB_MASK || QColor(pixel).hsvSaturation() > 60;
}

bool rowHasText(const QImage &screen, const QRect &area, int y)
{
    for (int x = area.left(); x <= area.right(); ++x) {
        if (isDark(screen.pixel(x, y)))
            return true;
    }
    return false;
}

} // namespace

int differences(const QImage &before, const QImage &after, const QRect &area)
{
    int count = 0;
    const QRect inside = area & before.rect() & after.rect();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x)
            count += before.pixel(x, y) != after.pixel(x, y) ? 1 : 0;
    }
    return count;
}

std::optional<QRect> findIcon(const QImage &screen, const QImage &icon, const QRect &area)
{
    const QRect inside = area & screen.rect();
    for (int y = inside.top(); y + icon.height() <= inside.bottom(); ++y) {
        for (int x = inside.left(); x + icon.width() <= inside.right(); ++x) {
            if (matchesAt(screen, icon, {x, y}))
                return QRect(QPoint(x, y), icon.size());
        }
    }
    return std::nullopt;
}

QList<QRect> textLines(const QImage &screen, const QRect &area)
{
    QList<QRect> lines;
    int start = -1;
    for (int y = area.top(); y <= area.bottom() + 1; ++y) {
        const bool text = y <= area.bottom() && rowHasText(screen, area, y);
        if (text && start < 0)
            start = y;
        if (!text && start >= 0) {
            lines.append(QRect(area.left(), start, area.width(), y - start));
            start = -1;
        }
    }
    return lines;
}

QRect listAt(const QImage &screen, int x, int top, int minimum)
{
    int start = top;
    for (int y = top; y < screen.height(); ++y) {
        if (isWhiteOrColoured(screen.pixel(x, y)))
            continue;
        if (y - start >= minimum)
            return {x, start, 1, y - start};
        start = y + 1;
    }
    return {};
}

} // namespace e2e
