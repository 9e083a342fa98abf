// SPDX-License-Identifier: MIT
// Displays what the user can do next, while the view displays no image.
#pragma once

#include <QLabel>

class QGraphicsView;

/// Lies over a view: below the scene, or over the whole view if there is no room below it. Ignores
/// the mouse. Hidden while it has no text. GUI thread.
class HintLabel : public QLabel {
    Q_OBJECT

public:
    /// @param view parent and owner
    explicit HintLabel(QGraphicsView *view);

    /// @param title one short line; an empty one hides the label
    /// @param detail displayed below the title with line breaks; plain text, may be empty
    void showHint(const QString &title, const QString &detail);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void place();

    QGraphicsView *m_pView; // the parent
};
