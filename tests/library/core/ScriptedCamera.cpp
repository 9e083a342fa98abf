// SPDX-License-Identifier: MIT
// A camera and a bus that a test controls step by step.
#include "tests/library/core/ScriptedCamera.h"

#include <utility>

namespace orvalis::test {

namespace {

constexpr std::uint32_t kMono8 = 0x01080001;

} // namespace

void Latch::open()
{
    const std::lock_guard lock(mutex_);
    open_ = true;
    opened_.notify_all();
}

void Latch::wait()
{
    std::unique_lock lock(mutex_);
    opened_.wait(lock, [this] { return open_; });
}

bool Latch::isOpen()
{
    const std::lock_guard lock(mutex_);
    return open_;
}

void Counter::add()
{
    const std::lock_guard lock(mutex_);
    ++count_;
    changed_.notify_all();
}

int Counter::value()
{
    const std::lock_guard lock(mutex_);
    return count_;
}

void Counter::waitFor(int count)
{
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return count_ >= count; });
}

RawImage monoImage(std::uint8_t value, std::uint32_t width, std::uint32_t height)
{
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(std::size_t{width} * height, value);
    return {pixels->data(), pixels->size(), width, height, kMono8, pixels};
}

Script::Script()
{
    nodes.nodes["Root"].type = ORVALIS_NODE_CATEGORY;
    nodes.nodes["Width"] = integerNode(64, 16, 128, 8);
    nodes.nodes["Height"] = integerNode(48, 16, 96, 8);
    nodes.nodes["WidthMax"] = integerNode(128, 128, 128);
    nodes.nodes["HeightMax"] = integerNode(96, 96, 96);
    nodes.nodes["PixelFormat"] = enumNode({"Mono8"});
    nodes.nodes["PixelFormat"].entryValues = {kMono8};
}

void Script::pushFrame(RawImage image)
{
    const std::lock_guard lock(mutex_);
    frames_.push_back(std::move(image));
    changed_.notify_all();
}

void Script::pushShot(RawImage image)
{
    const std::lock_guard lock(mutex_);
    shots_.push_back(std::move(image));
    changed_.notify_all();
}

void Script::lose()
{
    const std::lock_guard lock(mutex_);
    lost_ = true;
    changed_.notify_all();
}

OResult Script::pull(std::deque<RawImage> &queue, RawImage &image, Clock::time_point deadline)
{
    std::unique_lock lock(mutex_);
    const auto ready = [&] { return woken_ || lost_ || !queue.empty(); };
    if (!changed_.wait_until(lock, deadline, ready))
        return ORVALIS_ERROR_TIMEOUT;
    if (lost_)
        return ORVALIS_ERROR_CONNECTION_LOST;
    if (std::exchange(woken_, false))
        return ORVALIS_ERROR_ABORTED;
    image = std::move(queue.front());
    queue.pop_front();
    return ORVALIS_OK;
}

ScriptedDevice::~ScriptedDevice()
{
    if (script_->onDestroy)
        script_->onDestroy();
    script_->destroyed.add();
}

OResult ScriptedDevice::startStream()
{
    const OResult result = script_->onStart ? script_->onStart() : ORVALIS_OK;
    script_->starts.add();
    return result;
}

OResult ScriptedDevice::nextImage(RawImage &image, Clock::time_point deadline)
{
    if (script_->onNextImage)
        script_->onNextImage();
    return script_->pull(script_->frames_, image, deadline);
}

void ScriptedDevice::wake()
{
    {
        const std::lock_guard lock(script_->mutex_);
        script_->woken_ = true;
        script_->changed_.notify_all();
    }
    script_->wakes.add();
}

void ScriptedDevice::stopStream()
{
    if (script_->onStop)
        script_->onStop();
    script_->stops.add();
}

OResult ScriptedDevice::takeImage(RawImage &image, Clock::time_point deadline)
{
    script_->takes.add();
    if (script_->onTakeImage)
        script_->onTakeImage();
    return script_->pull(script_->shots_, image, deadline);
}

OResult ScriptedDevice::readRegister(std::uint32_t address, std::uint32_t &value)
{
    if (script_->onReadRegister)
        return script_->onReadRegister(address);
    value = address + 1;
    return ORVALIS_OK;
}

OResult ScriptedDevice::writeRegister(std::uint32_t, std::uint32_t) { return ORVALIS_OK; }

OResult ScriptedDevice::reset()
{
    script_->lose();
    return ORVALIS_OK;
}

std::vector<DeviceDescription> ScriptedBackend::discover()
{
    return onDiscover ? onDiscover() : std::vector<DeviceDescription>{};
}

OResult ScriptedBackend::open(const std::string &id, std::unique_ptr<Device> &device)
{
    return onOpen ? onOpen(id, device) : ORVALIS_ERROR_NOT_FOUND;
}

std::unique_ptr<ScriptedBackend> backendFor(std::shared_ptr<Script> script)
{
    auto backend = std::make_unique<ScriptedBackend>();
    backend->onDiscover = [script] {
        return std::vector<DeviceDescription>{{script->identity.id, script->identity.displayName}};
    };
    backend->onOpen = [script](const std::string &id, std::unique_ptr<Device> &device) {
        if (id != script->identity.id)
            return ORVALIS_ERROR_NOT_FOUND;
        device = std::make_unique<ScriptedDevice>(script);
        return ORVALIS_OK;
    };
    return backend;
}

Backends onlyBackend(std::unique_ptr<Backend> backend)
{
    Backends backends;
    backends.push_back(std::move(backend));
    return backends;
}

} // namespace orvalis::test
