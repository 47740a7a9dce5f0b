// Memory: the default manager, and how it is replaced.
// SPDX-License-Identifier: MIT
#include "node/memory.h"

#include "platform/messages.h"

#include <cstdlib>

namespace cfcore {
namespace {

void *cfmalloc(size_t size) {
  void *block = std::malloc(size);
  if (!block)
    fatal_sink()("out of memory");
  return block;
}

} // namespace

struct ::cfmmgr _cfmmgr = {cfmalloc, std::free};

} // namespace cfcore

struct cfmmgr cfmmgr(const struct cfmmgr *mmgr) {
  const struct cfmmgr former = cfcore::_cfmmgr;
  if (mmgr)
    cfcore::_cfmmgr = *mmgr;
  return former;
}
