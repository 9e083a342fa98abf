// SPDX-License-Identifier: MIT
// Quick proof that a GigE Vision camera is gone.
#pragma once

#include "library/genicam/Glib.h"

#include <netinet/in.h>

namespace orvalis {

/// Aravis waits for 2.5 s until it takes a camera that does not answer for gone. Some losses can be
/// proven at once: the network interface has no link any more, or the computer at the other end
/// says that nobody listens. The turn of the camera's link is not needed.
class GigePresence {
public:
    /// For any camera; of those that are not GigE Vision nothing is ever proven.
    explicit GigePresence(ArvDevice *device);
    /// For a camera that is not open yet, by the addresses of the interface and of the camera.
    GigePresence(GInetAddress *local, GInetAddress *camera);

    /// The proof in words; null if there is none: then the camera may be there or not. Takes
    /// 50 ms at most.
    const char *whyGone() const;

private:
    sockaddr_in local_{};
    sockaddr_in camera_{};
    bool gige_ = false;
};

} // namespace orvalis
