// The control of kind "WebBrowser": a WebKit view that can do nothing but show a local page. The
// promises of platform/window/web_browser.h are kept on top of it in web_browser.cpp.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <webkit2/webkit2.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/signals.h"
#include "platform/linux/window/native_control.h"
#include "platform/linux/window/page_zoom.h"
#include "platform/shared/window/own_pages.h"

namespace platform {

/// The host's scripts run in a world of their own: what the page may do to its objects is not seen
/// there.
inline constexpr const char* kHostWorld = "VelorVoiceSetup";

class BrowserControl : public NativeControl {
 public:
  explicit BrowserControl(const std::string& name);

  WebKitWebView* View() const { return WEBKIT_WEB_VIEW(Widget()); }
  bool TakeFocus(GtkDirectionType direction) override;
  bool HandleKey(const GdkEventKey& key) override { return mZoom && mZoom->HandleKey(key); }
  void End() override;

  void Navigate(const std::string& nativePath);
  void Reload();

  /// Asked before every navigation; true cancels.
  void SetBeforeNavigate(std::function<bool(const std::string&)> handler);
  void SetPageLost(std::function<void()> handler);
  void SetBusyText(const std::string& text) { mBusyText = text; }

  /// What the page's own word says of its boxes: whether they may be different from when
  /// BeginReading was called. ForgetReading: there was no answer, so nothing is known.
  bool MayHaveChanged() const;
  void BeginReading() { mChanged = false; }
  void ForgetReading() { mChanged = true; }

 private:
  void ShowToolTip();
  void OnLoadChanged(WebKitLoadEvent event);
  bool DecidePolicy(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type);
  bool IsRefused(WebKitNavigationAction* action);

  std::function<bool(const std::string&)> mBeforeNavigate;
  std::function<void()> mPageLost;
  OwnPages mOwnPages;
  std::string mAddress;
  std::string mBusyText;
  std::vector<SignalConnection> mConnections;
  std::optional<PageZoom> mZoom{View()};
  /// The page shown has said that it will tell of changes.
  bool mPageTells = false;
  bool mChanged = true;
};

}  // namespace platform
