// SPDX-License-Identifier: MIT
// The transport of a GigE Vision stream: socket and packet size, and fallbacks for lost packets.
#include "library/genicam/GigeLink.h"

#include "library/core/Debug.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

namespace orvalis {
namespace {

/// Packet sizes: one for every Ethernet and most tunnels; then the size that GigE Vision requires
/// of every camera.
constexpr int modestPacket = 1400;
constexpr int smallestPacket = 576;
/// On loopback only the camera limits the packet size, and large packets reduce the receiver's
/// load.
constexpr int loopbackPacket = 8192;
/// The longest grace period.
constexpr std::chrono::hours maxGracePeriod{1};

bool isLoopback(ArvGvDevice *device)
{
    GSocketAddress *address = arv_gv_device_get_interface_address(device);
    if (address == nullptr || !G_IS_INET_SOCKET_ADDRESS(address))
        return false;
    return g_inet_address_get_is_loopback(
               g_inet_socket_address_get_address(G_INET_SOCKET_ADDRESS(address))) != FALSE;
}

bool packetSocketAllowed()
{
    const char *value = std::getenv("ORVALIS_PACKET_SOCKET");
    return value == nullptr || std::string_view(value) != "0";
}

GigeTransport transportFor(ArvDevice *device)
{
    if (!ARV_IS_GV_DEVICE(device))
        return GigeTransport();
    // On loopback a packet socket often receives nothing.
    return isLoopback(ARV_GV_DEVICE(device)) ? GigeTransport(loopbackPacket)
                                             : GigeTransport(0, packetSocketAllowed());
}

std::string described(const GigeTransport &transport)
{
    return std::string(transport.packetSocket() ? "a packet" : "an ordinary") +
           " socket, packets of " +
           (transport.packetSize() == 0 ? "negotiated" : std::to_string(transport.packetSize())) +
           " bytes";
}

} // namespace

bool GigeTransport::fallBack(Evidence evidence, Clock::time_point now)
{
    if (evidence == Evidence::SilentSocket)
        return std::exchange(packetSocket_, false);
    if (packetSize_ == smallestPacket)
        return false;
    if (packetSize_ == best_) {
        const bool again = now < restored_ + gracePeriod_;
        gracePeriod_ = again ? std::min<Clock::duration>(gracePeriod_ * 2, maxGracePeriod)
                             : Clock::duration(initialGracePeriod);
    }
    packetSize_ = packetSize_ == modestPacket ? smallestPacket : modestPacket;
    undamagedSince_ = now;
    return true;
}

bool GigeTransport::restore(Clock::time_point now)
{
    if (packetSize_ == best_ || now < undamagedSince_ + gracePeriod_)
        return false;
    packetSize_ = best_;
    restored_ = now;
    return true;
}

GigeLink::GigeLink(ArvDevice *device)
    : gige_(ARV_IS_GV_DEVICE(device)), transport_(transportFor(device))
{
}

void GigeLink::apply(ArvDevice *device)
{
    if (!gige_)
        return;
    ArvGvDevice *gige = ARV_GV_DEVICE(device);
    arv_gv_device_set_stream_options(gige, transport_.packetSocket()
                                               ? ARV_GV_STREAM_OPTION_NONE
                                               : ARV_GV_STREAM_OPTION_PACKET_SOCKET_DISABLED);
    const bool negotiates = transport_.packetSize() == 0 && !std::exchange(negotiated_, true);
    arv_gv_device_set_packet_size_adjustment(gige, negotiates
                                                       ? ARV_GV_PACKET_SIZE_ADJUSTMENT_ALWAYS
                                                       : ARV_GV_PACKET_SIZE_ADJUSTMENT_NEVER);
    if (transport_.packetSize() != 0) {
        Failure failure;
        arv_gv_device_set_packet_size(gige, transport_.packetSize(), failure.slot());
    }
}

bool GigeLink::fallBack(GigeTransport::Evidence evidence)
{
    if (!gige_ || !transport_.fallBack(evidence, Clock::now()))
        return false;
    debugPrint("packets are lost: using %s", described(transport_).c_str());
    return true;
}

bool GigeLink::restore()
{
    if (!transport_.restore(Clock::now()))
        return false;
    negotiated_ = false;
    debugPrint("packets are no longer lost: using %s", described(transport_).c_str());
    return true;
}

} // namespace orvalis
