// SPDX-License-Identifier: MIT
// Fixed-size records: truncated, bounded, complete.
#include "library/core/Records.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

using namespace orvalis;

TEST(Records, textIsTruncatedAndEndsWithNul)
{
    char out[4] = {'x', 'x', 'x', 'x'};
    copyText(out, "abcdef");
    EXPECT_STREQ(out, "abc");
    copyText(out, "");
    EXPECT_STREQ(out, "");
}

TEST(Records, numbersAreClampedToTheNearest)
{
    EXPECT_EQ(toInt32(1e12), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(toInt32(-1e12), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(toInt32(std::int64_t{1} << 40), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(toUint32(-1.0), 0u);
    EXPECT_EQ(toUint32(1e12), std::numeric_limits<std::uint32_t>::max());
    EXPECT_EQ(toInt32(std::nan("")), 0);
}

TEST(Records, nodeListKeepsToItsCapacity)
{
    const std::vector<std::string> names(300, std::string(400, 'n'));
    auto list = std::make_unique<ONodeList>();
    list->count = 2;
    std::memset(list->names, 0, sizeof list->names);
    fillRecord(names, *list);
    EXPECT_EQ(list->count, 2u);
    EXPECT_EQ(std::strlen(list->names[1]), 255u);
    EXPECT_EQ(list->names[2][0], '\0');
    list->count = 4000000000u;
    fillRecord(names, *list);
    EXPECT_EQ(list->count, 128u);
}

TEST(Records, enumerationKeepsToItsCapacity)
{
    EnumerationValue value;
    for (int i = 0; i < 100; ++i)
        value.entries.push_back({"Entry" + std::to_string(i), i * (std::int64_t{1} << 30)});
    value.current = 3;
    auto record = std::make_unique<OEnumNode>();
    record->count = 1000;
    fillRecord(value, *record);
    EXPECT_EQ(record->count, 64u);
    EXPECT_EQ(record->currentIndex, 3);
    EXPECT_STREQ(record->names[63], "Entry63");
    EXPECT_EQ(record->values[63], std::numeric_limits<std::int32_t>::max());
    record->count = 2;
    fillRecord(value, *record);
    EXPECT_EQ(record->count, 2u);
    EXPECT_EQ(record->currentIndex, -1) << "the present entry was not written";
}

TEST(Records, incrementIsAtLeastOne)
{
    OIntNode record{};
    fillRecord(IntegerValue{1, 0, 2, 0}, record);
    EXPECT_EQ(record.increment, 1);
}
