// SPDX-License-Identifier: MIT
// The simulated bus and the devices on it.
#include "library/core/Device.h"
#include "library/simulated/CameraModel.h"
#include "library/simulated/SimulatedCamera.h"
#include "library/simulated/SimulatedNodes.h"

#include <cstdlib>

namespace orvalis {
namespace {

using simulated::SimulatedCamera;

/// The number of nodes that ORVALIS_SIMULATED_EXTRA_NODES requests; at most 10,000.
std::size_t extraNodes()
{
    const char *const text = std::getenv("ORVALIS_SIMULATED_EXTRA_NODES");
    if (!text)
        return 0;
    const long count = std::strtol(text, nullptr, 10);
    return count < 0 ? 0 : count > 10000 ? 10000 : static_cast<std::size_t>(count);
}

/// One session of a camera.
class SimulatedDevice final : public Device {
public:
    SimulatedDevice(std::shared_ptr<SimulatedCamera> camera, SimulatedCamera::Session session)
        : camera_(std::move(camera)), session_(session), nodes_(*camera_, session)
    {
        const auto &model = camera_->model();
        const auto textOf = [&](std::string_view name) {
            return std::string(camera_->table().find(name)->text);
        };
        identity_ = {.id = std::string(model.id),
                     .displayName = std::string(model.displayName),
                     .vendor = textOf("DeviceVendorName"),
                     .model = textOf("DeviceModelName"),
                     .serialNumber = textOf("DeviceSerialNumber"),
                     .firmware = textOf("DeviceFirmwareVersion")};
    }
    ~SimulatedDevice() override { camera_->close(session_); }

    const DeviceIdentity &identity() const override { return identity_; }
    NodeMap &nodes() override { return nodes_; }

    OResult startStream() override { return camera_->startStream(session_); }
    OResult nextImage(RawImage &image, Clock::time_point deadline) override
    {
        return camera_->nextImage(session_, image, deadline);
    }
    void wake() override { camera_->wake(session_); }
    void stopStream() override { camera_->stopStream(session_); }
    OResult takeImage(RawImage &image, Clock::time_point deadline) override
    {
        return camera_->takeImage(session_, image, deadline);
    }

    OResult readRegister(std::uint32_t address, std::uint32_t &value) override
    {
        return nodes_.readRegister(address, value);
    }
    OResult writeRegister(std::uint32_t address, std::uint32_t value) override
    {
        return nodes_.writeRegister(address, value);
    }
    OResult reset() override { return nodes_.execute("DeviceReset"); }

private:
    const std::shared_ptr<SimulatedCamera> camera_;
    const SimulatedCamera::Session session_;
    simulated::SimulatedNodes nodes_;
    DeviceIdentity identity_;
};

/// The bus with the built-in cameras, which power on with it.
class SimulatedBackend final : public Backend {
public:
    SimulatedBackend()
    {
        for (const auto &model : simulated::cameraModels())
            cameras_.push_back(std::make_shared<SimulatedCamera>(model, extraNodes()));
    }

    std::string_view name() const override { return "simulated"; }
    bool discoversAtOnce() const override { return true; }

    std::vector<DeviceDescription> discover() override
    {
        std::vector<DeviceDescription> found;
        for (const auto &camera : cameras_)
            if (camera->isOnBus())
                found.push_back({.id = std::string(camera->model().id),
                                 .displayName = std::string(camera->model().displayName)});
        return found;
    }

    OResult open(const std::string &id, std::unique_ptr<Device> &device) override
    {
        for (const auto &camera : cameras_) {
            if (camera->model().id != id)
                continue;
            SimulatedCamera::Session session = 0;
            const OResult result = camera->open(session);
            if (result == ORVALIS_OK)
                device = std::make_unique<SimulatedDevice>(camera, session);
            return result;
        }
        return ORVALIS_ERROR_NOT_FOUND;
    }

private:
    std::vector<std::shared_ptr<SimulatedCamera>> cameras_;
};

} // namespace

std::unique_ptr<Backend> makeSimulatedBackend() { return std::make_unique<SimulatedBackend>(); }

} // namespace orvalis
