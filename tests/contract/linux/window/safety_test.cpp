// What a page cannot do: run script, load anything remote, open a window. A canary listens on
// loopback; whatever reaches it has got out of the page.
//
// SPDX-License-Identifier: MIT
#include <gio/gio.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/linux/signals.h"
#include "platform/window/form.h"
#include "platform/window/web_browser.h"
#include "tests/contract/linux/window_widgets.h"
#include "tests/contract/window_driver.h"
#include "tests/support/temporary_folder.h"

namespace {

using platform::GRef;

/// Counts connections to a port of its own.
class Canary {
 public:
  Canary() {
    mPort =
        g_socket_listener_add_any_inet_port(G_SOCKET_LISTENER(mService.Get()), nullptr, nullptr);
    g_socket_service_start(mService.Get());
    mIncoming = platform::Connect<gboolean(GSocketConnection*, GObject*)>(
        mService.Get(), "incoming", [this](GSocketConnection*, GObject*) -> gboolean {
          ++mHeard;
          return TRUE;
        });
  }

  int Heard() const { return mHeard; }
  std::string Address(const std::string& rest = "x") const {
    return "http://127.0.0.1:" + std::to_string(mPort) + "/" + rest;
  }
  /// Somebody does call, so that hearing nothing means something.
  void Call() const {
    const auto client = GRef<GSocketClient>::Adopt(g_socket_client_new());
    g_object_unref(
        g_socket_client_connect_to_host(client.Get(), "127.0.0.1", mPort, nullptr, nullptr));
  }

 private:
  GRef<GSocketService> mService = GRef<GSocketService>::Adopt(g_socket_service_new());
  platform::SignalConnection mIncoming;
  guint16 mPort = 0;
  int mHeard = 0;
};

class Safety : public testing::Test {
 protected:
  Safety() {
    peer::Begin();
    form.Show();
  }

  /// Shows a page with this markup, after which everything that it starts has had its time: the
  /// second, harmless page comes only when the first has finished.
  void Show(const std::string& head, const std::string& body) {
    const auto path = folder.Path() / "page.htm";
    support::WriteBytes(path, "<!DOCTYPE html><html><head><title>t</title>" + head +
                                  "</head><body><p id=mark>as written</p>" + body +
                                  "<input id=last type=checkbox></body></html>");
    browser.Navigate(support::CorePath(path));
    ASSERT_TRUE(peer::RunUntil([&] {
      return Ask("document.readyState + !!document.getElementById('last')") == "completetrue";
    }));
  }

  std::string Ask(const std::string& script) { return widgets::AskPage(View(), script); }
  WebKitWebView* View() { return widgets::ViewOf("form", "browser"); }

  /// Some time passes for connections that may come late.
  void ExpectSilence() {
    EXPECT_FALSE(
        peer::RunUntil([&] { return canary.Heard() > 0; }, std::chrono::milliseconds(1500)));
    canary.Call();
    EXPECT_TRUE(peer::RunUntil([&] { return canary.Heard() == 1; }));
  }

  support::TemporaryFolder folder;
  Canary canary;
  platform::Form form{"form", 9000, 6000};
  platform::WebBrowser browser{form.AddControl("WebBrowser", "browser", 9000, 6000)};
};

TEST_F(Safety, NoScriptOfThePageRuns) {
  const std::string change = "document.getElementById('mark').textContent = 'changed'";
  Show("<script>window.ran = 1</script>",
       "<script>" + change + "</script><img src='data:image/png,x' onerror=\"" + change +
           "\"><svg onload=\"" + change + "\"></svg><details open ontoggle=\"" + change +
           "\"></details><iframe srcdoc=\"<script>parent." + change +
           "</script>\"></iframe><a id=link href=\"javascript:" + change +
           ";void 0\">x</a><button id=button onclick=\"" + change + "\">x</button>");
  Ask("document.getElementById('link').click(); document.getElementById('button').click(); 1");
  EXPECT_FALSE(peer::RunUntil(
      [&] { return Ask("document.getElementById('mark').textContent") != "as written"; },
      std::chrono::milliseconds(500)));
}

TEST_F(Safety, NoReferenceOfThePageConnects) {
  const auto at = [&](const std::string& name) { return canary.Address(name); };
  Show("<link rel=stylesheet href='" + at("css") + "'><link rel=preload as=image href='" +
           at("preload") + "'><link rel=prefetch href='" + at("prefetch") +
           "'><link rel=preconnect href='" + at("") + "'><link rel=dns-prefetch href='" + at("") +
           "'><link rel=modulepreload href='" + at("module") + "'><link rel=icon href='" +
           at("icon") + "'><link rel=manifest href='" + at("manifest") + "'><style>@import url(" +
           at("import") + "); body { background: url(" + at("bg") +
           ") } @font-face { font-family: f; src: url(" + at("font") +
           ") } p { font-family: f; cursor: url(" + at("cursor") + "), auto }</style>",
       "<img src='" + at("img") + "' srcset='" + at("srcset") + " 2x'><picture><source srcset='" +
           at("source") + "'><img></picture><iframe src='" + at("frame") +
           "'></iframe><object data='" + at("object") + "'></object><embed src='" + at("embed") +
           "'><video autoplay src='" + at("video") + "' poster='" + at("poster") +
           "'></video><audio autoplay src='" + at("audio") + "'></audio><input type=image src='" +
           at("button") + "'><svg width=9 height=9><image href='" + at("svg") +
           "' width=9 height=9/><use href='" + at("use") + "#a'/></svg><script src='" +
           at("script") + "'></script><table background='" + at("table") +
           "'></table><a id=ping href='about:blank#x' ping='" + at("ping") + "'>x</a>");
  Ask("document.getElementById('ping').click(); 1");
  ExpectSilence();
}

TEST_F(Safety, NoReferenceOfThePageIsReadFromTheDiskEither) {
  support::WriteBytes(folder.Path() / "harm.css", "#mark { color: rgb(1, 2, 3) }");
  support::WriteBytes(folder.Path() / "harm.svg",
                      "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>");
  Show(
      "<link rel=stylesheet href='harm.css'><link rel=stylesheet href='file:///dev/zero'>"
      "<style>@import 'harm.css';</style>",
      "<img id=image src='harm.svg'><iframe src='harm.svg'></iframe>"
      "<object data='harm.svg'></object>");
  EXPECT_EQ(Ask("[getComputedStyle(document.getElementById('mark')).color, "
                "document.getElementById('image').naturalWidth].join()"),
            "rgb(0, 0, 0),0");
}

TEST_F(Safety, ElementsNamedAsFunctionsDoNotKeepTheBoxesFromBeingRead) {
  Show("",
       "<img name=getElementsByTagName><form name=prototype></form><form name=call></form>"
       "<img id=Document name=Document><img id=Array name=Array><form id=input>"
       "<input name=id><input name=checked><input name=disabled></form>");
  platform::PageInputs inputs;
  browser.ReadInputs([&](const platform::PageInputs& answer) { inputs = answer; });
  ASSERT_TRUE(peer::RunUntil([&] { return inputs.has_value(); }));
  ASSERT_EQ(inputs->size(), 4U);
  EXPECT_EQ(inputs->at(3).id, "last");
}

TEST_F(Safety, NeitherRefreshNorFormNorLinkConnects) {
  Show("<meta http-equiv=refresh content='0; url=" + canary.Address("refresh") + "'>",
       "<form id=form method=post action='" + canary.Address("form") +
           "'><input name=a></form><form id=get target=_blank action='" + canary.Address("get") +
           "'></form><a id=link href='" + canary.Address("link") +
           "'>x</a><a id=new target=_blank href='" + canary.Address("new") +
           "'>x</a><a id=down download href='" + canary.Address("down") + "'>x</a>");
  for (const char* act : {"getElementById('form').submit()", "getElementById('get').submit()",
                          "getElementById('link').click()", "getElementById('new').click()",
                          "getElementById('down').click()"})
    Ask(std::string("document.") + act + "; 1");
  ExpectSilence();
  EXPECT_EQ(Ask("document.getElementById('mark').textContent"), "as written");
}

TEST_F(Safety, NoFileOfAnotherMachineAndNoDeviceIsShown) {
  const auto other = folder.Path() / "other.htm";
  support::WriteBytes(other, "<!DOCTYPE html><title>other</title>");
  Show("", "<a id=far href='file://velor.example" + other.string() +
               "'>x</a><a id=device href='file:///dev/zero'>x</a><a id=near href='file://" +
               other.string() + "'>x</a>");
  for (const char* link : {"far", "device"}) {
    Ask(std::string("document.getElementById('") + link + "').click(); 1");
    EXPECT_FALSE(peer::RunUntil([&] { return Ask("document.title") != "t"; },
                                std::chrono::milliseconds(500)))
        << link;
  }
  Ask("document.getElementById('near').click(); 1");
  EXPECT_TRUE(peer::RunUntil([&] { return Ask("document.title") == "other"; }));
}

TEST_F(Safety, EvenWhatTheHostAsksOfThePageDoesNotConnect) {
  Show("", "");
  Ask("fetch('" + canary.Address("fetch") + "').catch(() => 0); new Image().src = '" +
      canary.Address("image") + "'; navigator.sendBeacon('" + canary.Address("beacon") +
      "'); new WebSocket('ws" + canary.Address("socket").substr(4) + "'); 1");
  ExpectSilence();
}

TEST_F(Safety, NoWindowIsOpened) {
  Show("", "<a id=link target=_blank href='about:blank'>x</a>");
  const auto windows = [] {
    GList* const list = gtk_window_list_toplevels();
    const guint count = g_list_length(list);
    g_list_free(list);
    return count;
  };
  const guint before = windows();
  Ask("document.getElementById('link').click(); window.open('about:blank'); 1");
  EXPECT_FALSE(peer::RunUntil([&] { return windows() != before; }, std::chrono::milliseconds(500)));
}

TEST_F(Safety, TheHostNamesBoxesWhateverTheElementsOfThePageAreCalled) {
  Show("",
       "<img name=querySelectorAll><table>"
       "<tr><td><input id=a><td><label for=a>First</label></tr>"
       "<tr><td><input id=a><td><label for=a>Second</label></tr></table>");
  EXPECT_TRUE(peer::RunUntil([&] {
    return Ask("document.getElementsByTagName('input')[1].getAttribute('aria-label')") == "Second";
  }));
}

TEST_F(Safety, NothingIsLeftInTheHome) {
  Show("", "");
  const std::string home = g_get_home_dir();
  std::vector<std::string> left;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(home)) {
    if (entry.is_regular_file() && entry.path().string().find("webkit") != std::string::npos)
      left.push_back(entry.path().string());
  }
  EXPECT_THAT(left, testing::IsEmpty());
  EXPECT_TRUE(webkit_web_view_is_ephemeral(View()));
}

TEST_F(Safety, ACrashedPageIsReportedUnreadableAndShownAgain) {
  Show("", "");
  int lost = 0;
  browser.OnPageLost([&] { ++lost; });
  webkit_web_view_terminate_web_process(View());
  EXPECT_TRUE(peer::RunUntil([&] { return lost == 1; }));
  bool answered = false;
  browser.ReadInputs([&](const platform::PageInputs&) { answered = true; });
  EXPECT_TRUE(peer::RunUntil([&] { return answered; }));
  browser.Reload();
  const auto inputs = [&] { return Ask("document.querySelectorAll('input').length"); };
  EXPECT_TRUE(peer::RunUntil([&] { return inputs() == "1"; }));
  Show("", "<input id=again>");
  EXPECT_TRUE(peer::RunUntil([&] { return inputs() == "2"; }));
  EXPECT_EQ(lost, 1);
}

}  // namespace
