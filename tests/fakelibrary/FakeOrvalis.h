// SPDX-License-Identifier: MIT
// The recording camera library: records the viewer's calls and returns the answers that a test
// sets.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#pragma GCC visibility push(default) // tests call these functions of the shared library

/// Everything here may be called from any thread.
namespace fakeorvalis {

/// One feature of type integer, exposure time included.
struct IntegerFeature {
    std::int64_t value = 0;
    std::int64_t minimum = 0;
    std::int64_t maximum = 100;
    bool automatic = false;
};

struct FloatFeature {
    double value = 1;
    double minimum = 0;
    double maximum = 1;
};

/// A feature that is one of a list of names.
struct ListFeature {
    std::vector<std::string> entries;
    std::string current;
};

struct Node {
    std::int32_t type = ORVALIS_NODE_VALUE;
    std::int32_t access = ORVALIS_ACCESS_READ_WRITE;
    OIntNode integer{};
    OFloatNode real{};
    bool boolean = false;
    std::string text; ///< string value; for enumerations the current entry
    std::vector<std::string> entries;
    std::vector<std::string> children; ///< of a category; also read for nodes of other types
};

struct Camera {
    std::string id;
    std::string displayName;
};

/// Answers of the library, before failures and hooks. A test may change them at any time
/// through withState(). Defaults (see defaultState()): two cameras "CAM-A" and "CAM-B", the
/// features of a colour camera, a 64x48 region on a 128x96 sensor, "BayerGR8" and other formats, a
/// small node tree.
struct State {
    std::vector<Camera> cameras;
    OCameraInfo info{};
    OSizeInfo size{};
    std::map<std::string, IntegerFeature>
        integers;                               ///< "Gain", "Shutter", "RGain", "TriggerDelay", ...
    std::map<std::string, FloatFeature> floats; ///< "Gamma", "FrameRate"
    std::map<std::string, bool> switches;       ///< "TriggerEnable", "StrobeEnable"
    std::map<std::string, ListFeature> lists; ///< "PixelFormat", "WhiteBalance", "TriggerMode", ...
    std::map<std::string, Node> nodes;        ///< "Root" lists the top categories
    std::map<std::uint32_t, std::uint32_t> registers;
};

State defaultState();

/// Clears calls, failures, hooks, handles and callback, and restores the default state. Call it in
/// init().
void reset();

/// Runs `change` on the state under the library's lock.
void withState(const std::function<void(State &)> &change);

/// Calls since the last reset() or clearCalls(), oldest first, written like
/// `OrvalisSetGain(h1, 5, false)`: handles as h1, h2, ... in order of opening, `null` for null,
/// `h?` for anything else; strings in double quotes; floats in shortest form; OSizeInfo as {x,
/// y, w, h, W, H}; output arguments are omitted, index and time-out arguments are written. A
/// frame callback is written as `callback`. The name of a handle is not reused before reset().
std::vector<std::string> calls();
/// The same with only the calls of the calling thread.
std::vector<std::string> callsHere();
/// The same, of all threads, without the calls whose function names are in `ignored`.
std::vector<std::string> callsExcept(const std::vector<std::string> &ignored);
/// The same with only the calls of those functions.
std::vector<std::string> callsOf(const std::vector<std::string> &functions);
void clearCalls();

/// Makes `function` ("OrvalisSetGain") return `code` and do nothing. 0 ends this.
void fail(const std::string &function, std::int32_t code = ORVALIS_ERROR_DEVICE);
/// Makes every function except OrvalisInit and OrvalisUninit fail; false ends this.
void failAll(bool on);

/// Runs `hook` in every call of `function`, after it is recorded and before it answers, on the
/// caller's thread and without the library's lock (it may wait or call the library). Null removes
/// the hook.
void onCall(const std::string &function, std::function<void()> hook);

/// Fills every output with hostile data from a generator seeded with `seed`: strings without
/// NUL that fill their buffers, counts beyond capacity, indices out of range, extreme numbers,
/// random results. Never writes beyond the sizes that OrvalisAPI.h documents. 0 ends this.
/// @param only the only function that is hostile; all of them if empty
void hostile(std::uint32_t seed, const std::string &only = {});
/// The same for all functions, with the bytes of `answers` instead of the generator. After the last
/// byte, answers are harmless: success, zeros, empty texts.
void hostileAnswers(std::vector<std::uint8_t> answers);

/// The callback of the running acquisition, null when stopped. One acquisition at a time is
/// supported for all cameras together. OrvalisUninit() does not end it: the viewer must handle a
/// library that calls back until the stop.
OFrameCallback callback();
/// Calls the callback with `frame` on a thread of the library and returns after it. Returns false
/// if no acquisition runs. OrvalisStopAcquisition() waits for the callback.
bool deliver(OImageFrame &frame);
/// The same with frames from `next`, all on one thread, until it returns null or no acquisition
/// runs. Calls `next` on that thread, between two callbacks.
/// @return number of delivered frames
std::uint64_t deliverEach(const std::function<OImageFrame *()> &next);

/// Bytes that the next grabs write to the caller's buffers (width and height from State::size).
/// Bytes beyond the region are ignored, missing ones are 128.
void setGrabPixels(std::vector<std::uint8_t> raw, std::vector<std::uint8_t> rgb);

/// Handles opened and not closed, as h1, h2, ...
std::vector<std::string> openHandles();

} // namespace fakeorvalis

#pragma GCC visibility pop
