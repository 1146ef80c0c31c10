// What Windows does to a window beyond what every system does: densities, keys, the end of a
// session, a second instance, names for other programs.
//
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <cstdlib>

#include "core/attempt.h"
#include "platform/shared/window/event_queue.h"
#include "platform/system/program.h"
#include "platform/system/shell.h"
#include "tests/contract/win32/window_handles.h"
#include "tests/contract/window_case.h"

namespace {

using handles::WindowOf;

class SystemWindow : public WindowCase {
 protected:
  std::unique_ptr<platform::Form> form = NewForm();
  platform::Control first = form->AddControl("CommandButton", "first", 1500, 495);
  platform::Control label = form->AddControl("Label", "label", 1500, 495);
  platform::Control second = form->AddControl("CommandButton", "second", 1500, 495);

  void ShowActive() {
    ShowAndSee(*form);
    SetForegroundWindow(WindowOf("form"));
    ASSERT_TRUE(peer::RunUntil([] { return GetActiveWindow() == WindowOf("form"); }));
  }
  static HWND Button(const std::string& name) { return WindowOf("form", name); }

  /// A key goes where the keyboard's focus is.
  static void TypeKey(WPARAM key) { PostMessageW(GetFocus(), WM_KEYDOWN, key, 1); }
  static bool WaitForFocus(const std::string& name) {
    return peer::RunUntil([&] { return GetFocus() == Button(name); });
  }
};

TEST_F(SystemWindow, GivesTheFocusToTheFirstControlThatTakesIt) {
  ShowActive();
  EXPECT_TRUE(WaitForFocus("first"));
}

TEST_F(SystemWindow, TabGoesRoundThroughTheControlsThatTakeTheFocus) {
  ShowActive();
  ASSERT_TRUE(WaitForFocus("first"));
  TypeKey(VK_TAB);
  EXPECT_TRUE(WaitForFocus("second"));
  TypeKey(VK_TAB);
  EXPECT_TRUE(WaitForFocus("first"));
}

TEST_F(SystemWindow, TabPassesOverADisabledButton) {
  auto third = form->AddControl("CommandButton", "third", 1500, 495);
  second.SetEnabled(false);
  ShowActive();
  ASSERT_TRUE(WaitForFocus("first"));
  TypeKey(VK_TAB);
  EXPECT_TRUE(WaitForFocus("third"));
}

TEST_F(SystemWindow, EnterPressesTheButtonWithTheFocus) {
  std::vector<std::string> pressed;
  first.OnClick([&] { pressed.push_back("first"); });
  second.OnClick([&] { pressed.push_back("second"); });
  ShowActive();
  ASSERT_TRUE(WaitForFocus("first"));
  TypeKey(VK_TAB);
  ASSERT_TRUE(WaitForFocus("second"));
  TypeKey(VK_RETURN);
  EXPECT_TRUE(peer::RunUntil([&] { return !pressed.empty(); }));
  EXPECT_THAT(pressed, testing::ElementsAre("second"));
}

TEST_F(SystemWindow, AMnemonicPressesItsButtonWhereverTheFocusIs) {
  int pressed = 0;
  second.SetCaption("&Install");
  second.OnClick([&] { ++pressed; });
  ShowActive();
  ASSERT_TRUE(WaitForFocus("first"));
  constexpr LPARAM kWithAlt = 1L << 29;
  PostMessageW(GetFocus(), WM_SYSCHAR, L'i', kWithAlt);
  EXPECT_TRUE(peer::RunUntil([&] { return pressed == 1; }));
}

TEST_F(SystemWindow, AltF4ClosesWhereverTheFocusIs) {
  bool unloaded = false;
  form->OnUnloaded([&] { unloaded = true; });
  ShowActive();
  ASSERT_TRUE(WaitForFocus("first"));
  constexpr LPARAM kWithAlt = 1L << 29;
  PostMessageW(GetFocus(), WM_SYSKEYDOWN, VK_F4, kWithAlt);
  EXPECT_TRUE(peer::RunUntil([&] { return unloaded; }));
}

TEST_F(SystemWindow, GivesTheFocusOnWhenTheButtonThatHasItIsDisabled) {
  ShowActive();
  ASSERT_TRUE(WaitForFocus("first"));
  first.SetEnabled(false);
  EXPECT_TRUE(WaitForFocus("second"));
}

TEST_F(SystemWindow, GivesTheFocusBackWhenItIsActiveAgain) {
  platform::Form other("other", 3000, 1500);
  ShowActive();
  TypeKey(VK_TAB);
  ASSERT_TRUE(WaitForFocus("second"));
  other.Show();
  ASSERT_TRUE(peer::RunUntil([] { return GetActiveWindow() == WindowOf("other"); }));
  SetForegroundWindow(WindowOf("form"));
  EXPECT_TRUE(WaitForFocus("second"));
}

int LetterHeight(HWND window) {
  LOGFONTW font = {};
  GetObjectW(reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)), sizeof font, &font);
  return std::abs(font.lfHeight);
}

TEST_F(SystemWindow, WritesALongCaptionSmallerAndNeverSoSmallThatItIsHardToRead) {
  const int usual = LetterHeight(Button("label"));
  second.SetCaption("Install");
  EXPECT_EQ(LetterHeight(Button("second")), usual);
  second.SetCaption("Install the voices");
  const int smaller = LetterHeight(Button("second"));
  EXPECT_LT(smaller, usual);
  second.SetCaption("A caption that is far too long for so small a button");
  const int smallest = LetterHeight(Button("second"));
  EXPECT_LE(smallest, smaller);
  EXPECT_NEAR(smallest, usual * 0.75, 0.5);
  second.SetCaption("Install");
  EXPECT_EQ(LetterHeight(Button("second")), usual);
}

TEST_F(SystemWindow, KeepsItsLayoutOnAScreenOfAnotherDensity) {
  const float before = platform::TwipsPerPixelX();
  int told = 0;
  form->OnResize([&] {
    ++told;
    second.SetLeft(form->ClientWidth() - second.Width());
  });
  ShowAndSee(*form);
  const auto placeBefore = peer::PlaceOf("form", "second");
  told = 0;
  constexpr UINT kDpiChanged = 0x02e0;
  const int dpi = static_cast<int>(2 * 1440 / before);
  RECT place;
  GetWindowRect(WindowOf("form"), &place);
  RECT client;
  GetClientRect(WindowOf("form"), &client);
  place.right += client.right;
  place.bottom += client.bottom;
  SendMessageW(WindowOf("form"), kDpiChanged, MAKEWPARAM(dpi, dpi),
               reinterpret_cast<LPARAM>(&place));
  EXPECT_GE(told, 1);
  EXPECT_FLOAT_EQ(form->ClientWidth(), kWidth);
  const peer::Pixels expected = {placeBefore.left * 2, placeBefore.top * 2, placeBefore.width * 2,
                                 placeBefore.height * 2};
  EXPECT_EQ(peer::PlaceOf("form", "second"), expected);
}

TEST_F(SystemWindow, ShowsNoMessageWhenTheSessionEnds) {
  bool asked = false;
  form->OnUnload([&] { asked = true; });
  ShowAndSee(*form);
  EXPECT_NE(SendMessageW(WindowOf("form"), WM_QUERYENDSESSION, 0, 0), 0);
  SendMessageW(WindowOf("form"), WM_ENDSESSION, TRUE, 0);
  platform::ProcessPendingEvents();
  EXPECT_FALSE(asked);
}

TEST_F(SystemWindow, TellsTheLabelsTextToOtherPrograms) {
  label.SetCaption("2 voices, 150MB & more");
  EXPECT_EQ(handles::TextOf(WindowOf("form", "label")), "2 voices, 150MB & more");
}

TEST_F(SystemWindow, IsFoundByItsExactTitle) {
  form->SetCaption("Velor Voice Setup case");
  ShowActive();
  platform::Form other("other", 3000, 1500);
  other.Show();
  ASSERT_TRUE(peer::RunUntil([] { return GetActiveWindow() == WindowOf("other"); }));
  EXPECT_ANY_THROW(platform::ActivateWindow("velor voice setup CASE"));
  platform::ActivateWindow("Velor Voice Setup case");
  EXPECT_TRUE(peer::RunUntil([] { return GetActiveWindow() == WindowOf("form"); }));
}

TEST_F(SystemWindow, IsOpenedWhereItWasMinimised) {
  form->SetCaption("Velor Voice Setup case");
  ShowAndSee(*form);
  peer::Minimise("form");
  ASSERT_TRUE(peer::RunUntil([&] { return form->IsMinimised(); }));
  platform::ActivateWindow("Velor Voice Setup case");
  EXPECT_TRUE(peer::RunUntil([&] { return !form->IsMinimised(); }));
}

TEST_F(SystemWindow, AMessageIsModalToTheWindowThatIsSeen) {
  ShowAndSee(*form);
  bool wasEnabled = true;
  peer::WhenAMessageIsShown(
      [&](const peer::Message&) { wasEnabled = IsWindowEnabled(WindowOf("form")) != 0; });
  platform::ShowMessage("text", "title", false);
  EXPECT_FALSE(wasEnabled);
  EXPECT_TRUE(IsWindowEnabled(WindowOf("form")));
}

/// Starts this program file once more; what it answers.
DWORD SecondInstance() {
  wchar_t file[MAX_PATH];
  GetModuleFileNameW(nullptr, file, MAX_PATH);
  std::wstring line = L"\"" + std::wstring(file) + L"\" --role=second-instance";
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                      &process)) {
    return STILL_ACTIVE;
  }
  constexpr DWORD kDeadline = 60'000;
  WaitForSingleObject(process.hProcess, kDeadline);
  DWORD answer = STILL_ACTIVE;
  GetExitCodeProcess(process.hProcess, &answer);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return answer;
}

TEST_F(SystemWindow, IsTheOnlyInstancesOfItsProgramFile) {
  ASSERT_FALSE(platform::IsPreviousInstanceRunning());
  EXPECT_EQ(SecondInstance(), 0u);
}

class Navigation : public WindowCase {
 protected:
  std::unique_ptr<platform::Form> form = NewForm();
  platform::Control control = form->AddControl("WebBrowser", "browser", 4500, 3000);
  platform::WebBrowser browser{control};
};

TEST_F(Navigation, IsAskedForWithThePathAsItWasGiven) {
  std::vector<std::string> asked;
  browser.OnBeforeNavigate([&](const std::string& address) {
    asked.push_back(address);
    return true;
  });
  ShowAndSee(*form);
  const std::string page = peer::PageWith({});
  browser.Navigate(page);
  EXPECT_TRUE(peer::RunUntil([&] { return !asked.empty(); }));
  EXPECT_THAT(asked, testing::ElementsAre(page));
}

TEST_F(Navigation, AnswersAbsenceWhereNoPageIsShown) {
  int answers = 0;
  browser.ReadInputs([&](const platform::PageInputs&) { ++answers; });
  EXPECT_TRUE(peer::RunUntil([&] { return answers == 1; }));
}

}  // namespace
