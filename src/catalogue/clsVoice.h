// One voice product of the catalogue and its own rules. It holds no file or network state: the
// Windows Installer service that it asks is its caller's.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/system/windows_installer.h"

/// Whether Windows Installer knows a product; only kInstalled counts as installed.
enum class InstallState : std::int32_t { kUnknown = 0, kNotInstalled = 1, kInstalled = 2 };

class clsVoice {
 public:
  /// Display name, UTF-8.
  std::string Name;
  /// Download size in megabytes (1,000,000 bytes).
  std::int16_t Size = 0;
  /// Address of the product; kept, shown nowhere.
  std::string Link;
  /// The catalogue's identifier, exactly as it stands there.
  std::string ID;

  /// The Windows Installer product code, in braces, or empty.
  const std::string& ProductCode() const { return mProductCode; }

  /// Drops blanks around and adds the braces that are missing: "ABC" and "{ABC" become "{ABC}".
  /// Nothing else is checked, since Windows Installer knows no product by a malformed code.
  void SetProductCode(std::string_view code);

  /// Asks once, then remembers: products installed later are not seen by this record. kUnknown
  /// when there is no product code or no installer (null), and then the next call asks again.
  InstallState IsInstalled(const platform::WindowsInstaller* installer);

 private:
  std::string mProductCode;
  InstallState mInstallState = InstallState::kUnknown;
};
