// SPDX-License-Identifier: MIT
// Cached lists of names, which programs read entry by entry.
#include "library/core/ChoiceLists.h"

namespace orvalis {

OResult ChoiceLists::read(Choice choice, bool streaming, List &list)
{
    List fresh{revision_, streaming, {}};
    if (const OResult result = features_.list(choice, fresh.names); result != ORVALIS_OK)
        return result;
    list = fresh;
    const std::lock_guard lock(mutex_);
    lists_[choice] = std::move(fresh);
    return ORVALIS_OK;
}

OResult ChoiceLists::count(Choice choice, bool streaming, std::int32_t &count)
{
    List list;
    const OResult result = read(choice, streaming, list);
    if (result == ORVALIS_OK)
        count = static_cast<std::int32_t>(list.names.size());
    return result;
}

OResult ChoiceLists::name(Choice choice, bool streaming, std::int32_t index, std::string &name)
{
    const auto take = [&](const List &list) {
        if (index < 0 || static_cast<std::size_t>(index) >= list.names.size())
            return ORVALIS_ERROR_NOT_FOUND;
        name = list.names[static_cast<std::size_t>(index)];
        return ORVALIS_OK;
    };
    {
        const std::lock_guard lock(mutex_);
        const auto kept = lists_.find(choice);
        if (kept != lists_.end() && kept->second.revision == revision_ &&
            kept->second.streaming == streaming)
            return take(kept->second);
    }
    List list;
    const OResult result = read(choice, streaming, list);
    return result == ORVALIS_OK ? take(list) : result;
}

} // namespace orvalis
