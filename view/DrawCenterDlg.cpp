// SPDX-License-Identifier: MIT
// The dialog of the centre cross: a width, a colour and a button.
#include "view/DrawCenterDlg.h"

#include <QComboBox>
#include <QFontInfo>
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
    createWidgets();
    layOut();
    fitFont();
    QMetaObject::connectSlotsByName(this);
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
    grid->addWidget(widthLabel, 0, 0);
    grid->addWidget(m_pSpiWidth, 0, 1);
    grid->addWidget(colorLabel, 1, 0);
    grid->addWidget(m_pCmbColor, 1, 1);
    grid->addWidget(m_pBtnApply, 1, 2);
    grid->setColumnStretch(1, 1);
}

/// The dialog's size is fixed, the desktop's font is not: shrinks the font until everything fits.
void DrawCenterDlg::fitFont()
{
    constexpr int smallestPixelSize = 6;
    QFont fitted = font();
    for (int pixels = QFontInfo(fitted).pixelSize(); pixels > smallestPixelSize; --pixels) {
        const QSize needed = layout()->minimumSize();
        if (needed.width() <= width() && needed.height() <= height())
            return;
        fitted.setPixelSize(pixels);
        setFont(fitted);
        layout()->invalidate();
    }
}

void DrawCenterDlg::on_btnApply_clicked()
{
    emit sigValueApply(m_pSpiWidth->value(), colorAt(m_pCmbColor->currentIndex()));
}
