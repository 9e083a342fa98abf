// SPDX-License-Identifier: MIT
// Icons and logo of the form in the resolution at which they are displayed.
#pragma once

#include <QPixmap>

class QAction;

/// Adds the 20-pixel variant of the icon `name`, such as "camera-open", to the icon of `action`,
/// which has only one for 32 pixels. Icons of a desktop theme stay unchanged.
void addToolBarSize(QAction *action, const QString &name);

/// The image displayed until a camera streams.
/// @param devicePixelRatio of the screen; the logical size is the same for all
QPixmap logoFor(qreal devicePixelRatio);
