// The syntax of Wine's registry files, read in one pass. Standard library only. The visitor decides
// what the keys mean.
//
//     WINE REGISTRY Version 2
//     ;; All keys relative to \\Machine
//
//     [Software\\Classes\\Installer\\Products\\87654321CBA90FED1122334455667788] 1700000000
//     #time=1da1b2c3d4e5f60
//     "ProductName"="A voice"
//     "Language"=dword:00000409
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

/// Longer files are not read. Prefixes in use for years have some ten MB.
inline constexpr std::size_t kRegistryFileLimit = std::size_t{256} << 20;

class RegistryVisitor {
 public:
  virtual ~RegistryVisitor() = default;
  /// A key by its path, parted by single backslashes; true when its values are wanted.
  virtual bool OnKey(const std::string& path) = 0;
  /// A named text value of the key that was wanted last. Values of other types are passed over.
  virtual void OnText(const std::string& name, const std::string& text) = 0;
};

/// Tells the visitor of every key. What is not understood is passed over up to the line's end.
/// Throws std::runtime_error where the text does not begin as such a file does.
void ReadRegistry(std::string_view text, RegistryVisitor& visitor);

}  // namespace platform
