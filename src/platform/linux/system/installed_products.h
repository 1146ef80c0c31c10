// What a prefix's registry files say of installed products. Pure text: reading the files is
// windows_installer.cpp's, their syntax registry_text.h's.
//
// A product is known when two keys exist, P being its packed code and D the key
// Software\Microsoft\Windows\CurrentVersion\Installer\UserData:
//   per machine  Software\Classes\Installer\Products\P in system.reg, and
//                D\S-1-5-18\Products\P\InstallProperties in system.reg
//   per user     Software\Microsoft\Installer\Products\P in user.reg, and
//                D\(the user's SID)\Products\P\InstallProperties in system.reg
//
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The registry's spelling of a product code: {12345678-9ABC-DEF0-1122-334455667788} is
/// 87654321CBA90FED1122334455667788. Three groups backwards, then eight pairs of digits each
/// backwards. Absent for what is no product code.
std::optional<std::string> PackedCode(const std::string& productCode);

/// Knows nothing until it is given the files' texts, each of which throws as ReadRegistry does.
class InstalledProducts {
 public:
  InstalledProducts();
  ~InstalledProducts();
  InstalledProducts(const InstalledProducts&) = delete;
  InstalledProducts& operator=(const InstalledProducts&) = delete;

  void ReadSystemFile(std::string_view text);
  void ReadUserFile(std::string_view text);

  /// As WindowsInstaller::ProductInfo.
  std::optional<std::string> Property(const std::string& productCode,
                                      const std::string& property) const;

 private:
  struct Impl;
  std::unique_ptr<Impl> mImpl;
};

}  // namespace platform
