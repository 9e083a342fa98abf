// SPDX-License-Identifier: MIT
// One acquisition of a camera: Aravis' stream, its buffers, and the images received.
#include "library/genicam/StreamSession.h"

#include "library/core/Debug.h"
#include "library/genicam/GigeRoute.h"
#include "library/genicam/StreamImage.h"
#include "library/genicam/StreamSocket.h"

#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace orvalis {
namespace {

constexpr double bufferedSeconds = 0.25;
constexpr unsigned minBuffers = 10;
constexpr unsigned maxBuffers = 512;
/// A stream gets fewer buffers if they would exceed this limit, but at least requiredBuffers.
constexpr std::size_t memoryLimit = std::size_t{256} << 20;
constexpr unsigned requiredBuffers = 4;
/// No camera sends larger frames; a larger PayloadSize is wrong.
constexpr std::size_t maxPayload = std::size_t{1} << 30;
/// If fewer buffers than this are left to fill, images are copied instead of lent.
constexpr int reservedBuffers = 4;

constexpr std::size_t minSocketBuffer = std::size_t{8} << 20;
constexpr std::size_t maxSocketBuffer = std::size_t{64} << 20;
/// Overhead of a GigE Vision packet: headers of IP, UDP and the stream protocol, with block IDs of
/// 16 and of 64 bits.
constexpr guint shortOverhead = 20 + 8 + 8;
constexpr guint longOverhead = 20 + 8 + 20;
constexpr int receiverNiceness = -10;
/// Aravis 0.8.28 and later submit USB transfers in advance by default, which takes memory that all
/// devices share (usbfs_memory_mb, 16 MB). Older versions behave as this mode requests.
constexpr ArvUvUsbMode usbMode = ARV_UV_USB_MODE_SYNC;

constexpr const char *rateNodes[] = {"AcquisitionResultingFrameRate", "ResultingFrameRate",
                                     "ResultingFrameRateAbs", "AcquisitionFrameRate",
                                     "AcquisitionFrameRateAbs"};

double frameRate(ArvDevice *device)
{
    Failure failure;
    for (const char *name : rateNodes) {
        if (!ARV_IS_GC_FLOAT(arv_device_get_feature(device, name)))
            continue;
        const double rate = arv_device_get_float_feature_value(device, name, failure.slot());
        if (!failure && std::isfinite(rate) && rate > 0)
            return rate;
    }
    return 30;
}

/// Frame size in bytes; 0 if the camera does not report one.
std::size_t payloadSize(ArvDevice *device, Failure &failure)
{
    const gint64 payload =
        arv_device_get_integer_feature_value(device, "PayloadSize", failure.slot());
    const bool sensible =
        !failure && payload > 0 && static_cast<std::uint64_t>(payload) <= maxPayload;
    return sensible ? static_cast<std::size_t>(payload) : 0;
}

/// Buffers for a quarter of a second, within limits.
unsigned bufferCount(ArvDevice *device, std::size_t payload)
{
    const double wanted = std::clamp(std::ceil(frameRate(device) * bufferedSeconds) + 2,
                                     double{minBuffers}, double{maxBuffers});
    const std::size_t affordable =
        std::clamp<std::size_t>(memoryLimit / payload, requiredBuffers, maxBuffers);
    return std::min(static_cast<unsigned>(wanted), static_cast<unsigned>(affordable));
}

/// By convention the receiver sets this node while it streams; descriptions lock other nodes by it.
void setParametersLocked(ArvDevice *device, bool locked)
{
    if (ARV_IS_GC_INTEGER(arv_device_get_feature(device, "TLParamsLocked"))) {
        Failure ignored;
        arv_device_set_integer_feature_value(device, "TLParamsLocked", locked ? 1 : 0,
                                             ignored.slot());
    }
}

/// The number of packets of a GigE Vision frame, leader and trailer included.
StreamCounters::PacketsPerFrame packetsPerFrame(ArvDevice *device, std::size_t payload)
{
    if (!ARV_IS_GV_DEVICE(device))
        return {};
    Failure failure;
    const guint packet = arv_gv_device_get_packet_size(ARV_GV_DEVICE(device), failure.slot());
    const auto count = [&](guint overhead) -> std::int64_t {
        const std::size_t data = packet > overhead ? packet - overhead : payload;
        return static_cast<std::int64_t>((payload + data - 1) / data + 2);
    };
    return failure ? StreamCounters::PacketsPerFrame{}
                   : StreamCounters::PacketsPerFrame{count(shortOverhead), count(longOverhead)};
}

} // namespace

/// Called on the stream's thread.
void StreamSession::onStreamEvent(void *session, ArvStreamCallbackType type, ArvBuffer *buffer)
{
    if (type == ARV_STREAM_CALLBACK_TYPE_INIT) {
        // Packets that are not read in time are lost, so raise this thread's priority if permitted.
        setpriority(PRIO_PROCESS, 0, receiverNiceness);
    }
    if (type == ARV_STREAM_CALLBACK_TYPE_BUFFER_DONE) {
        auto *self = static_cast<StreamSession *>(session);
        self->counters_.bufferDone(buffer != nullptr &&
                                   arv_buffer_get_status(buffer) == ARV_BUFFER_STATUS_SUCCESS);
        self->link_.bufferDone();
    }
}

namespace {

/// Aravis' automatic socket buffer holds one frame, which overflows if the receiver is a few
/// milliseconds late. The system limits the size (net.core.rmem_max).
void tuneGigeStream(ArvStream *stream, std::size_t payload)
{
    const std::size_t size = std::clamp(payload * 16, minSocketBuffer, maxSocketBuffer);
    g_object_set(stream, "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_FIXED, "socket-buffer-size",
                 static_cast<gint>(size), nullptr);
    growReceiveBuffer(arv_gv_stream_get_port(ARV_GV_STREAM(stream)), size);
}

} // namespace

void BufferPool::giveBack(ArvBuffer *buffer)
{
    const std::lock_guard lock(mutex_);
    if (stream_)
        arv_stream_push_buffer(stream_.get(), buffer);
    else
        g_object_unref(buffer);
}

void BufferPool::end()
{
    GPtr<ArvStream> stream;
    {
        const std::lock_guard lock(mutex_);
        stream = std::move(stream_);
    }
    // The destructor of `stream` joins its thread and frees its buffers.
}

OResult StreamSession::start(StreamUse use)
{
    Failure failure;
    const std::size_t payload = payloadSize(link_.device(), failure);
    if (payload == 0) {
        const OResult result = link_.resultOf(failure);
        return result != ORVALIS_OK ? result : ORVALIS_ERROR_DEVICE;
    }
    if (ARV_IS_UV_DEVICE(link_.device()))
        arv_uv_device_set_usb_mode(ARV_UV_DEVICE(link_.device()), usbMode);
    const SocketRouting routing(routeOf(link_.device()));
    GPtr<ArvStream> stream(
        arv_device_create_stream(link_.device(), onStreamEvent, this, failure.slot()));
    if (!stream) {
        debugPrint("creating the stream failed: %s", failure.text());
        const OResult result = link_.resultOf(failure);
        return result != ORVALIS_OK ? result : ORVALIS_ERROR_DEVICE;
    }
    makePool(std::move(stream), payload,
             use == StreamUse::OneImage ? requiredBuffers : bufferCount(link_.device(), payload));
    if (use == StreamUse::Continuous) {
        setParametersLocked(link_.device(), true);
        parametersLocked_ = true;
    }
    arv_device_execute_command(link_.device(), "AcquisitionStart", failure.slot());
    const OResult result = link_.resultOf(failure);
    if (result != ORVALIS_OK && result != ORVALIS_ERROR_CONNECTION_LOST)
        stopCamera(); // it may have started anyway, and its parameters are locked
    return result;
}

void StreamSession::makePool(GPtr<ArvStream> stream, std::size_t payload, unsigned buffers)
{
    if (ARV_IS_GV_STREAM(stream.get()))
        tuneGigeStream(stream.get(), payload);
    payload_ = payload;
    for (unsigned i = 0; i < buffers; ++i)
        arv_stream_push_buffer(stream.get(), arv_buffer_new_allocate(payload));
    counters_.attach(stream.get(), packetsPerFrame(link_.device(), payload));
    pool_ = std::make_shared<BufferPool>(std::move(stream));
}

void StreamSession::stopCamera()
{
    Failure failure;
    arv_device_execute_command(link_.device(), "AcquisitionStop", failure.slot());
    if (link_.resultOf(failure) != ORVALIS_ERROR_CONNECTION_LOST && parametersLocked_) {
        setParametersLocked(link_.device(), false);
        parametersLocked_ = false;
    }
}

void StreamSession::end()
{
    if (pool_) {
        counters_.detach();
        pool_->end();
        pool_.reset();
    }
}

/// A packet socket takes packets directly from the network interface; Aravis' ordinary socket
/// receives them too, and they stay there unread.
bool StreamSession::hasSilentSocket()
{
    if (!isRunning() || !ARV_IS_GV_STREAM(pool_->stream()))
        return false;
    const bool found =
        arv_stream_get_info_uint64_by_name(pool_->stream(), "n_received_packets") == 0 &&
        hasUnreadPackets(arv_gv_stream_get_port(ARV_GV_STREAM(pool_->stream())));
    return std::exchange(foundSilentSocket_, found) && found;
}

bool StreamSession::take(RawImage &image)
{
    if (!isRunning())
        return false;
    while (ArvBuffer *buffer = arv_stream_try_pop_buffer(pool_->stream())) {
        const BufferContent content = contentOf(buffer, payload_, image);
        if (content == BufferContent::Image) {
            order_.correct(image);
            handOver(buffer, image);
            imageFollowsDamage_ = std::exchange(damagedInARow_, 0) > 0;
            return true;
        }
        if (content == BufferContent::Damaged && !unsupportedPayload_)
            ++damagedInARow_;
        else
            countOther(arv_buffer_get_status(buffer));
        pool_->giveBack(buffer);
    }
    return false;
}

/// Counts a buffer that is not an image. For a payload type that it does not support, Aravis
/// returns buffers untouched, and reports missing packets for complete frames.
void StreamSession::countOther(ArvBufferStatus status)
{
    unsupportedPayload_ = unsupportedPayload_ || status == ARV_BUFFER_STATUS_CLEARED;
    if (status == ARV_BUFFER_STATUS_CLEARED || status == ARV_BUFFER_STATUS_ABORTED)
        return;
    counters_.add(StreamCounters::OtherPayload);
}

/// Lends the buffer to the image, or copies the image and returns the buffer.
void StreamSession::handOver(ArvBuffer *buffer, RawImage &image)
{
    int waiting = 0;
    int full = 0;
    arv_stream_get_n_buffers(pool_->stream(), &waiting, &full);
    if (!image.owner && waiting >= reservedBuffers) {
        image.owner = std::shared_ptr<const void>(
            buffer, [pool = pool_](ArvBuffer *lent) { pool->giveBack(lent); });
        return;
    }
    if (!image.owner) {
        const auto copy =
            std::make_shared<std::vector<std::uint8_t>>(image.data, image.data + image.size);
        image.data = copy->data();
        image.owner = copy;
    }
    pool_->giveBack(buffer);
}

} // namespace orvalis
