// A person at a real window of Windows, or of Wine.
//
// SPDX-License-Identifier: MIT
#include "tests/contract/window_driver.h"

#include <windows.h>
#include <gtest/gtest.h>
#include <oleacc.h>

#include <cmath>
#include <memory>
#include <stdexcept>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/shared/window/event_queue.h"
#include "platform/win32/automation.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/window/browser_control.h"
#include "platform/win32/window/page_elements.h"
#include "platform/win32/window/window_name.h"
#include "platform/window/form.h"
#include "tests/contract/win32/driver_loop.h"
#include "tests/contract/win32/window_handles.h"
#include "tests/support/temporary_folder.h"

namespace handles {
namespace {

struct Search {
  ATOM name;
  HWND found = nullptr;
};

BOOL CALLBACK CompareName(HWND window, LPARAM data) {
  auto& search = *reinterpret_cast<Search*>(data);
  const auto name = reinterpret_cast<UINT_PTR>(GetPropW(window, platform::kWindowNameProperty));
  if (name != search.name) return TRUE;
  search.found = window;
  return FALSE;
}

/// A name that no window has is no atom.
ATOM AtomOf(const std::string& name) {
  const ATOM atom = GlobalFindAtomW(platform::WideText(name).c_str());
  if (atom == 0) throw std::out_of_range("no window " + name);
  return atom;
}

BOOL CALLBACK CompareMessage(HWND window, LPARAM data) {
  wchar_t name[16] = L"";
  GetClassNameW(window, name, 16);
  if (std::wstring(name) != L"#32770" || !IsWindowVisible(window)) return TRUE;
  *reinterpret_cast<HWND*>(data) = window;
  return FALSE;
}

}  // namespace

HWND WindowOf(const std::string& form) {
  Search search{AtomOf(form)};
  EnumThreadWindows(GetCurrentThreadId(), CompareName, reinterpret_cast<LPARAM>(&search));
  if (!search.found) throw std::out_of_range("no window " + form);
  return search.found;
}

HWND WindowOf(const std::string& form, const std::string& control) {
  Search search{AtomOf(control)};
  EnumChildWindows(WindowOf(form), CompareName, reinterpret_cast<LPARAM>(&search));
  if (!search.found) throw std::out_of_range("no control " + control);
  return search.found;
}

HWND ShownMessage() {
  HWND found = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), CompareMessage, reinterpret_cast<LPARAM>(&found));
  return found;
}

std::string TextOf(HWND window) {
  std::wstring text(4096, L'\0');
  const int length = GetWindowTextW(window, text.data(), static_cast<int>(text.size()));
  return platform::Utf8Text(text.substr(0, static_cast<std::size_t>(length)));
}

}  // namespace handles

namespace peer {
namespace {

using handles::WindowOf;
using platform::ComPtr;

std::unique_ptr<support::TemporaryFolder> pages;
int pagesWritten = 0;

/// Looks every few milliseconds whether a message is shown.
struct MessageWatch {
  std::function<void(const Message&)> look;
  unsigned timer = 0;
  bool looking = false;
};
MessageWatch watch;

void EndWatch() {
  if (watch.timer != 0) platform::StopTimer(watch.timer);
  watch = {};
}

bool IsRightToLeft(HWND window) {
  const auto style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE));
  return (style & (WS_EX_RTLREADING | WS_EX_LAYOUTRTL)) != 0;
}

void LookForMessage() {
  const HWND message = handles::ShownMessage();
  if (!message || watch.looking) return;
  watch.looking = true;
  constexpr int kText = 0xffff;  // the number of every message box's text
  const HWND text = GetDlgItem(message, kText);
  const auto look = watch.look;
  look({handles::TextOf(text), handles::TextOf(message),
        IsRightToLeft(message) || IsRightToLeft(text)});
  SendMessageW(message, WM_COMMAND, IDOK, 0);
  watch.looking = false;
}

/// Whether the system's control shows pages at all: that of Wine, without its engine, does not.
bool ShowsPages() {
  static const bool shows = [] {
    platform::Form form("probe", 1500, 1500);
    auto control = form.AddControl("WebBrowser", "page", 1500, 1500);
    platform::WebBrowser browser(control);
    pages = std::make_unique<support::TemporaryFolder>();
    browser.Navigate(PageWith({{"probe", true, false}}));
    return RunEventsUntil(
        [&] {
          bool read = false;
          browser.ReadInputs(
              [&](const platform::PageInputs& inputs) { read = inputs && inputs->size() == 1; });
          return read;
        },
        std::chrono::seconds(3));
  }();
  return shows;
}

constexpr NotKept kNotKept[] = {
    {"Control.AnnouncesEachTextWhileTheFormIsActive", true,
     "Wine's IAccPropServices stores no names, so the event has the window's text"},
    {"Control.AnnouncesTheLastTextOnceWhenTheFormBecomesActive", true,
     "Wine's IAccPropServices stores no names, so the event has the window's text"},
    {"Message.IsWrittenRightToLeftWhereAsked", true,
     "Wine's message box does not write from right to left"},
};

/// All cases about browsers but those that stop before a page.
bool NeedsPage(const std::string& name) {
  return name.starts_with("Browser.") && name != "Browser.IsRefusedForAControlOfAnotherKind" &&
         name != "Browser.NavigatingAfterTheFormHasGoneThrows";
}

std::string Attribute(const std::string& text) {
  std::string escaped = core::ReplaceAll(text, "&", "&amp;");
  escaped = core::ReplaceAll(escaped, "\"", "&quot;");
  return "\"" + core::ReplaceAll(escaped, "<", "&lt;") + "\"";
}

std::string Utf16(const std::string& text) {
  const std::wstring wide = L'\xFEFF' + platform::WideText(text);
  return {reinterpret_cast<const char*>(wide.data()), wide.size() * 2};
}

ComPtr<IDispatch> DocumentIn(const std::string& form, const std::string& browser) {
  auto* const control = reinterpret_cast<platform::BrowserControl*>(
      GetWindowLongPtrW(WindowOf(form, browser), GWLP_USERDATA));
  return control->Document();
}

ComPtr<IDispatch> ElementIn(const std::string& form, const std::string& browser,
                            const std::string& id) {
  const platform::Variant name{platform::WideText(id)};
  return platform::MemberObject(DocumentIn(form, browser), L"getElementById", {&name});
}

ComPtr<IDispatch> ElementIn(const std::string& form, const std::string& browser,
                            std::wstring_view tag, int index) {
  return platform::PageElements(DocumentIn(form, browser), tag).At(index);
}

void Click(const ComPtr<IDispatch>& element) {
  platform::Variant nothing;
  platform::GetMember(element, L"click", {}, nothing);
}

std::string AttributeOf(const ComPtr<IDispatch>& element, std::wstring_view name) {
  platform::Variant value;
  platform::GetAttribute(element, name, value);
  return value.vt == VT_BSTR ? value.Utf8() : std::string();
}

std::vector<std::string> announced;

/// As a screen reader does: the event says where, and the text is the name there.
void CALLBACK HearAnnouncement(HWINEVENTHOOK, DWORD, HWND window, LONG object, LONG child, DWORD,
                               DWORD) {
  core::Attempt([&] {
    ComPtr<IAccessible> accessible;
    platform::Variant self;
    platform::Check(AccessibleObjectFromEvent(window, static_cast<DWORD>(object),
                                              static_cast<DWORD>(child), accessible.Out(), &self));
    BSTR name = nullptr;
    platform::Check(accessible->get_accName(self, &name));
    announced.push_back(platform::Utf8Text({name, SysStringLen(name)}));
    SysFreeString(name);
  });
}

void HearAnnouncements() {
  constexpr DWORD kLiveRegionChanged = 0x8019;
  static const HWINEVENTHOOK hook =
      SetWinEventHook(kLiveRegionChanged, kLiveRegionChanged, nullptr, HearAnnouncement,
                      GetCurrentProcessId(), 0, WINEVENT_OUTOFCONTEXT);
  if (!hook) throw std::runtime_error("no events");
  announced.clear();
}

/// Answers its path.
std::string WritePage(const std::string& page) {
  const auto path = pages->Path() / ("page" + std::to_string(++pagesWritten) + ".htm");
  support::WriteBytes(path, Utf16(page));
  return support::CorePath(path);
}

}  // namespace

void Begin() {
  EndWatch();
  SkipNotKept(kNotKept);
  HearAnnouncements();
  if (NeedsPage(RunningCase()) && !ShowsPages()) {
    GTEST_SKIP() << "this system's WebBrowser control shows no pages";
  }
  pages = std::make_unique<support::TemporaryFolder>();
}

std::vector<std::string> Announced() { return announced; }

bool RunUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
  return RunEventsUntil(condition, deadline);
}

bool IsSeen(const std::string& form) {
  return IsWindowVisible(WindowOf(form)) && !IsIconic(WindowOf(form));
}

void Close(const std::string& form) { PostMessageW(WindowOf(form), WM_CLOSE, 0, 0); }

void Resize(const std::string& form, float width, float height) {
  const HWND window = WindowOf(form);
  RECT whole, client;
  GetWindowRect(window, &whole);
  GetClientRect(window, &client);
  const int frameWidth = whole.right - whole.left - client.right;
  const int frameHeight = whole.bottom - whole.top - client.bottom;
  const float twips = platform::TwipsPerPixelX();
  SetWindowPos(window, nullptr, 0, 0, static_cast<int>(std::lround(width / twips)) + frameWidth,
               static_cast<int>(std::lround(height / twips)) + frameHeight,
               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void Minimise(const std::string& form) { ShowWindow(WindowOf(form), SW_MINIMIZE); }

void Restore(const std::string& form) { ShowWindow(WindowOf(form), SW_RESTORE); }

Pixels PlaceOf(const std::string& form, const std::string& control) {
  RECT inside, place;
  GetClientRect(WindowOf(form), &inside);
  // Two points at once are a rectangle, whose sides change places in a mirrored window.
  MapWindowPoints(WindowOf(form), nullptr, reinterpret_cast<POINT*>(&inside), 2);
  GetWindowRect(WindowOf(form, control), &place);
  return {static_cast<int>(place.left - inside.left), static_cast<int>(place.top - inside.top),
          static_cast<int>(place.right - place.left), static_cast<int>(place.bottom - place.top)};
}

// Windows lets no pointer and no key reach a disabled window, which BM_CLICK would.
void Press(const std::string& form, const std::string& button) {
  const HWND window = WindowOf(form, button);
  if (IsWindowEnabled(window)) PostMessageW(window, BM_CLICK, 0, 0);
}

void WhenAMessageIsShown(std::function<void(const Message&)> look) {
  EndWatch();
  watch.look = std::move(look);
  watch.timer = platform::StartTimer(10, LookForMessage);
}

std::string PageWith(const std::vector<platform::InputState>& boxes,
                     const std::string& linkAddress) {
  std::string page = "<!DOCTYPE html>\r\n<html>\r\n<title>Downloads</title>\r\n<body><table>\r\n";
  int row = 0;
  for (const auto& box : boxes) {
    page += "<tr><td><input type=\"checkbox\"" +
            (box.id.empty() ? "" : " id=" + Attribute(box.id)) + (box.checked ? " checked" : "") +
            (box.disabled ? " disabled" : "") + "><td><label for=" + Attribute(box.id) + ">Voice " +
            std::to_string(++row) + "</label></tr>\r\n";
  }
  page += "</table><a id=\"link\" href=" + Attribute(linkAddress) + ">link</a></body></html>\r\n";
  return WritePage(page);
}

std::string BusyPage() {
  return WritePage("<!DOCTYPE html><html><body><div id=\"busy\"></div></body></html>");
}

void ClickBox(const std::string& form, const std::string& browser, const std::string& id) {
  Click(ElementIn(form, browser, id));
}

void ClickLabel(const std::string& form, const std::string& browser, int row) {
  Click(ElementIn(form, browser, L"LABEL", row));
}

std::string NameOfBox(const std::string& form, const std::string& browser, int row) {
  const std::string title = AttributeOf(ElementIn(form, browser, L"INPUT", row), L"title");
  if (!title.empty()) return title;
  platform::Variant text;
  platform::GetMember(ElementIn(form, browser, L"LABEL", row), L"innerText", {}, text);
  return text.Utf8();
}

std::string NameOfBusyElement(const std::string& form, const std::string& browser) {
  return core::AttemptOr(
      std::string(), [&] { return AttributeOf(ElementIn(form, browser, "busy"), L"aria-label"); });
}

void FollowLink(const std::string& form, const std::string& browser) {
  Click(ElementIn(form, browser, "link"));
}

}  // namespace peer
