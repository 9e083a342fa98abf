// SPDX-License-Identifier: MIT
// The state of the window's camera, and the steps that it allows.
#pragma once

#include <atomic>
#include <cstddef>
#include <initializer_list>

/// State of the window's camera.
enum class SessionStep {
    Closed,   ///< no camera is open
    Opening,  ///< the camera library opens a camera
    Open,     ///< a camera is open and idle
    Starting, ///< Play was requested; events may run before the acquisition starts
    Live,     ///< the stream runs, from Play to Stop
    Shooting, ///< a single shot waits for its frame
    Stopping, ///< a stream or a single shot ends
    Closing,  ///< the camera is being closed; events may run
    Lost,     ///< the camera left the bus and was closed
    Exiting,  ///< the window is being destroyed; nothing can start
};

constexpr std::size_t sessionSteps = 10;

/// For logs and tests: "live".
const char *nameOf(SessionStep step);

/// The state of one window. Only the GUI thread changes it; any thread may query it.
class SessionState {
public:
    SessionStep step() const { return m_step; }
    bool is(SessionStep step) const { return m_step == step; }
    bool isOneOf(std::initializer_list<SessionStep> steps) const;

    /// Whether the table allows the step to `next`.
    bool mayGo(SessionStep next) const;
    /// Takes the step to `next`.
    /// @return false without a change if the table refuses it
    bool go(SessionStep next);

    /// True while a stream or a single shot runs.
    bool isAcquiring() const { return isOneOf({SessionStep::Live, SessionStep::Shooting}); }
    /// True from Play to Stop; false during a single shot.
    bool isLive() const { return is(SessionStep::Live); }
    /// A camera is open and nothing else is pending.
    bool mayStart() const { return is(SessionStep::Open); }
    /// No open, stop or close is pending, and the window is not exiting. Opening and closing stop a
    /// stream first.
    bool mayOpenOrClose() const;

private:
    std::atomic<SessionStep> m_step{SessionStep::Closed};
};

/// A named query of a state, evaluated at each read.
class SessionQuery {
public:
    using Query = bool (SessionState::*)() const;
    /// `state` must outlive this object.
    SessionQuery(const SessionState &state, Query query) : m_state(state), m_query(query) {}
    operator bool() const { return (m_state.*m_query)(); }

private:
    const SessionState &m_state;
    const Query m_query;
};
