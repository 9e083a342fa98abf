// SPDX-License-Identifier: MIT
// What the window tells its user in each situation, in words and not by colours alone.
#pragma once

/// Where the user stands on the way from a start to a live image.
enum class Situation {
    NoCamera,      ///< nothing is on the bus
    CameraLost,    ///< the open camera has left the bus
    OneNotOpen,    ///< a single camera is listed, not preselected and not open
    NotOpen,       ///< several cameras are listed, none is open
    NotStarted,    ///< a camera is open and has shown nothing yet
    NoPanel,       ///< the same, and the camera has no control panel
    Stopped,       ///< the last image is still displayed
    NoFrameYet,    ///< started, and no frame has arrived
    Live,          ///< frames arrive
    LiveAndSaving, ///< and are saved
};

/// Texts of one situation.
struct Guidance {
    const char *status; ///< for the status bar, where the zoom of an image follows; never empty
    const char *title;  ///< in place of an image, one line; empty where an image is displayed
    const char *detail; ///< below the title
};

const Guidance &guidanceIn(Situation situation);
