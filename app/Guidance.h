// SPDX-License-Identifier: MIT
// Texts that guide the user in each situation.
#pragma once

/// The situations between the start of the program and a live image, as the user sees them.
enum class Situation {
    NoCamera,      ///< nothing is on the bus
    CameraLost,    ///< the open camera has left the bus
    OneNotOpen,    ///< a single camera is listed, not preselected and not open
    NotOpen,       ///< several cameras are listed, none is open
    NotStarted,    ///< a camera is open and no image has been displayed yet
    NoPanel,       ///< the same, and the camera has no control panel
    Stopped,       ///< the last image is still displayed
    NoFrameYet,    ///< started, and no frame has arrived
    Live,          ///< frames arrive
    LiveAndSaving, ///< frames arrive and are saved
};

/// Texts of one situation.
struct Guidance {
    const char *status; ///< for the status bar, before the zoom of an image; never empty
    const char *title;  ///< one line in place of an image; empty while an image is displayed
    const char *detail; ///< below the title
};

const Guidance &guidanceIn(Situation situation);
