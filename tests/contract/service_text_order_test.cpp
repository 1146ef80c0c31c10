// Promises of platform/text_order.h.
//
// SPDX-License-Identifier: MIT
#include <algorithm>

#include "platform/text_order.h"
#include "tests/contract/service_case.h"

namespace {

using platform::CompareText;

class TextOrder : public ServiceCase {
 protected:
  static std::vector<std::string> Sorted(std::vector<std::string> names) {
    std::stable_sort(names.begin(), names.end(), [](const auto& left, const auto& right) {
      return CompareText(left, right) < 0;
    });
    return names;
  }
};

TEST_F(TextOrder, IgnoresLetterCase) {
  EXPECT_LT(CompareText("alpha", "Beta"), 0);
  EXPECT_GT(CompareText("beta", "Alpha"), 0);
  EXPECT_EQ(CompareText("Daniel", "DANIEL"), 0);
  EXPECT_EQ(CompareText("\u00c9lise", "\u00e9lise"), 0);
}

TEST_F(TextOrder, TellsLettersApart) { EXPECT_NE(CompareText("Anna", "Anne"), 0); }

TEST_F(TextOrder, TellsAccentsApart) { EXPECT_NE(CompareText("Elise", "\u00c9lise"), 0); }

TEST_F(TextOrder, PutsAShorterNameFirst) { EXPECT_LT(CompareText("Ann", "Anna"), 0); }

TEST_F(TextOrder, ComparesEmptyTexts) {
  EXPECT_EQ(CompareText("", ""), 0);
  EXPECT_LT(CompareText("", "a"), 0);
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

TEST_F(TextOrder, SurvivesTextThatIsNotUtf8) {
  EXPECT_NO_THROW(CompareText("\xFF\xC3", "a"));
  EXPECT_EQ(CompareText("\xFF", "\xFF"), 0);
}

}  // namespace
