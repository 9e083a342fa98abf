// SPDX-License-Identifier: MIT
// Aravis is shut down when nothing uses it any more.
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
