// SPDX-License-Identifier: MIT
// The dialog of the centre cross: a width, a colour and a button.
#include "view/DrawCenterDlg.h"

#include <QComboBox>
#include <QFontInfo>
#include <QFontMetrics>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

#include <array>

namespace {

struct NamedColor {
    const char *name;
    Qt::GlobalColor color;
};

constexpr std::array lineColors = {NamedColor{"Black", Qt::black}, NamedColor{"White", Qt::white},
                                   NamedColor{"Red", Qt::red}, NamedColor{"Green", Qt::green},
                                   NamedColor{"Blue", Qt::blue}};
constexpr int redIndex = 2;

QColor colorAt(int index)
{
    if (index < 0 || index >= static_cast<int>(lineColors.size()))
        index = redIndex;
    return lineColors[static_cast<std::size_t>(index)].color;
}

} // namespace

DrawCenterDlg::DrawCenterDlg(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("DrawCenterDlg"));
    setWindowTitle(tr("Draw Center"));
    setFixedSize(340, 90);
    fitFont();
    createWidgets();
    layOut();
    QMetaObject::connectSlotsByName(this);
}

/// The dialog has a fixed size: reduces a large desktop font until two rows fit. Call it before the
/// widgets are created, because a combo box keeps its first size hint.
void DrawCenterDlg::fitFont()
{
    constexpr int tallestText = 20;
    QFont fitted = font();
    int pixels = QFontInfo(fitted).pixelSize();
    if (QFontMetrics(fitted).height() <= tallestText)
        return;
    do
        fitted.setPixelSize(--pixels);
    while (pixels > 1 && QFontMetrics(fitted).height() > tallestText);
    setFont(fitted);
}

void DrawCenterDlg::createWidgets()
{
    m_pSpiWidth = new QSpinBox(this);
    m_pSpiWidth->setObjectName(QStringLiteral("spiLineWidth"));
    m_pSpiWidth->setAccessibleName(tr("Line width in pixels"));
    m_pSpiWidth->setRange(1, 50);
    m_pSpiWidth->setValue(2);

    m_pCmbColor = new QComboBox(this);
    m_pCmbColor->setObjectName(QStringLiteral("cmbLineColor"));
    m_pCmbColor->setAccessibleName(tr("Line colour"));
    for (const NamedColor &line : lineColors)
        m_pCmbColor->addItem(tr(line.name));
    m_pCmbColor->setCurrentIndex(redIndex);

    m_pBtnApply = new QPushButton(tr("Apply"), this);
    m_pBtnApply->setObjectName(QStringLiteral("btnApply"));
}

void DrawCenterDlg::layOut()
{
    auto *widthLabel = new QLabel(tr("Line Width : "), this);
    widthLabel->setBuddy(m_pSpiWidth);
    auto *colorLabel = new QLabel(tr("Line Color :"), this);
    colorLabel->setBuddy(m_pCmbColor);

    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(12, 6, 12, 6);
    grid->setSpacing(6);
    grid->addWidget(widthLabel, 0, 0);
    grid->addWidget(m_pSpiWidth, 0, 1);
    grid->addWidget(colorLabel, 1, 0);
    grid->addWidget(m_pCmbColor, 1, 1);
    grid->addWidget(m_pBtnApply, 1, 2);
    grid->setColumnStretch(1, 1);
}

void DrawCenterDlg::on_btnApply_clicked()
{
    emit sigValueApply(m_pSpiWidth->value(), colorAt(m_pCmbColor->currentIndex()));
}
