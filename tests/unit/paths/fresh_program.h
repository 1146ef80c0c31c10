// A program that has just been started: an empty world, no data folder computed yet. For the tests
// of paths/ and of the modules that use it.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "paths/modPath.h"
#include "tests/fake_platform/fake.h"

namespace unit {

class FreshProgram : public ::testing::Test {
 protected:
  FreshProgram() {
    fake::Reset();
    modPath::gSettingsPath.clear();
    modPath::gUserSettingsPath.clear();
    modPath::gCommonPath.clear();
    modPath::gPortable = false;
  }

  /// The folder of the program file, without a separator at its end.
  static std::string ProgramFolder() { return fake::TheWorld().programFolder; }

  /// What the editions of Parvix are looked for at: it ends in "Parvix " with the blank.
  static std::string ParvixBase() {
    return ProgramFolder().substr(0, ProgramFolder().rfind('\\') + 1) + "Parvix ";
  }

  static void WriteOwnIni(std::string_view text) {
    fake::TheWorld().WriteFile(ProgramFolder() + "\\VelorVoiceSetup.ini", text);
  }

  /// Where settings live as long as nothing says that anything is installed.
  static std::string PortableSettingsFolder() {
    return ProgramFolder() + "\\Settings\\Velor Software\\Parvix\\6";
  }
};

}  // namespace unit
