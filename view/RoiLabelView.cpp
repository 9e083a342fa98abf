// SPDX-License-Identifier: MIT
// Rubber band on the sensor preview.
#include "view/RoiLabelView.h"

#include <QMouseEvent>
#include <QRubberBand>

RoiLabelView::RoiLabelView(QWidget *parent)
    : QLabel(parent), m_pRubberBand(new QRubberBand(QRubberBand::Rectangle, this))
{
    QPalette palette = m_pRubberBand->palette();
    palette.setBrush(QPalette::All, QPalette::Highlight, QBrush(Qt::darkBlue));
    m_pRubberBand->setPalette(palette);
}

void RoiLabelView::slotHideRubberBand() { m_pRubberBand->hide(); }

void RoiLabelView::mousePressEvent(QMouseEvent *event)
{
    m_pRubberBand->hide();
    m_origin = event->pos();
}

void RoiLabelView::mouseMoveEvent(QMouseEvent *event)
{
    m_pRubberBand->setGeometry(QRect(m_origin, QSize()));
    m_pRubberBand->show();
    m_pRubberBand->setGeometry(QRect(m_origin, event->pos()).normalized());
}

void RoiLabelView::mouseReleaseEvent(QMouseEvent *event)
{
    emit sigCurrentPoint(m_origin, event->pos());
}
