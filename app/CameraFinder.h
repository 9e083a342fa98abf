// SPDX-License-Identifier: MIT
// Passes over the bus: which cameras are there, and whether the one opened last has left.
#pragma once

#include "app/CameraBus.h"
#include "capture/PoolTasks.h"

#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <mutex>

/// Shared by a window and its passes on pool threads: it outlives the window for as long as a pass
/// hangs in the camera library.
class CameraFinder : public std::enable_shared_from_this<CameraFinder> {
public:
    /// Receives what a pass finds. Both functions run on the GUI thread, and not after detach().
    struct Listener {
        QObject *context = nullptr;                     ///< lives until detach()
        std::function<void(const QStringList &)> found; ///< display names, in the bus's order
        std::function<void()> lost;                     ///< the camera opened last is gone
    };
    /// GUI thread.
    void attach(Listener listener);
    /// Passes that run find nothing any more. GUI thread.
    void detach();

    /// The camera to look for from now on. Any thread.
    void setOpened(const CameraId &id);

    /// One pass. Any thread.
    void run();

    PoolTasks passes; ///< those handed to the pool and not ended

private:
    bool isAttached();
    void publish(const QStringList &names);
    void deliverNewest();
    void reportLost(const CameraId &missing);
    void reportIfStillLost(const CameraId &missing);

    std::mutex m_mutex; // guards all that follows
    Listener m_listener;
    CameraId m_opened{};     ///< the camera opened last; empty before the first
    int m_previousCount = 0; ///< cameras that the last pass found
    QStringList m_names;     ///< the newest list, while m_listPosted
    bool m_listPosted = false;
    bool m_lossPosted = false;
};
