// SPDX-License-Identifier: MIT
// Displays what the user can do next, while the view displays no image.
#include "view/HintLabel.h"

#include <QEvent>
#include <QGraphicsView>

#include <algorithm>

namespace {

constexpr int gap = 12;     ///< pixels to the scene above and to the view's borders
constexpr int widest = 480; ///< pixels; longer lines are hard to read

QString richText(const QString &title, const QString &detail)
{
    const QString heading = QStringLiteral("<p style='font-size:large; font-weight:600; "
                                           "margin-top:0; margin-bottom:4px'>%1</p>")
                                .arg(title.toHtmlEscaped());
    return detail.isEmpty() ? heading : heading + detail.toHtmlEscaped();
}

} // namespace

HintLabel::HintLabel(QGraphicsView *view) : QLabel(view), m_pView(view)
{
    setObjectName(QStringLiteral("laHint"));
    setTextFormat(Qt::RichText);
    setWordWrap(true);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAutoFillBackground(true); // hides the scene if there is no room below it
    hide();
    view->viewport()->installEventFilter(this);
}

void HintLabel::showHint(const QString &title, const QString &detail)
{
    setText(title.isEmpty() ? QString() : richText(title, detail));
    setVisible(!title.isEmpty());
    place();
}

bool HintLabel::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        place();
    return QLabel::eventFilter(watched, event);
}

void HintLabel::place()
{
    const QRect all = m_pView->viewport()->geometry();
    const QRect room = all.adjusted(gap, gap, -gap, -gap);
    const int width = std::clamp(room.width(), 1, widest);
    setMargin(0); // heightForWidth() includes the margin
    const int height = heightForWidth(width);
    // The view centres a scene that is smaller than itself.
    const int below = room.center().y() + qRound(m_pView->sceneRect().height() / 2) + gap;
    const bool fits =
        below + height <= room.bottom() + 1 && m_pView->sceneRect().width() <= all.width();
    setMargin(fits ? 0 : gap);
    setAlignment(Qt::AlignHCenter | (fits ? Qt::AlignTop : Qt::AlignVCenter));
    setGeometry(fits ? QRect(room.center().x() - width / 2, below, width, height) : all);
}
