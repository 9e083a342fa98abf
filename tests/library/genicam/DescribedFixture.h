// SPDX-License-Identifier: MIT
// Typed features on a described camera, with access to its registers.
#pragma once

#include "library/core/Features.h"
#include "tests/library/genicam/DescribedCamera.h"

#include <bit>

namespace genicamtest {

using orvalis::Choice;
using orvalis::Features;
using orvalis::Number;
using orvalis::NumberValue;
using orvalis::Switch;

constexpr unsigned valueAddress = 0x1000; // one for each entry of the selector
constexpr unsigned selectorAddress = 0x1100;
constexpr unsigned switchAddress = 0x1200;

class Described : public testing::Test {
protected:
    void open()
    {
        device_ = camera_.open(*backend_);
        ASSERT_TRUE(device_);
        features_ = std::make_unique<Features>(device_->nodes(), mutex_);
    }
    std::uint32_t registerAt(unsigned address)
    {
        std::uint32_t value = 0;
        EXPECT_EQ(device_->readRegister(address, value), ORVALIS_OK);
        return value;
    }
    void setRegisterAt(unsigned address, std::uint32_t value)
    {
        EXPECT_EQ(device_->writeRegister(address, value), ORVALIS_OK);
    }
    float floatAt(unsigned address) { return std::bit_cast<float>(registerAt(address)); }
    void setFloatAt(unsigned address, float value)
    {
        setRegisterAt(address, std::bit_cast<std::uint32_t>(value));
    }
    NumberValue read(Number number)
    {
        NumberValue value;
        EXPECT_EQ(features_->get(number, value), ORVALIS_OK);
        return value;
    }
    bool isOn(Switch which)
    {
        bool on = false;
        EXPECT_EQ(features_->get(which, on), ORVALIS_OK);
        return on;
    }
    std::string chosen(Choice choice)
    {
        std::string name;
        EXPECT_EQ(features_->get(choice, name), ORVALIS_OK);
        return name;
    }

    DescribedCamera camera_;
    std::unique_ptr<Backend> backend_ = orvalis::makeGenicamBackend(true);
    std::unique_ptr<Device> device_;
    std::mutex mutex_;
    std::unique_ptr<Features> features_;
};

} // namespace genicamtest
