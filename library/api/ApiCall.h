// SPDX-License-Identifier: MIT
// Helpers for entry points: resolve the handle, catch exceptions.
#pragma once

#include "library/core/Library.h"
#include "library/core/Records.h"

#include <cstring>
#include <new>
#include <string>
#include <string_view>

namespace orvalis::api {

/// Runs `body` and converts exceptions to result codes.
template <class Body> std::int32_t guarded(Body body) noexcept
{
    try {
        return body();
    } catch (const std::bad_alloc &) {
        return ORVALIS_ERROR_OUT_OF_MEMORY;
    } catch (...) {
        return ORVALIS_ERROR_DEVICE;
    }
}

/// Runs `body(camera)` for a call that does not change the camera. `complete` is false if the
/// caller passed a null pointer.
template <class Body> std::int32_t reading(OCameraHandle handle, bool complete, Body body) noexcept
{
    return guarded([&]() -> OResult {
        Library &library = Library::instance();
        if (!library.initialized())
            return ORVALIS_ERROR_NOT_INITIALIZED;
        const std::shared_ptr<Camera> camera = library.find(handle);
        if (!camera)
            return ORVALIS_ERROR_BAD_HANDLE;
        if (!complete)
            return ORVALIS_ERROR_BAD_ARGUMENT;
        if (camera->lost())
            return ORVALIS_ERROR_CONNECTION_LOST;
        const OResult result = body(*camera);
        if (result == ORVALIS_ERROR_CONNECTION_LOST)
            camera->markLost();
        return result;
    });
}

/// Marks a change of the camera: lists read before or during it may be out of date.
class ChangeScope {
public:
    explicit ChangeScope(Camera &camera) : camera_(camera) { camera_.lists().changed(); }
    ~ChangeScope() { camera_.lists().changed(); }
    ChangeScope(const ChangeScope &) = delete;
    ChangeScope &operator=(const ChangeScope &) = delete;

private:
    Camera &camera_;
};

/// Likewise for a call that changes the camera: cancels a running idle grab.
template <class Body> std::int32_t writing(OCameraHandle handle, bool complete, Body body) noexcept
{
    return reading(
        handle, complete,
        [&](Camera &camera) {
            const ChangeScope change(camera);
            const Acquisition::WriteScope scope(camera.acquisition());
            return body(camera);
        });
}

/// The caller's text, at most ORVALIS_TEXT_SIZE bytes of it: its NUL may be missing.
inline std::string_view boundedText(const char *text)
{
    return {text, strnlen(text, ORVALIS_TEXT_SIZE)};
}

/// Writes a name to a buffer of ORVALIS_NAME_SIZE bytes.
inline void copyName(char *out, std::string_view name) { copyText(out, ORVALIS_NAME_SIZE, name); }

inline std::int32_t countOf(OCameraHandle handle, Choice choice, std::int32_t *count) noexcept
{
    return reading(
        handle, count,
        [&](Camera &camera) {
            return camera.lists().count(choice, camera.acquisition().streaming(), *count);
        });
}

inline std::int32_t nameAt(OCameraHandle handle, Choice choice, std::int32_t index,
                           char *name) noexcept
{
    return reading(
        handle, name,
        [&](Camera &camera) {
            std::string found;
            const OResult result =
                camera.lists().name(choice, camera.acquisition().streaming(), index, found);
            if (result == ORVALIS_OK)
                copyName(name, found);
            return result;
        });
}

inline std::int32_t presentName(OCameraHandle handle, Choice choice, char *name) noexcept
{
    return reading(
        handle, name,
        [&](Camera &camera) {
            std::string present;
            const OResult result = camera.features().get(choice, present);
            if (result == ORVALIS_OK)
                copyName(name, present);
            return result;
        });
}

inline std::int32_t choose(OCameraHandle handle, Choice choice, const char *name) noexcept
{
    return writing(
        handle, name,
        [&](Camera &camera) { return camera.features().set(choice, boundedText(name)); });
}

/// Reads a part of a number and passes it to `use`.
template <class Use>
std::int32_t readNumber(OCameraHandle handle, Number number, NumberPart part, bool complete,
                        Use use) noexcept
{
    return reading(
        handle, complete,
        [&](Camera &camera) {
            NumberValue value;
            const OResult result = camera.features().get(number, part, value);
            if (result == ORVALIS_OK)
                use(value);
            return result;
        });
}

inline std::int32_t getInteger(OCameraHandle handle, Number number, std::int32_t *value) noexcept
{
    return readNumber(
        handle, number, NumberPart::Value, value,
        [&](const NumberValue &now) { *value = toInt32(now.value); });
}

inline std::int32_t getBounds(OCameraHandle handle, Number number, std::int32_t *minimum,
                              std::int32_t *maximum) noexcept
{
    return readNumber(
        handle, number, NumberPart::Bounds, minimum && maximum,
        [&](const NumberValue &now) {
            *minimum = toInt32(now.minimum);
            *maximum = toInt32(now.maximum);
        });
}

inline std::int32_t getFloat(OCameraHandle handle, Number number, float *value) noexcept
{
    return readNumber(
        handle, number, NumberPart::Value, value,
        [&](const NumberValue &now) { *value = static_cast<float>(now.value); });
}

inline std::int32_t getBounds(OCameraHandle handle, Number number, float *minimum,
                              float *maximum) noexcept
{
    return readNumber(
        handle, number, NumberPart::Bounds, minimum && maximum,
        [&](const NumberValue &now) {
            *minimum = static_cast<float>(now.minimum);
            *maximum = static_cast<float>(now.maximum);
        });
}

inline std::int32_t setNumber(OCameraHandle handle, Number number, double value,
                              bool automatic = false) noexcept
{
    return writing(
        handle, true,
        [&](Camera &camera) { return camera.features().set(number, value, automatic); });
}

inline std::int32_t getSwitch(OCameraHandle handle, Switch which, bool *on) noexcept
{
    return reading(
        handle, on, [&](Camera &camera) { return camera.features().get(which, *on); });
}

inline std::int32_t setSwitch(OCameraHandle handle, Switch which, bool on) noexcept
{
    return writing(
        handle, true, [&](Camera &camera) { return camera.features().set(which, on); });
}

} // namespace orvalis::api
