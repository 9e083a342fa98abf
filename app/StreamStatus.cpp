// SPDX-License-Identifier: MIT
// Frame count and rates of the stream, in the status bar.
#include "app/StreamStatus.h"

#include <QLabel>
#include <QStatusBar>

#include <cmath>

namespace {

/// The period at which frames are displayed.
constexpr int statusPeriodMs = 33;

/// Fixes the size of the label, which grows with the text and never shrinks.
void showIn(QLabel *label, const QString &text)
{
    label->setText(text);
    const QSize size = label->fontMetrics().size(Qt::TextSingleLine, text);
    label->setFixedSize(size.expandedTo(label->minimumSize()));
}

qint64 wholeNumber(double value)
{
    constexpr double limit = 9.2e18;
    return std::isnan(value) ? 0 : static_cast<qint64>(qBound(-limit, value, limit));
}

} // namespace

StreamStatus::StreamStatus(QStatusBar *bar)
    : QObject(bar), m_rate(new QLabel(bar)), m_received(new QLabel(bar))
{
    // Reserve the width of the longest expected numbers.
    showCount(99999999);
    showRates({999.9, 9999.9});
    bar->addPermanentWidget(m_rate);
    bar->addPermanentWidget(m_received);
    m_timer.setInterval(statusPeriodMs);
    connect(&m_timer, &QTimer::timeout, this, &StreamStatus::refresh);
}

void StreamStatus::put(int kind, double a, double b)
{
    if (kind == 0)
        m_figures.putCount(a);
    else if (kind == 1)
        m_figures.putRates({a, b});
    if (std::this_thread::get_id() == m_guiThread)
        refresh();
}

void StreamStatus::showFinalCount()
{
    if (const auto count = m_figures.take().count)
        showCount(*count);
}

void StreamStatus::showNoRate()
{
    showIn(m_rate, QStringLiteral("               0.0 fps (0.0 MB/s)"));
}

void StreamStatus::refresh()
{
    const StatusFigures::Newest newest = m_figures.take();
    if (newest.rates)
        showRates(*newest.rates);
    if (newest.count)
        showCount(*newest.count);
}

void StreamStatus::showCount(double count)
{
    showIn(m_received, QStringLiteral("Recv :                 %1").arg(wholeNumber(count)));
}

void StreamStatus::showRates(const StreamRates &rates)
{
    const auto text = formatRates(rates.framesPerSecond, rates.megabytesPerSecond);
    showIn(m_rate,
           QStringLiteral("                        %1").arg(QString::fromLatin1(text.data())));
}
