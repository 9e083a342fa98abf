// SPDX-License-Identifier: MIT
// The register dialog: conversion of numbers, and the font that fits its fixed size.
#include "dialogs/AccessRegister.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QKeyEvent>

#include <cstdio>

#include "capture/StreamControl.h"
#include "dialogs/ui_AccessRegister.h"
#include "sdk/OrvalisAPI.h"

namespace {

/// The first hexadecimal number in the field, 0 if there is none. Deliberate: scanf decides about
/// blanks, signs, a leading "0x" and the end of the number.
unsigned int hexadecimal(const QLineEdit &field)
{
    unsigned int number = 0;
    static_cast<void>(std::sscanf(field.text().toLatin1().constData(), "%x", &number));
    return number;
}

/// True if `text` with a margin, in pixels, fits the widget.
bool hasRoom(const QWidget &widget, const QFont &font, const QString &text, QSize margin)
{
    const QFontMetrics metrics(font);
    return metrics.horizontalAdvance(text) + margin.width() <= widget.width() &&
           metrics.height() + margin.height() <= widget.height();
}

} // namespace

AccessRegister::AccessRegister(QWidget *parent, void *handle)
    : QDialog(parent), ui(std::make_unique<Ui_AccessRegister>()), m_pHandle(handle)
{
    ui->setupUi(this);
    fitFont();
    ui->edAddr->setFocus();
}

AccessRegister::~AccessRegister() = default;

/// Uses the largest font size up to the desktop's that truncates no text: the geometry of the
/// widgets is fixed in pixels.
void AccessRegister::fitFont()
{
    constexpr int minPixelSize = 6;
    const QSize indent(4, 0), editFrame(10, 4), buttonFrame(16, 4);
    const QString widestData = QStringLiteral("DDDDDDDD");
    QFont fitted = font();
    int size = QFontInfo(fitted).pixelSize();
    for (; size > minPixelSize; --size) {
        fitted.setPixelSize(size);
        if (hasRoom(*ui->label, fitted, ui->label->text(), indent) &&
            hasRoom(*ui->label_2, fitted, ui->label_2->text(), indent) &&
            hasRoom(*ui->edData, fitted, widestData, editFrame) &&
            hasRoom(*ui->btnWrite, fitted, ui->btnWrite->text(), buttonFrame))
            break;
    }
    fitted.setPixelSize(size);
    setFont(fitted);
}

void AccessRegister::on_btnRead_clicked()
{
    std::uint32_t value = 0;
    OrvalisReadRegister(m_pHandle, hexadecimal(*ui->edAddr), &value);
    ui->edData->setText(QString::asprintf("%08X", value));
}

void AccessRegister::on_btnWrite_clicked()
{
    const PreviewHold hold(m_pMainWindow); // the register may change the sensor's size
    OrvalisWriteRegiser(m_pHandle, hexadecimal(*ui->edAddr), hexadecimal(*ui->edData));
}

void AccessRegister::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Enter) {
        QDialog::keyPressEvent(event);
        return;
    }
    event->accept();
    if (focusWidget() == ui->edAddr)
        on_btnRead_clicked();
    else if (focusWidget() == ui->edData)
        on_btnWrite_clicked();
}
