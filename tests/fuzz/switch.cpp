// The command line: the switch that names a fallback command, and what such a command is split
// into. The input is the arguments of the program.
//
// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include "app/modMain.h"
#include "platform/linux/system/command_line.h"
#include "tests/fuzz/target.h"

namespace {

using fuzz::Require;

constexpr std::string_view kBlanks = " \t";

/// The rule once more, by looking for ends instead of splitting: a piece ends before a "###", and
/// the first one that is the marker is followed by the command.
std::string ExpectedCommand(std::string_view arguments) {
  constexpr std::string_view kSeparator = "###";
  while (arguments.find(kSeparator) != std::string_view::npos) {
    if (fuzz::TakeUpTo(arguments, kSeparator) == "PARVIX") {
      return std::string(fuzz::TakeUpTo(arguments, kSeparator));
    }
  }
  return "";
}

/// Any text as one argument, in the one way that every Windows program understands.
std::string Quoted(std::string_view argument) {
  std::string quoted = "\"";
  std::size_t backslashes = 0;
  for (const char character : argument) {
    if (character == '"') quoted.append(backslashes + 1, '\\');
    backslashes = character == '\\' ? backslashes + 1 : 0;
    quoted += character;
  }
  return quoted.append(backslashes, '\\') + '"';
}

/// What is put into one command line comes out of it.
void CheckArguments(std::string_view text) {
  std::vector<std::string> arguments;
  std::string line;
  while (!text.empty()) {
    arguments.emplace_back(fuzz::TakeUpTo(text, "#"));
    line += Quoted(arguments.back()) + (arguments.size() % 2 == 0 ? " \t" : " ");
  }
  Require(platform::SplitArguments(line) == arguments);
}

/// Splitting adds nothing and moves nothing: every character of an argument stands in the line, in
/// that order.
void CheckSplitting(std::string_view line) {
  std::size_t at = 0;
  for (const std::string& argument : platform::SplitArguments(line)) {
    for (const char character : argument) {
      at = line.find(character, at);
      Require(at != std::string_view::npos);
      ++at;
    }
  }
}

/// Every reading divides the same line, ends its program where one may end, and is longer than the
/// one before; the last takes the program for the whole line.
void CheckPrograms(std::string_view commandLine) {
  const std::size_t begin = commandLine.find_first_not_of(kBlanks);
  const auto candidates = platform::ProgramCandidates(commandLine);
  Require(candidates.empty() == (begin == std::string_view::npos));
  if (candidates.empty()) return;

  const std::string_view line = commandLine.substr(begin);
  if (line.front() == '"') {
    Require(candidates.size() == 1);
    const auto& [program, rest] = candidates.front();
    Require(program.find('"') == std::string::npos);
    const bool closed = program.size() + 1 < line.size();
    Require(line == '"' + program + (closed ? "\"" : "") + std::string(rest));
    return;
  }
  std::size_t length = 0;
  for (const auto& [program, rest] : candidates) {
    Require(program.size() > length);
    length = program.size();
    Require(line == program + std::string(rest));
    Require(kBlanks.find(program.back()) == std::string_view::npos);
    Require(rest.empty() || kBlanks.find(rest.front()) != std::string_view::npos);
  }
  Require(candidates.back().rest.find_first_not_of(kBlanks) == std::string_view::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view arguments = fuzz::Text(data, size);
  const std::string command = modMain::FallbackCommandFrom(arguments);
  Require(command == ExpectedCommand(arguments));
  CheckArguments(arguments);
  CheckSplitting(arguments);
  CheckPrograms(arguments);
  CheckPrograms(command);
  return 0;
}
