// SPDX-License-Identifier: MIT
// The back ends in use, as one bus.
#include "library/core/Bus.h"

#include "library/core/Debug.h"

#include <algorithm>
#include <exception>

namespace orvalis {

namespace {

constexpr std::string_view kSimulated = "simulated";

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

void addBackend(Backends &backends, std::string_view name)
{
    if (name == kSimulated)
        backends.push_back(makeSimulatedBackend());
#ifdef ORVALIS_WITH_GENICAM
    else if (name == "genicam" || name == "fake")
        backends.push_back(makeGenicamBackend(name == "fake"));
#endif
    else if (!name.empty() && name != "none")
        debugPrint("no back end named \"%.*s\"", static_cast<int>(name.size()), name.data());
}

} // namespace

Backends makeBackends(std::string_view list)
{
    Backends backends;
    while (!list.empty()) {
        const std::size_t comma = list.find(',');
        addBackend(backends, trimmed(list.substr(0, comma)));
        list.remove_prefix(comma == std::string_view::npos ? list.size() : comma + 1);
    }
    std::stable_partition(backends.begin(), backends.end(),
                          [](const auto &backend) { return backend->name() != kSimulated; });
    return backends;
}

Bus::Bus(Backends backends)
{
    for (auto &backend : backends) {
        entries_.push_back(std::make_unique<Entry>());
        entries_.back()->backend = std::move(backend);
    }
}

bool Bus::discoversAtOnce(std::size_t index) const
{
    return entries_[index]->backend->discoversAtOnce();
}

bool Bus::discover(std::size_t index, std::vector<DeviceDescription> &found)
{
    Entry &entry = *entries_[index];
    try {
        const std::lock_guard lock(entry.discovering);
        found = entry.backend->discover();
        return true;
    } catch (const std::exception &problem) {
        debugPrint("%s: %s", std::string(entry.backend->name()).c_str(), problem.what());
        return false;
    }
}

OResult Bus::open(const std::string &id, std::unique_ptr<Device> &device)
{
    for (const auto &entry : entries_) {
        const OResult result = entry->backend->open(id, device);
        if (result != ORVALIS_ERROR_NOT_FOUND) {
            debugPrint("open %s on %s: %d", id.c_str(), std::string(entry->backend->name()).c_str(),
                       result);
            return result;
        }
    }
    return ORVALIS_ERROR_NOT_FOUND;
}

} // namespace orvalis
