// SPDX-License-Identifier: MIT
// A GigE Vision camera whose packets are lost: delivered frames are complete, and the counters
// account for the rest.
#include "tests/library/genicam/GenicamFixture.h"
#include "tests/library/genicam/LossySender.h"

#include <fcntl.h>
#include <new>
#include <sstream>
#include <sys/mman.h>
#include <unistd.h>

using namespace genicamtest;

namespace {

/// The packet loss of camera processes that are started during its lifetime.
class Loss {
public:
    explicit Loss(std::uint32_t perMillion)
    {
        const int file = mkstemp(path_);
        EXPECT_EQ(ftruncate(file, sizeof(LossyLink)), 0);
        void *memory =
            mmap(nullptr, sizeof(LossyLink), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        close(file);
        link_ = new (memory) LossyLink{};
        link_->perMillion = perMillion;
        setenv(lossyFileVariable, path_, 1);
        setenv("LD_PRELOAD", ORVALIS_LOSSY_SENDER, 1);
    }
    ~Loss()
    {
        unsetenv("LD_PRELOAD");
        munmap(link_, sizeof(LossyLink));
        unlink(path_);
    }
    Loss(const Loss &) = delete;
    Loss &operator=(const Loss &) = delete;

    LossyLink &operator*() const { return *link_; }
    LossyLink *operator->() const { return link_; }

private:
    char path_[32] = "/tmp/orvalis-loss-XXXXXX";
    LossyLink *link_;
};

/// Packets for which this network's own sockets had no room, on a machine that is too busy.
long overrunPackets()
{
    std::ifstream statistics("/proc/net/snmp");
    std::string line;
    std::string values;
    while (std::getline(statistics, line)) {
        values = line.starts_with("Udp: ") ? line : values;
    }
    // Udp: InDatagrams NoPorts InErrors OutDatagrams RcvbufErrors ...
    std::istringstream in(values.substr(4));
    long value = 0;
    for (int i = 0; i < 5; ++i) {
        in >> value;
    }
    return value;
}

class GigePacketLoss : public GigeFixture, public testing::WithParamInterface<std::uint32_t> {};

/// Receives images until `enough()` and checks that none is torn. Returns their number.
template <class Enough> int streamUntil(Device &device, Enough enough)
{
    int delivered = 0;
    for (; !enough(delivered); ++delivered) {
        RawImage image;
        EXPECT_EQ(nextImage(device, image), ORVALIS_OK);
        EXPECT_TRUE(isWhole(image)) << "image " << delivered;
        if (testing::Test::HasFailure()) {
            break;
        }
    }
    return delivered;
}

/// Streams until five packets are lost. True if the counters agree with the sender.
bool countersMatchTheSender(Device &device, LossyLink &loss, std::uint32_t perMillion)
{
    const std::uint32_t lostBefore = loss.lost;
    const std::uint32_t framesBefore = loss.frames;
    const long overrunBefore = overrunPackets();
    loss.perMillion = perMillion;
    EXPECT_EQ(device.startStream(), ORVALIS_OK);
    int delivered = streamUntil(device, [&](int) { return loss.lost >= lostBefore + 5; });
    // The last loss is counted only after later frames.
    loss.perMillion = 0;
    const auto lost = [&] { return loss.lost - lostBefore; };
    delivered += streamUntil(device, [&](int more) {
        return more >= 100 || (more >= 20 && integer(device, "StreamMissingPacketCount") >= lost());
    });
    const auto missing = integer(device, "StreamMissingPacketCount");
    const auto failed = integer(device, "StreamFailedFrameCount");
    const long overrun = overrunPackets() - overrunBefore;
    const std::uint32_t lostFrames = loss.frames - framesBefore;
    std::printf("sender: %u packets, %u lost of %u frames; receiver: %ld missing, %ld failed, "
                "%ld resent, %d delivered, %ld overrun\n",
                loss.sent.load(), lost(), lostFrames, long{missing}, long{failed},
                long{integer(device, "StreamResentPacketCount")}, delivered, overrun);
    EXPECT_EQ(integer(device, "StreamDeliveredFrameCount"), delivered);
    EXPECT_GE(missing, lost());
    EXPECT_GE(failed, lostFrames);
    device.stopStream();
    return missing == lost() + overrun && (failed == lostFrames || overrun > 0);
}

TEST_P(GigePacketLoss, noTornImageIsDeliveredAndTheCountersMatchTheSender)
{
    const Loss loss(GetParam());
    CameraProcess camera(1);
    const auto device = discoveredAndOpened(camera);
    ASSERT_TRUE(device);
    ASSERT_EQ(device->nodes().setFloat("AcquisitionFrameRate", 100), ORVALIS_OK);
    // If the machine pauses the camera within a frame for longer than Aravis waits for packets,
    // late packets count as missing. A wrong count is wrong every time.
    constexpr int attempts = 3;
    int attempt = 0;
    while (attempt < attempts && !HasFailure() &&
           !countersMatchTheSender(*device, *loss, GetParam()))
        ++attempt;
    EXPECT_LT(attempt, attempts);
}

/// Sets the capability bit for resending packets; the test camera permits writing it.
void claimResends(Device &device)
{
    constexpr std::uint32_t capabilities = 0x0934;
    constexpr std::uint32_t packetResend = 1U << 2;
    std::uint32_t value = 0;
    ASSERT_EQ(device.readRegister(capabilities, value), ORVALIS_OK);
    ASSERT_EQ(device.writeRegister(capabilities, value | packetResend), ORVALIS_OK);
}

class GigeResend : public GigePacketLoss {};

TEST_P(GigeResend, lostPacketsAreRequestedAgainAndNoImageIsMissing)
{
    const Loss loss(0);
    loss->resends = true;
    CameraProcess camera(1);
    claimResends(*discoveredAndOpened(camera)); // read at the next open
    const auto device = openCamera(*backend_, camera.id());
    ASSERT_TRUE(device);
    ASSERT_EQ(device->nodes().setFloat("AcquisitionFrameRate", 100), ORVALIS_OK);
    const long overrunBefore = overrunPackets();
    ASSERT_EQ(device->startStream(), ORVALIS_OK);
    loss->perMillion = GetParam();
    const int delivered = streamUntil(
        *device, [&](int count) { return loss->lost >= 5 && loss->resent >= loss->lost && count; });
    const auto failed = integer(*device, "StreamFailedFrameCount");
    const long overrun = overrunPackets() - overrunBefore;
    std::printf("sender: %u packets, %u lost, %u requests, %u sent again; receiver: %ld failed, "
                "%ld resent, %ld missing, %d delivered, %ld overrun\n",
                loss->sent.load(), loss->lost.load(), loss->asked.load(), loss->resent.load(),
                long{failed}, long{integer(*device, "StreamResentPacketCount")},
                long{integer(*device, "StreamMissingPacketCount")}, delivered, overrun);
    if (overrun == 0) {
        EXPECT_EQ(failed, 0);
    }
    device->stopStream();
}

INSTANTIATE_TEST_SUITE_P(PerMillion, GigePacketLoss, testing::Values(100U, 1000U));
INSTANTIATE_TEST_SUITE_P(PerMillion, GigeResend, testing::Values(1000U, 5000U));

} // namespace
