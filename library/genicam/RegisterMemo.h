// SPDX-License-Identifier: MIT
// The engine's register cache, for the time of one access.
#pragma once

#include "library/genicam/Glib.h"

namespace orvalis {

/// The engine can keep what it reads from registers, but nothing tells it when a camera has changed
/// by itself, and it takes the register of one position of a selector for that of another. So it
/// keeps registers only while use() holds, and each of them gets an invalidator of ours, by which
/// forget() empties all of it. All of it needs the camera's turn.
class RegisterMemo {
public:
    /// The invalidator. No camera has a feature of this name.
    static constexpr const char *epochName = "OrvalisRegisterEpoch";

    /// Gives the invalidator to all registers of the description.
    explicit RegisterMemo(ArvGc *genicam);
    RegisterMemo(const RegisterMemo &) = delete;
    RegisterMemo &operator=(const RegisterMemo &) = delete;

    /// Registers that are read are kept, and served from what was kept, until stop().
    void use();
    /// Every read goes to the camera, as it is at first.
    void stop();
    /// What was kept is not served any more.
    void forget();

private:
    void invalidate(ArvDomNode *node);

    ArvGc *genicam_;
    ArvGcInteger *epoch_ = nullptr; ///< the invalidator; belongs to the description
};

} // namespace orvalis
