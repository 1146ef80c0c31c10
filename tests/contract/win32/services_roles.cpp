// The roles of other processes. They come by the environment, since one way of starting a program
// takes no arguments.
//
// SPDX-License-Identifier: MIT
#include "tests/contract/win32/services_roles.h"

#include <windows.h>
#include <shellapi.h>

#include <filesystem>
#include <vector>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/documents/files.h"
#include "platform/documents/xml_document.h"
#include "platform/system/program.h"
#include "platform/win32/wide_text.h"
#include "tests/support/temporary_folder.h"

namespace roles {
namespace {

using platform::WideText;

constexpr const wchar_t* kVariable = L"VELOR_TEST_ROLE";
constexpr const char* kSaving = "save";
constexpr const char* kSetting = "set";
constexpr const char* kAsking = "ask";
// Stands in no path.
constexpr const char* kBetween = "|";

std::string RoleGiven() {
  wchar_t role[1024] = L"";
  GetEnvironmentVariableW(kVariable, role, 1024);
  return platform::Utf8Text(role);
}

void Save(const std::string& path, const char* text) {
  platform::XmlDocument document;
  document.LoadXml(text);
  document.Save(path);
}

[[noreturn]] void SaveInTurns(const std::string& path) {
  for (;;) {
    // A reader who has the file open keeps it from being replaced at that moment.
    for (const char* text : kTurns) core::Attempt([&] { Save(path, text); });
  }
}

void SetWhatIsReached(const std::string& handle, const std::string& folderThen) {
  SetEvent(reinterpret_cast<HANDLE>(std::stoull(handle)));
  platform::CreateFolder(folderThen);
}

void AskWhoIsFirst(const std::string& folder) {
  if (platform::IsPreviousInstanceRunning()) {
    platform::CreateFolder(folder + "\\second-" + std::to_string(GetCurrentProcessId()));
    return;
  }
  platform::CreateFolder(folder + "\\first");
  Sleep(INFINITE);
}

void RecordArguments() {
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  std::string lines;
  for (int i = 1; i < count; ++i) lines += platform::Utf8Text(arguments[i]) + '\n';
  LocalFree(arguments);
  const std::filesystem::path program = WideText(ProgramFile());
  // Renamed, so that a reader finds whole lines or nothing.
  support::WriteBytes(program.native() + L".new", lines);
  std::filesystem::rename(program.native() + L".new", program.native() + L".log");
}

}  // namespace

std::optional<int> Play() {
  if (platform::ProgramName() == "recorder") {
    RecordArguments();
    return 0;
  }
  const std::vector<std::string> role = core::Split(RoleGiven(), kBetween);
  if (role.front() == kSaving) SaveInTurns(role.at(1));
  if (role.front() == kSetting) {
    SetWhatIsReached(role.at(1), role.at(2));
  } else if (role.front() == kAsking) {
    AskWhoIsFirst(role.at(1));
  } else {
    return std::nullopt;
  }
  return 0;
}

Given::Given(const std::string& role) {
  SetEnvironmentVariableW(kVariable, WideText(role).c_str());
}

Given::~Given() { SetEnvironmentVariableW(kVariable, nullptr); }

std::string SavingInTurns(const std::string& path) { return kSaving + (kBetween + path); }

std::string SettingAnEvent(std::uintptr_t handle, const std::string& folderThen) {
  return kSetting + (kBetween + std::to_string(handle)) + kBetween + folderThen;
}

std::string AskingWhoIsFirst(const std::string& folder) { return kAsking + (kBetween + folder); }

std::string ProgramFile() {
  return platform::ProgramFolder() + "\\" + platform::ProgramName() + ".exe";
}

}  // namespace roles
