// SPDX-License-Identifier: MIT
// The registers of a rig camera.
#include "tests/library/genicam/rig/RigMemory.h"

#include <bit>

namespace genicamtest {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint32_t bootstrapEnd = 0x1000;

bool isFeature(std::uint32_t address)
{
    return address >= bootstrapEnd && address < RigAddress::description;
}

} // namespace

void RigMemory::set(std::uint32_t address, std::uint32_t value)
{
    const std::lock_guard lock(mutex_);
    words_[address] = value;
}

void RigMemory::setFloat(std::uint32_t address, float value)
{
    set(address, std::bit_cast<std::uint32_t>(value));
}

void RigMemory::setText(std::uint32_t address, const std::string &text)
{
    const std::lock_guard lock(mutex_);
    for (std::size_t i = 0; i <= text.size(); ++i) {
        const auto place = static_cast<std::uint32_t>(address + i);
        const unsigned shift = 24 - 8 * (place & 3);
        std::uint32_t &word = words_[place & ~3U];
        const auto byte = static_cast<std::uint8_t>(i < text.size() ? text[i] : 0);
        word = (word & ~(0xFFU << shift)) | std::uint32_t{byte} << shift;
    }
}

std::uint32_t RigMemory::wordAt(std::uint32_t address) const
{
    const auto word = words_.find(address);
    if (word == words_.end()) {
        return 0;
    }
    const auto command = commands_.find(address);
    return command != commands_.end() && Clock::now() >= command->second ? 0 : word->second;
}

std::uint32_t RigMemory::at(std::uint32_t address) const
{
    const std::lock_guard lock(mutex_);
    return wordAt(address);
}

float RigMemory::floatAt(std::uint32_t address) const { return std::bit_cast<float>(at(address)); }

void RigMemory::beforeRead(std::uint32_t address)
{
    std::function<void()> callback;
    {
        const std::lock_guard lock(mutex_);
        ++counts_[address].reads;
        if (const auto found = readCallbacks_.find(address); found != readCallbacks_.end()) {
            callback = found->second;
        }
    }
    if (callback) {
        callback();
    }
}

std::uint32_t RigMemory::read(std::uint32_t address)
{
    beforeRead(address);
    const std::lock_guard lock(mutex_);
    return wordAt(address);
}

std::vector<std::uint8_t> RigMemory::readBytes(std::uint32_t address, std::size_t size)
{
    beforeRead(address);
    const std::lock_guard lock(mutex_);
    std::vector<std::uint8_t> bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        const auto place = static_cast<std::uint32_t>(address + i);
        bytes[i] = static_cast<std::uint8_t>(wordAt(place & ~3U) >> (24 - 8 * (place & 3)));
    }
    return bytes;
}

void RigMemory::write(std::uint32_t address, std::uint32_t value)
{
    std::function<void(std::uint32_t)> callback;
    {
        const std::lock_guard lock(mutex_);
        ++counts_[address].writes;
        words_[address] = value;
        if (const auto command = commands_.find(address); command != commands_.end()) {
            command->second = Clock::now() + clearDelay_;
        }
        if (const auto found = callbacks_.find(address); found != callbacks_.end()) {
            callback = found->second;
        }
    }
    if (callback) {
        callback(value);
    }
}

void RigMemory::clearAfterWrite(std::uint32_t address)
{
    const std::lock_guard lock(mutex_);
    commands_[address] = {};
}

void RigMemory::setClearDelay(unsigned milliseconds)
{
    const std::lock_guard lock(mutex_);
    clearDelay_ = std::chrono::milliseconds(milliseconds);
}

void RigMemory::onWrite(std::uint32_t address, std::function<void(std::uint32_t)> callback)
{
    const std::lock_guard lock(mutex_);
    callbacks_[address] = std::move(callback);
}

void RigMemory::onRead(std::uint32_t address, std::function<void()> callback)
{
    const std::lock_guard lock(mutex_);
    readCallbacks_[address] = std::move(callback);
}

std::uint64_t RigMemory::reads(std::uint32_t address) const
{
    const std::lock_guard lock(mutex_);
    const auto count = counts_.find(address);
    return count != counts_.end() ? count->second.reads : 0;
}

std::uint64_t RigMemory::writes(std::uint32_t address) const
{
    const std::lock_guard lock(mutex_);
    const auto count = counts_.find(address);
    return count != counts_.end() ? count->second.writes : 0;
}

std::uint64_t RigMemory::reads() const
{
    const std::lock_guard lock(mutex_);
    std::uint64_t sum = 0;
    for (const auto &[address, count] : counts_) {
        sum += isFeature(address) ? count.reads : 0;
    }
    return sum;
}

std::uint64_t RigMemory::writes() const
{
    const std::lock_guard lock(mutex_);
    std::uint64_t sum = 0;
    for (const auto &[address, count] : counts_) {
        sum += isFeature(address) ? count.writes : 0;
    }
    return sum;
}

void RigMemory::resetCounts()
{
    const std::lock_guard lock(mutex_);
    counts_.clear();
}

} // namespace genicamtest
