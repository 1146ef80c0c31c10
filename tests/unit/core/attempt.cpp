// That a failing step is skipped, and what it leaves behind. No platform: the helper knows none.
//
// SPDX-License-Identifier: MIT
#include "core/attempt.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace {

using core::Attempt;
using core::AttemptOr;

TEST(Attempt, SaysThatAStepRanToItsEnd) {
  bool ran = false;
  EXPECT_TRUE(Attempt([&] { ran = true; }));
  EXPECT_TRUE(ran);
}

TEST(Attempt, SaysThatAStepFailed) {
  EXPECT_FALSE(Attempt([] { throw std::runtime_error("no"); }));
}

TEST(Attempt, StopsWhateverIsThrown) {
  EXPECT_FALSE(Attempt([] { throw 1; }));
}

TEST(Attempt, LeavesWhatAStepChangedBeforeItFailed) {
  int changed = 0;
  bool wentOn = false;
  Attempt([&] {
    changed = 1;
    throw std::runtime_error("no");
  });
  Attempt([&] { wentOn = true; });
  EXPECT_EQ(changed, 1);
  EXPECT_TRUE(wentOn);
}

TEST(Attempt, ForgetsTheAnswerOfAStep) {
  EXPECT_TRUE(Attempt([] { return false; }));
}

TEST(Attempt, FailsTheCaseForAProgrammingError) {
  EXPECT_NONFATAL_FAILURE(Attempt([] { throw std::logic_error("used after its end"); }),
                          "used after its end");
  EXPECT_NONFATAL_FAILURE(AttemptOr(0, []() -> int { throw std::out_of_range("no such item"); }),
                          "no such item");
}

TEST(AttemptOr, AnswersWhatTheStepAnswers) {
  EXPECT_EQ(AttemptOr(std::string("fallback"), [] { return std::string("answer"); }), "answer");
}

TEST(AttemptOr, AnswersTheFallbackWhenTheStepFails) {
  EXPECT_EQ(AttemptOr(7, []() -> int { throw std::runtime_error("no"); }), 7);
}

TEST(AttemptOr, AnswersTheFallbackWhateverIsThrown) {
  EXPECT_EQ(AttemptOr(7, []() -> int { throw "no"; }), 7);
}

TEST(AttemptOr, MovesAnAnswerThatCannotBeCopied) {
  const auto answer = AttemptOr(std::unique_ptr<int>(), [] { return std::make_unique<int>(3); });
  ASSERT_TRUE(answer);
  EXPECT_EQ(*answer, 3);
}

}  // namespace
