// Command lines split as Windows programs expect it. Pure text: the standard library only, so that
// the rules can be read and tried without a process.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// One reading of a command line's beginning as a program, and the rest of the line.
struct ProgramCandidate {
  std::string program;
  std::string_view rest;
};

/// The programs that a line may mean, in the order in which Windows tries them. A quoted program
/// leaves one; otherwise every blank may be where it ends:
/// `C:\Program Files\Reader.exe /a` may mean "C:\Program", "C:\Program Files\Reader.exe" and the
/// whole line. Empty for a line without any. `rest` refers to `commandLine`.
std::vector<ProgramCandidate> ProgramCandidates(std::string_view commandLine);

/// The arguments of the rest of a line: parted by blanks and tabs outside quotes. Two backslashes
/// before a quote are one, a backslash and a quote are a quote, three quotes in a row are one in
/// the argument; backslashes elsewhere are themselves. `"a b" c\"d` is `a b` and `c"d`.
std::vector<std::string> SplitArguments(std::string_view text);

}  // namespace platform
