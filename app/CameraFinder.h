// SPDX-License-Identifier: MIT
// Discovery passes: list the cameras on the bus, and detect the loss of the one opened last.
#pragma once

#include "app/CameraBus.h"
#include "capture/PoolTasks.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <mutex>

/// Shared by a window and its passes on pool threads, so that it outlives the window while a pass
/// hangs in the camera library.
class CameraFinder : public std::enable_shared_from_this<CameraFinder> {
public:
    /// Callbacks for the results of a pass. They run on the GUI thread, never after detach().
    struct Listener {
        QObject *context = nullptr;                     ///< must live until detach()
        std::function<void(const QStringList &)> found; ///< display names, in the bus's order
        std::function<void()> lost;                     ///< the camera opened last has left the bus
    };
    /// GUI thread.
    void attach(Listener listener);
    /// From now on, no pass calls the listener, not even a pass that is running. GUI thread.
    void detach();

    /// Sets the camera whose loss passes report. Any thread.
    void setOpened(const CameraId &id);

    /// Runs one pass. Any thread.
    void run();

    PoolTasks passes; ///< queued or running on the pool

private:
    bool isAttached();
    void publish(const QStringList &names);
    void deliverNewest();
    void reportLost(const CameraId &missing);
    void reportIfStillLost(const CameraId &missing);

    std::mutex m_mutex; // guards all members below
    Listener m_listener;
    CameraId m_opened{};     ///< the camera opened last; empty before the first
    int m_previousCount = 0; ///< cameras that the last pass found
    QStringList m_names;     ///< the newest list; valid while m_listPosted
    bool m_listPosted = false;
    bool m_lossPosted = false;
};
