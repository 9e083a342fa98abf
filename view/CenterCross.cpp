// SPDX-License-Identifier: MIT
// The cross through the centre of the displayed image.
#include "view/CenterCross.h"

#include <QLine>
#include <QPainter>

QPixmap CenterCross::paintedOn(const QPixmap &pixmap) const
{
    // Copy explicitly: painting on a pixmap that shares its image copies both pixmap and image.
    QPixmap marked = pixmap.copy();
    if (marked.isNull()) // out of memory
        return pixmap;
    const int right = marked.width();
    const int bottom = marked.height();
    QPen pen;
    pen.setColor(color);
    pen.setWidth(width);
    QPainter painter(&marked);
    painter.setPen(pen);
    // Deliberate: the ends lie one pixel beyond the last column and row.
    const QLine horizontal(0, bottom / 2, right, bottom / 2);
    const QLine vertical(right / 2, 0, right / 2, bottom);
    painter.drawLines(&horizontal, 1);
    painter.drawLines(&vertical, 1);
    painter.end();
    return marked;
}
