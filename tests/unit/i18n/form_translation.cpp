// Dressing a window: which kinds of controls get what, under which keys.
//
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <set>
#include <vector>

#include "core/text.h"
#include "platform/window/form.h"
#include "tests/unit/i18n/language_files.h"

namespace {

using fake::TheWorld;
using platform::ContainerItem;
using ::testing::ElementsAre;
using unit::Item;

constexpr const char* kDirectionKinds =
    "*CommandButton*Label*UniLabel*TextBox*Frame*CheckBox*OptionButton*ListBox*";
constexpr const char* kCaptionKinds =
    "*Label*UniLabel*DUniLabel*OptionButton*Menu*CommandButton*Frame*CheckBox*ButtonPlus*FramePlus*"
    "SSTab*";
constexpr const char* kToolTipKinds =
    "*Label*OptionButton*CommandButton*Frame*CheckBox*DUniLabel*UniLabel*FramePlus*SSTab*TextBox*"
    "UniText*UniList*ComboBox*WebBrowser*ProgressBar*ButtonPlus*ListBox*";
constexpr const char* kFontKinds =
    "*Label*DUniLabel*UniLabel*ComboBox*TextBox*Frame*CommandButton*CheckBox*OptionButton*ListBox*"
    "TabStrip*StatusBar*TreeView*ListView*ImageCombo*DUniText*DUniList*DUniCombo*ButtonPlus*"
    "FramePlus*SSTab*";

std::set<std::string> KindsOn(const std::string& list) {
  const auto kinds = core::Split(list.substr(1, list.size() - 2), "*");
  return {kinds.begin(), kinds.end()};
}

/// Every kind that is on some list, and kinds that are on none.
std::set<std::string> AllKinds() {
  std::set<std::string> all = {"PictureBox", "Image", "Toolbar", "Timer", "label", "UniLab"};
  for (const char* list : {kDirectionKinds, kCaptionKinds, kToolTipKinds, kFontKinds}) {
    all.merge(KindsOn(list));
  }
  return all;
}

/// What happened to the items of a container, in order: "1 caption Text".
using Log = std::vector<std::string>;

ContainerItem LoggedItem(Log& log, const std::string& name) {
  ContainerItem item;
  item.setCaption = [&log, name](const std::string& text) {
    log.push_back(name + " caption " + text);
  };
  item.setToolTipText = [&log, name](const std::string& text) {
    log.push_back(name + " tip " + text);
  };
  return item;
}

class FormTranslation : public unit::Localised {
 protected:
  FormTranslation() { WriteLanguages(R"(<language id="de"/>)"); }

  static std::shared_ptr<fake::Control> Add(const std::string& kind, const std::string& name) {
    auto control = fake::TheForm().Add(kind, name);
    control->caption = "as designed";
    control->toolTipText = "as designed";
    return control;
  }

  /// Starts in "de" and translates, with these items in the language file.
  void Translate(const std::string& items = "") {
    WriteTexts(items);
    StartIn("de");
    modI18N2::TranslateForm(form, 0);
  }

  static std::string German(const std::string& key, const std::string& text) {
    return Item(key, {{"de", text}});
  }

  /// The kinds of controls whose `property` a translation with texts for all of them sets.
  std::set<std::string> KindsThatGet(const std::string& property) {
    std::string items;
    for (const std::string& kind : AllKinds()) {
      Add(kind, "c" + kind);
      items += German("frmSelect.c" + kind + ".Caption", kind + " caption");
      items += German("frmSelect.c" + kind + ".ToolTipText", kind + " tip");
    }
    Translate(items);
    std::set<std::string> kinds;
    for (const auto& control : fake::TheForm().Controls()) {
      if (control->timesSet[property] > 0) kinds.insert(control->kind);
    }
    return kinds;
  }

  platform::Form form{"frmSelect", 100, 100};
};

// The window

TEST_F(FormTranslation, GivesTheWindowItsCaption) {
  Translate(German("frmSelect.Caption", "Stimmen"));
  EXPECT_EQ(form.Caption(), "Stimmen");
}

TEST_F(FormTranslation, GivesTheWindowItsKeyWhereThereIsNoText) {
  form.SetCaption("as designed");
  Translate();
  EXPECT_EQ(form.Caption(), "frmSelect.Caption");
}

TEST_F(FormTranslation, GivesTheWindowFontAndDirectionOfTheLanguage) {
  WriteLanguages(R"(<language id="de" vistaFont="Face" charset="177" direction="rtl"/>)");
  Translate();
  ASSERT_TRUE(fake::TheForm().font);
  EXPECT_EQ(fake::TheForm().font->name, "Face");
  EXPECT_EQ(fake::TheForm().font->charset, 177);
  EXPECT_TRUE(fake::TheForm().rightToLeft);
}

TEST_F(FormTranslation, TurnsTheWindowBackToLeftToRight) {
  fake::TheForm().rightToLeft = true;
  Translate();
  EXPECT_FALSE(fake::TheForm().rightToLeft);
}

TEST_F(FormTranslation, LeavesTheWindowAsDesignedWithoutTheLanguageFile) {
  WriteLanguages(R"(<language id="de" direction="rtl"/>)");
  form.SetCaption("as designed");
  const auto image = Add("Image", "imgLogo");
  const auto label = Add("Label", "lblStatus");
  StartIn("de");
  modI18N2::TranslateForm(form, 0);
  EXPECT_EQ(form.Caption(), "as designed");
  EXPECT_FALSE(fake::TheForm().font);
  EXPECT_FALSE(fake::TheForm().rightToLeft);
  EXPECT_TRUE(label->timesSet.empty());
  EXPECT_THAT(fake::TheForm().zOrder, ElementsAre(image, label));
}

TEST_F(FormTranslation, DoesNotDependOnItsSecondArgument) {
  const auto label = Add("Label", "lblStatus");
  WriteTexts(German("frmSelect.lblStatus.Caption", "Bereit"));
  StartIn("de");
  modI18N2::TranslateForm(form, 12345);
  EXPECT_EQ(label->caption, "Bereit");
}

// The lists

TEST_F(FormTranslation, GivesADirectionToTheKindsOnItsList) {
  EXPECT_EQ(KindsThatGet("RightToLeft"), KindsOn(kDirectionKinds));
}

TEST_F(FormTranslation, GivesACaptionToTheKindsOnItsList) {
  EXPECT_EQ(KindsThatGet("Caption"), KindsOn(kCaptionKinds));
}

TEST_F(FormTranslation, GivesAToolTipToTheKindsOnItsList) {
  EXPECT_EQ(KindsThatGet("ToolTipText"), KindsOn(kToolTipKinds));
}

TEST_F(FormTranslation, GivesAFontToTheKindsOnItsList) {
  EXPECT_EQ(KindsThatGet("Font"), KindsOn(kFontKinds));
}

// Ordinary controls

TEST_F(FormTranslation, GivesControlsTheFontAndDirectionOfTheLanguage) {
  WriteLanguages(R"(<language id="de" vistaFont="Face" charset="177" direction="rtl"/>)");
  const auto label = Add("Label", "lblStatus");
  Translate();
  ASSERT_TRUE(label->font);
  EXPECT_EQ(label->font->name, "Face");
  EXPECT_EQ(label->font->charset, 177);
  EXPECT_TRUE(label->rightToLeft);
}

TEST_F(FormTranslation, TurnsControlsBackToLeftToRight) {
  const auto label = Add("Label", "lblStatus");
  label->rightToLeft = true;
  Translate();
  EXPECT_FALSE(label->rightToLeft);
}

TEST_F(FormTranslation, FindsTextsByWindowAndControlName) {
  const auto button = Add("CommandButton", "cmdInstall");
  Translate(German("frmSelect.cmdInstall.Caption", "Installieren") +
            German("frmSelect.cmdInstall.ToolTipText", "Lädt die Stimmen"));
  EXPECT_EQ(button->caption, "Installieren");
  EXPECT_EQ(button->toolTipText, " Lädt die Stimmen ");
}

TEST_F(FormTranslation, FindsTextsByTheTagOfAControlThatHasOne) {
  const auto button = Add("CommandButton", "cmdInstall");
  button->tag = "Shared.Install";
  Translate(German("frmSelect.cmdInstall.Caption", "by name") +
            German("frmSelect.cmdInstall.ToolTipText", "by name") +
            German("Shared.Install.Caption", "by tag") +
            German("Shared.Install.ToolTipText", "by tag"));
  EXPECT_EQ(button->caption, "by tag");
  EXPECT_EQ(button->toolTipText, " by tag ");
}

TEST_F(FormTranslation, DoesNotGoFromATagBackToTheNames) {
  const auto button = Add("CommandButton", "cmdInstall");
  button->tag = "Shared.Install";
  Translate(German("frmSelect.cmdInstall.Caption", "by name") +
            German("frmSelect.cmdInstall.ToolTipText", "by name"));
  EXPECT_EQ(button->caption, "as designed");
  EXPECT_EQ(button->toolTipText, "");
}

TEST_F(FormTranslation, KeepsTheDesignedCaptionAndEmptiesTheToolTipWithoutTexts) {
  const auto label = Add("Label", "lblStatus");
  Translate();
  EXPECT_EQ(label->caption, "as designed");
  EXPECT_EQ(label->timesSet["Caption"], 0);
  EXPECT_EQ(label->toolTipText, "");
}

TEST_F(FormTranslation, KeepsTheDesignedCaptionWhereTheTextIsTheKey) {
  const auto label = Add("Label", "lblStatus");
  Translate(German("frmSelect.lblStatus.Caption", "frmSelect.lblStatus.Caption"));
  EXPECT_EQ(label->caption, "as designed");
}

TEST_F(FormTranslation, TakesAnEmptyCaptionForOne) {
  const auto label = Add("Label", "lblStatus");
  Translate(German("frmSelect.lblStatus.Caption", ""));
  EXPECT_EQ(label->caption, "");
}

TEST_F(FormTranslation, PadsAToolTipWithOneBlankAndACaptionWithNone) {
  const auto button = Add("CommandButton", "cmdInstall");
  Translate(German("frmSelect.cmdInstall.Caption", "  Installieren  ") +
            German("frmSelect.cmdInstall.ToolTipText", "   Lädt  sie   "));
  EXPECT_EQ(button->caption, "Installieren");
  EXPECT_EQ(button->toolTipText, " Lädt  sie ");
}

TEST_F(FormTranslation, TranslatesEveryControl) {
  const auto first = Add("Label", "one");
  const auto second = Add("Label", "two");
  Translate(German("frmSelect.one.Caption", "Eins") + German("frmSelect.two.Caption", "Zwei"));
  EXPECT_EQ(first->caption, "Eins");
  EXPECT_EQ(second->caption, "Zwei");
}

// Containers

TEST_F(FormTranslation, GivesPanelsOfAStatusBarPaddedToolTips) {
  Log log;
  ContainerItem first = LoggedItem(log, "first");
  first.index = 1;
  ContainerItem second = LoggedItem(log, "second");
  second.index = 2;
  ContainerItem tagged = LoggedItem(log, "tagged");
  tagged.index = 3;
  tagged.tag = "Shared.Panel";
  Add("StatusBar", "bar")->items = {first, second, tagged};
  Translate(German("frmSelect.bar.1.ToolTipText", "  Eins ") +
            German("frmSelect.bar.1.Caption", "unused") +
            German("frmSelect.bar.3.ToolTipText", "unused") +
            German("Shared.Panel.ToolTipText", "Drei"));
  EXPECT_THAT(log, ElementsAre("first tip  Eins ", "second tip ", "tagged tip  Drei "));
}

TEST_F(FormTranslation, GivesButtonsOfAToolBarCaptionAndThenToolTip) {
  Log log;
  ContainerItem button = LoggedItem(log, "button");
  button.kind = "Button";
  button.key = "open";
  button.name = "unused";
  Add("Toolbar", "tools")->items = {button};
  Translate(German("frmSelect.tools.open.Caption", "Öffnen") +
            German("frmSelect.tools.open.ToolTipText", "Öffnet eine Datei"));
  EXPECT_THAT(log, ElementsAre("button caption Öffnen", "button tip Öffnet eine Datei"));
}

TEST_F(FormTranslation, GivesAToolBarButtonItsKeysWhereThereAreNoTexts) {
  Log log;
  ContainerItem button = LoggedItem(log, "button");
  button.key = "open";
  Add("Toolbar", "tools")->items = {button};
  Translate();
  EXPECT_THAT(log, ElementsAre("button caption frmSelect.tools.open.Caption",
                               "button tip frmSelect.tools.open.ToolTipText"));
}

TEST_F(FormTranslation, NamesAnIButtonByItsName) {
  Log log;
  ContainerItem button = LoggedItem(log, "button");
  button.kind = "IButton";
  button.key = "unused";
  button.name = "cmdOpen";
  Add("Toolbar", "tools")->items = {button};
  Translate();
  EXPECT_THAT(log, ElementsAre("button caption frmSelect.tools.cmdOpen.Caption",
                               "button tip frmSelect.tools.cmdOpen.ToolTipText"));
}

TEST_F(FormTranslation, NamesATaggedToolBarButtonByItsTag) {
  Log log;
  for (const char* kind : {"Button", "IButton"}) {
    ContainerItem button = LoggedItem(log, kind);
    button.kind = kind;
    button.key = button.name = "unused";
    button.tag = "Shared.Open";
    Add("Toolbar", kind)->items = {button};
  }
  Translate(German("Shared.Open.Caption", "Öffnen"));
  EXPECT_THAT(log, ElementsAre("Button caption Öffnen", "Button tip Shared.Open.ToolTipText",
                               "IButton caption Öffnen", "IButton tip Shared.Open.ToolTipText"));
}

TEST_F(FormTranslation, GivesTabsOfATabStripCaptionsByTheirKeys) {
  Log log;
  ContainerItem found = LoggedItem(log, "found");
  found.key = "voices";
  found.tag = "Shared.Tab";
  ContainerItem absent = LoggedItem(log, "absent");
  absent.key = "other";
  Add("TabStrip", "tabs")->items = {found, absent};
  Translate(German("frmSelect.tabs.voices.Caption", "Stimmen") +
            German("Shared.Tab.Caption", "unused"));
  EXPECT_THAT(log,
              ElementsAre("found caption Stimmen", "absent caption frmSelect.tabs.other.Caption"));
}

TEST_F(FormTranslation, NamesItemsByTheContainersNameAndNotItsTag) {
  Log log;
  ContainerItem tab = LoggedItem(log, "tab");
  tab.key = "voices";
  const auto tabs = Add("TabStrip", "tabs");
  tabs->items = {tab};
  tabs->tag = "Shared.Tabs";
  Translate();
  EXPECT_THAT(log, ElementsAre("tab caption frmSelect.tabs.voices.Caption"));
}

TEST_F(FormTranslation, DressesAContainerLikeAnyControlToo) {
  WriteLanguages(R"(<language id="de" vistaFont="Face" charset="177"/>)");
  const auto tabs = Add("TabStrip", "tabs");
  Translate();
  ASSERT_TRUE(tabs->font);
  EXPECT_EQ(tabs->font->name, "Face");
}

TEST_F(FormTranslation, TakesAContainerByItsExactKind) {
  Log log;
  const auto bar = Add("statusbar", "bar");
  bar->items = {LoggedItem(log, "panel")};
  Translate();
  EXPECT_TRUE(log.empty());
}

// Order, and what fails

TEST_F(FormTranslation, BringsImagesToTheFrontInTheirOrder) {
  const auto back = Add("Image", "one");
  const auto label = Add("Label", "lblStatus");
  const auto picture = Add("PictureBox", "picLogo");
  const auto front = Add("Image", "two");
  const auto button = Add("CommandButton", "cmdInstall");
  Translate();
  EXPECT_THAT(fake::TheForm().zOrder, ElementsAre(label, picture, button, back, front));
}

TEST_F(FormTranslation, BringsImagesToTheFrontAfterAllControlsAreDressed) {
  const auto image = Add("Image", "imgLogo");
  const auto bar = Add("StatusBar", "bar");
  std::shared_ptr<fake::Control> backmost;
  ContainerItem panel;
  panel.setToolTipText = [&](const std::string&) { backmost = fake::TheForm().zOrder.front(); };
  bar->items = {panel};
  Translate();
  EXPECT_EQ(backmost, image);
  EXPECT_EQ(fake::TheForm().zOrder.back(), image);
}

TEST_F(FormTranslation, DressesAControlBeforeItComesToItsNeighbour) {
  Log log;
  for (const char* name : {"one", "two"}) {
    Add("StatusBar", name)->items = {LoggedItem(log, name)};
  }
  Translate();
  EXPECT_THAT(log, ElementsAre("one tip ", "two tip "));
}

TEST_F(FormTranslation, SkipsAPropertyThatAControlLacksAndGoesOn) {
  WriteLanguages(R"(<language id="de" direction="rtl"/>)");
  const std::vector<std::string> properties = {"RightToLeft", "Caption", "ToolTipText", "Font"};
  std::string items;
  for (const std::string& property : properties) {
    Add("Label", "without" + property)->lacks = {property};
    items += German("frmSelect.without" + property + ".Caption", "Text");
  }
  Translate(items);
  for (const std::string& lacking : properties) {
    for (const std::string& property : properties) {
      SCOPED_TRACE(property + " of one without " + lacking);
      EXPECT_EQ(fake::ControlNamed("without" + lacking).timesSet[property],
                property == lacking ? 0 : 1);
    }
  }
}

TEST_F(FormTranslation, FindsTextsByTheNamesOfAControlThatLacksATag) {
  const auto label = Add("Label", "lblStatus");
  label->tag = "Shared.Status";
  label->lacks = {"Tag"};
  Translate(German("frmSelect.lblStatus.Caption", "by name") +
            German("Shared.Status.Caption", "by tag"));
  EXPECT_EQ(label->caption, "by name");
}

TEST_F(FormTranslation, DressesAContainerThatLacksItsItems) {
  const auto tabs = Add("TabStrip", "tabs");
  tabs->lacks = {"Items"};
  Translate();
  EXPECT_TRUE(tabs->font);
}

TEST_F(FormTranslation, SkipsAnItemThatLacksAPropertyAndGoesOn) {
  Log log;
  ContainerItem without = LoggedItem(log, "without");
  without.setCaption = nullptr;
  without.key = "a";
  ContainerItem with = LoggedItem(log, "with");
  with.key = "b";
  const auto tools = Add("Toolbar", "tools");
  tools->items = {without, with};
  Translate();
  EXPECT_THAT(log, ElementsAre("without tip frmSelect.tools.a.ToolTipText",
                               "with caption frmSelect.tools.b.Caption",
                               "with tip frmSelect.tools.b.ToolTipText"));
}

TEST_F(FormTranslation, GoesOnPastAnImageThatCannotComeToTheFront) {
  Add("Image", "one")->lacks = {"ZOrder"};
  const auto image = Add("Image", "two");
  const auto label = Add("Label", "lblStatus");
  Translate();
  EXPECT_EQ(fake::TheForm().zOrder.back(), image);
}

TEST_F(FormTranslation, TakesTheWindowsNameForItsKeys) {
  platform::Form other("frmOther", 100, 100);
  WriteTexts(German("frmOther.Caption", "Anderes"));
  StartIn("de");
  modI18N2::TranslateForm(other, 0);
  EXPECT_EQ(other.Caption(), "Anderes");
  EXPECT_EQ(form.Caption(), "");
}

}  // namespace
