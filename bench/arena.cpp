// Arena: memory from large blocks, given back all at once.
// SPDX-License-Identifier: MIT
#include "arena.h"

#include <memory>
#include <vector>

namespace bench::arena {
namespace {

constexpr std::size_t block_size = 1 << 20;
constexpr std::size_t alignment = alignof(std::max_align_t);

std::vector<std::unique_ptr<char[]>> blocks;
std::size_t used_blocks = 0;
char *at = nullptr;
std::size_t left = 0;

void nextblock() {
  if (used_blocks == blocks.size())
    blocks.push_back(std::make_unique<char[]>(block_size));
  at = blocks[used_blocks++].get();
  left = block_size;
}

} // namespace

void *take(std::size_t size) {
  size = (size + alignment - 1) & ~(alignment - 1);
  if (size > left)
    nextblock();
  void *block = at;
  at += size;
  left -= size;
  return block;
}

void reset() {
  used_blocks = 0;
  left = 0;
}

} // namespace bench::arena
