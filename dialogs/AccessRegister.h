// SPDX-License-Identifier: MIT
// A dialog that reads and writes a 32-bit register of the camera by its address.
#pragma once

#include <QDialog>

#include <memory>

class QKeyEvent;
class StreamControl;
class Ui_AccessRegister;

/// GUI thread; the library is called synchronously and its failures are silent.
class AccessRegister : public QDialog {
    Q_OBJECT

public:
    /// camera's OCameraHandle, not owned; may be null.
    AccessRegister(QWidget *parent, void *handle);
    ~AccessRegister() override;

    /// @param stream pauses the sensor preview around writes; not owned, may be null
    void setStreamControl(StreamControl *stream) { m_pMainWindow = stream; }

    /// Keypad Enter reads from the address field and writes from the data field.
    void keyPressEvent(QKeyEvent *event) override;

public slots:
    /// Reads and displays the register at the address in the address field.
    void on_btnRead_clicked();
    /// Writes the data field to the register at the address in the address field.
    void on_btnWrite_clicked();

private:
    void fitFont();

    std::unique_ptr<Ui_AccessRegister> ui;
    StreamControl *m_pMainWindow = nullptr; // not owned; may be null
    void *m_pHandle;
};
