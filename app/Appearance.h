// SPDX-License-Identifier: MIT
// Corrections to the desktop's colours, where these leave something hard to read or to see.
#pragma once

#include <QColor>
#include <QPalette>

/// How far two opaque colours stand apart: 1 for equal ones, 21 for black and white. The ratio of
/// their relative luminances, as guidelines on accessibility define it.
double contrastOf(const QColor &first, const QColor &second);

/// `colours` with texts of disabled controls that can still be read: what is disabled may hold a
/// value, as a gain does that the camera chooses by itself. Texts that are far enough from their
/// background stay as they are.
QPalette withReadableDisabledTexts(QPalette colours);

/// Applies the above to the application, and gives check boxes and fields a border that can be
/// seen where the style draws it in the colour of a dark background. Holds for the colours that the
/// desktop changes to later, too. Once, before the first window.
void applyAppearance();
