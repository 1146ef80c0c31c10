// What Windows Installer knows of installed products.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>

namespace platform {

class WindowsInstaller {
 public:
  /// Throws when the system has no Windows Installer.
  WindowsInstaller();
  ~WindowsInstaller();
  WindowsInstaller(const WindowsInstaller&) = delete;
  WindowsInstaller& operator=(const WindowsInstaller&) = delete;

  /// A property, such as "VersionString", of the product whose code ("{...}") is given; absent when
  /// the product is not known, for any reason. A known product that lacks the property answers an
  /// empty text.
  std::optional<std::string> ProductInfo(const std::string& productCode,
                                         const std::string& property) const;

 private:
  struct Impl;
  std::unique_ptr<Impl> mImpl;
};

}  // namespace platform
