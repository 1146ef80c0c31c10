// Folders and programs on Linux: prefix or none, Windows programs and others.
//
// SPDX-License-Identifier: MIT
#include "platform/system/shell.h"

#include <fcntl.h>
#include <unistd.h>

#include "core/text.h"
#include "platform/linux/window/toolkit.h"
#include "tests/contract/linux/services_driver.h"
#include "tests/contract/services_case.h"

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr int kRoaming = 26;
constexpr int kCommon = 35;

class SpecialFolders : public ServiceCase {
 protected:
  static std::string Core(const std::filesystem::path& path) { return support::CorePath(path); }
};

TEST_F(SpecialFolders, AreThePrefixsOwn) {
  const peer::Variable user("USER", "somebody");
  EXPECT_EQ(platform::SpecialFolder(kRoaming),
            Core(peer::Prefix() / "drive_c/users/somebody/AppData/Roaming"));
  EXPECT_EQ(platform::SpecialFolder(kCommon), Core(peer::Prefix() / "drive_c/ProgramData"));
}

TEST_F(SpecialFolders, AreFoundInAnotherLetterCase) {
  std::filesystem::create_directories(peer::Prefix() / "drive_c/programdata");
  EXPECT_EQ(platform::SpecialFolder(kCommon), Core(peer::Prefix() / "drive_c/programdata"));
}

TEST_F(SpecialFolders, AreMadeWhereTheyAreMissing) {
  EXPECT_FALSE(std::filesystem::exists(peer::Prefix() / "drive_c/ProgramData"));
  platform::SpecialFolder(kCommon);
  EXPECT_TRUE(std::filesystem::is_directory(peer::Prefix() / "drive_c/ProgramData"));
}

TEST_F(SpecialFolders, LieInTheHomesPrefixByDefault) {
  const peer::Variable none("WINEPREFIX", nullptr);
  const auto drive = peer::Home() / "HOME/.wine/drive_c";
  std::filesystem::create_directories(drive);
  const std::string folder = platform::SpecialFolder(kCommon);
  std::filesystem::remove_all(peer::Home() / "HOME/.wine");
  EXPECT_EQ(folder, Core(drive / "ProgramData"));
}

TEST_F(SpecialFolders, AreNamedAfterTheUserWithoutTheDomain) {
  for (const char* name : {"DOM\\alice", "DOM/alice", "alice"}) {
    const peer::Variable user("USER", name);
    EXPECT_EQ(platform::SpecialFolder(kRoaming),
              Core(peer::Prefix() / "drive_c/users/alice/AppData/Roaming"));
  }
}

class MovedFolders : public SpecialFolders {
 protected:
  /// What the key "User Shell Folders", or another, has for both folders.
  static void Write(const std::string& userFolders, const std::string& shellFolders) {
    for (const auto& [file, name] :
         {std::pair{"user.reg", "AppData"}, {"system.reg", "Common AppData"}}) {
      std::string text = "WINE REGISTRY Version 2\n";
      for (const auto& [key, value] :
           {std::pair{"User Shell Folders", userFolders}, {"Shell Folders", shellFolders}}) {
        text += R"([Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\)" + std::string(key) +
                "] 1700000000\n\"Desktop\"=\"C:\\\\other\"\n\"" + name + "\"=" + value + "\n";
      }
      support::WriteBytes(peer::Prefix() / file, text);
    }
  }
  static void ExpectAt(const std::string& below) {
    for (const int csidl : {kRoaming, kCommon})
      EXPECT_EQ(platform::SpecialFolder(csidl), Core(peer::Prefix() / below)) << csidl;
  }

  const peer::Variable mUser{"USER", "alice"};
};

TEST_F(MovedFolders, AreWhereUserShellFoldersSays) {
  Write(R"(str(2):"%UserProfile%\\Data")", R"("C:\\elsewhere")");
  ExpectAt("drive_c/users/alice/Data");
  Write(R"("c:\\Data\\Own")", R"("C:\\elsewhere")");
  ExpectAt("drive_c/Data/Own");
  Write(R"(str(2):"%ALLUSERSPROFILE%\\Own")", R"("C:\\elsewhere")");
  ExpectAt("drive_c/ProgramData/Own");
}

TEST_F(MovedFolders, AreWhereShellFoldersSaysElse) {
  for (const char* unusable :
       {R"("")", R"(str(2):"%NOWHERE%\\x")", R"("\\\\server\\share")", R"("Q:\\x")", "dword:1"}) {
    Write(unusable, R"("C:\\Shell Data")");
    ExpectAt("drive_c/Shell Data");
  }
}

TEST_F(MovedFolders, AreWinesOwnWhereTheRegistryIsUnusable) {
  Write("1", R"("Q:\\x")");
  EXPECT_EQ(platform::SpecialFolder(kCommon), Core(peer::Prefix() / "drive_c/ProgramData"));
  peer::WriteFile(Core(peer::Prefix() / "user.reg"), "no registry");
  EXPECT_EQ(platform::SpecialFolder(kRoaming),
            Core(peer::Prefix() / "drive_c/users/alice/AppData/Roaming"));
}

TEST_F(SpecialFolders, AreThoseOfTheDesktopWithoutAPrefix) {
  for (const char* prefix : {"/nowhere/prefix", "relative"}) {
    const peer::Variable elsewhere("WINEPREFIX", prefix);
    EXPECT_EQ(platform::SpecialFolder(kRoaming), Core(peer::Home() / "XDG_CONFIG_HOME"));
    EXPECT_EQ(platform::SpecialFolder(kCommon), Core(peer::Home() / "XDG_DATA_HOME"));
  }
}

// A program that writes down how it was started.
constexpr char kRecorder[] = R"(#!/bin/sh
{
  printf 'folder=%s\n' "$PWD"
  printf 'parent=%s\n' "$PPID"
  printf 'prefix=%s\n' "$WINEPREFIX"
  env | grep '^WEBKIT_'
  for argument; do printf 'argument=%s\n' "$argument"; done
  ls -l /proc/self/fd/
} >"$0.new" 2>/dev/null
mv "$0.new" "$0.log"
)";

class Starting : public ServiceCase {
 protected:
  static std::filesystem::path Native(const std::string& below) {
    return peer::NativeFolder() / below;
  }

  static void MakeRecorder(const std::filesystem::path& path) {
    peer::WriteProgram(path, kRecorder);
  }

  static void MakeWindowsProgram(const std::filesystem::path& path) {
    support::WriteBytes(path, "MZ and more");
  }

  /// The lines that the recorder at this path wrote.
  static std::vector<std::string> RecordOf(const std::filesystem::path& program) {
    const std::filesystem::path log = program.string() + ".log";
    if (!peer::RunUntil([&] { return std::filesystem::exists(log); })) return {"was not started"};
    return core::Split(support::ReadBytes(log), "\n");
  }

  static std::vector<std::string> ArgumentsOf(const std::filesystem::path& program) {
    std::vector<std::string> arguments;
    for (const std::string& line : RecordOf(program)) {
      constexpr std::string_view kMark = "argument=";
      if (line.starts_with(kMark)) arguments.push_back(line.substr(kMark.size()));
    }
    return arguments;
  }
};

TEST_F(Starting, RunsAProgramWithItsArguments) {
  MakeRecorder(Native("reader"));
  platform::RunCommandLine('"' + In("reader") + "\" /a \"b c\" d\\\"e \"\" $HOME `id` ; * | &");
  EXPECT_THAT(ArgumentsOf(Native("reader")),
              ElementsAre("/a", "b c", "d\"e", "", "$HOME", "`id`", ";", "*", "|", "&"));
}

TEST_F(Starting, TellsNobodyWhatItToldItsEngine) {
  const auto& [first, second] = platform::kEngineVariables;
  const peer::Variable told(first.name, first.value), alsoTold(second.name, second.value);
  MakeRecorder(Native("reader"));
  platform::RunCommandLine(In("reader"));
  EXPECT_THAT(RecordOf(Native("reader")),
              AllOf(Not(Contains(HasSubstr("WEBKIT_"))), Not(Contains(HasSubstr("JSC_")))));
}

TEST_F(Starting, TakesAPathWithSlashesToo) {
  MakeRecorder(Native("reader"));
  platform::RunCommandLine(Native("reader").string() + " one");
  EXPECT_THAT(ArgumentsOf(Native("reader")), ElementsAre("one"));
}

TEST_F(Starting, FindsAProgramInAnotherLetterCase) {
  MakeRecorder(Native("Reader"));
  platform::RunCommandLine(In("READER"));
  EXPECT_THAT(RecordOf(Native("Reader")), Contains(HasSubstr("folder=")));
}

TEST_F(Starting, TriesAnUnquotedPathAtEachBlank) {
  MakeRecorder(Native("Program Files/My Reader"));
  platform::RunCommandLine(In("Program Files\\My Reader") + " /a");
  EXPECT_THAT(ArgumentsOf(Native("Program Files/My Reader")), ElementsAre("/a"));
}

TEST_F(Starting, TakesTheShortestUnquotedPathThatIsAProgram) {
  MakeRecorder(Native("Program"));
  MakeRecorder(Native("Program Files/Reader"));
  platform::RunCommandLine(In("Program Files\\Reader"));
  EXPECT_THAT(ArgumentsOf(Native("Program")), ElementsAre("Files\\Reader"));
}

TEST_F(Starting, AddsTheExtensionOfPrograms) {
  MakeRecorder(Native("reader.exe"));
  platform::RunCommandLine(In("reader") + " /a");
  EXPECT_THAT(ArgumentsOf(Native("reader.exe")), ElementsAre("/a"));
}

TEST_F(Starting, LooksForABareNameInThePath) {
  MakeRecorder(Native("bin/some-reader"));
  const peer::Variable path("PATH", (Native("bin").string() + ":/usr/bin:/bin").c_str());
  platform::RunCommandLine("some-reader one");
  EXPECT_THAT(ArgumentsOf(Native("bin/some-reader")), ElementsAre("one"));
}

TEST_F(Starting, StartsNothingFromTheCurrentFolder) {
  MakeRecorder(Native("planted"));
  const std::filesystem::path earlier = std::filesystem::current_path();
  std::filesystem::current_path(peer::NativeFolder());
  EXPECT_ANY_THROW(platform::RunCommandLine("planted"));
  EXPECT_ANY_THROW(platform::RunElevated("planted", peer::Folder()));
  std::filesystem::current_path(earlier);
}

TEST_F(Starting, ThrowsForWhatIsNotThere) {
  for (const std::string& line :
       {std::string(), std::string("  "), std::string("\""), In("none"), '"' + In("none") + "\" /a",
        peer::Folder(), std::string("no-such-program-anywhere")}) {
    EXPECT_ANY_THROW(platform::RunCommandLine(line)) << line;
  }
  EXPECT_ANY_THROW(platform::RunElevated(In("none.exe"), peer::Folder()));
  EXPECT_ANY_THROW(platform::RunElevated(peer::Folder(), peer::Folder()));
  EXPECT_ANY_THROW(platform::RunElevated("", peer::Folder()));
}

TEST_F(Starting, HandsNoFileToACommandInterpreter) {
  peer::WriteProgram(Native("text"), "touch \"$0.log\"\n");
  peer::WriteProgram(Native("empty"), "");
  EXPECT_ANY_THROW(platform::RunCommandLine(In("text")));
  EXPECT_ANY_THROW(platform::RunCommandLine(In("empty")));
}

TEST_F(Starting, ThrowsForAProgramThatMayNotBeRun) {
  peer::WriteFile(In("reader"), kRecorder);
  EXPECT_ANY_THROW(platform::RunCommandLine(In("reader")));
}

TEST_F(Starting, LeavesNoChildBehind) {
  MakeRecorder(Native("reader"));
  platform::RunCommandLine(In("reader"));
  EXPECT_THAT(RecordOf(Native("reader")), Not(Contains("parent=" + std::to_string(getpid()))));
}

TEST_F(Starting, HandsDownNoDescriptor) {
  MakeRecorder(Native("reader"));
  peer::WriteFile(In("secret"), "");
  const int descriptor = open(Native("secret").c_str(), O_RDONLY);
  ASSERT_GE(descriptor, 0);
  platform::RunCommandLine(In("reader"));
  EXPECT_THAT(RecordOf(Native("reader")), Not(Contains(HasSubstr("secret"))));
  close(descriptor);
}

TEST_F(Starting, GivesAnElevatedProgramItsFolder) {
  MakeRecorder(Native("installer"));
  peer::MakeFolder(In("Work Folder"));
  platform::RunElevated(In("installer"), In("work folder"));
  EXPECT_THAT(RecordOf(Native("installer")),
              Contains("folder=" + std::filesystem::canonical(Native("Work Folder")).string()));
}

TEST_F(Starting, ThrowsWhenTheFolderIsMissing) {
  MakeRecorder(Native("installer"));
  EXPECT_ANY_THROW(platform::RunElevated(In("installer"), In("none")));
}

// A stand-in for Wine, first in the path.
class WindowsPrograms : public Starting {
 protected:
  WindowsPrograms() { MakeRecorder(Wine()); }

  static std::filesystem::path Wine() { return Native("bin/wine"); }

  const peer::Variable mPath{"PATH", (Native("bin").string() + ":/usr/bin:/bin").c_str()};
};

TEST_F(WindowsPrograms, RunThroughWineInThePrefix) {
  MakeWindowsProgram(Native("VelorVoiceInstaller.exe"));
  platform::RunElevated(In("velorvoiceinstaller.EXE"), peer::Folder());
  EXPECT_THAT(ArgumentsOf(Wine()), ElementsAre(Native("VelorVoiceInstaller.exe").string()));
  EXPECT_THAT(RecordOf(Wine()), Contains("prefix=" + peer::Prefix().string()));
  EXPECT_THAT(RecordOf(Wine()),
              Contains("folder=" + std::filesystem::canonical(peer::NativeFolder()).string()));
}

TEST_F(WindowsPrograms, GetTheirArguments) {
  MakeWindowsProgram(Native("reader.exe"));
  platform::RunCommandLine('"' + In("reader.exe") + "\" \"a b\"");
  EXPECT_THAT(ArgumentsOf(Wine()), ElementsAre(Native("reader.exe").string(), "a b"));
}

TEST_F(WindowsPrograms, AreFoundOnTheDriveOfThePrefix) {
  const auto program = peer::Prefix() / "drive_c/Program Files/Tools/reader.exe";
  MakeWindowsProgram(program);
  platform::RunCommandLine("C:\\program files\\tools\\reader /a");
  EXPECT_THAT(ArgumentsOf(Wine()), ElementsAre(program.string(), "/a"));
}

TEST_F(WindowsPrograms, AreFoundOnOtherDrivesOfThePrefix) {
  MakeWindowsProgram(Native("disk/reader.exe"));
  std::filesystem::create_directories(peer::Prefix() / "dosdevices");
  std::filesystem::create_directory_symlink(Native("disk"), peer::Prefix() / "dosdevices/d:");
  platform::RunCommandLine("D:\\READER.EXE");
  EXPECT_THAT(ArgumentsOf(Wine()),
              ElementsAre((peer::Prefix() / "dosdevices/d:/reader.exe").string()));
}

TEST_F(WindowsPrograms, AreFoundOnTheDriveThatIsTheSystem) {
  MakeWindowsProgram(Native("reader.exe"));
  platform::RunCommandLine("Z:" + In("reader.exe"));
  EXPECT_THAT(ArgumentsOf(Wine()), ElementsAre(Native("reader.exe").string()));
}

TEST_F(WindowsPrograms, ThrowForADriveThatIsNone) {
  EXPECT_ANY_THROW(platform::RunCommandLine("Q:\\reader.exe"));
  EXPECT_ANY_THROW(platform::RunCommandLine("C:reader.exe"));
}

TEST_F(WindowsPrograms, ThrowWithoutAPrefix) {
  MakeWindowsProgram(Native("reader.exe"));
  const peer::Variable none("WINEPREFIX", "/nowhere");
  EXPECT_ANY_THROW(platform::RunCommandLine(In("reader.exe")));
}

TEST_F(WindowsPrograms, ThrowWithoutWine) {
  MakeWindowsProgram(Native("reader.exe"));
  const peer::Variable empty("PATH", Native("nowhere").c_str());
  EXPECT_ANY_THROW(platform::RunCommandLine(In("reader.exe")));
}

}  // namespace
