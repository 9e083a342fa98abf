// SPDX-License-Identifier: MIT
// The functions through which tests control the recording camera library.
#include "tests/fakelibrary/FakeOrvalis.h"

#include "tests/fakelibrary/FakeDelivery.h"
#include "tests/fakelibrary/FakeLibrary.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace fakeorvalis {

namespace {

thread_local bool insideCallback = false;

std::string functionOf(const std::string &call) { return call.substr(0, call.find('(')); }

std::vector<std::string> callsWhere(const std::vector<std::string> &functions, bool listed)
{
    const auto all = calls();
    std::vector<std::string> kept;
    std::copy_if(all.begin(), all.end(), std::back_inserter(kept), [&](const std::string &call) {
        return listed ==
               (std::find(functions.begin(), functions.end(), functionOf(call)) != functions.end());
    });
    return kept;
}

/// Runs the callback on the current thread. Returns false if no acquisition runs.
bool runCallback(OImageFrame *frame)
{
    Library &fake = library();
    const std::lock_guard oneAtATime(fake.deliveryMutex);
    OFrameCallback receiver = nullptr;
    {
        const std::lock_guard lock(fake.mutex);
        receiver = fake.callback;
        if (!receiver)
            return false;
        ++fake.deliveries;
    }
    receiver(frame);
    {
        const std::lock_guard lock(fake.mutex);
        --fake.deliveries;
    }
    fake.quiet.notify_all();
    return true;
}

} // namespace

bool isInsideCallback() { return insideCallback; }

void reset()
{
    Library &fake = library();
    std::unique_lock lock(fake.mutex);
    fake.stop(lock, fake.streaming);
    fake.state = defaultState();
    fake.calls.clear();
    fake.failures.clear();
    fake.hooks.clear();
    fake.everythingFails = false;
    fake.hostile.reset();
    fake.hostileOnly.clear();
    fake.handles.clear();
    fake.grabRaw.clear();
    fake.grabRgb.clear();
}

void withState(const std::function<void(State &)> &change)
{
    const std::lock_guard lock(library().mutex);
    change(library().state);
}

std::vector<std::string> calls()
{
    const std::lock_guard lock(library().mutex);
    std::vector<std::string> texts;
    for (const Recorded &call : library().calls)
        texts.push_back(call.text);
    return texts;
}

std::vector<std::string> callsHere()
{
    const std::lock_guard lock(library().mutex);
    std::vector<std::string> texts;
    for (const Recorded &call : library().calls) {
        if (call.caller == std::this_thread::get_id())
            texts.push_back(call.text);
    }
    return texts;
}

std::vector<std::string> callsExcept(const std::vector<std::string> &ignored)
{
    return callsWhere(ignored, false);
}

std::vector<std::string> callsOf(const std::vector<std::string> &functions)
{
    return callsWhere(functions, true);
}

void clearCalls()
{
    const std::lock_guard lock(library().mutex);
    library().calls.clear();
}

void fail(const std::string &function, std::int32_t code)
{
    const std::lock_guard lock(library().mutex);
    if (code == ORVALIS_OK)
        library().failures.erase(function);
    else
        library().failures[function] = code;
}

void failAll(bool on)
{
    const std::lock_guard lock(library().mutex);
    library().everythingFails = on;
}

void onCall(const std::string &function, std::function<void()> hook)
{
    const std::lock_guard lock(library().mutex);
    library().hooks[function] = std::move(hook);
}

void hostile(std::uint32_t seed, const std::string &only)
{
    const std::lock_guard lock(library().mutex);
    library().hostileOnly = only;
    if (seed == 0)
        library().hostile.reset();
    else
        library().hostile.emplace(seed);
}

void hostileAnswers(std::vector<std::uint8_t> answers)
{
    const std::lock_guard lock(library().mutex);
    library().hostileOnly.clear();
    library().hostile.emplace(viewertest::ByteTape(std::move(answers)));
}

OFrameCallback callback()
{
    const std::lock_guard lock(library().mutex);
    return library().callback;
}

std::uint64_t deliverEach(const std::function<OImageFrame *()> &next)
{
    std::uint64_t delivered = 0;
    std::thread([&] {
        insideCallback = true;
        OImageFrame *frame = next();
        for (; frame != nullptr && runCallback(frame); frame = next())
            ++delivered;
    }).join();
    return delivered;
}

bool deliver(OImageFrame &frame)
{
    OImageFrame *left = &frame;
    return deliverEach([&left] { return std::exchange(left, nullptr); }) == 1;
}

void setGrabPixels(std::vector<std::uint8_t> raw, std::vector<std::uint8_t> rgb)
{
    const std::lock_guard lock(library().mutex);
    library().grabRaw = std::move(raw);
    library().grabRgb = std::move(rgb);
}

std::vector<std::string> openHandles()
{
    const std::lock_guard lock(library().mutex);
    std::vector<std::string> names;
    for (const Handle &handle : library().handles) {
        if (handle.open)
            names.push_back(library().nameOf(handle.value));
    }
    return names;
}

} // namespace fakeorvalis
