// SPDX-License-Identifier: MIT
// The one state of the window's camera, and the steps that it allows.
#pragma once

#include <atomic>
#include <cstddef>
#include <initializer_list>

/// Where the window stands with its camera.
enum class SessionStep {
    Closed,   ///< no camera is open
    Opening,  ///< the camera library opens a camera
    Open,     ///< a camera is open and idle
    Starting, ///< Play was asked for; events may run before the acquisition starts
    Live,     ///< the stream runs, from Play to Stop
    Shooting, ///< a single shot waits for its frame
    Stopping, ///< a stream or a single shot ends
    Closing,  ///< the camera is being closed; events may run
    Lost,     ///< the camera left the bus and was closed
    Exiting,  ///< the window is being destroyed; nothing begins any more
};

constexpr std::size_t sessionSteps = 10;

/// For logs and tests: "live".
const char *nameOf(SessionStep step);

/// The state of one window. Only the GUI thread changes it; any thread may ask.
class SessionState {
public:
    SessionStep step() const { return m_step; }
    bool is(SessionStep step) const { return m_step == step; }
    bool isOneOf(std::initializer_list<SessionStep> steps) const;

    /// Whether the step to `next` is in the table.
    bool mayGo(SessionStep next) const;
    /// Goes to `next`.
    /// @return false, and nothing changes, if the table does not allow that step
    bool go(SessionStep next);

    /// From the start of an acquisition to its end, be it a stream or a single shot.
    bool isAcquiring() const { return isOneOf({SessionStep::Live, SessionStep::Shooting}); }
    /// From Play to Stop; false during a single shot.
    bool isLive() const { return is(SessionStep::Live); }
    /// A camera is open and nothing else is pending.
    bool mayStart() const { return is(SessionStep::Open); }
    /// Nothing is pending that an open or a close would interfere with. Both stop a stream first.
    bool mayOpenOrClose() const;

private:
    std::atomic<SessionStep> m_step{SessionStep::Closed};
};

/// Asks one question of a state each time it is read; a name for the answer, not a copy of it.
class SessionQuestion {
public:
    using Ask = bool (SessionState::*)() const;
    /// `state` outlives the question.
    SessionQuestion(const SessionState &state, Ask ask) : m_state(state), m_ask(ask) {}
    operator bool() const { return (m_state.*m_ask)(); }

private:
    const SessionState &m_state;
    const Ask m_ask;
};
