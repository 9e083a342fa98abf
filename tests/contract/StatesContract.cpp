// SPDX-License-Identifier: MIT
// All entry points in all states of library and camera.
#include "tests/contract/Contract.h"
#include "tests/contract/Documented.h"
#include "tests/contract/EntryPoints.h"

#include <string>
#include <string_view>

using namespace contract;

namespace {

/// Stop and close work in every state, and would change the state for the other calls.
bool isStopOrClose(std::string_view name)
{
    return name == "OrvalisStopAcquisition" || name == "OrvalisCloseCamera";
}

bool leavesTheCameraAlone(std::string_view name)
{
    return !isStopOrClose(name) && name != "OrvalisCameraReset" && name != "OrvalisWriteRegiser" &&
           name != "OrvalisStartAcquisition";
}

class WithoutLibrary : public testing::TestWithParam<EntryPoint> {};

class WithoutCamera : public LibraryTest, public testing::WithParamInterface<EntryPoint> {};

class WithCamera : public CameraTest {};

std::string nameOf(const testing::TestParamInfo<EntryPoint> &info) { return info.param.name; }

} // namespace

namespace contract {
void PrintTo(const EntryPoint &entry, std::ostream *out) { *out << entry.name; }
} // namespace contract

TEST_P(WithoutLibrary, isRefused)
{
    int something = 0;
    const std::int32_t expected =
        isStopOrClose(GetParam().name) ? ORVALIS_ERROR_BAD_HANDLE : ORVALIS_ERROR_NOT_INITIALIZED;
    EXPECT_EQ(GetParam().call(nullptr), expected);
    EXPECT_EQ(GetParam().call(&something), expected);
}

TEST_P(WithoutCamera, badHandleIsRefused)
{
    int something = 0;
    EXPECT_EQ(GetParam().call(nullptr), ORVALIS_ERROR_BAD_HANDLE);
    EXPECT_EQ(GetParam().call(&something), ORVALIS_ERROR_BAD_HANDLE);
}

INSTANTIATE_TEST_SUITE_P(EntryPoints, WithoutLibrary, testing::ValuesIn(entryPoints()), nameOf);
INSTANTIATE_TEST_SUITE_P(EntryPoints, WithoutCamera, testing::ValuesIn(entryPoints()), nameOf);

TEST_F(WithCamera, staleHandleIsRefusedEverywhere)
{
    const OCameraHandle stale = handle_;
    ASSERT_EQ(OrvalisCloseCamera(handle_), ORVALIS_OK);
    handle_ = nullptr;
    for (const EntryPoint &entry : entryPoints())
        EXPECT_EQ(entry.call(stale), ORVALIS_ERROR_BAD_HANDLE) << entry.name;
}

TEST_F(WithCamera, nullPointersAreRefusedEverywhere)
{
    for (const EntryPoint &entry : entryPoints())
        for (std::size_t i = 0; i < entry.pointers; ++i)
            EXPECT_EQ(entry.callWithNull(handle_, i), ORVALIS_ERROR_BAD_ARGUMENT)
                << entry.name << ", pointer " << i;
    OImageFrame frame{};
    EXPECT_EQ(OrvalisGrabRGBData(handle_, &frame, 1), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(OrvalisGrabRAWData(handle_, &frame, 1), ORVALIS_ERROR_BAD_ARGUMENT);
}

TEST_F(WithCamera, everyCallAnswersWhileIdle)
{
    for (const EntryPoint &entry : entryPoints()) {
        if (leavesTheCameraAlone(entry.name)) {
            const std::int32_t result = entry.call(handle_);
            EXPECT_TRUE(isDocumented(entry.name, result)) << entry.name << ": " << result;
            EXPECT_NE(result, ORVALIS_ERROR_CONNECTION_LOST) << entry.name;
        }
    }
    EXPECT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK) << "without a stream";
}

TEST_F(WithCamera, everyCallAnswersWhileStreaming)
{
    start();
    ASSERT_TRUE(frames_.waitFor(1));
    for (const EntryPoint &entry : entryPoints()) {
        if (leavesTheCameraAlone(entry.name)) {
            const std::int32_t result = entry.call(handle_);
            EXPECT_TRUE(isDocumented(entry.name, result)) << entry.name << ": " << result;
            EXPECT_NE(result, ORVALIS_ERROR_CONNECTION_LOST) << entry.name;
        }
    }
    EXPECT_EQ(OrvalisStartAcquisition(handle_, &Frames::callback), ORVALIS_ERROR_BUSY);
    EXPECT_TRUE(frames_.waitFor(frames_.count() + 1)) << "the stream continues";
}

TEST_F(WithCamera, everyCallAnswersInsideTheCallback)
{
    std::vector<std::pair<std::string, std::int32_t>> results;
    frames_.onFrame = [&](OImageFrame *) {
        if (!results.empty())
            return;
        for (const EntryPoint &entry : entryPoints())
            if (leavesTheCameraAlone(entry.name))
                results.emplace_back(entry.name, entry.call(handle_));
    };
    start();
    ASSERT_TRUE(frames_.waitFor(3)) << "the stream continues";
    OrvalisStopAcquisition(handle_);
    for (const auto &[name, result] : results)
        EXPECT_TRUE(isDocumented(name, result)) << name << ": " << result;
}
