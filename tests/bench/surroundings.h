// What the measures work on: catalogues of any length, a Wine prefix in memory, language files.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/system/windows_installer.h"

namespace bench {

/// A catalogue with this many voices and, as in the demonstration's, one other product for every
/// twenty of them. The same bytes in every run; no two voices have one name.
std::string Catalogue(int voices);

/// A Wine prefix that the back end takes for its own, as long as this object lives. It is kept in
/// memory, so that no disk is measured.
class Prefix {
 public:
  Prefix();
  ~Prefix();
  Prefix(const Prefix&) = delete;
  Prefix& operator=(const Prefix&) = delete;

  /// What the back end knows of installed products once every second voice of a catalogue with
  /// this many, or none, has been installed.
  std::unique_ptr<platform::WindowsInstaller> Installer(int voices, bool half) const;

 private:
  std::filesystem::path mPath;
};

/// Sets localisation up as the start of the program does, with the files beside this program and
/// settings of Parvix that name default voices.
void LoadLanguages();

}  // namespace bench
