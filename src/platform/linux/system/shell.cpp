// Shell folders, and starting programs: those of Windows through Wine in the prefix, those of Linux
// directly. There are no elevated rights inside a prefix, where every program may write everywhere;
// so running elevated is running.
//
// SPDX-License-Identifier: MIT
#include "platform/system/shell.h"

#include <glib.h>
#include <glib/gstdio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/errors.h"
#include "platform/linux/documents/file_access.h"
#include "platform/linux/documents/native_path.h"
#include "platform/linux/g_ref.h"
#include "platform/linux/system/command_line.h"
#include "platform/linux/system/registry_text.h"
#include "platform/linux/system/wine_prefix.h"
#include "platform/linux/window/toolkit.h"
#include "platform/system/program.h"

namespace platform {
namespace {

struct ShellFolder {
  int csidl;
  const char* registryFile;
  const char* registryValue;
  /// Where Wine has it unless the registry says otherwise.
  const char* standardPath;
  const char* (*withoutPrefix)();
};

constexpr std::array kShellFolders = {
    ShellFolder{26, "/user.reg", "APPDATA", "%USERPROFILE%\\AppData\\Roaming",
                g_get_user_config_dir},
    ShellFolder{35, "/system.reg", "COMMON APPDATA", "%PROGRAMDATA%", g_get_user_data_dir}};

/// What a registry file says of one folder, in the two keys that count; empty where it says
/// nothing.
class FolderPaths : public RegistryVisitor {
 public:
  explicit FolderPaths(std::string value) : mValue(std::move(value)) {}

  bool OnKey(const std::string& path) override {
    constexpr std::string_view kExplorer =
        "SOFTWARE\\MICROSOFT\\WINDOWS\\CURRENTVERSION\\EXPLORER\\";
    const std::string key = core::UpperCase(path);
    mOpen = nullptr;
    if (key.starts_with(kExplorer)) {
      const std::string name = key.substr(kExplorer.size());
      if (name == "USER SHELL FOLDERS") mOpen = &ofUser;
      if (name == "SHELL FOLDERS") mOpen = &ofShell;
    }
    return mOpen != nullptr;
  }
  void OnText(const std::string& name, const std::string& text) override {
    if (core::UpperCase(name) == mValue) *mOpen = text;
  }

  std::string ofUser;
  std::string ofShell;

 private:
  const std::string mValue;
  std::string* mOpen = nullptr;
};

/// The native folder of a path in the registry. Throws where it holds a variable that Wine does not
/// use for these folders, or is on no drive of the prefix.
std::string FolderAt(const std::string& registryPath) {
  std::string path = registryPath;
  for (const auto& [variable, value] :
       {std::pair<std::string, std::string>{"%USERPROFILE%", "C:\\users\\" + WineUserName()},
        {"%PROGRAMDATA%", "C:\\ProgramData"},
        {"%ALLUSERSPROFILE%", "C:\\ProgramData"},
        {"%SYSTEMDRIVE%", "C:"}}) {
    if (core::UpperCase(path).starts_with(variable)) path.replace(0, variable.size(), value);
  }
  if (path.substr(0, path.find('\\')).size() != 2) throw std::runtime_error("not on a drive");
  return NativePathOfWindowsPath(path);
}

std::string FolderIn(const std::string& prefix, const ShellFolder& folder) {
  FolderPaths paths(folder.registryValue);
  const std::string file = prefix + folder.registryFile;
  if (IsRegularFile(file)) {
    core::Attempt([&] { ReadRegistry(ReadRegularFile(file, kRegistryFileLimit), paths); });
  }
  for (const std::string& path : {paths.ofUser, paths.ofShell}) {
    std::string native;
    if (!path.empty() && core::Attempt([&] { native = FolderAt(path); })) return native;
  }
  return FolderAt(folder.standardPath);
}

enum class ProgramKind { kWindows, kLinux };

ProgramKind KindOf(const std::string& program) {
  const std::string beginning = FirstBytes(program, 4);
  if (beginning.starts_with("MZ")) return ProgramKind::kWindows;
  if (beginning ==
          "\x7f"
          "ELF" ||
      beginning.starts_with("#!"))
    return ProgramKind::kLinux;
  // GLib would hand a file without a mark to a command interpreter.
  throw std::runtime_error(program + " is not a program");
}

std::string WineProgram() {
  const GMemory<char> wine(g_find_program_in_path("wine"));
  if (!wine) throw std::runtime_error("a Windows program needs Wine, which is not installed");
  return wine.get();
}

struct FreeList {
  void operator()(gchar** list) const { g_strfreev(list); }
};
using Environment = std::unique_ptr<gchar*, FreeList>;

/// What this program says to its own browser engine is not for the programs that it starts.
Environment EnvironmentForOthers() {
  gchar** variables = g_get_environ();
  for (const EngineVariable& told : kEngineVariables) {
    variables = g_environ_unsetenv(variables, told.name);
  }
  return Environment(variables);
}

Environment EnvironmentWith(const char* name, const std::string& value) {
  return Environment(g_environ_setenv(EnvironmentForOthers().release(), name, value.c_str(), TRUE));
}

// The child inherits no descriptor, has nothing to read or write, and is nobody's to wait for.
void Spawn(const std::vector<std::string>& command, const Environment& environment,
           const std::string& workingFolder) {
  std::vector<char*> arguments;
  for (const std::string& argument : command) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  GErrorCheck error;
  constexpr auto kQuiet =
      static_cast<GSpawnFlags>(G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
  g_spawn_async(workingFolder.empty() ? nullptr : workingFolder.c_str(), arguments.data(),
                environment.get(), kQuiet, nullptr, nullptr, nullptr, error.Out());
  error.Check();
}

void StartProgram(const std::string& program, std::vector<std::string> arguments,
                  const std::string& workingFolder) {
  arguments.insert(arguments.begin(), program);
  if (KindOf(program) == ProgramKind::kLinux) {
    return Spawn(arguments, EnvironmentForOthers(), workingFolder);
  }
  const std::optional<std::string> prefix = WinePrefix();
  if (!prefix) throw std::runtime_error("there is no Wine prefix for a Windows program to run in");
  arguments.insert(arguments.begin(), WineProgram());
  Spawn(arguments, EnvironmentWith("WINEPREFIX", *prefix), workingFolder);
}

bool HasFolder(const std::string& program) {
  return program.find_first_of("\\/:") != std::string::npos;
}

// As under Windows, ".exe" need not be written.
std::optional<std::string> ProgramAt(const std::string& nativePath) {
  for (const char* extension : {"", ".exe"}) {
    std::string file = NativePath(CorePath(nativePath + extension));
    if (IsRegularFile(file)) return file;
  }
  return std::nullopt;
}

// A bare name is looked for beside this program and in $PATH. Windows would look in the current
// folder too, where anybody may have put a program of that name.
std::optional<std::string> FindProgram(const std::string& program) {
  if (HasFolder(program)) return ProgramAt(NativePathOfWindowsPath(program));
  if (auto beside = ProgramAt(NativePath(ProgramFolder() + '\\' + program))) return beside;
  const GMemory<char> inPath(g_find_program_in_path(program.c_str()));
  return inPath ? std::optional<std::string>(inPath.get()) : std::nullopt;
}

}  // namespace

std::string SpecialFolder(int csidl) {
  const auto* const known = std::ranges::find(kShellFolders, csidl, &ShellFolder::csidl);
  if (known == kShellFolders.end()) {
    throw Unsupported("a shell folder that is not known here");
  }
  const std::optional<std::string> prefix = WinePrefix();
  const std::string folder =
      prefix ? FolderIn(*prefix, *known) : NativePath(CorePath(known->withoutPrefix()));
  // The callers create their own levels one at a time and count on the system's to be there, which
  // they are not for a user who has not run anything yet. Where that fails, so do they.
  g_mkdir_with_parents(folder.c_str(), 0700);
  return CorePath(folder);
}

void RunCommandLine(const std::string& commandLine) {
  for (const ProgramCandidate& candidate : ProgramCandidates(commandLine)) {
    if (const std::optional<std::string> program = FindProgram(candidate.program)) {
      return StartProgram(*program, SplitArguments(candidate.rest), "");
    }
  }
  throw std::runtime_error("the command line names no program: " + commandLine);
}

void RunElevated(const std::string& file, const std::string& workingFolder) {
  const std::string program = NativePathOfWindowsPath(file);
  if (!g_path_is_absolute(program.c_str())) {
    throw Unsupported(file + " is not a full path");
  }
  StartProgram(program, {}, NativePathOfWindowsPath(workingFolder));
}

}  // namespace platform
