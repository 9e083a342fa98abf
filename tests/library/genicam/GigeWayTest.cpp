// SPDX-License-Identifier: MIT
// The transport of a GigE Vision stream changes only if packets are provably lost.
#include "library/genicam/GigeLink.h"
#include "library/genicam/StreamSession.h"
#include "tests/library/genicam/GenicamFixture.h"
#include "tests/library/genicam/rig/RigCamera.h"

using namespace genicamtest;

namespace {

constexpr std::uint32_t bestPacket = 8192; // on loopback
constexpr std::uint32_t sizeMask = 0xFFFF;

class GigeTransports : public GigeFixture {
protected:
    void SetUp() override
    {
        GigeFixture::SetUp();
        if (IsSkipped()) {
            return;
        }
        camera_ = std::make_unique<RigCamera>(CameraDescription());
        camera_->memory.set(RigAddress::width, 256);
        camera_->memory.set(RigAddress::height, 256);
        backend_->discover();
        device_ = openCamera(*backend_, camera_->id());
        ASSERT_TRUE(device_);
    }
    void TearDown() override { device_.reset(); }
    std::uint32_t packetSize() const
    {
        return camera_->memory.at(RigAddress::packetSize) & sizeMask;
    }
    std::uint64_t starts() const { return camera_->memory.writes(RigAddress::acquisitionStart); }
    void expectPictures(int count)
    {
        for (int i = 0; i < count; ++i) {
            RawImage image;
            ASSERT_EQ(nextImage(*device_, image), ORVALIS_OK);
            EXPECT_TRUE(isWhole(image));
        }
    }

    std::unique_ptr<RigCamera> camera_;
    std::unique_ptr<Device> device_;
};

TEST_F(GigeTransports, aSlowFirstImageChangesNothing)
{
    camera_->faults.firstFrameAfterMs = 3000;
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    expectPictures(2);
    EXPECT_EQ(packetSize(), bestPacket);
    EXPECT_EQ(starts(), 1U) << "the exposure was not aborted";
}

TEST_F(GigeTransports, aLongExposureChangesNothing)
{
    camera_->memory.setFloat(RigAddress::exposureTime, 2.5e6F);
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    expectPictures(1);
    EXPECT_EQ(packetSize(), bestPacket);
    EXPECT_EQ(starts(), 1U);
}

TEST_F(GigeTransports, aGrabWithoutAnImageChangesNothing)
{
    camera_->faults.firstFrameAfterMs = 60000;
    RawImage image;
    EXPECT_EQ(device_->takeImage(image, Clock::now() + 1500ms), ORVALIS_ERROR_TIMEOUT);
    camera_->faults.firstFrameAfterMs = 0;
    EXPECT_EQ(device_->takeImage(image, Clock::now() + 30s), ORVALIS_OK);
    EXPECT_EQ(packetSize(), bestPacket);
}

TEST_F(GigeTransports, aGrabOfDamagedImagesChangesNothing)
{
    camera_->faults.largestPacket = 1500;
    RawImage image;
    EXPECT_EQ(device_->takeImage(image, Clock::now() + 1500ms), ORVALIS_ERROR_TIMEOUT);
    camera_->faults.largestPacket = 0;
    EXPECT_EQ(device_->takeImage(image, Clock::now() + 30s), ORVALIS_OK);
    EXPECT_EQ(packetSize(), bestPacket);
}

TEST_F(GigeTransports, damagedImagesAreEvidence)
{
    camera_->faults.largestPacket = 1500;
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    expectPictures(3);
    EXPECT_EQ(packetSize(), 1400U);
    EXPECT_EQ(starts(), 2U);
}

TEST_F(GigeTransports, bestPacketSizeIsTriedAgainAfterTheGracePeriod)
{
    using orvalis::GigeTransport;
    GigeTransport::initialGracePeriod = 300ms;
    device_.reset();
    device_ = openCamera(*backend_, camera_->id()); // with the short grace period
    camera_->faults.largestPacket = 1500;
    ASSERT_EQ(device_->startStream(), ORVALIS_OK);
    expectPictures(1);
    EXPECT_EQ(packetSize(), 1400U);
    camera_->faults.largestPacket = 0;
    while (packetSize() != bestPacket && !HasFailure()) {
        expectPictures(1);
    }
    expectPictures(5);
    EXPECT_EQ(packetSize(), bestPacket);
    EXPECT_EQ(starts(), 3U);
    GigeTransport::initialGracePeriod = 1min;
}

/// On loopback a packet socket receives nothing, although its packets arrive.
TEST_F(GigeTransports, aSilentPacketSocketIsDetected)
{
    device_.reset();
    const orvalis::GPtr<GInetAddress> here(g_inet_address_new_from_string("127.0.0.1"));
    orvalis::CameraLink link(ARV_DEVICE(arv_gv_device_new(here.get(), here.get(), nullptr)));
    orvalis::StreamCounters counters;
    orvalis::PixelOrder order(false);
    for (const bool packetSocket : {true, false}) {
        arv_gv_device_set_stream_options(
            ARV_GV_DEVICE(link.device()),
            packetSocket ? ARV_GV_STREAM_OPTION_NONE : ARV_GV_STREAM_OPTION_PACKET_SOCKET_DISABLED);
        camera_->faults.waitsForTrigger = true;
        orvalis::StreamSession session(link, counters, order);
        const auto lock = link.acquire();
        ASSERT_EQ(session.start(orvalis::StreamUse::Continuous), ORVALIS_OK);
        EXPECT_FALSE(session.hasSilentSocket() || session.hasSilentSocket())
            << "no packet has arrived";
        camera_->sendFrame();
        RawImage image;
        bool whole = false;
        bool silent = false;
        while (!whole && !silent) {
            whole = session.take(image);
            silent = packetSocket && session.hasSilentSocket();
        }
        std::printf("packet socket %d: %s\n", packetSocket, whole ? "hears" : "silent");
        session.stopCamera();
    }
}

} // namespace
