// The control that shows the page: the system's WebBrowser control in a window of ours.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <exdisp.h>
#include <oleidl.h>

#include <functional>
#include <string>

#include "platform/shared/window/own_pages.h"
#include "platform/win32/com.h"
#include "platform/win32/window/browser_site.h"
#include "platform/win32/window/native_control.h"

namespace platform {

class BrowserControl final : public NativeControl {
 public:
  BrowserControl(HWND form, const std::string& name);
  ~BrowserControl() override;

  void TakeFocus(FocusFrom from) override;
  bool TakeKey(MSG& message) override;
  bool KeepsEnter() const override { return true; }
  void FormActivated(bool active) override;
  void FocusMoved() override;
  void DpiChanged() override;
  void End() override;

  void SetBeforeNavigate(std::function<bool(const std::string&)> handler);
  void SetBusyText(const std::string& text) { mBusyText = text; }
  void Navigate(const std::string& path);
  void Reload();
  /// The page, or nothing where none is shown.
  ComPtr<IDispatch> Document() const;

  // What the site is told by the control.
  bool IsRefused(const std::string& address);
  void PageShown();
  /// False where no other control takes the focus.
  bool LeaveByTab(bool backwards);

 private:
  static LRESULT CALLBACK HandleMessage(HWND window, UINT message, WPARAM first, LPARAM second);
  void ShowControl();
  void ListenToEvents();
  void CloseControl();
  void Fit();
  void EnterPage(MSG* key);
  void Scale();

  ComPtr<BrowserSite> mSite;
  ComPtr<IWebBrowser2> mBrowser;
  ComPtr<IConnectionPoint> mEvents;
  DWORD mEventsCookie = 0;
  std::function<bool(const std::string&)> mBeforeNavigate;
  OwnPages mPages;
  std::string mBusyText;
};

}  // namespace platform
