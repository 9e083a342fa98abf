// SPDX-License-Identifier: MIT
// How a GigE Vision camera sends its stream, and what to try when nothing arrives.
#include "library/genicam/GigeLink.h"

#include "library/core/Debug.h"

#include <cstdlib>
#include <string_view>

namespace orvalis {
namespace {

/// Fits every Ethernet and most tunnels; then what GigE Vision demands of every camera.
constexpr int modestPacket = 1400;
constexpr int smallestPacket = 576;
/// Within one computer nothing limits packets but the camera, and large ones spare the receiver.
constexpr int loopbackPacket = 8192;

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

} // namespace

GigeLink::GigeLink(ArvDevice *device) : gige_(ARV_IS_GV_DEVICE(device))
{
    if (!gige_) {
        return;
    }
    if (isLoopback(ARV_GV_DEVICE(device))) {
        // A packet socket often receives nothing at all here.
        packetSize_ = loopbackPacket;
    } else {
        packetSocket_ = packetSocketAllowed();
    }
}

void GigeLink::apply(ArvDevice *device)
{
    if (!gige_) {
        return;
    }
    ArvGvDevice *gige = ARV_GV_DEVICE(device);
    arv_gv_device_set_stream_options(gige, packetSocket_
                                               ? ARV_GV_STREAM_OPTION_NONE
                                               : ARV_GV_STREAM_OPTION_PACKET_SOCKET_DISABLED);
    if (packetSize_ == 0) {
        arv_gv_device_set_packet_size_adjustment(gige, ARV_GV_PACKET_SIZE_ADJUSTMENT_ONCE);
        return;
    }
    arv_gv_device_set_packet_size_adjustment(gige, ARV_GV_PACKET_SIZE_ADJUSTMENT_NEVER);
    Failure failure;
    arv_gv_device_set_packet_size(gige, packetSize_, failure.slot());
}

bool GigeLink::retreat(bool damaged)
{
    if (!gige_) {
        return false;
    }
    if (!damaged && packetSocket_) {
        packetSocket_ = false;
    } else if (packetSize_ == 0 || packetSize_ == loopbackPacket) {
        packetSize_ = modestPacket;
    } else if (packetSize_ == modestPacket) {
        packetSize_ = smallestPacket;
    } else {
        return false;
    }
    debugPrint("no picture arrives: trying %s socket, packets of %s bytes",
               packetSocket_ ? "a packet" : "an ordinary",
               packetSize_ == 0 ? "negotiated" : std::to_string(packetSize_).c_str());
    return true;
}

} // namespace orvalis
