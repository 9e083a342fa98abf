// SPDX-License-Identifier: MIT
// Names the files that frames are saved to.
#pragma once

#include <QDateTime>
#include <QString>

/// "<path>/<camera>_<month>_<day>_<hour>_<minute>_<second>_<millisecond>.<format>". Deliberate:
/// there is no year, and numbers are not padded.
/// @param cameraId Latin-1, at most 64 bytes of it are used; null counts as empty
QString saveFileName(const QString &path, const char *cameraId, const QDateTime &time,
                     const QString &format);
