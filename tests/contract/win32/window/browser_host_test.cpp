// How the program hosts the WebBrowser control: what it requests of the control, and what it
// allows.
//
// SPDX-License-Identifier: MIT
#include <windows.h>
#include <mshtmdid.h>
#include <mshtmhst.h>

#include <functional>
#include <utility>

#include "platform/win32/wide_text.h"
#include "platform/window/event_loop.h"
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

TEST_F(BrowserHost, ShowsNoContextMenu) {
  POINT place = {};
  // Success is a menu of the host's own, which is none.
  EXPECT_EQ(fake.Site<IDocHostUIHandler>()->ShowContextMenu(0, &place, nullptr, nullptr), S_OK);
}

std::vector<UINT> received;
WNDPROC replacedProcedure = nullptr;

LRESULT CALLBACK Receive(HWND window, UINT message, WPARAM first, LPARAM second) {
  const bool isKey = message >= WM_KEYFIRST && message <= WM_KEYLAST;
  if (isKey || (message >= WM_XBUTTONDOWN && message <= WM_XBUTTONDBLCLK) ||
      message == WM_MOUSEWHEEL || message == WM_APPCOMMAND) {
    received.push_back(message);
  }
  return CallWindowProcW(replacedProcedure, window, message, first, second);
}

TEST_F(BrowserHost, MouseAndKeyboardGoNeitherBackNorForward) {
  ShowAndSee(*form);
  const HWND host = WindowOf("form", "browser");
  SetFocus(host);
  received.clear();
  replacedProcedure = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(host, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Receive)));
  PostMessageW(host, WM_XBUTTONDOWN, MAKEWPARAM(MK_XBUTTON1, XBUTTON1), 0);
  PostMessageW(host, WM_XBUTTONUP, MAKEWPARAM(0, XBUTTON1), 0);
  PostMessageW(host, WM_MOUSEWHEEL, MAKEWPARAM(MK_SHIFT, WHEEL_DELTA), 0);
  PostMessageW(host, WM_KEYDOWN, VK_BROWSER_BACK, 0);
  PostMessageW(host, WM_KEYUP, VK_BROWSER_BACK, 0);
  PostMessageW(host, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
  EXPECT_TRUE(peer::RunUntil([] { return !received.empty() && received.back() == WM_MOUSEWHEEL; }));
  EXPECT_THAT(received, testing::ElementsAre(WM_MOUSEWHEEL));
}

class BrowserHostKeys : public BrowserHost {
 protected:
  platform::Control button = form->AddControl("CommandButton", "button", 1500, 495);

  /// The control has no further element for the Tab key.
  HRESULT LeaveByTab() {
    ShowAndSee(*form);
    SetForegroundWindow(WindowOf("form"));
    EXPECT_TRUE(peer::RunUntil([] { return GetActiveWindow() == WindowOf("form"); }));
    SetFocus(WindowOf("form", "browser"));
    fake.deactivations = 0;
    MSG tab = {WindowOf("form", "browser"), WM_KEYDOWN, VK_TAB, 1, 0, {}};
    return fake.Site<IOleControlSite>()->TranslateAccelerator(&tab, 0);
  }
};

TEST_F(BrowserHostKeys, TabLeavesThePageInactiveSoThatItIsEnteredAtItsFirstElementAgain) {
  EXPECT_EQ(LeaveByTab(), S_OK);
  EXPECT_EQ(GetFocus(), WindowOf("form", "button"));
  EXPECT_GE(fake.deactivations, 1);
}

TEST_F(BrowserHostKeys, TabIsLeftToThePageWhereNoOtherControlTakesTheFocus) {
  button.SetEnabled(false);
  EXPECT_EQ(LeaveByTab(), S_FALSE);
  EXPECT_EQ(GetFocus(), WindowOf("form", "browser"));
  EXPECT_EQ(fake.deactivations, 0);
}

using Arguments = DISPPARAMS;
using Members = std::vector<std::pair<DISPID, std::function<void(const Arguments&, VARIANT&)>>>;

/// An object with these members by number; every name is the number that `named` says.
class ScriptedObject final : public platform::ComObject<IDispatch> {
 public:
  ScriptedObject(DISPID named, Members members) : mNamed(named), mMembers(std::move(members)) {}

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* numbers) override {
    *numbers = mNamed;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID number, REFIID, LCID, WORD, DISPPARAMS* arguments,
                                   VARIANT* answer, EXCEPINFO*, UINT*) override {
    for (const auto& [each, call] : mMembers) {
      if (each != number) continue;
      call(*arguments, *answer);
      return S_OK;
    }
    return DISP_E_MEMBERNOTFOUND;
  }

 private:
  DISPID mNamed;
  Members mMembers;
};

void AnswerObject(IDispatch* object, VARIANT& answer) {
  answer.vt = VT_DISPATCH;
  answer.pdispVal = object;
  object->AddRef();
}

platform::ComPtr<IDispatch> Box(const wchar_t* id) {
  const auto getAttribute = [id](const Arguments& arguments, VARIANT& answer) {
    // Other attributes, and properties, are absent.
    if (arguments.cArgs != 1 || std::wstring_view(arguments.rgvarg[0].bstrVal) != L"id") return;
    answer.vt = VT_BSTR;
    answer.bstrVal = SysAllocString(id);
  };
  return platform::ComPtr<IDispatch>::Share(new ScriptedObject(1, {{1, getAttribute}}));
}

TEST_F(BrowserHost, ReadsTheBoxesOfAPageWithElementsCalledLengthAndItem) {
  const std::vector boxes = {Box(L"check1"), Box(L"length"), Box(L"item")};
  // As the engine's modes before version 9: an element's name hides a member's.
  constexpr DISPID kElement = 1000000;
  const auto collection = platform::ComPtr<IDispatch>::Share(new ScriptedObject(
      kElement, {{kElement, [&](auto&, VARIANT& answer) { AnswerObject(boxes[1].Get(), answer); }},
                 {DISPID_COLLECTION,
                  [&](auto&, VARIANT& answer) {
                    answer.vt = VT_I4;
                    answer.lVal = static_cast<long>(boxes.size());
                  }},
                 {DISPID_VALUE, [&](const Arguments& arguments, VARIANT& answer) {
                    AnswerObject(boxes.at(arguments.rgvarg[0].lVal).Get(), answer);
                  }}}));
  fake.document = platform::ComPtr<IDispatch>::Share(new ScriptedObject(
      1, {{1, [&](auto&, VARIANT& answer) { AnswerObject(collection.Get(), answer); }}}));
  std::vector<std::string> ids;
  browser.ReadInputs([&](const platform::PageInputs& inputs) {
    ASSERT_TRUE(inputs);
    for (const auto& input : *inputs) ids.push_back(input.id);
  });
  EXPECT_THAT(ids, testing::ElementsAre("check1", "length", "item"));
}

}  // namespace
