// memory: reads a built-in text, changes it, and prints it into a text.
// SPDX-License-Identifier: MIT
#include "memory.h"

#include <cstdio>

int main() {
  const tree top = fromtext("# where we listen\nport=80\nhost alpha {\n}\n", "built in");
  if (!top)
    return 1;
  cfcatsetpar(top.get(), cfnewpar("port", "8080", -1));
  cfaddpar(cfcatgetgrp(top.get(), "host", "alpha"), cfnewpar("addr", "192.0.2.10", -1));
  const std::optional<std::string> text = totext(top.get());
  if (!text)
    return 1;
  std::fwrite(text->data(), 1, text->size(), stdout);

  const tree nothing = fromtext("port = 80\n}\n", "with a fault"); // told on standard error
  return nothing ? 1 : 0;
}
