// replay: lets a target run over files and directories of files where there is no fuzzer to do it.
// SPDX-License-Identifier: MIT
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

size_t replay(const std::filesystem::path &path) {
  size_t files = 0;
  if (is_directory(path)) {
    for (const auto &entry : std::filesystem::directory_iterator(path))
      files += replay(entry.path());
    return files;
  }
  std::ifstream file(path, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  std::fprintf(stderr, "%s\n", path.c_str());
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
  return 1;
}

} // namespace

int main(int argc, char **argv) {
  size_t files = 0;
  for (int i = 1; i < argc; ++i)
    files += replay(argv[i]);
  std::printf("%zu files\n", files);
  return files == 0; // a corpus that is not there proves nothing
}
