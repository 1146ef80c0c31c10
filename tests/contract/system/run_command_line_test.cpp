// RunCommandLine, on systems that start programs: the fake starts none.
//
// SPDX-License-Identifier: MIT
#include <optional>
#include <string>
#include <vector>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/system/shell.h"
#include "tests/contract/services_case.h"

namespace {

using testing::ElementsAre;

class RunCommandLine : public ServiceCase {
 protected:
  RunCommandLine() { peer::MakeRecorder(Program()); }

  static std::string Program() { return In("my tools\\recorder.exe"); }

  /// The arguments that the program has got from a command line.
  static std::vector<std::string> ArgumentsFrom(const std::string& line) {
    platform::RunCommandLine(line);
    std::optional<std::string> record;
    // A file cannot be opened while it is being renamed.
    const auto isRead = [&] {
      return core::Attempt([&] { record = peer::FileBytes(Program() + ".log"); }) && record;
    };
    if (!peer::RunUntil(isRead)) return {"was not started"};
    std::vector<std::string> arguments = core::Split(*record, "\n");
    arguments.pop_back();  // after the last line end
    return arguments;
  }
};

TEST_F(RunCommandLine, DropsBlanksAndTabsBeforeTheProgram) {
  EXPECT_THAT(ArgumentsFrom(" \t " + Program() + " /a"), ElementsAre("/a"));
}

TEST_F(RunCommandLine, DropsBlanksAndTabsBeforeAQuotedProgram) {
  EXPECT_THAT(ArgumentsFrom("\t \"" + Program() + "\" /a"), ElementsAre("/a"));
}

TEST_F(RunCommandLine, SplitsArgumentsAtRunsOfBlanksAndTabs) {
  EXPECT_THAT(ArgumentsFrom('"' + Program() + "\"  /a \t  b  "), ElementsAre("/a", "b"));
}

TEST_F(RunCommandLine, HandsOnQuotesAsTheyAreWritten) {
  EXPECT_THAT(ArgumentsFrom('"' + Program() + R"(" "b  c" d\"e "" f"g h" C:\dir\ "C:\dir\\")"),
              ElementsAre("b  c", "d\"e", "", "fg h", "C:\\dir\\", "C:\\dir\\"));
}

TEST_F(RunCommandLine, ThrowsForALineOfBlanks) {
  EXPECT_ANY_THROW(platform::RunCommandLine(""));
  EXPECT_ANY_THROW(platform::RunCommandLine(" \t "));
}

}  // namespace
