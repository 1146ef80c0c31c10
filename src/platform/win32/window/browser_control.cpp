// The WebBrowser control's window, focus and keys. What the control may do is in browser_site.cpp.
//
// SPDX-License-Identifier: MIT
#include "platform/win32/window/browser_control.h"

#include <exdispid.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/errors.h"
#include "platform/win32/window/dpi.h"
#include "platform/win32/window/page_description.h"

namespace platform {
namespace {

constexpr const wchar_t* kHostClass = L"VelorVoiceSetupBrowser";

// Moving, ticking and following. Other keys of the control's would go back to the page before,
// open dialogs or windows, or load the page anew, which forgets what was ticked.
constexpr std::array kPageKeys = {VK_TAB,   VK_SPACE, VK_RETURN, VK_UP,   VK_DOWN, VK_LEFT,
                                  VK_RIGHT, VK_PRIOR, VK_NEXT,   VK_HOME, VK_END};
// With Ctrl: select all, copy, find, and the three of the zoom.
constexpr std::array<int, 8> kPageKeysWithControl = {
    'A', 'C', 'F', '0', VK_OEM_PLUS, VK_OEM_MINUS, VK_ADD, VK_SUBTRACT};

bool Contains(const auto& keys, WPARAM key) {
  return std::ranges::find(keys, static_cast<int>(key)) != keys.end();
}

bool IsPageKey(const MSG& message) {
  if (message.message != WM_KEYDOWN) return false;
  return GetKeyState(VK_CONTROL) < 0 ? Contains(kPageKeysWithControl, message.wParam)
                                     : Contains(kPageKeys, message.wParam);
}

/// The keyboard's own keys for back, forward and the like, which the system makes commands of.
bool IsNavigationKey(const MSG& message) {
  return (message.message == WM_KEYDOWN || message.message == WM_KEYUP) &&
         message.wParam >= VK_BROWSER_BACK && message.wParam <= VK_BROWSER_HOME;
}

/// "C:\", and "C:/" as addresses have it.
bool IsOnDrive(std::string_view path) {
  return path.size() > 2 && path.at(1) == ':' && (path.at(2) == '\\' || path.at(2) == '/');
}

/// Files on a drive, as path or address, and what the control shows where a file is missing. A file
/// of another machine is none of these: asking for it would tell that machine who asks.
bool IsLocal(std::string_view address) {
  constexpr std::string_view kFile = "FILE:///";
  const std::string start = core::UpperCase(address.substr(0, kFile.size()));
  if (start == kFile) return IsOnDrive(address.substr(kFile.size()));
  return IsOnDrive(address) || start.starts_with("ABOUT:") || start.starts_with("RES:");
}

RECT InsideOf(HWND window) {
  RECT inside;
  GetClientRect(window, &inside);
  return inside;
}

}  // namespace

BrowserControl::BrowserControl(HWND form, const std::string& name)
    : NativeControl("WebBrowser", name),
      mSite(ComPtr<BrowserSite>::Share(new BrowserSite(this))),
      mBrowser(CreateObject<IWebBrowser2>(__uuidof(WebBrowser))) {
  WNDCLASSW description = {};
  description.lpfnWndProc = HandleMessage;
  description.hInstance = GetModuleHandleW(nullptr);
  description.hbrBackground = GetSysColorBrush(COLOR_WINDOW);
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.lpszClassName = kHostClass;
  RegisterClassW(&description);
  // Not mirrored, whatever the form is: the page knows its own direction.
  SetWindow(CreateWindowExW(WS_EX_NOINHERITLAYOUT, kHostClass, L"",
                            WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPCHILDREN | WS_CLIPSIBLINGS,
                            0, 0, 0, 0, form, nullptr, description.hInstance, nullptr));
  ShowControl();
  // Last, so that no message reaches an object whose construction has failed.
  SetWindowLongPtrW(Window(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
}

BrowserControl::~BrowserControl() { CloseControl(); }

void BrowserControl::ShowControl() {
  // No dialog about a page, and no file dropped on it.
  core::Attempt([&] { Check(mBrowser->put_Silent(VARIANT_TRUE)); });
  core::Attempt([&] { Check(mBrowser->put_RegisterAsDropTarget(VARIANT_FALSE)); });
  const auto object = mBrowser.As<IOleObject>();
  Check(object->SetClientSite(mSite.Get()));
  ListenToEvents();
  const RECT inside = InsideOf(Window());
  Check(object->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, mSite.Get(), 0, Window(), &inside));
}

void BrowserControl::ListenToEvents() {
  const auto container = mBrowser.As<IConnectionPointContainer>();
  Check(container->FindConnectionPoint(__uuidof(DWebBrowserEvents2), mEvents.Out()));
  Check(mEvents->Advise(static_cast<IDispatch*>(mSite.Get()), &mEventsCookie));
}

LRESULT CALLBACK BrowserControl::HandleMessage(HWND window, UINT message, WPARAM first,
                                               LPARAM second) {
  auto* const control = reinterpret_cast<BrowserControl*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (control && message == WM_SIZE) core::Attempt([&] { control->Fit(); });
  if (control && message == WM_SETFOCUS) core::Attempt([&] { control->EnterPage(nullptr); });
  return DefWindowProcW(window, message, first, second);
}

void BrowserControl::Fit() {
  const RECT inside = InsideOf(Window());
  Check(mBrowser.As<IOleInPlaceObject>()->SetObjectRects(&inside, &inside));
}

/// Told of the key that brought the focus, the control goes to its first or last element.
void BrowserControl::EnterPage(MSG* key) {
  const auto object = mBrowser.As<IOleObject>();
  const RECT inside = InsideOf(Window());
  object->DoVerb(OLEIVERB_UIACTIVATE, key, mSite.Get(), 0, Window(), &inside);
  // A page that is active already, but has lost the keyboard, does not take it by itself.
  HWND page = nullptr;
  const auto inPlace = mBrowser.As<IOleInPlaceObject>();
  if (!HasFocus() || GetFocus() == Window()) {
    if (SUCCEEDED(inPlace->GetWindow(&page)) && page && page != Window()) SetFocus(page);
  }
}

void BrowserControl::TakeFocus(FocusFrom from) {
  // Forwards or backwards the control learns from the Shift key.
  MSG key = {Window(), WM_KEYDOWN, VK_TAB, 1, 0, {}};
  EnterPage(from == FocusFrom::kOutside ? nullptr : &key);
}

bool BrowserControl::TakeKey(MSG& message) {
  if (IsNavigationKey(message)) return true;
  if (!IsPageKey(message)) return false;
  return mBrowser.As<IOleInPlaceActiveObject>()->TranslateAccelerator(&message) == S_OK;
}

void BrowserControl::FormActivated(bool active) {
  core::Attempt([&] { mBrowser.As<IOleInPlaceActiveObject>()->OnFrameWindowActivate(active); });
}

/// So that the Tab key enters at the first or last element again.
void BrowserControl::FocusMoved() {
  core::Attempt([&] { mBrowser.As<IOleInPlaceObject>()->UIDeactivate(); });
}

void BrowserControl::DpiChanged() { Scale(); }

/// The control counts in the density that the system had when the program started; on a screen of
/// another one the page is magnified by what is missing.
void BrowserControl::Scale() {
  core::Attempt([&] {
    Variant percent(static_cast<long>(MulDiv(100, DpiOf(Window()), SystemDpi())));
    Check(mBrowser->ExecWB(OLECMDID_OPTICAL_ZOOM, OLECMDEXECOPT_DONTPROMPTUSER, &percent, nullptr));
  });
}

void BrowserControl::End() {
  mBeforeNavigate = nullptr;
  if (Lives()) SetWindowLongPtrW(Window(), GWLP_USERDATA, 0);
  CloseControl();
  NativeControl::End();
}

void BrowserControl::CloseControl() {
  if (!mBrowser) return;
  mSite->ForgetOwner();
  const auto browser = std::exchange(mBrowser, {});
  core::Attempt([&] { Check(mEvents->Unadvise(mEventsCookie)); });
  core::Attempt([&] { Check(browser.As<IOleInPlaceObject>()->InPlaceDeactivate()); });
  core::Attempt([&] {
    const auto object = browser.As<IOleObject>();
    object->Close(OLECLOSE_NOSAVE);
    Check(object->SetClientSite(nullptr));
  });
  mEvents = {};
}

void BrowserControl::SetBeforeNavigate(std::function<bool(const std::string&)> handler) {
  mBeforeNavigate = std::move(handler);
}

void BrowserControl::Navigate(const std::string& path) {
  CheckLives();
  mPages.Navigate(path);
  Variant address{WideText(path)};
  Variant nothing;
  Check(mBrowser->Navigate2(&address, &nothing, &nothing, &nothing, &nothing));
}

void BrowserControl::Reload() {
  Window();
  Check(mBrowser->Refresh());
}

ComPtr<IDispatch> BrowserControl::Document() const {
  if (!mBrowser) throw Unavailable("the browser was destroyed");
  ComPtr<IDispatch> document;
  Check(mBrowser->get_Document(document.Out()));
  if (!document) throw Unavailable("the browser shows no page yet");
  return document;
}

bool BrowserControl::IsRefused(const std::string& address) {
  // The handler is asked even where the answer is known: it is promised every navigation.
  bool cancelled = false;
  if (const auto handler = mBeforeNavigate) {
    core::Attempt([&] { cancelled = handler(address); });
  }
  // The host's own page may be on a server, as a folder of the user's may.
  return cancelled || mPages.IsRefused(address, IsLocal(address));
}

void BrowserControl::PageShown() {
  core::Attempt([&] { DescribePage(Document(), mBusyText); });
  if (DpiOf(Window()) != SystemDpi()) Scale();
  if (GetActiveWindow() == GetAncestor(Window(), GA_ROOT)) EnterPage(nullptr);
}

bool BrowserControl::LeaveByTab(bool backwards) {
  return SendMessageW(GetParent(Window()), WM_NEXTDLGCTL, backwards, 0) == 0;
}

}  // namespace platform
