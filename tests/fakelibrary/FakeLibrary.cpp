// SPDX-License-Identifier: MIT
// Internals of the recording camera library: its only instance, and the helper for entry points.
#include "tests/fakelibrary/FakeLibrary.h"

#include "tests/fakelibrary/FakeDelivery.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>

namespace fakeorvalis {

Library &library()
{
    static Library instance;
    return instance;
}

Library::Library()
{
    if (const char *path = std::getenv("FAKE_ORVALIS_TRACE")) // NOLINT(concurrency-mt-unsafe)
        trace.open(path, std::ios::app);
}

void Library::record(const std::string &call)
{
    calls.push_back({call, std::this_thread::get_id()});
    if (trace.is_open())
        trace << call << std::endl;
}

std::string Library::nameOf(OCameraHandle handle)
{
    if (!handle)
        return "null";
    const Handle *known = find(handle);
    return known ? "h" + std::to_string(known - handles.data() + 1) : "h?";
}

Handle *Library::find(OCameraHandle handle)
{
    const auto found = std::find_if(handles.begin(), handles.end(),
                                    [=](const Handle &one) { return one.value == handle; });
    return found == handles.end() ? nullptr : &*found;
}

std::int32_t Library::failureOf(const std::string &function) const
{
    const auto found = failures.find(function);
    if (found != failures.end())
        return found->second;
    const bool spared = function == "OrvalisInit" || function == "OrvalisUninit";
    return everythingFails && !spared ? ORVALIS_ERROR_DEVICE : ORVALIS_OK;
}

void Library::stop(std::unique_lock<std::mutex> &lock, OCameraHandle handle)
{
    if (streaming != handle)
        return;
    streaming = nullptr;
    callback = nullptr;
    if (!isInsideCallback())
        quiet.wait(lock, [this] { return deliveries == 0; });
}

void putText(char *buffer, std::size_t size, const std::string &text)
{
    const std::size_t length = std::min(size - 1, text.size());
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
}

namespace {

template <typename Real> std::string shortestForm(Real value)
{
    char buffer[64];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return {buffer, end};
}

} // namespace

std::string shortest(double value) { return shortestForm(value); }

std::string shortest(float value) { return shortestForm(value); }

Call &Call::argument(const std::string &text)
{
    m_arguments += (m_arguments.empty() ? "" : ", ") + text;
    return *this;
}

Call &Call::output(const void *target, std::function<void(HostileSource &)> fill)
{
    m_nullPointer = m_nullPointer || !target;
    m_outputs.push_back(std::move(fill));
    return *this;
}

Call &Call::handle(OCameraHandle handle)
{
    m_handle = handle;
    m_hasHandle = true;
    const std::lock_guard lock(library().mutex);
    return argument(library().nameOf(handle));
}

Call &Call::in(const char *text)
{
    m_nullPointer = m_nullPointer || !text;
    return argument(text ? '"' + std::string(text) + '"' : std::string("null"));
}

Call &Call::in(const OSizeInfo &size)
{
    std::string text;
    for (const std::int32_t value :
         {size.offsetX, size.offsetY, size.width, size.height, size.maxWidth, size.maxHeight})
        text += (text.empty() ? "{" : ", ") + std::to_string(value);
    return argument(text + "}");
}

void Call::recordAndRunHook()
{
    std::function<void()> hook;
    {
        const std::lock_guard lock(library().mutex);
        library().record(m_function + "(" + m_arguments + ")");
        const auto found = library().hooks.find(m_function);
        if (found != library().hooks.end())
            hook = found->second;
    }
    if (hook)
        hook();
}

std::int32_t Call::refusal(Library &fake) const
{
    if (const std::int32_t failure = fake.failureOf(m_function))
        return failure;
    if (m_hasHandle) {
        const Handle *known = fake.find(m_handle);
        if (!known || !known->open)
            return ORVALIS_ERROR_BAD_HANDLE;
    }
    return m_nullPointer ? ORVALIS_ERROR_BAD_ARGUMENT : ORVALIS_OK;
}

std::int32_t Call::answer(const std::function<std::int32_t(State &)> &body)
{
    return answerWith(
        [&body](Library &fake, std::unique_lock<std::mutex> &) { return body(fake.state); });
}

std::int32_t
Call::answerWith(const std::function<std::int32_t(Library &, std::unique_lock<std::mutex> &)> &body)
{
    recordAndRunHook();
    Library &fake = library();
    std::unique_lock lock(fake.mutex);
    if (const std::int32_t code = refusal(fake))
        return code;
    if (!fake.isHostile(m_function) || m_honest)
        return body(fake, lock);
    for (const auto &fill : m_outputs)
        fill(*fake.hostile);
    return fake.hostile->result();
}

} // namespace fakeorvalis
