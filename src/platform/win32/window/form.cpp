// The top-level window: an absolute layout that keeps every control's edges on whole pixels of
// whatever screen it is on, and the keyboard's way through the controls.
//
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <algorithm>
#include <optional>
#include <ranges>
#include <stdexcept>
#include <utility>

#include "core/attempt.h"
#include "platform/shared/window/event_queue.h"
#include "platform/shared/window/form_impl.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/window/dpi.h"
#include "platform/win32/window/form_window.h"
#include "platform/win32/window/native_control.h"
#include "platform/win32/window/tool_tips.h"
#include "platform/win32/window/window_name.h"

namespace platform {
namespace {

// WM_DPICHANGED, for which the headers for Windows 7 have no name.
constexpr UINT kDpiChanged = 0x02e0;
// A form's own: asks it whether a key is its.
constexpr UINT kTakeKey = WM_APP;
// The icon's number in the program's resources.
constexpr int kIcon = 1;

/// The windows that have not gone.
std::vector<HWND>& Windows() {
  static std::vector<HWND> windows;
  return windows;
}

HICON Icon(int size) {
  return static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(kIcon),
                                       IMAGE_ICON, size, size, LR_SHARED));
}

void RegisterFormClass(WNDPROC handler) {
  WNDCLASSEXW description = {};
  description.cbSize = sizeof description;
  description.lpfnWndProc = handler;
  description.hInstance = GetModuleHandleW(nullptr);
  description.hIcon = Icon(GetSystemMetrics(SM_CXICON));
  description.hIconSm = Icon(GetSystemMetrics(SM_CXSMICON));
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
  description.lpszClassName = kFormClass;
  RegisterClassExW(&description);  // a second time it fails, which does no harm
}

NativeControl& Native(const std::shared_ptr<Control::Impl>& control) {
  return static_cast<NativeControl&>(*control);
}

class NativeForm final : public Form::Impl {
 public:
  NativeForm(const std::string& name, float clientWidth, float clientHeight);
  ~NativeForm() override { NativeForm::DestroyNativeWindow(); }

  bool HasWindow() const override { return mWindow != nullptr; }
  float ClientWidth() const override { return Twips(mWidth); }
  float ClientHeight() const override { return Twips(mHeight); }
  bool IsMinimised() const override { return IsIconic(mWindow) != 0; }
  void SetTitle(const std::string& title) override {
    SetWindowTextW(mWindow, WideText(title).c_str());
  }
  void Mirror(bool rightToLeft) override;
  std::shared_ptr<Control::Impl> MakeControl(const std::string& kind,
                                             const std::string& controlName) override;
  void PlaceControl(Control::Impl& control) override;
  void Present() override;
  void Conceal() override { ShowWindow(mWindow, SW_HIDE); }
  void DestroyNativeWindow() override;

 private:
  static LRESULT CALLBACK HandleMessage(HWND window, UINT message, WPARAM first, LPARAM second);
  /// What the window is told; absent for what the system shall handle.
  std::optional<LRESULT> Handle(UINT message, WPARAM first, LPARAM second);
  bool TakeKey(MSG& message);
  void FitOnScreen();
  void Resized(int newWidth, int newHeight);
  void MoveToDpi(int newDpi, const RECT& place);
  void SystemLooksChanged();
  void PlaceChildren();
  float Twips(int pixels) const { return static_cast<float>(pixels) * kTwipsPerInch / mDpi; }
  auto Natives() const { return std::views::transform(controls, Native); }
  void Activated(bool active);
  void TakeFocus();
  void FocusMovedTo(const NativeControl& focused);
  bool MoveFocus(bool backwards);
  bool PressFocused();
  NativeControl* ControlOf(HWND window) const;

  int mDpi = SystemDpi();
  int mWidth = 0;
  int mHeight = 0;
  HWND mWindow = nullptr;
  HWND mToolTips = nullptr;
  /// What had the keyboard when another program's window was activated.
  HWND mFocus = nullptr;
};

LRESULT CALLBACK NativeForm::HandleMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
  std::optional<LRESULT> answer;
  core::Attempt([&] {
    auto* const form = reinterpret_cast<NativeForm*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    // Held while it works: its handlers may destroy the form.
    const auto alive = form ? form->weak_from_this().lock() : nullptr;
    if (alive) answer = form->Handle(message, first, second);
  });
  return answer ? *answer : DefWindowProcW(window, message, first, second);
}

NativeForm::NativeForm(const std::string& name, float clientWidth, float clientHeight)
    : Impl(name) {
  RegisterFormClass(HandleMessage);
  mWindow = CreateWindowExW(0, kFormClass, L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                            CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr,
                            nullptr, GetModuleHandleW(nullptr), nullptr);
  if (!mWindow) throw std::runtime_error("the window cannot be made");
  NameWindow(mWindow, name);
  mDpi = DpiOf(mWindow);
  mWidth = PixelsOf(clientWidth, mDpi);
  mHeight = PixelsOf(clientHeight, mDpi);
  FitOnScreen();
  mToolTips = MakeToolTips(mWindow);
  // The keyboard's place and the mnemonics are always shown: many users have nothing else.
  SendMessageW(mWindow, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS | UISF_HIDEACCEL),
               0);
  SetWindowLongPtrW(mWindow, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  Windows().push_back(mWindow);
}

/// The size that was asked for, unless the screen is smaller; then as large as the screen, where it
/// can be seen.
void NativeForm::FitOnScreen() {
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(mWindow, MONITOR_DEFAULTTONEAREST), &monitor);
  const RECT& screen = monitor.rcWork;
  SIZE size = WindowSizeFor(mWindow, {mWidth, mHeight}, mDpi);
  size.cx = std::min(size.cx, screen.right - screen.left);
  size.cy = std::min(size.cy, screen.bottom - screen.top);
  RECT place;
  GetWindowRect(mWindow, &place);
  const LONG left = std::clamp(place.left, screen.left, screen.right - size.cx);
  const LONG top = std::clamp(place.top, screen.top, screen.bottom - size.cy);
  SetWindowPos(mWindow, nullptr, left, top, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
  RECT client;
  GetClientRect(mWindow, &client);
  mWidth = client.right;
  mHeight = client.bottom;
}

std::shared_ptr<Control::Impl> NativeForm::MakeControl(const std::string& kind,
                                                       const std::string& controlName) {
  const auto control = platform::MakeControl(mWindow, kind, controlName);
  control->JoinToolTips(mToolTips);
  return control;
}

// Windows mirrors: a child's place counts from the right edge from then on.
void NativeForm::Mirror(bool rightToLeft) {
  constexpr LONG_PTR kMirrored = WS_EX_LAYOUTRTL;
  const LONG_PTR style = GetWindowLongPtrW(mWindow, GWL_EXSTYLE);
  SetWindowLongPtrW(mWindow, GWL_EXSTYLE, rightToLeft ? style | kMirrored : style & ~kMirrored);
  ApplyStyle(mWindow);
  PlaceChildren();
  RedrawWindow(mWindow, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

std::optional<LRESULT> NativeForm::Handle(UINT message, WPARAM first, LPARAM second) {
  switch (message) {
    case WM_SIZE:
      if (first != SIZE_MINIMIZED) Resized(LOWORD(second), HIWORD(second));
      return 0;
    case WM_GETMINMAXINFO:
      // No smallest size: what does not fit is cut off.
      reinterpret_cast<MINMAXINFO*>(second)->ptMinTrackSize = {0, 0};
      return 0;
    case kDpiChanged:
      MoveToDpi(LOWORD(first), *reinterpret_cast<const RECT*>(second));
      return 0;
    case WM_SETTINGCHANGE:
    case WM_SYSCOLORCHANGE:
      SystemLooksChanged();
      return std::nullopt;
    case kTakeKey:
      return TakeKey(*reinterpret_cast<MSG*>(second));
    case WM_COMMAND:
      if (auto* const control = ControlOf(reinterpret_cast<HWND>(second))) {
        if (HIWORD(first) == BN_CLICKED) control->Pressed();
        if (HIWORD(first) == BN_SETFOCUS) FocusMovedTo(*control);
      }
      return 0;
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(second);
      if (auto* const control = ControlOf(item.hwndItem)) control->Draw(item);
      return TRUE;
    }
    case WM_ACTIVATE:
      Activated(LOWORD(first) != WA_INACTIVE);
      return std::nullopt;
    case WM_SETFOCUS:
      TakeFocus();
      return 0;
    case WM_NEXTDLGCTL:
      return MoveFocus(first != 0) ? 0 : 1;
    case WM_CLOSE:
      Unload();
      return 0;
    // WM_QUERYENDSESSION and WM_ENDSESSION are the system's to handle: the process ends when the
    // session does, and nobody is there any more to read the message of the unload handler.
    default:
      return std::nullopt;
  }
}

void NativeForm::Resized(int newWidth, int newHeight) {
  if (newWidth != mWidth || newHeight != mHeight) {
    mWidth = newWidth;
    mHeight = newHeight;
    Notify(onResize);
  }
  if (mWindow) PlaceChildren();
}

/// The system says the place that keeps the window under the pointer, at the new screen's scale.
void NativeForm::MoveToDpi(int newDpi, const RECT& place) {
  mDpi = newDpi;
  for (NativeControl& control : Natives()) control.DpiChanged();
  SetWindowPos(mWindow, nullptr, place.left, place.top, place.right - place.left,
               place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
  // The same number of pixels can be another number of twips.
  Notify(onResize);
  if (mWindow) PlaceChildren();
}

void NativeForm::SystemLooksChanged() {
  for (NativeControl& control : Natives()) control.LooksChanged();
  RedrawWindow(mWindow, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void NativeForm::PlaceChildren() {
  for (NativeControl& control : Natives()) PlaceControl(control);
}

void NativeForm::PlaceControl(Control::Impl& control) {
  const PixelBounds place =
      RoundedEdges(control.Where(), [this](double twips) { return PixelsOf(twips, mDpi); });
  SetWindowPos(static_cast<NativeControl&>(control).Window(), nullptr, place.left, place.top,
               place.width, place.height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void NativeForm::Activated(bool active) {
  for (NativeControl& control : Natives()) control.FormActivated(active);
  if (active) return;  // Windows gives the window the focus, and TakeFocus passes it on
  const HWND focus = GetFocus();
  if (focus && IsChild(mWindow, focus)) mFocus = focus;
}

/// Back to where it was, or to the first control that wants it.
void NativeForm::TakeFocus() {
  const HWND before = std::exchange(mFocus, nullptr);
  if (before && IsChild(mWindow, before) && IsWindowEnabled(before) && IsWindowVisible(before)) {
    SetFocus(before);
    return;
  }
  for (NativeControl& control : Natives()) {
    if (control.TakesFocus()) return control.TakeFocus(FocusFrom::kOutside);
  }
}

void NativeForm::FocusMovedTo(const NativeControl& focused) {
  for (NativeControl& control : Natives()) {
    if (&control != &focused) control.FocusMoved();
  }
}

/// In the order of adding, round and round. False where no other control takes the focus.
bool NativeForm::MoveFocus(bool backwards) {
  auto order = controls;
  if (backwards) std::ranges::reverse(order);
  const auto focused = std::ranges::find_if(order, &NativeControl::HasFocus, Native);
  if (focused != order.end()) std::ranges::rotate(order, std::next(focused));
  const auto next = std::ranges::find_if(order, &NativeControl::TakesFocus, Native);
  if (next == order.end() || Native(*next).HasFocus()) return false;
  Native(*next).TakeFocus(backwards ? FocusFrom::kBehind : FocusFrom::kBefore);
  return true;
}

bool NativeForm::PressFocused() {
  auto* const control = ControlOf(GetFocus());
  if (!control) return false;
  control->Pressed();
  return true;
}

bool NativeForm::TakeKey(MSG& message) {
  // These two are the window's wherever the focus is, whatever a page makes of them.
  const bool closes = message.message == WM_SYSKEYDOWN && message.wParam == VK_F4;
  const bool opensMenu = message.message == WM_SYSCHAR && message.wParam == L' ';
  if (closes || opensMenu) {
    DefWindowProcW(mWindow, message.message, message.wParam, message.lParam);
    return true;
  }
  const auto natives = Natives();
  const auto focused = std::ranges::find_if(natives, &NativeControl::HasFocus);
  const bool inControl = focused != natives.end();
  if (inControl && (*focused).TakeKey(message)) return true;
  if (message.message == WM_KEYDOWN && message.wParam == VK_TAB) {
    const bool backwards = GetKeyState(VK_SHIFT) < 0;
    if (!MoveFocus(backwards) && inControl) {
      (*focused).TakeFocus(backwards ? FocusFrom::kBehind : FocusFrom::kBefore);
    }
    return true;
  }
  if (message.message == WM_KEYDOWN && message.wParam == VK_RETURN) {
    return !(inControl && (*focused).KeepsEnter()) && PressFocused();
  }
  // Mnemonics.
  return message.message == WM_SYSCHAR && IsDialogMessageW(mWindow, &message);
}

NativeControl* NativeForm::ControlOf(HWND window) const {
  for (NativeControl& control : Natives()) {
    if (control.Lives() && control.Window() == window) return &control;
  }
  return nullptr;
}

void NativeForm::Present() {
  PlaceChildren();
  ShowWindow(mWindow, SW_SHOW);
  SetForegroundWindow(mWindow);
}

void NativeForm::DestroyNativeWindow() {
  if (!mWindow) return;
  const HWND window = std::exchange(mWindow, nullptr);
  std::erase(Windows(), window);
  SetWindowLongPtrW(window, GWLP_USERDATA, 0);
  DetachControls();
  ForgetWindowName(window);
  DestroyWindow(window);
}

/// Of the screen that the first window is on; of all screens where there is none.
float TwipsPerPixel() {
  const int dpi = Windows().empty() ? SystemDpi() : DpiOf(Windows().front());
  return static_cast<float>(kTwipsPerInch) / static_cast<float>(dpi);
}

}  // namespace

std::shared_ptr<Form::Impl> MakeForm(const std::string& name, float clientWidth,
                                     float clientHeight) {
  return std::make_shared<NativeForm>(name, clientWidth, clientHeight);
}

HWND VisibleFormWindow() {
  const auto visible = std::ranges::find_if(Windows(), [](HWND w) { return IsWindowVisible(w); });
  return visible == Windows().end() ? nullptr : *visible;
}

bool TakeFormKey(MSG& message) {
  const HWND root = GetAncestor(message.hwnd, GA_ROOT);
  if (std::ranges::find(Windows(), root) == Windows().end()) return false;
  return SendMessageW(root, kTakeKey, 0, reinterpret_cast<LPARAM>(&message)) != 0;
}

float TwipsPerPixelX() { return TwipsPerPixel(); }

float TwipsPerPixelY() { return TwipsPerPixel(); }

}  // namespace platform
