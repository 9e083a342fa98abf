// SPDX-License-Identifier: MIT
// Asks for the line width and the colour of the cross over the image.
#pragma once

#include <QColor>
#include <QDialog>

class QComboBox;
class QPushButton;
class QSpinBox;

/// Only reports values; whoever owns it paints. GUI thread.
class DrawCenterDlg : public QDialog {
    Q_OBJECT

public:
    explicit DrawCenterDlg(QWidget *parent);

public slots:
    /// Announces width and colour of the cross.
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
