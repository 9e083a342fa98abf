// SPDX-License-Identifier: MIT
// Integer nodes in the interface's 32 bits: unchanged, as a bit pattern, or clamped.
#include "tests/library/core/LibraryFixture.h"

#include <cstdint>
#include <limits>

using namespace orvalis;
using namespace orvalis::test;

namespace {

constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
constexpr double kLargestUnsigned = 4294967295.0;

class NodeCalls : public LibraryFixture {
protected:
    void SetUp() override
    {
        LibraryFixture::SetUp();
        open();
    }
    void have(const ScriptedNode &node)
    {
        script_->nodes.with([&] { script_->nodes.nodes["Node"] = node; });
    }
    OIntNode read()
    {
        OIntNode node{};
        EXPECT_EQ(OrvalisGetNodeInt(handle_, "Node", &node), ORVALIS_OK);
        return node;
    }
    std::int32_t write(std::int32_t value) { return OrvalisSetNodeInt(handle_, "Node", value); }
    double held()
    {
        double value = 0;
        script_->nodes.with([&] { value = script_->nodes.nodes["Node"].value; });
        return value;
    }
};

} // namespace

TEST_F(NodeCalls, unsignedNumbersArePassedAsBitPatterns)
{
    have(integerNode(3232235777.0, 0, kLargestUnsigned));
    const OIntNode node = read();
    EXPECT_EQ(node.value, -1062731519) << "192.168.1.1";
    EXPECT_EQ(node.minimum, kSmallest);
    EXPECT_EQ(node.maximum, kLargest);
    EXPECT_EQ(write(-1062731518), ORVALIS_OK);
    EXPECT_EQ(held(), 3232235778.0);
    EXPECT_EQ(write(-1), ORVALIS_OK);
    EXPECT_EQ(held(), kLargestUnsigned);
    EXPECT_EQ(write(17), ORVALIS_OK);
    EXPECT_EQ(held(), 17);
}

TEST_F(NodeCalls, patternsOutsideTheRealBoundsAreRefused)
{
    have(integerNode(3000000000.0, 10, 4000000000.0));
    EXPECT_EQ(read().minimum, kSmallest);
    EXPECT_EQ(read().maximum, kLargest);
    EXPECT_EQ(write(-1), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(write(9), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(held(), 3000000000.0);
    EXPECT_EQ(write(10), ORVALIS_OK);
    EXPECT_EQ(held(), 10);
}

TEST_F(NodeCalls, signedAndThirtyOneBitNumbersAreUnchanged)
{
    have(integerNode(5, 0, kLargest));
    EXPECT_EQ(read().minimum, 0);
    EXPECT_EQ(read().maximum, kLargest);
    EXPECT_EQ(write(-1), ORVALIS_ERROR_OUT_OF_RANGE);
    have(integerNode(-5, kSmallest, kLargest));
    EXPECT_EQ(read().value, -5);
    EXPECT_EQ(write(-6), ORVALIS_OK);
    EXPECT_EQ(held(), -6);
}

TEST_F(NodeCalls, numbersBeyondThirtyTwoBitsAreClampedAndNotWritten)
{
    for (const auto &[minimum, maximum] :
         {std::pair{0.0, kLargestUnsigned + 1}, std::pair{-1.0, kLargestUnsigned},
          std::pair{-3e9, 5.0}}) {
        have(integerNode(maximum, minimum, maximum));
        EXPECT_EQ(read().value, maximum > 5 ? kLargest : 5) << maximum;
        EXPECT_EQ(read().minimum, minimum < -1 ? kSmallest : minimum) << maximum;
        EXPECT_EQ(read().maximum, maximum > 5 ? kLargest : 5) << maximum;
        EXPECT_EQ(write(1), ORVALIS_ERROR_ACCESS_DENIED) << maximum;
        EXPECT_EQ(held(), maximum);
    }
}
