// SPDX-License-Identifier: MIT
// How a GigE Vision camera sends its stream, and what to try when its packets get lost.
#include "library/genicam/GigeLink.h"

#include "library/core/Debug.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

namespace orvalis {
namespace {

/// Fits every Ethernet and most tunnels; then what GigE Vision demands of every camera.
constexpr int modestPacket = 1400;
constexpr int smallestPacket = 576;
/// Within one computer nothing limits packets but the camera, and large ones spare the receiver.
constexpr int loopbackPacket = 8192;
/// The longest that the best size is not tried again.
constexpr std::chrono::hours longestWhile{1};

bool isLoopback(ArvGvDevice *device)
{
    GSocketAddress *address = arv_gv_device_get_interface_address(device);
    if (address == nullptr || !G_IS_INET_SOCKET_ADDRESS(address)) {
        return false;
    }
    return g_inet_address_get_is_loopback(
               g_inet_socket_address_get_address(G_INET_SOCKET_ADDRESS(address))) != FALSE;
}

bool packetSocketAllowed()
{
    const char *value = std::getenv("ORVALIS_PACKET_SOCKET");
    return value == nullptr || std::string_view(value) != "0";
}

GigeWay wayTo(ArvDevice *device)
{
    if (!ARV_IS_GV_DEVICE(device)) {
        return GigeWay();
    }
    // Within this computer a packet socket often receives nothing at all.
    return isLoopback(ARV_GV_DEVICE(device)) ? GigeWay(loopbackPacket)
                                             : GigeWay(0, packetSocketAllowed());
}

std::string described(const GigeWay &way)
{
    return std::string(way.packetSocket() ? "a packet" : "an ordinary") + " socket, packets of " +
           (way.packetSize() == 0 ? "negotiated" : std::to_string(way.packetSize())) + " bytes";
}

} // namespace

bool GigeWay::retreat(Evidence evidence, Clock::time_point now)
{
    if (evidence == Evidence::DeafSocket) {
        return std::exchange(packetSocket_, false);
    }
    if (packetSize_ == smallestPacket) {
        return false;
    }
    if (packetSize_ == best_) {
        const bool again = now < climbed_ + patience_;
        patience_ = again ? std::min<Clock::duration>(patience_ * 2, longestWhile)
                          : Clock::duration(goodWhile);
    }
    packetSize_ = packetSize_ == modestPacket ? smallestPacket : modestPacket;
    goodSince_ = now;
    return true;
}

bool GigeWay::climb(Clock::time_point now)
{
    if (packetSize_ == best_ || now < goodSince_ + patience_) {
        return false;
    }
    packetSize_ = best_;
    climbed_ = now;
    return true;
}

GigeLink::GigeLink(ArvDevice *device) : gige_(ARV_IS_GV_DEVICE(device)), way_(wayTo(device)) {}

void GigeLink::apply(ArvDevice *device)
{
    if (!gige_) {
        return;
    }
    ArvGvDevice *gige = ARV_GV_DEVICE(device);
    arv_gv_device_set_stream_options(gige, way_.packetSocket()
                                               ? ARV_GV_STREAM_OPTION_NONE
                                               : ARV_GV_STREAM_OPTION_PACKET_SOCKET_DISABLED);
    const bool negotiates = way_.packetSize() == 0 && !std::exchange(negotiated_, true);
    arv_gv_device_set_packet_size_adjustment(gige, negotiates
                                                       ? ARV_GV_PACKET_SIZE_ADJUSTMENT_ALWAYS
                                                       : ARV_GV_PACKET_SIZE_ADJUSTMENT_NEVER);
    if (way_.packetSize() != 0) {
        Failure failure;
        arv_gv_device_set_packet_size(gige, way_.packetSize(), failure.slot());
    }
}

bool GigeLink::retreat(GigeWay::Evidence evidence)
{
    if (!gige_ || !way_.retreat(evidence, Clock::now())) {
        return false;
    }
    debugPrint("packets get lost: trying %s", described(way_).c_str());
    return true;
}

bool GigeLink::climb()
{
    if (!way_.climb(Clock::now())) {
        return false;
    }
    negotiated_ = false;
    debugPrint("no packets get lost any more: trying %s", described(way_).c_str());
    return true;
}

} // namespace orvalis
