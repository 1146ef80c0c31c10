// What Windows does to a window beyond what every system does: densities, keys, the end of a
// session, a second instance, names for other programs.
//
// SPDX-License-Identifier: MIT
#include <windows.h>
#include <commctrl.h>
#include <shellapi.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <utility>

#include "core/attempt.h"
#include "platform/shared/window/event_queue.h"
#include "platform/system/program.h"
#include "platform/system/shell.h"
#include "platform/win32/system_library.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/window/dpi.h"
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

LOGFONTW FontOf(HWND window) {
  LOGFONTW font = {};
  GetObjectW(reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)), sizeof font, &font);
  return font;
}

int LetterHeight(HWND window) { return std::abs(FontOf(window).lfHeight); }

int CALLBACK TakeFace(const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM face) {
  *reinterpret_cast<std::wstring*>(face) = font->lfFaceName;
  return font->lfFaceName[0] == L'@' ? 1 : 0;  // text from top to bottom is none of ours
}

/// An installed face that has a character set.
std::wstring FaceWith(BYTE charset) {
  LOGFONTW wanted = {};
  wanted.lfCharSet = charset;
  std::wstring face;
  const HDC screen = GetDC(nullptr);
  EnumFontFamiliesExW(screen, &wanted, TakeFace, reinterpret_cast<LPARAM>(&face), 0);
  ReleaseDC(nullptr, screen);
  return face;
}

TEST_F(SystemWindow, WritesInTheFaceAndCharacterSetThatAreSet) {
  const LOGFONTW usual = FontOf(Button("label"));
  const std::wstring face = FaceWith(RUSSIAN_CHARSET);
  ASSERT_NE(face, usual.lfFaceName);
  for (const char* name : {"label", "second"}) {
    auto& control = std::string(name) == "label" ? label : second;
    for (const BYTE charset : {BYTE{RUSSIAN_CHARSET}, BYTE{ANSI_CHARSET}}) {
      control.SetFont({platform::Utf8Text(face), charset});
      EXPECT_EQ(FontOf(Button(name)).lfFaceName, face) << name;
      EXPECT_EQ(FontOf(Button(name)).lfCharSet, charset) << name;
    }
    control.SetFont({"No Such Face", RUSSIAN_CHARSET});
    EXPECT_STREQ(FontOf(Button(name)).lfFaceName, usual.lfFaceName) << name;
  }
}

DWORD StyleOf(const std::string& control, int which) {
  return static_cast<DWORD>(GetWindowLongPtrW(WindowOf("form", control), which));
}

TEST_F(SystemWindow, WritesInTheDirectionThatIsSet) {
  const auto isRightToLeft = [](const char* name) {
    return (StyleOf(name, GWL_EXSTYLE) & WS_EX_RTLREADING) != 0;
  };
  for (const bool rightToLeft : {true, false, true}) {
    label.SetRightToLeft(rightToLeft);
    second.SetRightToLeft(rightToLeft);
    EXPECT_EQ(isRightToLeft("label"), rightToLeft);
    EXPECT_EQ(isRightToLeft("second"), rightToLeft);
    EXPECT_EQ(StyleOf("label", GWL_STYLE) & SS_TYPEMASK,
              rightToLeft ? DWORD{SS_RIGHT} : DWORD{SS_LEFT});
  }
}

BOOL CALLBACK CompareToolTips(HWND window, LPARAM found) {
  wchar_t name[32] = L"";
  GetClassNameW(window, name, 32);
  if (std::wstring(name) != TOOLTIPS_CLASSW || GetWindow(window, GW_OWNER) != WindowOf("form")) {
    return TRUE;
  }
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

/// As the system's own window for tool tips has it.
std::wstring ToolTipOf(const std::string& control) {
  HWND toolTips = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), CompareToolTips, reinterpret_cast<LPARAM>(&toolTips));
  wchar_t text[256] = L"";
  TOOLINFOW tool = {};
  tool.cbSize = sizeof tool;
  tool.hwnd = WindowOf("form");
  tool.uId = reinterpret_cast<UINT_PTR>(WindowOf("form", control));
  tool.lpszText = text;
  SendMessageW(toolTips, TTM_GETTEXTW, 256, reinterpret_cast<LPARAM>(&tool));
  return text;
}

TEST_F(SystemWindow, GivesToolTipsToTheSystem) {
  second.SetToolTipText("Installs & closes");
  label.SetToolTipText("\u062d\u062c\u0645");
  EXPECT_EQ(ToolTipOf("first"), L"");
  EXPECT_EQ(ToolTipOf("second"), L"Installs & closes");
  EXPECT_EQ(ToolTipOf("label"), L"\u062d\u062c\u0645");
  second.SetToolTipText("");
  EXPECT_EQ(ToolTipOf("second"), L"");
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

/// Where this program keeps the address of a function of a library.
void*& ImportOf(void* function) {
  auto* const base = reinterpret_cast<char*>(GetModuleHandleW(nullptr));
  const auto& dos = *reinterpret_cast<IMAGE_DOS_HEADER*>(base);
  const auto& image = *reinterpret_cast<IMAGE_NT_HEADERS*>(base + dos.e_lfanew);
  const auto& table = image.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
  auto** const first = reinterpret_cast<void**>(base + table.VirtualAddress);
  auto** const end = first + table.Size / sizeof *first;
  auto** const found = std::find(first, end, function);
  if (found == end) throw std::out_of_range("the function is not imported");
  DWORD before = 0;
  VirtualProtect(found, sizeof *found, PAGE_READWRITE, &before);
  return *found;
}

/// Replaces an import while it exists.
class Replaced {
 public:
  Replaced(void* function, void* replacement)
      : mImport(ImportOf(function)), mFunction(std::exchange(mImport, replacement)) {}
  ~Replaced() { mImport = mFunction; }
  Replaced(const Replaced&) = delete;
  Replaced& operator=(const Replaced&) = delete;

 private:
  void*& mImport;
  void* mFunction;
};

struct Launch {
  HWND owner = nullptr;
  std::wstring verb, file, parameters, folder;
  int show = -1;
};
Launch launch;

BOOL WINAPI RecordLaunch(SHELLEXECUTEINFOW* execute) {
  const auto text = [](const wchar_t* given) { return std::wstring(given ? given : L""); };
  launch = {execute->hwnd,
            text(execute->lpVerb),
            text(execute->lpFile),
            text(execute->lpParameters),
            text(execute->lpDirectory),
            execute->nShow};
  return TRUE;
}

TEST_F(SystemWindow, ElevatesAProgramInANormalWindowWithoutAnOwner) {
  ShowAndSee(*form);
  void* const function = platform::FindSystemFunction(L"shell32.dll", "ShellExecuteExW");
  const Replaced recorded(function, reinterpret_cast<void*>(RecordLaunch));
  platform::RunElevated("C:\\Folder\\Installer.exe", "C:\\Folder");
  EXPECT_EQ(launch.owner, nullptr);
  EXPECT_EQ(launch.verb, L"runas");
  EXPECT_EQ(launch.file, L"C:\\Folder\\Installer.exe");
  EXPECT_EQ(launch.parameters, L"");
  EXPECT_EQ(launch.folder, L"C:\\Folder");
  EXPECT_EQ(launch.show, SW_SHOWNORMAL);
}

BYTE pitchAndFamily = 0;

int WINAPI RecordEnumeration(HDC, LOGFONTW* font, FONTENUMPROCW, LPARAM, DWORD) {
  pitchAndFamily |= font->lfPitchAndFamily;
  return 1;
}

TEST_F(SystemWindow, LooksForFacesOfEveryPitchAndFamily) {
  pitchAndFamily = 0;
  void* const function = platform::FindSystemFunction(L"gdi32.dll", "EnumFontFamiliesExW");
  const Replaced recorded(function, reinterpret_cast<void*>(RecordEnumeration));
  label.SetFont({"Tahoma", RUSSIAN_CHARSET});
  EXPECT_EQ(pitchAndFamily, 0);
}

UINT placing = 0;
WNDPROC replacedProcedure = nullptr;

LRESULT CALLBACK RecordPlacing(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_WINDOWPOSCHANGING) {
    placing |= reinterpret_cast<const WINDOWPOS*>(second)->flags;
  }
  return CallWindowProcW(replacedProcedure, window, message, first, second);
}

/// Whether the system is notified of a new style of the window.
bool IsStyleApplied(HWND window, const std::function<void()>& change) {
  placing = 0;
  replacedProcedure = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(RecordPlacing)));
  change();
  SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(replacedProcedure));
  return (placing & SWP_FRAMECHANGED) != 0;
}

TEST_F(SystemWindow, AppliesAChangedStyle) {
  EXPECT_TRUE(IsStyleApplied(WindowOf("form"), [&] { form->SetRightToLeft(true); }));
  EXPECT_TRUE(IsStyleApplied(Button("label"), [&] { label.SetRightToLeft(true); }));
}

TEST_F(SystemWindow, TakesTheScreensDensityWhereTheSystemKnowsNoneOfAWindow) {
  EXPECT_EQ(platform::MonitorDpi(WindowOf("form")), platform::DpiOf(WindowOf("form")));
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
