// Where the controls stand.
//
// SPDX-License-Identifier: MIT
#include "app/layout.h"

#include <gtest/gtest.h>

#include <map>

#include "tests/unit/app/window_test.h"

namespace {

/// The layout on controls of its own; the window's come below.
class Layout : public testing::Test {
 protected:
  Layout() { fake::Reset(); }

  static constexpr float kUntouched = -12345;

  /// Places controls whose places and changeable sizes are recognisably untouched.
  void Place(float width, float height, float pixelX = 15, float pixelY = 15,
             float logoWidth = 1500) {
    platform::Form form("form", width, height);
    WindowControls controls{
        form.AddControl("PictureBox", "picLogo", logoWidth, 77),
        form.AddControl("WebBrowser", "webOptions", 88, 99),
        form.AddControl("CommandButton", "cmdInstall", 1215, 495),
        form.AddControl("Label", "lblStatus", 3000, 400),
    };
    for (const auto& control : fake::TheForm().Controls()) {
      control->Move({kUntouched, kUntouched, control->Where().width, control->Where().height});
      mPlaced[control->name] = control;
    }
    PlaceControls(controls, width, height, pixelX, pixelY);
  }

  const platform::Place& At(const std::string& name) const { return mPlaced.at(name)->Where(); }

 private:
  std::map<std::string, std::shared_ptr<fake::Control>> mPlaced;
};

TEST_F(Layout, PlacesEveryControl) {
  Place(9000, 7000);
  EXPECT_EQ(At("webOptions").left, 1470);
  EXPECT_EQ(At("webOptions").top, -30);
  EXPECT_EQ(At("webOptions").width, 7530);
  EXPECT_EQ(At("webOptions").height, 6355);
  EXPECT_EQ(At("picLogo").left, 0);
  EXPECT_EQ(At("picLogo").top, 0);
  EXPECT_EQ(At("picLogo").height, 6325);
  EXPECT_EQ(At("cmdInstall").left, 7695);
  EXPECT_EQ(At("cmdInstall").top, 6415);
  EXPECT_EQ(At("lblStatus").left, 90);
  EXPECT_EQ(At("lblStatus").top, 6415);
}

TEST_F(Layout, EndsTheBrowserAtTheRightEdgeAndAboveTheButton) {
  Place(8000, 6000);
  EXPECT_EQ(At("webOptions").left + At("webOptions").width, 8000);
  const float bottom = At("webOptions").top + At("webOptions").height;
  EXPECT_EQ(bottom, 6000 - 495 - 180);
  EXPECT_EQ(bottom, At("cmdInstall").top - 90);
  EXPECT_EQ(At("picLogo").top + At("picLogo").height, bottom);
}

TEST_F(Layout, KeepsTheDesignedSizes) {
  Place(9000, 7000);
  EXPECT_EQ(At("picLogo").width, 1500);
  EXPECT_EQ(At("cmdInstall").width, 1215);
  EXPECT_EQ(At("cmdInstall").height, 495);
  EXPECT_EQ(At("lblStatus").width, 3000);
  EXPECT_EQ(At("lblStatus").height, 400);
}

TEST_F(Layout, HidesTwoPixelsOfTheBrowserAt120DotsPerInch) {
  Place(9000, 7000, 12, 12);
  EXPECT_EQ(At("webOptions").left, 1476);
  EXPECT_EQ(At("webOptions").top, -24);
  EXPECT_EQ(At("webOptions").width, 7524);
  EXPECT_EQ(At("webOptions").height, 6349);
  EXPECT_EQ(At("picLogo").height, 6325);
}

TEST_F(Layout, TellsWidthFromHeightOfAPixel) {
  Place(9000, 7000, 10, 20);
  EXPECT_EQ(At("webOptions").left, 1480);
  EXPECT_EQ(At("webOptions").width, 7520);
  EXPECT_EQ(At("webOptions").top, -40);
  EXPECT_EQ(At("webOptions").height, 6365);
  EXPECT_EQ(At("picLogo").height, 6325);
}

TEST_F(Layout, SkipsTheHeightsInAClientAreaThatIsTooLow) {
  Place(9000, 100);
  EXPECT_EQ(At("webOptions").height, 99);
  EXPECT_EQ(At("picLogo").height, 77);
  EXPECT_EQ(At("webOptions").top, -30);
  EXPECT_EQ(At("webOptions").width, 7530);
  EXPECT_EQ(At("picLogo").top, 0);
  EXPECT_EQ(At("cmdInstall").top, -485);
  EXPECT_EQ(At("lblStatus").top, -485);
  EXPECT_EQ(At("cmdInstall").left, 7695);
  EXPECT_EQ(At("lblStatus").left, 90);
}

TEST_F(Layout, SkipsTheLogosHeightAloneWhereOnlyThatIsNegative) {
  Place(9000, 655);
  EXPECT_EQ(At("webOptions").height, 10);
  EXPECT_EQ(At("picLogo").height, 77);
}

TEST_F(Layout, TakesAHeightOfNothing) {
  Place(9000, 675);
  EXPECT_EQ(At("webOptions").height, 30);
  EXPECT_EQ(At("picLogo").height, 0);
}

TEST_F(Layout, SkipsTheWidthInAClientAreaThatIsTooNarrow) {
  Place(1000, 7000);
  EXPECT_EQ(At("webOptions").width, 88);
  EXPECT_EQ(At("webOptions").height, 6355);
  EXPECT_EQ(At("picLogo").height, 6325);
  EXPECT_EQ(At("cmdInstall").left, -305);
}

TEST_F(Layout, ReckonsInSinglePrecision) {
  // Above 16,777,216 every second whole number is missing: with more precision on the way, the
  // result would be 16777218.
  Place(16777216, 7000, 1.5F, 15, 0.5F);
  EXPECT_EQ(At("webOptions").width, 16777220.0F);
}

class WindowLayout : public WindowTest {
 protected:
  static int TimesPlaced() {
    int times = 0;
    for (const auto& control : fake::TheForm().Controls()) {
      times += control->timesSet["Bounds"];
    }
    return times;
  }
};

TEST_F(WindowLayout, IsDoneBeforeTheWindowIsSeen) {
  Start();
  const auto& form = fake::TheForm();
  EXPECT_EQ(Button().Where().left, form.clientWidth - 1215 - 90);
  EXPECT_EQ(Button().Where().top, form.clientHeight - 495 - 90);
}

TEST_F(WindowLayout, FollowsTheWindowsSize) {
  Start();
  fake::TheForm().Resize(9000, 7000);
  EXPECT_EQ(Button().Where().left, 7695);
  EXPECT_EQ(Button().Where().top, 6415);
  EXPECT_EQ(fake::ControlNamed("webOptions").Where().height, 6355);
}

TEST_F(WindowLayout, AsksForTheScreensPixelsEveryTime) {
  Start();
  World().twipsPerPixelX = 12;
  World().twipsPerPixelY = 10;
  fake::TheForm().Resize(9000, 7000);
  EXPECT_EQ(fake::ControlNamed("webOptions").Where().left,
            fake::ControlNamed("picLogo").Where().width - 24);
  EXPECT_EQ(fake::ControlNamed("webOptions").Where().top, -20);
}

TEST_F(WindowLayout, PlacesNothingWhileMinimised) {
  Start();
  const int before = TimesPlaced();
  fake::TheForm().Minimise();
  fake::TheForm().Resize(0, 0);
  EXPECT_EQ(TimesPlaced(), before);
}

TEST_F(WindowLayout, IsTheSameAfterRestoring) {
  Start();
  fake::TheForm().Resize(9000, 7000);
  fake::TheForm().Minimise();
  fake::TheForm().Restore();
  EXPECT_EQ(Button().Where().left, 7695);
  EXPECT_EQ(Button().Where().top, 6415);
  EXPECT_EQ(fake::ControlNamed("webOptions").Where().height, 6355);
  EXPECT_EQ(fake::ControlNamed("picLogo").Where().height, 6325);
}

TEST_F(WindowLayout, HidesAndShowsNoControl) {
  Start();
  fake::TheForm().Resize(9000, 100);
  for (const auto& control : fake::TheForm().Controls()) {
    EXPECT_EQ(control->timesSet["Enabled"], control->name == "cmdInstall" ? 1 : 0);
  }
}

}  // namespace
