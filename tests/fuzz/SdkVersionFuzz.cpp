// SPDX-License-Identifier: MIT
// Fuzzes the reader of the version block in the camera library's header: the input is the header.
#include "dialogs/AboutDialog.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/fuzz/Widgets.h"

#include <QFile>
#include <QTemporaryDir>

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    fuzz::needApplication();
    static const QTemporaryDir folder;
    static quint64 number = 0;
    // A different name for each header: QSettings caches files.
    QFile header(folder.filePath(QString::number(++number)));
    const QByteArray content(reinterpret_cast<const char *>(data), static_cast<int>(size));
    FUZZ_CHECK(header.open(QIODevice::ReadWrite));
    FUZZ_CHECK(header.write(content) == content.size() && header.flush());

    const AboutDialog::SdkVersions versions = AboutDialog::readSdkVersions(header.fileName());
    FUZZ_CHECK(versions.package.size() <= 64);
    FUZZ_CHECK(versions.library.size() <= 64);
    FUZZ_CHECK(header.seek(0) && header.readAll() == content);
    FUZZ_CHECK(header.remove());
    return 0;
}
