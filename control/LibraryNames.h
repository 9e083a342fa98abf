// SPDX-License-Identifier: MIT
// Names that the camera library returns in fixed-size buffers, and combo boxes filled with them.
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

/// The library calls of a setting that is one of a list of names.
struct NameList {
    CountReader count;
    EntryReader entry;
    NameReader current;
};

/// The name that `read` writes; empty if it writes none.
QByteArray readName(OCameraHandle camera, NameReader read);

/// Appends the names 0 to count - 1, at most 256: larger counts are implausible.
void appendNames(QComboBox *combo, OCameraHandle camera, std::int32_t count, EntryReader read);

/// Selects the first item whose Latin-1 text is `name`. Returns false and keeps the selection if
/// there is none or `name` is empty.
bool selectName(QComboBox *combo, const QByteArray &name);

/// Replaces the items with the camera's list and selects the camera's current entry.
void fillFromCamera(QComboBox *combo, OCameraHandle camera, const NameList &list);
