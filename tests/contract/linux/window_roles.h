// Other processes that the cases need: further starts of the same program file.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gio/gio.h>

#include <string>

#include "platform/linux/g_ref.h"

namespace roles {

/// The file of this process.
std::string OwnProgram();

/// Does what the argument "--role=..." says; the process's exit code.
int Play(const std::string& argument);

/// A process in a role. Ended with the object.
class Player {
 public:
  /// Of this program's file, or of a copy of it.
  explicit Player(const std::string& role, const std::string& program = OwnProgram());
  ~Player();
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  /// The next line that it writes.
  std::string ReadLine();
  /// Lets it end by itself.
  void Dismiss();
  /// Ends it as a crash would.
  void Kill();

 private:
  platform::GRef<GSubprocess> mProcess;
  platform::GRef<GDataInputStream> mOutput;
};

}  // namespace roles
