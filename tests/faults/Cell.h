// SPDX-License-Identifier: MIT
// One cell of the fault matrix: an action while one function of the library is faulty.
#pragma once

#include "tests/faults/Actions.h"

#include <QString>

#include <chrono>
#include <string>
#include <vector>

namespace faults {

enum class Kind {
    Error,   ///< the function returns an error
    Slow,    ///< every call takes long
    Hang,    ///< the call returns when the stream stops, the camera closes, or after a time-out
    Hostile, ///< the function returns hostile data
};

struct Timing {
    std::chrono::milliseconds slow{2000};
    std::chrono::milliseconds hang{3000}; ///< time-out of a hanging call
    unsigned seeds = 3;                   ///< of hostile data
};

struct Outcome {
    QString words;   ///< visible effect
    QString trouble; ///< reason for the failure; empty if the program recovered
};

/// Functions that the action calls, in order of their first calls. Excludes background calls
/// (discovery, preview), which have their own actions.
std::vector<std::string> functionsOf(const Action &action);

/// Runs the action while `function` is faulty. Then ends the fault and checks that the window
/// responds, opens, plays, saves and closes as usual.
Outcome runCell(const Action &action, const std::string &function, Kind kind, const Timing &timing);

} // namespace faults
