// Promises of platform/system/text_order.h.
//
// SPDX-License-Identifier: MIT
#include "platform/system/text_order.h"

#include <algorithm>

#include "core/text.h"
#include "tests/contract/services_case.h"

namespace {

using platform::SortKey;

/// Negative, 0 or positive as `left` comes before, with or after `right`.
int Compare(const std::string& left, const std::string& right) {
  return SortKey(left).compare(SortKey(right));
}

class TextOrder : public ServiceCase {
 protected:
  static std::vector<std::string> Sorted(std::vector<std::string> names) {
    std::ranges::stable_sort(names, {}, SortKey);
    return names;
  }
};

TEST_F(TextOrder, IgnoresLetterCase) {
  EXPECT_LT(Compare("alpha", "Beta"), 0);
  EXPECT_GT(Compare("beta", "Alpha"), 0);
  EXPECT_EQ(Compare("Daniel", "DANIEL"), 0);
  EXPECT_EQ(Compare("\u00c9lise", "\u00e9lise"), 0);
}

TEST_F(TextOrder, TellsLettersApart) { EXPECT_NE(Compare("Anna", "Anne"), 0); }

TEST_F(TextOrder, TellsAccentsApart) { EXPECT_NE(Compare("Elise", "\u00c9lise"), 0); }

TEST_F(TextOrder, PutsAShorterNameFirst) { EXPECT_LT(Compare("Ann", "Anna"), 0); }

TEST_F(TextOrder, ComparesEmptyTexts) {
  EXPECT_EQ(Compare("", ""), 0);
  EXPECT_LT(Compare("", "a"), 0);
}

TEST_F(TextOrder, SortsRealisticNamesAlikeEverywhere) {
  const std::vector<std::string> expected = {"Arabic Tarik",        "Czech Zuzana",
                                             "English (UK) Daniel", "english (uk) Kate",
                                             "English (US) Ava",    "French Aurelie",
                                             "French \u00c9lise",   "French Elodie",
                                             "German Anna",         "Norwegian \u00c5se",
                                             "Norwegian Bente",     "Portuguese (Brazil) Felipe",
                                             "Portuguese Joana",    "Spanish (Spain) M\u00f3nica",
                                             "Spanish Jorge",       "Swedish Alva",
                                             "Swedish \u00d6rjan",  "Swedish Oskar"};
  std::vector<std::string> shuffled(expected.rbegin(), expected.rend());
  EXPECT_EQ(Sorted(shuffled), expected);
}

TEST_F(TextOrder, OrdersTextsOfAnyLength) {
  const std::string alike = core::ReplaceAll(std::string(5'000, 'x'), "x", "\u00d6z");
  EXPECT_LT(Compare(alike + "a", alike + "B"), 0);
  EXPECT_EQ(Compare(alike + "a", alike + "A"), 0);
}

TEST_F(TextOrder, SurvivesTextThatIsNotUtf8) {
  EXPECT_NO_THROW(Compare("\xFF\xC3", "a"));
  EXPECT_EQ(Compare("\xFF", "\xFF"), 0);
}

}  // namespace
