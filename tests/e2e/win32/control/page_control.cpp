// The stand-in control: window, navigation, events. Elements are in document.cpp.
//
// SPDX-License-Identifier: MIT
#include "tests/e2e/win32/control/page_control.h"

#include <cguid.h>
#include <exdispid.h>
#include <mshtmdid.h>
#include <olectl.h>

#include "core/attempt.h"
#include "tests/e2e/win32/control/document.h"

using platform::Bstr;
using platform::Check;
using platform::ComPtr;
using platform::Variant;

namespace page {
namespace {

constexpr UINT kHostTold = WM_APP;
constexpr const wchar_t* kClass = L"Internet Explorer_Server";

/// Wine knows where a file of its drives really lies. What is no path stays as it is.
std::string UnixPath(const std::string& path) {
  using FindPath = char* CDECL(const wchar_t*);
  const auto findPath = reinterpret_cast<FindPath*>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "wine_get_unix_file_name")));
  const bool isPath = path.size() > 2 && path[1] == ':' && path[2] == '\\';
  char* const found = findPath && isPath ? findPath(platform::WideText(path).c_str()) : nullptr;
  if (!found) return path;
  std::string unixPath = found;
  HeapFree(GetProcessHeap(), 0, found);
  return unixPath;
}

std::string Number(LONG number) { return std::to_string(number); }

/// An argument that an event hands over by reference.
VARIANT ByReference(VARIANT& value) {
  VARIANT reference;
  reference.vt = VT_BYREF | VT_VARIANT;
  reference.pvarVal = &value;
  return reference;
}

VARIANT ByReference(VARIANT_BOOL& flag) {
  VARIANT reference;
  reference.vt = VT_BYREF | VT_BOOL;
  reference.pboolVal = &flag;
  return reference;
}

VARIANT Text(const Bstr& text) {
  VARIANT value;
  value.vt = VT_BSTR;
  value.bstrVal = text.Get();
  return value;
}

VARIANT Object(IDispatch* object) {
  VARIANT value;
  value.vt = VT_DISPATCH;
  value.pdispVal = object;
  return value;
}

VARIANT Empty() {
  VARIANT value;
  value.vt = VT_EMPTY;
  return value;
}

/// Not what lies around the page, since its children are painted with it.
BOOL CALLBACK PaintBeside(HWND window, LPARAM number) {
  const auto page = reinterpret_cast<HWND>(number);
  if (window != page && !IsChild(window, page)) UpdateWindow(window);
  return TRUE;
}

HRESULT Tried(const auto& step) { return core::Attempt(step) ? S_OK : E_FAIL; }

}  // namespace

// Navigation

HRESULT PageControl::Navigate2(VARIANT* address, VARIANT*, VARIANT*, VARIANT*, VARIANT*) {
  return Tried([&] {
    Variant text;
    Check(VariantCopyInd(&text, address));
    const std::string path = text.Utf8();
    if (!IsCancelled(path)) mConnection->Ask({"navigate", UnixPath(path)});
  });
}

HRESULT PageControl::get_Document(IDispatch** document) {
  *document = nullptr;
  if (!mShown) return S_FALSE;
  return Tried([&] {
    const auto made = MakeDocument(mConnection);
    *document = made.Get();
    (*document)->AddRef();
  });
}

HRESULT PageControl::ExecWB(OLECMDID command, OLECMDEXECOPT, VARIANT* argument, VARIANT*) {
  if (command != OLECMDID_OPTICAL_ZOOM || !argument) return E_NOTIMPL;
  return Tried([&] { mConnection->Ask({"zoom", Number(argument->lVal)}); });
}

// Life in the program's window

HRESULT PageControl::DoVerb(LONG verb, LPMSG message, IOleClientSite*, LONG, HWND parent,
                            LPCRECT place) {
  return Tried([&] {
    if (!mWindow) Activate(parent, *place);
    if (verb != OLEIVERB_UIACTIVATE) return;
    SetFocus(mWindow);
    const bool byTab = message && message->message == WM_KEYDOWN && message->wParam == VK_TAB;
    if (byTab) mConnection->Ask({"enter", GetKeyState(VK_SHIFT) < 0 ? "last" : "first"});
  });
}

void PageControl::Activate(HWND parent, const RECT& place) {
  WNDCLASSW description = {};
  description.lpfnWndProc = HandleMessage;
  description.hInstance = GetModuleHandleW(nullptr);
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.lpszClassName = kClass;
  RegisterClassW(&description);
  mWindow =
      CreateWindowExW(WS_EX_NOINHERITLAYOUT, kClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS,
                      place.left, place.top, place.right - place.left, place.bottom - place.top,
                      parent, nullptr, description.hInstance, nullptr);
  SetWindowLongPtrW(mWindow, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  TellSite();
  mConnection = std::make_shared<PageConnection>();
  mConnection->Wake(mWindow, kHostTold);
  TellPolicy();
  Resized();
}

void PageControl::TellSite() {
  const auto site = mSite.As<IOleInPlaceSite>();
  Check(site->CanInPlaceActivate());
  Check(site->OnInPlaceActivate());
  ComPtr<IOleInPlaceFrame> frame;
  ComPtr<IOleInPlaceUIWindow> window;
  RECT place, clip;
  OLEINPLACEFRAMEINFO information = {};
  information.cb = sizeof information;
  Check(site->GetWindowContext(frame.Out(), window.Out(), &place, &clip, &information));
}

/// What the page may do is the program's to say, as an ambient property; the host keeps to it.
void PageControl::TellPolicy() {
  Variant flags;
  DISPPARAMS none = {};
  Check(mSite.As<IDispatch>(IID_IDispatch)
            ->Invoke(DISPID_AMBIENT_DLCONTROL, IID_NULL, LOCALE_INVARIANT, DISPATCH_PROPERTYGET,
                     &none, &flags, nullptr, nullptr));
  mConnection->Ask({"policy", std::to_string(static_cast<ULONG>(flags.As(VT_I4).lVal))});
  const HDC screen = GetDC(nullptr);
  mConnection->Ask({"density", Number(GetDeviceCaps(screen, LOGPIXELSX))});
  ReleaseDC(nullptr, screen);
}

HRESULT PageControl::Close(DWORD) { return InPlaceDeactivate(); }

HRESULT PageControl::InPlaceDeactivate() {
  mShown = false;
  mConnection = nullptr;
  if (const HWND window = std::exchange(mWindow, nullptr)) {
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    DestroyWindow(window);
  }
  return S_OK;
}

HRESULT PageControl::GetWindow(HWND* window) {
  *window = mWindow;
  return mWindow ? S_OK : E_FAIL;
}

HRESULT PageControl::SetObjectRects(LPCRECT place, LPCRECT) {
  return Tried([&] {
    SetWindowPos(mWindow, nullptr, place->left, place->top, place->right - place->left,
                 place->bottom - place->top, SWP_NOZORDER | SWP_NOACTIVATE);
  });
}

void PageControl::Resized() {
  RECT inside;
  GetClientRect(mWindow, &inside);
  mConnection->Ask({"size", Number(inside.right), Number(inside.bottom)});
}

LRESULT CALLBACK PageControl::HandleMessage(HWND window, UINT message, WPARAM first,
                                            LPARAM second) {
  auto* const control = reinterpret_cast<PageControl*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!control || !control->mConnection) return DefWindowProcW(window, message, first, second);
  const auto alive = ComPtr<IDispatch>::Share(static_cast<IWebBrowser2*>(control));
  return core::AttemptOr(LRESULT{0}, [&] { return control->Handle(message, first, second); });
}

LRESULT PageControl::Handle(UINT message, WPARAM first, LPARAM second) {
  switch (message) {
    case kHostTold:
      TakeEvents();
      return 0;
    case WM_SIZE:
      Resized();
      return 0;
    case WM_ERASEBKGND:
      return 1;
    case WM_PAINT: {
      PAINTSTRUCT paint;
      const HDC screen = BeginPaint(mWindow, &paint);
      core::Attempt([&] { Paint(screen); });
      EndPaint(mWindow, &paint);
      return 0;
    }
    case WM_LBUTTONDOWN:
      SetFocus(mWindow);
      mConnection->Ask({"click", Number(LOWORD(second)), Number(HIWORD(second))});
      return 0;
    case WM_MOUSEWHEEL:
      mConnection->Ask({"scroll", Number(-GET_WHEEL_DELTA_WPARAM(first))});
      return 0;
    default:
      return DefWindowProcW(mWindow, message, first, second);
  }
}

/// The engine's own picture of the page.
void PageControl::Paint(HDC screen) {
  std::string pixels;
  const Fields answer = mConnection->Ask({"picture"}, pixels);
  BITMAPINFO picture = {};
  picture.bmiHeader.biSize = sizeof picture.bmiHeader;
  picture.bmiHeader.biWidth = std::stol(answer.at(1));
  picture.bmiHeader.biHeight = -std::stol(answer.at(2));  // top line first
  picture.bmiHeader.biPlanes = 1;
  picture.bmiHeader.biBitCount = 32;
  SetDIBitsToDevice(screen, 0, 0, static_cast<DWORD>(picture.bmiHeader.biWidth),
                    static_cast<DWORD>(-picture.bmiHeader.biHeight), 0, 0, 0,
                    static_cast<UINT>(-picture.bmiHeader.biHeight), pixels.data(), &picture,
                    DIB_RGB_COLORS);
}

HRESULT PageControl::TranslateAccelerator(LPMSG message) {
  HRESULT result = S_FALSE;
  core::Attempt([&] {
    const bool back = GetKeyState(VK_SHIFT) < 0;
    const std::string key = Number(static_cast<LONG>(message->wParam));
    const Fields answer = mConnection->Ask({"key", key, back ? "back" : "on"});
    if (answer.at(1) == "taken") {
      result = S_OK;
    } else if (message->wParam == VK_TAB) {
      // Beyond the last element: the site knows what comes next.
      result = mSite.As<IOleControlSite>()->TranslateAccelerator(message, 0);
    }
  });
  return result;
}

// Events

void PageControl::TakeEvents() {
  while (mConnection) {
    const auto event = mConnection->TakeEvent();
    if (!event) return;
    core::Attempt([&] { Told(*event); });
  }
}

/// A line such as: ! navigating 3 https://...
void PageControl::Told(const Fields& event) {
  const std::string& what = event.at(1);
  if (what == "painted") {
    // First what else of the form waits for it: a page that moves would never let it.
    EnumChildWindows(GetAncestor(mWindow, GA_ROOT), PaintBeside, reinterpret_cast<LPARAM>(mWindow));
    InvalidateRect(mWindow, nullptr, FALSE);
  } else if (what == "navigating" || what == "opening") {
    const std::string& address = event.at(3);
    const bool cancelled =
        what == "navigating" ? IsCancelled(address) : IsNewWindowCancelled(address);
    if (mConnection) mConnection->Tell({"decide", event.at(2), cancelled ? "cancel" : "go"});
  } else if (what == "complete") {
    mShown = true;
    FireAddress(DISPID_NAVIGATECOMPLETE2, event.at(2));
    FireAddress(DISPID_DOCUMENTCOMPLETE, event.at(2));
  }
}

bool PageControl::IsCancelled(const std::string& address) {
  const Bstr text(address);
  return BasicControl::IsCancelled(Text(text));
}

/// Told twice, the second time without the address; each listener has its own favourite.
bool PageControl::IsNewWindowCancelled(const std::string& address) {
  const Bstr text(address);
  VARIANT_BOOL cancelled = VARIANT_FALSE;
  VARIANT object = Empty(), flags = Empty();
  VARIANT whole[] = {Text(text), Text(text), ByReference(flags), ByReference(cancelled),
                     ByReference(object)};
  Fire(DISPID_NEWWINDOW3, whole, 5);
  if (cancelled == VARIANT_FALSE) {
    VARIANT brief[] = {ByReference(cancelled), ByReference(object)};
    Fire(DISPID_NEWWINDOW2, brief, 2);
  }
  return cancelled != VARIANT_FALSE;
}

void PageControl::FireAddress(DISPID event, const std::string& address) {
  const Bstr text(address);
  VARIANT url = Text(text);
  VARIANT arguments[] = {ByReference(url), Object(this)};
  Fire(event, arguments, 2);
}

}  // namespace page
