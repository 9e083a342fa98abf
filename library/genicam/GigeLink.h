// SPDX-License-Identifier: MIT
// How a GigE Vision camera sends its stream, and what to try when nothing arrives.
#pragma once

#include "library/genicam/Glib.h"

namespace orvalis {

/// Kind of socket and size of packets of one camera. The first try is the best that the network
/// promises: packets as large as a test packet that arrived, and Aravis' packet socket if the
/// program may use it. Each retreat() is a safer setting. Needs the turn of the camera's link.
class GigeLink {
public:
    /// For any camera; those that are not GigE Vision have nothing to try.
    explicit GigeLink(ArvDevice *device);

    /// Sets up the camera for the present try. Before each stream.
    void apply(ArvDevice *device);
    /// Moves on after a stream that brought nothing. `damaged` if frames came, but none complete.
    /// False if there is nothing left to try.
    bool retreat(bool damaged);

private:
    bool gige_ = false;
    bool packetSocket_ = false;
    int packetSize_ = 0; ///< 0: negotiated by Aravis
};

} // namespace orvalis
