// SPDX-License-Identifier: MIT
// Frame count and rates of the stream, in the status bar.
#pragma once

#include "capture/StatusFigures.h"

#include <QObject>
#include <QTimer>

#include <thread>

class QLabel;
class QStatusBar;

/// Two labels of a fixed width: any other label makes the whole window lay itself out again with
/// every text, up to 1000 times a second, and moves what is beside it. GUI thread, except put().
class StreamStatus : public QObject {
public:
    /// Adds both labels to `bar`, which owns them and this object.
    explicit StreamStatus(QStatusBar *bar);

    /// Displays the figures of MainWindow::sigStatusBar(). On another thread than the GUI's it
    /// leaves them for the next refresh, without an allocation. Any thread.
    void put(int kind, double a, double b);

    /// Refreshes 30 times a second until stop().
    void start() { m_timer.start(); }
    /// Ends start().
    void stop() { m_timer.stop(); }
    /// Discards figures that are not displayed yet.
    void discard() { (void)m_figures.take(); }
    /// After the last frame: displays its number. A rate that was measured just before the end is
    /// discarded.
    void showFinalCount();
    /// What the rate label displays between two streams.
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
