// SPDX-License-Identifier: MIT
// Everything a user or the bus can do with the window that makes it call the library.
#pragma once

#include "tests/faults/Bench.h"

#include <span>
#include <string_view>

namespace faults {

struct Action {
    std::string_view name;
    /// What comes before, without a fault. Null for nothing: not even a window.
    void (*prepare)(Bench &bench);
    /// The action itself. Returns when it is done, or hangs in the library on another thread.
    void (*act)(Bench &bench);
    /// The one function that the action is about; empty for every one that it calls.
    std::string_view only;
};

std::span<const Action> actions();

/// The action of that name, null if there is none.
const Action *findAction(std::string_view name);

} // namespace faults
