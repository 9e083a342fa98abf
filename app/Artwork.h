// SPDX-License-Identifier: MIT
// Pictures of the form in the sizes that are sharp where they are shown.
#pragma once

#include <QPixmap>

class QAction;

/// Adds the drawing for 20 pixels that exists of the icon `name` ("camera-open") to the action's
/// icon, which has one for 32 pixels alone. Icons of a desktop's theme stay as they are.
void addToolBarSize(QAction *action, const QString &name);

/// The picture shown until a camera streams.
/// @param devicePixelRatio of the screen; the logical size is the same for all
QPixmap logoFor(qreal devicePixelRatio);
