// SPDX-License-Identifier: MIT
// Bounded reading of the camera library's names.
#include "control/LibraryNames.h"

#include <QComboBox>

#include <algorithm>
#include <cstring>

namespace {
constexpr std::int32_t maxEntries = 256;
}

QByteArray boundedText(const char *buffer, std::size_t size)
{
    return QByteArray(buffer, static_cast<int>(strnlen(buffer, size)));
}

QByteArray readName(OCameraHandle camera, NameReader read)
{
    char buffer[ORVALIS_NAME_SIZE] = {};
    read(camera, buffer);
    return boundedText(buffer, sizeof buffer);
}

void appendNames(QComboBox *combo, OCameraHandle camera, std::int32_t count, EntryReader read)
{
    for (std::int32_t index = 0; index < std::min(count, maxEntries); ++index) {
        char buffer[ORVALIS_NAME_SIZE] = {};
        read(camera, index, buffer);
        combo->addItem(QString::fromLatin1(boundedText(buffer, sizeof buffer)));
    }
}

bool selectName(QComboBox *combo, const QByteArray &name)
{
    if (name.isEmpty())
        return false; // unreadable, and must not match an unreadable entry
    for (int index = 0; index < combo->count(); ++index) {
        if (combo->itemText(index).toLatin1() == name) {
            combo->setCurrentIndex(index);
            return true;
        }
    }
    return false;
}

void fillFromCamera(QComboBox *combo, OCameraHandle camera, const NameList &list)
{
    combo->clear();
    std::int32_t count = 0;
    list.count(camera, &count);
    appendNames(combo, camera, count, list.entry);
    selectName(combo, readName(camera, list.current));
}
