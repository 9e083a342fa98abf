/* SPDX-License-Identifier: MIT */
/*
 * OrvalisAPI.h: the plain C interface of the Orvalis camera library, libOrvalisAPI.so.
 *
 * Programs read the block below to find out which library is installed. It is a group of an INI
 * file: keep it at the start of lines and before any text that contains quotes.

[VERSION_INFO]
PACKAGE_VERSION=1.2.0.0
LIBRARY_VERSION=1.2.0.0

 */
#ifndef ORVALIS_API_H
#define ORVALIS_API_H

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

/**
 * @file
 * @brief Find, open, adjust and stream machine-vision cameras.
 *
 * **Conventions of all functions**
 *
 * - Every function returns #ORVALIS_OK (0) or another #OResult code. The codes listed at a function are
 *   in addition to those of every call with the same kind of argument: #ORVALIS_ERROR_NOT_INITIALIZED
 *   outside OrvalisInit() ... OrvalisUninit(), #ORVALIS_ERROR_BAD_HANDLE for a handle that is null,
 *   closed or was never returned, #ORVALIS_ERROR_BAD_ARGUMENT for a null pointer where data is expected,
 *   #ORVALIS_ERROR_CONNECTION_LOST after an open camera has left the bus, and #ORVALIS_ERROR_TIMEOUT if
 *   an open camera on the bus does not answer in time.
 * - After a failure, output arguments are unchanged, with one exception: OrvalisGetNodeList() sets
 *   its count to 0.
 * - Every function may be called from any thread, concurrently with any other, and from inside a frame
 *   callback, unless its description says otherwise.
 * - Strings are NUL-terminated 8-bit text. Output strings are written to a buffer of the caller, always
 *   with a NUL, and are truncated if necessary: identifiers, display names and names of enumeration
 *   entries to #ORVALIS_NAME_SIZE bytes, node names and string values to #ORVALIS_TEXT_SIZE bytes.
 * - Times are in microseconds, sizes in pixels, rates in frames per second unless a function says
 *   otherwise. Floating-point values of the camera that this interface passes as integers are rounded to
 *   the nearest integer, halves away from zero.
 * - A typed setter applies the camera's bounds strictly: a value outside them is refused with
 *   #ORVALIS_ERROR_OUT_OF_RANGE and the camera is unchanged. A value between two increments is rounded
 *   down to the increment.
 *
 * **Duration of calls.** OrvalisStopAcquisition(), OrvalisCloseCamera() and OrvalisUninit() return
 * within one second whatever the camera does, plus the time that a running frame callback takes.
 * OrvalisInit() returns at once. A grab returns at its timeout at the latest. OrvalisOpenCamera() and
 * OrvalisStartAcquisition() last as long as the camera's answers: a few round trips each and, for the
 * first opening, the transfer of the camera's description; at most 10 s if the camera answers each
 * request within 100 ms. A request without an answer is abandoned after 3 s. If the camera does not
 * answer a second request within another 1.5 s, it is regarded as lost: from then on all calls return at
 * once.
 *
 * **Environment variables.** `ORVALIS_BACKENDS` selects the cameras that are found; OrvalisInit()
 * reads it. It is a comma-separated list of `simulated` (four built-in cameras), `genicam` (GigE
 * Vision and USB3 Vision cameras) and `fake` (one in-process GenICam test camera). Unset means
 * `simulated,genicam`; `none` means an empty bus. Further variables: `ORVALIS_DEBUG` (1: print debug
 * messages, mainly about discovery, to standard error), `ORVALIS_PACKET_SOCKET` (0: never receive GigE
 * Vision streams through a packet socket), `ORVALIS_SIMULATED_EXTRA_NODES` (a number, at most 10000:
 * adds that many features to the simulated cameras).
 */

#if defined(__GNUC__)
#define ORVALIS_EXPORT __attribute__((visibility("default")))
#else
#define ORVALIS_EXPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** @name Capacities of fixed-size buffers
 *  @{ */
#define ORVALIS_NAME_SIZE 64      /**< bytes of a camera ID, display name or entry name, NUL included */
#define ORVALIS_TEXT_SIZE 256     /**< bytes of a node name or string value, NUL included */
#define ORVALIS_NODE_LIST_SIZE 128 /**< names in an #ONodeList */
#define ORVALIS_ENUM_SIZE 64      /**< entries in an #OEnumNode */
/** @} */

/** Result of every function. Only #ORVALIS_OK means success. */
typedef enum OResult {
    ORVALIS_OK = 0,                      /**< done */
    ORVALIS_ERROR_BAD_ARGUMENT = -1,     /**< a null pointer, an invalid index or text */
    ORVALIS_ERROR_BAD_HANDLE = -2,       /**< the handle is null, closed, or not of this library */
    ORVALIS_ERROR_NOT_INITIALIZED = -3,  /**< OrvalisInit() was not called, or OrvalisUninit() was */
    ORVALIS_ERROR_NOT_FOUND = -4,        /**< no such camera, node, entry or list index */
    ORVALIS_ERROR_BUSY = -5,             /**< another program controls the camera, or it streams already */
    ORVALIS_ERROR_NOT_SUPPORTED = -6,    /**< this camera does not have the feature */
    ORVALIS_ERROR_ACCESS_DENIED = -7,    /**< not readable, not writable, or locked while acquiring */
    ORVALIS_ERROR_OUT_OF_RANGE = -8,     /**< the value is outside the camera's present bounds */
    ORVALIS_ERROR_WRONG_TYPE = -9,       /**< the node exists, but is of another type */
    ORVALIS_ERROR_TIMEOUT = -10,         /**< no answer or frame arrived in time */
    ORVALIS_ERROR_CONNECTION_LOST = -11, /**< the camera has left the bus; close the handle */
    ORVALIS_ERROR_OUT_OF_MEMORY = -12,   /**< a buffer could not be allocated */
    ORVALIS_ERROR_DEVICE = -13,          /**< the camera refused, or answered with an error */
    ORVALIS_ERROR_ABORTED = -14          /**< a start, stop, write or close ended the wait */
} OResult;

/** An open camera; owned by the library from OrvalisOpenCamera() to OrvalisCloseCamera().
 *  Handles are never reused: a closed handle stays invalid. */
typedef void *OCameraHandle;

/**
 * One frame.
 *
 * In a frame callback the record and its planes belong to the library. They stay unchanged until at
 * least 8 further frames and 200 ms have passed (sooner only if this would take more than 1 GiB for one
 * camera, and never before the next frame). They stay valid after OrvalisStopAcquisition(), until the
 * next OrvalisStartAcquisition() or OrvalisCloseCamera() of the same camera.
 *
 * For OrvalisGrabRGBData() and OrvalisGrabRAWData(), record and planes belong to the caller.
 */
typedef struct OImageFrame {
    uint32_t rawSize;      /**< bytes in #raw */
    uint32_t width;        /**< pixels in a row */
    uint32_t height;       /**< rows */
    uint32_t bitsPerPixel; /**< bits of one pixel in #raw, padding included (16 for Mono12) */
    uint8_t *raw;   /**< the image as the camera sends it, packed formats unpacked into 16-bit
                         little-endian words; rows without padding */
    uint8_t *rgb;   /**< R, G, B, 8 bits each, width x height x 3 bytes; null unless the format is RGB
                         or YUV, or Bayer with the conversion on */
    uint8_t *mono8; /**< the upper 8 bits of Mono and Bayer formats deeper than 8 bits, width x height
                         bytes; null for the others */
} OImageFrame;

/** Description of an open camera. */
typedef struct OCameraInfo {
    char cameraId[ORVALIS_NAME_SIZE];    /**< as returned by OrvalisGetCameraID() */
    char displayName[ORVALIS_NAME_SIZE]; /**< as returned by OrvalisGetDisplayName() */
    uint32_t pixelFormat;                /**< format of delivered frames: a code of the GenICam Pixel
                                              Format Naming Convention (PFNC 2.4). All monochrome
                                              formats deeper than 8 bits are delivered as 16-bit words
                                              with an additional 8-bit plane, and are reported as
                                              Mono12 (0x01100005) */
    uint32_t sensorPixelFormat;          /**< the PFNC code of the camera's own setting */
    char vendor[ORVALIS_NAME_SIZE];      /**< maker */
    char model[ORVALIS_NAME_SIZE];       /**< model */
    char serialNumber[ORVALIS_NAME_SIZE]; /**< serial number */
    char firmware[ORVALIS_NAME_SIZE];    /**< firmware version */
    uint8_t reserved[120];               /**< zero */
} OCameraInfo;

/** The region of interest (ROI) and the size of the sensor, in pixels. */
typedef struct OSizeInfo {
    int32_t offsetX;   /**< left edge */
    int32_t offsetY;   /**< upper edge */
    int32_t width;     /**< width of the region */
    int32_t height;    /**< height of the region */
    int32_t maxWidth;  /**< width of the whole sensor as read out at present: less with binning or
                            decimation; ignored by OrvalisSetSizeInfo() */
    int32_t maxHeight; /**< likewise its height */
} OSizeInfo;

/** Names of the nodes below a category. */
typedef struct ONodeList {
    uint32_t count; /**< in: capacity, at most 128; out: names written */
    char names[ORVALIS_NODE_LIST_SIZE][ORVALIS_TEXT_SIZE]; /**< node names, in the camera's order */
} ONodeList;

/** Types of nodes in #ONodeInfo (numbers of the GenApi interface types). */
typedef enum ONodeType {
    ORVALIS_NODE_VALUE = 0,       /**< no value of its own */
    ORVALIS_NODE_COMMAND = 1,     /**< OrvalisSetNodeCommand() */
    ORVALIS_NODE_REGISTER = 2,    /**< a block of bytes; not supported */
    ORVALIS_NODE_STRING = 3,      /**< OrvalisGetNodeString(), OrvalisSetNodeString() */
    ORVALIS_NODE_ENUMERATION = 4, /**< OrvalisGetNodeEnum(), OrvalisSetNodeEnum() */
    ORVALIS_NODE_INTEGER = 5,     /**< OrvalisGetNodeInt(), OrvalisSetNodeInt() */
    ORVALIS_NODE_FLOAT = 6,       /**< OrvalisGetNodeFloat(), OrvalisSetNodeFloat() */
    ORVALIS_NODE_BOOLEAN = 7,     /**< OrvalisGetNodeBoolean(), OrvalisSetNodeBoolean() */
    ORVALIS_NODE_CATEGORY = 8     /**< OrvalisGetNodeList() */
} ONodeType;

/** Present access to a node (numbers of GenApi's access modes). */
typedef enum OAccessMode {
    ORVALIS_ACCESS_NOT_IMPLEMENTED = 0, /**< the camera does not have it */
    ORVALIS_ACCESS_NOT_AVAILABLE = 1,   /**< not available in the camera's present state */
    ORVALIS_ACCESS_WRITE_ONLY = 2,      /**< write or execute only */
    ORVALIS_ACCESS_READ_ONLY = 3,       /**< read only, or locked while acquiring */
    ORVALIS_ACCESS_READ_WRITE = 4       /**< read and write; commands that can be executed at any time */
} OAccessMode;

/** Description of a node. */
typedef struct ONodeInfo {
    int32_t type;       /**< one of #ONodeType */
    int32_t accessMode; /**< one of #OAccessMode */
    uint8_t lockable;   /**< 1: read-only while the camera acquires */
    uint8_t visibility; /**< 0 beginner, 1 expert, 2 guru, 3 invisible */
    char displayName[ORVALIS_TEXT_SIZE]; /**< name to display */
    char description[1024];              /**< purpose */
    char unit[ORVALIS_NAME_SIZE];        /**< unit of the value, empty if it has none */
} ONodeInfo;

/** Value and bounds of an integer node. A node of unsigned 32-bit numbers (0 <= minimum, INT32_MAX <
 *  maximum <= UINT32_MAX), such as an IPv4 address, is passed as its bit pattern: 3232235777, which
 *  is 192.168.1.1, becomes -1062731519. Its bounds here are INT32_MIN and INT32_MAX, because every
 *  bit pattern may be valid; the camera refuses numbers outside its real bounds.
 *  OrvalisGetNodeString() returns the number itself. If a node needs more bits, value and bounds are
 *  clamped to 32 bits. */
typedef struct OIntNode {
    int32_t value;     /**< present value */
    int32_t minimum;   /**< smallest value allowed */
    int32_t maximum;   /**< largest value allowed */
    int32_t increment; /**< step between allowed values, counted from the minimum; at least 1 */
} OIntNode;

/** Value and bounds of a floating-point node. */
typedef struct OFloatNode {
    double value;     /**< present value */
    double minimum;   /**< smallest value allowed */
    double maximum;   /**< largest value allowed */
    double increment; /**< step between allowed values; 0 if there is none */
} OFloatNode;

/** Entries of an enumeration node. Omits entries that the camera does not offer at present. */
typedef struct OEnumNode {
    uint32_t count; /**< in: capacity, at most 64; out: entries written */
    char names[ORVALIS_ENUM_SIZE][ORVALIS_TEXT_SIZE]; /**< entry names, in the camera's order */
    int32_t currentIndex;                             /**< index of the present entry, -1 if unknown */
    int32_t values[ORVALIS_ENUM_SIZE];                /**< the entries' numeric values */
} OEnumNode;

/**
 * Receives frames. Called once for each frame on a thread of the library, never concurrently for
 * one camera. The next frame waits until it returns, so it should only record or queue @p frame.
 * OrvalisStopAcquisition() and OrvalisCloseCamera() may be called from inside.
 */
typedef void (*OFrameCallback)(OImageFrame *frame);

/* ------------------------------------------------------------------------------------------------ */
/** @name Library lifecycle
 *  @{ */

/** Initialises the library. Calls are counted: each one needs a matching OrvalisUninit().
 *  Returns at once; discovery continues in the background.
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_OUT_OF_MEMORY. */
ORVALIS_EXPORT int32_t OrvalisInit(void);

/** Ends the library. Cameras that are still open stop streaming: no callback runs when this returns;
 *  if called from inside a callback, that callback is the last. Their frames stay valid until
 *  OrvalisCloseCamera(), which, like OrvalisStopAcquisition(), still works on their handles. Returns
 *  within a second whatever the cameras do.
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_INITIALIZED without a matching OrvalisInit(). */
ORVALIS_EXPORT int32_t OrvalisUninit(void);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Enumeration
 *  A call to OrvalisNumberOfCameras() takes a snapshot of the bus. For half a second, the calling thread
 *  reads names and IDs from its own snapshot; after that, from the newest one. A camera that was lost
 *  and has returned may stay unlisted until its old handle is closed. Real cameras come before simulated
 *  ones, and the cameras of each kind keep their order while they are present.
 *  @{ */

/** Counts the cameras on the bus. Returns the result of the latest background discovery at once.
 *  Waits only while no camera is known and the first discovery is still running, at most 1.5 s.
 *  @param[out] count number of cameras
 *  @return #ORVALIS_OK. */
ORVALIS_EXPORT int32_t OrvalisNumberOfCameras(uint32_t *count);

/** Gets the name to display for a camera: the user-defined name (DeviceUserID), if any, maker, model
 *  and serial number, and, if known, the reason why it cannot be opened. Latin-1: one byte for each
 *  character. The name of a camera may change while it is listed; its ID does not.
 *  @param index 0 to count - 1
 *  @param[out] name at least #ORVALIS_NAME_SIZE bytes
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_FOUND for an index beyond the count. */
ORVALIS_EXPORT int32_t OrvalisGetDisplayName(uint32_t index, char *name);

/** Gets the ID for OrvalisOpenCamera(), by which a camera can be recognised later.
 *  @param index 0 to count - 1
 *  @param[out] cameraId at least #ORVALIS_NAME_SIZE bytes
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_FOUND for an index beyond the count. */
ORVALIS_EXPORT int32_t OrvalisGetCameraID(uint32_t index, char *cameraId);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Connection
 *  @{ */

/** Opens a camera and takes control of it. Never waits for discovery.
 *  @param cameraId as returned by OrvalisGetCameraID()
 *  @param[out] handle the open camera
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_FOUND, also for a GigE Vision camera that is not in
 *          a subnet of the network interface on which it was found; #ORVALIS_ERROR_BUSY if this or another
 *          program has it open; #ORVALIS_ERROR_ACCESS_DENIED without permission for its USB device;
 *          #ORVALIS_ERROR_DEVICE; #ORVALIS_ERROR_OUT_OF_MEMORY. */
ORVALIS_EXPORT int32_t OrvalisOpenCamera(const char *cameraId, OCameraHandle *handle);

/** Closes a camera: stops its stream, ends all waits on it and invalidates the handle and the frames
 *  that it delivered. Works after OrvalisUninit() and after the camera was lost, and returns within
 *  a second whatever the camera does.
 *  @return #ORVALIS_OK. */
ORVALIS_EXPORT int32_t OrvalisCloseCamera(OCameraHandle handle);

/** Reboots a camera. It leaves the bus; the handle returns #ORVALIS_ERROR_CONNECTION_LOST from then
 *  on and must be closed. After some seconds the camera is back with its power-on settings.
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_SUPPORTED; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisCameraReset(OCameraHandle handle);

/** Describes an open camera and its present pixel format.
 *  @param[out] info the whole record is written
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisGetCamInfo(OCameraHandle handle, OCameraInfo *info);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Streaming
 *  @{ */

/** Selects whether frames of Bayer formats have an RGB plane. Off after a camera is opened. Takes
 *  effect with the next frame. Has no effect on other formats.
 *  @param enable 0 off, anything else on
 *  @return #ORVALIS_OK. */
ORVALIS_EXPORT int32_t OrvalisSetBayerConversion(OCameraHandle handle, int32_t enable);

/** Starts streaming. In the acquisition mode "SingleFrame" the camera sends one frame.
 *  @param callback receives the frames
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_BUSY if it streams already, and always inside a frame callback
 *          of the same camera; #ORVALIS_ERROR_NOT_SUPPORTED for a pixel format that the library cannot
 *          deliver; #ORVALIS_ERROR_ABORTED by OrvalisStopAcquisition() on another thread meanwhile;
 *          #ORVALIS_ERROR_OUT_OF_MEMORY; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisStartAcquisition(OCameraHandle handle, OFrameCallback callback);

/** Stops streaming. When it returns, no callback runs and none will. If called from inside the
 *  callback, it returns at once, and that callback is the last. Does nothing without a stream. Works
 *  after OrvalisUninit(), and returns within a second whatever the camera does.
 *  @return #ORVALIS_OK. */
ORVALIS_EXPORT int32_t OrvalisStopAcquisition(OCameraHandle handle);

/** Copies one frame as RGB to the caller's memory, whether or not the camera streams. While it
 *  streams, this is the next frame of the stream, which continues undisturbed. Supports all colour
 *  formats, and monochrome formats as R = G = B.
 *  @param frame `rgb` points to at least maxWidth x maxHeight x 3 bytes, of which width x height x 3
 *         are written; `raw` and `mono8` are not touched. Sizes are set: rawSize to the bytes written,
 *         bitsPerPixel to 24.
 *  @param timeoutMs the longest wait in milliseconds
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_TIMEOUT, also while the camera waits for a trigger, and at once
 *          inside a frame callback of the same camera, because the next frame waits for it;
 *          #ORVALIS_ERROR_ABORTED; #ORVALIS_ERROR_NOT_SUPPORTED for a format that cannot be
 *          converted; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisGrabRGBData(OCameraHandle handle, OImageFrame *frame, uint32_t timeoutMs);

/** Copies one frame to the caller's memory, whether or not the camera streams. Writes formats of 8
 *  bits per pixel unchanged, formats of 12 bits per sample as 16-bit little-endian words, and all
 *  other formats as 8-bit luminance; so 16 bits per pixel are always enough.
 *  @param frame `raw` points to at least maxWidth x maxHeight x 2 bytes; `rgb` and `mono8` are not
 *         touched. Sizes are set: rawSize to the bytes written, bitsPerPixel to 8 or 16.
 *  @param timeoutMs the longest wait in milliseconds
 *  @return as OrvalisGrabRGBData(). */
ORVALIS_EXPORT int32_t OrvalisGrabRAWData(OCameraHandle handle, OImageFrame *frame, uint32_t timeoutMs);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Image size, pixel format, frame rate
 *  Region and pixel format are locked while the camera streams.
 *  @{ */

/** Reads the region of interest and the size of the sensor.
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisGetSizeInfo(OCameraHandle handle, OSizeInfo *size);

/** Sets the region of interest. The camera takes the nearest region that it supports: first sizes,
 *  then offsets are clamped to their bounds and rounded down to their increments, so that the region
 *  is on the sensor. Read back the result.
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_ACCESS_DENIED while it streams; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisSetSizeInfo(OCameraHandle handle, OSizeInfo size);

/** Gets the name of the present pixel format (PFNC).
 *  @param[out] name at least #ORVALIS_NAME_SIZE bytes
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisGetPixelFormatStr(OCameraHandle handle, char *name);

/** Sets the pixel format by name.
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_FOUND for a name that the camera does not offer;
 *          #ORVALIS_ERROR_ACCESS_DENIED while it streams; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisSetPixelFormatStr(OCameraHandle handle, const char *name);

/** Counts the pixel formats that the camera offers.
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisGetNumAvailablePixelFormats(OCameraHandle handle, int32_t *count);

/** Gets the name of a pixel format that the camera offers. As for every list that is read by index,
 *  the names are those of the list counted last, without communication with the camera. If something
 *  was written to the camera since, or its stream was started or stopped, the list is read again.
 *  @param index 0 to count - 1
 *  @param[out] name at least #ORVALIS_NAME_SIZE bytes
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_FOUND for an index beyond the count. */
ORVALIS_EXPORT int32_t OrvalisGetAvailablePixelFormatsIdxToStr(OCameraHandle handle, int32_t index,
                                                               char *name);

/** Reads the configured frame rate in frames per second (AcquisitionFrameRate). Exposure time and
 *  read-out may limit the real rate, and the setting has no effect while the control of the frame
 *  rate is off.
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_SUPPORTED; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisGetFrameRate(OCameraHandle handle, float *rate);

/** Reads the bounds of the frame rate at the present region and pixel format.
 *  @return as OrvalisGetFrameRate(). */
ORVALIS_EXPORT int32_t OrvalisGetFrameRateMinMax(OCameraHandle handle, float *minimum, float *maximum);

/** Sets the frame rate, and switches the control of the frame rate on if the camera has a switch for
 *  it.
 *  @param rate frames per second
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_OUT_OF_RANGE; #ORVALIS_ERROR_NOT_SUPPORTED;
 *          #ORVALIS_ERROR_ACCESS_DENIED; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisSetFrameRate(OCameraHandle handle, float rate);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Image features
 *  Each feature has a getter, its present bounds and a setter. All of them return #ORVALIS_OK;
 *  #ORVALIS_ERROR_NOT_SUPPORTED where the camera lacks the feature (white balance and colour on
 *  monochrome formats); #ORVALIS_ERROR_DEVICE; setters also #ORVALIS_ERROR_OUT_OF_RANGE and
 *  #ORVALIS_ERROR_ACCESS_DENIED (for instance while an automatic control locks the value).
 *  @{ */

/** Reads the gain (Gain in dB, or the camera's raw gain) and whether it is automatic (GainAuto). */
ORVALIS_EXPORT int32_t OrvalisGetGain(OCameraHandle handle, int32_t *value, bool *automatic);
/** Reads the bounds of the gain. */
ORVALIS_EXPORT int32_t OrvalisGetGainMinMax(OCameraHandle handle, int32_t *minimum, int32_t *maximum);
/** Sets the gain, or with @p automatic makes it automatic; @p value is ignored then. */
ORVALIS_EXPORT int32_t OrvalisSetGain(OCameraHandle handle, int32_t value, bool automatic);

/** Reads the exposure time in microseconds (ExposureTime) and whether it is automatic
 *  (ExposureAuto). */
ORVALIS_EXPORT int32_t OrvalisGetShutter(OCameraHandle handle, uint32_t *value, bool *automatic);
/** Reads the bounds of the exposure time in microseconds. */
ORVALIS_EXPORT int32_t OrvalisGetShutterMinMax(OCameraHandle handle, uint32_t *minimum,
                                               uint32_t *maximum);
/** Sets the exposure time in microseconds, or with @p automatic makes it automatic; @p value is
 *  ignored then. */
ORVALIS_EXPORT int32_t OrvalisSetShutter(OCameraHandle handle, uint32_t value, bool automatic);

/** Reads the target brightness of automatic exposure and gain. */
ORVALIS_EXPORT int32_t OrvalisGetAutoExposure(OCameraHandle handle, int32_t *value);
/** Reads the bounds of the target brightness. */
ORVALIS_EXPORT int32_t OrvalisGetAutoExposureMinMax(OCameraHandle handle, int32_t *minimum,
                                                    int32_t *maximum);
/** Sets the target brightness of automatic exposure and gain. */
ORVALIS_EXPORT int32_t OrvalisSetAutoExposure(OCameraHandle handle, int32_t value);

/** Reads the black level (BlackLevel). */
ORVALIS_EXPORT int32_t OrvalisGetBlackLevel(OCameraHandle handle, int32_t *value);
/** Reads the bounds of the black level. */
ORVALIS_EXPORT int32_t OrvalisGetBlackLevelMinMax(OCameraHandle handle, int32_t *minimum,
                                                  int32_t *maximum);
/** Sets the black level. */
ORVALIS_EXPORT int32_t OrvalisSetBlackLevel(OCameraHandle handle, int32_t value);

/** Reads the gamma exponent (Gamma). */
ORVALIS_EXPORT int32_t OrvalisGetGamma(OCameraHandle handle, float *value);
/** Reads the bounds of the gamma exponent. */
ORVALIS_EXPORT int32_t OrvalisGetGammaMinMax(OCameraHandle handle, float *minimum, float *maximum);
/** Sets the gamma exponent. */
ORVALIS_EXPORT int32_t OrvalisSetGamma(OCameraHandle handle, float value);

/** Reads the contrast. */
ORVALIS_EXPORT int32_t OrvalisGetContrast(OCameraHandle handle, int32_t *value);
/** Reads the bounds of the contrast. */
ORVALIS_EXPORT int32_t OrvalisGetContrastMinMax(OCameraHandle handle, int32_t *minimum,
                                                int32_t *maximum);
/** Sets the contrast. */
ORVALIS_EXPORT int32_t OrvalisSetContrast(OCameraHandle handle, int32_t value);

/** Reads the hue. */
ORVALIS_EXPORT int32_t OrvalisGetHue(OCameraHandle handle, int32_t *value);
/** Reads the bounds of the hue. */
ORVALIS_EXPORT int32_t OrvalisGetHueMinMax(OCameraHandle handle, int32_t *minimum, int32_t *maximum);
/** Sets the hue. */
ORVALIS_EXPORT int32_t OrvalisSetHue(OCameraHandle handle, int32_t value);

/** Reads the saturation. */
ORVALIS_EXPORT int32_t OrvalisGetSaturation(OCameraHandle handle, int32_t *value);
/** Reads the bounds of the saturation. */
ORVALIS_EXPORT int32_t OrvalisGetSaturationMinMax(OCameraHandle handle, int32_t *minimum,
                                                  int32_t *maximum);
/** Sets the saturation. */
ORVALIS_EXPORT int32_t OrvalisSetSaturation(OCameraHandle handle, int32_t value);

/** Reads the sharpness. */
ORVALIS_EXPORT int32_t OrvalisGetSharpness(OCameraHandle handle, int32_t *value);
/** Reads the bounds of the sharpness. */
ORVALIS_EXPORT int32_t OrvalisGetSharpnessMinMax(OCameraHandle handle, int32_t *minimum,
                                                 int32_t *maximum);
/** Sets the sharpness. */
ORVALIS_EXPORT int32_t OrvalisSetSharpness(OCameraHandle handle, int32_t value);

/** Reads the red gain: BalanceRatio[Red] in units of 1/1024; 1024 leaves red unchanged. */
ORVALIS_EXPORT int32_t OrvalisGetRGain(OCameraHandle handle, int32_t *value);
/** Reads the bounds of the red gain. */
ORVALIS_EXPORT int32_t OrvalisGetRGainMinMax(OCameraHandle handle, int32_t *minimum, int32_t *maximum);
/** Sets the red gain. */
ORVALIS_EXPORT int32_t OrvalisSetRGain(OCameraHandle handle, int32_t value);

/** Reads the green gain: BalanceRatio[Green] in units of 1/1024. */
ORVALIS_EXPORT int32_t OrvalisGetGGain(OCameraHandle handle, int32_t *value);
/** Reads the bounds of the green gain. */
ORVALIS_EXPORT int32_t OrvalisGetGGainMinMax(OCameraHandle handle, int32_t *minimum, int32_t *maximum);
/** Sets the green gain. */
ORVALIS_EXPORT int32_t OrvalisSetGGain(OCameraHandle handle, int32_t value);

/** Reads the blue gain: BalanceRatio[Blue] in units of 1/1024. */
ORVALIS_EXPORT int32_t OrvalisGetBGain(OCameraHandle handle, int32_t *value);
/** Reads the bounds of the blue gain. */
ORVALIS_EXPORT int32_t OrvalisGetBGainMinMax(OCameraHandle handle, int32_t *minimum, int32_t *maximum);
/** Sets the blue gain. */
ORVALIS_EXPORT int32_t OrvalisSetBGain(OCameraHandle handle, int32_t value);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name White balance
 *  Modes are the entries of BalanceWhiteAuto: "Off", "Once", "Continuous". Results as for
 *  OrvalisSetGain().
 *  @{ */

/** Counts the white balance modes that the camera offers. */
ORVALIS_EXPORT int32_t OrvalisGetNumAvailableWhiteBalances(OCameraHandle handle, int32_t *count);
/** Gets the name of a white balance mode.
 *  @param index 0 to count - 1; beyond it the result is #ORVALIS_ERROR_NOT_FOUND
 *  @param[out] name at least #ORVALIS_NAME_SIZE bytes */
ORVALIS_EXPORT int32_t OrvalisGetAvailableWhiteBalancesIdxToStr(OCameraHandle handle, int32_t index,
                                                                char *name);
/** Gets the name of the present white balance mode.
 *  @param[out] name at least #ORVALIS_NAME_SIZE bytes */
ORVALIS_EXPORT int32_t OrvalisGetWhiteBalanceStr(OCameraHandle handle, char *name);
/** Sets the white balance mode by name. "Once" balances once and then returns to "Off".
 *  #ORVALIS_ERROR_NOT_FOUND for a name that the camera does not offer. */
ORVALIS_EXPORT int32_t OrvalisSetWhiteBalanceStr(OCameraHandle handle, const char *name);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Trigger
 *  With the trigger enabled, the camera takes a frame only when the selected source fires. All
 *  functions return #ORVALIS_OK; #ORVALIS_ERROR_NOT_SUPPORTED where the camera lacks the feature;
 *  #ORVALIS_ERROR_DEVICE; those that take an index or a name #ORVALIS_ERROR_NOT_FOUND for one that the
 *  camera does not offer; those that take a number #ORVALIS_ERROR_OUT_OF_RANGE. Names are written to
 *  buffers of at least #ORVALIS_NAME_SIZE bytes.
 *  @{ */

/** Reads whether the camera waits for triggers: whether TriggerMode is on for any entry of
 *  TriggerSelector. */
ORVALIS_EXPORT int32_t OrvalisGetTriggerEnable(OCameraHandle handle, bool *enable);
/** Sets whether the camera waits for triggers. On: TriggerMode is on only for the selected entry of
 *  TriggerSelector; off: for none. */
ORVALIS_EXPORT int32_t OrvalisSetTriggerEnable(OCameraHandle handle, bool enable);
/** Gets what one trigger starts (TriggerSelector): a frame, or a burst of frames. */
ORVALIS_EXPORT int32_t OrvalisGetTriggerModeStr(OCameraHandle handle, char *name);
/** Sets what one trigger starts (TriggerSelector). If the trigger is on, it moves to the new entry,
 *  so that no other entry of TriggerSelector stays on. */
ORVALIS_EXPORT int32_t OrvalisSetTriggerModeStr(OCameraHandle handle, const char *name);
/** Gets the source of triggers (TriggerSource). */
ORVALIS_EXPORT int32_t OrvalisGetTriggerSourceStr(OCameraHandle handle, char *name);
/** Sets the source of triggers (TriggerSource). */
ORVALIS_EXPORT int32_t OrvalisSetTriggerSourceStr(OCameraHandle handle, const char *name);
/** Gets the active edge or level of the signal (TriggerActivation). */
ORVALIS_EXPORT int32_t OrvalisGetTriggerPolarityStr(OCameraHandle handle, char *name);
/** Sets the active edge or level of the signal (TriggerActivation). */
ORVALIS_EXPORT int32_t OrvalisSetTriggerPolarityStr(OCameraHandle handle, const char *name);
/** Reads the number of frames of one burst (AcquisitionBurstFrameCount). */
ORVALIS_EXPORT int32_t OrvalisGetTriggerParameter(OCameraHandle handle, int32_t *value);
/** Sets the number of frames of one burst (AcquisitionBurstFrameCount). */
ORVALIS_EXPORT int32_t OrvalisSetTriggerParameter(OCameraHandle handle, int32_t value);
/** Reads the time from trigger to exposure in microseconds (TriggerDelay). */
ORVALIS_EXPORT int32_t OrvalisGetTriggerDelay(OCameraHandle handle, int32_t *value);
/** Sets the time from trigger to exposure in microseconds (TriggerDelay). */
ORVALIS_EXPORT int32_t OrvalisSetTriggerDelay(OCameraHandle handle, int32_t value);
/** Reads the minimum length of a valid signal (LineDebouncerTime), in microseconds; on some older
 *  cameras (LineFilterWidth) in camera-specific steps. */
ORVALIS_EXPORT int32_t OrvalisGetTriggerNoiseFilter(OCameraHandle handle, int32_t *value);
/** Sets the minimum length of a valid signal; units as for OrvalisGetTriggerNoiseFilter(). */
ORVALIS_EXPORT int32_t OrvalisSetTriggerNoiseFilter(OCameraHandle handle, int32_t value);
/** Counts the trigger modes. */
ORVALIS_EXPORT int32_t OrvalisGetNumAvailableTriggerModes(OCameraHandle handle, int32_t *count);
/** Gets the name of a trigger mode. */
ORVALIS_EXPORT int32_t OrvalisGetAvailableTriggerModesIdxToStr(OCameraHandle handle, int32_t index,
                                                               char *name);
/** Counts the trigger sources. */
ORVALIS_EXPORT int32_t OrvalisGetNumAvailableTriggerSources(OCameraHandle handle, int32_t *count);
/** Gets the name of a trigger source. */
ORVALIS_EXPORT int32_t OrvalisGetAvailableTriggerSourcesIdxToStr(OCameraHandle handle, int32_t index,
                                                                 char *name);
/** Counts the trigger polarities. The spelling of the name is part of the interface. */
ORVALIS_EXPORT int32_t OrvalisGetNumAvailableTriggerPolaritys(OCameraHandle handle, int32_t *count);
/** Gets the name of a trigger polarity. The spelling of the name is part of the interface. */
ORVALIS_EXPORT int32_t OrvalisGetAvailableTriggerPolaritysIdxToStr(OCameraHandle handle, int32_t index,
                                                                   char *name);
/** Fires the trigger by software. Has an effect only while the camera streams with the trigger
 *  enabled and a source that software can fire: "Software", "Any", "All" (TriggerSoftware),
 *  "SoftwareSignal0" and so on (SoftwareSignalPulse). Otherwise it does nothing and returns
 *  #ORVALIS_OK. */
ORVALIS_EXPORT int32_t OrvalisRunSoftwareTrigger(OCameraHandle handle);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Strobe
 *  The output that triggers a lamp: the line in LineMode "Strobe", else the first output, whatever
 *  LineSelector selects. Results and buffers as for OrvalisSetTriggerDelay() and
 *  OrvalisSetTriggerModeStr().
 *  @{ */

/** Reads whether the strobe output is on. */
ORVALIS_EXPORT int32_t OrvalisGetStrobeEnable(OCameraHandle handle, bool *enable);
/** Switches the strobe output. */
ORVALIS_EXPORT int32_t OrvalisSetStrobeEnable(OCameraHandle handle, bool enable);
/** Gets the source of the strobe (LineSource). */
ORVALIS_EXPORT int32_t OrvalisGetStrobeModeStr(OCameraHandle handle, char *name);
/** Sets the source of the strobe (LineSource). */
ORVALIS_EXPORT int32_t OrvalisSetStrobeModeStr(OCameraHandle handle, const char *name);
/** Gets the polarity of the output (LineInverter): "ActiveHigh" or "ActiveLow". */
ORVALIS_EXPORT int32_t OrvalisGetStrobePolarityStr(OCameraHandle handle, char *name);
/** Sets the polarity of the output (LineInverter): "ActiveHigh" or "ActiveLow". */
ORVALIS_EXPORT int32_t OrvalisSetStrobePolarityStr(OCameraHandle handle, const char *name);
/** Reads the time from the start of the exposure to the flash in microseconds (TimerDelay). */
ORVALIS_EXPORT int32_t OrvalisGetStrobeDelay(OCameraHandle handle, int32_t *value);
/** Sets the time from the start of the exposure to the flash in microseconds (TimerDelay). */
ORVALIS_EXPORT int32_t OrvalisSetStrobeDelay(OCameraHandle handle, int32_t value);
/** Reads the length of the flash in microseconds (TimerDuration). */
ORVALIS_EXPORT int32_t OrvalisGetStrobeDuration(OCameraHandle handle, int32_t *value);
/** Sets the length of the flash in microseconds (TimerDuration). */
ORVALIS_EXPORT int32_t OrvalisSetStrobeDuration(OCameraHandle handle, int32_t value);
/** Counts the strobe modes. */
ORVALIS_EXPORT int32_t OrvalisGetNumAvailableStrobeModes(OCameraHandle handle, int32_t *count);
/** Gets the name of a strobe mode. */
ORVALIS_EXPORT int32_t OrvalisGetAvailableStrobeModesIdxToStr(OCameraHandle handle, int32_t index,
                                                              char *name);
/** Counts the strobe polarities. The spelling of the name is part of the interface. */
ORVALIS_EXPORT int32_t OrvalisGetNumAvailableStrobePolaritys(OCameraHandle handle, int32_t *count);
/** Gets the name of a strobe polarity. The spelling of the name is part of the interface. */
ORVALIS_EXPORT int32_t OrvalisGetAvailableStrobePolaritysIdxToStr(OCameraHandle handle, int32_t index,
                                                                  char *name);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name User sets
 *  Saving and loading go through the nodes UserSetSelector, UserSetSave, UserSetLoad and
 *  UserSetDefaultSelector (UserSetDefault is equivalent).
 *  @{ */

/** Restores the factory settings: loads the user set "Default".
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_SUPPORTED; #ORVALIS_ERROR_ACCESS_DENIED while the camera
 *          streams; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisSetUserDefault(OCameraHandle handle);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Feature nodes
 *  A camera describes its features as a tree of named nodes (GenICam; names follow the Standard Features
 *  Naming Convention). All functions return #ORVALIS_OK; #ORVALIS_ERROR_NOT_FOUND for a name that the
 *  camera does not have; #ORVALIS_ERROR_WRONG_TYPE; #ORVALIS_ERROR_ACCESS_DENIED for a node that is not
 *  readable or not writable at present; #ORVALIS_ERROR_DEVICE, also for a node with an invalid
 *  description: it refers to itself, needs more than 1000 registers, or has a register of an impossible
 *  length.
 *
 *  Texts and lists are limited, whatever length the camera states: at most the first 255 bytes of a text
 *  and the first 512 entries of an enumeration are read. A call to a camera that answers lasts at most
 *  as long as reading 1000 registers, plus two seconds for a list.
 *  @{ */

/** Lists the nodes below a category. The root is the category "Root". Omits nodes beyond the capacity.
 *  @param parent name of a category; the list of any other node is empty
 *  @param[in,out] list count is the capacity on entry, limited to 128; 0 after a failure */
ORVALIS_EXPORT int32_t OrvalisGetNodeList(OCameraHandle handle, const char *parent, ONodeList *list);
/** Describes a node. Returns #ORVALIS_OK also for nodes that are not available. */
ORVALIS_EXPORT int32_t OrvalisGetNodeInfo(OCameraHandle handle, const char *name, ONodeInfo *info);
/** Reads an integer node and its present bounds. */
ORVALIS_EXPORT int32_t OrvalisGetNodeInt(OCameraHandle handle, const char *name, OIntNode *node);
/** Writes an integer node. #ORVALIS_ERROR_OUT_OF_RANGE outside the camera's bounds; a value between
 *  two increments is rounded down. #ORVALIS_ERROR_ACCESS_DENIED for a node that needs more than 32
 *  bits: use OrvalisSetNodeString().
 *  @param value the number; for a node of unsigned 32-bit numbers its bit pattern, as in #OIntNode */
ORVALIS_EXPORT int32_t OrvalisSetNodeInt(OCameraHandle handle, const char *name, int32_t value);
/** Reads a floating-point node and its present bounds. */
ORVALIS_EXPORT int32_t OrvalisGetNodeFloat(OCameraHandle handle, const char *name, OFloatNode *node);
/** Writes a floating-point node. #ORVALIS_ERROR_OUT_OF_RANGE outside the bounds and for NaN. */
ORVALIS_EXPORT int32_t OrvalisSetNodeFloat(OCameraHandle handle, const char *name, double value);
/** Reads a boolean node. */
ORVALIS_EXPORT int32_t OrvalisGetNodeBoolean(OCameraHandle handle, const char *name, bool *value);
/** Writes a boolean node. */
ORVALIS_EXPORT int32_t OrvalisSetNodeBoolean(OCameraHandle handle, const char *name, bool value);
/** Reads an enumeration node: the entries that it offers at present and the present one.
 *  @param[in,out] node count is the capacity on entry, limited to 64 */
ORVALIS_EXPORT int32_t OrvalisGetNodeEnum(OCameraHandle handle, const char *name, OEnumNode *node);
/** Sets an enumeration node by the name of an entry. #ORVALIS_ERROR_NOT_FOUND for a name that it
 *  does not offer. */
ORVALIS_EXPORT int32_t OrvalisSetNodeEnum(OCameraHandle handle, const char *name, const char *entry);
/** Reads any node that has a value as text: strings unchanged, enumerations as the name of the
 *  entry, numbers in decimal, booleans as 0 or 1.
 *  @param[out] text at least #ORVALIS_TEXT_SIZE bytes; for enumerations #ORVALIS_NAME_SIZE are enough */
ORVALIS_EXPORT int32_t OrvalisGetNodeString(OCameraHandle handle, const char *name, char *text);
/** Writes any node that has a value from text in the form of OrvalisGetNodeString().
 *  #ORVALIS_ERROR_BAD_ARGUMENT for text that is not a number, for a number;
 *  #ORVALIS_ERROR_OUT_OF_RANGE for text that is too long for a string node. If a string node is
 *  longer than 255 bytes, only the text and a NUL are written. */
ORVALIS_EXPORT int32_t OrvalisSetNodeString(OCameraHandle handle, const char *name, const char *text);
/** Executes a command node and waits until it is done, if the camera reports this: at most five
 *  seconds for commands of user sets, one second for others. A longer command continues after the
 *  call, which returns #ORVALIS_OK then as well; later calls do not wait for that command. Does not
 *  wait for DeviceReset. */
ORVALIS_EXPORT int32_t OrvalisSetNodeCommand(OCameraHandle handle, const char *name);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Registers
 *  @{ */

/** Reads a 32-bit register; the value is in host byte order.
 *  @param address byte address, a multiple of 4
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_BAD_ARGUMENT for an address that is not a multiple of 4;
 *          #ORVALIS_ERROR_NOT_FOUND for an address that the camera does not have;
 *          #ORVALIS_ERROR_ACCESS_DENIED; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisReadRegister(OCameraHandle handle, uint32_t address, uint32_t *data);

/** Writes a 32-bit register. The spelling of the name is part of the interface.
 *  @return as OrvalisReadRegister(); #ORVALIS_ERROR_OUT_OF_RANGE for a value that the register refuses. */
ORVALIS_EXPORT int32_t OrvalisWriteRegiser(OCameraHandle handle, uint32_t address, uint32_t data);
/** @} */

#ifdef __cplusplus
}
#endif

/* The layout is part of the interface: programs and libraries are built separately. */
#if defined(__cplusplus)
#define ORVALIS_ASSERT(condition) static_assert(condition, #condition)
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define ORVALIS_ASSERT(condition) _Static_assert(condition, #condition)
#else
#define ORVALIS_ASSERT_NAME(line) orvalis_layout_##line
#define ORVALIS_ASSERT_AT(condition, line) \
    extern char ORVALIS_ASSERT_NAME(line)[(condition) ? 1 : -1]
#define ORVALIS_ASSERT_LINE(condition, line) ORVALIS_ASSERT_AT(condition, line)
#define ORVALIS_ASSERT(condition) ORVALIS_ASSERT_LINE(condition, __LINE__)
#endif

ORVALIS_ASSERT(offsetof(OImageFrame, rawSize) == 0);
ORVALIS_ASSERT(offsetof(OImageFrame, width) == 4);
ORVALIS_ASSERT(offsetof(OImageFrame, height) == 8);
ORVALIS_ASSERT(offsetof(OImageFrame, bitsPerPixel) == 12);
ORVALIS_ASSERT(offsetof(OImageFrame, raw) == 16);
ORVALIS_ASSERT(offsetof(OImageFrame, rgb) == 16 + sizeof(void *));
ORVALIS_ASSERT(offsetof(OImageFrame, mono8) == 16 + 2 * sizeof(void *));
ORVALIS_ASSERT(sizeof(OImageFrame) == 16 + 3 * sizeof(void *));
ORVALIS_ASSERT(offsetof(OCameraInfo, pixelFormat) == 128);
ORVALIS_ASSERT(sizeof(OCameraInfo) == 512);
ORVALIS_ASSERT(offsetof(OSizeInfo, width) == 8);
ORVALIS_ASSERT(offsetof(OSizeInfo, maxWidth) == 16);
ORVALIS_ASSERT(sizeof(OSizeInfo) == 24);
ORVALIS_ASSERT(offsetof(ONodeList, names) == 4);
ORVALIS_ASSERT(sizeof(ONodeList) == 4 + 128 * 256);
ORVALIS_ASSERT(offsetof(ONodeInfo, type) == 0);
ORVALIS_ASSERT(offsetof(ONodeInfo, accessMode) == 4);
ORVALIS_ASSERT(offsetof(ONodeInfo, lockable) == 8);
ORVALIS_ASSERT(offsetof(OIntNode, value) == 0);
ORVALIS_ASSERT(offsetof(OIntNode, minimum) == 4);
ORVALIS_ASSERT(offsetof(OIntNode, maximum) == 8);
ORVALIS_ASSERT(offsetof(OIntNode, increment) == 12);
ORVALIS_ASSERT(offsetof(OFloatNode, minimum) == 8);
ORVALIS_ASSERT(offsetof(OFloatNode, maximum) == 16);
ORVALIS_ASSERT(offsetof(OFloatNode, increment) == 24);
ORVALIS_ASSERT(offsetof(OEnumNode, names) == 4);
ORVALIS_ASSERT(offsetof(OEnumNode, currentIndex) == 4 + 64 * 256);

#endif /* ORVALIS_API_H */
