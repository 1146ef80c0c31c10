// The kinds of control that the program's window has. Captions, fonts and the logo; the browser is
// in browser_control.cpp.
//
// SPDX-License-Identifier: MIT
#include <optional>
#include <stdexcept>
#include <utility>

#include "core/attempt.h"
#include "core/build_settings.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/window/accessible.h"
#include "platform/win32/window/browser_control.h"
#include "platform/win32/window/dpi.h"
#include "platform/win32/window/font_handle.h"
#include "platform/win32/window/native_control.h"
#include "platform/win32/window/picture.h"

namespace platform {
namespace {

HWND MakeChild(HWND form, const wchar_t* windowClass, const std::wstring& text, DWORD style) {
  return CreateWindowExW(0, windowClass, text.c_str(),
                         WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | style, 0, 0, 0, 0, form, nullptr,
                         GetModuleHandleW(nullptr), nullptr);
}

/// Buttons and labels: a text in a font, in a direction.
class TextControl : public NativeControl {
 public:
  using NativeControl::NativeControl;

  std::string Caption() const override { return mCaption; }
  void SetCaption(const std::string& caption) override {
    if (caption == mCaption) return;
    SetWindowTextW(Window(), WideText(caption).c_str());
    mCaption = caption;
  }
  void SetFont(const Font& font) override {
    mFont = font;
    UseFont();
  }
  void SetRightToLeft(bool rightToLeft) override {
    ChangeStyle(GWL_EXSTYLE, WS_EX_RTLREADING, rightToLeft ? WS_EX_RTLREADING : 0);
  }
  void DpiChanged() override { UseFont(); }
  void LooksChanged() override { UseFont(); }

 protected:
  virtual FontHandle FittingFont() const { return MakeFont(mFont, DpiOf(Window())); }

  void UseFont() {
    FontHandle handle = FittingFont();
    SendMessageW(Window(), WM_SETFONT, reinterpret_cast<WPARAM>(handle.get()), TRUE);
    mHandle = std::move(handle);  // the old one goes only now that nobody uses it
  }

  const std::optional<Font>& WantedFont() const { return mFont; }

  void ChangeStyle(int which, LONG_PTR mask, LONG_PTR bits) {
    SetWindowLongPtrW(Window(), which, (GetWindowLongPtrW(Window(), which) & ~mask) | bits);
    ApplyStyle(Window());
    InvalidateRect(Window(), nullptr, TRUE);
  }

 private:
  std::string mCaption;
  std::optional<Font> mFont;
  FontHandle mHandle;
};

// Percents of the system's size.
constexpr int kSmallestText = 75;
constexpr int kTextStep = 5;
// What the edges of a button take on each side, in the pixels of a usual screen.
constexpr int kButtonEdge = 5;

/// How wide a button writes a caption: its mnemonic's mark has no width.
int WidthOf(const std::string& caption, HFONT font, HWND window) {
  const HDC screen = GetDC(window);
  const HGDIOBJ before = SelectObject(screen, font);
  RECT place = {};
  DrawTextW(screen, WideText(caption).c_str(), -1, &place, DT_CALCRECT | DT_SINGLELINE);
  SelectObject(screen, before);
  ReleaseDC(window, screen);
  return place.right;
}

class CommandButton : public TextControl {
 public:
  CommandButton(HWND form, const std::string& name) : TextControl("CommandButton", name) {
    SetWindow(MakeChild(form, L"BUTTON", L"", WS_TABSTOP | BS_PUSHBUTTON | BS_NOTIFY));
    UseFont();
  }

  void SetCaption(const std::string& caption) override {
    TextControl::SetCaption(caption);
    UseFont();
  }
  void OnClick(std::function<void()>&& handler) override { mHandler = std::move(handler); }
  void Pressed() override {
    // A copy: the handler may end the form, and this control's handler with it.
    if (const auto handler = mHandler) handler();
  }
  void End() override {
    mHandler = nullptr;
    NativeControl::End();
  }

 private:
  /// The button keeps its size in every language, so a long word is written a little smaller; only
  /// one that would become hard to read is cut.
  FontHandle FittingFont() const override {
    const int dpi = DpiOf(Window());
    const int room =
        PixelsOf(Where().width, dpi) - 2 * MulDiv(kButtonEdge, dpi, USER_DEFAULT_SCREEN_DPI);
    // Measured each time, since letters have whole pixels.
    for (int percents = 100;; percents -= kTextStep) {
      FontHandle font = MakeFont(WantedFont(), dpi, percents);
      const bool fits = WidthOf(Caption(), font.get(), Window()) <= room;
      if (fits || percents <= kSmallestText) return font;
    }
  }

  std::function<void()> mHandler;
};

class Label : public TextControl {
 public:
  Label(HWND form, const std::string& name) : TextControl("Label", name) {
    SetWindow(MakeChild(form, L"STATIC", L"",
                        SS_LEFT | SS_NOPREFIX | SS_ENDELLIPSIS | SS_CENTERIMAGE | SS_NOTIFY));
    UseFont();
    DescribeAsStatus(Window());
  }

  void SetCaption(const std::string& caption) override {
    if (caption == Caption()) return;
    TextControl::SetCaption(caption);
    SetAccessibleName(Window(), caption);
  }
  void Speak(const std::string& text) override { AnnounceStatus(Window(), text); }
  void SetRightToLeft(bool rightToLeft) override {
    TextControl::SetRightToLeft(rightToLeft);
    ChangeStyle(GWL_STYLE, SS_TYPEMASK, rightToLeft ? SS_RIGHT : SS_LEFT);
  }
};

bool HighContrast() {
  HIGHCONTRASTW contrast = {};
  contrast.cbSize = sizeof contrast;
  return SystemParametersInfoW(SPI_GETHIGHCONTRAST, contrast.cbSize, &contrast, 0) &&
         (contrast.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

/// Shows the program's logo at the top of a column, as wide as the column.
class PictureBox : public NativeControl {
 public:
  PictureBox(HWND form, const std::string& name) : NativeControl("PictureBox", name) {
    SetWindow(MakeChild(form, L"STATIC", WideText(core::kProductName), SS_OWNERDRAW | SS_NOTIFY));
    DescribeAsPicture(Window());
  }

  void Draw(const DRAWITEMSTRUCT& item) override {
    FillGround(item);
    // Without the picture the column is empty, which is no reason to fail.
    core::Attempt([&] { DrawLogo(item); });
  }

 private:
  static void FillGround(const DRAWITEMSTRUCT& item) {
    if (HighContrast()) {
      FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_3DFACE));
      return;
    }
    SetDCBrushColor(item.hDC, RGB(0x1f, 0x3a, 0x5f));
    FillRect(item.hDC, &item.rcItem, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
  }

  void DrawLogo(const DRAWITEMSTRUCT& item) {
    const int width = item.rcItem.right - item.rcItem.left;
    if (mLogo.width != width) mLogo = LogoOfWidth(width);
    const HDC memory = CreateCompatibleDC(item.hDC);
    const HGDIOBJ before = SelectObject(memory, mLogo.bitmap.get());
    constexpr BLENDFUNCTION kOverGround = {AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    GdiAlphaBlend(item.hDC, 0, 0, mLogo.width, mLogo.height, memory, 0, 0, mLogo.width,
                  mLogo.height, kOverGround);
    SelectObject(memory, before);
    DeleteDC(memory);
  }

  Picture mLogo;
};

}  // namespace

std::shared_ptr<NativeControl> MakeControl(HWND form, const std::string& kind,
                                           const std::string& name) {
  if (kind == "CommandButton") return std::make_shared<CommandButton>(form, name);
  if (kind == "Label") return std::make_shared<Label>(form, name);
  if (kind == "PictureBox") return std::make_shared<PictureBox>(form, name);
  if (kind == "WebBrowser") return std::make_shared<BrowserControl>(form, name);
  throw std::invalid_argument("no such kind of control: " + kind);
}

}  // namespace platform
