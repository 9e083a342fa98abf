// SPDX-License-Identifier: MIT
// The state of the window's camera, and the steps that it allows.
#include "session/SessionState.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

using enum SessionStep;

constexpr std::uint16_t bit(SessionStep step)
{
    return static_cast<std::uint16_t>(1U << static_cast<unsigned>(step));
}

constexpr std::uint16_t to(std::initializer_list<SessionStep> steps)
{
    std::uint16_t bits = 0;
    for (const SessionStep step : steps)
        bits = static_cast<std::uint16_t>(bits | bit(step));
    return bits;
}

struct Row {
    SessionStep from;
    const char *name;
    std::uint16_t allowed;
};

// A close without a camera is allowed, because the window logs it. The close of a camera that
// streams stops the stream first.
constexpr std::array<Row, sessionSteps> table{{
    {Closed, "closed", to({Opening, Closing, Exiting})},
    {Opening, "opening", to({Open, Closed, Lost})},
    // Opening another camera also stops an idle one. A single shot during a start leaves the camera
    // open, and the start continues.
    {Open, "open", to({Starting, Live, Shooting, Stopping, Closing})},
    // Events that run during a start may take a single shot, close the camera or open another.
    {Starting, "starting", to({Live, Open, Shooting, Stopping, Closing})},
    {Live, "live", to({Stopping})},
    {Shooting, "shooting", to({Stopping})},
    {Stopping, "stopping", to({Open})},
    {Closing, "closing", to({Closed, Lost})},
    {Lost, "lost", to({Opening, Closing, Exiting})},
    {Exiting, "exiting", to({})},
}};

constexpr bool rowsAreInOrder()
{
    for (std::size_t i = 0; i < table.size(); ++i)
        if (static_cast<std::size_t>(table[i].from) != i)
            return false;
    return true;
}
static_assert(rowsAreInOrder());

const Row &rowOf(SessionStep step) { return table[static_cast<std::size_t>(step)]; }

} // namespace

const char *nameOf(SessionStep step) { return rowOf(step).name; }

bool SessionState::isOneOf(std::initializer_list<SessionStep> steps) const
{
    const SessionStep now = m_step;
    return std::find(steps.begin(), steps.end(), now) != steps.end();
}

bool SessionState::mayGo(SessionStep next) const
{
    return (rowOf(m_step).allowed & bit(next)) != 0;
}

bool SessionState::go(SessionStep next)
{
    if (!mayGo(next))
        return false;
    m_step = next;
    return true;
}

bool SessionState::mayOpenOrClose() const
{
    return !isOneOf({Opening, Stopping, Closing, Exiting});
}
