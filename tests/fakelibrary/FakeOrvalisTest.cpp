// SPDX-License-Identifier: MIT
// Tests of the recording camera library itself, on which other tests depend.
#include "tests/fakelibrary/FakeOrvalis.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstring>
#include <latch>
#include <memory>
#include <thread>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class FakeOrvalis : public testing::Test {
protected:
    void SetUp() override
    {
        fakeorvalis::reset();
        OrvalisOpenCamera("CAM-A", &m_camera);
        fakeorvalis::clearCalls();
    }

    OCameraHandle m_camera = nullptr;
};

std::atomic<int> framesSeen = 0;
std::function<void()> insideCallback;

void takeFrame(OImageFrame *)
{
    ++framesSeen;
    if (insideCallback)
        insideCallback();
}

class FakeOrvalisStream : public FakeOrvalis {
protected:
    void SetUp() override
    {
        FakeOrvalis::SetUp();
        framesSeen = 0;
        insideCallback = nullptr;
        ASSERT_EQ(OrvalisStartAcquisition(m_camera, takeFrame), ORVALIS_OK);
    }

    OImageFrame m_frame{};
};

TEST_F(FakeOrvalis, recordsHandlesByOrderOfOpening)
{
    OCameraHandle second = nullptr;
    OrvalisOpenCamera("CAM-B", &second);
    OrvalisSetGain(second, 5, false);
    OrvalisSetGain(m_camera, 6, true);
    OrvalisCameraReset(nullptr);
    OrvalisCameraReset(&second);
    EXPECT_THAT(fakeorvalis::calls(),
                ElementsAre("OrvalisOpenCamera(\"CAM-B\")", "OrvalisSetGain(h2, 5, false)",
                            "OrvalisSetGain(h1, 6, true)", "OrvalisCameraReset(null)",
                            "OrvalisCameraReset(h?)"));
}

TEST_F(FakeOrvalis, recordsEveryKindOfArgument)
{
    char text[ORVALIS_TEXT_SIZE];
    OrvalisGetCameraID(1, text);
    OrvalisSetSizeInfo(m_camera, {1, 2, 32, 24, 0, 0});
    OrvalisSetFrameRate(m_camera, 0.1F);
    OrvalisSetNodeFloat(m_camera, "Gain", 0.1);
    OrvalisWriteRegiser(m_camera, 256, 4294967295U);
    OrvalisSetNodeString(m_camera, "DeviceUserID", nullptr);
    OrvalisGetNodeString(m_camera, "DeviceUserID", text);
    OrvalisStartAcquisition(m_camera, takeFrame);
    OImageFrame frame{};
    OrvalisGrabRAWData(m_camera, &frame, 1000);
    EXPECT_THAT(
        fakeorvalis::calls(),
        ElementsAre("OrvalisGetCameraID(1)", "OrvalisSetSizeInfo(h1, {1, 2, 32, 24, 0, 0})",
                    "OrvalisSetFrameRate(h1, 0.1)", "OrvalisSetNodeFloat(h1, \"Gain\", 0.1)",
                    "OrvalisWriteRegiser(h1, 256, 4294967295)",
                    "OrvalisSetNodeString(h1, \"DeviceUserID\", null)",
                    "OrvalisGetNodeString(h1, \"DeviceUserID\")",
                    "OrvalisStartAcquisition(h1, callback)", "OrvalisGrabRAWData(h1, 1000)"));
}

TEST_F(FakeOrvalis, listsCallsByFunction)
{
    OrvalisCameraReset(m_camera);
    OrvalisSetUserDefault(m_camera);
    EXPECT_THAT(fakeorvalis::callsOf({"OrvalisCameraReset"}),
                ElementsAre("OrvalisCameraReset(h1)"));
    EXPECT_THAT(fakeorvalis::callsExcept({"OrvalisCameraReset"}),
                ElementsAre("OrvalisSetUserDefault(h1)"));
}

TEST_F(FakeOrvalis, returnsWhatWasSet)
{
    ASSERT_EQ(OrvalisSetShutter(m_camera, 1234, false), ORVALIS_OK);
    ASSERT_EQ(OrvalisSetShutter(m_camera, 5, true), ORVALIS_OK);
    std::uint32_t shutter = 0;
    bool automatic = false;
    ASSERT_EQ(OrvalisGetShutter(m_camera, &shutter, &automatic), ORVALIS_OK);
    EXPECT_EQ(shutter, 1234U);
    EXPECT_TRUE(automatic);

    ASSERT_EQ(OrvalisSetPixelFormatStr(m_camera, "Mono12"), ORVALIS_OK);
    OCameraInfo info{};
    ASSERT_EQ(OrvalisGetCamInfo(m_camera, &info), ORVALIS_OK);
    EXPECT_EQ(info.pixelFormat, 0x01100005U);
}

TEST_F(FakeOrvalis, refusesAsDocumented)
{
    char name[ORVALIS_NAME_SIZE];
    std::uint32_t data = 7;
    EXPECT_EQ(OrvalisSetGain(m_camera, 49, false), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(OrvalisGetGain(m_camera, nullptr, nullptr), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(OrvalisGetAvailablePixelFormatsIdxToStr(m_camera, 5, name), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(OrvalisSetTriggerModeStr(m_camera, "Never"), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(OrvalisReadRegister(m_camera, 2, &data), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(OrvalisReadRegister(m_camera, 0x900, &data), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(OrvalisSetNodeInt(m_camera, "Gain", 3), ORVALIS_ERROR_WRONG_TYPE);
    EXPECT_EQ(OrvalisSetNodeString(m_camera, "DeviceVendorName", "x"), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(data, 7U);
}

TEST_F(FakeOrvalis, lacksFeaturesThatTheStateLacks)
{
    fakeorvalis::withState([](fakeorvalis::State &state) { state.integers.erase("Hue"); });
    std::int32_t value = 0;
    EXPECT_EQ(OrvalisGetHue(m_camera, &value), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(OrvalisSetHue(m_camera, 1), ORVALIS_ERROR_NOT_SUPPORTED);
}

TEST_F(FakeOrvalis, serializesNodesAsText)
{
    const auto text = [this](const char *node) {
        char buffer[ORVALIS_TEXT_SIZE] = "unset";
        OrvalisGetNodeString(m_camera, node, buffer);
        return std::string(buffer);
    };
    EXPECT_EQ(OrvalisSetNodeString(m_camera, "Width", "80"), ORVALIS_OK);
    EXPECT_EQ(OrvalisSetNodeString(m_camera, "Width", "8o"), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(OrvalisSetNodeString(m_camera, "ReverseX", "1"), ORVALIS_OK);
    EXPECT_EQ(OrvalisSetNodeString(m_camera, "PixelFormat", "Mono8"), ORVALIS_OK);
    EXPECT_EQ(text("Width"), "80");
    EXPECT_EQ(text("ReverseX"), "1");
    EXPECT_EQ(text("PixelFormat"), "Mono8");
    EXPECT_EQ(text("ExposureTime"), "10000");
    EXPECT_EQ(text("UserSetLoad"), "unset");
}

TEST_F(FakeOrvalis, listsChildrenUpToTheCapacity)
{
    const auto list = std::make_unique<ONodeList>();
    list->count = 2;
    ASSERT_EQ(OrvalisGetNodeList(m_camera, "Root", list.get()), ORVALIS_OK);
    ASSERT_EQ(list->count, 2U);
    EXPECT_STREQ(list->names[1], "ImageFormatControl");
    EXPECT_NE(OrvalisGetNodeList(m_camera, "Nowhere", list.get()), ORVALIS_OK);
    EXPECT_EQ(list->count, 0U);
}

TEST_F(FakeOrvalis, readsEnumerations)
{
    const auto node = std::make_unique<OEnumNode>();
    node->count = ORVALIS_ENUM_SIZE;
    ASSERT_EQ(OrvalisSetNodeEnum(m_camera, "UserSetSelector", "UserSet2"), ORVALIS_OK);
    ASSERT_EQ(OrvalisGetNodeEnum(m_camera, "UserSetSelector", node.get()), ORVALIS_OK);
    EXPECT_EQ(node->count, 4U);
    EXPECT_EQ(node->currentIndex, 2);
    EXPECT_STREQ(node->names[3], "UserSet3");
}

TEST_F(FakeOrvalis, failsTheRequestedCall)
{
    fakeorvalis::fail("OrvalisSetGain", ORVALIS_ERROR_BUSY);
    EXPECT_EQ(OrvalisSetGain(m_camera, 20, false), ORVALIS_ERROR_BUSY);
    fakeorvalis::fail("OrvalisSetGain", ORVALIS_OK);
    std::int32_t gain = 0;
    bool automatic = true;
    EXPECT_EQ(OrvalisGetGain(m_camera, &gain, &automatic), ORVALIS_OK);
    EXPECT_EQ(gain, 10);
    EXPECT_EQ(OrvalisSetGain(m_camera, 20, false), ORVALIS_OK);
    EXPECT_EQ(fakeorvalis::callsOf({"OrvalisSetGain"}).size(), 2U);
}

TEST_F(FakeOrvalis, failsEverythingButTheLifecycle)
{
    fakeorvalis::failAll(true);
    EXPECT_EQ(OrvalisInit(), ORVALIS_OK);
    EXPECT_EQ(OrvalisUninit(), ORVALIS_OK);
    EXPECT_NE(OrvalisCameraReset(m_camera), ORVALIS_OK);
    fakeorvalis::failAll(false);
    EXPECT_EQ(OrvalisCameraReset(m_camera), ORVALIS_OK);
}

TEST_F(FakeOrvalis, runsHooksThatCallTheLibrary)
{
    fakeorvalis::onCall("OrvalisCameraReset", [this] { OrvalisSetUserDefault(m_camera); });
    OrvalisCameraReset(m_camera);
    fakeorvalis::onCall("OrvalisCameraReset", nullptr);
    OrvalisCameraReset(m_camera);
    EXPECT_THAT(fakeorvalis::calls(),
                ElementsAre("OrvalisCameraReset(h1)", "OrvalisSetUserDefault(h1)",
                            "OrvalisCameraReset(h1)"));
}

TEST_F(FakeOrvalis, closedAndResetHandlesAreInvalid)
{
    EXPECT_THAT(fakeorvalis::openHandles(), ElementsAre("h1"));
    EXPECT_EQ(OrvalisCloseCamera(m_camera), ORVALIS_OK);
    EXPECT_EQ(OrvalisCameraReset(m_camera), ORVALIS_ERROR_BAD_HANDLE);
    EXPECT_EQ(fakeorvalis::calls().back(), "OrvalisCameraReset(h1)");
    EXPECT_THAT(fakeorvalis::openHandles(), IsEmpty());
    fakeorvalis::reset();
    EXPECT_EQ(OrvalisCameraReset(m_camera), ORVALIS_ERROR_BAD_HANDLE);
    EXPECT_EQ(fakeorvalis::calls().back(), "OrvalisCameraReset(h?)");
}

TEST_F(FakeOrvalis, opensOnlyFreeCamerasOnTheBus)
{
    OCameraHandle other = nullptr;
    EXPECT_EQ(OrvalisOpenCamera("CAM-A", &other), ORVALIS_ERROR_BUSY);
    EXPECT_EQ(OrvalisOpenCamera("CAM-C", &other), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(other, nullptr);
}

TEST_F(FakeOrvalis, grabsTheGivenPixelsWithinTheRegion)
{
    fakeorvalis::withState([](fakeorvalis::State &state) {
        state.size.width = 4;
        state.size.height = 2;
        state.lists["PixelFormat"].current = "Mono12";
    });
    fakeorvalis::setGrabPixels({1, 2, 3}, std::vector<std::uint8_t>(1000, 9));
    std::vector<std::uint8_t> raw(4 * 2 * 2);
    std::vector<std::uint8_t> rgb(4 * 2 * 3);
    OImageFrame frame{};
    frame.raw = raw.data();
    frame.rgb = rgb.data();
    ASSERT_EQ(OrvalisGrabRAWData(m_camera, &frame, 10), ORVALIS_OK);
    EXPECT_EQ(frame.rawSize, 16U);
    EXPECT_EQ(frame.bitsPerPixel, 16U);
    EXPECT_EQ(raw[2], 3);
    EXPECT_EQ(raw[3], 128);
    ASSERT_EQ(OrvalisGrabRGBData(m_camera, &frame, 10), ORVALIS_OK);
    EXPECT_EQ(frame.rawSize, 24U);
    EXPECT_EQ(rgb, std::vector<std::uint8_t>(24, 9));
    frame.rgb = nullptr;
    EXPECT_EQ(OrvalisGrabRGBData(m_camera, &frame, 10), ORVALIS_ERROR_BAD_ARGUMENT);
}

TEST_F(FakeOrvalisStream, deliversOnItsOwnThread)
{
    std::thread::id thread;
    insideCallback = [&] { thread = std::this_thread::get_id(); };
    EXPECT_EQ(fakeorvalis::callback(), takeFrame);
    EXPECT_TRUE(fakeorvalis::deliver(m_frame));
    EXPECT_EQ(framesSeen, 1);
    EXPECT_NE(thread, std::this_thread::get_id());
    EXPECT_EQ(OrvalisStartAcquisition(m_camera, takeFrame), ORVALIS_ERROR_BUSY);
    OrvalisStopAcquisition(m_camera);
    EXPECT_FALSE(fakeorvalis::deliver(m_frame));
    EXPECT_EQ(fakeorvalis::callback(), nullptr);
}

TEST_F(FakeOrvalisStream, stopWaitsForTheCallback)
{
    std::latch entered(1);
    std::latch stopAsked(1);
    std::atomic<bool> left = false;
    insideCallback = [&] {
        entered.count_down();
        stopAsked.wait();
        left = true;
    };
    std::thread delivery([this] { fakeorvalis::deliver(m_frame); });
    entered.wait();
    fakeorvalis::onCall("OrvalisStopAcquisition", [&] { stopAsked.count_down(); });
    OrvalisStopAcquisition(m_camera);
    EXPECT_TRUE(left);
    delivery.join();
}

TEST_F(FakeOrvalisStream, deliversInOrderUntilTheEndOrTheStop)
{
    int received = 0;
    insideCallback = [&received] { ++received; };
    int left = 5;
    const auto next = [&] { return left-- > 0 ? &m_frame : nullptr; };
    EXPECT_EQ(fakeorvalis::deliverEach(next), 5U);
    EXPECT_EQ(received, 5);
    insideCallback = [this] { OrvalisStopAcquisition(m_camera); };
    EXPECT_EQ(fakeorvalis::deliverEach([this] { return &m_frame; }), 1U);
}

TEST_F(FakeOrvalisStream, mayBeStoppedAndClosedFromTheCallback)
{
    insideCallback = [this] {
        OrvalisStopAcquisition(m_camera);
        OrvalisCloseCamera(m_camera);
    };
    EXPECT_TRUE(fakeorvalis::deliver(m_frame));
    EXPECT_FALSE(fakeorvalis::deliver(m_frame));
    EXPECT_THAT(fakeorvalis::openHandles(), IsEmpty());
}

TEST_F(FakeOrvalisStream, closeEndsTheStream)
{
    OrvalisCloseCamera(m_camera);
    EXPECT_FALSE(fakeorvalis::deliver(m_frame));
}

/// A buffer of exactly the documented size; the address sanitizer reports writes beyond it.
struct Exactly {
    explicit Exactly(std::size_t size) : bytes(new char[size]), length(size)
    {
        std::memset(bytes.get(), 0, size);
    }
    bool isTerminated() const { return std::memchr(bytes.get(), 0, length) != nullptr; }

    std::unique_ptr<char[]> bytes;
    std::size_t length;
};

TEST_F(FakeOrvalis, hostileAnswersStayWithinTheDocumentedSizes)
{
    fakeorvalis::hostile(7);
    bool sawUnterminated = false;
    bool sawTooMany = false;
    const auto list = std::make_unique<ONodeList>();
    const auto choices = std::make_unique<OEnumNode>();
    for (int round = 0; round < 200; ++round) {
        Exactly name(ORVALIS_NAME_SIZE);
        Exactly text(ORVALIS_TEXT_SIZE);
        Exactly entry(ORVALIS_NAME_SIZE);
        OrvalisGetDisplayName(0, name.bytes.get());
        OrvalisGetNodeString(m_camera, "DeviceUserID", text.bytes.get());
        OrvalisGetNodeString(m_camera, "UserSetDefaultSelector", entry.bytes.get());
        OrvalisGetNodeList(m_camera, "Root", list.get());
        OrvalisGetNodeEnum(m_camera, "UserSetSelector", choices.get());
        OrvalisGetTriggerModeStr(m_camera, name.bytes.get());
        sawUnterminated = sawUnterminated || !name.isTerminated() || !text.isTerminated();
        sawTooMany = sawTooMany || list->count > ORVALIS_NODE_LIST_SIZE;
    }
    EXPECT_TRUE(sawUnterminated);
    EXPECT_TRUE(sawTooMany);
}

TEST_F(FakeOrvalis, hostilityCanBeLimitedToOneFunction)
{
    fakeorvalis::hostile(3, "OrvalisGetContrast");
    bool lied = false;
    for (int round = 0; round < 50; ++round) {
        std::int32_t contrast = 508;
        std::int32_t hue = 0;
        lied = OrvalisGetContrast(m_camera, &contrast) != ORVALIS_OK || contrast != 508 || lied;
        EXPECT_EQ(OrvalisGetHue(m_camera, &hue), ORVALIS_OK);
        EXPECT_EQ(hue, 508);
    }
    EXPECT_TRUE(lied);
}

TEST_F(FakeOrvalis, hostilityDependsOnTheSeedOnly)
{
    const auto numbers = [this](std::uint32_t seed) {
        fakeorvalis::hostile(seed);
        std::vector<std::int32_t> seen(50);
        for (std::int32_t &value : seen)
            OrvalisGetContrast(m_camera, &value);
        return seen;
    };
    EXPECT_EQ(numbers(3), numbers(3));
    EXPECT_NE(numbers(3), numbers(4));
    fakeorvalis::hostile(0);
    std::int32_t contrast = 0;
    EXPECT_EQ(OrvalisGetContrast(m_camera, &contrast), ORVALIS_OK);
    EXPECT_EQ(contrast, 508);
}

TEST_F(FakeOrvalis, hostileAnswersComeFromTheBytesUntilTheirEnd)
{
    // Choice 11 of the numbers takes its own word; a result below 75 is success, the next is not.
    fakeorvalis::hostileAnswers({11, 4, 3, 2, 1, 0, 0, 99, 1});
    std::int32_t contrast = 0;
    EXPECT_EQ(OrvalisGetContrast(m_camera, &contrast), ORVALIS_OK);
    EXPECT_EQ(contrast, 0x01020304);
    EXPECT_EQ(OrvalisGetContrast(m_camera, &contrast), -4);
    EXPECT_EQ(OrvalisGetContrast(m_camera, &contrast), ORVALIS_OK);
    EXPECT_EQ(contrast, 0);
    char name[ORVALIS_NAME_SIZE] = "left over";
    EXPECT_EQ(OrvalisGetTriggerModeStr(m_camera, name), ORVALIS_OK);
    EXPECT_STREQ(name, "");
}

TEST_F(FakeOrvalis, textsFromBytesMayFillTheirBuffers)
{
    fakeorvalis::hostileAnswers({3, 'a', 'b', 'c', 0, 255, 'x', 0});
    char name[ORVALIS_NAME_SIZE] = {};
    OrvalisGetTriggerModeStr(m_camera, name);
    EXPECT_STREQ(name, "abc");
    OrvalisGetTriggerModeStr(m_camera, name);
    EXPECT_EQ(std::string(name, sizeof name), std::string(sizeof name, 'x'));
}

} // namespace
