// SPDX-License-Identifier: MIT
// What the tests look for on a screenshot.
#pragma once

#include <QImage>
#include <QList>
#include <QRect>

#include <optional>

namespace e2e {

/// How many colours stand in `area`, counted up to a few thousand; a live picture has hundreds.
int coloursIn(const QImage &screen, const QRect &area);

/// How many pixels of `area` differ between two screenshots.
int differences(const QImage &before, const QImage &after, const QRect &area);

/// The smallest rectangle that holds all differences inside of `area`; empty if there are none.
QRect changedIn(const QImage &before, const QImage &after, const QRect &area);

/// Where `icon` stands on the screen within `area`. Only its opaque pixels are compared, so a
/// button that is disabled, and drawn in grey, is not found.
std::optional<QRect> findIcon(const QImage &screen, const QImage &icon, const QRect &area);

/// The lines of text in a white list: one rectangle for each run of rows that holds dark pixels.
QList<QRect> textLines(const QImage &screen, const QRect &area);

/// The first rows of pure white at `x` from `top` down that are at least `minimum` high.
QRect whiteBox(const QImage &screen, int x, int top, int minimum);

} // namespace e2e
