// SPDX-License-Identifier: MIT
// The texts that guide the user, in one table.
#include "app/Guidance.h"

#include <array>
#include <cstddef>

namespace {

/// In the order of Situation.
constexpr std::array guidance = {
    Guidance{
        "No camera found", "No camera found",
        "Connect a camera to the network or to a USB 3 port and switch it on. It appears in the "
        "camera list by itself, within a few seconds."},
    Guidance{
        "Camera lost", "The camera is gone",
        "Check its cable and its power. It appears in the camera list again by itself; open it "
        "there."},
    Guidance{"No camera open", "Open the camera",
             "Double-click it in the camera list, or choose it there and press Open (Ctrl+O)."},
    Guidance{"No camera open", "Open a camera",
             "Double-click one in the camera list, or press Open (Ctrl+O)."},
    Guidance{"Camera open", "Press Play (F6)",
             "The live image appears here. Control (F4) opens the settings."},
    Guidance{
        "Camera open", "Press Play (F6)",
        "The live image appears here. The settings of this camera are in the tree on the left."},
    Guidance{"Stopped", "", ""},
    Guidance{"Streaming, no frame yet", "Waiting for the first frame",
             "With a trigger enabled, a frame comes only when the trigger fires."},
    Guidance{"Streaming", "", ""},
    Guidance{"Streaming, saving images", "", ""},
};
static_assert(guidance.size() == static_cast<std::size_t>(Situation::LiveAndSaving) + 1);

} // namespace

const Guidance &guidanceIn(Situation situation)
{
    return guidance[static_cast<std::size_t>(situation)];
}
