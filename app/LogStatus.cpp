// SPDX-License-Identifier: MIT
// The dock that lists log messages with time stamps.
#include "app/LogStatus.h"

#include "ui_LogStatus.h"

namespace {

constexpr int maxLines = 1000;

} // namespace

LogStatus::LogStatus(QWidget *parent) : QDockWidget(parent), ui(std::make_unique<Ui::LogStatus>())
{
    ui->setupUi(this);
    setFocusProxy(ui->listWidget);
    ui->listWidget->setTextElideMode(Qt::ElideNone); // long lines scroll instead
}

LogStatus::~LogStatus() = default;

QString LogStatus::logLine(const QDateTime &time, const QString &message)
{
    const QDate date = time.date();
    const QTime clock = time.time();
    // Deliberate: the year also replaces the day, and no number is padded.
    const QString year = QString::number(date.year());
    return QStringLiteral("[%1-%2-%3 %4:%5:%6.%7] %8")
        .arg(year, QString::number(date.month()), year, QString::number(clock.hour()),
             QString::number(clock.minute()), QString::number(clock.second()),
             QString::number(clock.msec()), message);
}

void LogStatus::slotTraceLog(QString message)
{
    const QDateTime now = QDateTime::currentDateTime();
    if (ui->listWidget->count() > maxLines)
        ui->listWidget->clear();
    ui->listWidget->addItem(logLine(now, message));
    ui->listWidget->scrollToBottom();
}
