// The record of one voice: its product code's form, and what it remembers of Windows Installer.
//
// SPDX-License-Identifier: MIT
#include "catalogue/clsVoice.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/system/windows_installer.h"
#include "tests/fake_platform/fake.h"

namespace {

class Voice : public testing::Test {
 protected:
  Voice() { fake::Reset(); }

  static std::string StoredCode(const std::string& code) {
    clsVoice voice;
    voice.SetProductCode(code);
    return voice.ProductCode();
  }

  static clsVoice WithCode(const std::string& code) {
    clsVoice voice;
    voice.SetProductCode(code);
    return voice;
  }

  static void Install(const std::string& code) {
    fake::TheWorld().installedProducts->insert({code, "1.0"});
  }

  static std::vector<std::string>& Questions() { return fake::TheWorld().installerQuestions; }
};

TEST_F(Voice, IsEmptyAndOfUnknownStateWhenNew) {
  const platform::WindowsInstaller installer;
  clsVoice voice;
  EXPECT_EQ(voice.Name, "");
  EXPECT_EQ(voice.Size, 0);
  EXPECT_EQ(voice.Link, "");
  EXPECT_EQ(voice.ID, "");
  EXPECT_EQ(voice.ProductCode(), "");
  EXPECT_EQ(voice.IsInstalled(&installer), InstallState::kUnknown);
}

TEST_F(Voice, NumbersItsStatesFromUnknownToInstalled) {
  EXPECT_EQ(static_cast<int>(InstallState::kUnknown), 0);
  EXPECT_EQ(static_cast<int>(InstallState::kNotInstalled), 1);
  EXPECT_EQ(static_cast<int>(InstallState::kInstalled), 2);
}

TEST_F(Voice, DropsBlanksAroundTheProductCode) { EXPECT_EQ(StoredCode("  {A}  "), "{A}"); }

TEST_F(Voice, AddsTheOpeningBraceThatIsMissing) { EXPECT_EQ(StoredCode("A}"), "{A}"); }

TEST_F(Voice, AddsTheClosingBraceThatIsMissing) { EXPECT_EQ(StoredCode("{A"), "{A}"); }

TEST_F(Voice, AddsBothBracesToABareCode) { EXPECT_EQ(StoredCode("ABC"), "{ABC}"); }

TEST_F(Voice, AddsBracesAfterTheBlanksWereDropped) { EXPECT_EQ(StoredCode(" A "), "{A}"); }

TEST_F(Voice, StoresNothingForBlanksAlone) { EXPECT_EQ(StoredCode("   "), ""); }

TEST_F(Voice, StoresNothingForAnEmptyCode) {
  clsVoice voice = WithCode("{A}");
  voice.SetProductCode("");
  EXPECT_EQ(voice.ProductCode(), "");
}

TEST_F(Voice, ClosesALoneBrace) {
  EXPECT_EQ(StoredCode("{"), "{}");
  EXPECT_EQ(StoredCode("}"), "{}");
}

TEST_F(Voice, ChecksNothingElseOfTheProductCode) {
  EXPECT_EQ(StoredCode("no code, \t'at all'"), "{no code, \t'at all'}");
  EXPECT_EQ(StoredCode("\tA\t"), "{\tA\t}");
  EXPECT_EQ(StoredCode("}A{"), "{}A{}");
}

TEST_F(Voice, IsInstalledWhenWindowsInstallerKnowsItsCode) {
  Install("{A}");
  const platform::WindowsInstaller installer;
  EXPECT_EQ(WithCode("A").IsInstalled(&installer), InstallState::kInstalled);
}

TEST_F(Voice, IsInstalledAlsoWhenItsVersionIsEmpty) {
  fake::TheWorld().installedProducts->insert({"{A}", ""});
  const platform::WindowsInstaller installer;
  EXPECT_EQ(WithCode("A").IsInstalled(&installer), InstallState::kInstalled);
}

TEST_F(Voice, IsNotInstalledWhenWindowsInstallerDoesNotKnowItsCode) {
  Install("{B}");
  const platform::WindowsInstaller installer;
  EXPECT_EQ(WithCode("A").IsInstalled(&installer), InstallState::kNotInstalled);
}

TEST_F(Voice, IsNotInstalledWithAMalformedCode) {
  const platform::WindowsInstaller installer;
  EXPECT_EQ(WithCode("not a code").IsInstalled(&installer), InstallState::kNotInstalled);
}

TEST_F(Voice, AsksForTheVersionOfItsProduct) {
  const platform::WindowsInstaller installer;
  WithCode("A").IsInstalled(&installer);
  EXPECT_EQ(Questions(), std::vector<std::string>{"{A} VersionString"});
}

TEST_F(Voice, NeverAsksWithoutAProductCode) {
  const platform::WindowsInstaller installer;
  clsVoice voice;
  EXPECT_EQ(voice.IsInstalled(&installer), InstallState::kUnknown);
  EXPECT_EQ(voice.IsInstalled(&installer), InstallState::kUnknown);
  EXPECT_TRUE(Questions().empty());
}

TEST_F(Voice, IsOfUnknownStateWithoutWindowsInstaller) {
  EXPECT_EQ(WithCode("A").IsInstalled(nullptr), InstallState::kUnknown);
}

TEST_F(Voice, AsksAgainAsLongAsItsStateIsUnknown) {
  Install("{A}");
  const platform::WindowsInstaller installer;
  clsVoice voice = WithCode("A");
  voice.IsInstalled(nullptr);
  EXPECT_EQ(voice.IsInstalled(&installer), InstallState::kInstalled);
}

TEST_F(Voice, RemembersThatItIsNotInstalledAlthoughItWasInstalledSince) {
  const platform::WindowsInstaller installer;
  clsVoice voice = WithCode("A");
  voice.IsInstalled(&installer);
  Install("{A}");
  EXPECT_EQ(voice.IsInstalled(&installer), InstallState::kNotInstalled);
  EXPECT_EQ(Questions().size(), 1U);
}

TEST_F(Voice, RemembersThatItIsInstalledAlthoughItWasRemovedSince) {
  Install("{A}");
  const platform::WindowsInstaller installer;
  clsVoice voice = WithCode("A");
  voice.IsInstalled(&installer);
  fake::TheWorld().installedProducts->clear();
  EXPECT_EQ(voice.IsInstalled(&installer), InstallState::kInstalled);
  EXPECT_EQ(voice.IsInstalled(nullptr), InstallState::kInstalled);
  EXPECT_EQ(Questions().size(), 1U);
}

TEST_F(Voice, KeepsItsStateWhenItsProductCodeChanges) {
  Install("{A}");
  const platform::WindowsInstaller installer;
  clsVoice voice = WithCode("A");
  voice.IsInstalled(&installer);
  voice.SetProductCode("B");
  EXPECT_EQ(voice.IsInstalled(&installer), InstallState::kInstalled);
  voice.SetProductCode("");
  EXPECT_EQ(voice.IsInstalled(&installer), InstallState::kInstalled);
}

}  // namespace
