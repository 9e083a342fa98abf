// SPDX-License-Identifier: MIT
// All actions of a user or the bus that make the window call the library.
#pragma once

#include "tests/faults/Bench.h"

#include <span>
#include <string_view>

namespace faults {

struct Action {
    std::string_view name;
    /// Steps before the action, without a fault. Null: none, and no window exists.
    void (*prepare)(Bench &bench);
    /// The action. Returns when it is complete, or when it hangs in the library on another thread.
    void (*act)(Bench &bench);
    /// The only function that the action tests; empty for every function that it calls.
    std::string_view only;
};

std::span<const Action> actions();

/// The action of that name, null if there is none.
const Action *findAction(std::string_view name);

} // namespace faults
