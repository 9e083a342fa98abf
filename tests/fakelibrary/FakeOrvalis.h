// SPDX-License-Identifier: MIT
// The recording camera library: says what the viewer called, and answers what a test wants.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#pragma GCC visibility push(default) // tests reach it in the shared library

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
    std::string text; ///< string value; for enumerations the present entry
    std::vector<std::string> entries;
    std::vector<std::string> children; ///< of a category; also read for nodes of other types
};

struct Camera {
    std::string id;
    std::string displayName;
};

/// What the library answers, before failures and hooks. A test may change it at any time
/// through withState(). Defaults (see defaultState()): two cameras "CAM-A" and "CAM-B", a
/// colour camera's worth of features, 64x48 region on a 128x96 sensor, "BayerGR8" and others, a
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

/// Forgets calls, failures, hooks, handles and callback, and takes the default state. In
/// init().
void reset();

/// Runs `change` on the state under the library's lock.
void withState(const std::function<void(State &)> &change);

/// Calls since the last reset() or clearCalls(), oldest first, written like
/// `OrvalisSetGain(h1, 5, false)`: handles as h1, h2, ... in order of opening, `null` for null,
/// `h?` for anything else; strings in double quotes; floats in shortest form; OSizeInfo as {x,
/// y, w, h, W, H}; output arguments are left out. Index and time-out arguments are written. A
/// frame callback is written as `callback`. The name of a handle stays its own after the close,
/// until reset().
std::vector<std::string> calls();
/// The same with only the calls of the thread that asks.
std::vector<std::string> callsHere();
/// The same, of all threads, without the calls whose function names are in `ignored`.
std::vector<std::string> callsExcept(const std::vector<std::string> &ignored);
/// The same with only the calls of those functions.
std::vector<std::string> callsOf(const std::vector<std::string> &functions);
void clearCalls();

/// From now on `function` ("OrvalisSetGain") returns `code` and does nothing. 0 takes it back.
void fail(const std::string &function, std::int32_t code = ORVALIS_ERROR_DEVICE);
/// From now on every function but OrvalisInit and OrvalisUninit fails; false takes it back.
void failAll(bool on);

/// Runs `hook` in every call of `function`, after it is recorded and before it answers, on the
/// caller's thread and without the library's lock (it may wait or call back in). Null takes it
/// away.
void onCall(const std::string &function, std::function<void()> hook);

/// Answers every output with hostile data from a generator seeded with `seed`: strings without
/// NUL that fill their buffers, counts beyond capacity, indices out of range, wild numbers,
/// results at random. Never writes beyond the sizes that OrvalisAPI.h documents. 0 ends it.
/// @param only the one function that is hostile; all of them if empty
void hostile(std::uint32_t seed, const std::string &only = {});
/// The same for all functions, with the bytes of `answers` in the generator's place, as far as they
/// reach; from then on answers are harmless: success, zeros, empty texts.
void hostileAnswers(std::vector<std::uint8_t> answers);

/// The callback of the running acquisition, null when stopped. One acquisition at a time is
/// held for all cameras together. OrvalisUninit() leaves it running: the viewer must be safe
/// from a library that calls back until the stop.
OFrameCallback callback();
/// Calls the callback with `frame` on a thread of the library's own and returns when it has
/// returned. False if no acquisition runs. OrvalisStopAcquisition() waits for it.
bool deliver(OImageFrame &frame);
/// The same with one frame of `next` after the other, all on one thread, until it returns null
/// or no acquisition runs. `next` is called on that thread, between two callbacks.
/// @return how many frames were delivered
std::uint64_t deliverEach(const std::function<OImageFrame *()> &next);

/// Bytes that the next grabs put into the caller's buffers (width and height from State::size);
/// bytes beyond the region are left out, missing ones are 128.
void setGrabPixels(std::vector<std::uint8_t> raw, std::vector<std::uint8_t> rgb);

/// Handles opened and not closed, as h1, h2, ...
std::vector<std::string> openHandles();

} // namespace fakeorvalis

#pragma GCC visibility pop
