// SPDX-License-Identifier: MIT
// When a GigE Vision camera is told to send otherwise, at times that the test makes up.
#include "library/genicam/GigeLink.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using orvalis::Clock;
using orvalis::GigeWay;

namespace {

constexpr int best = 8192;
constexpr auto damage = GigeWay::Evidence::Damage;
const Clock::time_point start{100h};

TEST(GigeLink, damageMakesPacketsSmaller)
{
    GigeWay way(best);
    EXPECT_EQ(way.packetSize(), best);
    EXPECT_TRUE(way.retreat(damage, start));
    EXPECT_EQ(way.packetSize(), 1400);
    EXPECT_TRUE(way.retreat(damage, start + 1s));
    EXPECT_EQ(way.packetSize(), 576);
    EXPECT_FALSE(way.retreat(damage, start + 2s)) << "nothing is left";
}

TEST(GigeLink, aDeafSocketIsChangedAndNothingElse)
{
    GigeWay way(0, true);
    EXPECT_TRUE(way.retreat(GigeWay::Evidence::DeafSocket, start));
    EXPECT_FALSE(way.packetSocket());
    EXPECT_EQ(way.packetSize(), 0);
    EXPECT_FALSE(way.retreat(GigeWay::Evidence::DeafSocket, start)) << "nothing is left";
    EXPECT_FALSE(way.climb(start + 24h)) << "a socket that has been deaf stays so";
}

TEST(GigeLink, damageKeepsThePacketSocket)
{
    GigeWay way(0, true);
    EXPECT_TRUE(way.retreat(damage, start));
    EXPECT_TRUE(way.packetSocket());
}

TEST(GigeLink, aGoodMinuteLeadsBack)
{
    GigeWay way(best);
    EXPECT_FALSE(way.climb(start)) << "there is nowhere to go";
    way.retreat(damage, start);
    way.retreat(damage, start + 1s);
    EXPECT_FALSE(way.climb(start + 60s));
    EXPECT_EQ(way.packetSize(), 576);
    EXPECT_TRUE(way.climb(start + 61s));
    EXPECT_EQ(way.packetSize(), best);
}

TEST(GigeLink, aDamagedFrameMakesTheMinuteBeginAgain)
{
    GigeWay way(best);
    way.retreat(damage, start);
    way.damaged(start + 50s);
    EXPECT_FALSE(way.climb(start + 109s));
    EXPECT_TRUE(way.climb(start + 110s));
}

TEST(GigeLink, eachClimbThatFailsDoublesTheWhile)
{
    GigeWay way(best);
    Clock::time_point now = start;
    way.retreat(damage, now);
    for (const auto wait : {1min, 2min, 4min, 8min, 16min, 32min, 60min, 60min}) {
        EXPECT_FALSE(way.climb(now + wait - 1s));
        now += wait;
        EXPECT_TRUE(way.climb(now));
        now += 2s;
        EXPECT_TRUE(way.retreat(damage, now));
    }
}

TEST(GigeLink, aClimbThatLastedIsForgotten)
{
    GigeWay way(best);
    way.retreat(damage, start);
    EXPECT_TRUE(way.climb(start + 1min));
    way.retreat(damage, start + 61s);
    EXPECT_TRUE(way.climb(start + 181s));
    way.retreat(damage, start + 10min);
    EXPECT_TRUE(way.climb(start + 11min));
}

} // namespace
