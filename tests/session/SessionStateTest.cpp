// SPDX-License-Identifier: MIT
// Tries every step between the states of a session, including the refused ones.
#include "session/SessionState.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <vector>

namespace {

using enum SessionStep;
using Steps = std::vector<SessionStep>;

const std::map<SessionStep, std::set<SessionStep>> allowed{
    {Closed, {Opening, Closing, Exiting}},
    {Opening, {Open, Closed, Lost}},
    {Open, {Starting, Live, Shooting, Stopping, Closing}},
    {Starting, {Live, Open, Shooting, Stopping, Closing}},
    {Live, {Stopping}},
    {Shooting, {Stopping}},
    {Stopping, {Open}},
    {Closing, {Closed, Lost}},
    {Lost, {Opening, Closing, Exiting}},
    {Exiting, {}},
};

/// Steps from Closed to each state.
const std::map<SessionStep, Steps> stepsTo{
    {Closed, {}},
    {Opening, {Opening}},
    {Open, {Opening, Open}},
    {Starting, {Opening, Open, Starting}},
    {Live, {Opening, Open, Starting, Live}},
    {Shooting, {Opening, Open, Shooting}},
    {Stopping, {Opening, Open, Shooting, Stopping}},
    {Closing, {Closing}},
    {Lost, {Closing, Lost}},
    {Exiting, {Exiting}},
};

void walk(SessionState &state, SessionStep goal)
{
    for (const SessionStep step : stepsTo.at(goal))
        ASSERT_TRUE(state.go(step)) << "to " << nameOf(step);
    ASSERT_TRUE(state.is(goal)) << nameOf(state.step());
}

TEST(SessionState, followsTheTableForEveryStep)
{
    for (const auto &[from, next] : allowed) {
        for (const auto &[to, ignored] : allowed) {
            SCOPED_TRACE(std::string(nameOf(from)) + " to " + nameOf(to));
            SessionState state;
            walk(state, from);
            const bool expected = next.count(to) == 1;
            EXPECT_EQ(state.mayGo(to), expected);
            EXPECT_EQ(state.go(to), expected);
            EXPECT_TRUE(state.is(expected ? to : from)) << nameOf(state.step());
        }
    }
}

TEST(SessionState, startsClosed) { EXPECT_TRUE(SessionState().is(Closed)); }

TEST(SessionState, namesAreDifferent)
{
    std::set<std::string> names;
    for (const auto &[step, ignored] : allowed)
        names.insert(nameOf(step));
    EXPECT_EQ(names.size(), sessionSteps);
}

struct Answers {
    SessionStep step;
    bool acquiring, live, mayStart, mayOpenOrClose;
};

TEST(SessionState, queriesFollowTheState)
{
    const Answers table[] = {
        {Closed, false, false, false, true},    {Opening, false, false, false, false},
        {Open, false, false, true, true},       {Starting, false, false, false, true},
        {Live, true, true, false, true},        {Shooting, true, false, false, true},
        {Stopping, false, false, false, false}, {Closing, false, false, false, false},
        {Lost, false, false, false, true},      {Exiting, false, false, false, false},
    };
    for (const Answers &row : table) {
        SCOPED_TRACE(nameOf(row.step));
        SessionState state;
        walk(state, row.step);
        EXPECT_EQ(state.isAcquiring(), row.acquiring);
        EXPECT_EQ(state.isLive(), row.live);
        EXPECT_EQ(state.mayStart(), row.mayStart);
        EXPECT_EQ(state.mayOpenOrClose(), row.mayOpenOrClose);
    }
}

TEST(SessionQuery, queriesAtEachRead)
{
    SessionState state;
    const SessionQuery acquiring(state, &SessionState::isAcquiring);
    EXPECT_FALSE(acquiring);
    walk(state, Live);
    EXPECT_TRUE(acquiring);
}

} // namespace
