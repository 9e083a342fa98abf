// SPDX-License-Identifier: MIT
// Parsing answers to discovery, and the routes to the cameras that sent them.
#include "library/genicam/GigeDiscovery.h"
#include "library/genicam/GigeRoute.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <cstring>

using namespace orvalis;

namespace {

using Packet = std::vector<std::uint8_t>;

void put(Packet &packet, std::size_t at, const std::string &text)
{
    std::copy(text.begin(), text.end(), packet.begin() + 8 + static_cast<std::ptrdiff_t>(at));
}

/// A valid answer.
Packet answer()
{
    Packet packet(8 + 248);
    packet[3] = 0x03;
    packet[5] = 248;
    put(packet, 0x0A, "\x01\x02\x03\x0A\x0B\x0C");
    put(packet, 0x24, "\x0A\x32\x01\x07");
    put(packet, 0x48, "Acme");
    put(packet, 0x68, "One Eye");
    put(packet, 0xD8, "0815");
    put(packet, 0xE8, "Left gate");
    return packet;
}

TEST(GigeAnnouncements, containIdentityAndAddress)
{
    const auto camera = parseAnnouncement(answer());
    ASSERT_TRUE(camera);
    EXPECT_EQ(camera->hardwareAddress, "01:02:03:0a:0b:0c");
    EXPECT_EQ(dotted(camera->address), "10.50.1.7");
    EXPECT_EQ(camera->vendor, "Acme");
    EXPECT_EQ(camera->model, "One Eye");
    EXPECT_EQ(camera->serialNumber, "0815");
    EXPECT_EQ(camera->userName, "Left gate");
}

TEST(GigeAnnouncements, textsMayFillTheirFieldsWithoutNul)
{
    Packet packet = answer();
    put(packet, 0x48, std::string(32, 'v'));
    put(packet, 0xD8, std::string(16, 's'));
    put(packet, 0xE8, std::string(16, 'u'));
    const auto camera = parseAnnouncement(packet);
    ASSERT_TRUE(camera);
    EXPECT_EQ(camera->vendor, std::string(32, 'v'));
    EXPECT_EQ(camera->serialNumber, std::string(16, 's'));
    EXPECT_EQ(camera->userName, std::string(16, 'u'));
}

TEST(GigeAnnouncements, missingFieldsAtTheEndAreEmpty)
{
    Packet packet = answer();
    packet.resize(8 + 0xD8);
    const auto camera = parseAnnouncement(packet);
    ASSERT_TRUE(camera);
    EXPECT_EQ(camera->model, "One Eye");
    EXPECT_EQ(camera->serialNumber, "");
}

TEST(GigeAnnouncements, otherPacketsAreIgnored)
{
    for (std::size_t size = 0; size < 8 + 0x48; ++size) {
        Packet packet = answer();
        packet.resize(size);
        EXPECT_FALSE(parseAnnouncement(packet)) << size;
    }
    for (std::size_t byte = 0; byte < 4; ++byte) { // an error, or the answer to another command
        Packet packet = answer();
        packet[byte] ^= 0x80;
        EXPECT_FALSE(parseAnnouncement(packet)) << byte;
    }
}

InterfaceAddress interface(unsigned index, const char *address, const char *mask)
{
    InterfaceAddress made;
    made.index = index;
    made.address = inet_addr(address);
    made.mask = inet_addr(mask);
    return made;
}

TEST(GigeRoutes, useTheInterfaceOfTheCamera)
{
    const std::vector<InterfaceAddress> interfaces{interface(2, "169.254.1.1", "255.255.0.0"),
                                                   interface(3, "10.0.0.1", "255.255.255.0"),
                                                   interface(3, "169.254.1.2", "255.255.0.0")};
    const GigeRoute route = routeTo(inet_addr("169.254.9.9"), 3, interfaces);
    EXPECT_TRUE(route);
    EXPECT_EQ(route.interfaceIndex, 3U);
    EXPECT_EQ(dotted(route.local), "169.254.1.2");
    EXPECT_EQ(dotted(route.camera), "169.254.9.9");
}

TEST(GigeRoutes, areEmptyFromAnotherSubnet)
{
    const std::vector<InterfaceAddress> interfaces{interface(2, "10.0.0.1", "255.255.255.0"),
                                                   interface(3, "10.0.1.1", "255.255.255.0")};
    EXPECT_FALSE(routeTo(inet_addr("10.0.1.7"), 2, interfaces)) << "seen on the other interface";
    EXPECT_FALSE(routeTo(inet_addr("10.0.2.7"), 3, interfaces));
    EXPECT_FALSE(routeTo(inet_addr("10.0.0.1"), 3, interfaces)) << "our own address";
    EXPECT_FALSE(routeTo(inet_addr("10.0.0.7"), 2, {}));
}

TEST(GigeRoutes, ofOtherDevicesAreEmpty)
{
    Failure failure;
    const GPtr<ArvDevice> fake(arv_fake_device_new("1", failure.slot()));
    ASSERT_TRUE(fake);
    EXPECT_FALSE(routeOf(fake.get()));
}

} // namespace
