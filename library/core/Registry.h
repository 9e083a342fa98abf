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

/// Maps handles to cameras. Handles are numbers cast to pointers and are never reused, so an
/// invalid handle is detected without accessing memory. Any thread.
class Registry {
public:
    /// Null if there are no handles left.
    OCameraHandle add(std::shared_ptr<Camera> camera);
    /// Null for a handle that is null, closed or foreign.
    std::shared_ptr<Camera> find(OCameraHandle handle) const;
    /// Invalidates the handle and returns its camera, or null.
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
