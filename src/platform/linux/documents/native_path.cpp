// Translation of paths. Looks at folders, changes nothing.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/documents/native_path.h"

#include <glib.h>
#include <glib/gstdio.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "core/text.h"
#include "platform/errors.h"
#include "platform/linux/g_ref.h"

namespace platform {
namespace {

std::string Folded(std::string_view text) {
  if (text.empty()) return "";  // whose pointer may be null
  if (!g_utf8_validate_len(text.data(), text.size(), nullptr)) return core::UpperCase(text);
  return GMemory<char>(g_utf8_casefold(text.data(), static_cast<gssize>(text.size()))).get();
}

bool Exists(const std::string& path) {
  // Of the link itself: a link that leads nowhere has a name too.
  GStatBuf status;
  return g_lstat(path.c_str(), &status) == 0;
}

struct CloseFolder {
  void operator()(GDir* folder) const { g_dir_close(folder); }
};

std::optional<std::string> MatchIn(const std::string& folder, const std::string& name) {
  const std::unique_ptr<GDir, CloseFolder> listing(
      g_dir_open(folder.empty() ? "." : folder.c_str(), 0, nullptr));
  if (!listing) return std::nullopt;
  std::optional<std::string> first;
  while (const char* entry = g_dir_read_name(listing.get())) {
    if ((!first || entry < *first) && SameIgnoringCase(entry, name)) first = entry;
  }
  return first;
}

std::string MatchComponents(const std::string& path) {
  std::string found;
  const std::vector<std::string> components = core::Split(path, "/");
  for (std::size_t i = 0; i < components.size(); ++i) {
    if (i > 0) found += '/';
    const std::string& name = components.at(i);
    const bool asWritten = name.empty() || Exists(found + name);
    found += asWritten ? name : MatchIn(found, name).value_or(name);
  }
  return found;
}

}  // namespace

bool SameIgnoringCase(std::string_view left, std::string_view right) {
  return left == right || Folded(left) == Folded(right);
}

std::string NativePath(const std::string& corePath) {
  if (corePath.find('\0') != std::string::npos) {
    throw Unsupported("a path holds a NUL");
  }
  std::string path = corePath;
  std::replace(path.begin(), path.end(), '\\', '/');
  return Exists(path) ? path : MatchComponents(path);
}

std::string CorePath(const std::string& nativePath) {
  std::string path = nativePath;
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

}  // namespace platform
