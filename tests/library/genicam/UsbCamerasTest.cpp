// SPDX-License-Identifier: MIT
// Information about USB3 Vision cameras before they are opened, from a tree of USB devices that the
// test creates.
#include "library/genicam/UsbCameras.h"
#include "library/genicam/Discovery.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

using namespace orvalis;
namespace fs = std::filesystem;

namespace {

class UsbCameras : public testing::Test {
protected:
    void SetUp() override
    {
        char path[] = "/tmp/orvalis-usb-XXXXXX";
        ASSERT_NE(mkdtemp(path), nullptr);
        top_ = path;
        fs::permissions(top_, fs::perms(0755));
    }
    void TearDown() override { fs::remove_all(top_); }

    fs::path devices() const { return top_ / "devices"; }
    fs::path nodes() const { return top_ / "nodes"; }
    std::vector<UsbCamera> plugged() const { return pluggedUsbCameras(devices(), nodes()); }

    static void write(const fs::path &file, const std::string &text)
    {
        fs::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
    }
    /// Adds a camera "1-<number>" with the node "002/00<number>".
    void plug(int number, const std::string &serial, const std::string &descriptors = {})
    {
        const std::string name = "1-" + std::to_string(number);
        const fs::path device = devices() / name;
        write(device / "busnum", "2\n");
        write(device / "devnum", std::to_string(number) + "\n");
        write(device / "manufacturer", "Acme\n");
        write(device / "product", "One Eye\n");
        write(device / "serial", serial + "\n");
        write(device / "descriptors", descriptors);
        write(nodes() / "002" / ("00" + std::to_string(number)), "");
        addInterface(name + ":1.0", "00");
        addInterface(name + ":1.1", "02");
    }
    void addInterface(const std::string &name, const std::string &protocol)
    {
        write(devices() / name / "bInterfaceClass", "ef\n");
        write(devices() / name / "bInterfaceSubClass", "05\n");
        write(devices() / name / "bInterfaceProtocol", protocol + "\n");
    }
    void claim(int number) const
    {
        fs::create_symlink("../../drivers/usbfs",
                           devices() / ("1-" + std::to_string(number) + ":1.0") / "driver");
    }

    static CameraRecord record(const std::string &serial, const std::string &model = "One Eye")
    {
        CameraRecord camera;
        camera.protocol = "USB3Vision";
        camera.vendor = "Acme";
        camera.model = model;
        camera.serialNumber = serial;
        return camera;
    }

    fs::path top_;
};

TEST_F(UsbCameras, areFoundOnceEach)
{
    plug(3, "0815");
    write(devices() / "2-1" / "product", "Keyboard\n");
    write(devices() / "2-1:1.0" / "bInterfaceClass", "03\n");
    const auto cameras = plugged();
    ASSERT_EQ(cameras.size(), 1U);
    EXPECT_EQ(cameras[0].node, nodes() / "002" / "003");
    EXPECT_EQ(cameras[0].vendor, "Acme");
    EXPECT_EQ(cameras[0].model, "One Eye");
    EXPECT_EQ(cameras[0].serialNumber, "0815");
    EXPECT_TRUE(cameras[0].permitted);
    EXPECT_FALSE(cameras[0].claimed);
    EXPECT_TRUE(pluggedUsbCameras(top_ / "none", top_ / "none").empty());
}

TEST_F(UsbCameras, areRecognisedByTheirSerialNumber)
{
    plug(3, "0815");
    plug(4, "0816");
    const auto cameras = plugged();
    const UsbCamera *found = usbCameraOf(record("0816"), cameras);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->serialNumber, "0816");
    found = usbCameraOf(record("0815", "One-Eye"), cameras);
    ASSERT_NE(found, nullptr) << "the number is enough where it is the only one";
    EXPECT_EQ(found->serialNumber, "0815");
    EXPECT_EQ(usbCameraOf(record("0817"), cameras), nullptr);
    plug(5, "0816");
    EXPECT_EQ(usbCameraOf(record("0816", "One-Eye"), plugged()), nullptr) << "ambiguous";
}

TEST_F(UsbCameras, areBusyWhileAProgramHasThemOpen)
{
    plug(3, "0815");
    plug(4, "0816");
    claim(4);
    const auto cameras = plugged();
    EXPECT_EQ(usbRefusal(usbCameraOf(record("0816"), cameras), ORVALIS_ERROR_DEVICE),
              ORVALIS_ERROR_BUSY);
    EXPECT_EQ(usbRefusal(usbCameraOf(record("0815"), cameras), ORVALIS_ERROR_DEVICE),
              ORVALIS_ERROR_DEVICE);
    EXPECT_EQ(usbRefusal(nullptr, ORVALIS_ERROR_DEVICE), ORVALIS_ERROR_NOT_FOUND);
}

TEST_F(UsbCameras, areDeniedOnlyIfTheirOwnNodeIs)
{
    plug(3, "0815");
    plug(4, "0816");
    fs::permissions(nodes() / "002" / "003", fs::perms(0444));
    fs::permissions(nodes() / "002" / "004", fs::perms(0666));
    const auto refusal = [this](const char *serial, OResult otherwise) {
        const auto cameras = plugged();
        return usbRefusal(usbCameraOf(record(serial), cameras), otherwise);
    };
    // Root always has access, so check as another user in a child process. Other threads do not
    // exist there: run no destructors.
    EXPECT_EXIT(
        {
            const bool nobody = getuid() != 0 || setuid(65534) == 0;
            std::_Exit(
                nobody && refusal("0815", ORVALIS_ERROR_DEVICE) == ORVALIS_ERROR_ACCESS_DENIED &&
                        refusal("0816", ORVALIS_ERROR_DEVICE) == ORVALIS_ERROR_DEVICE &&
                        refusal("0816", ORVALIS_ERROR_BUSY) == ORVALIS_ERROR_BUSY
                    ? 0
                    : 1);
        },
        testing::ExitedWithCode(0), "");
    fs::remove(nodes() / "002" / "003");
    EXPECT_EQ(refusal("0815", ORVALIS_ERROR_NOT_FOUND), ORVALIS_ERROR_NOT_FOUND)
        << "just unplugged";
}

/// A device descriptor followed by the camera's device info descriptor.
std::string descriptors(char userNameIndex)
{
    std::string text(18, '\0');
    text[0] = 18;
    text[1] = 1;
    std::string info(20, '\7');
    info[0] = 20;
    info[1] = 0x24;
    info[2] = 0x01;
    info[18] = userNameIndex;
    return text + info;
}

TEST_F(UsbCameras, describeTheStringWithTheUserDefinedName)
{
    plug(3, "0815", descriptors(9));
    EXPECT_EQ(plugged().at(0).userNameIndex, 9);
    plug(3, "0815", descriptors(9).substr(0, 30));
    EXPECT_EQ(plugged().at(0).userNameIndex, 0) << "cut off";
    plug(3, "0815", std::string(50, '\0'));
    EXPECT_EQ(plugged().at(0).userNameIndex, 0) << "descriptors without length";
    EXPECT_EQ(userNameOf(plugged().at(0)), "");
    plug(3, "0815", descriptors(9));
    EXPECT_EQ(userNameOf(plugged().at(0)), "") << "no answer";
}

} // namespace
