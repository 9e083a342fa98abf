// SPDX-License-Identifier: MIT
// What the tests look for on a screenshot.
#pragma once

#include <QImage>
#include <QList>
#include <QRect>

#include <optional>

namespace e2e {

/// How many pixels of `area` differ between two screenshots.
int differences(const QImage &before, const QImage &after, const QRect &area);

/// Where `icon` stands on the screen within `area`. Only its opaque pixels are compared, so a
/// button that is disabled, and drawn in grey, is not found.
std::optional<QRect> findIcon(const QImage &screen, const QImage &icon, const QRect &area);

/// The lines of text in a list: one rectangle for each run of rows that holds dark pixels; a line
/// that is selected is dark as a whole.
QList<QRect> textLines(const QImage &screen, const QRect &area);

/// The first run of pixels at `x` from `top` down, at least `minimum` high, that are white or
/// coloured, as a list with a selected line is and the grey around it is not. One pixel wide.
QRect listAt(const QImage &screen, int x, int top, int minimum);

} // namespace e2e
