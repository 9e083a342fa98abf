// SPDX-License-Identifier: MIT
// When the transport of a GigE Vision stream changes, at simulated times.
#include "library/genicam/GigeLink.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using orvalis::Clock;
using orvalis::GigeTransport;

namespace {

constexpr int best = 8192;
constexpr auto damage = GigeTransport::Evidence::Damage;
const Clock::time_point start{100h};

TEST(GigeLink, damageMakesPacketsSmaller)
{
    GigeTransport transport(best);
    EXPECT_EQ(transport.packetSize(), best);
    EXPECT_TRUE(transport.fallBack(damage, start));
    EXPECT_EQ(transport.packetSize(), 1400);
    EXPECT_TRUE(transport.fallBack(damage, start + 1s));
    EXPECT_EQ(transport.packetSize(), 576);
    EXPECT_FALSE(transport.fallBack(damage, start + 2s)) << "no safer setting is left";
}

TEST(GigeLink, aSilentPacketSocketIsReplacedAndNothingElse)
{
    GigeTransport transport(0, true);
    EXPECT_TRUE(transport.fallBack(GigeTransport::Evidence::SilentSocket, start));
    EXPECT_FALSE(transport.packetSocket());
    EXPECT_EQ(transport.packetSize(), 0);
    EXPECT_FALSE(transport.fallBack(GigeTransport::Evidence::SilentSocket, start))
        << "no safer setting is left";
    EXPECT_FALSE(transport.restore(start + 24h)) << "a silent packet socket is not tried again";
}

TEST(GigeLink, damageKeepsThePacketSocket)
{
    GigeTransport transport(0, true);
    EXPECT_TRUE(transport.fallBack(damage, start));
    EXPECT_TRUE(transport.packetSocket());
}

TEST(GigeLink, bestSizeReturnsAfterAMinuteWithoutDamage)
{
    GigeTransport transport(best);
    EXPECT_FALSE(transport.restore(start)) << "already at the best size";
    transport.fallBack(damage, start);
    transport.fallBack(damage, start + 1s);
    EXPECT_FALSE(transport.restore(start + 60s));
    EXPECT_EQ(transport.packetSize(), 576);
    EXPECT_TRUE(transport.restore(start + 61s));
    EXPECT_EQ(transport.packetSize(), best);
}

TEST(GigeLink, aDamagedFrameRestartsTheGracePeriod)
{
    GigeTransport transport(best);
    transport.fallBack(damage, start);
    transport.damaged(start + 50s);
    EXPECT_FALSE(transport.restore(start + 109s));
    EXPECT_TRUE(transport.restore(start + 110s));
}

TEST(GigeLink, eachFailedRetryDoublesTheGracePeriod)
{
    GigeTransport transport(best);
    Clock::time_point now = start;
    transport.fallBack(damage, now);
    for (const auto wait : {1min, 2min, 4min, 8min, 16min, 32min, 60min, 60min}) {
        EXPECT_FALSE(transport.restore(now + wait - 1s));
        now += wait;
        EXPECT_TRUE(transport.restore(now));
        now += 2s;
        EXPECT_TRUE(transport.fallBack(damage, now));
    }
}

TEST(GigeLink, aSuccessfulRetryResetsTheGracePeriod)
{
    GigeTransport transport(best);
    transport.fallBack(damage, start);
    EXPECT_TRUE(transport.restore(start + 1min));
    transport.fallBack(damage, start + 61s);
    EXPECT_TRUE(transport.restore(start + 181s));
    transport.fallBack(damage, start + 10min);
    EXPECT_TRUE(transport.restore(start + 11min));
}

} // namespace
