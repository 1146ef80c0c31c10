// Promises of platform/window/web_browser.h.
//
// SPDX-License-Identifier: MIT
#include <optional>
#include <stdexcept>

#include "tests/contract/window_case.h"

namespace {

using platform::InputState;
using platform::PageInputs;
using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class Browser : public WindowCase {
 protected:
  std::unique_ptr<platform::Form> form = NewForm();
  platform::Control control = form->AddControl("WebBrowser", "browser", 4500, 3000);
  std::optional<platform::WebBrowser> browser{std::in_place, control};

  /// Asks once and waits for the answer.
  PageInputs Read() {
    std::optional<PageInputs> answer;
    browser->ReadInputs([&](const PageInputs& inputs) { answer = inputs; });
    EXPECT_TRUE(peer::RunUntil([&] { return answer.has_value(); }));
    return answer.value_or(std::nullopt);
  }

  /// The boxes as text: "a+ b- c+!" is a ticked, an unticked, a ticked and disabled one.
  std::string Boxes() {
    const PageInputs inputs = Read();
    if (!inputs) return "unreadable";
    std::string text;
    for (const InputState& input : *inputs) {
      text += (text.empty() ? "" : " ") + input.id + (input.checked ? "+" : "-") +
              (input.disabled ? "!" : "");
    }
    return text;
  }

  bool WaitForBoxes(const std::string& text) {
    return peer::RunUntil([&] { return Boxes() == text; });
  }

  void Show(const std::vector<InputState>& boxes, const std::string& text,
            const std::string& link = "about:blank") {
    ShowAndSee(*form);
    browser->Navigate(peer::PageWith(boxes, link));
    ASSERT_TRUE(WaitForBoxes(text));
  }
};

TEST_F(Browser, IsRefusedForAControlOfAnotherKind) {
  const auto label = form->AddControl("Label", "label", 300, 300);
  EXPECT_THROW(platform::WebBrowser{label}, std::logic_error);
}

TEST_F(Browser, ReadsTheInputsInDocumentOrder) {
  Show({{"check3", false, false},
        {"check1", true, false},
        {"check2", true, true},
        {"", false, true}},
       "check3- check1+ check2+! -!");
}

TEST_F(Browser, ReadsNothingFromAPageWithoutInputs) { Show({}, ""); }

TEST_F(Browser, ReadsIdsAsTheyAreWritten) {
  Show({{"checkÅ'\"<&>", true, false}, {"check 2", false, false}}, "checkÅ'\"<&>+ check 2-");
}

TEST_F(Browser, ReadsTheLiveState) {
  Show({{"a", false, false}, {"b", true, false}}, "a- b+");
  peer::ClickBox("form", "browser", "a");
  EXPECT_TRUE(WaitForBoxes("a+ b+"));
  peer::ClickBox("form", "browser", "b");
  EXPECT_TRUE(WaitForBoxes("a+ b-"));
}

TEST_F(Browser, CallsEachBoxByTheLabelInItsRow) {
  Show({{"", true, true}, {"a", false, false}, {"a", true, true}, {"a", true, true}},
       "+! a- a+! a+!");
  for (int row = 0; row < 4; ++row) {
    const std::string name = "Voice " + std::to_string(row + 1);
    EXPECT_TRUE(peer::RunUntil([&] { return peer::NameOfBox("form", "browser", row) == name; }))
        << row << " is " << peer::NameOfBox("form", "browser", row);
  }
}

TEST_F(Browser, ReachesNoBoxOfAnotherRowByALabel) {
  Show({{"a", false, false}, {"a", true, true}}, "a- a+!");
  ASSERT_TRUE(peer::RunUntil([] { return peer::NameOfBox("form", "browser", 0) == "Voice 1"; }));
  peer::ClickLabel("form", "browser", 1);
  EXPECT_EQ(Boxes(), "a- a+!");
  peer::ClickLabel("form", "browser", 0);
  EXPECT_TRUE(WaitForBoxes("a+ a+!"));
}

TEST_F(Browser, CallsWhatIsBusyByTheTextGiven) {
  const std::string text = "Röster läses in… <i>\"'${0}\\";
  form->Show();
  browser->SetBusyText(text);
  browser->Navigate(peer::BusyPage());
  EXPECT_TRUE(peer::RunUntil([&] { return peer::NameOfBusyElement("form", "browser") == text; }));
}

TEST_F(Browser, SaysThatABoxMayHaveChangedWhenAPersonHasTickedIt) {
  Show({{"a", false, false}}, "a-");
  peer::ClickBox("form", "browser", "a");
  EXPECT_TRUE(peer::RunUntil([&] { return browser->InputsMayHaveChanged(); }));
}

TEST_F(Browser, ShowsOnePageAfterTheOther) {
  Show({{"a", false, false}}, "a-");
  browser->Navigate(peer::PageWith({{"b", true, false}}));
  EXPECT_TRUE(WaitForBoxes("b+"));
}

TEST_F(Browser, AsksBeforeTheHostsOwnNavigation) {
  std::vector<std::string> asked;
  browser->OnBeforeNavigate([&](const std::string& address) {
    asked.push_back(address);
    return false;
  });
  Show({{"a", false, false}}, "a-");
  EXPECT_THAT(asked, Contains(EndsWith(".htm")));
}

TEST_F(Browser, StaysWhereItIsWhenANavigationIsCancelled) {
  Show({{"a", false, false}}, "a-");
  bool asked = false;
  browser->OnBeforeNavigate([&](const std::string&) { return asked = true; });
  browser->Navigate(peer::PageWith({{"b", false, false}}));
  EXPECT_TRUE(peer::RunUntil([&] { return asked; }));
  EXPECT_EQ(Boxes(), "a-");
}

TEST_F(Browser, AsksBeforeALinkIsFollowed) {
  Show({{"a", false, false}}, "a-", "https://velor.example/voices");
  std::vector<std::string> asked;
  browser->OnBeforeNavigate([&](const std::string& address) {
    asked.push_back(address);
    return address.find("http") != std::string::npos;
  });
  peer::FollowLink("form", "browser");
  EXPECT_TRUE(peer::RunUntil([&] { return !asked.empty(); }));
  EXPECT_THAT(asked, Contains(HasSubstr("https://velor.example/voices")));
  EXPECT_EQ(Boxes(), "a-");
}

TEST_F(Browser, FollowsALinkToALocalPageThatIsNotCancelled) {
  const auto second = peer::PageWith({{"b", false, false}});
  Show({{"a", false, false}}, "a-", second);
  peer::FollowLink("form", "browser");
  EXPECT_TRUE(WaitForBoxes("b-"));
}

TEST_F(Browser, ShowsTheLastOfThePagesRequestedBeforeTheFormIsShown) {
  browser->Navigate(peer::PageWith({{"a", false, false}}));
  browser->Navigate(peer::PageWith({{"b", false, false}}));
  ShowAndSee(*form);
  EXPECT_TRUE(WaitForBoxes("b-"));
}

TEST_F(Browser, FollowsNoLinkToAnEarlierPageOfTheHost) {
  const auto first = peer::PageWith({{"a", false, false}});
  ShowAndSee(*form);
  browser->Navigate(first);
  ASSERT_TRUE(WaitForBoxes("a-"));
  browser->Navigate(peer::PageWith({{"b", false, false}}, first));
  ASSERT_TRUE(WaitForBoxes("b-"));
  bool asked = false;
  browser->OnBeforeNavigate([&](const std::string&) {
    asked = true;
    return false;
  });
  peer::FollowLink("form", "browser");
  ASSERT_TRUE(peer::RunUntil([&] { return asked; }));
  EXPECT_FALSE(peer::RunUntil([&] { return Boxes() != "b-"; }, std::chrono::milliseconds(500)));
  browser->Navigate(first);
  EXPECT_TRUE(WaitForBoxes("a-"));
}

TEST_F(Browser, AnswersEachQuestionExactlyOnce) {
  Show({{"a", true, false}}, "a+");
  int answers = 0;
  for (int i = 0; i < 3; ++i) browser->ReadInputs([&](const PageInputs&) { ++answers; });
  ASSERT_TRUE(peer::RunUntil([&] { return answers == 3; }));
  Read();
  EXPECT_EQ(answers, 3);
}

TEST_F(Browser, DoesNotAnswerWhenItHasGone) {
  Show({{"a", true, false}}, "a+");
  bool answered = false;
  browser->ReadInputs([&](const PageInputs&) { answered = true; });
  const bool atOnce = answered;
  browser.reset();
  browser.emplace(control);
  Read();
  EXPECT_EQ(answered, atOnce);
}

TEST_F(Browser, MayBeDestroyedByTheAnswer) {
  Show({{"a", true, false}}, "a+");
  browser->ReadInputs([&](const PageInputs&) { browser.reset(); });
  EXPECT_TRUE(peer::RunUntil([&] { return !browser.has_value(); }));
}

TEST_F(Browser, AnswersAbsenceWhenTheFormGoesMeanwhile) {
  Show({{"a", true, false}}, "a+");
  int answers = 0;
  browser->ReadInputs([&](const PageInputs&) { ++answers; });
  form->Unload();
  EXPECT_TRUE(peer::RunUntil([&] { return answers == 1; }));
  EXPECT_EQ(Boxes(), "unreadable");
  EXPECT_EQ(answers, 1);
}

TEST_F(Browser, NavigatingAfterTheFormHasGoneThrows) {
  form->Unload();
  EXPECT_THROW(browser->Navigate(peer::PageWith({})), std::logic_error);
}

TEST_F(Browser, ShowsSomethingForAMissingFileAndThenTheNextPage) {
  Show({{"a", true, false}}, "a+");
  browser->Navigate(peer::PageWith({}) + ".missing");
  EXPECT_TRUE(WaitForBoxes(""));
  browser->Navigate(peer::PageWith({{"b", true, false}}));
  EXPECT_TRUE(WaitForBoxes("b+"));
}

TEST_F(Browser, AsksNobodyWhenTheHandlerThrows) {
  browser->OnBeforeNavigate([](const std::string&) -> bool { throw std::runtime_error("no"); });
  Show({{"a", true, false}}, "a+");
}

}  // namespace
