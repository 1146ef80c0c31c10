// The page file: where it lies, its bytes, and what is shown when it cannot be written.
//
// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <filesystem>

#include "app/modDisplayHTMLInWebbrowser.h"
#include "tests/unit/app/window_test.h"

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

constexpr const char* kBegin =
    "<!DOCTYPE html>\r\n<html>\r\n<title>Downloads</title>\r\n"
    "<style>body { font-family:segoe ui, tahoma, arial; padding:20px; }</style>\r\n<body>\r\n";
constexpr const char* kEnd = "</body>\r\n</html>\r\n";

class PageFile : public WindowTest {
 protected:
  /// Shows a body; answers what the browser was led to.
  static std::vector<std::string> Display(const std::string& body) {
    platform::Form form("form", 9000, 7000);
    const auto control = form.AddControl("WebBrowser", "webOptions", 5415, 5415);
    platform::WebBrowser browser(control);
    modDisplayHTMLInWebbrowser::DisplayHTMLInWebbrowser(body, browser);
    return Browser().shown;
  }
};

TEST_F(PageFile, FramesTheBody) {
  Display("<p>text</p>\r\n");
  EXPECT_EQ(Page(), std::string(kBegin) + "<p>text</p>\r\n" + kEnd);
}

TEST_F(PageFile, HasItsFrameAlsoAroundAnEmptyBody) {
  Display("");
  EXPECT_EQ(Page(), std::string(kBegin) + kEnd);
}

TEST_F(PageFile, EndsTheBodyOnlyWhereItEndsItself) {
  Display("text");
  EXPECT_THAT(Page(), EndsWith("<body>\r\ntext</body>\r\n</html>\r\n"));
}

TEST_F(PageFile, IsUtf16LittleEndianWithAByteOrderMark) {
  using namespace std::string_literals;
  Display("\u00e4\u0416\U0001F50A");
  const std::string bytes = World().ReadFile(PagePath());
  EXPECT_THAT(bytes, StartsWith("\xFF\xFE<\0!\0D\0"s));
  EXPECT_NE(bytes.find("\r\0\n\0\xE4\0\x16\x04\x3D\xD8\x0A\xDD<\0/\0b\0"s), std::string::npos);
  EXPECT_EQ(bytes.size(), 2 * (1 + std::string(kBegin).size() + 4 + std::string(kEnd).size()));
}

TEST_F(PageFile, IsCalledDownloadsInEveryLanguage) {
  Speak("de");
  Start();
  CatalogueArrives(Catalogue(""));
  const std::string bytes = World().ReadFile(PagePath());
  std::string text;
  for (std::size_t i = 2; i < bytes.size(); i += 2) text += bytes[i];
  EXPECT_NE(text.find("<title>Downloads</title>"), std::string::npos);
}

TEST_F(PageFile, CreatesItsFolders) {
  ASSERT_FALSE(World().HasFile(World().specialFolders.at(26) + "\\Velor Software"));
  Display("text");
  EXPECT_TRUE(World().HasFile(PagePath()));
}

TEST_F(PageFile, ReusesItsFoldersAndReplacesTheEarlierPage) {
  Display("a long text of an earlier run");
  Display("text");
  EXPECT_EQ(Page(), std::string(kBegin) + "text" + kEnd);
}

TEST_F(PageFile, IsWhereTheBrowserIsLedTo) {
  EXPECT_THAT(Display("text"), ElementsAre(PagePath()));
}

TEST_F(PageFile, IsStillNavigatedToWhereItCannotBeWritten) {
  World().WriteFile(World().specialFolders.at(26) + "\\Velor Software", "a file in the way");
  EXPECT_THAT(Display("text"), ElementsAre(PagePath()));
  EXPECT_FALSE(World().HasFile(PagePath()));
}

TEST_F(PageFile, StaysStaleWhereItCannotBeReplaced) {
  World().WriteFile(PagePath() + "\\file", "a folder in the way");
  EXPECT_THAT(Display("text"), ElementsAre(PagePath()));
}

TEST_F(PageFile, LeavesTheWindowToGoOnWhereItCannotBeWritten) {
  World().WriteFile(World().specialFolders.at(26) + "\\Velor Software", "a file in the way");
  Start();
  CatalogueArrives(TwoVoices());
  Wait();
  EXPECT_EQ(Browser().timesRead, 1);
  EXPECT_THAT(MessageTexts(), testing::IsEmpty());
}

}  // namespace
