// SPDX-License-Identifier: MIT
// The route to a GigE Vision camera: interface, local address, camera address.
#include "library/genicam/GigeRoute.h"

#include <algorithm>
#include <utility>

namespace orvalis {
namespace {

/// The key under which a device stores its interface number.
constexpr const char *interfaceKey = "orvalis-interface";

/// The interface through which sockets of this thread send; 0: according to the routing table.
thread_local unsigned t_interface = 0;

using InitSocket = decltype(GInitableIface::init);
InitSocket s_initSocket = nullptr;

gboolean initRoutedSocket(GInitable *socket, GCancellable *cancellable, GError **error)
{
    const gboolean made = s_initSocket(socket, cancellable, error);
    if (made && t_interface != 0 && g_socket_get_family(G_SOCKET(socket)) == G_SOCKET_FAMILY_IPV4)
        sendThrough(g_socket_get_fd(G_SOCKET(socket)), t_interface);
    return made;
}

/// Hooks the creation of GLib sockets. Aravis binds its sockets to the address of an interface,
/// which determines where answers arrive; the routing table determines where packets leave, and it
/// has one route into a subnet that two interfaces share. Aravis does not set the outgoing
/// interface, and does not give access to its sockets before it has sent something. So each socket
/// gets its interface when GLib creates it.
void hookSocketCreation()
{
    static const bool once = [] {
        // Both stay valid for the lifetime of the process.
        gpointer type = g_type_class_ref(G_TYPE_SOCKET);
        auto *interface =
            static_cast<GInitableIface *>(g_type_interface_peek(type, G_TYPE_INITABLE));
        s_initSocket = interface->init;
        __atomic_store_n(&interface->init, &initRoutedSocket, __ATOMIC_RELEASE);
        return true;
    }();
    static_cast<void>(once);
}

/// True if the routing table may use another interface for this camera.
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
        if (interface.index == interfaceIndex && interface.reaches(camera))
            return {interfaceIndex, interface.address, camera};
        onThisComputer =
            onThisComputer || (interface.index == interfaceIndex && interface.loopback);
    }
    for (const InterfaceAddress &interface : interfaces)
        if (onThisComputer && interface.address == camera)
            return {interface.index, interface.address, camera};
    return {0, 0, camera};
}

GPtr<ArvDevice> openThrough(const GigeRoute &route, Failure &failure)
{
    const SocketRouting routing(route);
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
    if (!ARV_IS_GV_DEVICE(device))
        return {};
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

SocketRouting::SocketRouting(const GigeRoute &route)
{
    if (route && isAmbiguous(route)) {
        hookSocketCreation();
        t_interface = route.interfaceIndex;
    }
}

SocketRouting::~SocketRouting() { t_interface = 0; }

} // namespace orvalis
