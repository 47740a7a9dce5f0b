// sample: prints a sample file of a schema; with --table, a table for a manual.
// SPDX-License-Identifier: MIT
#include "edge.h"

#include <iostream>

int main(int argc, char **) { std::cout << (argc > 1 ? schema.markdown() : schema.sample()); }
