// SPDX-License-Identifier: MIT
// The IDs and display names of real cameras.
#include "library/genicam/Discovery.h"

#include <gtest/gtest.h>

#include <set>

using orvalis::CameraRecord;
using orvalis::nameCameras;

namespace {

CameraRecord camera(std::string vendor, std::string model, std::string serial,
                    std::string address = "10.0.0.2")
{
    CameraRecord record;
    record.vendor = std::move(vendor);
    record.model = std::move(model);
    record.serialNumber = std::move(serial);
    record.address = std::move(address);
    record.physicalId = "00:11:22:33:44:55";
    record.protocol = "GigEVision";
    record.route = {1, 1, 1};
    return record;
}

CameraRecord withUserName(CameraRecord record, std::string userName)
{
    record.userName = std::move(userName);
    return record;
}

std::string displayNameOf(const CameraRecord &record)
{
    std::vector<CameraRecord> cameras{record};
    nameCameras(cameras);
    return cameras[0].displayName;
}

std::vector<CameraRecord> named(std::vector<CameraRecord> cameras)
{
    nameCameras(cameras);
    return cameras;
}

TEST(CameraNames, areVendorModelAndSerialNumber)
{
    const auto cameras = named({camera("Acme", "One Eye/2", "0815")});
    EXPECT_EQ(cameras[0].id, "Acme-One_Eye_2-0815");
    EXPECT_EQ(cameras[0].displayName, "Acme One Eye/2 (0815)");
}

TEST(CameraNames, useTheHardwareAddressWithoutASerialNumber)
{
    EXPECT_EQ(named({camera("Acme", "X", "")})[0].id, "Acme-X-00_11_22_33_44_55");
}

TEST(CameraNames, longNamesKeepTheSerialNumber)
{
    const std::string longText(80, 'm');
    const auto cameras =
        named({camera("Acme", longText, "0815"), camera("Acme", longText, "0816")});
    EXPECT_LE(cameras[0].id.size(), 63U);
    EXPECT_LE(cameras[0].displayName.size(), 63U);
    EXPECT_TRUE(cameras[0].id.ends_with("0815"));
    EXPECT_TRUE(cameras[0].displayName.ends_with("(0815)"));
    EXPECT_NE(cameras[0].id, cameras[1].id);
}

TEST(CameraNames, theNameThatTheUserGaveComesFirst)
{
    const auto cameras = named({withUserName(camera("Acme", "X", "0815"), "Left gate")});
    EXPECT_EQ(cameras[0].displayName, "Left gate: Acme X (0815)");
    EXPECT_EQ(cameras[0].id, "Acme-X-0815") << "the ID does not change with it";
    EXPECT_EQ(displayNameOf(withUserName(camera("Acme", "X", "0815"), "  ")), "Acme X (0815)");
}

TEST(CameraNames, areLatin1WhateverTheCameraSends)
{
    const auto shown = [](const char *userName) {
        const std::string name = displayNameOf(withUserName(camera("A", "X", "1"), userName));
        return name.substr(0, name.find(": "));
    };
    EXPECT_EQ(shown("T\xC3\xBCr"), "T\xFCr") << "UTF-8";
    EXPECT_EQ(shown("T\xFCr"), "T\xFCr") << "Latin-1";
    EXPECT_EQ(shown("\xE5\xB7\xA6 1"), "? 1") << "not in Latin-1";
    EXPECT_EQ(shown("\xF0\x9F\x93\xB7!"), "?!") << "four bytes";
    EXPECT_EQ(shown("a\nb\x7F\xC2\x85 c"), "a b   c") << "control characters";
    EXPECT_EQ(shown("T\xC3"), "T\xC3") << "cut by the camera";
}

TEST(CameraNames, longUserNamesLeaveRoomForModelAndSerialNumber)
{
    std::string manyUmlauts;
    for (int i = 0; i < 40; ++i) {
        manyUmlauts += "\xC3\xBC";
    }
    const auto record = withUserName(camera("Acme Imaging", "Model-1234", "0815"), manyUmlauts);
    EXPECT_EQ(displayNameOf(record), std::string(24, '\xFC') + ": Acme Imaging Model-1234 (0815)");
    auto foreign = record;
    foreign.route = {};
    foreign.address = "192.168.100.200";
    EXPECT_TRUE(displayNameOf(foreign).ends_with(" (0815) - other subnet 192.168.100.200"));
    EXPECT_EQ(displayNameOf(foreign).size(), 63U);
}

TEST(CameraNames, omitTheMakerBeforeTheModel)
{
    auto record = withUserName(camera(std::string(30, 'v'), "Model-1234", "0815"), "Left");
    record.route = {};
    EXPECT_EQ(displayNameOf(record), "Left: Model-1234 (0815) - other subnet 10.0.0.2");
}

TEST(CameraNames, areUnique)
{
    const std::string longText(64, 's');
    auto one = withUserName(camera("Acme", "X", longText + "1"), "Left");
    auto two = withUserName(camera("Acme", "X", longText + "2"), "Left");
    auto twin = two;
    twin.physicalId = "00:11:22:33:44:66";
    auto three = camera("Acme", std::string(80, 'm'), "");
    const auto cameras = named({one, two, twin, three});
    std::set<std::string> ids;
    std::set<std::string> names;
    for (const CameraRecord &record : cameras) {
        EXPECT_LE(record.id.size(), 63U);
        EXPECT_LE(record.displayName.size(), 63U);
        ids.insert(record.id);
        names.insert(record.displayName);
    }
    EXPECT_EQ(ids.size(), cameras.size());
    EXPECT_EQ(names.size(), cameras.size());
}

TEST(CameraNames, containTheAddressOfEqualCameras)
{
    const auto cameras =
        named({camera("Acme", "X", "1", "10.0.0.2"), camera("Acme", "X", "1", "10.0.0.3")});
    EXPECT_EQ(cameras[0].id, "Acme-X-1-10.0.0.2");
    EXPECT_EQ(cameras[1].id, "Acme-X-1-10.0.0.3");
    EXPECT_EQ(cameras[1].displayName, "Acme X (1) 10.0.0.3");
}

TEST(CameraNames, doNotDependOnTheOrder)
{
    const auto a = named({camera("Acme", "X", "1"), camera("Acme", "X", "2")});
    const auto b = named({camera("Acme", "X", "2"), camera("Acme", "X", "1")});
    EXPECT_EQ(a[0].id, b[1].id);
    EXPECT_EQ(a[1].id, b[0].id);
}

} // namespace
