// SPDX-License-Identifier: MIT
// What a simulated camera remembers when it is switched off.
#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

namespace orvalis::simulated {

/// The user sets of one model, kept for the life of the process: also when the library is ended and
/// started again. Any thread.
class UserSets {
public:
    static constexpr std::uint32_t kCount = 4; ///< "Default" and three of the user's own

    /// The memory of a camera.
    static UserSets &of(std::string_view cameraId);

    /// Keeps `words` as that set, to the end of the process.
    void save(std::uint32_t number, std::vector<std::uint32_t> words);
    /// Nothing if that set was never saved.
    std::optional<std::vector<std::uint32_t>> load(std::uint32_t number) const;
    /// The set that the camera loads when it is switched on.
    void setPowerOn(std::uint32_t number);
    /// 0, the factory's, unless another was chosen.
    std::uint32_t powerOn() const;

private:
    mutable std::mutex mutex_; // guards all below
    std::array<std::optional<std::vector<std::uint32_t>>, kCount> sets_;
    std::uint32_t powerOn_ = 0;
};

} // namespace orvalis::simulated
