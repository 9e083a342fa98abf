// SPDX-License-Identifier: MIT
// One acquisition of a camera: Aravis' stream, its buffers, and the images that come out.
#include "library/genicam/StreamSession.h"

#include "library/convert/PixelFormat.h"
#include "library/core/Debug.h"
#include "library/genicam/StreamSocket.h"

#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace orvalis {
namespace {

constexpr double bufferedSeconds = 0.25;
constexpr unsigned fewestBuffers = 10;
constexpr unsigned mostBuffers = 512;
/// Beyond this a stream gets fewer buffers, but never fewer than it takes to work at all.
constexpr std::size_t memoryLimit = std::size_t{256} << 20;
constexpr unsigned buffersToWork = 4;
/// No camera sends frames of more than this; a node that says so is wrong.
constexpr std::size_t largestPayload = std::size_t{1} << 30;
/// With fewer buffers than this left to fill, images are copied instead of lent.
constexpr int buffersToKeep = 4;

constexpr std::size_t smallestSocketBuffer = std::size_t{8} << 20;
constexpr std::size_t largestSocketBuffer = std::size_t{64} << 20;
/// Of each GigE Vision packet: the headers of IP, UDP and the stream protocol.
constexpr guint packetOverhead = 20 + 8 + 8;
constexpr int receiverNiceness = -10;

constexpr const char *rateNodes[] = {"AcquisitionResultingFrameRate", "ResultingFrameRate",
                                     "ResultingFrameRateAbs", "AcquisitionFrameRate",
                                     "AcquisitionFrameRateAbs"};

double frameRate(ArvDevice *device)
{
    Failure failure;
    for (const char *name : rateNodes) {
        if (!ARV_IS_GC_FLOAT(arv_device_get_feature(device, name))) {
            continue;
        }
        const double rate = arv_device_get_float_feature_value(device, name, failure.slot());
        if (!failure && std::isfinite(rate) && rate > 0) {
            return rate;
        }
    }
    return 30;
}

/// Bytes of a frame; 0 if the camera cannot tell.
std::size_t payloadSize(ArvDevice *device, Failure &failure)
{
    const gint64 payload =
        arv_device_get_integer_feature_value(device, "PayloadSize", failure.slot());
    const bool sensible =
        !failure && payload > 0 && static_cast<std::uint64_t>(payload) <= largestPayload;
    return sensible ? static_cast<std::size_t>(payload) : 0;
}

/// Room for a quarter of a second, within reason.
unsigned bufferCount(ArvDevice *device, std::size_t payload)
{
    const double wanted = std::clamp(std::ceil(frameRate(device) * bufferedSeconds) + 2,
                                     double{fewestBuffers}, double{mostBuffers});
    const std::size_t affordable =
        std::clamp<std::size_t>(memoryLimit / payload, buffersToWork, mostBuffers);
    return std::min(static_cast<unsigned>(wanted), static_cast<unsigned>(affordable));
}

/// By convention whoever streams sets this node; descriptions lock others by it.
void setParametersLocked(ArvDevice *device, bool locked)
{
    if (ARV_IS_GC_INTEGER(arv_device_get_feature(device, "TLParamsLocked"))) {
        Failure ignored;
        arv_device_set_integer_feature_value(device, "TLParamsLocked", locked ? 1 : 0,
                                             ignored.slot());
    }
}

/// Packets that a GigE Vision frame is sent in, the first and the last one included.
std::int64_t packetsPerFrame(ArvDevice *device, std::size_t payload)
{
    if (!ARV_IS_GV_DEVICE(device)) {
        return 0;
    }
    Failure failure;
    const guint packet = arv_gv_device_get_packet_size(ARV_GV_DEVICE(device), failure.slot());
    if (failure || packet <= packetOverhead) {
        return 0;
    }
    const std::size_t data = packet - packetOverhead;
    return static_cast<std::int64_t>((payload + data - 1) / data + 2);
}

} // namespace

/// Called on the stream's thread.
void StreamSession::onStreamEvent(void *session, ArvStreamCallbackType type, ArvBuffer *buffer)
{
    if (type == ARV_STREAM_CALLBACK_TYPE_INIT) {
        // Packets that are not fetched in time are lost, so this thread goes first where it may.
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

/// Aravis' automatic socket buffer holds one frame, which a receiver that comes late by a few
/// milliseconds overruns. The system cuts what it finds too large (net.core.rmem_max).
void tuneGigeStream(ArvStream *stream, std::size_t payload)
{
    const std::size_t size = std::clamp(payload * 16, smallestSocketBuffer, largestSocketBuffer);
    g_object_set(stream, "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_FIXED, "socket-buffer-size",
                 static_cast<gint>(size), "packet-resend", ARV_GV_STREAM_PACKET_RESEND_ALWAYS,
                 nullptr);
    growReceiveBuffer(arv_gv_stream_get_port(ARV_GV_STREAM(stream)), size);
}

/// Copies rows that are followed by padding; null for formats whose rows share bytes.
std::shared_ptr<std::vector<std::uint8_t>> withoutPadding(const RawImage &image, int padding)
{
    const PixelFormat *format = findPixelFormat(image.pixelFormat);
    const std::size_t bits =
        format != nullptr ? std::size_t{format->bitsPerPixel} * image.width : 1;
    const std::size_t row = bits / 8;
    const std::size_t stride = row + static_cast<std::size_t>(padding);
    if (bits % 8 != 0 || image.size < stride * image.height) {
        return nullptr;
    }
    auto rows = std::make_shared<std::vector<std::uint8_t>>(row * image.height);
    for (std::size_t y = 0; y < image.height; ++y) {
        std::memcpy(rows->data() + y * row, image.data + y * stride, row);
    }
    return rows;
}

bool holdsImage(ArvBuffer *buffer)
{
    if (arv_buffer_get_status(buffer) != ARV_BUFFER_STATUS_SUCCESS) {
        return false;
    }
    const ArvBufferPayloadType type = arv_buffer_get_payload_type(buffer);
    return type == ARV_BUFFER_PAYLOAD_TYPE_IMAGE ||
           type == ARV_BUFFER_PAYLOAD_TYPE_EXTENDED_CHUNK_DATA;
}

} // namespace

void BufferPool::giveBack(ArvBuffer *buffer)
{
    const std::lock_guard lock(mutex_);
    if (stream_) {
        arv_stream_push_buffer(stream_.get(), buffer);
    } else {
        g_object_unref(buffer);
    }
}

void BufferPool::end()
{
    GPtr<ArvStream> stream;
    {
        const std::lock_guard lock(mutex_);
        stream = std::move(stream_);
    }
    // Here the stream ends: joins its thread, frees the buffers that it has.
}

OResult StreamSession::start(StreamUse use)
{
    Failure failure;
    const std::size_t payload = payloadSize(link_.device(), failure);
    if (payload == 0) {
        const OResult result = link_.resultOf(failure);
        return result != ORVALIS_OK ? result : ORVALIS_ERROR_DEVICE;
    }
    GPtr<ArvStream> stream(
        arv_device_create_stream(link_.device(), onStreamEvent, this, failure.slot()));
    if (!stream) {
        debugPrint("no stream: %s", failure.text());
        const OResult result = link_.resultOf(failure);
        return result != ORVALIS_OK ? result : ORVALIS_ERROR_DEVICE;
    }
    makePool(std::move(stream), payload,
             use == StreamUse::OneImage ? buffersToWork : bufferCount(link_.device(), payload));
    if (use == StreamUse::Continuous) {
        setParametersLocked(link_.device(), true);
        parametersLocked_ = true;
    }
    arv_device_execute_command(link_.device(), "AcquisitionStart", failure.slot());
    return link_.resultOf(failure);
}

void StreamSession::makePool(GPtr<ArvStream> stream, std::size_t payload, unsigned buffers)
{
    if (ARV_IS_GV_STREAM(stream.get())) {
        tuneGigeStream(stream.get(), payload);
    }
    for (unsigned i = 0; i < buffers; ++i) {
        arv_stream_push_buffer(stream.get(), arv_buffer_new_allocate(payload));
    }
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

bool StreamSession::take(RawImage &image)
{
    if (!isRunning()) {
        return false;
    }
    while (ArvBuffer *buffer = arv_stream_try_pop_buffer(pool_->stream())) {
        ++damagedInARow_;
        if (holdsImage(buffer)) {
            if (describe(buffer, image)) {
                handOver(buffer, image);
                damagedInARow_ = 0;
                return true;
            }
            // The stream counts what came incomplete; this came complete, but makes no sense.
            counters_.add(StreamCounters::Failed);
        }
        pool_->giveBack(buffer);
    }
    return false;
}

bool StreamSession::describe(ArvBuffer *buffer, RawImage &image) const
{
    RawImage found;
    size_t size = 0;
    found.data = static_cast<const std::uint8_t *>(arv_buffer_get_image_data(buffer, &size));
    found.size = size;
    const int width = arv_buffer_get_image_width(buffer);
    const int height = arv_buffer_get_image_height(buffer);
    if (found.data == nullptr || width <= 0 || height <= 0) {
        return false;
    }
    found.width = static_cast<std::uint32_t>(width);
    found.height = static_cast<std::uint32_t>(height);
    found.pixelFormat = arv_buffer_get_image_pixel_format(buffer);
    int paddingX = 0;
    int paddingY = 0;
    arv_buffer_get_image_padding(buffer, &paddingX, &paddingY);
    if (paddingX > 0) {
        const auto rows = withoutPadding(found, paddingX);
        if (!rows) {
            return false;
        }
        found.data = rows->data();
        found.size = rows->size();
        found.owner = rows;
    }
    const PixelFormat *format = findPixelFormat(found.pixelFormat);
    if (format != nullptr && found.size < imageBytes(*format, found.width, found.height)) {
        return false;
    }
    image = std::move(found);
    return true;
}

/// Lends the buffer to the image, or gives it back if the image has or gets a copy.
void StreamSession::handOver(ArvBuffer *buffer, RawImage &image)
{
    int waiting = 0;
    int full = 0;
    arv_stream_get_n_buffers(pool_->stream(), &waiting, &full);
    if (!image.owner && waiting >= buffersToKeep) {
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
