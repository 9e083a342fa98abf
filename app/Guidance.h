// SPDX-License-Identifier: MIT
// What the window tells its user in each situation, in words and not by colours alone.
#pragma once

/// Where the user stands on the way from a start to a live picture.
enum class Situation {
    NoCamera,      ///< nothing is on the bus
    CameraLost,    ///< the open camera has left the bus
    OneNotOpen,    ///< a single camera is listed, not preselected and not open
    NotOpen,       ///< several cameras are listed, none is open
    NotStarted,    ///< a camera is open and has shown nothing yet
    NoPanel,       ///< the same, and the camera has no control panel
    Stopped,       ///< the last picture is still on show
    NoPictureYet,  ///< started, and no picture came so far
    Live,          ///< pictures come
    LiveAndSaving, ///< and are saved
};

/// Texts of one situation.
struct Guidance {
    const char *status; ///< for the status bar, where the zoom of a picture follows; never empty
    const char *title;  ///< in place of a picture, one line; empty where a picture is on show
    const char *detail; ///< below the title
};

const Guidance &guidanceIn(Situation situation);
