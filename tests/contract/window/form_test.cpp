// Promises of platform/window/form.h about the form itself. Its controls are in
// window_control_test.cpp.
//
// SPDX-License-Identifier: MIT
#include <stdexcept>

#include "platform/system/program.h"
#include "tests/contract/window_case.h"

namespace {

using testing::ElementsAre;
using testing::SizeIs;

using Form = WindowCase;

TEST_F(Form, AnswersItsNameAndCaption) {
  const auto form = NewForm();
  EXPECT_EQ(form->Name(), "form");
  EXPECT_EQ(form->Caption(), "");
  form->SetCaption("Välj röster");
  EXPECT_EQ(form->Caption(), "Välj röster");
}

TEST_F(Form, ActivatesNoWindowWithoutATitle) {
  const auto form = NewForm();
  form->SetCaption("");
  ShowAndSee(*form);
  EXPECT_ANY_THROW(platform::ActivateWindow(""));
}

TEST_F(Form, HasTheClientSizeThatItWasMadeWith) {
  const auto form = NewForm();
  EXPECT_FLOAT_EQ(form->ClientWidth(), kWidth);
  EXPECT_FLOAT_EQ(form->ClientHeight(), kHeight);
  ShowAndSee(*form);
  EXPECT_FLOAT_EQ(form->ClientWidth(), kWidth);
  EXPECT_FLOAT_EQ(form->ClientHeight(), kHeight);
}

TEST_F(Form, ListsItsControlsInTheOrderOfAdding) {
  const auto form = NewForm();
  form->AddControl("WebBrowser", "first", 300, 300);
  form->AddControl("CommandButton", "second", 300, 300);
  form->AddControl("Label", "third", 300, 300);
  form->AddControl("PictureBox", "fourth", 300, 300);
  std::vector<std::string> kinds, names;
  for (const auto& control : form->Controls()) {
    kinds.push_back(control.Kind());
    names.push_back(control.Name());
  }
  EXPECT_THAT(kinds, ElementsAre("WebBrowser", "CommandButton", "Label", "PictureBox"));
  EXPECT_THAT(names, ElementsAre("first", "second", "third", "fourth"));
}

TEST_F(Form, RefusesAControlOfAnUnknownKind) {
  const auto form = NewForm();
  EXPECT_ANY_THROW(form->AddControl("Slider", "slider", 300, 300));
  EXPECT_THAT(form->Controls(), SizeIs(0));
}

TEST_F(Form, TellsTheResizeHandlerBeforeTheWindowIsSeen) {
  const auto form = NewForm();
  int told = 0;
  bool wasSeen = true;
  form->OnResize([&] {
    if (told++ == 0) wasSeen = peer::IsSeen("form");
  });
  EXPECT_EQ(told, 0);
  form->Show();
  EXPECT_GE(told, 1);
  EXPECT_FALSE(wasSeen);
}

TEST_F(Form, TellsTheResizeHandlerWhenThePersonDragsTheWindow) {
  const auto form = NewForm();
  ShowAndSee(*form);
  int told = 0;
  form->OnResize([&] { ++told; });
  peer::Resize("form", 7500, 3000);
  EXPECT_TRUE(peer::RunUntil(
      [&] { return told > 0 && form->ClientWidth() == 7500 && form->ClientHeight() == 3000; }));
}

TEST_F(Form, MayBecomeSmallerThanItsControls) {
  const auto form = NewForm();
  form->AddControl("CommandButton", "button", 3000, 3000).SetCaption("A long caption");
  form->AddControl("WebBrowser", "browser", 5000, 3000);
  ShowAndSee(*form);
  peer::Resize("form", 1500, 150);
  EXPECT_TRUE(
      peer::RunUntil([&] { return form->ClientWidth() == 1500 && form->ClientHeight() == 150; }));
}

TEST_F(Form, KnowsWhetherItIsMinimised) {
  const auto form = NewForm();
  ShowAndSee(*form);
  EXPECT_FALSE(form->IsMinimised());
  peer::Minimise("form");
  EXPECT_TRUE(peer::RunUntil([&] { return form->IsMinimised(); }));
  peer::Restore("form");
  EXPECT_TRUE(peer::RunUntil([&] { return !form->IsMinimised(); }));
  EXPECT_FLOAT_EQ(form->ClientWidth(), kWidth);
}

TEST_F(Form, GoesOutOfSightWhenHiddenAndComesBackWhenShown) {
  const auto form = NewForm();
  ShowAndSee(*form);
  form->Hide();
  EXPECT_TRUE(peer::RunUntil([] { return !peer::IsSeen("form"); }));
  ShowAndSee(*form);
}

TEST_F(Form, TellsUnloadThenGoesThenTellsUnloadedFromTheLoop) {
  const auto form = NewForm();
  std::vector<std::string> told;
  form->OnUnload([&] { told.push_back(peer::IsSeen("form") ? "unload, seen" : "unload"); });
  form->OnUnloaded([&] { told.push_back("unloaded"); });
  ShowAndSee(*form);
  form->Unload();
  EXPECT_THAT(told, ElementsAre("unload, seen"));
  EXPECT_TRUE(peer::RunUntil([&] { return told.size() == 2; }));
  EXPECT_THAT(told, ElementsAre("unload, seen", "unloaded"));
}

TEST_F(Form, UnloadsWhenThePersonClosesTheWindow) {
  const auto form = NewForm();
  std::vector<std::string> told;
  form->OnUnload([&] { told.push_back("unload"); });
  form->OnUnloaded([&] { told.push_back("unloaded"); });
  ShowAndSee(*form);
  peer::Close("form");
  EXPECT_TRUE(peer::RunUntil([&] { return told.size() == 2; }));
  EXPECT_THAT(told, ElementsAre("unload", "unloaded"));
}

TEST_F(Form, UnloadsOnceHoweverOftenItIsAsked) {
  const auto form = NewForm();
  int unload = 0, unloaded = 0;
  form->OnUnload([&] {
    ++unload;
    form->Unload();
  });
  form->OnUnloaded([&] {
    ++unloaded;
    form->Unload();
  });
  form->Show();
  form->Unload();
  form->Unload();
  EXPECT_TRUE(peer::RunUntil([&] { return unloaded > 0; }));
  platform::ProcessPendingEvents();
  EXPECT_EQ(unload, 1);
  EXPECT_EQ(unloaded, 1);
}

TEST_F(Form, GoesEvenWhenTheUnloadHandlerThrows) {
  const auto form = NewForm();
  bool unloaded = false;
  form->OnUnload([] { throw std::runtime_error("no"); });
  form->OnUnloaded([&] { unloaded = true; });
  ShowAndSee(*form);
  form->Unload();
  EXPECT_TRUE(peer::RunUntil([&] { return unloaded; }));
}

TEST_F(Form, MayBeDestroyedByItsOwnerWhenItHasGone) {
  auto form = NewForm();
  form->OnUnloaded([&] { form.reset(); });
  ShowAndSee(*form);
  form->Unload();
  EXPECT_TRUE(peer::RunUntil([&] { return form == nullptr; }));
}

TEST_F(Form, TellsNothingAfterItWasDestroyed) {
  auto form = NewForm();
  int told = 0;
  form->OnUnload([&] { ++told; });
  form->OnUnloaded([&] { ++told; });
  ShowAndSee(*form);
  form->OnResize([&] { ++told; });
  form.reset();
  platform::ProcessPendingEvents();
  EXPECT_EQ(told, 0);
}

TEST_F(Form, DestroyedWhileItsEndIsStillToBeToldTellsNothingMore) {
  auto form = NewForm();
  int unloaded = 0;
  form->OnUnloaded([&] { ++unloaded; });
  form->Show();
  form->Unload();
  form.reset();
  platform::RunEventLoop();
  platform::ProcessPendingEvents();
  EXPECT_EQ(unloaded, 0);
}

TEST_F(Form, EndsTheEventLoopWhenItHasGone) {
  auto form = NewForm();
  bool unloaded = false;
  platform::Timer timer(20, [&] { form->Unload(); });
  form->OnUnloaded([&] { unloaded = true; });
  form->Show();
  timer.SetEnabled(true);
  platform::RunEventLoop();
  EXPECT_TRUE(unloaded);
}

TEST_F(Form, IsLoadedBeforeItIsShown) {
  auto form = NewForm();
  int ticks = 0;
  platform::Timer timer(20, [&] {
    if (++ticks == 2) form.reset();
  });
  timer.SetEnabled(true);
  platform::RunEventLoop();
  EXPECT_EQ(ticks, 2);
}

TEST_F(Form, EventLoopReturnsAtOnceWithoutAForm) {
  platform::RunEventLoop();
  SUCCEED();
}

TEST(Screen, HasAsManyTwipsToThePixelBothWays) {
  EXPECT_GT(platform::TwipsPerPixelX(), 0);
  EXPECT_FLOAT_EQ(platform::TwipsPerPixelX(), platform::TwipsPerPixelY());
}

}  // namespace
