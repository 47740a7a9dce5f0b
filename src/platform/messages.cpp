// Messages: the replacements of each thread.
// SPDX-License-Identifier: MIT
#include "platform/messages.h"

namespace cfcore {

constinit thread_local struct ::cfmsgs thread_messages = {};

} // namespace cfcore

struct cfmsgs cfmsgs(const struct cfmsgs *msgs) {
  const struct cfmsgs former = cfcore::thread_messages;
  if (msgs)
    cfcore::thread_messages = *msgs;
  return former;
}
