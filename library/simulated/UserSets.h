// SPDX-License-Identifier: MIT
// The non-volatile memory of a simulated camera.
#pragma once

#include <array>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

namespace orvalis::simulated {

/// The user sets of one camera. Valid until the process ends, even if the library is terminated and
/// initialised again. Any thread.
class UserSets {
public:
    static constexpr std::uint32_t kCount = 4; ///< "Default" and three writable sets

    /// The memory of one camera.
    static UserSets &of(std::string_view cameraId);

    /// Stores `words` as this set until the process ends.
    void save(std::uint32_t number, std::vector<std::uint32_t> words);
    /// Empty if this set was never saved.
    std::optional<std::vector<std::uint32_t>> load(std::uint32_t number) const;
    /// Selects the set that the camera loads when it powers on.
    void setPowerOn(std::uint32_t number);
    /// The selected set; 0, the factory settings, by default.
    std::uint32_t powerOn() const;

private:
    mutable std::mutex mutex_; // guards all below
    std::array<std::optional<std::vector<std::uint32_t>>, kCount> sets_;
    std::uint32_t powerOn_ = 0;
};

} // namespace orvalis::simulated
