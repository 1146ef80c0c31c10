// The rules by which Windows splits command lines (those of CreateProcess for the program, of
// CommandLineToArgvW for the arguments). Standard library only.
//
// SPDX-License-Identifier: MIT
#include "platform/linux/system/command_line.h"

#include <algorithm>

namespace platform {
namespace {

constexpr std::string_view kBlanks = " \t";

bool IsBlank(char character) { return kBlanks.find(character) != std::string_view::npos; }

std::string_view WithoutLeadingBlanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text;
}

// Reads one argument from the beginning of `mText` at a time.
class ArgumentReader {
 public:
  explicit ArgumentReader(std::string_view text) : mText(WithoutLeadingBlanks(text)) {}

  bool AtEnd() const { return mText.empty(); }

  std::string Next() {
    mArgument.clear();
    mQuotes = 0;
    while (!AtEnd() && (IsQuoted() || !IsBlank(mText.front()))) TakePiece();
    mText = WithoutLeadingBlanks(mText);
    return mArgument;
  }

 private:
  // The quotes in a row that count: one opens, the second closes, the third is text and closes.
  bool IsQuoted() const { return mQuotes == 1; }

  void TakePiece() {
    const std::size_t backslashes = TakeRun('\\');
    if (AtEnd() || mText.front() != '"') {
      mArgument.append(backslashes, '\\');
      if (backslashes == 0) TakeCharacter();
      return;
    }
    mArgument.append(backslashes / 2, '\\');
    if (backslashes % 2 == 1) {
      TakeCharacter();
      // Quotes right behind it belong to the same row, which began before it.
      TakeQuotes();
    } else {
      ++mQuotes;
      mText.remove_prefix(1);
      TakeQuotes();
    }
  }

  void TakeQuotes() {
    for (std::size_t more = TakeRun('"'); more > 0; --more) {
      if (++mQuotes != 3) continue;
      mArgument += '"';
      mQuotes = 0;
    }
    if (mQuotes == 2) mQuotes = 0;
  }

  void TakeCharacter() {
    mArgument += mText.front();
    mText.remove_prefix(1);
  }

  std::size_t TakeRun(char character) {
    const std::size_t length = std::min(mText.find_first_not_of(character), mText.size());
    mText.remove_prefix(length);
    return length;
  }

  std::string_view mText;
  std::string mArgument;
  int mQuotes = 0;
};

std::vector<ProgramCandidate> QuotedProgram(std::string_view line) {
  const std::size_t end = std::min(line.find('"', 1), line.size());
  const std::string_view program = line.substr(1, end - 1);
  return {{std::string(program), line.substr(std::min(end + 1, line.size()))}};
}

}  // namespace

std::vector<ProgramCandidate> ProgramCandidates(std::string_view commandLine) {
  const std::string_view line = WithoutLeadingBlanks(commandLine);
  if (line.starts_with('"')) return QuotedProgram(line);
  std::vector<ProgramCandidate> candidates;
  for (std::size_t end = 1; end <= line.size(); ++end) {
    const bool endsHere = end == line.size() || IsBlank(line.at(end));
    if (!endsHere || IsBlank(line.at(end - 1))) continue;
    candidates.push_back({std::string(line.substr(0, end)), line.substr(end)});
  }
  return candidates;
}

std::vector<std::string> SplitArguments(std::string_view text) {
  std::vector<std::string> arguments;
  ArgumentReader reader(text);
  while (!reader.AtEnd()) arguments.push_back(reader.Next());
  return arguments;
}

}  // namespace platform
