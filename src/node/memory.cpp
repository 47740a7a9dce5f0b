// Memory: the default manager and its exchange.
// SPDX-License-Identifier: MIT
#include "node/memory.h"

#include <cstdlib>

namespace cf {
namespace {

void *cfmalloc(size_t size) {
  void *block = std::malloc(size);
  if (!block)
    fail("out of memory");
  return block;
}

} // namespace

struct ::cfmmgr _cfmmgr = {cfmalloc, std::free};

} // namespace cf

struct cfmmgr cfmmgr(const struct cfmmgr *mmgr) {
  const struct cfmmgr former = cf::_cfmmgr;
  if (mmgr)
    cf::_cfmmgr = *mmgr;
  return former;
}
