// The top-level window: an absolute layout that keeps every control's edges on whole pixels of
// whatever screen it is on, the keyboard's way through the controls, and the order of events from
// Show to the end.
//
// SPDX-License-Identifier: MIT
#include "platform/window/form.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

#include "core/attempt.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/window/dpi.h"
#include "platform/win32/window/event_queue.h"
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

/// How many forms are loaded, counting those whose end is still to be told.
int loadedForms = 0;

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

}  // namespace

struct Form::Impl : std::enable_shared_from_this<Form::Impl> {
  Impl(std::string name, float clientWidth, float clientHeight);
  ~Impl();
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  /// Throws std::logic_error when the window has gone.
  HWND Window() const;
  void Add(const std::shared_ptr<NativeControl>& control);
  void SetRightToLeft(bool rightToLeft);
  void Show();
  void Unload();
  float Twips(int pixels) const { return static_cast<float>(pixels) * kTwipsPerInch / dpi; }

  const std::string name;
  std::string caption;
  std::vector<std::shared_ptr<NativeControl>> controls;
  int dpi;
  int width;
  int height;
  std::function<void()> onResize;
  std::function<void()> onUnload;
  std::function<void()> onUnloaded;

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
  void PlaceChild(const NativeControl& control) const;
  void TellResize() const;
  void Activated(bool active);
  void TakeFocus();
  void MoveFocus(bool backwards);
  bool PressFocused();
  std::shared_ptr<NativeControl> ControlOf(HWND window) const;
  void CloseWindow();
  void TellUnloaded();
  void EndLoaded();

  HWND mWindow = nullptr;
  HWND mToolTips = nullptr;
  /// What had the keyboard when another program's window was activated.
  HWND mFocus = nullptr;
  bool mUnloading = false;
  bool mLoaded = false;
};

LRESULT CALLBACK Form::Impl::HandleMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
  std::optional<LRESULT> answer;
  core::Attempt([&] {
    auto* const form = reinterpret_cast<Impl*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    // Held while it works: its handlers may destroy the form.
    const auto alive = form ? form->weak_from_this().lock() : nullptr;
    if (alive) answer = alive->Handle(message, first, second);
  });
  return answer ? *answer : DefWindowProcW(window, message, first, second);
}

int LoadedForms() { return loadedForms; }

HWND VisibleFormWindow() {
  const auto visible = std::ranges::find_if(Windows(), [](HWND w) { return IsWindowVisible(w); });
  return visible == Windows().end() ? nullptr : *visible;
}

bool TakeFormKey(MSG& message) {
  const HWND root = GetAncestor(message.hwnd, GA_ROOT);
  if (std::ranges::find(Windows(), root) == Windows().end()) return false;
  return SendMessageW(root, kTakeKey, 0, reinterpret_cast<LPARAM>(&message)) != 0;
}

Form::Impl::Impl(std::string name, float clientWidth, float clientHeight)
    : name(std::move(name)), dpi(SystemDpi()), width(0), height(0) {
  RegisterFormClass(HandleMessage);
  mWindow = CreateWindowExW(0, kFormClass, L"", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                            CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr,
                            nullptr, GetModuleHandleW(nullptr), nullptr);
  if (!mWindow) throw std::runtime_error("the window cannot be made");
  NameWindow(mWindow, this->name);
  dpi = DpiOf(mWindow);
  width = PixelsOf(clientWidth, dpi);
  height = PixelsOf(clientHeight, dpi);
  FitOnScreen();
  mToolTips = MakeToolTips(mWindow);
  // The keyboard's place and the mnemonics are always shown: many users have nothing else.
  SendMessageW(mWindow, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS | UISF_HIDEACCEL),
               0);
  SetWindowLongPtrW(mWindow, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  Windows().push_back(mWindow);
  ++loadedForms;
  mLoaded = true;
}

Form::Impl::~Impl() {
  CloseWindow();
  EndLoaded();
}

HWND Form::Impl::Window() const {
  if (!mWindow) throw std::logic_error("a form was used after its window had gone");
  return mWindow;
}

/// The size that was asked for, unless the screen is smaller; then as large as the screen, where it
/// can be seen.
void Form::Impl::FitOnScreen() {
  MONITORINFO monitor = {};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(mWindow, MONITOR_DEFAULTTONEAREST), &monitor);
  const RECT& screen = monitor.rcWork;
  SIZE size = WindowSizeFor(mWindow, {width, height}, dpi);
  size.cx = std::min(size.cx, screen.right - screen.left);
  size.cy = std::min(size.cy, screen.bottom - screen.top);
  RECT place;
  GetWindowRect(mWindow, &place);
  const LONG left = std::clamp(place.left, screen.left, screen.right - size.cx);
  const LONG top = std::clamp(place.top, screen.top, screen.bottom - size.cy);
  SetWindowPos(mWindow, nullptr, left, top, size.cx, size.cy, SWP_NOZORDER | SWP_NOACTIVATE);
  RECT client;
  GetClientRect(mWindow, &client);
  width = client.right;
  height = client.bottom;
}

void Form::Impl::Add(const std::shared_ptr<NativeControl>& control) {
  controls.push_back(control);
  control->SetMover([this, raw = control.get()] { PlaceChild(*raw); });
  control->JoinToolTips(mToolTips);
}

// Windows mirrors: a child's place counts from the right edge from then on.
void Form::Impl::SetRightToLeft(bool rightToLeft) {
  constexpr LONG_PTR kMirrored = WS_EX_LAYOUTRTL;
  const LONG_PTR style = GetWindowLongPtrW(Window(), GWL_EXSTYLE);
  SetWindowLongPtrW(mWindow, GWL_EXSTYLE, rightToLeft ? style | kMirrored : style & ~kMirrored);
  PlaceChildren();
  RedrawWindow(mWindow, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

std::optional<LRESULT> Form::Impl::Handle(UINT message, WPARAM first, LPARAM second) {
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
      if (const auto control = ControlOf(reinterpret_cast<HWND>(second))) {
        if (HIWORD(first) == BN_CLICKED) control->Pressed();
      }
      return 0;
    case WM_DRAWITEM: {
      const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(second);
      if (const auto control = ControlOf(item.hwndItem)) control->Draw(item);
      return TRUE;
    }
    case WM_ACTIVATE:
      Activated(LOWORD(first) != WA_INACTIVE);
      return std::nullopt;
    case WM_SETFOCUS:
      TakeFocus();
      return 0;
    case WM_NEXTDLGCTL:
      MoveFocus(first != 0);
      return 0;
    case WM_CLOSE:
      Unload();
      return 0;
    // WM_QUERYENDSESSION and WM_ENDSESSION are the system's to handle: the process ends when the
    // session does, and nobody is there any more to read the message of the unload handler.
    default:
      return std::nullopt;
  }
}

void Form::Impl::Resized(int newWidth, int newHeight) {
  if (newWidth != width || newHeight != height) {
    width = newWidth;
    height = newHeight;
    TellResize();
  }
  if (mWindow) PlaceChildren();
}

/// The system says the place that keeps the window under the pointer, at the new screen's scale.
void Form::Impl::MoveToDpi(int newDpi, const RECT& place) {
  dpi = newDpi;
  for (const auto& control : controls) control->DpiChanged();
  SetWindowPos(Window(), nullptr, place.left, place.top, place.right - place.left,
               place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
  // The same number of pixels can be another number of twips.
  TellResize();
  if (mWindow) PlaceChildren();
}

void Form::Impl::SystemLooksChanged() {
  for (const auto& control : controls) control->DpiChanged();
  RedrawWindow(Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void Form::Impl::PlaceChildren() {
  for (const auto& control : controls) PlaceChild(*control);
}

/// Edges are rounded, not sizes: two controls that meet in twips meet on the screen.
void Form::Impl::PlaceChild(const NativeControl& control) const {
  const Place& place = control.Where();
  const int left = PixelsOf(place.left, dpi);
  const int right = PixelsOf(static_cast<double>(place.left) + place.width, dpi);
  const int top = PixelsOf(place.top, dpi);
  const int bottom = PixelsOf(static_cast<double>(place.top) + place.height, dpi);
  SetWindowPos(control.Window(), nullptr, left, top, right - left, bottom - top,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void Form::Impl::TellResize() const {
  // A copy: the handler may replace itself.
  if (const auto handler = onResize) core::Attempt(handler);
}

void Form::Impl::Activated(bool active) {
  for (const auto& control : controls) control->FormActivated(active);
  if (active) return;  // Windows gives the window the focus, and TakeFocus passes it on
  const HWND focus = GetFocus();
  if (focus && IsChild(mWindow, focus)) mFocus = focus;
}

/// Back to where it was, or to the first control that wants it.
void Form::Impl::TakeFocus() {
  const HWND before = std::exchange(mFocus, nullptr);
  if (before && IsChild(mWindow, before) && IsWindowEnabled(before) && IsWindowVisible(before)) {
    SetFocus(before);
    return;
  }
  const auto first = std::ranges::find_if(controls, [](const auto& c) { return c->TakesFocus(); });
  if (first != controls.end()) (*first)->TakeFocus(FocusFrom::kOutside);
}

/// In the order of adding, round and round.
void Form::Impl::MoveFocus(bool backwards) {
  std::vector<std::shared_ptr<NativeControl>> order = controls;
  if (backwards) std::ranges::reverse(order);
  const auto focused = std::ranges::find_if(order, [](const auto& c) { return c->HasFocus(); });
  if (focused != order.end()) std::ranges::rotate(order, std::next(focused));
  const auto next = std::ranges::find_if(order, [](const auto& c) { return c->TakesFocus(); });
  if (next != order.end()) (*next)->TakeFocus(backwards ? FocusFrom::kBehind : FocusFrom::kBefore);
}

bool Form::Impl::PressFocused() {
  const auto control = ControlOf(GetFocus());
  if (!control) return false;
  control->Pressed();
  return true;
}

bool Form::Impl::TakeKey(MSG& message) {
  // These two are the window's wherever the focus is, whatever a page makes of them.
  const bool closes = message.message == WM_SYSKEYDOWN && message.wParam == VK_F4;
  const bool opensMenu = message.message == WM_SYSCHAR && message.wParam == L' ';
  if (closes || opensMenu) {
    DefWindowProcW(Window(), message.message, message.wParam, message.lParam);
    return true;
  }
  const auto focused = std::ranges::find_if(controls, [](const auto& c) { return c->HasFocus(); });
  const bool inControl = focused != controls.end();
  if (inControl && (*focused)->TakeKey(message)) return true;
  if (message.message == WM_KEYDOWN && message.wParam == VK_TAB) {
    MoveFocus(GetKeyState(VK_SHIFT) < 0);
    return true;
  }
  if (message.message == WM_KEYDOWN && message.wParam == VK_RETURN) {
    return !(inControl && (*focused)->KeepsEnter()) && PressFocused();
  }
  // Mnemonics.
  return message.message == WM_SYSCHAR && IsDialogMessageW(Window(), &message);
}

std::shared_ptr<NativeControl> Form::Impl::ControlOf(HWND window) const {
  const auto found = std::ranges::find_if(
      controls, [&](const auto& c) { return c->Lives() && c->Window() == window; });
  return found == controls.end() ? nullptr : *found;
}

void Form::Impl::Show() {
  Window();
  TellResize();
  PlaceChildren();
  ShowWindow(mWindow, SW_SHOW);
  SetForegroundWindow(mWindow);
}

void Form::Impl::Unload() {
  if (mUnloading) return;
  mUnloading = true;
  const auto alive = shared_from_this();
  if (const auto handler = onUnload) core::Attempt(handler);
  CloseWindow();
  Post([form = weak_from_this()] {
    if (const auto living = form.lock()) living->TellUnloaded();
  });
}

void Form::Impl::CloseWindow() {
  mUnloading = true;
  if (!mWindow) return;
  onResize = nullptr;
  onUnload = nullptr;
  const HWND window = std::exchange(mWindow, nullptr);
  std::erase(Windows(), window);
  SetWindowLongPtrW(window, GWLP_USERDATA, 0);
  for (const auto& control : controls) control->End();
  ForgetWindowName(window);
  DestroyWindow(window);
}

void Form::Impl::TellUnloaded() {
  EndLoaded();
  if (const auto handler = std::exchange(onUnloaded, nullptr)) core::Attempt(handler);
}

void Form::Impl::EndLoaded() {
  if (!std::exchange(mLoaded, false)) return;
  --loadedForms;
  // The loop waits for a message before it looks at the number.
  core::Attempt([] { Post([] {}); });
}

Form::Form(std::string name, float clientWidth, float clientHeight)
    : mImpl(std::make_shared<Impl>(std::move(name), clientWidth, clientHeight)) {}

Form::~Form() = default;

Control Form::AddControl(const std::string& kind, const std::string& name, float width,
                         float height) {
  const auto control = MakeControl(mImpl->Window(), kind, name);
  mImpl->Add(control);
  control->Move({0, 0, width, height});
  return Control(control);
}

std::vector<Control> Form::Controls() const {
  mImpl->Window();
  return {mImpl->controls.begin(), mImpl->controls.end()};
}

std::string Form::Name() const { return mImpl->name; }

std::string Form::Caption() const { return mImpl->caption; }

void Form::SetCaption(const std::string& caption) {
  SetWindowTextW(mImpl->Window(), WideText(caption).c_str());
  mImpl->caption = caption;
}

// The system writes the title in its own font, and each control has its own.
void Form::SetFont(const Font&) { mImpl->Window(); }

void Form::SetRightToLeft(bool rightToLeft) { mImpl->SetRightToLeft(rightToLeft); }

float Form::ClientWidth() const { return mImpl->Twips(mImpl->width); }

float Form::ClientHeight() const { return mImpl->Twips(mImpl->height); }

bool Form::IsMinimised() const { return IsIconic(mImpl->Window()) != 0; }

void Form::Show() { mImpl->Show(); }

void Form::Hide() { ShowWindow(mImpl->Window(), SW_HIDE); }

void Form::Unload() { mImpl->Unload(); }

void Form::OnResize(std::function<void()> handler) { mImpl->onResize = std::move(handler); }

void Form::OnUnload(std::function<void()> handler) { mImpl->onUnload = std::move(handler); }

void Form::OnUnloaded(std::function<void()> handler) { mImpl->onUnloaded = std::move(handler); }

namespace {

/// Of the screen that the first window is on; of all screens where there is none.
float TwipsPerPixel() {
  const int dpi = Windows().empty() ? SystemDpi() : DpiOf(Windows().front());
  return static_cast<float>(kTwipsPerInch) / static_cast<float>(dpi);
}

}  // namespace

float TwipsPerPixelX() { return TwipsPerPixel(); }

float TwipsPerPixelY() { return TwipsPerPixel(); }

}  // namespace platform
