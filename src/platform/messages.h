// Messages: the functions that receive them, those of the calling thread or of the process.
// SPDX-License-Identifier: MIT
#pragma once

#include "cf.h"

namespace cfcore {

/// The replacements of the calling thread.
extern constinit thread_local struct ::cfmsgs thread_messages;

// The functions that receive an error, a warning and a fatal fault.
inline auto error_sink() { return thread_messages.emsg ? thread_messages.emsg : emsg; }
inline auto warning_sink() { return thread_messages.wmsg ? thread_messages.wmsg : wmsg; }
inline auto fatal_sink() { return thread_messages.fail ? thread_messages.fail : fail; }

} // namespace cfcore
