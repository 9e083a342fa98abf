// SPDX-License-Identifier: MIT
// A camera and a bus that a test controls step by step.
#pragma once

#include "library/core/Bus.h"
#include "library/core/Device.h"
#include "tests/library/core/ScriptedNodes.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace orvalis::test {

/// Opens once and releases all waiting threads.
class Latch {
public:
    void open();
    void wait();
    bool isOpen();

private:
    std::mutex mutex_;
    std::condition_variable opened_;
    bool open_ = false;
};

/// Counts frames, and waits for a count.
class Counter {
public:
    void add();
    int value();
    void waitFor(int count);

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int count_ = 0;
};

/// A Mono8 image of one value that owns its memory.
RawImage monoImage(std::uint8_t value, std::uint32_t width = 64, std::uint32_t height = 48);

/// The behaviour of a scripted camera, shared by the test and the device. Any thread.
class Script {
public:
    ScriptedNodes nodes;
    DeviceIdentity identity{"SCRIPTED-1", "Scripted camera", "Maker", "Model", "1", "1.0"};

    std::function<void()> onNextImage; ///< runs in nextImage(), e.g. to throw
    std::function<void()> onTakeImage; ///< runs at the beginning of takeImage()
    std::function<OResult()> onStart;  ///< the result of startStream()
    std::function<void()> onStop;      ///< runs in stopStream()
    std::function<void()> onDestroy;   ///< runs in the device's destructor
    std::function<OResult(std::uint32_t)> onReadRegister;

    Script();
    void pushFrame(RawImage image); ///< for the stream
    void pushShot(RawImage image);  ///< for takeImage()
    void lose();                    ///< makes the camera leave the bus

    Counter starts;
    Counter stops;
    Counter wakes;
    Counter takes; ///< number of takeImage() calls
    Counter destroyed;

private:
    friend class ScriptedDevice;
    OResult pull(std::deque<RawImage> &queue, RawImage &image, Clock::time_point deadline);

    std::mutex mutex_; // guards everything below
    std::condition_variable changed_;
    std::deque<RawImage> frames_;
    std::deque<RawImage> shots_;
    bool woken_ = false;
    bool lost_ = false;
};

class ScriptedDevice : public Device {
public:
    explicit ScriptedDevice(std::shared_ptr<Script> script) : script_(std::move(script)) {}
    ~ScriptedDevice() override;

    const DeviceIdentity &identity() const override { return script_->identity; }
    NodeMap &nodes() override { return script_->nodes; }
    OResult startStream() override;
    OResult nextImage(RawImage &image, Clock::time_point deadline) override;
    void wake() override;
    void stopStream() override;
    OResult takeImage(RawImage &image, Clock::time_point deadline) override;
    OResult readRegister(std::uint32_t address, std::uint32_t &value) override;
    OResult writeRegister(std::uint32_t address, std::uint32_t value) override;
    OResult reset() override;

private:
    std::shared_ptr<Script> script_;
};

/// A bus of scripted cameras.
class ScriptedBackend : public Backend {
public:
    bool atOnce = true;
    std::function<std::vector<DeviceDescription>()> onDiscover;
    std::function<OResult(const std::string &, std::unique_ptr<Device> &)> onOpen;

    std::string_view name() const override { return "scripted"; }
    bool discoversAtOnce() const override { return atOnce; }
    std::vector<DeviceDescription> discover() override;
    OResult open(const std::string &id, std::unique_ptr<Device> &device) override;
};

/// A bus with one camera, controlled by `script`.
std::unique_ptr<ScriptedBackend> backendFor(std::shared_ptr<Script> script);
Backends onlyBackend(std::unique_ptr<Backend> backend);

} // namespace orvalis::test
