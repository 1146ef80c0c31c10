// See modPath.h.
//
// SPDX-License-Identifier: MIT
#include "paths/modPath.h"

#include <charconv>
#include <cstddef>
#include <stdexcept>
#include <string_view>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/documents/files.h"
#include "platform/system/profile.h"
#include "platform/system/program.h"
#include "platform/system/shell.h"

namespace modPath {

using core::Attempt;
using core::AttemptOr;

std::string gSettingsPath;
std::string gUserSettingsPath;
std::string gCommonPath;
bool gPortable = false;

namespace {

constexpr std::string_view kCompanyFolder = "\\Velor Software";

// What the reader is told of the caller's buffer: the longest value, and one more for its end.
constexpr std::size_t kSettingsIniBuffer = 257;
constexpr std::size_t kAppIniBuffer = 256;

std::string ReadProfile(const std::string& file, const std::string& section, const std::string& key,
                        const std::string& fallback, std::size_t size) {
  return AttemptOr(std::string(),
                   [&] { return platform::ReadProfileString(file, section, key, fallback, size); });
}

std::string OwnIniPath() {
  const auto name = AttemptOr(std::string(), [] { return platform::ProgramName(); });
  return GetAppFolder() + "\\" + name + ".ini";
}

bool FileExists(const std::string& path) {
  return AttemptOr(false, [&] { return platform::FileExists(path); });
}

void CreateFolder(const std::string& path) {
  Attempt([&] { platform::CreateFolder(path); });
}

/// An argument of InitDataFolders, or what stands for an empty one.
std::string DataPathLevel(const std::string& argument, const std::string& key,
                          const std::string& fromVersionInformation) {
  if (!argument.empty()) return argument;
  const auto value = ReadProfile(OwnIniPath(), "ApplicationDataPath", key, argument, kAppIniBuffer);
  const auto trimmed = core::Trim(value);
  return trimmed.empty() ? fromVersionInformation : std::string(trimmed);
}

/// "True" and "False" in any letter case, "#TRUE#" and "#FALSE#", and decimal numbers, where
/// anything but zero is true. Throws for any other text. VarBoolFromStr accepts these and more,
/// such as "&H0" and numbers too small or too large for a double.
bool BooleanFromText(const std::string& text) {
  const std::string upper = core::UpperCase(text);
  if (upper == "TRUE" || text == "#TRUE#") return true;
  if (upper == "FALSE" || text == "#FALSE#") return false;
  std::string_view digits = core::Trim(text);
  if (digits.starts_with('+') && !digits.starts_with("+-")) digits.remove_prefix(1);
  double number = 0;
  const char* const last = digits.data() + digits.size();
  const auto [end, error] =
      std::from_chars(digits.data(), last, number, std::chars_format::general);
  if (error != std::errc() || end != last) throw std::runtime_error("not a Boolean");
  return number != 0;
}

/// The program counts as installed when Parvix or it itself is; only where neither left its marker
/// does the program's own ini decide. A setting that is no Boolean counts as installed.
bool IsPortable() {
  if (FileExists(GetParvixEditionFolder() + "\\installed.ini")) return false;
  if (FileExists(GetAppFolder() + "\\installed.ini")) return false;
  const auto value = ReadProfile(OwnIniPath(), "Program", "RunAsInstalled", "0", kAppIniBuffer);
  return !AttemptOr(true, [&] { return BooleanFromText(value); });
}

/// One level more on both settings paths. Levels are created one at a time: below a folder that
/// could not be created nothing is.
void DescendTo(const std::string& level) {
  for (std::string* path : {&gSettingsPath, &gUserSettingsPath}) {
    *path += "\\" + level;
    CreateFolder(*path);
  }
}

}  // namespace

std::string GetSpecialFolderPath(std::int32_t csidl) {
  auto path = AttemptOr(std::string(), [&] { return platform::SpecialFolder(csidl); });
  // A folder's name may end in a blank.
  path.erase(0, path.find_first_not_of(' '));
  return path;
}

std::string GetAppFolder() {
  auto folder = AttemptOr(std::string(), [] { return platform::ProgramFolder(); });
  if (folder.ends_with('\\')) folder.pop_back();
  return folder;
}

std::string GetParvixEditionFolder() {
  const std::string base = core::ReplaceAll(GetAppFolder(), "Velor Voice Setup", "") + "Parvix ";
  if (FileExists(base + "Pro\\installed.ini")) return base;
  for (const char* edition : {"Plus", "Standard"}) {
    if (FileExists(base + edition + "\\installed.ini")) return base + edition;
  }
  return base;
}

void InitDataFolders(const std::string& company, const std::string& applicationName,
                     const std::string& version) {
  const std::string companyLevel = DataPathLevel(
      company, "Company", AttemptOr(std::string(), [] { return platform::CompanyName(); }));
  const std::string applicationLevel =
      DataPathLevel(applicationName, "ApplicationName",
                    AttemptOr(std::string(), [] { return platform::ProductName(); }));
  const std::string versionLevel = DataPathLevel(version, "Version", AttemptOr(std::string(), [] {
                                                   return std::to_string(platform::MajorVersion());
                                                 }));

  gPortable = IsPortable();
  if (gPortable) {
    gSettingsPath = gUserSettingsPath = GetAppFolder() + "\\Settings";
    CreateFolder(gSettingsPath);
  } else {
    gSettingsPath = gUserSettingsPath = GetSpecialFolderPath(kUserApplicationData);
  }

  DescendTo(companyLevel);
  gCommonPath = gSettingsPath + "\\Common";
  CreateFolder(gCommonPath);
  DescendTo(applicationLevel);
  DescendTo(versionLevel);
}

std::string GetParvixConfigPath() {
  const auto company = AttemptOr(std::string(), [] { return platform::CompanyName(); });
  InitDataFolders(company, "Parvix", "6");
  return gSettingsPath + "\\config.ini";
}

std::string GetQueuePath() {
  return GetSpecialFolderPath(kCommonApplicationData).append(kCompanyFolder) + "\\queue.xml";
}

std::string GetProductsPath() {
  return GetSpecialFolderPath(kCommonApplicationData).append(kCompanyFolder) + "\\products.xml";
}

std::string ReadSettingsIni(const std::string& name, const std::string& section,
                            const std::string& key, const std::string& fallback) {
  const auto value =
      ReadProfile(gSettingsPath + "\\" + name + ".ini", section, key, fallback, kSettingsIniBuffer);
  return value.empty() ? fallback : value;
}

std::string ReadAppIni(const std::string& section, const std::string& key,
                       const std::string& fallback) {
  return std::string(core::Trim(ReadProfile(OwnIniPath(), section, key, fallback, kAppIniBuffer)));
}

}  // namespace modPath
