// SPDX-License-Identifier: MIT
// What the library is made of between OrvalisInit() and OrvalisUninit(), and the open cameras.
#pragma once

#include "library/core/Discovery.h"
#include "library/core/Registry.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

namespace orvalis {

/// The one library of a process. Every function may be called from any thread.
class Library {
public:
    /// Made by the first call, gone at the end of the process.
    static Library &instance();
    /// Closes what a program left open.
    ~Library();

    /// With the back ends that the environment names. Counted.
    OResult init();
    /// With back ends of the caller, for tests. Counted; while the library is in use already they
    /// are not asked for.
    OResult init(const BackendFactory &makeBackends);
    /// The last one ends all streams and the discovery. ORVALIS_ERROR_NOT_INITIALIZED without an
    /// init().
    OResult uninit();
    /// True from the first init() to the last uninit().
    bool initialized() const;

    /// Looks for cameras anew. ORVALIS_ERROR_NOT_INITIALIZED, as for all below.
    OResult takeSnapshot(Snapshot &snapshot);
    /// The cameras that the last look of this thread found.
    OResult presentSnapshot(Snapshot &snapshot);

    /// ORVALIS_ERROR_BUSY if it is open here already; else results as of Backend::open().
    OResult open(const std::string &id, OCameraHandle &handle);
    /// Null for handles that are not valid. Also outside init() ... uninit().
    std::shared_ptr<Camera> find(OCameraHandle handle) const { return registry_.find(handle); }
    /// Results as of Camera::start().
    OResult start(Camera &camera, OFrameCallback callback);
    /// ORVALIS_ERROR_BAD_HANDLE, or ORVALIS_OK whether it streamed or not.
    OResult stop(OCameraHandle handle);
    /// Ends stream and grabs. When it returns the camera can be opened again, except where it is
    /// called from inside of the callback.
    OResult close(OCameraHandle handle);

private:
    struct Session;

    Library();
    std::shared_ptr<Session> session() const;
    std::shared_ptr<Bus> busFor(const std::string &backends);
    OResult begin(const std::function<std::shared_ptr<Bus>()> &makeBus);
    template <typename Begin> void stopAll(Begin begin, Clock::time_point limit);

    mutable std::mutex mutex_;   // guards the five below
    int users_ = 0;              // init() without uninit()
    std::uint64_t sessions_ = 0; // that have begun
    std::shared_ptr<Session> session_;
    std::weak_ptr<Bus> bus_; // the last one from the environment; open cameras keep it alive
    std::string busBackends_;

    Registry registry_;
};

} // namespace orvalis
