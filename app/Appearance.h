// SPDX-License-Identifier: MIT
// Corrections to desktop colours that make texts unreadable or borders invisible.
#pragma once

#include <QColor>
#include <QPalette>

/// The contrast of two opaque colours: the ratio of their relative luminances, as accessibility
/// guidelines define it; 1 for equal colours, 21 for black and white.
double contrastOf(const QColor &first, const QColor &second);

/// Returns `colours` with enough contrast in the texts of disabled controls: a disabled control may
/// display a value, such as a gain that the camera controls itself. Texts with enough contrast stay
/// unchanged.
QPalette withReadableDisabledTexts(QPalette colours);

/// Applies withReadableDisabledTexts() to the application, also when the desktop's colours change
/// later, and draws visible borders around check boxes and fields if the style draws them in the
/// colour of a dark background. Call it once, before the first window.
void applyAppearance();
