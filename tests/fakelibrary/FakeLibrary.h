// SPDX-License-Identifier: MIT
// Internals of the recording camera library: its only instance, and the helper for entry points.
#pragma once

#include "tests/fakelibrary/FakeHostile.h"
#include "tests/fakelibrary/FakeOrvalis.h"

#include <condition_variable>
#include <fstream>
#include <mutex>
#include <optional>
#include <set>
#include <string_view>
#include <thread>
#include <utility>

namespace fakeorvalis {

/// A handle issued since the last reset.
struct Handle {
    OCameraHandle value = nullptr;
    std::string cameraId;
    bool open = false;
};

/// A call in the notation of calls(), and its thread.
struct Recorded {
    std::string text;
    std::thread::id caller;
};

/// Data of the library. `mutex` guards every member except itself and `deliveryMutex`.
struct Library {
    std::mutex mutex;
    std::condition_variable quiet; ///< notified when a delivery ends
    std::mutex deliveryMutex;      ///< held around a callback, so that callbacks never overlap

    State state = defaultState();
    std::vector<Recorded> calls;
    std::map<std::string, std::int32_t> failures;
    std::map<std::string, std::function<void()>> hooks;
    bool everythingFails = false;
    std::optional<HostileSource> hostile;
    std::string hostileOnly; ///< the one function that is hostile; empty for all
    std::vector<Handle> handles;
    OCameraHandle streaming = nullptr;
    OFrameCallback callback = nullptr;
    int deliveries = 0; ///< callbacks that are running
    std::vector<std::uint8_t> grabRaw;
    std::vector<std::uint8_t> grabRgb;
    std::ofstream
        trace; ///< copy of the calls for tests of the executable; FAKE_ORVALIS_TRACE names the file

    Library();

    void record(const std::string &call);
    std::string nameOf(OCameraHandle handle);
    Handle *find(OCameraHandle handle);
    /// The code that `function` must return instead of an answer; 0 for none.
    std::int32_t failureOf(const std::string &function) const;
    bool isHostile(const std::string &function) const
    {
        return hostile && (hostileOnly.empty() || hostileOnly == function);
    }
    /// Ends the acquisition of `handle` and waits for a running callback, unless called from it.
    void stop(std::unique_lock<std::mutex> &lock, OCameraHandle handle);
};

Library &library();

/// Writes `text` to a buffer of the caller, truncated to `size` bytes including its NUL.
void putText(char *buffer, std::size_t size, const std::string &text);

/// The shortest text that reads back as the same number.
std::string shortest(double value);
std::string shortest(float value);

/// One call of an entry point: records the arguments in order, then answers.
class Call {
public:
    explicit Call(const char *function) : m_function(function) {}

    Call &handle(OCameraHandle handle);
    Call &in(const char *text);
    Call &in(bool value) { return argument(value ? "true" : "false"); }
    Call &in(float value) { return argument(shortest(value)); }
    Call &in(double value) { return argument(shortest(value)); }
    Call &in(std::int32_t value) { return argument(std::to_string(value)); }
    Call &in(std::uint32_t value) { return argument(std::to_string(value)); }
    Call &in(const OSizeInfo &size);
    Call &in(OFrameCallback callback) { return argument(callback ? "callback" : "null"); }

    template <typename Value> Call &out(Value *value)
    {
        return output(value, [value](HostileSource &source) { source.fill(*value); });
    }
    Call &textOut(char *buffer, std::size_t size)
    {
        return output(buffer, [=](HostileSource &source) { source.text({buffer, size}); });
    }
    /// Marks a call without outputs that keeps its effect in hostile mode, such as start and stop.
    Call &honest()
    {
        m_honest = true;
        return *this;
    }

    /// Records the call, runs the hook, and unless the call must fail, calls `body` with the lock
    /// held.
    std::int32_t answer(const std::function<std::int32_t(State &)> &body);
    /// The same with the whole library, for calls that change handles or wait.
    std::int32_t
    answerWith(const std::function<std::int32_t(Library &, std::unique_lock<std::mutex> &)> &body);

private:
    Call &argument(const std::string &text);
    Call &output(const void *target, std::function<void(HostileSource &)> fill);
    void recordAndRunHook();
    std::int32_t refusal(Library &fake) const;

    std::string m_function;
    std::string m_arguments;
    std::vector<std::function<void(HostileSource &)>> m_outputs;
    OCameraHandle m_handle = nullptr;
    bool m_hasHandle = false;
    bool m_nullPointer = false;
    bool m_honest = false;
};

} // namespace fakeorvalis
