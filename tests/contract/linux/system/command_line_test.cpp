// How command lines are split: the answers are those of Windows' own function.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/system/command_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using platform::ProgramCandidates;
using platform::SplitArguments;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(CommandLine, PartsArgumentsAtBlanksAndTabs) {
  EXPECT_THAT(SplitArguments("  a \t b  "), ElementsAre("a", "b"));
  EXPECT_THAT(SplitArguments(""), IsEmpty());
  EXPECT_THAT(SplitArguments(" \t"), IsEmpty());
}

TEST(CommandLine, KeepsBlanksInsideQuotes) {
  EXPECT_THAT(SplitArguments("\"a b\" c"), ElementsAre("a b", "c"));
  EXPECT_THAT(SplitArguments("a\" \"b"), ElementsAre("a b"));
  EXPECT_THAT(SplitArguments("\"a b"), ElementsAre("a b"));
}

TEST(CommandLine, KeepsEmptyArguments) {
  EXPECT_THAT(SplitArguments("\"\" a \"\""), ElementsAre("", "a", ""));
}

TEST(CommandLine, HalvesBackslashesBeforeAQuoteOnly) {
  EXPECT_THAT(SplitArguments("a\\b\\\\c \\\\server"), ElementsAre("a\\b\\\\c", "\\\\server"));
  EXPECT_THAT(SplitArguments("\"a\\\\\" b"), ElementsAre("a\\", "b"));
  EXPECT_THAT(SplitArguments("\"C:\\dir\\\\\""), ElementsAre("C:\\dir\\"));
}

TEST(CommandLine, TakesABackslashAndAQuoteForAQuote) {
  EXPECT_THAT(SplitArguments("a\\\"b"), ElementsAre("a\"b"));
  EXPECT_THAT(SplitArguments("\\\\\\\"a b"), ElementsAre("\\\"a", "b"));
}

TEST(CommandLine, TakesThreeQuotesInARowForOne) {
  EXPECT_THAT(SplitArguments("\"a\"\"b c"), ElementsAre("a\"b", "c"));
  EXPECT_THAT(SplitArguments("\"\"\"a b"), ElementsAre("\"a", "b"));
  EXPECT_THAT(SplitArguments("\"\"\"\"a b"), ElementsAre("\"a b"));
}

std::vector<std::string> Programs(std::string_view line) {
  std::vector<std::string> programs;
  for (const auto& candidate : ProgramCandidates(line)) programs.push_back(candidate.program);
  return programs;
}

TEST(CommandLine, TakesAQuotedProgramAsItIs) {
  EXPECT_THAT(Programs("\"C:\\a b\\c.exe\" /d"), ElementsAre("C:\\a b\\c.exe"));
  EXPECT_EQ(ProgramCandidates("\"C:\\a b\\c.exe\" /d").at(0).rest, " /d");
  EXPECT_THAT(Programs("\"C:\\a b"), ElementsAre("C:\\a b"));
}

TEST(CommandLine, DoesNotTakeABackslashInAProgramForAnEscape) {
  EXPECT_THAT(Programs("\"C:\\dir\\\" x"), ElementsAre("C:\\dir\\"));
}

TEST(CommandLine, OffersEveryReadingOfAnUnquotedProgram) {
  EXPECT_THAT(
      Programs(" C:\\Program Files\\r.exe  /a"),
      ElementsAre("C:\\Program", "C:\\Program Files\\r.exe", "C:\\Program Files\\r.exe  /a"));
  EXPECT_EQ(ProgramCandidates("a  b").at(0).rest, "  b");
}

TEST(CommandLine, OffersNothingForAnEmptyLine) {
  EXPECT_THAT(Programs(""), IsEmpty());
  EXPECT_THAT(Programs(" \t "), IsEmpty());
}

}  // namespace
