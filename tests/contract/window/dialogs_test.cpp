// Promises of platform/window/dialogs.h, and of the form and the message together.
//
// SPDX-License-Identifier: MIT
#include "tests/contract/window_case.h"

namespace {

using testing::ElementsAre;

class Message : public WindowCase {
 protected:
  Message() {
    peer::WhenAMessageIsShown([this](const peer::Message& message) {
      seen.push_back(message.title + ": " + message.text + (message.rightToLeft ? " (rtl)" : ""));
    });
  }
  std::vector<std::string> seen;
};

TEST_F(Message, ShowsItsTextAndTitleUntilItIsClosed) {
  platform::ShowMessage("Failed <b>to</b> access 100% & more", "Velor Voice Setup", false);
  EXPECT_THAT(seen, ElementsAre("Velor Voice Setup: Failed <b>to</b> access 100% & more"));
}

TEST_F(Message, IsWrittenRightToLeftWhereAsked) {
  platform::ShowMessage("تعذر الوصول", "Velor Voice Setup", true);
  EXPECT_THAT(seen, ElementsAre("Velor Voice Setup: تعذر الوصول (rtl)"));
}

TEST_F(Message, MayBeShownWhileTheFormIsSeenAndWhileItIsHidden) {
  const auto form = NewForm();
  ShowAndSee(*form);
  platform::ShowMessage("one", "title", false);
  form->Hide();
  platform::ShowMessage("two", "title", false);
  EXPECT_THAT(seen, ElementsAre("title: one", "title: two"));
}

TEST_F(Message, MayBeShownByTheUnloadHandler) {
  const auto form = NewForm();
  bool unloaded = false;
  form->OnUnload([&] {
    platform::ShowMessage("Get more voices", "title", false);
    seen.push_back("closed");
  });
  form->OnUnloaded([&] { unloaded = true; });
  ShowAndSee(*form);
  peer::Close("form");
  EXPECT_TRUE(peer::RunUntil([&] { return unloaded; }));
  EXPECT_THAT(seen, ElementsAre("title: Get more voices", "closed"));
}

TEST_F(Message, HandlesEventsWhileItIsShown) {
  int ticks = 0;
  bool ticked = false;
  platform::Timer timer(5, [&] { ++ticks; });
  timer.SetEnabled(true);
  peer::WhenAMessageIsShown(
      [&](const peer::Message&) { ticked = peer::RunUntil([&] { return ticks > 0; }); });
  platform::ShowMessage("text", "title", false);
  EXPECT_TRUE(ticked);
}

TEST_F(Message, UnloadAskedForWhileItsOwnMessageIsShownDoesNothing) {
  const auto form = NewForm();
  int unloads = 0, unloaded = 0;
  form->OnUnload([&] {
    ++unloads;
    platform::ShowMessage("text", "title", false);
  });
  form->OnUnloaded([&] { ++unloaded; });
  peer::WhenAMessageIsShown([&](const peer::Message&) { form->Unload(); });
  form->Show();
  form->Unload();
  EXPECT_TRUE(peer::RunUntil([&] { return unloaded == 1; }));
  EXPECT_EQ(unloads, 1);
}

}  // namespace
