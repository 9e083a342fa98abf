// SPDX-License-Identifier: MIT
// The dock that lists the cameras on the bus.
#pragma once

#include <QDockWidget>
#include <QStringList>

#include <memory>

class QModelIndex;
namespace Ui {
class CameraList;
}

/// Rows are in the order of the camera library's indices. GUI thread.
class CameraList : public QDockWidget {
    Q_OBJECT

public:
    explicit CameraList(QWidget *parent = nullptr);
    ~CameraList() override;

    /// Row of the current camera, -1 if there is none.
    int currentCameraIdx() const;

public slots:
    /// Replaces the listed names. Selects the first row if there are several and no camera is open.
    void slotUpdateCameraList(QStringList names);
    /// Disables the list while a camera is open.
    void slotCameraOpened(bool opened);

signals:
    /// The user requests to open the camera of row `index`.
    void sigOpenCamera(int index);

private slots:
    void on_listWidget_doubleClicked(const QModelIndex &index);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void openCurrent();
    void clearCurrent();
    QStringList listedNames() const;

    std::unique_ptr<Ui::CameraList> ui;
    bool m_bOpened = false;
};
