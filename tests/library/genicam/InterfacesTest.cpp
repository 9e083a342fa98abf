// SPDX-License-Identifier: MIT
// Cameras on several network interfaces: each is reached through the interface on which it was
// found.
#include "tests/library/genicam/Wire.h"

#include <gmock/gmock.h>
#include <net/if.h>
#include <sys/socket.h>

using namespace genicamtest;
using testing::Each;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

/// The numbers of the interfaces through which this process' UDP sockets at `address` send.
std::vector<unsigned> interfacesOfSocketsAt(const char *address)
{
    std::vector<unsigned> found;
    for (int socket = 3; socket < 256; ++socket) {
        sockaddr_in local{};
        socklen_t length = sizeof local;
        std::uint32_t index = 0;
        socklen_t indexLength = sizeof index;
        if (getsockname(socket, reinterpret_cast<sockaddr *>(&local), &length) == 0 &&
            local.sin_family == AF_INET && local.sin_addr.s_addr == inet_addr(address) &&
            getsockopt(socket, IPPROTO_IP, IP_UNICAST_IF, &index, &indexLength) == 0) {
            found.push_back(ntohl(index));
        }
    }
    return found;
}

class Interfaces : public GigeFixture {
protected:
    static void expectPictures(Device &device)
    {
        ASSERT_EQ(device.startStream(), ORVALIS_OK);
        for (int i = 0; i < 5; ++i) {
            RawImage image;
            ASSERT_EQ(nextImage(device, image), ORVALIS_OK);
            EXPECT_TRUE(isWhole(image));
        }
        device.stopStream();
    }
    std::string displayNameOf(const std::string &id)
    {
        for (const auto &camera : backend_->discover()) {
            if (camera.id == id) {
                return camera.displayName;
            }
        }
        return {};
    }
    /// Opens both cameras and receives images from both at the same time.
    void expectBothStream(const std::string &one, const std::string &two)
    {
        const auto first = openCamera(*backend_, one);
        const auto second = openCamera(*backend_, two);
        ASSERT_TRUE(first && second);
        EXPECT_EQ(first->identity().id, one);
        EXPECT_EQ(second->identity().id, two);
        expectPictures(*first);
        expectPictures(*second);
    }
};

TEST_F(Interfaces, twoInOneSubnetReachTheirCameras)
{
    const Wire left("left", "169.254.1.1/16", "169.254.10.1/16");
    const Wire right("right", "169.254.1.2/16", "169.254.10.2/16");
    const CameraProcess one(1, "169.254.10.1", left.launcher());
    const CameraProcess two(2, "169.254.10.2", right.launcher());
    EXPECT_EQ(backend_->discover().size(), 2U);
    expectBothStream(one.id(), two.id());
}

TEST_F(Interfaces, lostPacketsAreRequestedOnTheCamerasInterface)
{
    const Wire left("left", "169.254.1.1/16", "169.254.10.1/16");
    const Wire right("right", "169.254.1.2/16", "169.254.10.2/16");
    const CameraProcess camera(2, "169.254.10.2", right.launcher());
    const auto device = discoveredAndOpened(camera);
    ASSERT_TRUE(device);
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    // Commands and requests for lost packets use separate sockets.
    const auto interfaces = interfacesOfSocketsAt("169.254.1.2");
    EXPECT_THAT(interfaces, SizeIs(2));
    EXPECT_THAT(interfaces, Each(if_nametoindex("right")));
    device->stopStream();
}

TEST_F(Interfaces, camerasWithTheSameAddressAreDistinguishedByInterface)
{
    const Wire left("left", "192.168.1.1/24", "192.168.1.10/24");
    const Wire right("right", "192.168.1.2/24", "192.168.1.10/24");
    const CameraProcess one(1, "192.168.1.10", left.launcher());
    const CameraProcess two(2, "192.168.1.10", right.launcher());
    EXPECT_EQ(backend_->discover().size(), 2U);
    expectBothStream(one.id(), two.id());
}

TEST_F(Interfaces, addressInTheCamerasSubnetIsUsed)
{
    Wire wire("wire", "10.50.0.1/24", "192.168.7.2/24");
    wire.addAddress("192.168.7.1/24");
    const CameraProcess camera(1, "192.168.7.2", wire.launcher());
    const auto device = discoveredAndOpened(camera);
    ASSERT_TRUE(device);
    expectPictures(*device);
}

TEST_F(Interfaces, aCameraOnThisComputerIsFoundAndStreams)
{
    const Wire wire("wire", "10.50.0.1/24", "10.50.0.2/24");
    const CameraProcess camera(1, "10.50.0.1", {});
    const auto device = discoveredAndOpened(camera);
    ASSERT_TRUE(device);
    expectPictures(*device);
}

TEST_F(Interfaces, aCameraInAnotherSubnetIsListedButNotOpenedThroughTheGateway)
{
    const Wire wire("wire", "10.50.0.1/24", "192.168.99.2/24");
    wire.runThere("ip route add default dev " + wire.far());
    const Wire uplink("uplink", "10.60.0.1/24", "10.60.0.254/24");
    // Another camera behind the gateway has that address.
    uplink.runThere("ip addr add 192.168.99.2/32 dev lo");
    Wire::run("ip route add default via 10.60.0.254");
    const CameraProcess camera(1, "192.168.99.2", wire.launcher());
    const CameraProcess stranger(1, "192.168.99.2", uplink.launcher());

    const std::string name = displayNameOf(camera.id());
    EXPECT_THAT(name, HasSubstr("192.168.99.2"));
    EXPECT_THAT(name, HasSubstr("other subnet"));
    std::unique_ptr<Device> device;
    EXPECT_EQ(backend_->open(camera.id(), device), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_FALSE(device) << "a camera was reached through the gateway";
}

} // namespace
