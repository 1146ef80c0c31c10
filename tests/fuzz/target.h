// What the fuzz targets share. A target takes bytes, has the program's own code read them, and says
// what must be true of the answer whatever the bytes were. Two programs run a target: libFuzzer,
// which makes up bytes (scripts/fuzz), and replay.cpp, which takes files.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <source_location>
#include <string_view>

/// By the name and the form that libFuzzer looks for. Always answers 0: the input may be kept.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

inline std::string_view Text(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Ends the process where a property does not hold, which both programs take for a failure.
inline void Require(bool holds,
                    const std::source_location& where = std::source_location::current()) {
  if (holds) return;
  std::fprintf(stderr, "%s:%u: the property does not hold\n", where.file_name(), where.line());
  std::abort();
}

/// Takes what stands before the first `end`, and that end too; everything where there is none.
inline std::string_view TakeUpTo(std::string_view& text, std::string_view end) {
  const std::size_t at = text.find(end);
  const std::string_view taken = text.substr(0, at);
  text.remove_prefix(at == std::string_view::npos ? text.size() : at + end.size());
  return taken;
}

inline std::string_view TakeLine(std::string_view& text) { return TakeUpTo(text, "\n"); }

}  // namespace fuzz
