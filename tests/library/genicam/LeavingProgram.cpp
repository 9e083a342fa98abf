// SPDX-License-Identifier: MIT
// A program that streams from a camera until the camera freezes, and then ends:
//
//   leaving_program <ID of the camera> at-once|alone
//
// Prints "streams" with the first frame. After a line on its standard input it stops, closes and
// ends; with "alone" it first waits until as many threads run as before it opened the camera, and
// prints this.
#include "sdk/OrvalisAPI.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <thread>

namespace {

std::atomic<bool> streams{false};

void say(const char *what)
{
    std::puts(what);
    std::fflush(stdout);
}

void onFrame(OImageFrame *)
{
    if (!streams.exchange(true)) {
        say("streams");
    }
}

long threads()
{
    using Tasks = std::filesystem::directory_iterator;
    return std::distance(Tasks("/proc/self/task"), Tasks());
}

OCameraHandle opened(const char *id)
{
    OCameraHandle handle = nullptr;
    std::uint32_t count = 0;
    while (OrvalisOpenCamera(id, &handle) != ORVALIS_OK) {
        OrvalisNumberOfCameras(&count);
    }
    return handle;
}

} // namespace

int main(int count, char **arguments)
{
    if (count < 3 || OrvalisInit() != ORVALIS_OK) {
        return 1;
    }
    std::uint32_t cameras = 0;
    OrvalisNumberOfCameras(&cameras); // starts Aravis' threads
    const long before = threads();
    const OCameraHandle handle = opened(arguments[1]);
    if (OrvalisStartAcquisition(handle, onFrame) != ORVALIS_OK) {
        return 2;
    }
    std::getchar();
    OrvalisStopAcquisition(handle);
    OrvalisCloseCamera(handle);
    if (std::strcmp(arguments[2], "alone") == 0) {
        while (threads() > before) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        say("alone");
    }
    return OrvalisUninit() == ORVALIS_OK ? 0 : 3;
}
