// SPDX-License-Identifier: MIT
// Library, enumeration, connection.
#include "tests/contract/Contract.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <optional>

using namespace contract;

namespace {

class Library : public LibraryTest {};
class Connection : public CameraTest {};

/// The camera IDs in their order, with the given back ends.
std::vector<std::string> idsOn(const char *backends)
{
    const char *variable = std::getenv("ORVALIS_BACKENDS");
    const std::optional<std::string> before(variable ? std::optional(variable) : std::nullopt);
    setenv("ORVALIS_BACKENDS", backends, 1);
    EXPECT_EQ(OrvalisInit(), ORVALIS_OK);
    std::uint32_t count = 0;
    EXPECT_EQ(OrvalisNumberOfCameras(&count), ORVALIS_OK);
    std::vector<std::string> ids;
    for (std::uint32_t i = 0; i < count; ++i) {
        char id[ORVALIS_NAME_SIZE] = "";
        EXPECT_EQ(OrvalisGetCameraID(i, id), ORVALIS_OK);
        ids.emplace_back(id);
    }
    EXPECT_EQ(OrvalisUninit(), ORVALIS_OK);
    before ? setenv("ORVALIS_BACKENDS", before->c_str(), 1) : unsetenv("ORVALIS_BACKENDS");
    return ids;
}

} // namespace

TEST(LibraryUnused, everythingElseIsRefused)
{
    std::uint32_t count = 17;
    char name[ORVALIS_NAME_SIZE] = "unchanged";
    OCameraHandle handle = nullptr;
    EXPECT_EQ(OrvalisUninit(), ORVALIS_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(OrvalisNumberOfCameras(&count), ORVALIS_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(OrvalisNumberOfCameras(nullptr), ORVALIS_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(OrvalisGetDisplayName(0, name), ORVALIS_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(OrvalisGetCameraID(0, name), ORVALIS_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(OrvalisOpenCamera("any", &handle), ORVALIS_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(count, 17u);
    EXPECT_STREQ(name, "unchanged");
}

TEST_F(Library, initIsCounted)
{
    EXPECT_EQ(OrvalisInit(), ORVALIS_OK);
    EXPECT_EQ(OrvalisUninit(), ORVALIS_OK);
    std::uint32_t count = 0;
    EXPECT_EQ(OrvalisNumberOfCameras(&count), ORVALIS_OK);
}

TEST_F(Library, listsItsCameras)
{
    ASSERT_FALSE(cameraId().empty());
    std::uint32_t count = 0;
    ASSERT_EQ(OrvalisNumberOfCameras(&count), ORVALIS_OK);
    ASSERT_GE(count, 1u);
    for (std::uint32_t i = 0; i < count; ++i) {
        char id[ORVALIS_NAME_SIZE];
        char name[ORVALIS_NAME_SIZE];
        std::memset(id, 'x', sizeof id);
        std::memset(name, 'x', sizeof name);
        EXPECT_EQ(OrvalisGetCameraID(i, id), ORVALIS_OK);
        EXPECT_EQ(OrvalisGetDisplayName(i, name), ORVALIS_OK);
        EXPECT_GT(strnlen(id, sizeof id), 0u);
        EXPECT_LT(strnlen(id, sizeof id), sizeof id);
        EXPECT_LT(strnlen(name, sizeof name), sizeof name);
    }
}

TEST(LibraryOrder, realCamerasComeBeforeSimulatedOnesAndEachKindKeepsItsOrder)
{
    const auto real = [](const std::string &id) { return !id.starts_with("OV-SIM-"); };
    const std::vector<std::string> ids = idsOn("simulated,fake");
    EXPECT_TRUE(std::ranges::is_partitioned(ids, real)) << testing::PrintToString(ids);
    EXPECT_EQ(std::ranges::count_if(ids, std::not_fn(real)), 4);
    EXPECT_EQ(idsOn("fake,simulated"), ids);
    std::vector<std::string> simulated = ids;
    std::erase_if(simulated, real);
    EXPECT_EQ(idsOn("simulated"), simulated);
}

TEST_F(Library, refusesMissingCameras)
{
    ASSERT_FALSE(cameraId().empty());
    std::uint32_t count = 0;
    ASSERT_EQ(OrvalisNumberOfCameras(&count), ORVALIS_OK);
    char name[ORVALIS_NAME_SIZE] = "unchanged";
    OCameraHandle handle = nullptr;
    EXPECT_EQ(OrvalisGetCameraID(count, name), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(OrvalisGetDisplayName(0xFFFFFFFFu, name), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(OrvalisGetCameraID(0, nullptr), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(OrvalisNumberOfCameras(nullptr), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(OrvalisOpenCamera("no such camera", &handle), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(OrvalisOpenCamera("", &handle), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(OrvalisOpenCamera(nullptr, &handle), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(OrvalisOpenCamera("any", nullptr), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_STREQ(name, "unchanged");
    EXPECT_EQ(handle, nullptr);
}

TEST_F(Connection, cameraIsOpenOnce)
{
    OCameraHandle second = nullptr;
    EXPECT_EQ(OrvalisOpenCamera(cameraId().c_str(), &second), ORVALIS_ERROR_BUSY);
    EXPECT_EQ(second, nullptr);
}

TEST_F(Connection, infoIsThatOfTheCamera)
{
    OCameraInfo info;
    std::memset(&info, 0xFF, sizeof info);
    ASSERT_EQ(OrvalisGetCamInfo(handle_, &info), ORVALIS_OK);
    EXPECT_EQ(info.cameraId, cameraId());
    EXPECT_NE(info.pixelFormat, 0u);
    EXPECT_NE(info.sensorPixelFormat, 0u);
    for (const std::uint8_t byte : info.reserved)
        EXPECT_EQ(byte, 0);
}

TEST_F(Connection, closeAndStopWorkAfterUninit)
{
    start();
    ASSERT_TRUE(frames_.waitFor(1));
    ASSERT_EQ(OrvalisUninit(), ORVALIS_OK);
    const int count = frames_.count();
    EXPECT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
    EXPECT_EQ(OrvalisCloseCamera(handle_), ORVALIS_OK);
    handle_ = nullptr;
    EXPECT_EQ(frames_.count(), count) << "no callback after OrvalisUninit()";
}

TEST_F(Connection, opensPlaysStopsAndClosesManyTimes)
{
    const std::string id = cameraId();
    for (int i = 0; i < 200; ++i) {
        ASSERT_EQ(OrvalisStartAcquisition(handle_, &Frames::callback), ORVALIS_OK) << i;
        if (i % 10 == 0) {
            ASSERT_TRUE(frames_.waitFor(frames_.count() + 1)) << i;
        }
        ASSERT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK) << i;
        ASSERT_EQ(OrvalisCloseCamera(handle_), ORVALIS_OK) << i;
        handle_ = nullptr;
        ASSERT_EQ(OrvalisOpenCamera(id.c_str(), &handle_), ORVALIS_OK) << i;
    }
}
