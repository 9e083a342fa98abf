// SPDX-License-Identifier: MIT
// The handles that are valid now.
#include "library/core/Registry.h"

#include <algorithm>
#include <limits>

namespace orvalis {

namespace {

/// Handles look like aligned pointers, not like small integers.
constexpr std::uintptr_t kFirst = 0x10000;
constexpr std::uintptr_t kStep = 16;

std::uintptr_t numberOf(OCameraHandle handle) { return reinterpret_cast<std::uintptr_t>(handle); }

} // namespace

OCameraHandle Registry::add(std::shared_ptr<Camera> camera)
{
    const std::lock_guard lock(mutex_);
    if (last_ > std::numeric_limits<std::uintptr_t>::max() - 2 * kStep)
        return nullptr;
    const std::uintptr_t next = last_ == 0 ? kFirst : last_ + kStep;
    cameras_.emplace(next, std::move(camera));
    last_ = next;
    return reinterpret_cast<OCameraHandle>(next);
}

std::shared_ptr<Camera> Registry::find(OCameraHandle handle) const
{
    const std::lock_guard lock(mutex_);
    const auto it = cameras_.find(numberOf(handle));
    return it != cameras_.end() ? it->second : nullptr;
}

std::shared_ptr<Camera> Registry::remove(OCameraHandle handle)
{
    const std::lock_guard lock(mutex_);
    const auto it = cameras_.find(numberOf(handle));
    if (it == cameras_.end())
        return nullptr;
    std::shared_ptr<Camera> camera = std::move(it->second);
    cameras_.erase(it);
    return camera;
}

bool Registry::isOpen(std::string_view cameraId) const
{
    const std::lock_guard lock(mutex_);
    return std::any_of(cameras_.begin(), cameras_.end(), [&](const auto &pair) {
        return !pair.second->lost() && pair.second->identity().id == cameraId;
    });
}

std::vector<std::shared_ptr<Camera>> Registry::all() const
{
    const std::lock_guard lock(mutex_);
    std::vector<std::shared_ptr<Camera>> cameras;
    for (const auto &pair : cameras_)
        cameras.push_back(pair.second);
    return cameras;
}

} // namespace orvalis
