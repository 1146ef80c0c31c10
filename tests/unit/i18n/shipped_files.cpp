// The language files as they are shipped: a language that no list names is English.
//
// SPDX-License-Identifier: MIT
#include <filesystem>

#include "tests/support/folders.h"
#include "tests/support/temporary_folder.h"
#include "tests/unit/i18n/language_files.h"

namespace {

using modI18N2::GetText;

class ShippedFiles : public unit::Localised, public testing::WithParamInterface<const char*> {
 protected:
  ShippedFiles() { Copy(kTextsFile); }

  static void Copy(const std::string& name) {
    const std::filesystem::path assets = std::filesystem::path(support::kSourceFolder) / "assets";
    WriteProgramFile(name, support::ReadBytes(assets / name));
  }

  static void StartsInEnglish() {
    modI18N2::TheState() = {};
    Start();
    EXPECT_EQ(GetText("frmSelect.Caption"), "Velor Voice Setup");
    EXPECT_EQ(GetText("frmSelect.cmdInstall.Caption"), "&Install");
    EXPECT_EQ(GetText("frmSelect.cmdInstall.ToolTipText"), "Install the selected voices");
    EXPECT_EQ(GetText("frmSelect.lblStatus.Caption"), "Loading voices\u2026");
    EXPECT_EQ(GetText("Available Voices"), "Available Voices");
    EXPECT_EQ(GetText("Default voices info"),
              "The voices already selected are the default voices that Parvix uses for your "
              "language.");
    EXPECT_EQ(GetText("Get more voices prompt"),
              "You can get more voices at any time by starting Velor Voice Setup again.");
  }
};

TEST_P(ShippedFiles, AreEnglishInALanguageThatOnlyTheProgramNames) {
  Copy("Languages.xml");
  Configure(GetParam());
  StartsInEnglish();
}

TEST_P(ShippedFiles, AreEnglishInALanguageThatOnlyParvixNames) {
  Copy("Languages.xml");
  ConfigureParvix(GetParam());
  StartsInEnglish();
}

// Not in the list at all, or in other letter case; the last two reach English by their fallback.
INSTANTIATE_TEST_SUITE_P(Languages, ShippedFiles,
                         testing::Values("nn", "de-at", "zh-hk", "EN-GB", "en-gb", "en-us"));

using ShippedTexts = ShippedFiles;

TEST_F(ShippedTexts, AreEnglishWithoutTheListOfLanguages) {
  Configure("sv");
  StartsInEnglish();
  WriteOwnIni("");
  ConfigureParvix("sv");
  StartsInEnglish();
}

}  // namespace
