// Which addresses the browser may follow.
//
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "tests/unit/app/window_test.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Navigation : public WindowTest {};

TEST_F(Navigation, FollowsNoLinkIntoTheWeb) {
  ShowVoices(TwoVoices());
  for (const char* address : {"http://voices.example/", "https://voices.example/",
                              "HTTP://VOICES.EXAMPLE/", "HttpS://voices.example/a.htm"}) {
    EXPECT_FALSE(Browser().Follow(address)) << address;
  }
  EXPECT_THAT(Browser().shown, ElementsAre(InProgramFolder("wait.htm"), PagePath()));
}

TEST_F(Navigation, DropsALinkSilently) {
  ShowVoices(TwoVoices());
  const auto before = World().journal;
  Browser().Follow("https://voices.example/");
  fake::HandleEvents();
  EXPECT_EQ(World().journal, before);
  EXPECT_TRUE(HasWindow());
}

TEST_F(Navigation, FollowsNothingThatHoldsTheLettersHttp) {
  Start();
  for (const char* address :
       {"C:\\http\\page.htm", "file:///C:/My%20Http/page.htm",
        "javascript:location='https://voices.example/'", "about:http", "xhttpx"}) {
    EXPECT_FALSE(Browser().Follow(address)) << address;
  }
}

TEST_F(Navigation, FollowsEverythingElse) {
  Start();
  for (const char* address :
       {"C:\\page.htm", "\\\\server\\page.htm", "file:///C:/page.htm", "about:blank",
        "javascript:Add('x')", "ftp://voices.example/", "htt p:", ""}) {
    EXPECT_TRUE(Browser().Follow(address)) << address;
  }
}

TEST_F(Navigation, AlsoHoldsForTheProgramsOwnPages) {
  World().programFolder += "\\http";
  Start();
  EXPECT_THAT(Browser().shown, IsEmpty());
  EXPECT_TRUE(HasWindow());
}

}  // namespace
