// SPDX-License-Identifier: MIT
// The way to a GigE Vision camera: which interface, which address of it, which address of the
// camera.
#include "library/genicam/GigeRoute.h"

#include <algorithm>
#include <utility>

namespace orvalis {
namespace {

/// Where a device keeps the number of its interface.
constexpr const char *interfaceKey = "orvalis-interface";

/// The interface that sockets of the present thread are to send through; 0: as the routes say.
thread_local unsigned t_interface = 0;

using InitSocket = decltype(GInitableIface::init);
InitSocket s_initSocket = nullptr;

gboolean initSocketAlong(GInitable *socket, GCancellable *cancellable, GError **error)
{
    const gboolean made = s_initSocket(socket, cancellable, error);
    if (made && t_interface != 0 && g_socket_get_family(G_SOCKET(socket)) == G_SOCKET_FAMILY_IPV4) {
        sendThrough(g_socket_get_fd(G_SOCKET(socket)), t_interface);
    }
    return made;
}

/// Aravis binds its sockets to the address of an interface, which says where answers go. Where
/// packets go out is for the routes of the system to say, and these know one way only into a subnet
/// that two interfaces are in. Aravis neither tells the system more nor lets others at its sockets
/// before it has sent something. So sockets are told when GLib makes them.
void watchSockets()
{
    static const bool once = [] {
        // Both stay for the process' lifetime.
        gpointer type = g_type_class_ref(G_TYPE_SOCKET);
        auto *interface =
            static_cast<GInitableIface *>(g_type_interface_peek(type, G_TYPE_INITABLE));
        s_initSocket = interface->init;
        __atomic_store_n(&interface->init, &initSocketAlong, __ATOMIC_RELEASE);
        return true;
    }();
    static_cast<void>(once);
}

/// True if the routes of the system may lead to the camera through another interface.
bool isAmbiguous(const GigeRoute &route)
{
    const auto interfaces = localInterfaces();
    return std::any_of(interfaces.begin(), interfaces.end(), [&](const auto &other) {
        return other.index != route.interfaceIndex && other.reaches(route.camera);
    });
}

GPtr<GInetAddress> inetAddress(in_addr_t address)
{
    return GPtr<GInetAddress>(g_inet_address_new_from_bytes(
        reinterpret_cast<const guint8 *>(&address), G_SOCKET_FAMILY_IPV4));
}

in_addr_t bytesOf(GSocketAddress *end)
{
    sockaddr_in native{};
    return g_socket_address_to_native(end, &native, sizeof native, nullptr) ? native.sin_addr.s_addr
                                                                            : 0;
}

} // namespace

GigeRoute routeTo(in_addr_t camera, unsigned interfaceIndex,
                  const std::vector<InterfaceAddress> &interfaces)
{
    bool onThisComputer = false;
    for (const InterfaceAddress &interface : interfaces) {
        if (interface.index == interfaceIndex && interface.reaches(camera)) {
            return {interfaceIndex, interface.address, camera};
        }
        onThisComputer =
            onThisComputer || (interface.index == interfaceIndex && interface.loopback);
    }
    for (const InterfaceAddress &interface : interfaces) {
        if (onThisComputer && interface.address == camera) {
            return {interface.index, interface.address, camera};
        }
    }
    return {0, 0, camera};
}

GPtr<ArvDevice> openAlong(const GigeRoute &route, Failure &failure)
{
    const SocketsAlong along(route);
    const auto interface = inetAddress(route.local);
    const auto camera = inetAddress(route.camera);
    GPtr<ArvDevice> device(arv_gv_device_new(interface.get(), camera.get(), failure.slot()));
    if (device) {
        g_object_set_data(G_OBJECT(device.get()), interfaceKey,
                          GUINT_TO_POINTER(route.interfaceIndex));
    }
    return device;
}

GigeRoute routeOf(ArvDevice *device)
{
    if (!ARV_IS_GV_DEVICE(device)) {
        return {};
    }
    ArvGvDevice *gige = ARV_GV_DEVICE(device);
    GigeRoute route{GPOINTER_TO_UINT(g_object_get_data(G_OBJECT(device), interfaceKey)),
                    bytesOf(arv_gv_device_get_interface_address(gige)),
                    bytesOf(arv_gv_device_get_device_address(gige))};
    if (!route) {
        for (const InterfaceAddress &interface : localInterfaces()) {
            route.interfaceIndex =
                interface.address == route.local ? interface.index : route.interfaceIndex;
        }
    }
    return route;
}

SocketsAlong::SocketsAlong(const GigeRoute &route)
{
    if (route && isAmbiguous(route)) {
        watchSockets();
        t_interface = route.interfaceIndex;
    }
}

SocketsAlong::~SocketsAlong() { t_interface = 0; }

} // namespace orvalis
