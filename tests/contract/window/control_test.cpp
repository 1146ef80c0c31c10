// Promises of platform/window/control.h.
//
// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>
#include <stdexcept>

#include "platform/errors.h"
#include "tests/contract/window_case.h"

namespace {

class Control : public WindowCase {
 protected:
  std::unique_ptr<platform::Form> form = NewForm();
  platform::Control picture = form->AddControl("PictureBox", "picture", 1500, 3000);
  platform::Control browser = form->AddControl("WebBrowser", "browser", 4000, 3000);
  platform::Control label = form->AddControl("Label", "label", 2000, 495);
  platform::Control button = form->AddControl("CommandButton", "button", 1215, 495);
};

TEST_F(Control, BeginsInTheCornerWithItsDesignSize) {
  EXPECT_EQ(button.Left(), 0);
  EXPECT_EQ(button.Top(), 0);
  EXPECT_EQ(button.Width(), 1215);
  EXPECT_EQ(button.Height(), 495);
  EXPECT_EQ(button.Tag(), "");
  EXPECT_TRUE(button.Enabled());
}

TEST_F(Control, KeepsTwipsAsTheyWereSet) {
  for (auto& control : form->Controls()) {
    control.SetLeft(7.3F);
    control.SetTop(-0.2F);
    control.SetWidth(1234.567F);
    control.SetHeight(0.01F);
    EXPECT_EQ(control.Left(), 7.3F) << control.Kind();
    EXPECT_EQ(control.Top(), -0.2F) << control.Kind();
    EXPECT_EQ(control.Width(), 1234.567F) << control.Kind();
    EXPECT_EQ(control.Height(), 0.01F) << control.Kind();
  }
  ShowAndSee(*form);
  EXPECT_EQ(button.Width(), 1234.567F);
}

TEST_F(Control, RefusesANegativeSizeAndKeepsTheOldOne) {
  for (auto& control : form->Controls()) {
    const float width = control.Width(), height = control.Height();
    EXPECT_THROW(control.SetWidth(-1), platform::Unsupported) << control.Kind();
    EXPECT_THROW(control.SetHeight(-0.01F), platform::Unsupported) << control.Kind();
    EXPECT_THROW(control.SetHeight(std::numeric_limits<float>::quiet_NaN()), platform::Unsupported);
    EXPECT_EQ(control.Width(), width);
    EXPECT_EQ(control.Height(), height);
  }
}

TEST_F(Control, MayHaveNoSizeAndLieOutside) {
  button.SetWidth(0);
  button.SetHeight(0);
  button.SetTop(-3000);
  button.SetLeft(100000);
  ShowAndSee(*form);
  EXPECT_EQ(button.Top(), -3000);
  EXPECT_EQ(button.Height(), 0);
}

TEST_F(Control, IsSeenWhereItsTwipsSay) {
  const float px = platform::TwipsPerPixelX();
  browser.SetLeft(100 * px);
  browser.SetTop(-2 * px);
  browser.SetWidth(kWidth - 100 * px);
  browser.SetHeight(150 * px);
  ShowAndSee(*form);
  const int right = static_cast<int>(std::lround(kWidth / px));
  const peer::Pixels expected = {100, -2, right - 100, 150};
  EXPECT_TRUE(peer::RunUntil([&] { return peer::PlaceOf("form", "browser") == expected; }));
}

TEST_F(Control, CountsFromTheRightEdgeInARightToLeftForm) {
  const float px = platform::TwipsPerPixelX();
  form->SetRightToLeft(true);
  button.SetLeft(10 * px);
  button.SetTop(20 * px);
  button.SetWidth(80 * px);
  button.SetHeight(34 * px);
  ShowAndSee(*form);
  const int right = static_cast<int>(std::lround(kWidth / px));
  const peer::Pixels expected = {right - 90, 20, 80, 34};
  EXPECT_TRUE(peer::RunUntil([&] { return peer::PlaceOf("form", "button") == expected; }));
  EXPECT_EQ(button.Left(), 10 * px);

  peer::Resize("form", kWidth + 100 * px, kHeight);
  const peer::Pixels moved = {right + 10, 20, 80, 34};
  EXPECT_TRUE(peer::RunUntil([&] { return peer::PlaceOf("form", "button") == moved; }));
}

TEST_F(Control, IsPlacedAnewByTheResizeHandler) {
  const float px = platform::TwipsPerPixelX();
  form->OnResize([&] { button.SetLeft(form->ClientWidth() - button.Width()); });
  button.SetWidth(60 * px);
  ShowAndSee(*form);
  peer::Resize("form", 300 * px, 200 * px);
  EXPECT_TRUE(peer::RunUntil([&] { return peer::PlaceOf("form", "button").left == 240; }));
  peer::Resize("form", 500 * px, 220 * px);
  EXPECT_TRUE(peer::RunUntil([&] { return peer::PlaceOf("form", "button").left == 440; }));
}

TEST_F(Control, IsExactlyAsLargeAsSaidHoweverLongItsCaption) {
  const float px = platform::TwipsPerPixelX();
  button.SetCaption("A caption that is far too long for so small a button");
  label.SetCaption("A status line that is far too long for so small a label");
  for (auto* control : {&button, &label}) {
    control->SetWidth(50 * px);
    control->SetHeight(32 * px);
  }
  ShowAndSee(*form);
  const peer::Pixels expected = {0, 0, 50, 32};
  EXPECT_TRUE(peer::RunUntil([&] { return peer::PlaceOf("form", "button") == expected; }));
  EXPECT_TRUE(peer::RunUntil([&] { return peer::PlaceOf("form", "label") == expected; }));
}

TEST_F(Control, KeepsCaptionAndToolTip) {
  for (auto* control : {&button, &label}) {
    EXPECT_EQ(control->Caption(), "");
    for (const auto* caption : {"&Install", "Q&&A _x_ &", "تثبيت", ""}) {
      control->SetCaption(caption);
      EXPECT_EQ(control->Caption(), caption);
    }
  }
  for (auto& control : form->Controls()) {
    EXPECT_EQ(control.ToolTipText(), "");
    for (const auto* text : {" Starts <the> installer & closes ", ""}) {
      control.SetToolTipText(text);
      EXPECT_EQ(control.ToolTipText(), text) << control.Kind();
    }
  }
}

TEST_F(Control, HasWhatItsKindHasAndThrowsForTheRest) {
  for (auto* control : {&button, &label}) {
    EXPECT_NO_THROW(control->SetFont({"No Such Face", 177}));
    EXPECT_NO_THROW(control->SetFont({"", 0}));
    EXPECT_NO_THROW(control->SetRightToLeft(true));
  }
  for (auto* control : {&picture, &browser}) {
    EXPECT_THROW(control->Caption(), platform::Unsupported);
    EXPECT_THROW(control->SetCaption("x"), platform::Unsupported);
    EXPECT_THROW(control->SetFont({"x", 0}), platform::Unsupported);
    EXPECT_THROW(control->SetRightToLeft(true), platform::Unsupported);
  }
  for (auto* control : {&picture, &browser, &button})
    EXPECT_THROW(control->Announce("x"), platform::Unsupported);
  for (auto* control : {&picture, &browser, &label})
    EXPECT_THROW(control->OnClick([] {}), platform::Unsupported);
  for (auto& control : form->Controls()) EXPECT_THROW(control.Items(), platform::Unsupported);
}

TEST_F(Control, AnnouncesEachTextWhileTheFormIsActive) {
  label.SetCaption("seen");
  ShowAndSee(*form);
  std::size_t count = 0;
  for (const auto* text : {"active", "again", "again", "0 röster"}) {
    label.Announce(text);
    label.Announce("");
    ++count;
    ASSERT_TRUE(peer::RunUntil([&] { return peer::Announced().size() == count; })) << text;
  }
  EXPECT_THAT(peer::Announced(), testing::ElementsAre("active", "again", "again", "0 röster"));
  EXPECT_EQ(label.Caption(), "seen");
}

TEST_F(Control, AnnouncesTheLastTextOnceWhenTheFormBecomesActive) {
  label.Announce("first");
  label.Announce("last");
  platform::ProcessPendingEvents();
  EXPECT_THAT(peer::Announced(), testing::IsEmpty());
  ShowAndSee(*form);
  EXPECT_TRUE(peer::RunUntil([] { return !peer::Announced().empty(); }));
  label.Announce("later");
  EXPECT_TRUE(peer::RunUntil([] { return peer::Announced().size() == 2; }));
  EXPECT_THAT(peer::Announced(), testing::ElementsAre("last", "later"));
}

TEST_F(Control, MayBeBroughtToTheFrontBeforeAndAfterTheFormIsSeen) {
  for (auto& control : form->Controls()) EXPECT_NO_THROW(control.BringToFront());
  ShowAndSee(*form);
  for (auto& control : form->Controls()) EXPECT_NO_THROW(control.BringToFront());
  EXPECT_EQ(form->Controls().at(3).Name(), "button");
}

TEST_F(Control, TellsOfAClick) {
  int clicks = 0;
  button.OnClick([&] { ++clicks; });
  ShowAndSee(*form);
  peer::Press("form", "button");
  EXPECT_TRUE(peer::RunUntil([&] { return clicks == 1; }));
}

TEST_F(Control, TellsOfNoClickWhileItIsDisabled) {
  std::vector<bool> clicks;
  bool enabled = false;
  button.OnClick([&] { clicks.push_back(enabled); });
  button.SetEnabled(false);
  EXPECT_FALSE(button.Enabled());
  ShowAndSee(*form);
  peer::Press("form", "button");
  platform::ProcessPendingEvents();
  button.SetEnabled(enabled = true);
  peer::Press("form", "button");
  EXPECT_TRUE(peer::RunUntil([&] { return !clicks.empty(); }));
  EXPECT_THAT(clicks, testing::ElementsAre(true));
}

TEST_F(Control, AClickMayUnloadAndDestroyTheForm) {
  button.OnClick([&] { form->Unload(); });
  form->OnUnloaded([&] { form.reset(); });
  ShowAndSee(*form);
  peer::Press("form", "button");
  EXPECT_TRUE(peer::RunUntil([&] { return !form; }));
}

TEST_F(Control, AClickThatThrowsHarmsNothing) {
  int clicks = 0;
  button.OnClick([&] {
    ++clicks;
    throw std::runtime_error("no");
  });
  ShowAndSee(*form);
  peer::Press("form", "button");
  EXPECT_TRUE(peer::RunUntil([&] { return clicks == 1; }));
  peer::Press("form", "button");
  EXPECT_TRUE(peer::RunUntil([&] { return clicks == 2; }));
}

TEST_F(Control, HandlesNameTheSameControl) {
  const platform::Control copy = button;
  form->Controls().at(3).SetCaption("Install");
  EXPECT_EQ(copy.Caption(), "Install");
}

TEST_F(Control, ThrowsForEverythingAfterItsFormHasGone) {
  bool unloaded = false;
  form->OnUnloaded([&] { unloaded = true; });
  form->Show();
  const auto throwsAll = [](platform::Control& control) {
    EXPECT_THROW(control.Kind(), std::logic_error);
    EXPECT_THROW(control.Name(), std::logic_error);
    EXPECT_THROW(control.Tag(), std::logic_error);
    EXPECT_THROW(control.Caption(), std::logic_error);
    EXPECT_THROW(control.SetCaption("x"), std::logic_error);
    EXPECT_THROW(control.ToolTipText(), std::logic_error);
    EXPECT_THROW(control.SetToolTipText("x"), std::logic_error);
    EXPECT_THROW(control.Enabled(), std::logic_error);
    EXPECT_THROW(control.SetEnabled(true), std::logic_error);
    EXPECT_THROW(control.SetFont({}), std::logic_error);
    EXPECT_THROW(control.SetRightToLeft(true), std::logic_error);
    EXPECT_THROW(control.Left(), std::logic_error);
    EXPECT_THROW(control.Top(), std::logic_error);
    EXPECT_THROW(control.Width(), std::logic_error);
    EXPECT_THROW(control.Height(), std::logic_error);
    EXPECT_THROW(control.SetLeft(1), std::logic_error);
    EXPECT_THROW(control.SetTop(1), std::logic_error);
    EXPECT_THROW(control.SetWidth(1), std::logic_error);
    EXPECT_THROW(control.SetHeight(1), std::logic_error);
    EXPECT_THROW(control.BringToFront(), std::logic_error);
    EXPECT_THROW(control.Announce("x"), std::logic_error);
    EXPECT_THROW(control.Items(), std::logic_error);
    EXPECT_THROW(control.OnClick([] {}), std::logic_error);
  };
  form->Unload();
  throwsAll(button);
  ASSERT_TRUE(peer::RunUntil([&] { return unloaded; }));
  form.reset();
  throwsAll(button);
  throwsAll(label);
}

}  // namespace
