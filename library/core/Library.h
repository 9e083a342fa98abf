// SPDX-License-Identifier: MIT
// The library between OrvalisInit() and OrvalisUninit(), and the open cameras.
#pragma once

#include "library/core/Discovery.h"
#include "library/core/Registry.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

namespace orvalis {

/// The library, one for each process. Every function may be called from any thread.
class Library {
public:
    /// Created by the first call, destroyed at the end of the process.
    static Library &instance();
    /// Closes cameras that the program left open.
    ~Library();

    /// Initialises with the back ends that the environment names. Reference counted.
    OResult init();
    /// Initialises with the caller's back ends, for tests. Reference counted; does not call
    /// `makeBackends` if already initialised.
    OResult init(const BackendFactory &makeBackends);
    /// The last call ends all streams and the discovery. ORVALIS_ERROR_NOT_INITIALIZED without an
    /// init().
    OResult uninit();
    /// True from the first init() to the last uninit().
    bool initialized() const;

    /// Takes a new list of cameras. ORVALIS_ERROR_NOT_INITIALIZED, also for all functions below.
    OResult takeSnapshot(Snapshot &snapshot);
    /// The list that the calling thread took last.
    OResult presentSnapshot(Snapshot &snapshot);

    /// ORVALIS_ERROR_BUSY if this library has it open already; otherwise results as of
    /// Backend::open().
    OResult open(const std::string &id, OCameraHandle &handle);
    /// Null for invalid handles. Works also outside init() ... uninit().
    std::shared_ptr<Camera> find(OCameraHandle handle) const { return registry_.find(handle); }
    /// Results as of Camera::start().
    OResult start(Camera &camera, OFrameCallback callback);
    /// ORVALIS_ERROR_BAD_HANDLE, or ORVALIS_OK whether it streamed or not.
    OResult stop(OCameraHandle handle);
    /// Ends stream and grabs. When it returns, the camera can be opened again, unless it was called
    /// from inside the callback.
    OResult close(OCameraHandle handle);

private:
    struct Session;

    Library();
    std::shared_ptr<Session> session() const;
    std::shared_ptr<Bus> busFor(const std::string &backends);
    OResult begin(const std::function<std::shared_ptr<Bus>()> &makeBus);
    template <typename Begin> void stopAll(Begin begin, Clock::time_point limit);

    mutable std::mutex mutex_;   // guards the five members below
    int initCount_ = 0;          // init() calls without an uninit()
    std::uint64_t sessions_ = 0; // number of sessions so far
    std::shared_ptr<Session> session_;
    std::weak_ptr<Bus> bus_; // the last bus from the environment; open cameras keep it alive
    std::string busBackends_;

    Registry registry_;
};

} // namespace orvalis
