/* SPDX-License-Identifier: MIT */
/*
 * OrvalisAPI.h: the plain C interface of the Orvalis camera library, libOrvalisAPI.so.
 *
 * The block below is read by programs that want to know which library is installed. It is a group
 * of an INI file: keep it at the start of lines and in front of everything that holds quotes.

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
 * @brief Find, open, tune and stream machine-vision cameras.
 *
 * **Conventions that hold for every function**
 *
 * - Every function returns #ORVALIS_OK (0) or one of the other #OResult codes. The codes named at a
 *   function come on top of those that any call with the same kind of argument can return:
 *   #ORVALIS_ERROR_NOT_INITIALIZED outside OrvalisInit() ... OrvalisUninit(),
 *   #ORVALIS_ERROR_BAD_HANDLE for a handle that is null, closed or was never given out,
 *   #ORVALIS_ERROR_BAD_ARGUMENT for a null pointer where data is expected,
 *   #ORVALIS_ERROR_CONNECTION_LOST once an open camera has left the bus, and
 *   #ORVALIS_ERROR_TIMEOUT if an open camera that is there has not answered in time.
 * - After a failure output arguments are unchanged, with one exception: OrvalisGetNodeList() sets
 *   its count to 0.
 * - Every function may be called from any thread, at the same time as any other, also from inside a
 *   frame callback, except where a function says otherwise.
 * - Strings are NUL-terminated 8-bit text. Output strings are written into a buffer of the caller,
 *   always with their NUL, and are cut if they are longer: identifiers, display names and the names
 *   of enumeration entries to #ORVALIS_NAME_SIZE bytes, node names and string values to
 *   #ORVALIS_TEXT_SIZE bytes.
 * - Times are in microseconds, sizes in pixels, rates in frames per second unless a function says
 *   otherwise. Values that the camera holds as floating point and that cross this interface as
 *   integers are rounded to the nearest integer, halves away from zero.
 * - A typed setter applies the camera's bounds strictly: a value outside of them is refused with
 *   #ORVALIS_ERROR_OUT_OF_RANGE and the camera is unchanged. A value between two increments is
 *   rounded down to the increment.
 *
 * **How long a call lasts.** OrvalisStopAcquisition(), OrvalisCloseCamera() and OrvalisUninit() return
 * within a second whatever the camera does, longer only by as long as a frame callback that runs.
 * OrvalisInit() returns at once. A grab returns at its timeout. OrvalisOpenCamera() and
 * OrvalisStartAcquisition() last as long as what they ask the camera: on a camera that answers, a few
 * round trips for each and, for the first opening, the transfer of its description; 10 s at most on one
 * that answers each question within 100 ms. A question that is not answered is given up after 3 s, and
 * 1.5 s later, if the camera does not answer a second one either, it counts as lost: then all calls
 * return at once.
 *
 * **Which cameras are seen** is chosen by the environment variable `ORVALIS_BACKENDS`, read by
 * OrvalisInit(): a comma-separated list of `simulated` (four built-in cameras), `genicam` (GigE
 * Vision and USB3 Vision cameras) and `fake` (one in-process GenICam test camera). Unset means
 * `simulated,genicam`; `none` means an empty bus. Further variables: `ORVALIS_DEBUG` (1: what the
 * library does, discovery in the first place, is printed to standard error), `ORVALIS_PACKET_SOCKET`
 * (0: never receive GigE Vision streams through a packet socket), `ORVALIS_SIMULATED_EXTRA_NODES`
 * (a number, at most 10000: the simulated cameras get that many further features).
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
    ORVALIS_ERROR_BAD_ARGUMENT = -1,     /**< a null pointer, an index or a text that makes no sense */
    ORVALIS_ERROR_BAD_HANDLE = -2,       /**< the handle is null, closed, or not one of this library */
    ORVALIS_ERROR_NOT_INITIALIZED = -3,  /**< OrvalisInit() was not called, or OrvalisUninit() was */
    ORVALIS_ERROR_NOT_FOUND = -4,        /**< no such camera, node, entry or list index */
    ORVALIS_ERROR_BUSY = -5,             /**< somebody else controls the camera, or it streams already */
    ORVALIS_ERROR_NOT_SUPPORTED = -6,    /**< this camera does not have the feature */
    ORVALIS_ERROR_ACCESS_DENIED = -7,    /**< not readable, not writable, or locked while acquiring */
    ORVALIS_ERROR_OUT_OF_RANGE = -8,     /**< the value lies outside the camera's present bounds */
    ORVALIS_ERROR_WRONG_TYPE = -9,       /**< the node exists, but is of another type */
    ORVALIS_ERROR_TIMEOUT = -10,         /**< nothing came within the time allowed */
    ORVALIS_ERROR_CONNECTION_LOST = -11, /**< the camera has left the bus; close the handle */
    ORVALIS_ERROR_OUT_OF_MEMORY = -12,   /**< a buffer could not be allocated */
    ORVALIS_ERROR_DEVICE = -13,          /**< the camera refused, or answered with an error */
    ORVALIS_ERROR_ABORTED = -14          /**< a wait was given up for a start, stop, write or close */
} OResult;

/** An open camera; owned by the library from OrvalisOpenCamera() to OrvalisCloseCamera().
 *  Handles are never given out twice: a handle that was closed stays invalid for ever. */
typedef void *OCameraHandle;

/**
 * One frame.
 *
 * In a frame callback the record and its planes belong to the library. They stay unchanged until at
 * least 8 further frames and 200 ms have passed (sooner only where this would hold more than 1 GiB
 * for one camera, and never before the next frame), survive OrvalisStopAcquisition(), and end with the next
 * OrvalisStartAcquisition() or OrvalisCloseCamera() of the same camera.
 *
 * For OrvalisGrabRGBData() and OrvalisGrabRAWData() record and planes belong to the caller.
 */
typedef struct OImageFrame {
    uint32_t rawSize;      /**< bytes in #raw */
    uint32_t width;        /**< pixels in a row */
    uint32_t height;       /**< rows */
    uint32_t bitsPerPixel; /**< bits of one pixel in #raw, padding included (16 for Mono12) */
    uint8_t *raw;   /**< the image as the camera sends it, packed formats unpacked into 16-bit
                         little-endian words; rows follow each other without padding */
    uint8_t *rgb;   /**< R, G, B, 8 bits each, width x height x 3 bytes; null unless the format is RGB
                         or YUV, or Bayer with the conversion on */
    uint8_t *mono8; /**< the upper 8 bits of Mono and Bayer formats deeper than 8 bits, width x height
                         bytes; null for the others */
} OImageFrame;

/** What the library knows of an open camera. */
typedef struct OCameraInfo {
    char cameraId[ORVALIS_NAME_SIZE];    /**< as OrvalisGetCameraID() gives it */
    char displayName[ORVALIS_NAME_SIZE]; /**< as OrvalisGetDisplayName() gives it */
    uint32_t pixelFormat;                /**< how frames are delivered: a code of the GenICam Pixel
                                              Format Naming Convention (PFNC 2.4). All monochrome
                                              formats deeper than 8 bits are delivered as 16-bit words
                                              with an 8-bit plane beside them, and are reported as
                                              Mono12 (0x01100005) */
    uint32_t sensorPixelFormat;          /**< the PFNC code the camera itself is set to */
    char vendor[ORVALIS_NAME_SIZE];      /**< maker */
    char model[ORVALIS_NAME_SIZE];       /**< model */
    char serialNumber[ORVALIS_NAME_SIZE]; /**< serial number */
    char firmware[ORVALIS_NAME_SIZE];    /**< firmware version */
    uint8_t reserved[120];               /**< zero */
} OCameraInfo;

/** The region of interest (ROI) and the sensor it lies on, in pixels. */
typedef struct OSizeInfo {
    int32_t offsetX;   /**< left edge */
    int32_t offsetY;   /**< upper edge */
    int32_t width;     /**< width of the region */
    int32_t height;    /**< height of the region */
    int32_t maxWidth;  /**< width of the whole sensor as it is read out at present: less with binning
                            or decimation; ignored by OrvalisSetSizeInfo() */
    int32_t maxHeight; /**< likewise its height */
} OSizeInfo;

/** Names of the nodes below a category. */
typedef struct ONodeList {
    uint32_t count; /**< in: capacity, at most 128; out: names written */
    char names[ORVALIS_NODE_LIST_SIZE][ORVALIS_TEXT_SIZE]; /**< node names, in the camera's order */
} ONodeList;

/** Kinds of nodes, as #ONodeInfo gives them (numbers of the GenApi interface types). */
typedef enum ONodeType {
    ORVALIS_NODE_VALUE = 0,       /**< something without a value of its own */
    ORVALIS_NODE_COMMAND = 1,     /**< OrvalisSetNodeCommand() */
    ORVALIS_NODE_REGISTER = 2,    /**< a block of bytes; not served */
    ORVALIS_NODE_STRING = 3,      /**< OrvalisGetNodeString(), OrvalisSetNodeString() */
    ORVALIS_NODE_ENUMERATION = 4, /**< OrvalisGetNodeEnum(), OrvalisSetNodeEnum() */
    ORVALIS_NODE_INTEGER = 5,     /**< OrvalisGetNodeInt(), OrvalisSetNodeInt() */
    ORVALIS_NODE_FLOAT = 6,       /**< OrvalisGetNodeFloat(), OrvalisSetNodeFloat() */
    ORVALIS_NODE_BOOLEAN = 7,     /**< OrvalisGetNodeBoolean(), OrvalisSetNodeBoolean() */
    ORVALIS_NODE_CATEGORY = 8     /**< OrvalisGetNodeList() */
} ONodeType;

/** What may be done with a node at present (numbers of GenApi's access modes). */
typedef enum OAccessMode {
    ORVALIS_ACCESS_NOT_IMPLEMENTED = 0, /**< the camera does not have it */
    ORVALIS_ACCESS_NOT_AVAILABLE = 1,   /**< not in the camera's present state */
    ORVALIS_ACCESS_WRITE_ONLY = 2,      /**< write or execute only */
    ORVALIS_ACCESS_READ_ONLY = 3,       /**< read only, or locked while acquiring */
    ORVALIS_ACCESS_READ_WRITE = 4       /**< read and write; commands that can be executed at any time */
} OAccessMode;

/** What a node is. */
typedef struct ONodeInfo {
    int32_t type;       /**< one of #ONodeType */
    int32_t accessMode; /**< one of #OAccessMode */
    uint8_t lockable;   /**< 1: the node becomes read-only while the camera acquires */
    uint8_t visibility; /**< 0 beginner, 1 expert, 2 guru, 3 invisible */
    char displayName[ORVALIS_TEXT_SIZE]; /**< name for people */
    char description[1024];              /**< what it does */
    char unit[ORVALIS_NAME_SIZE];        /**< unit of the value, empty if it has none */
} ONodeInfo;

/** Value and bounds of an integer node.
 *  A node of unsigned 32-bit numbers (0 <= minimum, INT32_MAX < maximum <= UINT32_MAX), such as an IPv4
 *  address, travels as its bit pattern: 3232235777, which is 192.168.1.1, as -1062731519. Its bounds here
 *  are INT32_MIN and INT32_MAX, for every pattern may be one of its numbers; the camera refuses those
 *  beyond its real bounds. OrvalisGetNodeString() has the number itself.
 *  Of nodes that need more bits, value and bounds are cut to the nearest 32-bit value. */
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

/** Entries of an enumeration node. Entries that the camera does not offer at present are left out. */
typedef struct OEnumNode {
    uint32_t count; /**< in: capacity, at most 64; out: entries written */
    char names[ORVALIS_ENUM_SIZE][ORVALIS_TEXT_SIZE]; /**< entry names, in the camera's order */
    int32_t currentIndex;                             /**< index of the present entry, -1 if unknown */
    int32_t values[ORVALIS_ENUM_SIZE];                /**< the entries' numeric values */
} OEnumNode;

/**
 * Receives frames. Called once per frame on a thread of the library's own, never twice at a time for
 * one camera. It delays the next frame for as long as it runs, so it should only take note of @p frame
 * and return. OrvalisStopAcquisition() may be called from inside, OrvalisCloseCamera() too.
 */
typedef void (*OFrameCallback)(OImageFrame *frame);

/* ------------------------------------------------------------------------------------------------ */
/** @name Library lifecycle
 *  @{ */

/** Starts the library. Calls are counted: each one needs an OrvalisUninit().
 *  Returns at once; looking for cameras goes on behind it.
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_OUT_OF_MEMORY. */
ORVALIS_EXPORT int32_t OrvalisInit(void);

/** Ends the library. Cameras that are still open stop streaming (no callback runs when this returns;
 *  called from inside a callback, none after that one), and their frames stay readable until
 *  OrvalisCloseCamera(), which, like OrvalisStopAcquisition(), still works on their handles. Returns within
 *  a second whatever the cameras do.
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_INITIALIZED without a matching OrvalisInit(). */
ORVALIS_EXPORT int32_t OrvalisUninit(void);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Enumeration
 *  A call to OrvalisNumberOfCameras() takes a snapshot of the bus. For half a second the names and IDs
 *  that the same thread reads are those of its snapshot; after that those of the newest one. A camera
 *  that was lost, but is there again, may stay out of the list until its old handle is closed. Real
 *  cameras come before simulated ones, and the cameras of each kind keep their order for as long as
 *  they stay.
 *  @{ */

/** Tells how many cameras are on the bus. Answers at once from the latest look at the bus, taken in
 *  the background; only while no camera is known at all and the first look is still under way does it
 *  wait for that one, at most 1.5 s.
 *  @param[out] count cameras
 *  @return #ORVALIS_OK. */
ORVALIS_EXPORT int32_t OrvalisNumberOfCameras(uint32_t *count);

/** Gives the name that people know a camera by: the name that the user gave it (DeviceUserID), if any,
 *  maker, model and serial number, and why it cannot be opened where that is known. Latin-1: one byte a
 *  character. The name of a camera may change while it is listed; its ID does not.
 *  @param index 0 to count - 1
 *  @param[out] name at least #ORVALIS_NAME_SIZE bytes
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_FOUND for an index beyond the count. */
ORVALIS_EXPORT int32_t OrvalisGetDisplayName(uint32_t index, char *name);

/** Gives the ID that opens a camera and by which it is known again.
 *  @param index 0 to count - 1
 *  @param[out] cameraId at least #ORVALIS_NAME_SIZE bytes
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_FOUND for an index beyond the count. */
ORVALIS_EXPORT int32_t OrvalisGetCameraID(uint32_t index, char *cameraId);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Connection
 *  @{ */

/** Opens a camera and takes control of it. Never waits for discovery.
 *  @param cameraId as OrvalisGetCameraID() gave it
 *  @param[out] handle the open camera
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_FOUND, also for a GigE Vision camera that is in another
 *          subnet than the network interface it was seen on; #ORVALIS_ERROR_BUSY if this or another
 *          program has it open; #ORVALIS_ERROR_ACCESS_DENIED without permission for its USB device;
 *          #ORVALIS_ERROR_DEVICE; #ORVALIS_ERROR_OUT_OF_MEMORY. */
ORVALIS_EXPORT int32_t OrvalisOpenCamera(const char *cameraId, OCameraHandle *handle);

/** Closes a camera: stops its stream, ends all waits on it and invalidates the handle. The frames that
 *  it delivered may not be read any more. Works after OrvalisUninit() and after the camera was lost,
 *  and returns within a second whatever the camera does.
 *  @return #ORVALIS_OK. */
ORVALIS_EXPORT int32_t OrvalisCloseCamera(OCameraHandle handle);

/** Reboots a camera. It leaves the bus, the handle reports #ORVALIS_ERROR_CONNECTION_LOST from then on
 *  and has to be closed; some seconds later the camera is back with its power-on settings.
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

/** Chooses whether frames of Bayer formats carry an RGB plane. Off when a camera is opened. Takes
 *  effect with the next frame. Other formats do not look at it.
 *  @param enable 0 off, anything else on
 *  @return #ORVALIS_OK. */
ORVALIS_EXPORT int32_t OrvalisSetBayerConversion(OCameraHandle handle, int32_t enable);

/** Starts streaming. In the acquisition mode "SingleFrame" one frame comes and no more.
 *  @param callback receives the frames
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_BUSY if it streams already, and always inside a frame callback
 *          of the same camera; #ORVALIS_ERROR_NOT_SUPPORTED for a pixel format that the library cannot
 *          deliver; #ORVALIS_ERROR_ABORTED by OrvalisStopAcquisition() on another thread meanwhile;
 *          #ORVALIS_ERROR_OUT_OF_MEMORY; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisStartAcquisition(OCameraHandle handle, OFrameCallback callback);

/** Stops streaming. When it returns no callback runs and none will; called from inside the callback it
 *  returns at once, and that callback is the last. Without a stream it does nothing. Works after
 *  OrvalisUninit(), and returns within a second whatever the camera does.
 *  @return #ORVALIS_OK. */
ORVALIS_EXPORT int32_t OrvalisStopAcquisition(OCameraHandle handle);

/** Copies one frame as RGB into memory of the caller, whether or not the camera streams. While it
 *  streams this is the next frame of the stream, which is not disturbed. Any format that has colour,
 *  and monochrome ones as R = G = B.
 *  @param frame `rgb` points to at least maxWidth x maxHeight x 3 bytes, of which width x height x 3
 *         are written; `raw` and `mono8` are not touched. Sizes are set: rawSize to the bytes written,
 *         bitsPerPixel to 24.
 *  @param timeoutMs the longest wait in milliseconds
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_TIMEOUT, also while the camera waits for a trigger, and at once
 *          inside a frame callback of the same camera, whose next frame waits for that callback;
 *          #ORVALIS_ERROR_ABORTED; #ORVALIS_ERROR_NOT_SUPPORTED for a format that cannot be
 *          converted; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisGrabRGBData(OCameraHandle handle, OImageFrame *frame, uint32_t timeoutMs);

/** Copies one frame into memory of the caller, whether or not the camera streams. What is written, so
 *  that 16 bits per pixel are always enough: formats of 8 bits per pixel as they are; formats of 12
 *  bits per sample as 16-bit little-endian words; every other format as 8 bits of brightness.
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

/** Sets the region of interest. The camera takes the nearest region that it can: sizes are brought into
 *  its bounds and rounded down to its increments, then offsets are, so that the region lies on the
 *  sensor. Read back what it took.
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_ACCESS_DENIED while it streams; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisSetSizeInfo(OCameraHandle handle, OSizeInfo size);

/** Gives the name of the present pixel format (PFNC).
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

/** Gives the name of a pixel format that the camera offers. As with every list that is read name by name,
 *  the names are those of the list that was counted last, which costs the camera nothing. Where something
 *  was written to the camera since, or it was started or stopped, the list is read again.
 *  @param index 0 to count - 1
 *  @param[out] name at least #ORVALIS_NAME_SIZE bytes
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_FOUND for an index beyond the count. */
ORVALIS_EXPORT int32_t OrvalisGetAvailablePixelFormatsIdxToStr(OCameraHandle handle, int32_t index,
                                                               char *name);

/** Reads the frame rate in frames per second (AcquisitionFrameRate), as set: exposure time and
 *  read-out may hold the camera below it, and it counts only while the control of the frame rate is on.
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_SUPPORTED; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisGetFrameRate(OCameraHandle handle, float *rate);

/** Reads the bounds of the frame rate at the present region and pixel format.
 *  @return as OrvalisGetFrameRate(). */
ORVALIS_EXPORT int32_t OrvalisGetFrameRateMinMax(OCameraHandle handle, float *minimum, float *maximum);

/** Sets the frame rate, and switches the control of the frame rate on where a camera has a switch for
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
 *  #ORVALIS_ERROR_ACCESS_DENIED (for instance while an automatic control holds the value).
 *  @{ */

/** Reads the gain (Gain in dB, or the camera's raw gain) and whether it is automatic (GainAuto). */
ORVALIS_EXPORT int32_t OrvalisGetGain(OCameraHandle handle, int32_t *value, bool *automatic);
/** Reads the bounds of the gain. */
ORVALIS_EXPORT int32_t OrvalisGetGainMinMax(OCameraHandle handle, int32_t *minimum, int32_t *maximum);
/** Sets the gain, or with @p automatic hands it to the camera; @p value is then not looked at. */
ORVALIS_EXPORT int32_t OrvalisSetGain(OCameraHandle handle, int32_t value, bool automatic);

/** Reads the exposure time in microseconds (ExposureTime) and whether it is automatic
 *  (ExposureAuto). */
ORVALIS_EXPORT int32_t OrvalisGetShutter(OCameraHandle handle, uint32_t *value, bool *automatic);
/** Reads the bounds of the exposure time in microseconds. */
ORVALIS_EXPORT int32_t OrvalisGetShutterMinMax(OCameraHandle handle, uint32_t *minimum,
                                               uint32_t *maximum);
/** Sets the exposure time in microseconds, or with @p automatic hands it to the camera; @p value is
 *  then not looked at. */
ORVALIS_EXPORT int32_t OrvalisSetShutter(OCameraHandle handle, uint32_t value, bool automatic);

/** Reads the brightness that automatic exposure and gain aim at. */
ORVALIS_EXPORT int32_t OrvalisGetAutoExposure(OCameraHandle handle, int32_t *value);
/** Reads the bounds of the brightness that automatic exposure aims at. */
ORVALIS_EXPORT int32_t OrvalisGetAutoExposureMinMax(OCameraHandle handle, int32_t *minimum,
                                                    int32_t *maximum);
/** Sets the brightness that automatic exposure and gain aim at. */
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

/** Reads the red gain: BalanceRatio[Red] in units of 1/1024, so that 1024 leaves red as it is. */
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
/** Gives the name of a white balance mode.
 *  @param index 0 to count - 1; beyond it the result is #ORVALIS_ERROR_NOT_FOUND
 *  @param[out] name at least #ORVALIS_NAME_SIZE bytes */
ORVALIS_EXPORT int32_t OrvalisGetAvailableWhiteBalancesIdxToStr(OCameraHandle handle, int32_t index,
                                                                char *name);
/** Gives the name of the present white balance mode.
 *  @param[out] name at least #ORVALIS_NAME_SIZE bytes */
ORVALIS_EXPORT int32_t OrvalisGetWhiteBalanceStr(OCameraHandle handle, char *name);
/** Sets the white balance mode by name. "Once" balances from the picture, then goes back to "Off".
 *  A name that the camera does not offer is #ORVALIS_ERROR_NOT_FOUND. */
ORVALIS_EXPORT int32_t OrvalisSetWhiteBalanceStr(OCameraHandle handle, const char *name);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Trigger
 *  With the trigger enabled a frame is taken only when the chosen source fires. All functions return
 *  #ORVALIS_OK; #ORVALIS_ERROR_NOT_SUPPORTED where the camera lacks the feature;
 *  #ORVALIS_ERROR_DEVICE; those that take an index or a name #ORVALIS_ERROR_NOT_FOUND for one that the
 *  camera does not offer; those that take a number #ORVALIS_ERROR_OUT_OF_RANGE. Names are written to
 *  buffers of at least #ORVALIS_NAME_SIZE bytes.
 *  @{ */

/** Reads whether the camera waits for triggers: whether TriggerMode is on for any entry of
 *  TriggerSelector. */
ORVALIS_EXPORT int32_t OrvalisGetTriggerEnable(OCameraHandle handle, bool *enable);
/** Sets whether the camera waits for triggers. On: TriggerMode is on for the chosen entry of
 *  TriggerSelector alone; off: for none. */
ORVALIS_EXPORT int32_t OrvalisSetTriggerEnable(OCameraHandle handle, bool enable);
/** Gives what one trigger starts (TriggerSelector): a frame, or a burst of frames. */
ORVALIS_EXPORT int32_t OrvalisGetTriggerModeStr(OCameraHandle handle, char *name);
/** Sets what one trigger starts (TriggerSelector). A trigger that is on goes with it, so that no other
 *  entry of TriggerSelector stays on. */
ORVALIS_EXPORT int32_t OrvalisSetTriggerModeStr(OCameraHandle handle, const char *name);
/** Gives where triggers come from (TriggerSource). */
ORVALIS_EXPORT int32_t OrvalisGetTriggerSourceStr(OCameraHandle handle, char *name);
/** Sets where triggers come from (TriggerSource). */
ORVALIS_EXPORT int32_t OrvalisSetTriggerSourceStr(OCameraHandle handle, const char *name);
/** Gives which edge or level of the signal counts (TriggerActivation). */
ORVALIS_EXPORT int32_t OrvalisGetTriggerPolarityStr(OCameraHandle handle, char *name);
/** Sets which edge or level of the signal counts (TriggerActivation). */
ORVALIS_EXPORT int32_t OrvalisSetTriggerPolarityStr(OCameraHandle handle, const char *name);
/** Reads the number of frames of one burst (AcquisitionBurstFrameCount). */
ORVALIS_EXPORT int32_t OrvalisGetTriggerParameter(OCameraHandle handle, int32_t *value);
/** Sets the number of frames of one burst (AcquisitionBurstFrameCount). */
ORVALIS_EXPORT int32_t OrvalisSetTriggerParameter(OCameraHandle handle, int32_t value);
/** Reads the time from trigger to exposure in microseconds (TriggerDelay). */
ORVALIS_EXPORT int32_t OrvalisGetTriggerDelay(OCameraHandle handle, int32_t *value);
/** Sets the time from trigger to exposure in microseconds (TriggerDelay). */
ORVALIS_EXPORT int32_t OrvalisSetTriggerDelay(OCameraHandle handle, int32_t value);
/** Reads how long a signal must last to count (LineDebouncerTime), in microseconds; on some older
 *  cameras (LineFilterWidth) in steps of their own. */
ORVALIS_EXPORT int32_t OrvalisGetTriggerNoiseFilter(OCameraHandle handle, int32_t *value);
/** Sets how long a signal must last to count; units as OrvalisGetTriggerNoiseFilter(). */
ORVALIS_EXPORT int32_t OrvalisSetTriggerNoiseFilter(OCameraHandle handle, int32_t value);
/** Counts the trigger modes. */
ORVALIS_EXPORT int32_t OrvalisGetNumAvailableTriggerModes(OCameraHandle handle, int32_t *count);
/** Gives the name of a trigger mode. */
ORVALIS_EXPORT int32_t OrvalisGetAvailableTriggerModesIdxToStr(OCameraHandle handle, int32_t index,
                                                               char *name);
/** Counts the trigger sources. */
ORVALIS_EXPORT int32_t OrvalisGetNumAvailableTriggerSources(OCameraHandle handle, int32_t *count);
/** Gives the name of a trigger source. */
ORVALIS_EXPORT int32_t OrvalisGetAvailableTriggerSourcesIdxToStr(OCameraHandle handle, int32_t index,
                                                                 char *name);
/** Counts the trigger polarities. The spelling of the name is part of the interface. */
ORVALIS_EXPORT int32_t OrvalisGetNumAvailableTriggerPolaritys(OCameraHandle handle, int32_t *count);
/** Gives the name of a trigger polarity. The spelling of the name is part of the interface. */
ORVALIS_EXPORT int32_t OrvalisGetAvailableTriggerPolaritysIdxToStr(OCameraHandle handle, int32_t index,
                                                                   char *name);
/** Fires the trigger by software. It counts only while the camera streams with the trigger enabled and
 *  a source that software can fire: "Software", "Any", "All" (TriggerSoftware), "SoftwareSignal0" and
 *  so on (SoftwareSignalPulse). Otherwise nothing happens and the result is #ORVALIS_OK. */
ORVALIS_EXPORT int32_t OrvalisRunSoftwareTrigger(OCameraHandle handle);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Strobe
 *  The output that tells a lamp when to flash: the line in LineMode "Strobe", else the first output,
 *  wherever LineSelector stands. Results as for OrvalisSetTriggerDelay() and
 *  OrvalisSetTriggerModeStr(), buffers too.
 *  @{ */

/** Reads whether the strobe output is on. */
ORVALIS_EXPORT int32_t OrvalisGetStrobeEnable(OCameraHandle handle, bool *enable);
/** Switches the strobe output. */
ORVALIS_EXPORT int32_t OrvalisSetStrobeEnable(OCameraHandle handle, bool enable);
/** Gives what drives the strobe (LineSource). */
ORVALIS_EXPORT int32_t OrvalisGetStrobeModeStr(OCameraHandle handle, char *name);
/** Sets what drives the strobe (LineSource). */
ORVALIS_EXPORT int32_t OrvalisSetStrobeModeStr(OCameraHandle handle, const char *name);
/** Gives the polarity of the output (LineInverter): "ActiveHigh" or "ActiveLow". */
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
/** Gives the name of a strobe mode. */
ORVALIS_EXPORT int32_t OrvalisGetAvailableStrobeModesIdxToStr(OCameraHandle handle, int32_t index,
                                                              char *name);
/** Counts the strobe polarities. The spelling of the name is part of the interface. */
ORVALIS_EXPORT int32_t OrvalisGetNumAvailableStrobePolaritys(OCameraHandle handle, int32_t *count);
/** Gives the name of a strobe polarity. The spelling of the name is part of the interface. */
ORVALIS_EXPORT int32_t OrvalisGetAvailableStrobePolaritysIdxToStr(OCameraHandle handle, int32_t index,
                                                                  char *name);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name User sets
 *  Saving and loading go through the nodes UserSetSelector, UserSetSave, UserSetLoad and
 *  UserSetDefaultSelector (UserSetDefault is taken for the same).
 *  @{ */

/** Brings back the maker's settings: loads the user set "Default".
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_NOT_SUPPORTED; #ORVALIS_ERROR_ACCESS_DENIED while the camera
 *          streams; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisSetUserDefault(OCameraHandle handle);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Feature nodes
 *  A camera describes everything that it can do as a tree of named nodes (GenICam; names follow the
 *  Standard Features Naming Convention). All functions return #ORVALIS_OK; #ORVALIS_ERROR_NOT_FOUND
 *  for a name that the camera does not have; #ORVALIS_ERROR_WRONG_TYPE; #ORVALIS_ERROR_ACCESS_DENIED
 *  for a node that may not be read or written at present; #ORVALIS_ERROR_DEVICE, also for a node of
 *  which the camera's description makes no sense: it leads to itself, takes more than 1000 registers, or
 *  its register has a length that no value has.
 *
 *  However long a camera says that its texts and lists are, no more is read than fits: the first 255
 *  bytes of a text, the first 512 entries of an enumeration. A call on a camera that answers lasts as
 *  long as it takes to read 1000 registers at the most, and two seconds more for a list.
 *  @{ */

/** Lists the nodes below a category. The top is the category "Root". Nodes beyond the capacity are left
 *  out.
 *  @param parent name of a category; a node that is none has an empty list
 *  @param[in,out] list count holds the capacity on entry, at most 128 is used; 0 after a failure */
ORVALIS_EXPORT int32_t OrvalisGetNodeList(OCameraHandle handle, const char *parent, ONodeList *list);
/** Tells what a node is. The result is #ORVALIS_OK also for nodes that are not available. */
ORVALIS_EXPORT int32_t OrvalisGetNodeInfo(OCameraHandle handle, const char *name, ONodeInfo *info);
/** Reads an integer node and its present bounds. */
ORVALIS_EXPORT int32_t OrvalisGetNodeInt(OCameraHandle handle, const char *name, OIntNode *node);
/** Writes an integer node. Outside the camera's bounds: #ORVALIS_ERROR_OUT_OF_RANGE; between two
 *  increments the value is rounded down. A node that needs more than 32 bits can only be written by
 *  OrvalisSetNodeString(), here it is #ORVALIS_ERROR_ACCESS_DENIED.
 *  @param value of a node of unsigned 32-bit numbers the bit pattern, as in #OIntNode */
ORVALIS_EXPORT int32_t OrvalisSetNodeInt(OCameraHandle handle, const char *name, int32_t value);
/** Reads a floating-point node and its present bounds. */
ORVALIS_EXPORT int32_t OrvalisGetNodeFloat(OCameraHandle handle, const char *name, OFloatNode *node);
/** Writes a floating-point node. Outside the bounds, or not a number: #ORVALIS_ERROR_OUT_OF_RANGE. */
ORVALIS_EXPORT int32_t OrvalisSetNodeFloat(OCameraHandle handle, const char *name, double value);
/** Reads a boolean node. */
ORVALIS_EXPORT int32_t OrvalisGetNodeBoolean(OCameraHandle handle, const char *name, bool *value);
/** Writes a boolean node. */
ORVALIS_EXPORT int32_t OrvalisSetNodeBoolean(OCameraHandle handle, const char *name, bool value);
/** Reads an enumeration node: the entries that it offers at present and which one is set.
 *  @param[in,out] node count holds the capacity on entry, at most 64 is used */
ORVALIS_EXPORT int32_t OrvalisGetNodeEnum(OCameraHandle handle, const char *name, OEnumNode *node);
/** Sets an enumeration node by the name of an entry. A name that it does not offer:
 *  #ORVALIS_ERROR_NOT_FOUND. */
ORVALIS_EXPORT int32_t OrvalisSetNodeEnum(OCameraHandle handle, const char *name, const char *entry);
/** Reads any node that has a value as text: strings as they are, enumerations as the name of the entry,
 *  numbers in decimal, booleans as 0 or 1.
 *  @param[out] text at least #ORVALIS_TEXT_SIZE bytes; for enumerations #ORVALIS_NAME_SIZE are enough */
ORVALIS_EXPORT int32_t OrvalisGetNodeString(OCameraHandle handle, const char *name, char *text);
/** Writes any node that has a value from text, as OrvalisGetNodeString() would show it. Text that is no
 *  number for a number: #ORVALIS_ERROR_BAD_ARGUMENT; too long for a string node:
 *  #ORVALIS_ERROR_OUT_OF_RANGE. Of a string node longer than 255 bytes only the text and a NUL are
 *  written. */
ORVALIS_EXPORT int32_t OrvalisSetNodeString(OCameraHandle handle, const char *name, const char *text);
/** Executes a command node and waits until it is done, where the camera says so: five seconds at most for
 *  commands on user sets, one second for others. Longer commands go on after the call, which is
 *  #ORVALIS_OK then as well, and are not awaited again. DeviceReset is not awaited. */
ORVALIS_EXPORT int32_t OrvalisSetNodeCommand(OCameraHandle handle, const char *name);
/** @} */

/* ------------------------------------------------------------------------------------------------ */
/** @name Registers
 *  @{ */

/** Reads a 32-bit register, as the camera's own program would see it (host byte order here).
 *  @param address byte address, a multiple of 4
 *  @return #ORVALIS_OK; #ORVALIS_ERROR_BAD_ARGUMENT for an address that is no multiple of 4;
 *          #ORVALIS_ERROR_NOT_FOUND for an address that the camera does not have;
 *          #ORVALIS_ERROR_ACCESS_DENIED; #ORVALIS_ERROR_DEVICE. */
ORVALIS_EXPORT int32_t OrvalisReadRegister(OCameraHandle handle, uint32_t address, uint32_t *data);

/** Writes a 32-bit register. The spelling of the name is part of the interface.
 *  @return as OrvalisReadRegister(); #ORVALIS_ERROR_OUT_OF_RANGE for a value the register refuses. */
ORVALIS_EXPORT int32_t OrvalisWriteRegiser(OCameraHandle handle, uint32_t address, uint32_t data);
/** @} */

#ifdef __cplusplus
}
#endif

/* The layout is part of the interface: programs and libraries are built apart from each other. */
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
