// SPDX-License-Identifier: MIT
// The engine's register cache, enabled for one access at a time.
#pragma once

#include "library/genicam/Glib.h"

namespace orvalis {

/// The engine can cache registers, but it does not notice changes that a camera makes by itself,
/// and it confuses registers that a selector multiplexes. So caching is enabled only from use() to
/// stop(), and each register gets an invalidator with which forget() empties the whole cache. All
/// functions need the link's lock.
class RegisterMemo {
public:
    /// The name of the invalidator. No camera has such a feature.
    static constexpr const char *epochName = "OrvalisRegisterEpoch";

    /// Adds the invalidator to all registers of the description.
    explicit RegisterMemo(ArvGc *genicam);
    RegisterMemo(const RegisterMemo &) = delete;
    RegisterMemo &operator=(const RegisterMemo &) = delete;

    /// Enables caching until stop().
    void use();
    /// Disables caching, as it is initially.
    void stop();
    /// Empties the cache.
    void forget();

private:
    void invalidate(ArvDomNode *node);

    ArvGc *genicam_;
    ArvGcInteger *epoch_ = nullptr; ///< the invalidator; belongs to the description
};

} // namespace orvalis
