// SPDX-License-Identifier: MIT
// A GigE Vision camera that a test describes, with faults that the test controls.
#include "tests/library/genicam/rig/RigCamera.h"

#include <arpa/inet.h>

#include <cstdio>

namespace genicamtest {
namespace {

constexpr std::uint32_t mono8 = 0x01080001;

struct Format {
    const char *name;
    std::uint32_t code;
};
constexpr Format formats[] = {{"Mono8", mono8},         {"Mono10", 0x01100003},
                              {"Mono12", 0x01100005},   {"Mono16", 0x01100007},
                              {"BayerRG8", 0x01080009}, {"BayerRG12", 0x01100011},
                              {"RGB8", 0x02180014},     {"YUV422_8", 0x02100032}};

std::string pixelFormatNode()
{
    std::string text = "<Enumeration Name=\"PixelFormat\">";
    for (const Format &format : formats) {
        text += std::string("<EnumEntry Name=\"") + format.name + "\"><Value>" +
                std::to_string(format.code) + "</Value></EnumEntry>";
    }
    return text +
           "<pValue>PixelFormatRegister</pValue></Enumeration>"
           "<IntReg Name=\"PixelFormatRegister\"><Address>" +
           std::to_string(RigAddress::pixelFormat) +
           "</Address><Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
           "<Sign>Unsigned</Sign><Endianess>BigEndian</Endianess></IntReg>";
}

in_addr addressOf(const RigOptions &options)
{
    const std::string text =
        options.address.empty() ? "127.0.0." + std::to_string(options.number) : options.address;
    in_addr address{};
    inet_pton(AF_INET, text.c_str(), &address);
    return address;
}

CameraDescription withStream(CameraDescription description, bool withTimes)
{
    constexpr int largest = 4096;
    description.addInteger("Width", RigAddress::width, 1, largest);
    description.addInteger("Height", RigAddress::height, 1, largest);
    description.addNode(pixelFormatNode(), "PixelFormat");
    description.addInteger("PayloadSize", RigAddress::payloadSize, 0, 0x7FFFFFFF);
    description.addNode("<Enumeration Name=\"AcquisitionMode\"><EnumEntry Name=\"Continuous\">"
                        "<Value>0</Value></EnumEntry><Value>0</Value></Enumeration>",
                        "AcquisitionMode");
    description.addCommand("AcquisitionStart", RigAddress::acquisitionStart);
    description.addCommand("AcquisitionStop", RigAddress::acquisitionStop);
    description.addInteger("TLParamsLocked", RigAddress::parametersLocked, 0, 1);
    if (withTimes) {
        description.addFloat("AcquisitionFrameRate", RigAddress::frameRate, 0, 10000);
        description.addFloat("ExposureTime", RigAddress::exposureTime, 1, 60000000);
    }
    return description;
}

} // namespace

RigCamera::RigCamera(CameraDescription description, RigOptions options)
    : serial_("RIG" + std::to_string(options.number)), address_(addressOf(options)),
      stream_(address_, memory, faults),
      control_(address_, memory, faults,
               [this](std::uint64_t block, std::uint32_t first, std::uint32_t last) {
                   stream_.resend(block, first, last);
               })
{
    fillBootstrap(options);
    const std::string xml = withStream(std::move(description), options.describesTimes).text();
    char url[64];
    std::snprintf(url, sizeof url, "Local:rig.xml;%X;%zX", RigAddress::description, xml.size());
    memory.setText(0x0200, url);
    memory.setText(RigAddress::description, xml);
    react();
    control_.open();
}

void RigCamera::fillBootstrap(const RigOptions &options)
{
    constexpr std::uint32_t writesMemory = 1U << 1;
    constexpr std::uint32_t resendsPackets = 1U << 2;
    constexpr std::uint32_t announcesDelays = 1U << 5;
    constexpr std::uint32_t joinsCommands = 1U << 0;
    memory.set(0x0000, 0x00010002);                                  // version of the standard
    memory.set(0x0004, (options.bigEndian ? 0x80000000U : 0U) | 1U); // big-endian; UTF-8
    memory.set(0x0008, 0x00000052);
    memory.set(0x000C, 0x49470000U | options.number); // 52:49:47:00:00:01
    memory.set(0x0010, 7);
    memory.set(0x0014, 4);
    memory.set(RigAddress::address, ntohl(address_.s_addr));
    memory.set(0x0034, 0xFF000000);
    memory.setText(0x0048, "Rig");
    memory.setText(0x0068, "Described");
    memory.setText(0x0088, "1.0");
    memory.setText(0x00D8, serial_);
    memory.setText(0x00E8, options.userName);
    memory.set(0x0600, 1);
    memory.set(0x0904, 1);
    memory.set(RigAddress::capability, joinsCommands | writesMemory | announcesDelays |
                                           (options.offersResend ? resendsPackets : 0U));
    memory.set(RigAddress::heartbeatTimeout, 3000);
    memory.set(0x0940, 1000000000); // ticks per second
    memory.set(RigAddress::packetSize, 1500);
    memory.set(RigAddress::width, 64);
    memory.set(RigAddress::height, 48);
    memory.set(RigAddress::pixelFormat, mono8);
    memory.setFloat(RigAddress::frameRate, 50);
    memory.setFloat(RigAddress::exposureTime, 1000);
}

/// Connects registers with their effects.
void RigCamera::react()
{
    memory.onRead(RigAddress::payloadSize, [this] {
        const std::size_t size = payloadBytes(stream_.nextFrame());
        memory.set(RigAddress::payloadSize, static_cast<std::uint32_t>(size));
    });
    addCommand(RigAddress::acquisitionStart);
    addCommand(RigAddress::acquisitionStop);
    memory.onWrite(RigAddress::acquisitionStart, [this](std::uint32_t) {
        acquires_ = true;
        stream_.start();
    });
    memory.onWrite(RigAddress::acquisitionStop, [this](std::uint32_t) {
        acquires_ = false;
        stream_.stop();
    });
    memory.onWrite(RigAddress::packetSize, [this](std::uint32_t value) {
        constexpr std::uint32_t fire = 1U << 31;
        if ((value & fire) != 0) {
            memory.set(RigAddress::packetSize, value & ~fire);
            stream_.sendTestPacket(value & 0xFFFF);
        }
    });
}

void RigCamera::vanish()
{
    control_.close();
    stream_.stop();
    acquires_ = false;
}

} // namespace genicamtest
