// SPDX-License-Identifier: MIT
// The armed state of the action "Save".
#include "capture/SaveRequest.h"

#include <gtest/gtest.h>

namespace {

TEST(SaveRequest, isNotArmedAtFirst)
{
    const SaveRequest request;
    EXPECT_FALSE(request);
    EXPECT_EQ(request.arming(), 0U);
}

TEST(SaveRequest, followsTheAction)
{
    SaveRequest request;
    request.set(true);
    EXPECT_TRUE(request);
    request.set(false);
    EXPECT_FALSE(request);
}

TEST(SaveRequest, theEndOfAnArmingDisarms)
{
    SaveRequest request;
    request.set(true);
    request.finish(request.arming());
    EXPECT_FALSE(request);
}

TEST(SaveRequest, theEndOfAnArmingKeepsTheNextOne)
{
    SaveRequest request;
    request.set(true);
    const SaveRequest::Arming first = request.arming();
    request.set(false);
    request.set(true);
    request.finish(first);
    EXPECT_TRUE(request);
}

} // namespace
