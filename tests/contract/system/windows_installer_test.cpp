// Promises of platform/system/windows_installer.h.
//
// SPDX-License-Identifier: MIT
#include "platform/system/windows_installer.h"

#include "tests/contract/services_case.h"

namespace {

using platform::WindowsInstaller;

constexpr char kCode[] = "{12345678-9ABC-DEF0-1122-334455667788}";
constexpr char kOtherCode[] = "{00000000-9ABC-DEF0-1122-334455667788}";

using Installer = ServiceCase;

TEST_F(Installer, AnswersTheVersionOfAProduct) {
  peer::InstallProduct(kCode, "1.2.3");
  EXPECT_EQ(WindowsInstaller().ProductInfo(kCode, "VersionString"), "1.2.3");
}

TEST_F(Installer, AnswersNothingForAProductThatIsNotKnown) {
  peer::InstallProduct(kOtherCode, "1.2.3");
  EXPECT_EQ(WindowsInstaller().ProductInfo(kCode, "VersionString"), std::nullopt);
}

TEST_F(Installer, AnswersNothingForCodesThatAreNone) {
  peer::InstallProduct(kCode, "1.2.3");
  const WindowsInstaller installer;
  for (const char* code : {"", "{}", "{A}", "12345678-9ABC-DEF0-1122-334455667788",
                           "{12345678-9ABC-DEF0-1122-33445566778}", "{no}",
                           "{1234567G-9ABC-DEF0-1122-334455667788}"}) {
    EXPECT_EQ(installer.ProductInfo(code, "VersionString"), std::nullopt) << code;
  }
}

TEST_F(Installer, AnswersAnEmptyTextForAPropertyThatTheProductLacks) {
  peer::InstallProduct(kCode, "1.2.3");
  EXPECT_EQ(WindowsInstaller().ProductInfo(kCode, "HelpTelephone"), "");
}

TEST_F(Installer, KnowsAProductWithoutAVersion) {
  peer::InstallProduct(kCode, "");
  EXPECT_EQ(WindowsInstaller().ProductInfo(kCode, "VersionString"), "");
}

TEST_F(Installer, ThrowsWhereTheSystemHasNone) {
  peer::RemoveWindowsInstaller();
  EXPECT_ANY_THROW(WindowsInstaller());
}

}  // namespace
