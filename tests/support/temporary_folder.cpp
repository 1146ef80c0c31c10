// See temporary_folder.h. Standard library only, so that it serves tests of every system.
//
// SPDX-License-Identifier: MIT
#include "tests/support/temporary_folder.h"

#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "core/attempt.h"
#include "core/text.h"

namespace support {

std::string CorePath(const std::filesystem::path& path) {
  const auto utf8 = path.u8string();
  return core::ReplaceAll(std::string(utf8.begin(), utf8.end()), "/", "\\");
}

std::string ReadBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  return {std::istreambuf_iterator<char>(file), {}};
}

namespace {

/// The path as it is written. Windows drops blanks at the end of a path, and so of a folder's name
/// while the folder is made ("Parvix "), unless the path begins with a mark.
std::filesystem::path Exactly(const std::filesystem::path& path) {
  constexpr bool kIsWindows = std::filesystem::path::preferred_separator == '\\';
  if (!kIsWindows) return path;
  std::filesystem::path exact(R"(\\?\)");
  exact += std::filesystem::absolute(path).make_preferred();
  return exact;
}

void MakeFolders(const std::filesystem::path& folder) {
  if (folder.has_relative_path()) MakeFolders(folder.parent_path());
  std::error_code existsAlready;
  std::filesystem::create_directory(Exactly(folder), existsAlready);
}

}  // namespace

void WriteBytes(const std::filesystem::path& path, std::string_view bytes) {
  MakeFolders(path.parent_path());
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  do {
    mPath = std::filesystem::temp_directory_path() / ("velor-test-" + std::to_string(random()));
  } while (!std::filesystem::create_directory(mPath));
}

namespace {

/// Folders whose names end in a blank get another name, by which Windows finds them when they are
/// to be deleted.
void RenameFoldersThatEndInABlank(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> found;
  for (auto entry = std::filesystem::recursive_directory_iterator(folder);
       entry != std::filesystem::recursive_directory_iterator(); ++entry) {
    if (!entry->path().filename().string().ends_with(' ')) continue;
    entry.disable_recursion_pending();
    found.push_back(entry->path());
  }
  for (std::size_t i = 0; i < found.size(); ++i) {
    const auto name = "ended-in-a-blank-" + std::to_string(i);
    std::filesystem::rename(Exactly(found.at(i)), Exactly(folder / name));
  }
}

}  // namespace

TemporaryFolder::~TemporaryFolder() {
  core::Attempt([&] { RenameFoldersThatEndInABlank(mPath); });
  std::error_code ignored;
  std::filesystem::remove_all(mPath, ignored);
}

}  // namespace support
