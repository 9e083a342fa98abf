// SPDX-License-Identifier: MIT
// The handles that are valid now.
#pragma once

#include "library/core/Camera.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace orvalis {

/// Knows which camera a handle means. Handles are numbers in the guise of pointers and never given
/// out twice, so a stale one is told from a valid one without looking at memory. Any thread.
class Registry {
public:
    /// Null when all handles have been used up.
    OCameraHandle add(std::shared_ptr<Camera> camera);
    /// Null for a handle that is null, closed or foreign.
    std::shared_ptr<Camera> find(OCameraHandle handle) const;
    /// Invalidates the handle.
    std::shared_ptr<Camera> remove(OCameraHandle handle);
    /// True if a camera of that ID is open and not lost.
    bool isOpen(std::string_view cameraId) const;
    /// All open cameras.
    std::vector<std::shared_ptr<Camera>> all() const;

private:
    mutable std::mutex mutex_; // guards everything below
    std::uintptr_t last_ = 0;
    std::map<std::uintptr_t, std::shared_ptr<Camera>> cameras_;
};

} // namespace orvalis
