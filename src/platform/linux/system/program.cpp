// The running program: its file, its version information, its arguments. Which instance is the
// first, and finding its window, are instance.cpp's work.
//
// SPDX-License-Identifier: MIT
#include "platform/system/program.h"

#include <glib.h>

#include <string_view>

#include "core/build_settings.h"
#include "platform/linux/documents/file_access.h"
#include "platform/linux/documents/native_path.h"
#include "platform/linux/g_ref.h"
#include "platform/linux/system/arguments.h"

namespace platform {
namespace {

std::string& JoinedArguments() {
  static std::string arguments;
  return arguments;
}

// What the kernel adds to the name of a program file that was replaced while it runs.
constexpr std::string_view kReplacedMark = " (deleted)";

std::string ProgramFile() {
  GErrorCheck error;
  const GMemory<char> link(g_file_read_link("/proc/self/exe", error.Out()));
  error.Check();
  std::string file = link.get();
  if (file.ends_with(kReplacedMark) && !IsRegularFile(file)) {
    file.resize(file.size() - kReplacedMark.size());
  }
  return file;
}

}  // namespace

void SetArguments(int argc, char** argv) {
  std::string& joined = JoinedArguments();
  joined.clear();
  for (int i = 1; i < argc; ++i) {
    if (i > 1) joined += ' ';
    joined += GMemory<char>(g_filename_display_name(argv[i])).get();
  }
}

std::string ProgramFolder() {
  const GMemory<char> folder(g_path_get_dirname(ProgramFile().c_str()));
  return CorePath(folder.get());
}

std::string ProgramName() {
  const GMemory<char> base(g_path_get_basename(ProgramFile().c_str()));
  const std::string name = base.get();
  return name.substr(0, name.rfind('.'));
}

std::string CompanyName() { return std::string(core::kCompanyName); }

std::string ProductName() { return std::string(core::kProductName); }

int MajorVersion() { return core::kMajorVersion; }

std::string CommandLineArguments() {
  const std::string& joined = JoinedArguments();
  const std::size_t first = joined.find_first_not_of(" \t");
  return first == std::string::npos ? std::string() : joined.substr(first);
}

}  // namespace platform
