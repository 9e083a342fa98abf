// SPDX-License-Identifier: MIT
// The memory for user sets.
#include "library/simulated/UserSets.h"

#include <map>

namespace orvalis::simulated {

UserSets &UserSets::of(std::string_view cameraId)
{
    static std::mutex mutex; // guards `all`
    static std::map<std::string_view, UserSets> all;
    const std::lock_guard lock(mutex);
    return all[cameraId];
}

void UserSets::save(std::uint32_t number, std::vector<std::uint32_t> words)
{
    const std::lock_guard lock(mutex_);
    sets_.at(number) = std::move(words);
}

std::optional<std::vector<std::uint32_t>> UserSets::load(std::uint32_t number) const
{
    const std::lock_guard lock(mutex_);
    return sets_.at(number);
}

void UserSets::setPowerOn(std::uint32_t number)
{
    const std::lock_guard lock(mutex_);
    powerOn_ = number;
}

std::uint32_t UserSets::powerOn() const
{
    const std::lock_guard lock(mutex_);
    return powerOn_;
}

} // namespace orvalis::simulated
