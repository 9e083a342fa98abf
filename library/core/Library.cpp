// SPDX-License-Identifier: MIT
// The library between OrvalisInit() and OrvalisUninit(), and the open cameras.
#include "library/core/Library.h"

#include "library/core/Background.h"

#include <cstdlib>

namespace orvalis {

namespace {

using namespace std::chrono_literals;

constexpr const char *kBackendsVariable = "ORVALIS_BACKENDS";
constexpr const char *kDefaultBackends = "simulated,genicam";

} // namespace

/// The state from the first init() to the last uninit().
struct Library::Session {
    Session(std::uint64_t which, const std::shared_ptr<Bus> &cameras)
        : number(which), bus(cameras), discovery(cameras)
    {
    }

    const std::uint64_t number; // counts from 1
    std::shared_ptr<Bus> bus;
    Discovery discovery;
};

Library &Library::instance()
{
    static Library library;
    return library;
}

/// Constructs the background first, so that it is destroyed after the library.
Library::Library() { Background::instance(); }

Library::~Library()
{
    stopAll([](Acquisition &acquisition) { acquisition.beginClose(); }, Clock::now());
}

/// Calls `begin` for all cameras before it waits for the first.
template <typename Begin> void Library::stopAll(Begin begin, Clock::time_point limit)
{
    const auto cameras = registry_.all();
    for (const auto &camera : cameras)
        begin(camera->acquisition());
    for (const auto &camera : cameras)
        camera->acquisition().waitUntilStopped(limit);
}

OResult Library::init()
{
    return begin([this] {
        const char *variable = std::getenv(kBackendsVariable);
        return busFor(variable ? variable : kDefaultBackends);
    });
}

OResult Library::init(const BackendFactory &factory)
{
    return begin([&] { return std::make_shared<Bus>(factory()); });
}

/// Reuses the bus of cameras that are still open. Under the lock.
std::shared_ptr<Bus> Library::busFor(const std::string &backends)
{
    std::shared_ptr<Bus> bus = bus_.lock();
    if (!bus || backends != busBackends_) {
        bus = std::make_shared<Bus>(makeBackends(backends));
        bus_ = bus;
        busBackends_ = backends;
    }
    return bus;
}

OResult Library::begin(const std::function<std::shared_ptr<Bus>()> &makeBus)
{
    const std::lock_guard lock(mutex_);
    if (initCount_ == 0)
        session_ = std::make_shared<Session>(++sessions_, makeBus());
    ++initCount_;
    return ORVALIS_OK;
}

OResult Library::uninit()
{
    std::shared_ptr<Session> ended;
    {
        const std::lock_guard lock(mutex_);
        if (initCount_ == 0)
            return ORVALIS_ERROR_NOT_INITIALIZED;
        if (--initCount_ > 0)
            return ORVALIS_OK;
        ended = std::move(session_);
    }
    const Clock::time_point limit = Clock::now() + Acquisition::kStopTimeout;
    ended->discovery.beginStop();
    stopAll([&](Acquisition &acquisition) { acquisition.endSession(ended->number); }, limit);
    ended->discovery.waitUntilStopped(limit);
    return ORVALIS_OK;
}

bool Library::initialized() const { return session() != nullptr; }

std::shared_ptr<Library::Session> Library::session() const
{
    const std::lock_guard lock(mutex_);
    return session_;
}

OResult Library::takeSnapshot(Snapshot &snapshot)
{
    const auto now = session();
    if (!now)
        return ORVALIS_ERROR_NOT_INITIALIZED;
    snapshot = now->discovery.take();
    return ORVALIS_OK;
}

OResult Library::presentSnapshot(Snapshot &snapshot)
{
    const auto now = session();
    if (!now)
        return ORVALIS_ERROR_NOT_INITIALIZED;
    snapshot = now->discovery.present();
    return ORVALIS_OK;
}

OResult Library::open(const std::string &id, OCameraHandle &handle)
{
    const auto now = session();
    if (!now)
        return ORVALIS_ERROR_NOT_INITIALIZED;
    if (registry_.isOpen(id))
        return ORVALIS_ERROR_BUSY;
    std::unique_ptr<Device> device;
    if (const OResult result = now->bus->open(id, device); result != ORVALIS_OK)
        return result;
    if (!device)
        return ORVALIS_ERROR_DEVICE;
    const OCameraHandle added = registry_.add(Camera::create(std::move(device), now->bus));
    if (!added)
        return ORVALIS_ERROR_OUT_OF_MEMORY;
    handle = added;
    return ORVALIS_OK;
}

/// The session's number lets Acquisition refuse a start if the session ends meanwhile.
OResult Library::start(Camera &camera, OFrameCallback callback)
{
    const auto now = session();
    return now ? camera.start(callback, now->number) : ORVALIS_ERROR_NOT_INITIALIZED;
}

OResult Library::stop(OCameraHandle handle)
{
    const std::shared_ptr<Camera> camera = registry_.find(handle);
    if (!camera)
        return ORVALIS_ERROR_BAD_HANDLE;
    camera->acquisition().stop();
    return ORVALIS_OK;
}

OResult Library::close(OCameraHandle handle)
{
    std::shared_ptr<Camera> camera = registry_.remove(handle);
    if (!camera)
        return ORVALIS_ERROR_BAD_HANDLE;
    Acquisition &acquisition = camera->acquisition();
    acquisition.beginClose();
    const Clock::time_point limit =
        acquisition.waitUntilStopped(Clock::now() + Acquisition::kStopTimeout);
    const std::shared_future<void> gone = camera->gone();
    const bool insideCallback = acquisition.onDeliveryThread();
    camera.reset();
    // Wait until the camera can be opened again, here or elsewhere. Inside the callback it must
    // outlive this call.
    if (!insideCallback)
        gone.wait_until(limit);
    return ORVALIS_OK;
}

} // namespace orvalis
