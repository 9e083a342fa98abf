// SPDX-License-Identifier: MIT
// Names that the camera library hands over in fixed-size buffers, and combo boxes filled with them.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>

class QComboBox;

/// The text in `buffer`, which may lack its NUL.
QByteArray boundedText(const char *buffer, std::size_t size);

using NameReader = std::int32_t (*)(OCameraHandle, char *);
using CountReader = std::int32_t (*)(OCameraHandle, std::int32_t *);
using EntryReader = std::int32_t (*)(OCameraHandle, std::int32_t, char *);

/// A setting that is one of a list of names.
struct NameList {
    CountReader count;
    EntryReader entry;
    NameReader current;
};

/// Empty if the library did not write a name.
QByteArray readName(OCameraHandle camera, NameReader read);

/// Appends the names 0 to count - 1, at most 256 of them: a camera that claims more is not
/// believed.
void appendNames(QComboBox *combo, OCameraHandle camera, std::int32_t count, EntryReader read);

/// Selects the first item whose Latin-1 text is `name`; false, and nothing changed, if there is
/// none or no name.
bool selectName(QComboBox *combo, const QByteArray &name);

/// Replaces the items by the camera's and selects its present one.
void fillFromCamera(QComboBox *combo, OCameraHandle camera, const NameList &list);
