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

  /// Throws until the engine has been started, and when the form has gone.
  WebKitWebView* View() const { return mView.Get(); }
  bool HasView() const { return static_cast<bool>(mView); }
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
  void AwaitWindow();
  void StartEngine();
  void ConnectView();
  void ShowToolTip();
  void OnLoadChanged(WebKitLoadEvent event);
  bool DecidePolicy(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type);
  bool IsRefused(WebKitNavigationAction* action);

  std::function<bool(const std::string&)> mBeforeNavigate;
  std::function<void()> mPageLost;
  OwnPages mOwnPages;
  /// The page of the last Navigate.
  std::string mAddress;
  /// Addresses to load when the engine has been started.
  std::vector<std::string> mWaiting;
  GRef<WebKitWebView> mView;
  SignalConnection mMapped;
  guint mEngineStart = 0;
  std::string mBusyText;
  std::vector<SignalConnection> mConnections;
  std::optional<PageZoom> mZoom;
  /// The page shown has said that it will tell of changes.
  bool mPageTells = false;
  bool mChanged = true;
};

}  // namespace platform
