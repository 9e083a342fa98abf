// SPDX-License-Identifier: MIT
// Short queries to a GigE Vision camera: is it there, and does another program control it?
#pragma once

#include "library/genicam/GigeRoute.h"

namespace orvalis {

/// Aravis takes 2.5 s to regard a camera as gone. Some losses can be proven at once: the network
/// interface has no link, or the remote host reports that the port is closed. Does not need the
/// lock of the camera's link.
class GigePresence {
public:
    /// For any camera; proves nothing unless it is a GigE Vision camera.
    explicit GigePresence(ArvDevice *device) : GigePresence(routeOf(device)) {}
    /// For a camera that is not open yet.
    explicit GigePresence(const GigeRoute &route) : route_(route) {}

    /// Returns the proof as text; null if there is none, whether the camera is there or not. Takes
    /// 50 ms at most.
    const char *whyGone() const;

    /// True if the camera is a GigE Vision camera, which can be queried here.
    bool isKnown() const { return static_cast<bool>(route_); }
    /// True if the camera answers one of several queries within 1.5 s.
    bool answers() const;
    /// True if the camera, which this program has not opened, reports that another program controls
    /// it or has exclusive access. False if it does not answer within 200 ms.
    bool isHeldByOther() const;

private:
    GigeRoute route_;
};

} // namespace orvalis
