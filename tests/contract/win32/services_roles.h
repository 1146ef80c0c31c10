// What the service cases' own program file does when it is started for another one's sake.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace roles {

/// Plays the role that the environment or the name "recorder.exe" gives, and answers how the
/// process ends; absent without one. A recorder writes its arguments, a line each, into
/// "<program>.log".
std::optional<int> Play();

/// While it lives, programs that this one starts play a role.
class Given {
 public:
  explicit Given(const std::string& role);
  ~Given();
  Given(const Given&) = delete;
  Given& operator=(const Given&) = delete;
};

/// Saves two documents to a path in turns, until somebody ends the process.
std::string SavingInTurns(const std::string& path);
inline constexpr const char* kTurns[] = {"<queue><item>1</item></queue>",
                                         "<queue><item>2</item><item>3</item></queue>"};

/// Sets the event that a handle of this process is, as far as it reaches the other, and then makes
/// a folder.
std::string SettingAnEvent(std::uintptr_t handle, const std::string& folderThen);

/// Makes a folder "first" where it is the running instance, and stays; otherwise one whose name
/// begins with "second".
std::string AskingWhoIsFirst(const std::string& folder);

/// This program file.
std::string ProgramFile();

}  // namespace roles
