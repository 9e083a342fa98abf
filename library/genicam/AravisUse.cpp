// SPDX-License-Identifier: MIT
// Shuts Aravis down after its last use.
#include "library/genicam/AravisUse.h"

#include <arv.h>

namespace orvalis {

std::shared_ptr<AravisUse> AravisUse::instance()
{
    static const std::shared_ptr<AravisUse> use = std::make_shared<AravisUse>();
    return use;
}

AravisUse::~AravisUse() { arv_shutdown(); }

} // namespace orvalis
