// SPDX-License-Identifier: MIT
// Shared by fuzzers of widgets: the application, and a camera of the recording library.
#pragma once

#include "tests/fakelibrary/FakeOrvalis.h"

#include <QApplication>

namespace fuzz {

/// Creates the application that widgets need, without a display, once for all inputs. Deliberate:
/// it is never freed, because the widgets are static and their order of destruction is undefined.
inline void needApplication()
{
    static int argc = 1;
    static char name[] = "fuzzer";
    static char *argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    [[maybe_unused]] static const auto *const application = new QApplication(argc, argv);
}

/// An open camera of the recording library.
inline OCameraHandle openCamera()
{
    needApplication();
    OrvalisInit();
    OCameraHandle handle = nullptr;
    OrvalisOpenCamera("CAM-A", &handle);
    return handle;
}

} // namespace fuzz
