// SPDX-License-Identifier: MIT
// The bus of real cameras: GigE Vision and USB3 Vision, or Aravis' in-process test camera.
#include "library/genicam/AravisUse.h"
#include "library/genicam/CameraOpening.h"
#include "library/genicam/GenicamDevice.h"

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>

namespace orvalis {
namespace {

using namespace std::chrono_literals;

/// The open cameras by ID. After a close, the device may take a moment to disconnect.
class OpenCameras {
public:
    /// `isLost` is called until remove().
    void add(const std::string &id, std::function<bool()> isLost)
    {
        const std::lock_guard lock(mutex_);
        cameras_.emplace(id, std::move(isLost));
    }
    void remove(const std::string &id)
    {
        const std::lock_guard lock(mutex_);
        cameras_.erase(cameras_.lower_bound(id)); // if there are several, the one opened first
        changed_.notify_all();
    }
    /// Waits up to 2 s until the camera is disconnected.
    void waitUntilDisconnected(const std::string &id)
    {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, 2s, [&] { return !cameras_.contains(id); });
    }
    /// True if the camera is lost, and open or not yet disconnected.
    bool isLost(const std::string &id)
    {
        const std::lock_guard lock(mutex_);
        const auto [first, end] = cameras_.equal_range(id);
        return first != end &&
               std::all_of(first, end, [](const auto &camera) { return camera.second(); });
    }

private:
    std::mutex mutex_; // guards cameras_
    std::condition_variable changed_;
    std::multimap<std::string, std::function<bool()>> cameras_;
};

class GenicamBackend : public Backend {
public:
    std::string_view name() const override { return "genicam"; }
    bool discoversAtOnce() const override { return false; }
    std::vector<DeviceDescription> discover() override;
    OResult open(const std::string &id, std::unique_ptr<Device> &device) override;

private:
    bool findRecord(const std::string &id, CameraRecord &camera);

    const std::shared_ptr<AravisUse> aravis_ = AravisUse::instance();
    std::shared_ptr<OpenCameras> open_ = std::make_shared<OpenCameras>();
    std::mutex mutex_;                          // guards known_
    std::map<std::string, CameraRecord> known_; // all cameras ever found: they may return
};

std::vector<DeviceDescription> GenicamBackend::discover()
{
    std::vector<DeviceDescription> found;
    for (const CameraRecord &camera : findCameras()) {
        // Hide a lost camera until its program has closed it, so that the program notices the loss
        // in the list: the camera may return soon, or belong to another program now.
        if (!open_->isLost(camera.id))
            found.push_back({camera.id, camera.displayName});
        const std::lock_guard lock(mutex_);
        known_[camera.id] = camera;
    }
    return found;
}

bool GenicamBackend::findRecord(const std::string &id, CameraRecord &camera)
{
    const std::lock_guard lock(mutex_);
    const auto found = known_.find(id);
    if (found == known_.end())
        return false;
    camera = found->second;
    return true;
}

OResult GenicamBackend::open(const std::string &id, std::unique_ptr<Device> &device)
{
    CameraRecord camera;
    if (!findRecord(id, camera))
        return ORVALIS_ERROR_NOT_FOUND;
    open_->waitUntilDisconnected(id);
    GPtr<ArvDevice> opened;
    if (const OResult result = openRecordedCamera(camera, opened); result != ORVALIS_OK)
        return result;
    DeviceIdentity identity = identityOf(opened.get(), id, camera.displayName);
    if (!camera.serialNumber.empty())
        identity.serialNumber = camera.serialNumber;
    auto created = std::make_unique<GenicamDevice>(std::move(opened), std::move(identity),
                                                   [open = open_, id] { open->remove(id); });
    open_->add(id, created->lossProbe());
    device = std::move(created);
    return ORVALIS_OK;
}

/// Aravis' software camera in this process; always present.
class FakeBackend : public Backend {
public:
    std::string_view name() const override { return "fake"; }
    bool discoversAtOnce() const override { return true; }
    std::vector<DeviceDescription> discover() override { return {{id, displayName}}; }
    OResult open(const std::string &wanted, std::unique_ptr<Device> &device) override;

private:
    static constexpr const char *id = "Aravis-Fake-1";
    static constexpr const char *displayName = "Aravis Fake (1)";

    const std::shared_ptr<AravisUse> aravis_ = AravisUse::instance();
};

OResult FakeBackend::open(const std::string &wanted, std::unique_ptr<Device> &device)
{
    if (wanted != id)
        return ORVALIS_ERROR_NOT_FOUND;
    Failure failure;
    GPtr<ArvDevice> opened(arv_fake_device_new("1", failure.slot()));
    if (!opened)
        return ORVALIS_ERROR_DEVICE;
    DeviceIdentity identity = identityOf(opened.get(), id, displayName);
    device = std::make_unique<GenicamDevice>(std::move(opened), std::move(identity), [] {});
    return ORVALIS_OK;
}

} // namespace

std::unique_ptr<Backend> makeGenicamBackend(bool fake)
{
    if (fake)
        return std::make_unique<FakeBackend>();
    return std::make_unique<GenicamBackend>();
}

} // namespace orvalis
