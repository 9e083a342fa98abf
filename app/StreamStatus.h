// SPDX-License-Identifier: MIT
// Frame count and rates of the stream, in the status bar.
#pragma once

#include "capture/StatusFigures.h"

#include <QObject>
#include <QTimer>

#include <thread>

class QLabel;
class QStatusBar;

/// Two labels of fixed size: any other label would make Qt lay out the whole window for each new
/// text, and would move its neighbours. GUI thread, except put().
class StreamStatus : public QObject {
public:
    /// Adds both labels to `bar`, which owns them and this object.
    explicit StreamStatus(QStatusBar *bar);

    /// Displays the figures of MainWindow::sigStatusBar(). On any thread but the GUI thread, stores
    /// them for the next refresh without an allocation. Any thread.
    void put(int kind, double a, double b);

    /// Refreshes 30 times a second until stop().
    void start() { m_timer.start(); }
    /// Ends the refreshes.
    void stop() { m_timer.stop(); }
    /// Discards figures that are not displayed yet.
    void discard() { (void)m_figures.take(); }
    /// Displays the number of the last frame. Discards a pending rate.
    void showFinalCount();
    /// Displays a rate of zero, for the time between two streams.
    void showNoRate();

private:
    void refresh();
    void showCount(double count);
    void showRates(const StreamRates &rates);

    StatusFigures m_figures;
    const std::thread::id m_guiThread = std::this_thread::get_id();
    QTimer m_timer;
    QLabel *m_rate;     ///< owned by the status bar
    QLabel *m_received; ///< likewise
};
