// SPDX-License-Identifier: MIT
// Whether the user wants displayed frames saved.
#pragma once

#include <atomic>
#include <cstdint>

/// The armed state of the action "Save". Armings are numbered, so that the end of one does not
/// cancel another that the user has begun meanwhile. Any thread.
class SaveRequest {
public:
    /// Number of an arming, starting at 1.
    using Arming = std::uint64_t;

    /// Arms or disarms; arming again while armed begins a new arming.
    void set(bool armed) { m_arming = armed ? ++m_last : 0; }

    /// The current arming, 0 if disarmed.
    Arming arming() const { return m_arming; }
    /// True while armed.
    explicit operator bool() const { return m_arming != 0; }

    /// Disarms unless the user has armed again since `arming` was read.
    void finish(Arming arming) { m_arming.compare_exchange_strong(arming, 0); }

private:
    std::atomic<Arming> m_arming{0};
    std::atomic<Arming> m_last{0};
};
