// SPDX-License-Identifier: MIT
// GObjects and GErrors that free themselves.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <arv.h>

#include <memory>
#include <string>

namespace orvalis {

/// Releases a reference.
struct Unref {
    void operator()(void *object) const { g_object_unref(object); } ///< for unique_ptr
};
/// Owns one reference of a GObject.
template <typename T> using GPtr = std::unique_ptr<T, Unref>;

/// Frees what GLib has allocated.
struct GFree {
    void operator()(void *memory) const { g_free(memory); } ///< for unique_ptr
};

/// Holds the error of an Aravis call; reusable for the next call.
class Failure {
public:
    Failure() = default;
    ~Failure() { g_clear_error(&error_); }
    Failure(const Failure &) = delete;
    Failure &operator=(const Failure &) = delete;

    /// The argument for the next call; discards the previous error.
    GError **slot()
    {
        g_clear_error(&error_);
        return &error_;
    }
    /// True if the call failed.
    explicit operator bool() const { return error_ != nullptr; }
    /// The error text for debug messages; valid until the next call.
    const char *text() const { return error_ != nullptr ? error_->message : "no reason given"; }

    /// Translates the error for callers of the library; ORVALIS_OK without an error.
    OResult result() const;
    /// True if the camera is gone, or another host controls it now.
    bool meansLost() const { return result() == ORVALIS_ERROR_CONNECTION_LOST; }
    /// Likewise, and also if the answer timed out.
    bool isSilence() const { return meansLost() || result() == ORVALIS_ERROR_TIMEOUT; }

private:
    GError *error_ = nullptr;
};

/// Text of a C string that may be null.
inline std::string textOf(const char *text) { return text != nullptr ? text : ""; }

} // namespace orvalis
