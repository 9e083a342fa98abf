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
    /// Shows `names` in place of what was listed. Selects the first of several while no camera is
    /// open.
    void slotUpdateCameraList(QStringList names);
    /// While a camera is open no other can be picked.
    void slotCameraOpened(bool opened);

signals:
    /// The user wants the camera of row `index` opened.
    void sigOpenCamera(int index);

private slots:
    void on_listWidget_doubleClicked(const QModelIndex &index);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void openCurrent();
    void chooseNone();
    QStringList shownNames() const;

    std::unique_ptr<Ui::CameraList> ui;
    bool m_bOpened = false;
};
