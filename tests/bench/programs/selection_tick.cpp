// How long a tick of the selection timer keeps the user-interface thread, against the least that
// can be asked of a page: an empty expression. The thread's own processor time, from the question
// to the answer, so that waiting for the page does not count.
//
//   velor_bench_selection_tick PAGE ROUNDS
//
// PAGE is a finished page. One line: "boxes N empty E quiet Q changed C", medians in microseconds:
// the empty expression; a tick of a page that has not changed; one that reads and counts.
//
// SPDX-License-Identifier: MIT
#include <glib.h>
#include <webkit2/webkit2.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "catalogue/selection_status.h"
#include "platform/linux/documents/native_path.h"
#include "platform/linux/window/toolkit.h"
#include "platform/window/event_loop.h"
#include "platform/window/form.h"
#include "platform/window/web_browser.h"

namespace {

using platform::PageInputs;

double ThreadMicroseconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

void RunUntil(const bool& done) {
  while (!done) g_main_context_iteration(nullptr, TRUE);
}

double Median(int rounds, const std::function<void()>& step) {
  std::vector<double> times;
  for (int i = 0; i < rounds; ++i) {
    platform::ProcessPendingEvents();
    const double start = ThreadMicroseconds();
    step();
    times.push_back(ThreadMicroseconds() - start);
  }
  std::ranges::nth_element(times, times.begin() + rounds / 2);
  return times.at(static_cast<std::size_t>(rounds / 2));
}

class Bench {
 public:
  explicit Bench(const std::string& page) {
    mForm.Show();
    mBrowser.Navigate(platform::CorePath(page));
    // Until the page is there and has no more to tell.
    while (Read() == 0 || mBrowser.InputsMayHaveChanged()) g_usleep(20000);
  }

  void EvaluateNothing() const {
    bool done = false;
    webkit_web_view_evaluate_javascript(
        FindView(), "", -1, nullptr, nullptr, nullptr,
        [](GObject* view, GAsyncResult* result, gpointer data) {
          JSCValue* value =
              webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, nullptr);
          if (value) g_object_unref(value);
          *static_cast<bool*>(data) = true;
        },
        &done);
    RunUntil(done);
  }

  void QuietTick() {
    if (mBrowser.InputsMayHaveChanged()) std::exit(3);
  }

  /// The number of boxes.
  std::size_t Read() {
    bool done = false;
    std::size_t count = 0;
    mBrowser.ReadInputs([&](const PageInputs& inputs) {
      if (inputs) {
        count = inputs->size();
        mOffered.resize(count);
        mText = StatusText(CountSelection(*inputs, mOffered), [](auto& key) { return key; });
      }
      done = true;
    });
    RunUntil(done);
    return count;
  }

 private:
  static WebKitWebView* FindView() {
    GtkWidget* found = nullptr;
    GList* windows = gtk_window_list_toplevels();
    for (GList* window = windows; window; window = window->next) LookAt(window->data, &found);
    g_list_free(windows);
    return WEBKIT_WEB_VIEW(found);
  }
  static void LookAt(gpointer widget, GtkWidget** found) {
    if (WEBKIT_IS_WEB_VIEW(widget)) {
      *found = GTK_WIDGET(widget);
    } else if (GTK_IS_CONTAINER(widget)) {
      gtk_container_forall(
          GTK_CONTAINER(widget),
          [](GtkWidget* child, gpointer data) { LookAt(child, static_cast<GtkWidget**>(data)); },
          found);
    }
  }

  platform::Form mForm{"form", 10200, 8700};
  platform::WebBrowser mBrowser{mForm.AddControl("WebBrowser", "browser", 8700, 8000)};
  std::vector<clsVoice> mOffered;
  std::string mText;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 || !platform::StartToolkit()) return 2;
  Bench bench(argv[1]);
  const int rounds = std::max(1, std::atoi(argv[2]));
  const std::size_t boxes = bench.Read();
  const double empty = Median(rounds, [&] { bench.EvaluateNothing(); });
  bench.Read();
  const double quiet = Median(rounds, [&] { bench.QuietTick(); });
  const double changed = Median(rounds, [&] { bench.Read(); });
  std::printf("boxes %zu empty %.1f quiet %.2f changed %.1f\n", boxes, empty, quiet, changed);
  return 0;
}
