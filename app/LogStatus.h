// SPDX-License-Identifier: MIT
// The dock that lists log messages with time stamps.
#pragma once

#include <QDateTime>
#include <QDockWidget>

#include <memory>

namespace Ui {
class LogStatus;
}

/// GUI thread.
class LogStatus : public QDockWidget {
    Q_OBJECT

public:
    explicit LogStatus(QWidget *parent = nullptr);
    ~LogStatus() override;

    /// The line for `message`, logged at `time`.
    static QString logLine(const QDateTime &time, const QString &message);

public slots:
    /// Appends a line. A list with more than 1000 lines is cleared first.
    void slotTraceLog(QString message);

private:
    std::unique_ptr<Ui::LogStatus> ui;
};
