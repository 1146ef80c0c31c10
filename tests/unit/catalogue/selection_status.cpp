// Counting the ticks and saying so.
//
// SPDX-License-Identifier: MIT
#include "catalogue/selection_status.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using platform::InputState;

std::vector<clsVoice> VoicesOfSizes(const std::vector<int>& sizes) {
  std::vector<clsVoice> voices(sizes.size());
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    voices[i].Size = static_cast<std::int16_t>(sizes[i]);
  }
  return voices;
}

constexpr bool kTicked = true;
constexpr bool kGreyed = true;

std::string Status(std::int16_t count, std::int16_t megabytes) {
  return StatusText({count, megabytes}, [](const std::string& key) { return "T(" + key + ")"; });
}

TEST(CountSelection, CountsTickedBoxesAndSumsTheirSizes) {
  const auto selection = CountSelection({{"a", kTicked}, {"b", !kTicked}, {"c", kTicked}},
                                        VoicesOfSizes({10, 200, 3000}));
  EXPECT_EQ(selection.count, 2);
  EXPECT_EQ(selection.megabytes, 3010);
}

TEST(CountSelection, CountsNothingOnAPageWithoutBoxes) {
  const auto selection = CountSelection({}, VoicesOfSizes({10}));
  EXPECT_EQ(selection.count, 0);
  EXPECT_EQ(selection.megabytes, 0);
}

TEST(CountSelection, LeavesOutGreyedBoxes) {
  const auto selection =
      CountSelection({{"a", kTicked}, {"b", kTicked, kGreyed}, {"c", false, kGreyed}},
                     VoicesOfSizes({10, 200, 3000}));
  EXPECT_EQ(selection.count, 1);
  EXPECT_EQ(selection.megabytes, 10);
}

TEST(CountSelection, PairsBoxesWithVoicesByPlaceNotById) {
  std::vector<clsVoice> voices = VoicesOfSizes({10, 200});
  voices[0].ID = "1";
  voices[1].ID = "2";
  EXPECT_EQ(CountSelection({{"check2", kTicked}}, voices).megabytes, 10);
}

TEST(CountSelection, CountsABoxThatHasNoVoiceWithoutASize) {
  const auto selection = CountSelection({{"a", kTicked}, {"b", kTicked}}, VoicesOfSizes({10}));
  EXPECT_EQ(selection.count, 2);
  EXPECT_EQ(selection.megabytes, 10);
}

TEST(CountSelection, SumsUpToTheEndOf16Bits) {
  const auto selection =
      CountSelection({{"a", kTicked}, {"b", kTicked}}, VoicesOfSizes({32000, 767}));
  EXPECT_EQ(selection.megabytes, 32767);
}

TEST(CountSelection, PassesOverAnAdditionThatOverflows16Bits) {
  const auto selection = CountSelection({{"a", kTicked}, {"b", kTicked}, {"c", kTicked}},
                                        VoicesOfSizes({32000, 768, 5}));
  EXPECT_EQ(selection.count, 3);
  EXPECT_EQ(selection.megabytes, 32005);
}

TEST(CountSelection, PassesOverAnAdditionThatOverflowsBelow) {
  const auto selection = CountSelection({{"a", kTicked}, {"b", kTicked}, {"c", kTicked}},
                                        VoicesOfSizes({-32000, -769, -5}));
  EXPECT_EQ(selection.megabytes, -32005);
}

TEST(CountSelection, CountsNoFurtherThan16Bits) {
  const std::vector<InputState> inputs(40000, InputState{"a", kTicked});
  EXPECT_EQ(CountSelection(inputs, {}).count, 32767);
}

TEST(StatusText, SpeaksOfOneVoice) { EXPECT_EQ(Status(1, 75), "1 T(voice,) 75MB"); }

TEST(StatusText, SpeaksOfSeveralVoices) {
  EXPECT_EQ(Status(2, 150), "2 T(voices,) 150MB");
  EXPECT_EQ(Status(21, 150), "21 T(voices,) 150MB");
}

TEST(StatusText, IsEmptyWhenNothingIsSelected) { EXPECT_EQ(Status(0, 0), ""); }

TEST(SpokenStatusText, SaysThatNothingIsSelected) {
  const auto key = [](const std::string& text) { return text; };
  EXPECT_EQ(SpokenStatusText({0, 0}, key), "0 voices, 0MB");
  EXPECT_EQ(SpokenStatusText({1, 75}, key), "1 voice, 75MB");
}

TEST(StatusText, WritesPlainNumbers) {
  EXPECT_EQ(Status(1000, 32767), "1000 T(voices,) 32767MB");
  EXPECT_EQ(Status(1, -3), "1 T(voice,) -3MB");
}

TEST(StatusText, LooksUpTheKeyWithItsComma) {
  const auto key = [](const std::string& text) { return text; };
  EXPECT_EQ(StatusText({1, 75}, key), "1 voice, 75MB");
  EXPECT_EQ(StatusText({3, 210}, key), "3 voices, 210MB");
}

}  // namespace
