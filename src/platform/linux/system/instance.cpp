// One running instance, and bringing it to the foreground. The lock is the system's, so that it
// goes with the process however that ends; activation speaks X11, where a program may ask for it.
//
// SPDX-License-Identifier: MIT
#include <X11/Xatom.h>
#include <fcntl.h>
#include <gdk/gdkx.h>
#include <glib/gstdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "platform/linux/g_ref.h"
#include "platform/system/program.h"

namespace platform {
namespace {

/// One file for each program file, whatever name or link it was started by.
std::string LockPath() {
  const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
  const GMemory<char> hash(g_compute_checksum_for_string(G_CHECKSUM_SHA256, program.c_str(), -1));
  const std::string folder = g_get_user_runtime_dir();
  g_mkdir_with_parents(folder.c_str(), 0700);
  return folder + "/velor-voice-setup-" + std::string(hash.get(), 16) + ".lock";
}

enum class Lock { kTaken, kHeldElsewhere, kImpossible };

Lock TakeLock() {
  // Close on exec: a program that this one starts must not hold the lock on after it.
  const int file = open(LockPath().c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (file < 0) return Lock::kImpossible;
  // The sticky bit keeps the runtime folder's cleaning away from a file that is in use for hours.
  fchmod(file, 01600);
  if (flock(file, LOCK_EX | LOCK_NB) == 0) return Lock::kTaken;  // the file stays open for good
  const bool held = errno == EWOULDBLOCK;
  close(file);
  return held ? Lock::kHeldElsewhere : Lock::kImpossible;
}

struct XFreeData {
  void operator()(void* data) const { XFree(data); }
};

/// A property's bytes; empty when the window lacks it or has gone meanwhile.
struct Property {
  std::unique_ptr<unsigned char, XFreeData> data;
  unsigned long count = 0;
};

Property ReadProperty(Display* display, Window window, const char* name, Atom type) {
  Atom actualType = None;
  int format = 0;
  unsigned long count = 0, left = 0;
  unsigned char* data = nullptr;
  const int result =
      XGetWindowProperty(display, window, XInternAtom(display, name, False), 0, 65536, False, type,
                         &actualType, &format, &count, &left, &data);
  Property property{std::unique_ptr<unsigned char, XFreeData>(data), count};
  if (result != Success || actualType != type) property.count = 0;
  return property;
}

std::vector<Window> TopLevelWindows(Display* display) {
  const Property list =
      ReadProperty(display, DefaultRootWindow(display), "_NET_CLIENT_LIST", XA_WINDOW);
  // Xlib hands out 32-bit items as longs.
  const auto* windows = reinterpret_cast<const Window*>(list.data.get());
  return list.count == 0 ? std::vector<Window>()
                         : std::vector<Window>(windows, windows + list.count);
}

std::string TitleOf(Display* display, Window window) {
  for (const auto& [name, type] :
       {std::pair{"_NET_WM_NAME", XInternAtom(display, "UTF8_STRING", False)},
        std::pair{"WM_NAME", static_cast<Atom>(XA_STRING)}}) {
    const Property title = ReadProperty(display, window, name, type);
    if (title.count > 0) return {reinterpret_cast<const char*>(title.data.get()), title.count};
  }
  return {};
}

/// The window manager raises the window, and opens it where it was minimised.
void AskForActivation(Display* display, Window window) {
  XEvent event = {};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(display, "_NET_ACTIVE_WINDOW", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = 2;  // asked for by a person, not by the program of its own accord
  event.xclient.data.l[1] = CurrentTime;
  XSendEvent(display, DefaultRootWindow(display), False,
             SubstructureRedirectMask | SubstructureNotifyMask, &event);
  XSync(display, False);
}

/// While it lives, asking about a window that has just gone is no error that ends the program.
class ErrorTrap {
 public:
  explicit ErrorTrap(GdkDisplay* display) : mDisplay(display) {
    gdk_x11_display_error_trap_push(mDisplay);
  }
  ~ErrorTrap() { gdk_x11_display_error_trap_pop_ignored(mDisplay); }
  ErrorTrap(const ErrorTrap&) = delete;
  ErrorTrap& operator=(const ErrorTrap&) = delete;

 private:
  GdkDisplay* mDisplay;
};

}  // namespace

bool IsPreviousInstanceRunning() {
  // Asked again, the running instance is still this one. Where no lock can be made, two windows are
  // better than none.
  static const Lock lock = TakeLock();
  return lock == Lock::kHeldElsewhere;
}

void ActivateWindow(const std::string& title) {
  if (title.empty()) throw std::invalid_argument("many windows have no title");
  GdkDisplay* const connection = gdk_display_get_default();
  if (!connection || !GDK_IS_X11_DISPLAY(connection))
    throw std::runtime_error("windows can be activated on X11 only");
  const ErrorTrap trap(connection);
  Display* const display = gdk_x11_display_get_xdisplay(connection);
  for (const Window window : TopLevelWindows(display)) {
    if (TitleOf(display, window) == title) return AskForActivation(display, window);
  }
  throw std::runtime_error("no window has this title");
}

}  // namespace platform
