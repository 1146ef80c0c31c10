// The running program on Linux.
//
// SPDX-License-Identifier: MIT
#include "platform/system/program.h"

#include "platform/linux/system/arguments.h"
#include "platform/system/system.h"
#include "tests/contract/linux/services_driver.h"
#include "tests/contract/services_case.h"

namespace {

class Arguments : public ServiceCase {
 protected:
  static std::string Joined(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "/path/of program");
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    platform::SetArguments(static_cast<int>(pointers.size()), pointers.data());
    return platform::CommandLineArguments();
  }
};

TEST_F(Arguments, AreJoinedByABlank) {
  EXPECT_EQ(Joined({"PARVIX###C:\\Program", "Files\\reader.exe", "/a"}),
            "PARVIX###C:\\Program Files\\reader.exe /a");
}

TEST_F(Arguments, AreNothingWithoutAny) { EXPECT_EQ(Joined({}), ""); }

TEST_F(Arguments, LoseTheBlanksBeforeTheFirst) {
  EXPECT_EQ(Joined({"", " \t a  b ", "c "}), "a  b  c ");
  EXPECT_EQ(Joined({" ", ""}), "");
}

TEST_F(Arguments, AreUtf8WhateverTheyWere) {
  EXPECT_EQ(Joined({"\u00f6"}), "\u00f6");
  EXPECT_EQ(Joined({"a\xFF"}).substr(0, 1), "a");
}

using Program = ServiceCase;

TEST_F(Program, IsTheFileThatRuns) {
  EXPECT_EQ(platform::ProgramName(), "contract_services_linux");
  EXPECT_TRUE(peer::FileBytes(platform::ProgramFolder() + '\\' + platform::ProgramName()));
}

using System = ServiceCase;

TEST_F(System, CountsAsTheNewestWindows) { EXPECT_EQ(platform::OperatingSystemMajorVersion(), 10); }

TEST_F(System, NamesNoCountryWhereTheLocaleHasNone) {
  const peer::Variable locale("LC_ALL", "C");
  EXPECT_EQ(platform::CountryName(), "");
}

TEST_F(System, NamesNoCountryForALocaleThatIsMissing) {
  const peer::Variable locale("LC_ALL", "xx_XX.UTF-8");
  EXPECT_EQ(platform::CountryName(), "");
}

TEST_F(System, NamesTheCountryOfTheLocale) {
  const auto folder = peer::NativeFolder();
  std::filesystem::create_directories(folder);
  peer::Run({"localedef", "-i", "de_DE", "-f", "ISO-8859-1", (folder / "de_DE").string()});
  peer::Run({"localedef", "-i", "es_ES", "-f", "ISO-8859-1", (folder / "es_ES").string()});
  const peer::Variable where("LOCPATH", folder.c_str());
  {
    const peer::Variable locale("LC_ALL", "de_DE");
    EXPECT_EQ(platform::CountryName(), "Deutschland");
  }
  const peer::Variable locale("LC_ALL", "es_ES");
  EXPECT_EQ(platform::CountryName(), "Espa\u00f1a");
}

}  // namespace
