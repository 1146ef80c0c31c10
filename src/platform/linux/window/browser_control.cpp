// The WebKit view and what it is denied. Each lock stands for itself: the page's scripts are
// dropped by a setting, its references by the content security policy, what is left of the network
// by a proxy that leads nowhere, and places to go by the navigation policy.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/window/browser_control.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "core/attempt.h"
#include "platform/linux/window/box_list.h"
#include "platform/linux/window/page_description.h"
#include "platform/linux/window/page_roles.h"

namespace platform {
namespace {

/// What stands in the page itself and nothing else: a reference to a local file would be of no use,
/// and one to a device would be read for ever. The two of form-action and base-uri do not follow
/// default-src.
constexpr const char* kContentPolicy =
    "default-src 'none'; style-src 'unsafe-inline'; img-src data:; font-src data:; "
    "form-action 'none'; base-uri 'none'";

/// Nothing can listen on port 0, so a connection to this proxy fails at once; and with a proxy no
/// name is looked up either.
constexpr const char* kDeadEnd = "http://127.0.0.1:0";

/// Connections ahead of need, which no content policy covers.
constexpr std::array<std::string_view, 4> kFeaturesDenied = {
    "LinkPreconnect", "LinkPreconnectEarlyHints", "LinkPrefetch", "LinkPreload"};

GRef<WebKitSettings> Settings() {
  auto settings = GRef<WebKitSettings>::Adopt(webkit_settings_new_with_settings(
      "enable-javascript-markup", FALSE,  // the page's; the host may still ask
      "enable-webgl", FALSE, "enable-webaudio", FALSE, "enable-media", FALSE, "enable-media-stream",
      FALSE, "enable-mediasource", FALSE, "enable-webrtc", FALSE, "enable-html5-local-storage",
      FALSE, "enable-html5-database", FALSE, "enable-page-cache", FALSE, "enable-developer-extras",
      FALSE, "enable-fullscreen", FALSE, "enable-caret-browsing", FALSE,
      "javascript-can-open-windows-automatically", FALSE, "allow-modal-dialogs", FALSE,
      // A page of check boxes needs no graphics card, and no fault of a driver.
      "hardware-acceleration-policy", WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER, nullptr));
  WebKitFeatureList* features = webkit_settings_get_all_features();
  for (gsize i = 0; i < webkit_feature_list_get_length(features); ++i) {
    WebKitFeature* feature = webkit_feature_list_get(features, i);
    if (std::ranges::find(kFeaturesDenied, webkit_feature_get_identifier(feature)) !=
        kFeaturesDenied.end())
      webkit_settings_set_feature_enabled(settings.Get(), feature, FALSE);
  }
  webkit_feature_list_unref(features);
  return settings;
}

/// Keeps nothing on disk and reaches nobody.
GRef<WebKitWebContext> Context() {
  auto context = GRef<WebKitWebContext>::Adopt(webkit_web_context_new_ephemeral());
  WebKitNetworkProxySettings* deadEnd = webkit_network_proxy_settings_new(kDeadEnd, nullptr);
  webkit_website_data_manager_set_network_proxy_settings(
      webkit_web_context_get_website_data_manager(context.Get()), WEBKIT_NETWORK_PROXY_MODE_CUSTOM,
      deadEnd);
  webkit_network_proxy_settings_free(deadEnd);
  return context;
}

/// Tells the host of what a person does to the boxes, and first that it does so. It runs in the
/// host's own world, so the lock on the page's scripts does not hold for it.
constexpr const char* kTellChanges = R"({
  const tell = () => window.webkit.messageHandlers.changed.postMessage(null);
  document.addEventListener("change", tell, true);
  document.addEventListener("reset", tell, true);
  tell();
})";
constexpr const char* kMessage = "changed";

GRef<WebKitUserContentManager> ContentManager() {
  auto manager = GRef<WebKitUserContentManager>::Adopt(webkit_user_content_manager_new());
  WebKitUserScript* script = webkit_user_script_new_for_world(
      kTellChanges, WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
      WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, kHostWorld, nullptr, nullptr);
  webkit_user_content_manager_add_script(manager.Get(), script);
  webkit_user_script_unref(script);
  AddBoxList(manager.Get());
  AddPageRoles(manager.Get());
  webkit_user_content_manager_register_script_message_handler_in_world(manager.Get(), kMessage,
                                                                       kHostWorld);
  return manager;
}

WebKitWebView* NewView() {
  const auto settings = Settings();
  const auto context = Context();
  const auto manager = ContentManager();
  return WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", context.Get(),
                                      "settings", settings.Get(), "user-content-manager",
                                      manager.Get(), "default-content-security-policy",
                                      kContentPolicy, nullptr));
}

/// Files of this machine, which have no host in their addresses, and the empty page that WebKit
/// starts from and shows errors in.
bool IsLocal(std::string_view address) {
  return address.starts_with("file:///") || address.starts_with("about:");
}

}  // namespace

BrowserControl::BrowserControl(const std::string& name)
    : NativeControl("WebBrowser", name, gtk_event_box_new()) {
  // Nothing that assistive technology has to stop at.
  atk_object_set_role(gtk_widget_get_accessible(Widget()), ATK_ROLE_FILLER);
  mConnections.push_back(Connect<void()>(Widget(), "map", [this] { AwaitWindow(); }));
}

/// Starting the engine takes longer than all else, so the window is painted first: idle sources run
/// after drawing.
void BrowserControl::AwaitWindow() {
  if (mView) return;
  mMapped = Connect<gboolean(GdkEventAny*)>(
      gtk_widget_get_toplevel(Widget()), "map-event", [this](GdkEventAny*) -> gboolean {
        mMapped = {};
        mEngineStart = g_idle_add(
            [](gpointer control) -> gboolean {
              core::Attempt([&] { static_cast<BrowserControl*>(control)->StartEngine(); });
              return G_SOURCE_REMOVE;
            },
            this);
        return FALSE;
      });
}

void BrowserControl::StartEngine() {
  mEngineStart = 0;
  mView = GRef<WebKitWebView>::Share(NewView());
  mZoom.emplace(View());
  ConnectView();
  gtk_container_add(GTK_CONTAINER(Widget()), GTK_WIDGET(View()));
  // The page reports its focus itself. GTK reports none for an accessible with this role; a screen
  // reader would follow it out of the page. WebKit sets the parent when it makes the accessible.
  atk_object_set_role(gtk_widget_get_accessible(GTK_WIDGET(View())), ATK_ROLE_REDUNDANT_OBJECT);
  gtk_widget_show(GTK_WIDGET(View()));
  for (const std::string& address : std::exchange(mWaiting, {}))
    webkit_web_view_load_uri(View(), address.c_str());
}

void BrowserControl::ConnectView() {
  // A file dropped on the page would be navigated to.
  gtk_drag_dest_unset(GTK_WIDGET(View()));
  mConnections.push_back(Connect<gboolean(WebKitPolicyDecision*, WebKitPolicyDecisionType)>(
      View(), "decide-policy",
      [this](auto* decision, auto type) -> gboolean { return DecidePolicy(decision, type); }));
  mConnections.push_back(Connect<GtkWidget*(WebKitNavigationAction*)>(
      View(), "create", [](WebKitNavigationAction*) -> GtkWidget* { return nullptr; }));
  mConnections.push_back(Connect<gboolean(WebKitPermissionRequest*)>(
      View(), "permission-request", [](WebKitPermissionRequest* request) -> gboolean {
        webkit_permission_request_deny(request);
        return TRUE;
      }));
  mConnections.push_back(Connect<gboolean(WebKitFileChooserRequest*)>(
      View(), "run-file-chooser", [](WebKitFileChooserRequest* request) -> gboolean {
        webkit_file_chooser_request_cancel(request);
        return TRUE;
      }));
  // Its entries are about going back, links and reloading: none is for this page.
  mConnections.push_back(Connect<gboolean(WebKitContextMenu*, GdkEvent*, WebKitHitTestResult*)>(
      View(), "context-menu",
      [](WebKitContextMenu*, GdkEvent*, WebKitHitTestResult*) -> gboolean { return TRUE; }));
  ShowToolTip();
  mConnections.push_back(Connect<void(WebKitDownload*)>(
      webkit_web_view_get_context(View()), "download-started",
      [](WebKitDownload* download) { webkit_download_cancel(download); }));
  mConnections.push_back(Connect<void(WebKitLoadEvent)>(
      View(), "load-changed", [this](WebKitLoadEvent event) { OnLoadChanged(event); }));
  mConnections.push_back(Connect<void(WebKitWebProcessTerminationReason)>(
      View(), "web-process-terminated", [this](WebKitWebProcessTerminationReason) {
        mPageTells = false;
        if (const auto handler = mPageLost) handler();
      }));
  mConnections.push_back(Connect<void(WebKitJavascriptResult*)>(
      webkit_web_view_get_user_content_manager(View()), "script-message-received::changed",
      [this](WebKitJavascriptResult*) {
        mPageTells = true;
        mChanged = true;
      }));
}

/// WebKit shows the page's own tips in place of the control's.
void BrowserControl::ShowToolTip() {
  mConnections.push_back(Connect<gboolean(int, int, gboolean, GtkTooltip*)>(
      View(), "query-tooltip", [this](int, int, gboolean, GtkTooltip* tip) -> gboolean {
        const std::string text = ToolTipText();
        gtk_tooltip_set_text(tip, text.c_str());
        return !text.empty();
      }));
}

void BrowserControl::OnLoadChanged(WebKitLoadEvent event) {
  if (event == WEBKIT_LOAD_COMMITTED) mPageTells = false;
  if (event != WEBKIT_LOAD_FINISHED) return;
  mChanged = true;
  // First, so that a screen reader meets the right names when the focus comes.
  DescribePage(View(), mBusyText);
  EnterBoxList(View(), EnterAt::kTicked);
  gtk_widget_grab_focus(GTK_WIDGET(View()));
}

/// While a page is loading, boxes come without a word.
bool BrowserControl::MayHaveChanged() const {
  return !HasView() || !mPageTells || mChanged || webkit_web_view_is_loading(View());
}

/// WebKit would go on where the focus left the page, which is its end.
bool BrowserControl::TakeFocus(GtkDirectionType direction) {
  if (!NativeControl::TakeFocus(direction)) return false;
  EnterBoxList(View(), direction == GTK_DIR_TAB_FORWARD ? EnterAt::kFirst : EnterAt::kFocused);
  return true;
}

void BrowserControl::End() {
  mBeforeNavigate = nullptr;
  mPageLost = nullptr;
  if (mEngineStart != 0) g_source_remove(std::exchange(mEngineStart, 0));
  mMapped = {};
  mConnections.clear();
  mZoom.reset();
  mView = {};
  NativeControl::End();
}

void BrowserControl::Navigate(const std::string& nativePath) {
  GErrorCheck error;
  const GMemory<char> address(g_filename_to_uri(nativePath.c_str(), nullptr, error.Out()));
  error.Check();
  mAddress = address.get();
  mOwnPages.Navigate(nativePath);
  Reload();
}

// The view's own function would load what it showed last, which may be an earlier page.
void BrowserControl::Reload() {
  Widget();
  if (!mView) return mWaiting.push_back(mAddress);
  webkit_web_view_load_uri(View(), mAddress.c_str());
}

void BrowserControl::SetPageLost(std::function<void()> handler) { mPageLost = std::move(handler); }

void BrowserControl::SetBeforeNavigate(std::function<bool(const std::string&)> handler) {
  mBeforeNavigate = std::move(handler);
}

bool BrowserControl::DecidePolicy(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) {
  bool refused = true;  // new windows, and whatever later versions of WebKit may ask
  if (type == WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) {
    core::Attempt([&] {
      refused = IsRefused(webkit_navigation_policy_decision_get_navigation_action(
          WEBKIT_NAVIGATION_POLICY_DECISION(decision)));
    });
  } else if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
    // What WebKit cannot show it would download.
    refused = !webkit_response_policy_decision_is_mime_type_supported(
        WEBKIT_RESPONSE_POLICY_DECISION(decision));
  }
  if (refused) {
    webkit_policy_decision_ignore(decision);
  } else {
    webkit_policy_decision_use(decision);
  }
  return true;
}

bool BrowserControl::IsRefused(WebKitNavigationAction* action) {
  const std::string address =
      TextOf(webkit_uri_request_get_uri(webkit_navigation_action_get_request(action)));
  // The handler is asked even where the answer is known: it is promised every navigation.
  bool cancelled = false;
  if (const auto handler = mBeforeNavigate) core::Attempt([&] { cancelled = handler(address); });
  return cancelled || mOwnPages.IsRefused(address, IsLocal(address));
}

}  // namespace platform
