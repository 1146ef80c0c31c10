// The page's body, to the byte: head, rows of both kinds, ticks, tail.
//
// SPDX-License-Identifier: MIT
#include "catalogue/page_builder.h"

#include <gmock/gmock.h>

#include <array>
#include <stdexcept>

#include "tests/unit/catalogue/catalogue_test.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kHead =
    "<h2 style='text-align:left;font-weight:normal;'>T(Available Voices)</h2>\r\n"
    "<table width=\"100%\">\r\n";
constexpr const char* kTail =
    "</table>\r\n"
    "<script>function Add(url) { window.location.href = url; }</script>";
constexpr const char* kInfo =
    "<p style='text-align:left;font-weight:normal;' id='defaultVoiceMessage'>"
    "T(Default voices info)</p>\r\n";

/// A row of an offered voice as it must be; `ticks` stands between id and the tag's end.
std::string Row(const std::string& id, const std::string& name, const std::string& ticks = "",
                const std::string& size = "75") {
  return "<tr><td><input type='checkbox' id='check" + id + "'" + ticks +
         "><td align='left'><label for='check" + id + "'>" + name +
         "</label></td><td align='right'>" + size + "MB</a></td></tr>\r\n";
}

class PageBuilder : public CatalogueTest {
 protected:
  std::array<std::string, 2> mDefaults = {"nobody", "nobody else"};
  platform::XmlNode mQueue;
  TextLookup mText = [](const std::string& key) { return "T(" + key + ")"; };

  VoicesPage Build(std::vector<clsVoice> voices) const {
    return BuildPage(std::move(voices), mText, mDefaults, mQueue, &mInstaller);
  }

  std::string Body(std::vector<clsVoice> voices) const { return Build(std::move(voices)).body; }

  /// The body between head and tail, where no voice is installed.
  std::string Rows(std::vector<clsVoice> voices) const {
    const std::string body = Body(std::move(voices));
    EXPECT_THAT(body, StartsWith(kHead));
    EXPECT_THAT(body, EndsWith(kTail));
    const std::size_t head = std::string(kHead).size();
    return body.substr(head, body.size() - head - std::string(kTail).size());
  }

  std::vector<std::string> OfferedIds(std::vector<clsVoice> voices) const {
    std::vector<std::string> ids;
    for (const clsVoice& voice : Build(std::move(voices)).offered) ids.push_back(voice.ID);
    return ids;
  }
};

TEST_F(PageBuilder, MakesHeadingTableAndScriptOfNoVoices) {
  EXPECT_EQ(Body({}), std::string(kHead) + kTail);
}

TEST_F(PageBuilder, OffersAVoiceWithItsBoxNameAndSize) {
  EXPECT_EQ(Rows({Voice("English (UK) Daniel", "12")}),
            "<tr><td><input type='checkbox' id='check12'><td align='left'>"
            "<label for='check12'>English (UK) Daniel</label></td>"
            "<td align='right'>75MB</a></td></tr>\r\n");
}

TEST_F(PageBuilder, OffersVoicesInTheirOrder) {
  EXPECT_EQ(Rows({Voice("Zoe", "2"), Voice("Anna", "1")}), Row("2", "Zoe") + Row("1", "Anna"));
  EXPECT_THAT(OfferedIds({Voice("Zoe", "2"), Voice("Anna", "1")}), ElementsAre("2", "1"));
}

TEST_F(PageBuilder, AnswersTheOfferedRecordsWhole) {
  clsVoice voice = Voice("Anna", "1", 80);
  voice.Link = "link";
  voice.SetProductCode("A");
  const clsVoice offered = Build({voice}).offered.at(0);
  EXPECT_EQ(offered.Name, "Anna");
  EXPECT_EQ(offered.Size, 80);
  EXPECT_EQ(offered.Link, "link");
  EXPECT_EQ(offered.ProductCode(), "{A}");
}

TEST_F(PageBuilder, PutsNamesAndIdsOnThePageAsTheyAre) {
  EXPECT_EQ(Rows({Voice("<b>A & B</b>", "x'y")}), Row("x'y", "<b>A & B</b>"));
}

TEST_F(PageBuilder, DoesNotOfferAVoiceOfNoSize) {
  EXPECT_EQ(Rows({Voice("Anna", "1", 0), Voice("Berta", "2", 1)}), Row("2", "Berta", "", "1"));
  EXPECT_THAT(OfferedIds({Voice("Anna", "1", 0), Voice("Berta", "2", 1)}), ElementsAre("2"));
}

TEST_F(PageBuilder, OffersAVoiceOfNegativeSize) {
  EXPECT_EQ(Rows({Voice("Anna", "1", -3)}), Row("1", "Anna", "", "-3"));
}

TEST_F(PageBuilder, ListsInstalledVoicesBelowGreyedAndTicked) {
  EXPECT_EQ(Body({Voice("Anna", "1"), InstalledVoice("Berta", "2")}),
            kHead + Row("1", "Anna") + kTail +
                "<h2 style=\"font-weight:normal\">T(Already Installed)</h2><table width=\"100%\">"
                "<td><input type='checkbox' id='check1' checked disabled>"
                "<td align='left'><label for='check1'>Berta</label></td></tr>\r\n"
                "</table>");
}

TEST_F(PageBuilder, GivesInstalledVoicesTheIdOfTheOfferedVoiceBeforeThem) {
  const std::string body =
      Body({InstalledVoice("A", "1"), Voice("B", "2"), InstalledVoice("C", "3"),
            InstalledVoice("D", "4"), Voice("E", "5"), InstalledVoice("F", "6")});
  EXPECT_THAT(body, HasSubstr("id='' checked disabled><td align='left'><label for=''>A</label>"));
  for (const auto& [id, name] : {std::pair("2", "C"), {"2", "D"}, {"5", "F"}}) {
    EXPECT_THAT(body, HasSubstr(std::string("id='check") + id +
                                "' checked disabled><td align='left'><label for='check" + id +
                                "'>" + name + "</label></td></tr>\r\n"));
  }
}

TEST_F(PageBuilder, CountsAVoiceThatIsNotOfferedForNoId) {
  EXPECT_THAT(Body({Voice("A", "1"), Voice("B", "2", 0), InstalledVoice("C", "3")}),
              HasSubstr("<label for='check1'>C</label>"));
}

TEST_F(PageBuilder, GivesInstalledVoicesAnEmptyIdBeforeEveryOfferedOne) {
  EXPECT_EQ(Body({InstalledVoice("A", "1"), InstalledVoice("B", "2"), Voice("C", "3")}),
            kHead + Row("3", "C") + kTail +
                "<h2 style=\"font-weight:normal\">T(Already Installed)</h2><table width=\"100%\">"
                "<td><input type='checkbox' id='' checked disabled>"
                "<td align='left'><label for=''>A</label></td></tr>\r\n"
                "<td><input type='checkbox' id='' checked disabled>"
                "<td align='left'><label for=''>B</label></td></tr>\r\n"
                "</table>");
}

TEST_F(PageBuilder, ListsInstalledVoicesOfNoSizeToo) {
  const VoicesPage page = Build({InstalledVoice("Anna", "1", 0)});
  EXPECT_THAT(page.body, HasSubstr(">Anna</label>"));
  EXPECT_TRUE(page.anyVoiceInstalled);
}

TEST_F(PageBuilder, OffersNoInstalledVoice) {
  EXPECT_THAT(OfferedIds({InstalledVoice("A", "1"), Voice("B", "2"), InstalledVoice("C", "3")}),
              ElementsAre("2"));
}

TEST_F(PageBuilder, OffersEverythingWithoutWindowsInstaller) {
  const VoicesPage page =
      BuildPage({InstalledVoice("Anna", "1")}, mText, mDefaults, mQueue, nullptr);
  EXPECT_EQ(page.offered.size(), 1U);
  EXPECT_FALSE(page.anyVoiceInstalled);
}

TEST_F(PageBuilder, OffersAVoiceThatWindowsInstallerDoesNotKnow) {
  clsVoice voice = Voice("Anna", "1");
  voice.SetProductCode("unknown");
  EXPECT_EQ(Rows({voice}), Row("1", "Anna"));
}

TEST_F(PageBuilder, TellsWhetherAnyVoiceIsInstalled) {
  EXPECT_FALSE(Build({}).anyVoiceInstalled);
  EXPECT_FALSE(Build({Voice("Anna", "1")}).anyVoiceInstalled);
  EXPECT_TRUE(Build({Voice("Anna", "1"), InstalledVoice("Berta", "2")}).anyVoiceInstalled);
}

TEST_F(PageBuilder, AsksForEachVoiceOnce) {
  Build({InstalledVoice("A", "1"), InstalledVoice("B", "2")});
  EXPECT_THAT(fake::TheWorld().installerQuestions,
              ElementsAre("{1} VersionString", "{2} VersionString"));
}

TEST_F(PageBuilder, TicksTheDefaultVoicesAndSaysWhy) {
  mDefaults = {"Daniel", "Julie"};
  EXPECT_EQ(Rows({Voice("English (UK) Anna", "1"), Voice("English (UK) Daniel", "2"),
                  Voice("French (F) Julie", "3")}),
            kInfo + Row("1", "English (UK) Anna") + Row("2", "English (UK) Daniel", " checked ") +
                Row("3", "French (F) Julie", " checked "));
}

TEST_F(PageBuilder, SaysNothingOfDefaultVoicesWhereNoneIsTicked) {
  mDefaults = {"Daniel", "Julie"};
  EXPECT_EQ(Rows({Voice("English (UK) Anna", "1")}), Row("1", "English (UK) Anna"));
}

TEST_F(PageBuilder, TicksEitherDefaultVoiceAlone) {
  mDefaults = {"Daniel", "nobody"};
  EXPECT_THAT(Rows({Voice("English (UK) Daniel", "2")}), HasSubstr("'check2' checked >"));
  mDefaults = {"nobody", "Daniel"};
  EXPECT_THAT(Rows({Voice("English (UK) Daniel", "2")}), HasSubstr("'check2' checked >"));
}

TEST_F(PageBuilder, ComparesDefaultVoicesAsWholeNamesWithTheirLetterCase) {
  mDefaults = {"daniel", "Dan"};
  EXPECT_EQ(Rows({Voice("English (UK) Daniel", "2")}), Row("2", "English (UK) Daniel"));
}

TEST_F(PageBuilder, ShowsTheWholeNameOfADefaultVoice) {
  mDefaults = {"Daniel", ""};
  EXPECT_EQ(Build({Voice("English (UK) Daniel", "2")}).offered.at(0).Name, "English (UK) Daniel");
}

TEST_F(PageBuilder, TakesAVoiceWithoutANameForDaniel) {
  mDefaults = {"Daniel", "nobody"};
  EXPECT_THAT(Rows({Voice("", "2")}), HasSubstr("'check2' checked >"));
}

TEST_F(PageBuilder, TicksNoDefaultVoiceOnceAVoiceIsInstalled) {
  mDefaults = {"Daniel", "Julie"};
  const std::string body =
      Body({Voice("English (UK) Daniel", "2"), InstalledVoice("Polish (P) Zoe", "9")});
  EXPECT_THAT(body, HasSubstr(Row("2", "English (UK) Daniel")));
  EXPECT_THAT(body, Not(HasSubstr("defaultVoiceMessage")));
}

TEST_F(PageBuilder, SaysNothingOfDefaultVoicesWhereTheHeadingSeemsToSaySo) {
  mDefaults = {"Daniel", "Julie"};
  mText = [](const std::string& key) { return key + " defaultVoiceMessage"; };
  const std::string body = Body({Voice("English (UK) Daniel", "2")});
  EXPECT_THAT(body, Not(HasSubstr("<p ")));
  EXPECT_THAT(body, HasSubstr("'check2' checked >"));
}

TEST_F(PageBuilder, TicksAVoiceThatTheQueueListsByItsText) {
  mQueue = Root("<queue><item>12</item><item>40</item></queue>");
  EXPECT_EQ(Rows({Voice("A", "12"), Voice("B", "4"), Voice("C", "40")}),
            Row("12", "A", " checked ") + Row("4", "B") + Row("40", "C", " checked "));
}

TEST_F(PageBuilder, TicksAVoiceThatTheQueueListsInAnElement) {
  mQueue = Root("<queue><item><id>12</id><name>x</name></item></queue>");
  EXPECT_EQ(Rows({Voice("A", "12"), Voice("B", "40")}),
            Row("12", "A", " checked ") + Row("40", "B"));
}

TEST_F(PageBuilder, TicksAVoiceThatTheQueueListsWithBlanksAround) {
  mQueue = Root("<queue>\n  <item>\n    12\n  </item><item><id> 40 </id></item>\n</queue>");
  EXPECT_EQ(Rows({Voice("A", "12"), Voice("B", "40")}),
            Row("12", "A", " checked ") + Row("40", "B", " checked "));
}

TEST_F(PageBuilder, TicksTheVoicesOfALongQueue) {
  std::string items, expected;
  std::vector<clsVoice> voices;
  for (int i = 0; i < 20'000; ++i) {
    const std::string id = std::to_string(i);
    items += "<item>" + id + "</item>";
    voices.push_back(Voice("A", id));
    expected += Row(id, "A", " checked ");
  }
  mQueue = Root("<queue>" + items + "</queue>");
  EXPECT_EQ(Rows(voices), expected);
}

TEST_F(PageBuilder, ComparesQueuedIdsExactly) {
  mQueue = Root("<queue><item>ab</item><item>112</item></queue>");
  EXPECT_EQ(Rows({Voice("A", "AB"), Voice("B", "12")}), Row("AB", "A") + Row("12", "B"));
}

TEST_F(PageBuilder, LooksForQueuedIdsInDirectItemsAlone) {
  mQueue = Root("<queue><old><item>12</item></old><entry>12</entry>12</queue>");
  EXPECT_EQ(Rows({Voice("A", "12")}), Row("12", "A"));
}

TEST_F(PageBuilder, TicksNothingForAnEmptyQueue) {
  mQueue = Root("<queue></queue>");
  EXPECT_EQ(Rows({Voice("A", "12")}), Row("12", "A"));
}

TEST_F(PageBuilder, MatchesAnIdWithAnApostropheByTheQueryThatItMakes) {
  mQueue = Root("<queue><item>1'2</item><item>3</item></queue>");
  EXPECT_EQ(Rows({Voice("A", "1'2"), Voice("B", "x' or '1'='1")}),
            Row("1'2", "A") + Row("x' or '1'='1", "B", " checked "));
}

TEST_F(PageBuilder, TicksTwiceWhatIsDefaultAndQueued) {
  mDefaults = {"Daniel", "Julie"};
  mQueue = Root("<queue><item>2</item></queue>");
  EXPECT_EQ(Rows({Voice("English (UK) Daniel", "2")}),
            kInfo + Row("2", "English (UK) Daniel", " checked  checked "));
}

TEST_F(PageBuilder, TicksQueuedVoicesAlthoughAVoiceIsInstalled) {
  mQueue = Root("<queue><item>2</item></queue>");
  EXPECT_THAT(Body({Voice("Anna", "2"), InstalledVoice("Zoe", "9")}),
              HasSubstr(Row("2", "Anna", " checked ")));
}

TEST_F(PageBuilder, GivesInstalledVoicesNoQueueTick) {
  mQueue = Root("<queue><item>9</item></queue>");
  EXPECT_THAT(Body({InstalledVoice("Zoe", "9")}), Not(HasSubstr(" checked >")));
}

TEST_F(PageBuilder, ShowsTheOtherVoicesWhereOneFails) {
  mDefaults = {"Daniel", "nobody"};
  mText = [](const std::string& key) -> std::string {
    if (key == "Default voices info") throw std::runtime_error("no text");
    return "T(" + key + ")";
  };
  EXPECT_EQ(Rows({Voice("English (UK) Anna", "1"), Voice("English (UK) Daniel", "2"),
                  Voice("English (UK) Eva", "3")}),
            Row("1", "English (UK) Anna") + Row("3", "English (UK) Eva"));
}

TEST_F(PageBuilder, LooksUpNoTextThatThePageDoesNotShow) {
  std::vector<std::string> keys;
  mText = [&](const std::string& key) {
    keys.push_back(key);
    return "";
  };
  Body({Voice("Anna", "1")});
  EXPECT_THAT(keys, ElementsAre("Available Voices"));
}

TEST_F(PageBuilder, NamesABoxAfterItsVoice) {
  EXPECT_EQ(CheckboxId(Voice("Anna", "12")), "check12");
}

}  // namespace
