// SPDX-License-Identifier: MIT
// Names the files that frames are saved to.
#include "capture/SaveFileName.h"

#include "sdk/OrvalisAPI.h"

#include <string.h>

QString saveFileName(const QString &path, const char *cameraId, const QDateTime &time,
                     const QString &format)
{
    const QString camera =
        cameraId == nullptr
            ? QString()
            : QString::fromLatin1(cameraId, static_cast<int>(strnlen(cameraId, ORVALIS_NAME_SIZE)));
    const QDate date = time.date();
    const QTime clock = time.time();
    // A single call of arg() leaves a "%2" inside the path as it is.
    return QStringLiteral("%1/%2_%3_%4_%5_%6_%7_%8.%9")
        .arg(path, camera, QString::number(date.month()), QString::number(date.day()),
             QString::number(clock.hour()), QString::number(clock.minute()),
             QString::number(clock.second()), QString::number(clock.msec()), format);
}
