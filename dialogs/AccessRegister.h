// SPDX-License-Identifier: MIT
// A small dialog that reads and writes one 32-bit register of the camera by its address.
#pragma once

#include <QDialog>

#include <memory>

class QKeyEvent;
class Ui_AccessRegister;

/// GUI thread; the library is called synchronously and its failures are silent.
class AccessRegister : public QDialog {
    Q_OBJECT

public:
    /// `handle` is the open camera's OCameraHandle, not owned; null is harmless.
    AccessRegister(QWidget *parent, void *handle);
    ~AccessRegister() override;

    /// Keypad Enter reads from the address field and writes from the data field.
    void keyPressEvent(QKeyEvent *event) override;

public slots:
    /// Shows the register at the address in the address field.
    void on_btnRead_clicked();
    /// Writes the data field to the register at the address in the address field.
    void on_btnWrite_clicked();

private:
    void fitFont();

    std::unique_ptr<Ui_AccessRegister> ui;
    void *m_pHandle;
};
