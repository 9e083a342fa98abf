// SPDX-License-Identifier: MIT
// Short questions to a GigE Vision camera: is it there, and who controls it?
#pragma once

#include "library/genicam/GigeRoute.h"

namespace orvalis {

/// Aravis waits for 2.5 s until it takes a camera that does not answer for gone. Some losses can be
/// proven at once: the network interface has no link any more, or the computer at the other end
/// says that nobody listens. The turn of the camera's link is not needed.
class GigePresence {
public:
    /// For any camera; of those that are not GigE Vision nothing is ever proven.
    explicit GigePresence(ArvDevice *device) : GigePresence(routeOf(device)) {}
    /// For a camera that is not open yet.
    explicit GigePresence(const GigeRoute &route) : route_(route) {}

    /// The proof in words; null if there is none: then the camera may be there or not. Takes
    /// 50 ms at most.
    const char *whyGone() const;

    /// False for cameras that are not GigE Vision, of which nothing can be known here.
    bool isKnown() const { return static_cast<bool>(route_); }
    /// True if the camera answers to anybody: asked several times, within 1.5 s.
    bool answers() const;
    /// True if the camera, which this program has not opened, says that another program controls
    /// it, or has it for itself alone. A camera that does not answer within 200 ms says nothing.
    bool isHeldByOther() const;

private:
    GigeRoute route_;
};

} // namespace orvalis
