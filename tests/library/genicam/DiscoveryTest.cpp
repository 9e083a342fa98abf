// SPDX-License-Identifier: MIT
// The IDs and display names that real cameras get.
#include "library/genicam/Discovery.h"

#include <gtest/gtest.h>

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
    return record;
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

TEST(CameraNames, withoutASerialNumberTheHardwareAddressStandsIn)
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

TEST(CameraNames, twinsAreToldApartByTheirAddress)
{
    const auto cameras =
        named({camera("Acme", "X", "1", "10.0.0.2"), camera("Acme", "X", "1", "10.0.0.3")});
    EXPECT_EQ(cameras[0].id, "Acme-X-1-10.0.0.2");
    EXPECT_EQ(cameras[1].id, "Acme-X-1-10.0.0.3");
}

TEST(CameraNames, doNotDependOnTheOrder)
{
    const auto a = named({camera("Acme", "X", "1"), camera("Acme", "X", "2")});
    const auto b = named({camera("Acme", "X", "2"), camera("Acme", "X", "1")});
    EXPECT_EQ(a[0].id, b[1].id);
    EXPECT_EQ(a[1].id, b[0].id);
}

} // namespace
