// SPDX-License-Identifier: MIT
// What entry points add to the camera: catching exceptions, checking sizes, bounding texts.
#include "tests/library/core/LibraryFixture.h"

#include <cstring>
#include <new>
#include <stdexcept>

using namespace orvalis;
using namespace orvalis::test;

namespace {

class LibraryCalls : public LibraryFixture {
protected:
    void SetUp() override
    {
        LibraryFixture::SetUp();
        open();
    }
    /// Grabs raw into a buffer as large as the sensor, followed by a guard.
    std::int32_t grabRaw(OImageFrame &frame)
    {
        frame.raw = pixels_.data();
        return OrvalisGrabRAWData(handle_, &frame, 600000);
    }
    std::vector<std::uint8_t> pixels_ = std::vector<std::uint8_t>(128 * 96 * 2 + 1, 0xAB);
};

} // namespace

TEST_F(LibraryCalls, exceptionsBecomeResults)
{
    OSizeInfo size{};
    script_->nodes.beforeAccess = [] { throw std::bad_alloc(); };
    EXPECT_EQ(OrvalisGetSizeInfo(handle_, &size), ORVALIS_ERROR_OUT_OF_MEMORY);
    script_->nodes.beforeAccess = [] { throw std::runtime_error("broken"); };
    EXPECT_EQ(OrvalisGetSizeInfo(handle_, &size), ORVALIS_ERROR_DEVICE);
    EXPECT_EQ(OrvalisSetGain(handle_, 1, false), ORVALIS_ERROR_DEVICE);
    script_->nodes.beforeAccess = nullptr;
    script_->onStart = []() -> OResult { throw std::bad_alloc(); };
    EXPECT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_ERROR_OUT_OF_MEMORY);
    script_->onStart = nullptr;
    EXPECT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_OK);
}

TEST_F(LibraryCalls, grabWritesTheRegionAndSetsTheSizes)
{
    OImageFrame frame{};
    script_->pushShot(monoImage(7, 64, 48));
    ASSERT_EQ(grabRaw(frame), ORVALIS_OK);
    EXPECT_EQ(frame.width, 64u);
    EXPECT_EQ(frame.height, 48u);
    EXPECT_EQ(frame.rawSize, 64u * 48u);
    EXPECT_EQ(frame.bitsPerPixel, 8u);
    EXPECT_EQ(pixels_[64 * 48 - 1], 7);
    EXPECT_EQ(pixels_[64 * 48], 0xAB);
}

TEST_F(LibraryCalls, imageLargerThanTheSensorIsNotWritten)
{
    OImageFrame frame{};
    script_->pushShot(monoImage(7, 256, 192));
    EXPECT_EQ(grabRaw(frame), ORVALIS_ERROR_DEVICE);
    EXPECT_EQ(pixels_[0], 0xAB);
    EXPECT_EQ(frame.width, 0u);
}

TEST_F(LibraryCalls, grabWithoutAPlaneIsABadArgument)
{
    OImageFrame frame{};
    EXPECT_EQ(OrvalisGrabRAWData(handle_, &frame, 1), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(OrvalisGrabRGBData(handle_, &frame, 1), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(OrvalisGrabRGBData(handle_, nullptr, 1), ORVALIS_ERROR_BAD_ARGUMENT);
}

TEST_F(LibraryCalls, unknownPixelFormatDoesNotStart)
{
    script_->nodes.nodes["PixelFormat"] = enumNode({"Odd"});
    EXPECT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(script_->starts.value(), 0);
}

TEST_F(LibraryCalls, infoReportsTheDeliveredFormat)
{
    struct Row {
        const char *name;
        std::uint32_t delivered;
    };
    for (const Row &row :
         {Row{"Mono8", 0x01080001}, Row{"Mono10", 0x01100005}, Row{"Mono12p", 0x01100005},
          Row{"Mono16", 0x01100005}, Row{"BayerGR12", 0x01100010}, Row{"BayerGR12p", 0x01100010}}) {
        const PixelFormat *format = findPixelFormat(std::string_view(row.name));
        ASSERT_NE(format, nullptr) << row.name;
        script_->nodes.with([&] {
            script_->nodes.nodes["PixelFormat"] = enumNode({row.name});
            script_->nodes.nodes["PixelFormat"].entryValues = {format->code};
        });
        OCameraInfo info{};
        ASSERT_EQ(OrvalisGetCamInfo(handle_, &info), ORVALIS_OK);
        EXPECT_EQ(info.sensorPixelFormat, format->code) << row.name;
        EXPECT_EQ(info.pixelFormat, row.delivered) << row.name;
        EXPECT_STREQ(info.cameraId, "SCRIPTED-1");
        EXPECT_STREQ(info.vendor, "Maker");
    }
}

TEST_F(LibraryCalls, nameWithoutNulIsReadUpToItsBound)
{
    const std::vector<char> name(ORVALIS_TEXT_SIZE, 'x'); // exactly this size
    OIntNode node{};
    EXPECT_EQ(OrvalisGetNodeInt(handle_, name.data(), &node), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(OrvalisSetNodeEnum(handle_, "PixelFormat", name.data()), ORVALIS_ERROR_NOT_FOUND);
    OCameraHandle other = nullptr;
    EXPECT_EQ(OrvalisOpenCamera(name.data(), &other), ORVALIS_ERROR_NOT_FOUND);
    script_->nodes.nodes["Text"] = textNode("a");
    EXPECT_EQ(OrvalisSetNodeString(handle_, "Text", name.data()), ORVALIS_ERROR_OUT_OF_RANGE);
}

TEST_F(LibraryCalls, longTextsAreTruncatedToTheirBuffers)
{
    script_->nodes.nodes["Text"] = textNode(std::string(1000, 't'));
    std::vector<char> text(ORVALIS_TEXT_SIZE, 'x');
    ASSERT_EQ(OrvalisGetNodeString(handle_, "Text", text.data()), ORVALIS_OK);
    EXPECT_EQ(std::strlen(text.data()), std::size_t{ORVALIS_TEXT_SIZE} - 1);
    script_->nodes.nodes["PixelFormat"] = enumNode({std::string(100, 'f')});
    std::vector<char> name(ORVALIS_NAME_SIZE, 'x');
    ASSERT_EQ(OrvalisGetPixelFormatStr(handle_, name.data()), ORVALIS_OK);
    EXPECT_EQ(std::strlen(name.data()), std::size_t{ORVALIS_NAME_SIZE} - 1);
}

TEST_F(LibraryCalls, bothNamesOfAUserSetNodeAreAccepted)
{
    script_->nodes.nodes["UserSetDefault"] = enumNode({"Default", "UserSet1"});
    EXPECT_EQ(OrvalisSetNodeEnum(handle_, "UserSetDefaultSelector", "UserSet1"), ORVALIS_OK);
    char name[ORVALIS_TEXT_SIZE] = "";
    EXPECT_EQ(OrvalisGetNodeString(handle_, "UserSetDefaultSelector", name), ORVALIS_OK);
    EXPECT_STREQ(name, "UserSet1");
    EXPECT_EQ(OrvalisGetNodeString(handle_, "UserSetDefault", name), ORVALIS_OK);
}

TEST_F(LibraryCalls, defaultsAreDeniedWhileItStreams)
{
    script_->nodes.nodes["UserSetSelector"] = enumNode({"Default"});
    script_->nodes.nodes["UserSetLoad"] = commandNode();
    ASSERT_EQ(OrvalisStartAcquisition(handle_, frameCallback), ORVALIS_OK);
    EXPECT_EQ(OrvalisSetUserDefault(handle_), ORVALIS_ERROR_ACCESS_DENIED);
    OrvalisStopAcquisition(handle_);
    EXPECT_EQ(OrvalisSetUserDefault(handle_), ORVALIS_OK);
}

TEST_F(LibraryCalls, nodeListIsEmptyAfterEveryFailure)
{
    auto list = std::make_unique<ONodeList>();
    list->count = 5;
    EXPECT_EQ(OrvalisGetNodeList(handle_, "Nothing", list.get()), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(list->count, 0u);
    list->count = 5;
    EXPECT_EQ(OrvalisGetNodeList(nullptr, "Root", list.get()), ORVALIS_ERROR_BAD_HANDLE);
    EXPECT_EQ(list->count, 0u);
    list->count = 5;
    EXPECT_EQ(OrvalisGetNodeList(handle_, nullptr, list.get()), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(list->count, 0u);
    list->count = 5;
    OrvalisUninit();
    EXPECT_EQ(OrvalisGetNodeList(handle_, "Root", list.get()), ORVALIS_ERROR_NOT_INITIALIZED);
    EXPECT_EQ(list->count, 0u);
}

TEST_F(LibraryCalls, registerAddressIsAMultipleOfFour)
{
    std::uint32_t data = 0;
    EXPECT_EQ(OrvalisReadRegister(handle_, 8, &data), ORVALIS_OK);
    EXPECT_EQ(data, 9u);
    for (std::uint32_t address : {1u, 2u, 3u, 0xFFFFFFFFu}) {
        EXPECT_EQ(OrvalisReadRegister(handle_, address, &data), ORVALIS_ERROR_BAD_ARGUMENT);
        EXPECT_EQ(OrvalisWriteRegiser(handle_, address, 1), ORVALIS_ERROR_BAD_ARGUMENT);
    }
}
