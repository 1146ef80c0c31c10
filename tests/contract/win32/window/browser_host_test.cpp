// How the program hosts the WebBrowser control: what it requests of the control, and what it
// allows.
//
// SPDX-License-Identifier: MIT
#include <windows.h>

#include "platform/win32/wide_text.h"
#include "tests/contract/win32/fake_browser.h"
#include "tests/contract/win32/window_handles.h"
#include "tests/contract/window_case.h"

namespace {

using handles::WindowOf;

class BrowserHost : public WindowCase {
 protected:
  FakeBrowserClass browserClass;
  std::unique_ptr<platform::Form> form = NewForm();
  platform::Control control = form->AddControl("WebBrowser", "browser", 4500, 3000);
  platform::WebBrowser browser{control};
  FakeBrowser& fake = browserClass.Last();
};

TEST_F(BrowserHost, KeepsTheZoomWhenASystemSettingChanges) {
  for (const UINT message : {WM_SETTINGCHANGE, WM_SYSCOLORCHANGE}) {
    SendMessageW(WindowOf("form"), message, 0, 0);
  }
  EXPECT_THAT(fake.zooms, testing::IsEmpty());
}

TEST_F(BrowserHost, ScalesThePageOnAScreenOfAnotherDensity) {
  constexpr UINT kDpiChanged = 0x02e0;
  RECT place;
  GetWindowRect(WindowOf("form"), &place);
  SendMessageW(WindowOf("form"), kDpiChanged, MAKEWPARAM(192, 192),
               reinterpret_cast<LPARAM>(&place));
  EXPECT_THAT(fake.zooms, testing::SizeIs(1));
}

TEST_F(BrowserHost, CancelsANavigationWhoseAddressCannotBeRead) {
  int requests = 0;
  browser.OnBeforeNavigate([&](const std::string&) {
    ++requests;
    return false;
  });
  EXPECT_FALSE(fake.Cancels(L"C:\\page.htm"));
  VARIANT unreadable;
  unreadable.vt = VT_UNKNOWN;
  unreadable.punkVal = nullptr;
  EXPECT_TRUE(fake.Cancels(unreadable));
  EXPECT_EQ(requests, 1);
}

TEST_F(BrowserHost, GoesToItsOwnPageOnAServerHoweverTheAddressIsSpelled) {
  browser.Navigate("\\\\server\\Share\\a b\\index.htm");
  for (const wchar_t* spelling :
       {L"\\\\server\\Share\\a b\\index.htm", L"\\\\SERVER\\share\\A B\\INDEX.HTM",
        L"//server/Share/a b/index.htm", L"file://server/Share/a%20b/index.htm",
        L"file:\\\\server\\Share\\a b\\index.htm", L"file://///server/Share/a%20b/index.htm"}) {
    EXPECT_FALSE(fake.Cancels(spelling)) << platform::Utf8Text(spelling);
  }
  for (const wchar_t* other :
       {L"\\\\server\\Share\\a b\\other.htm", L"file://other/Share/a%20b/index.htm",
        L"file://server/Share/a%20b/index.htm.exe", L"https://server/Share/a%20b/index.htm"}) {
    EXPECT_TRUE(fake.Cancels(other)) << platform::Utf8Text(other);
  }
}

TEST_F(BrowserHost, GoesBackToNoEarlierPageOfItsOwn) {
  browser.Navigate("C:\\Program Files\\wait.htm");
  EXPECT_FALSE(fake.Cancels(L"C:\\Program Files\\wait.htm"));
  browser.Navigate("C:\\data\\index.htm");
  EXPECT_TRUE(fake.Cancels(L"file:///C:/Program%20Files/wait.htm"));
  EXPECT_FALSE(fake.Cancels(L"file:///c:/data/index.htm"));
}

BOOL CALLBACK CompareClass(HWND window, LPARAM found) {
  wchar_t name[32] = L"";
  GetClassNameW(window, name, 32);
  if (std::wstring(name) == L"VelorVoiceSetupBrowser") *reinterpret_cast<HWND*>(found) = window;
  return TRUE;
}

TEST_F(BrowserHost, AControlThatCannotBeShownLeavesAWindowThatCallsNothing) {
  FakeBrowser::verbResult = E_FAIL;
  EXPECT_ANY_THROW(form->AddControl("WebBrowser", "failing", 4500, 3000));
  HWND left = nullptr;
  EnumChildWindows(WindowOf("form"), CompareClass, reinterpret_cast<LPARAM>(&left));
  ASSERT_NE(left, nullptr);
  ASSERT_NE(left, WindowOf("form", "browser"));
  EXPECT_EQ(GetWindowLongPtrW(left, GWLP_USERDATA), 0);
}

}  // namespace
