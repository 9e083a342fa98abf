// SPDX-License-Identifier: MIT
// Icons and logo of the form in the resolution at which they are displayed.
#include "app/Artwork.h"

#include <QAction>
#include <QIcon>

void addToolBarSize(QAction *action, const QString &name)
{
    QIcon icon = action->icon();
    icon.addFile(QStringLiteral(":/icons/20x20/%1.png").arg(name));
    action->setIcon(icon);
}

QPixmap logoFor(qreal devicePixelRatio)
{
    if (!(devicePixelRatio > 1))
        return QPixmap(QStringLiteral(":/icons/logo.png"));
    QPixmap logo(QStringLiteral(":/icons/logo@2x.png"));
    logo.setDevicePixelRatio(2);
    return logo;
}
