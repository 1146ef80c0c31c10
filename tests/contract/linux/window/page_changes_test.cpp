// That the page's word is enough: nothing is said to be the same when it may not be, and where
// nothing happens nothing is asked again.
//
// SPDX-License-Identifier: MIT
#include "tests/contract/linux/window_widgets.h"
#include "tests/contract/window_case.h"

namespace {

using platform::PageInputs;

class PageChanges : public WindowCase {
 protected:
  PageChanges() {
    ShowAndSee(*form);
    browser.Navigate(peer::PageWith({{"a", false, false}, {"b", true, false}}, "about:blank"));
    EXPECT_TRUE(peer::RunUntil([&] { return Read() == 2 && Rests(); }));
  }

  /// How many boxes there are; none where the page cannot be read.
  std::size_t Read() {
    std::optional<PageInputs> answer;
    browser.ReadInputs([&](const PageInputs& inputs) { answer = inputs; });
    EXPECT_TRUE(peer::RunUntil([&] { return answer.has_value(); }));
    return answer && *answer ? (*answer)->size() : 0;
  }

  bool Rests() const { return !browser.InputsMayHaveChanged(); }
  bool WaitForChange() {
    return peer::RunUntil([&] { return browser.InputsMayHaveChanged(); });
  }
  WebKitWebView* View() { return widgets::ViewOf("form", "browser"); }

  std::unique_ptr<platform::Form> form = NewForm();
  platform::Control control = form->AddControl("WebBrowser", "browser", 4500, 3000);
  platform::WebBrowser browser{control};
};

TEST_F(PageChanges, AreToldOnceForEachTick) {
  for (int i = 0; i < 3; ++i) {
    peer::ClickBox("form", "browser", "a");
    EXPECT_TRUE(WaitForChange());
    Read();
    EXPECT_TRUE(Rests());
  }
}

TEST_F(PageChanges, AreNotToldWhereNothingHappens) {
  // What the page would have had to say comes before its answer.
  widgets::AskPage(View(), "document.body.click()");
  EXPECT_TRUE(Rests());
}

TEST_F(PageChanges, IncludeAFormThatIsReset) {
  widgets::RunInPage(View(), R"({
    const form = document.createElement("form");
    document.body.append(form);
    form.append(document.getElementById("b"));
    form.reset();
  })");
  EXPECT_TRUE(WaitForChange());
}

TEST_F(PageChanges, IncludeAnotherPage) {
  browser.Navigate(peer::PageWith({{"c", false, false}}, "about:blank"));
  EXPECT_TRUE(WaitForChange());
}

TEST_F(PageChanges, MayHaveHappenedAsLongAsThePageCannotBeRead) {
  webkit_web_view_terminate_web_process(View());
  EXPECT_TRUE(WaitForChange());
  EXPECT_EQ(Read(), 0U);
  EXPECT_FALSE(Rests());
}

}  // namespace
