// SPDX-License-Identifier: MIT
// What the main window offers in which state, and what its status bar says.
#include "app/MainWindow.h"

#include "ui_MainWindow.h"
#include "view/HintLabel.h"

#include <QLabel>
#include <QStatusBar>

#include <cmath>

namespace {

enum class Change { Keep, On, Off };

struct ActionRule {
    QAction *Ui::MainWindow::*action;
    Change openedOrClosed; // stage 0
    Change justOpened;     // stage 1
    Change streaming;      // any other stage
};

using Form = Ui::MainWindow;

// Kept: right after an open, Stop, Save, the zoom actions and Draw Center stay as the last close
// left them, until streaming starts.
constexpr ActionRule actionRules[] = {
    {&Form::actionOpen, Change::Off, Change::Off, Change::Keep},
    {&Form::actionClose, Change::On, Change::On, Change::Keep},
    {&Form::actionRegisterAccess_2, Change::On, Change::On, Change::Keep},
    {&Form::actionControl, Change::On, Change::On, Change::Keep},
    {&Form::actionCameraReset, Change::On, Change::On, Change::Keep},
    {&Form::actionOneGrab, Change::On, Change::On, Change::Off},
    {&Form::actionPlay, Change::On, Change::On, Change::Off},
    {&Form::actionStop, Change::On, Change::Off, Change::On},
    {&Form::actionSave, Change::On, Change::Keep, Change::On},
    {&Form::actionZoom100, Change::On, Change::Keep, Change::On},
    {&Form::actionZoomFIT, Change::On, Change::Keep, Change::On},
    {&Form::actionZoomIN, Change::On, Change::Keep, Change::On},
    {&Form::actionZoomOUT, Change::On, Change::Keep, Change::On},
    {&Form::actionDrawCenter, Change::On, Change::Keep, Change::On},
};

/// Until then the first picture of a stream is not missed: mostly it comes at once.
constexpr int patienceMs = 700;

Change changeAt(const ActionRule &rule, int stage)
{
    if (stage == 0)
        return rule.openedOrClosed;
    return stage == 1 ? rule.justOpened : rule.streaming;
}

/// "43 %", and below ten "4.3 %".
QString percentText(qreal factor)
{
    const qreal percent = 100 * factor;
    return QString::number(percent, 'f', percent < 9.95 ? 1 : 0) + QStringLiteral(" %");
}

qint64 wholeNumber(double value)
{
    constexpr double limit = 9.2e18;
    return std::isnan(value) ? 0 : static_cast<qint64>(qBound(-limit, value, limit));
}

} // namespace

void MainWindow::UpdateUIStatus(bool on, int stage)
{
    for (const ActionRule &rule : actionRules) {
        const Change change = changeAt(rule, stage);
        if (change != Change::Keep)
            (ui.get()->*rule.action)->setEnabled(on == (change == Change::On));
    }
}

void MainWindow::showInStatusBar(QLabel *label, const QString &text)
{
    label->setText(text);
    const QSize size = label->fontMetrics().size(Qt::TextSingleLine, text);
    label->setFixedSize(size.expandedTo(label->minimumSize()));
}

void MainWindow::slotStatusBar(int kind, double a, double b)
{
    if (kind == 0)
        m_statusFigures.putCount(a);
    else if (kind == 1)
        m_statusFigures.putRates({a, b});
    if (std::this_thread::get_id() == m_guiThread)
        refreshStatus();
}

void MainWindow::showCount(double count)
{
    showInStatusBar(m_pRecvLabel,
                    QStringLiteral("Recv :                 %1").arg(wholeNumber(count)));
}

void MainWindow::showRates(const StreamRates &rates)
{
    const auto text = formatRates(rates.framesPerSecond, rates.megabytesPerSecond);
    showInStatusBar(
        m_pRateLabel,
        QStringLiteral("                        %1").arg(QString::fromLatin1(text.data())));
}

void MainWindow::refreshStatus()
{
    const StatusFigures::Newest newest = m_statusFigures.take();
    if (newest.rates)
        showRates(*newest.rates);
    if (newest.count)
        showCount(*newest.count);
}

// After the last frame. A rate that was measured just before the end is discarded.
void MainWindow::showFinalCount()
{
    if (const auto count = m_statusFigures.take().count)
        showCount(*count);
}

Situation MainWindow::situation() const
{
    if (m_session.is(SessionStep::Lost))
        return Situation::CameraLost;
    if (m_hCamera == nullptr && m_nCameras < 2)
        return m_nCameras == 0 ? Situation::NoCamera : Situation::OneNotOpen;
    if (m_hCamera == nullptr)
        return Situation::NotOpen;
    if (!m_bStreaming && m_bPicture)
        return Situation::Stopped;
    if (!m_bStreaming)
        return m_bNUCCamera ? Situation::NoPanel : Situation::NotStarted;
    if (!m_bPicture && m_sinceStart.hasExpired(patienceMs))
        return Situation::NoPictureYet;
    return ui->actionSave->isChecked() ? Situation::LiveAndSaving : Situation::Live;
}

void MainWindow::updateGuidance()
{
    const Guidance &guidance = guidanceIn(situation());
    if (m_bPicture)
        m_pHint->showHint({}, {});
    else
        m_pHint->showHint(QLatin1String(guidance.title), QLatin1String(guidance.detail));
    QString status = QLatin1String(guidance.status);
    if (m_bPicture)
        status += QStringLiteral(", zoom ") + percentText(ui->graphicsView->transform().m11());
    statusBar()->showMessage(status);
}

void MainWindow::streamBegins()
{
    m_sinceStart.start();
    QTimer::singleShot(patienceMs + 1, this, &MainWindow::updateGuidance);
}
