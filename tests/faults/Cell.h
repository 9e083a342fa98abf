// SPDX-License-Identifier: MIT
// One cell of the fault matrix: an action while one function of the library is at fault.
#pragma once

#include "tests/faults/Actions.h"

#include <QString>

#include <chrono>
#include <string>
#include <vector>

namespace faults {

enum class Kind {
    Error,   ///< the function refuses
    Slow,    ///< every call takes long
    Hang,    ///< the call returns when the stream is stopped or the camera closed, or in the end
    Hostile, ///< the function answers with hostile data
};

struct Timing {
    std::chrono::milliseconds slow{2000};
    std::chrono::milliseconds hang{3000}; ///< after which a call that hangs returns in any case
    unsigned seeds = 3;                   ///< of hostile data
};

struct Outcome {
    QString words;   ///< what the user has seen
    QString trouble; ///< why the program did not survive; empty if it did
};

/// Functions that the action calls, in order of their first calls. Calls that come by themselves
/// (discovery, preview) are left to the actions that are about them.
std::vector<std::string> functionsOf(const Action &action);

/// Does the action while `function` is at fault. Then the fault ends, and the window has to answer,
/// open, play, save and close as ever.
Outcome runCell(const Action &action, const std::string &function, Kind kind, const Timing &timing);

} // namespace faults
