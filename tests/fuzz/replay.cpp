// replay FOLDER...: runs a fuzz target over every file of the folders. Needs no libFuzzer, and so
// any compiler; a folder without a file has not been tried and fails.
//
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/fuzz/target.h"
#include "tests/support/temporary_folder.h"

namespace {

std::vector<std::filesystem::path> FilesIn(const char* folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    files.push_back(entry.path());
  }
  std::ranges::sort(files);
  return files;
}

/// Said before it is tried: the last one said is the one that failed.
void Try(const std::filesystem::path& file) {
  std::printf("%s\n", file.c_str());
  std::fflush(stdout);
  const std::string bytes = support::ReadBytes(file);
  // Of exactly that size, so that the sanitizer sees a look behind its end.
  const std::vector<std::uint8_t> data(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(data.data(), data.size());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return EXIT_FAILURE;
  for (int i = 1; i < argc; ++i) {
    const auto files = FilesIn(argv[i]);
    if (files.empty()) return EXIT_FAILURE;
    std::ranges::for_each(files, Try);
  }
  return EXIT_SUCCESS;
}
