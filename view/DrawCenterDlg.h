// SPDX-License-Identifier: MIT
// The dialog of the centre cross: a width, a colour and a button.
#pragma once

#include <QColor>
#include <QDialog>

class QComboBox;
class QPushButton;
class QSpinBox;

/// Only reports values; its owner paints the cross. GUI thread.
class DrawCenterDlg : public QDialog {
    Q_OBJECT

public:
    explicit DrawCenterDlg(QWidget *parent);

public slots:
    /// Emits sigValueApply() with the selected values.
    void on_btnApply_clicked();

signals:
    /// `width` in pixels, 1 to 50.
    void sigValueApply(int width, QColor color);

private:
    void createWidgets();
    void layOut();
    void fitFont();

    QSpinBox *m_pSpiWidth = nullptr;
    QComboBox *m_pCmbColor = nullptr;
    QPushButton *m_pBtnApply = nullptr;
};
