// Starts a program and says, from outside, when its window was seen, when a page was painted in it
// and when its check boxes could be read by assistive technology. The programs that are compared
// are watched alike and hold nothing for it. The display tells what changes (XDamage); the boxes
// are asked for only when the page is painted, since the answer takes the engine's time.
//
//   watch_start [--page X,Y,WIDTH,HEIGHT] [--boxes COUNT] PROGRAM ARGUMENT...
//
// --page is a part of the window that is blank until the page is painted. One line is printed when
// everything asked for was seen, in milliseconds: "visible V painted P readable R", a part that was
// not asked for as 0. The program runs on until standard input ends.
//
// SPDX-License-Identifier: MIT
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/Xdamage.h>
#include <atspi/atspi.h>
#include <glib-unix.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kPatienceSeconds = 60;
constexpr int kAskMilliseconds = 5;
constexpr int kDeepestPage = 12;
/// A dialog or a helper's window is smaller.
constexpr int kLeastWidth = 300;
/// A letter or a bar is darker in some colour than any page's or window's ground.
constexpr unsigned kInkBelow = 180;
constexpr int kLeastInk = 50;

struct Watch {
  Display* display = nullptr;
  Damage damage = 0;
  Window window = 0;
  XRectangle page{};
  int boxes = 0;
  pid_t program = 0;
  Clock::time_point start;
  double visible = 0, painted = 0, readable = 0;
  bool told = false;
  GMainLoop* loop = nullptr;
};

Watch watch;

double Elapsed() {
  return std::chrono::duration<double, std::milli>(Clock::now() - watch.start).count();
}

/// Windows come and go while they are looked at.
int IgnoreError(Display*, XErrorEvent*) { return 0; }

bool IsClient(Window window) {
  XClassHint hint{};
  if (!XGetClassHint(watch.display, window, &hint)) return false;
  XFree(hint.res_name);
  XFree(hint.res_class);
  return true;
}

/// The first window of a program that is seen, in `parent` or in what a window manager puts around.
Window FindWindow(Window parent, int depth) {
  Window root = 0, above = 0, found = 0;
  Window* children = nullptr;
  unsigned count = 0;
  if (!XQueryTree(watch.display, parent, &root, &above, &children, &count)) return 0;
  for (unsigned i = 0; i < count && !found; ++i) {
    XWindowAttributes attributes{};
    if (!XGetWindowAttributes(watch.display, children[i], &attributes) ||
        attributes.map_state != IsViewable || attributes.width < kLeastWidth)
      continue;
    if (IsClient(children[i])) {
      found = children[i];
    } else if (depth > 0) {
      found = FindWindow(children[i], depth - 1);
    }
  }
  if (children) XFree(children);
  return found;
}

bool IsInk(unsigned long pixel) {
  return (pixel & 0xFF) < kInkBelow || (pixel >> 8 & 0xFF) < kInkBelow ||
         (pixel >> 16 & 0xFF) < kInkBelow;
}

bool IsPagePainted() {
  XImage* image = XGetImage(watch.display, watch.window, watch.page.x, watch.page.y,
                            watch.page.width, watch.page.height, AllPlanes, ZPixmap);
  if (!image) return false;
  int ink = 0;
  for (int y = 0; y < image->height && ink < kLeastInk; ++y)
    for (int x = 0; x < image->width; ++x) ink += IsInk(XGetPixel(image, x, y)) ? 1 : 0;
  XDestroyImage(image);
  return ink >= kLeastInk;
}

/// The window of a program that was ended may stay a little longer than it.
void WaitForEmptyDisplay() {
  for (int i = 0; i < kPatienceSeconds * 100; ++i) {
    if (!FindWindow(DefaultRootWindow(watch.display), 2)) return;
    g_usleep(10000);
  }
  std::exit(2);
}

void LeaveWhenAllIsSeen() {
  if (watch.told || watch.visible == 0 || (watch.page.width && watch.painted == 0) ||
      (watch.boxes && watch.readable == 0))
    return;
  watch.told = true;
  std::printf("visible %.2f painted %.2f readable %.2f\n", watch.visible, watch.painted,
              watch.readable);
  std::fflush(stdout);
  g_main_loop_quit(watch.loop);
}

void Look() {
  if (!watch.window) {
    watch.window = FindWindow(DefaultRootWindow(watch.display), 2);
    if (watch.window) watch.visible = Elapsed();
  }
  if (watch.window && watch.page.width && watch.painted == 0 && IsPagePainted())
    watch.painted = Elapsed();
  LeaveWhenAllIsSeen();
}

/// Asking the display may bring its next word along, for which nothing calls again.
gboolean OnDisplay(gint, GIOCondition, gpointer) {
  while (XPending(watch.display)) {
    XEvent event;
    XNextEvent(watch.display, &event);
    XDamageSubtract(watch.display, watch.damage, None, None);
    Look();
  }
  return G_SOURCE_CONTINUE;
}

int CountBoxes(AtspiAccessible* document) {
  AtspiCollection* collection = atspi_accessible_get_collection_iface(document);
  if (!collection) return 0;
  GArray* roles = g_array_new(FALSE, FALSE, sizeof(int));
  const int role = ATSPI_ROLE_CHECK_BOX;
  g_array_append_val(roles, role);
  AtspiMatchRule* rule = atspi_match_rule_new(
      nullptr, ATSPI_Collection_MATCH_NONE, nullptr, ATSPI_Collection_MATCH_NONE, roles,
      ATSPI_Collection_MATCH_ANY, nullptr, ATSPI_Collection_MATCH_NONE, FALSE);
  GArray* found = atspi_collection_get_matches(
      collection, rule, ATSPI_Collection_SORT_ORDER_CANONICAL, 0, TRUE, nullptr);
  const int count = found ? static_cast<int>(found->len) : 0;
  if (found) g_array_unref(found);
  g_object_unref(rule);
  g_array_unref(roles);
  g_object_unref(collection);
  return count;
}

/// The page's engine is a process of its own, whose tree hangs below the window's.
int CountBoxesBelow(AtspiAccessible* object, int depth) {
  const bool isPage = atspi_accessible_get_role(object, nullptr) == ATSPI_ROLE_DOCUMENT_WEB;
  if (isPage || depth == 0) return isPage ? CountBoxes(object) : 0;
  int found = 0;
  const int count = atspi_accessible_get_child_count(object, nullptr);
  for (int i = 0; i < count && !found; ++i) {
    AtspiAccessible* child = atspi_accessible_get_child_at_index(object, i, nullptr);
    if (!child) continue;
    found = CountBoxesBelow(child, depth - 1);
    g_object_unref(child);
  }
  return found;
}

int CountBoxesOfProgram() {
  AtspiAccessible* desktop = atspi_get_desktop(0);
  int found = 0;
  const int count = atspi_accessible_get_child_count(desktop, nullptr);
  for (int i = 0; i < count && !found; ++i) {
    AtspiAccessible* program = atspi_accessible_get_child_at_index(desktop, i, nullptr);
    if (!program) continue;
    if (atspi_accessible_get_process_id(program, nullptr) == static_cast<guint>(watch.program))
      found = CountBoxesBelow(program, kDeepestPage);
    g_object_unref(program);
  }
  g_object_unref(desktop);
  return found;
}

gboolean AskForBoxes(gpointer) {
  if (watch.painted == 0 || CountBoxesOfProgram() < watch.boxes) return G_SOURCE_CONTINUE;
  watch.readable = Elapsed();
  LeaveWhenAllIsSeen();
  return G_SOURCE_REMOVE;
}

void Prepare(char** arguments) {
  for (; *arguments && !std::strncmp(*arguments, "--", 2); arguments += 2) {
    if (!std::strcmp(*arguments, "--boxes")) {
      watch.boxes = std::atoi(arguments[1]);
    } else if (std::sscanf(arguments[1], "%hd,%hd,%hu,%hu", &watch.page.x, &watch.page.y,
                           &watch.page.width, &watch.page.height) != 4) {
      std::exit(2);
    }
  }
}

void WatchDisplay() {
  watch.display = XOpenDisplay(nullptr);
  int event = 0, error = 0;
  if (!watch.display || !XDamageQueryExtension(watch.display, &event, &error)) std::exit(2);
  XSetErrorHandler(IgnoreError);
  // A new window shows what was there before, until something is drawn in it.
  XSetWindowBackground(watch.display, DefaultRootWindow(watch.display),
                       WhitePixel(watch.display, DefaultScreen(watch.display)));
  XClearWindow(watch.display, DefaultRootWindow(watch.display));
  watch.damage =
      XDamageCreate(watch.display, DefaultRootWindow(watch.display), XDamageReportNonEmpty);
  g_unix_fd_add(ConnectionNumber(watch.display), G_IO_IN, OnDisplay, nullptr);
}

void WatchAccessibility() {
  atspi_init();
  g_timeout_add(kAskMilliseconds, AskForBoxes, nullptr);
}

void Start(char** command) {
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  // A group of its own, to end its helpers with it.
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
  watch.start = Clock::now();
  if (posix_spawnp(&watch.program, *command, nullptr, &attributes, command, environ)) std::exit(2);
}

gboolean GiveUp(gpointer) {
  std::fputs("watch_start: not everything was seen\n", stderr);
  kill(-watch.program, SIGTERM);
  std::exit(1);
}

void WaitForInputToEnd() {
  char buffer[64];
  while (read(STDIN_FILENO, buffer, sizeof buffer) > 0) {
  }
}

}  // namespace

int main(int, char** argv) {
  char** command = argv + 1;
  Prepare(command);
  while (*command && !std::strncmp(*command, "--", 2)) command += 2;
  if (!*command) return 2;
  watch.loop = g_main_loop_new(nullptr, FALSE);
  WatchDisplay();
  WaitForEmptyDisplay();
  if (watch.boxes) WatchAccessibility();
  Start(command);
  OnDisplay(0, G_IO_IN, nullptr);
  g_timeout_add_seconds(kPatienceSeconds, GiveUp, nullptr);
  g_main_loop_run(watch.loop);
  WaitForInputToEnd();
  kill(-watch.program, SIGTERM);
  return waitpid(watch.program, nullptr, 0) == watch.program ? 0 : 1;
}
