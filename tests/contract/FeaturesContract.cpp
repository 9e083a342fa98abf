// SPDX-License-Identifier: MIT
// Typed features: values read back, bounds, complete lists.
#include "tests/contract/Contract.h"
#include "tests/contract/FeatureTables.h"

#include <cmath>
#include <limits>
#include <string>

using namespace contract;

namespace {

class Integers : public CameraTest, public testing::WithParamInterface<IntegerFeature> {};
class Lists : public CameraTest, public testing::WithParamInterface<ListFeature> {};
class Numbers : public CameraTest, public testing::WithParamInterface<NumberFeature> {
protected:
    /// Sets a value near `value` and returns it; `value` if the camera accepts none.
    std::int32_t acceptedOther(const NumberFeature &feature, std::int32_t value)
    {
        for (const std::int32_t step : {1, 10, 100, 1000, -1, -10, -100}) {
            std::int32_t got = value;
            if (feature.set(handle_, value + step) == ORVALIS_OK &&
                feature.get(handle_, &got) == ORVALIS_OK && got == value + step)
                return got;
        }
        return value;
    }
};
class Features : public CameraTest {};

template <class Info> std::string nameOf(const Info &info) { return info.param.name; }

} // namespace

TEST_P(Integers, boundsCanBeSetAndHold)
{
    const IntegerFeature &feature = GetParam();
    std::int32_t value = 0;
    std::int32_t minimum = 0;
    std::int32_t maximum = 0;
    CONTRACT_NEEDS(feature.get(handle_, &value));
    ASSERT_EQ(feature.bounds(handle_, &minimum, &maximum), ORVALIS_OK);
    ASSERT_LE(minimum, maximum);
    EXPECT_GE(value, minimum);
    EXPECT_LE(value, maximum);
    if (feature.set(handle_, value) == ORVALIS_ERROR_ACCESS_DENIED)
        GTEST_SKIP() << "the camera does not permit writing it";
    ASSERT_EQ(feature.set(handle_, minimum), ORVALIS_OK);
    EXPECT_EQ(feature.get(handle_, &value), ORVALIS_OK);
    EXPECT_EQ(value, minimum);
    ASSERT_EQ(feature.set(handle_, maximum), ORVALIS_OK);
    EXPECT_EQ(feature.get(handle_, &value), ORVALIS_OK);
    EXPECT_LE(value, maximum);
    EXPECT_TRUE(value > minimum || minimum == maximum) << "the maximum was not taken";
    if (maximum < std::numeric_limits<std::int32_t>::max()) {
        EXPECT_EQ(feature.set(handle_, maximum + 1), ORVALIS_ERROR_OUT_OF_RANGE);
    }
    if (minimum > std::numeric_limits<std::int32_t>::min()) {
        EXPECT_EQ(feature.set(handle_, minimum - 1), ORVALIS_ERROR_OUT_OF_RANGE);
    }
    std::int32_t after = 0;
    EXPECT_EQ(feature.get(handle_, &after), ORVALIS_OK);
    EXPECT_EQ(after, value) << "a refused value changes nothing";
}

TEST_P(Lists, everyEntryCanBeNamedAndSet)
{
    const ListFeature &feature = GetParam();
    std::int32_t count = 0;
    CONTRACT_NEEDS(feature.count(handle_, &count));
    ASSERT_GT(count, 0);
    char before[ORVALIS_NAME_SIZE] = "";
    ASSERT_EQ(feature.get(handle_, before), ORVALIS_OK);
    for (std::int32_t i = 0; i < count; ++i) {
        char name[ORVALIS_NAME_SIZE] = "";
        char present[ORVALIS_NAME_SIZE] = "";
        ASSERT_EQ(feature.at(handle_, i, name), ORVALIS_OK);
        if (std::string(name) == "Once")
            continue; // returns to "Off" by itself
        const std::int32_t result = feature.set(handle_, name);
        if (result == ORVALIS_ERROR_ACCESS_DENIED)
            continue;
        EXPECT_EQ(result, ORVALIS_OK) << name;
        EXPECT_EQ(feature.get(handle_, present), ORVALIS_OK);
        EXPECT_STREQ(present, name);
    }
    feature.set(handle_, before);
}

TEST_P(Lists, unavailableEntryIsRefused)
{
    const ListFeature &feature = GetParam();
    std::int32_t count = 0;
    CONTRACT_NEEDS(feature.count(handle_, &count));
    char name[ORVALIS_NAME_SIZE] = "unchanged";
    for (const std::int32_t index : {-1, count, std::numeric_limits<std::int32_t>::max(),
                                     std::numeric_limits<std::int32_t>::min()})
        EXPECT_EQ(feature.at(handle_, index, name), ORVALIS_ERROR_NOT_FOUND) << index;
    EXPECT_STREQ(name, "unchanged");
    EXPECT_EQ(feature.set(handle_, "No such entry"), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(feature.set(handle_, ""), ORVALIS_ERROR_NOT_FOUND);
}

TEST_P(Numbers, isReadAndWritten)
{
    const NumberFeature &feature = GetParam();
    std::int32_t value = 0;
    CONTRACT_NEEDS(feature.get(handle_, &value));
    if (feature.set(handle_, value) == ORVALIS_ERROR_ACCESS_DENIED)
        GTEST_SKIP() << "the camera does not permit writing it";
    const std::int32_t other = acceptedOther(feature, value);
    EXPECT_NE(other, value) << "no other value is taken";
    EXPECT_EQ(feature.set(handle_, -1), ORVALIS_ERROR_OUT_OF_RANGE);
    std::int32_t after = 0;
    EXPECT_EQ(feature.get(handle_, &after), ORVALIS_OK);
    EXPECT_EQ(after, other) << "a refused value changes nothing";
    EXPECT_EQ(feature.set(handle_, value), ORVALIS_OK);
}

INSTANTIATE_TEST_SUITE_P(Typed, Integers, testing::ValuesIn(kIntegers),
                         nameOf<testing::TestParamInfo<IntegerFeature>>);
INSTANTIATE_TEST_SUITE_P(Typed, Lists, testing::ValuesIn(kLists),
                         nameOf<testing::TestParamInfo<ListFeature>>);
INSTANTIATE_TEST_SUITE_P(Typed, Numbers, testing::ValuesIn(kNumbers),
                         nameOf<testing::TestParamInfo<NumberFeature>>);

TEST_F(Features, shutterBoundsHold)
{
    std::uint32_t value = 0;
    std::uint32_t minimum = 0;
    std::uint32_t maximum = 0;
    bool automatic = false;
    CONTRACT_NEEDS(OrvalisGetShutter(handle_, &value, &automatic));
    ASSERT_EQ(OrvalisGetShutterMinMax(handle_, &minimum, &maximum), ORVALIS_OK);
    EXPECT_EQ(OrvalisSetShutter(handle_, minimum, false), ORVALIS_OK);
    EXPECT_EQ(OrvalisGetShutter(handle_, &value, &automatic), ORVALIS_OK);
    EXPECT_EQ(value, minimum);
    EXPECT_FALSE(automatic);
    if (maximum < std::numeric_limits<std::uint32_t>::max()) {
        EXPECT_EQ(OrvalisSetShutter(handle_, maximum + 1, false), ORVALIS_ERROR_OUT_OF_RANGE);
    }
}

TEST_F(Features, automaticIsKept)
{
    std::int32_t gain = 0;
    bool automatic = false;
    CONTRACT_NEEDS(OrvalisGetGain(handle_, &gain, &automatic));
    CONTRACT_NEEDS(OrvalisSetGain(handle_, 0, true));
    EXPECT_EQ(OrvalisGetGain(handle_, &gain, &automatic), ORVALIS_OK);
    EXPECT_TRUE(automatic);
    EXPECT_EQ(OrvalisSetGain(handle_, gain, false), ORVALIS_OK);
    EXPECT_EQ(OrvalisGetGain(handle_, &gain, &automatic), ORVALIS_OK);
    EXPECT_FALSE(automatic);
}

TEST_F(Features, frameRateBoundsHold)
{
    float rate = 0;
    float minimum = 0;
    float maximum = 0;
    CONTRACT_NEEDS(OrvalisGetFrameRateMinMax(handle_, &minimum, &maximum));
    EXPECT_LT(minimum, maximum);
    EXPECT_EQ(OrvalisSetFrameRate(handle_, maximum), ORVALIS_OK);
    EXPECT_EQ(OrvalisGetFrameRate(handle_, &rate), ORVALIS_OK);
    EXPECT_FLOAT_EQ(rate, maximum);
    EXPECT_EQ(OrvalisSetFrameRate(handle_, maximum * 2), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(OrvalisSetFrameRate(handle_, std::nanf("")), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(OrvalisSetFrameRate(handle_, -1), ORVALIS_ERROR_OUT_OF_RANGE);
}

TEST_F(Features, gammaBoundsHold)
{
    float gamma = 0;
    float minimum = 0;
    float maximum = 0;
    CONTRACT_NEEDS(OrvalisGetGamma(handle_, &gamma));
    ASSERT_EQ(OrvalisGetGammaMinMax(handle_, &minimum, &maximum), ORVALIS_OK);
    for (const float bound : {minimum, maximum}) {
        EXPECT_EQ(OrvalisSetGamma(handle_, bound), ORVALIS_OK);
        EXPECT_EQ(OrvalisGetGamma(handle_, &gamma), ORVALIS_OK);
        EXPECT_FLOAT_EQ(gamma, bound);
    }
    EXPECT_EQ(OrvalisSetGamma(handle_, maximum * 2), ORVALIS_ERROR_OUT_OF_RANGE);
}

TEST_F(Features, regionIsTheNearestOnTheSensor)
{
    const OSizeInfo whole = size();
    ASSERT_GT(whole.maxWidth, 0);
    for (const OSizeInfo wanted :
         {OSizeInfo{100, 100, 101, 101, 0, 0}, OSizeInfo{1 << 30, 1 << 30, 64, 64, 0, 0},
          OSizeInfo{-1, -1, 1 << 30, 1 << 30, 0, 0}, OSizeInfo{0, 0, 0, 0, 0, 0},
          OSizeInfo{8, 8, 1 << 30, 64, 0, 0}}) {
        const std::int32_t result = OrvalisSetSizeInfo(handle_, wanted);
        if (result == ORVALIS_ERROR_ACCESS_DENIED)
            GTEST_SKIP() << "the camera has one region only";
        ASSERT_EQ(result, ORVALIS_OK);
        const OSizeInfo got = size();
        EXPECT_GE(got.offsetX, 0);
        EXPECT_GE(got.offsetY, 0);
        EXPECT_GT(got.width, 0);
        EXPECT_GT(got.height, 0);
        EXPECT_LE(got.offsetX + got.width, got.maxWidth);
        EXPECT_LE(got.offsetY + got.height, got.maxHeight);
        EXPECT_EQ(got.maxWidth, whole.maxWidth);
        ASSERT_EQ(OrvalisSetSizeInfo(handle_, got), ORVALIS_OK) << "what was read can be written";
        EXPECT_EQ(size().width, got.width);
        EXPECT_EQ(size().offsetX, got.offsetX);
    }
}

TEST_F(Features, switchesAreKept)
{
    bool on = false;
    CONTRACT_NEEDS(OrvalisGetTriggerEnable(handle_, &on));
    for (const bool wanted : {true, false}) {
        EXPECT_EQ(OrvalisSetTriggerEnable(handle_, wanted), ORVALIS_OK);
        EXPECT_EQ(OrvalisGetTriggerEnable(handle_, &on), ORVALIS_OK);
        EXPECT_EQ(on, wanted);
    }
    CONTRACT_NEEDS(OrvalisGetStrobeEnable(handle_, &on));
    for (const bool wanted : {true, false}) {
        EXPECT_EQ(OrvalisSetStrobeEnable(handle_, wanted), ORVALIS_OK);
        EXPECT_EQ(OrvalisGetStrobeEnable(handle_, &on), ORVALIS_OK);
        EXPECT_EQ(on, wanted);
    }
}

TEST_F(Features, softwareTriggerTakesAFrame)
{
    CONTRACT_NEEDS(OrvalisSetTriggerEnable(handle_, true));
    if (OrvalisSetTriggerSourceStr(handle_, "Software") != ORVALIS_OK)
        GTEST_SKIP() << "the camera has no software trigger";
    CONTRACT_NEEDS(OrvalisRunSoftwareTrigger(handle_)); // has no effect without a stream
    start();
    while (frames_.count() == 0)
        ASSERT_EQ(OrvalisRunSoftwareTrigger(handle_), ORVALIS_OK);
}

TEST_F(Features, defaultsAreRestored)
{
    std::int32_t before = 0;
    std::int32_t minimum = 0;
    std::int32_t maximum = 0;
    CONTRACT_NEEDS(OrvalisSetUserDefault(handle_));
    CONTRACT_NEEDS(OrvalisGetBlackLevel(handle_, &before));
    ASSERT_EQ(OrvalisGetBlackLevelMinMax(handle_, &minimum, &maximum), ORVALIS_OK);
    ASSERT_EQ(OrvalisSetBlackLevel(handle_, before == maximum ? minimum : maximum), ORVALIS_OK);
    ASSERT_EQ(OrvalisSetUserDefault(handle_), ORVALIS_OK);
    std::int32_t after = 0;
    ASSERT_EQ(OrvalisGetBlackLevel(handle_, &after), ORVALIS_OK);
    EXPECT_EQ(after, before);
    start();
    ASSERT_TRUE(frames_.waitFor(1));
    EXPECT_EQ(OrvalisSetUserDefault(handle_), ORVALIS_ERROR_ACCESS_DENIED);
}
