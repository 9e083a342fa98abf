// SPDX-License-Identifier: MIT
// Another program that controls a GigE Vision camera:
//
//   other_program <address of the camera> [<process>]
//
// Takes control, prints "controls", and keeps it until its standard input ends. If the number of a
// process is given, suspends that process until it has lost control, because a controller that is
// silent for some seconds loses the camera.
#include <arv.h>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

ArvDevice *openedAndControlled(GInetAddress *address)
{
    GInetAddress *here = g_inet_address_new_from_string(
        g_inet_address_get_is_loopback(address) ? "127.0.0.1" : "10.77.0.1");
    for (;;) {
        ArvDevice *device = arv_gv_device_new(here, address, nullptr);
        if (device != nullptr && arv_gv_device_is_controller(ARV_GV_DEVICE(device))) {
            g_object_unref(here);
            return device;
        }
        g_clear_object(&device);
    }
}

} // namespace

int main(int count, char **arguments)
{
    if (count < 2) {
        return 1;
    }
    GInetAddress *address = g_inet_address_new_from_string(arguments[1]);
    const pid_t other = count > 2 ? std::atoi(arguments[2]) : 0;
    if (other > 0) {
        kill(other, SIGSTOP);
    }
    ArvDevice *device = openedAndControlled(address);
    if (other > 0) {
        kill(other, SIGCONT);
    }
    std::puts("controls");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    g_object_unref(device);
    g_object_unref(address);
    arv_shutdown();
    return 0;
}
