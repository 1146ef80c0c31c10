// One running instance, and bringing it to the foreground. The lock is the system's, so that it
// goes with the process however that ends; activation speaks X11, where a program may ask for it.
//
// SPDX-License-Identifier: MIT
#include <X11/Xatom.h>
#include <fcntl.h>
#include <gdk/gdkx.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "platform/errors.h"
#include "platform/linux/g_ref.h"
#include "platform/system/program.h"

namespace platform {
namespace {

/// One name for each user and program file, whatever name or link it was started by. Nothing of the
/// environment counts: a start by another way (su, cron, a service) has to find the same lock.
std::string LockName() {
  const std::string program = std::filesystem::read_symlink("/proc/self/exe").string();
  const GMemory<char> hash(g_compute_checksum_for_string(G_CHECKSUM_SHA256, program.c_str(), -1));
  return "velor-voice-setup-" + std::to_string(getuid()) + "-" + std::string(hash.get(), 16);
}

bool IsHeldByThisUser(int descriptor, const sockaddr* address, socklen_t length) {
  ucred holder = {};
  socklen_t size = sizeof holder;
  return connect(descriptor, address, length) == 0 &&
         getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &holder, &size) == 0 &&
         holder.uid == getuid();
}

/// Takes a name in the abstract socket namespace, which needs no folder. True if a process of this
/// user holds it. Another user who holds it has no say; so has a process that does not listen yet.
bool IsSocketHeld(const std::string& name) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  name.copy(address.sun_path + 1, sizeof address.sun_path - 1);
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
  const auto* const generic = reinterpret_cast<const sockaddr*>(&address);
  const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (descriptor < 0) return false;
  // The socket stays open until the process ends.
  if (bind(descriptor, generic, length) == 0 && listen(descriptor, SOMAXCONN) == 0) return false;
  const bool held = IsHeldByThisUser(descriptor, generic, length);
  close(descriptor);
  return held;
}

/// Takes a file. True if a process of this user has locked it.
bool IsFileHeld(const std::string& name) {
  const std::string path = "/tmp/" + name + ".lock";
  // Close on exec: a program that this one starts must not hold the lock on after it.
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
  if (file < 0) return false;
  struct stat status = {};
  const bool own = fstat(file, &status) == 0 && status.st_uid == getuid();
  if (own && flock(file, LOCK_EX | LOCK_NB) == 0) return false;  // stays open, too
  const bool held = own && errno == EWOULDBLOCK;
  close(file);
  return held;
}

/// The order is always the same, so that of several starts at once exactly one is the first, also
/// if one cannot take the socket.
bool IsLockHeld() {
  const std::string name = LockName();
  return IsSocketHeld(name) || IsFileHeld(name);
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
  // Decided once: the running instance stays this one. If no lock can be taken, two windows are
  // better than none.
  static const bool held = IsLockHeld();
  return held;
}

void ActivateWindow(const std::string& title) {
  // The desktop shows that a program is starting until a window of it appears. None will.
  gdk_notify_startup_complete();
  if (title.empty()) throw Unsupported("many windows have no title");
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
