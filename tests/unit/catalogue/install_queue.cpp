// The queue's text, as the installer program reads it.
//
// SPDX-License-Identifier: MIT
#include "catalogue/install_queue.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

std::vector<clsVoice> Voices(const std::vector<std::string>& ids) {
  std::vector<clsVoice> voices(ids.size());
  for (std::size_t i = 0; i < ids.size(); ++i) voices[i].ID = ids[i];
  return voices;
}

TEST(InstallQueue, HoldsTheIdsOfTickedVoices) {
  EXPECT_EQ(QueueText({{"check12", true}, {"check13", false}, {"check40", true}},
                      Voices({"12", "13", "40"})),
            "<queue><item>12</item><item>40</item></queue>");
}

TEST(InstallQueue, IsEmptyWhenNothingIsTicked) {
  EXPECT_EQ(QueueText({{"check12", false}}, Voices({"12"})), "<queue></queue>");
  EXPECT_EQ(QueueText({}, {}), "<queue></queue>");
}

TEST(InstallQueue, KeepsTheOrderOfTheOfferedVoices) {
  EXPECT_EQ(QueueText({{"check1", true}, {"check2", true}}, Voices({"2", "1"})),
            "<queue><item>2</item><item>1</item></queue>");
}

TEST(InstallQueue, LeavesOutAVoiceWhoseBoxIsNotFound) {
  EXPECT_EQ(QueueText({{"check1", true}}, Voices({"1", "2"})), "<queue><item>1</item></queue>");
}

TEST(InstallQueue, LeavesOutABoxThatBelongsToNoOfferedVoice) {
  EXPECT_EQ(QueueText({{"check1", true}, {"check9", true}}, Voices({"1"})),
            "<queue><item>1</item></queue>");
}

TEST(InstallQueue, FindsBoxesByTheirWholeId) {
  EXPECT_EQ(QueueText({{"1", true}, {"Check1", true}, {"check12", true}}, Voices({"1"})),
            "<queue></queue>");
}

TEST(InstallQueue, LooksAtNoGreyedBox) {
  // The greyed rows of installed voices repeat the id of an offered one, whose own box may have
  // been lost in a name such as "<!--".
  EXPECT_EQ(QueueText({{"check1", false}, {"check1", true, true}}, Voices({"1"})),
            "<queue></queue>");
  EXPECT_EQ(QueueText({{"check1", false, true}, {"check1", true}}, Voices({"1"})),
            "<queue><item>1</item></queue>");
  EXPECT_EQ(QueueText({{"check1", true, true}}, Voices({"1"})), "<queue></queue>");
}

TEST(InstallQueue, LooksAtTheFirstBoxOfAnIdThatSeveralVoicesHave) {
  EXPECT_EQ(QueueText({{"check1", true}, {"check1", false}}, Voices({"1", "1"})),
            "<queue><item>1</item><item>1</item></queue>");
  EXPECT_EQ(QueueText({{"check1", false}, {"check1", true}}, Voices({"1", "1"})),
            "<queue></queue>");
}

TEST(InstallQueue, LeavesOutAVoiceThatHasABoxTooManyUnlessAllAreTicked) {
  EXPECT_EQ(QueueText({{"check1", true}, {"check1", false}}, Voices({"1"})), "<queue></queue>");
  EXPECT_EQ(QueueText({{"check1", false}, {"check1", true}}, Voices({"1"})), "<queue></queue>");
  EXPECT_EQ(QueueText({{"check1", true}, {"check1", true}}, Voices({"1"})),
            "<queue><item>1</item></queue>");
}

TEST(InstallQueue, IsRefusedForATickedIdThatCouldBringOthersWithIt) {
  for (const char* id : {"7</item><item>9", "a<b", "a&amp;b", "a&b"}) {
    const std::string box = std::string("check") + id;
    EXPECT_THROW(QueueText({{box, true}}, Voices({id})), std::runtime_error) << id;
    EXPECT_EQ(QueueText({{box, false}, {"check1", true}}, Voices({id, "1"})),
              "<queue><item>1</item></queue>")
        << id;
  }
}

TEST(InstallQueue, HoldsOtherIdsAsTheCatalogueHasThem) {
  EXPECT_EQ(QueueText({{"check' or\n\"1\">", true}}, Voices({"' or\n\"1\">"})),
            "<queue><item>' or\n\"1\"></item></queue>");
}

}  // namespace
