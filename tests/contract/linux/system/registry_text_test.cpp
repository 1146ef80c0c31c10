// What a prefix's registry files say of installed products: files as Wine writes them, and the real
// thing.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/system/registry_text.h"

#include <map>
#include <memory>

#include "core/text.h"
#include "platform/system/shell.h"
#include "platform/system/windows_installer.h"
#include "tests/contract/linux/services_driver.h"
#include "tests/contract/services_case.h"
#include "tests/support/folders.h"

namespace {

using platform::WindowsInstaller;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

constexpr char kCode[] = "{12345678-9ABC-DEF0-1122-334455667788}";
constexpr char kLowerCode[] = "{12345678-9abc-def0-1122-334455667788}";

class Collector : public platform::RegistryVisitor {
 public:
  bool OnKey(const std::string& path) override {
    keys.push_back(path);
    return true;
  }
  void OnText(const std::string& name, const std::string& text) override { texts[name] = text; }

  std::vector<std::string> keys;
  std::map<std::string, std::string> texts;
};

class Registry : public testing::Test {
 protected:
  static Collector Read(const std::string& lines) {
    Collector collector;
    platform::ReadRegistry("WINE REGISTRY Version 2\n" + lines, collector);
    return collector;
  }
};

TEST_F(Registry, TellsKeysWithSingleBackslashes) {
  EXPECT_THAT(Read(";; x\n\n[Software\\\\A b] 1700000000\n#time=1\n[B]\n").keys,
              ElementsAre("Software\\A b", "B"));
}

TEST_F(Registry, TellsTextValues) {
  EXPECT_THAT(Read("[K] 1\n\"a\"=\"text\"\n\"b\"=str(2):\"%x%\"\n@=\"default\"\n").texts,
              UnorderedElementsAre(Pair("a", "text"), Pair("b", "%x%")));
}

TEST_F(Registry, PassesOverOtherValues) {
  EXPECT_THAT(
      Read("[K] 1\n\"a\"=dword:00000409\n\"b\"=hex:01,02,\\\n  03,04\n\"c\"=str(7):\"x\\0\"\n"
           "\"d\"=\n\"e\"\n\"f\n=\n")
          .texts,
      IsEmpty());
}

TEST_F(Registry, UnderstandsEscapes) {
  const auto text = [](const std::string& escaped) {
    return Read("[K] 1\n\"a\"=\"" + escaped + "\"\n").texts["a"];
  };
  EXPECT_EQ(text(R"(\"\\\n\t\[)"), "\"\\\n\t[");
  EXPECT_EQ(text(R"(\x20acx)"), "\u20acx");
  EXPECT_EQ(text(R"(\xf6)"), "\u00f6");
  EXPECT_EQ(text(R"(\1017)"), "A7");
  EXPECT_EQ(text(R"(\xd83d\xde00)"), "\U0001F600");
  EXPECT_EQ(text(R"(\xd83dx\xde00)"), "\uFFFDx\uFFFD");
}

TEST_F(Registry, ReadsLineEndsOfBothKinds) {
  Collector collector;
  platform::ReadRegistry("WINE REGISTRY Version 2\r\n[K] 1\r\n\"a\"=\"b\"\r\n", collector);
  EXPECT_THAT(collector.keys, ElementsAre("K"));
  EXPECT_EQ(collector.texts["a"], "b");
}

TEST_F(Registry, SurvivesFilesThatEndAnywhere) {
  const std::string whole = "[K\\\\L] 1\n\"a\\x20ac\"=\"b\\xd83d\\xde00\\1\"\n";
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    EXPECT_NO_THROW(Read(whole.substr(0, length)));
  }
}

TEST_F(Registry, ThrowsForOtherFiles) {
  Collector collector;
  for (const char* text : {"", "REGEDIT4\n[K]\n", "WINE REGISTRY Version 3\n"}) {
    EXPECT_ANY_THROW(platform::ReadRegistry(text, collector)) << text;
  }
}

class InstallerOnLinux : public ServiceCase {
 protected:
  static constexpr char kPacked[] = "87654321CBA90FED1122334455667788";

  static std::string MachineProduct() {
    return std::string("[Software\\\\Classes\\\\Installer\\\\Products\\\\") + kPacked + "] 1\n";
  }
  static std::string UserProduct() {
    return std::string("[Software\\\\Microsoft\\\\Installer\\\\Products\\\\") + kPacked + "] 1\n";
  }
  static std::string Properties(const std::string& sid, const std::string& version) {
    return "[Software\\\\Microsoft\\\\Windows\\\\CurrentVersion\\\\Installer\\\\UserData\\\\" +
           sid + "\\\\Products\\\\" + kPacked +
           "\\\\InstallProperties] 1\n\"DisplayName\"=\"A voice\"\n" +
           (version.empty() ? "" : "\"DisplayVersion\"=\"" + version + "\"\n");
  }
  static void Write(const char* file, const std::string& keys) {
    support::WriteBytes(peer::Prefix() / file, "WINE REGISTRY Version 2\n" + keys);
  }
  static std::optional<std::string> Version() {
    return WindowsInstaller().ProductInfo(kCode, "VersionString");
  }

  static constexpr char kMachine[] = "S-1-5-18";
  static constexpr char kUser[] = "S-1-5-21-0-0-0-1000";
};

TEST_F(InstallerOnLinux, KnowsAProductOfTheMachine) {
  Write("system.reg", MachineProduct() + Properties(kMachine, "1.2"));
  EXPECT_EQ(Version(), "1.2");
}

TEST_F(InstallerOnLinux, KnowsAProductOfTheUser) {
  Write("system.reg", Properties(kUser, "1.2"));
  Write("user.reg", UserProduct());
  EXPECT_EQ(Version(), "1.2");
}

TEST_F(InstallerOnLinux, PrefersTheUsersOwn) {
  Write("system.reg", MachineProduct() + Properties(kMachine, "1.0") + Properties(kUser, "2.0"));
  Write("user.reg", UserProduct());
  EXPECT_EQ(Version(), "2.0");
}

TEST_F(InstallerOnLinux, DoesNotKnowAProductByOneKeyAlone) {
  for (const std::string& keys :
       {MachineProduct(), Properties(kMachine, "1.2"), Properties(kUser, "1.2"),
        MachineProduct() + Properties(kUser, "1.2")}) {
    Write("system.reg", keys);
    EXPECT_EQ(Version(), std::nullopt) << keys;
  }
  Write("user.reg", UserProduct());
  Write("system.reg", Properties(kMachine, "1.2"));
  EXPECT_EQ(Version(), std::nullopt);
}

TEST_F(InstallerOnLinux, DoesNotTakeKeysBelowForTheKeys) {
  Write("system.reg", MachineProduct().insert(MachineProduct().find(']'), "\\\\SourceList") +
                          Properties(kMachine, "1.2"));
  EXPECT_EQ(Version(), std::nullopt);
}

TEST_F(InstallerOnLinux, TellsNoLetterCaseApart) {
  Write("system.reg", core::UpperCase(MachineProduct()) + Properties(kMachine, "1.2"));
  EXPECT_EQ(WindowsInstaller().ProductInfo(kLowerCode, "VersionString"), "1.2");
}

TEST_F(InstallerOnLinux, AnswersOtherPropertiesByTheirNames) {
  Write("system.reg", MachineProduct() + Properties(kMachine, "") + "\"Publisher\"=\"Velor\"\n");
  const WindowsInstaller installer;
  EXPECT_EQ(installer.ProductInfo(kCode, "InstalledProductName"), "A voice");
  EXPECT_EQ(installer.ProductInfo(kCode, "Publisher"), "Velor");
  EXPECT_EQ(installer.ProductInfo(kCode, "VersionString"), "");
}

TEST_F(InstallerOnLinux, AnswersTheLastTextOfAName) {
  Write("system.reg", MachineProduct() + Properties(kMachine, "1.0") +
                          "\"DISPLAYVERSION\"=\"1.1\"\n" + Properties(kMachine, "1.2"));
  EXPECT_EQ(Version(), "1.2");
}

TEST_F(InstallerOnLinux, NeedsNoUsersFile) {
  Write("system.reg", "");
  EXPECT_NO_THROW(WindowsInstaller());
}

TEST_F(InstallerOnLinux, ThrowsWithoutAMachinesFile) {
  std::filesystem::remove(peer::Prefix() / "system.reg");
  EXPECT_ANY_THROW(WindowsInstaller());
}

TEST_F(InstallerOnLinux, ThrowsForFilesThatAreNoRegistry) {
  support::WriteBytes(peer::Prefix() / "system.reg", "something else");
  EXPECT_ANY_THROW(WindowsInstaller());
}

TEST_F(InstallerOnLinux, ReadsABigRegistry) {
  std::string keys;
  for (int i = 0; i < 100'000; ++i) {
    keys += "\n[Software\\\\Classes\\\\Key " + std::to_string(i) + "] 1\n\"a\"=\"text\"\n";
  }
  Write("system.reg", keys + MachineProduct() + Properties(kMachine, "1.2"));
  EXPECT_EQ(Version(), "1.2");
}

// A prefix that Wine made, with packages that its own Windows Installer took. It takes some ten
// seconds to make and is made once.
class RealPrefix : public ServiceCase {
 protected:
  static void SetUpTestSuite() {
    folder = std::make_unique<support::TemporaryFolder>();
    std::filesystem::create_directories(Prefix());
    InPrefix({"wineboot", "--init"});
    Install(kCode, "1.2.3", "perMachine");
    Install(kUsersCode, "2.3.4", "perUser");
    WaitUntilWritten();
  }

  static void TearDownTestSuite() { folder.reset(); }

  static std::filesystem::path Prefix() { return folder->Path() / "prefix"; }

  static void InPrefix(const std::vector<std::string>& command) {
    const peer::Variable prefix("WINEPREFIX", Prefix().c_str());
    const peer::Variable quiet("WINEDEBUG", "-all");
    peer::Run(command);
  }

  /// Wine's server writes its files when nobody needs it any more, and ends.
  static void WaitUntilWritten() { InPrefix({"wineserver", "--wait"}); }

  static constexpr char kUsersCode[] = "{22345678-9ABC-DEF0-1122-334455667788}";
  static std::unique_ptr<support::TemporaryFolder> folder;

 private:
  static void Install(const std::string& code, const std::string& version,
                      const std::string& scope) {
    const std::string source =
        std::string(support::kSourceFolder) + "/tests/contract/linux/voice.wxs";
    const std::string package = folder->Path() / (scope + ".msi");
    peer::Run({"wixl", "-D", "Code=" + code, "-D", "Version=" + version, "-D", "Scope=" + scope,
               "-o", package, source});
    InPrefix({"wine", "msiexec", "/i", package, "/qn"});
  }
};

std::unique_ptr<support::TemporaryFolder> RealPrefix::folder;

TEST_F(RealPrefix, TellsWhatIsInstalled) {
  const peer::Variable prefix("WINEPREFIX", Prefix().c_str());
  const WindowsInstaller installer;
  EXPECT_EQ(installer.ProductInfo(kCode, "VersionString"), "1.2.3");
  EXPECT_EQ(installer.ProductInfo(kUsersCode, "VersionString"), "2.3.4");
  EXPECT_EQ(installer.ProductInfo(kCode, "InstalledProductName"), "A voice");
  EXPECT_EQ(installer.ProductInfo("{32345678-9ABC-DEF0-1122-334455667788}", "VersionString"),
            std::nullopt);
}

TEST_F(RealPrefix, HasTheFoldersOfApplicationData) {
  const peer::Variable prefix("WINEPREFIX", Prefix().c_str());
  const auto profiles = [] { return peer::CountIn((Prefix() / "drive_c/users").string()); };
  const std::size_t madeByWine = profiles();
  EXPECT_TRUE(peer::IsFolder(platform::SpecialFolder(26)));
  EXPECT_EQ(profiles(), madeByWine) << "another profile than Wine's";
  ASSERT_TRUE(std::filesystem::is_directory(Prefix() / "drive_c/ProgramData"));
  EXPECT_EQ(platform::SpecialFolder(35), support::CorePath(Prefix() / "drive_c/ProgramData"));
}

TEST_F(RealPrefix, RunsAWindowsProgramWithItsArguments) {
  {
    const peer::Variable prefix("WINEPREFIX", Prefix().c_str());
    const peer::Variable quiet("WINEDEBUG", "-all");
    platform::RunCommandLine("C:\\windows\\system32\\cmd.exe /c echo \"it runs\" > C:\\said.txt");
  }
  const auto said = Prefix() / "drive_c/said.txt";
  EXPECT_TRUE(peer::RunUntil([&] {
    return std::filesystem::exists(said) && support::ReadBytes(said).find("it runs") == 1;
  }));
  WaitUntilWritten();
}

}  // namespace
