// SPDX-License-Identifier: MIT
// Tells the user what to do next, where there is no picture to look at.
#pragma once

#include <QLabel>

class QGraphicsView;

/// Lies over a view, below what its scene shows, or in its place where there is no room for both.
/// Lets the mouse through. Hidden while it has no text. GUI thread.
class HintLabel : public QLabel {
    Q_OBJECT

public:
    /// @param view parent and owner
    explicit HintLabel(QGraphicsView *view);

    /// @param title one short line; nothing is shown if it is empty
    /// @param detail what stands below it, broken into lines; plain text, may be empty
    void showHint(const QString &title, const QString &detail);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void place();

    QGraphicsView *m_pView; // the parent
};
