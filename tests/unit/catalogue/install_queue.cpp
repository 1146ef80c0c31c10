// The queue's text, as the installer program reads it.
//
// SPDX-License-Identifier: MIT
#include "catalogue/install_queue.h"

#include <gtest/gtest.h>

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

TEST(InstallQueue, LooksAtTheFirstBoxOfAnId) {
  // The greyed rows of installed voices repeat the id of an offered one.
  EXPECT_EQ(QueueText({{"check1", false}, {"check1", true, true}}, Voices({"1"})),
            "<queue></queue>");
  EXPECT_EQ(QueueText({{"check1", true}, {"check1", false, true}}, Voices({"1"})),
            "<queue><item>1</item></queue>");
}

TEST(InstallQueue, LooksAtTheTickAlone) {
  EXPECT_EQ(QueueText({{"check1", true, true}}, Voices({"1"})), "<queue><item>1</item></queue>");
}

TEST(InstallQueue, HoldsIdsAsTheCatalogueHasThem) {
  EXPECT_EQ(QueueText({{"checka<b&c", true}}, Voices({"a<b&c"})),
            "<queue><item>a<b&c</item></queue>");
}

}  // namespace
