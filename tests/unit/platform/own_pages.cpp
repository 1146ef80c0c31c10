// Which addresses name the host's own pages, and which of them are refused.
//
// SPDX-License-Identifier: MIT
#include "platform/shared/window/own_pages.h"

#include <gmock/gmock.h>

namespace {

using platform::OwnPages;

/// Whether the page at `path`, which is not local, is let through when the browser spells it so.
bool Allows(std::string_view path, std::string_view address) {
  OwnPages pages;
  pages.Navigate(path);
  return !pages.IsRefused(address, false);
}

constexpr std::string_view kOnServer = "\\\\server\\share\\Müller & Sohn\\100%25#1\\index.htm";

TEST(OwnPages, AllowTheCurrentOneInEverySpelling) {
  for (const char* address :
       {"\\\\server\\share\\Müller & Sohn\\100%25#1\\index.htm",
        "//server/share/Müller & Sohn/100%25#1/index.htm",
        "\\\\SERVER\\Share\\Müller & sohn\\100%25#1\\INDEX.HTM",
        "file://server/share/Müller & Sohn/100%25#1/index.htm",
        "file://server/share/M%c3%bcller%20&%20Sohn/100%2525%231/index.htm",
        "FILE:\\\\server\\share\\M%C3%BCller%20%26%20Sohn\\100%2525%231\\index.htm",
        "file:////server/share/Müller & Sohn/100%25#1/index.htm",
        "file://///server/share/M%C3%BCller%20&%20Sohn/100%2525%231/index.htm",
        "file:\\\\\\\\server\\share\\Müller & Sohn\\100%25#1\\index.htm",
        "file://server/share/M%c3%bcller%20&%20Sohn/100%2525%231/index.htm#top",
        "file://server/share/M%c3%bcller%20&%20Sohn/100%2525%231/index.htm?top"}) {
    EXPECT_TRUE(Allows(kOnServer, address)) << address;
  }
}

TEST(OwnPages, AllowTheCurrentOneOnADriveAndWithoutDrives) {
  for (const char* address :
       {"C:\\a b\\index.htm", "c:/a b/index.htm", "file:///C:/a%20b/index.htm",
        "file:C:\\a b\\index.htm", "file://C:\\a b\\index.htm"}) {
    EXPECT_TRUE(Allows("C:\\a b\\index.htm", address)) << address;
  }
  for (const char* address : {"/srv/a b/index.htm", "file:///srv/a%20b/index.htm",
                              "file:/srv/a b/index.htm", "\\srv\\a b\\index.htm"}) {
    EXPECT_TRUE(Allows("/srv/a b/index.htm", address)) << address;
  }
}

TEST(OwnPages, AllowNothingElseThatIsNotLocal) {
  for (const char* address :
       {"", "/", "file:", "\\\\server\\share\\index.htm", "\\\\server\\share\\index.html",
        "\\\\server\\share\\index", "\\\\other\\share\\100%25#1\\index.htm", "%", "%4", "%zz",
        "\\server\\share\\Müller & Sohn\\100%25#1\\index.htm",
        "file:///server/share/Müller & Sohn/100%25#1/index.htm",
        "https://server/share/Müller & Sohn/100%25#1/index.htm",
        "file://server/share/M%C3%BCller & Sohn/100%252525%231/index.htm"}) {
    EXPECT_FALSE(Allows(kOnServer, address)) << address;
  }
  EXPECT_FALSE(Allows("/srv/page/index.htm", "file://srv/page/index.htm"));
  EXPECT_TRUE(OwnPages().IsRefused("\\\\server\\share\\index.htm", false));
}

TEST(OwnPages, RefuseAnEarlierOneInEverySpelling) {
  OwnPages pages;
  pages.Navigate("C:\\Program Files\\wait.htm");
  pages.Navigate("C:\\Data\\index.htm");
  for (const char* address :
       {"C:\\Program Files\\wait.htm", "c:/program files/WAIT.HTM",
        "file:///C:/Program%20Files/wait.htm", "file:///C:/Program%20Files/wait.htm#x",
        "file:///C:/Program%20Files/wait.htm?x"}) {
    EXPECT_TRUE(pages.IsRefused(address, true)) << address;
  }
  EXPECT_FALSE(pages.IsRefused("file:///C:/Data/index.htm", true));
  EXPECT_FALSE(pages.IsRefused("file:///C:/Data/other.htm", true));
}

TEST(OwnPages, AllowAnEarlierOneOnceTheHostNavigatesThereAgain) {
  OwnPages pages;
  pages.Navigate("C:\\first.htm");
  pages.Navigate("C:\\second.htm");
  pages.Navigate("C:\\First.htm");
  EXPECT_FALSE(pages.IsRefused("C:\\first.htm", true));
  EXPECT_TRUE(pages.IsRefused("C:\\second.htm", true));
}

}  // namespace
