// memory: a tree read from a text in memory, and printed into one.
// SPDX-License-Identifier: MIT
#pragma once

#include "tree.h"

#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

//! [memory]
/// Reads a text; `name` stands for a file name in messages.
inline tree fromtext(std::string_view text, const char *name) {
  // The stream is for reading: it leaves the text as it is.
  const stream fd(fmemopen(const_cast<char *>(text.data()), text.size(), "r"));
  return fd ? readstream(fd.get(), name) : nullptr;
}

struct freeing {
  void operator()(char *block) const { std::free(block); }
};

/// Prints into a text; nothing comes back if the memory for it ran out.
inline std::optional<std::string> totext(cfgroup *top) {
  char *text = nullptr;
  size_t size = 0;
  stream fd(open_memstream(&text, &size));
  if (!fd)
    return std::nullopt;
  cfprinter prn{};
  const bool printed = cfprint(fd.get(), &prn, top, "memory");
  const bool whole = std::fclose(fd.release()) == 0; // text and size are good only now
  const std::unique_ptr<char, freeing> block(text);
  if (!printed || !whole)
    return std::nullopt;
  return std::string(text, size);
}
//! [memory]
