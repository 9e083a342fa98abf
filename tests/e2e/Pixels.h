// SPDX-License-Identifier: MIT
// Finds things in screenshots.
#pragma once

#include <QImage>
#include <QList>
#include <QRect>

#include <optional>

namespace e2e {

/// Number of pixels in `area` that differ between two screenshots.
int differences(const QImage &before, const QImage &after, const QRect &area);

/// Position of `icon` on the screen within `area`. Compares only its opaque pixels, so it does not
/// find a disabled button, which is grey.
std::optional<QRect> findIcon(const QImage &screen, const QImage &icon, const QRect &area);

/// The lines of text in a list: one rectangle for each run of rows with dark pixels. A selected
/// line is completely dark.
QList<QRect> textLines(const QImage &screen, const QRect &area);

/// The first run of white or coloured pixels at `x` from `top` down, at least `minimum` high: a
/// list, which may have a selected line, on a grey background. One pixel wide.
QRect listAt(const QImage &screen, int x, int top, int minimum);

} // namespace e2e
