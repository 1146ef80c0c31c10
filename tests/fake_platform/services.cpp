// Documents, program, shell, Windows Installer and system of the fake platform.
//
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

#include "platform/documents/files.h"
#include "platform/errors.h"
#include "platform/shared/documents/document_files.h"
#include "platform/shared/documents/http_download.h"
#include "platform/system/program.h"
#include "platform/system/shell.h"
#include "platform/system/system.h"
#include "platform/system/windows_installer.h"
#include "tests/fake_platform/fake.h"

namespace platform {

struct HttpDownload::Impl {
  std::shared_ptr<fake::PendingLoad> load;
};

HttpDownload::HttpDownload(const std::string& address, DownloadRules, Answer answer)
    : mImpl(std::make_shared<Impl>(
          std::make_shared<fake::PendingLoad>(fake::PendingLoad{address, std::move(answer)}))) {
  fake::TheWorld().journal.push_back("Load " + address);
  fake::TheWorld().pendingLoads.push_back(mImpl->load);
}

HttpDownload::~HttpDownload() { std::erase(fake::TheWorld().pendingLoads, mImpl->load); }

std::string ReadDocument(const std::string& path, std::size_t) {
  const auto& world = fake::TheWorld();
  fake::TheWorld().journal.push_back("Load " + path);
  if (!FileExists(path) || world.unreadable.contains(path)) throw std::runtime_error("no " + path);
  return world.ReadFile(path);
}

void ReplaceDocument(const std::string& path, std::string_view bytes) {
  auto& world = fake::TheWorld();
  world.journal.push_back("Save " + path);
  const auto folder = path.substr(0, path.rfind('\\'));
  if (!world.HasFile(folder)) throw std::runtime_error("there is no folder " + folder);
  world.WriteFile(path, bytes);
}

std::string ProgramFolder() { return fake::TheWorld().programFolder; }
std::string ProgramName() { return fake::TheWorld().programName; }
std::string CompanyName() { return fake::TheWorld().companyName; }
std::string ProductName() { return fake::TheWorld().productName; }
int MajorVersion() { return fake::TheWorld().majorVersion; }
std::string CommandLineArguments() { return fake::TheWorld().arguments; }
bool IsPreviousInstanceRunning() { return fake::TheWorld().previousInstance; }

void ActivateWindow(const std::string& title) {
  auto& world = fake::TheWorld();
  if (std::ranges::find(world.otherWindows, title) == world.otherWindows.end()) {
    throw std::runtime_error("no window " + title);
  }
  world.activated.push_back(title);
}

std::string SpecialFolder(int csidl) {
  const auto& folders = fake::TheWorld().specialFolders;
  const auto folder = folders.find(csidl);
  if (folder == folders.end()) throw NotFound("no such folder");
  return folder->second;
}

void RunCommandLine(const std::string& commandLine) {
  auto& world = fake::TheWorld();
  world.journal.push_back("RunCommandLine " + commandLine);
  world.commandLines.push_back(commandLine);
  if (world.startingFails) throw std::runtime_error("it does not start");
}

void RunElevated(const std::string& file, const std::string& workingFolder) {
  auto& world = fake::TheWorld();
  world.journal.push_back("RunElevated " + file);
  world.elevatedRuns.push_back({file, workingFolder});
  if (world.startingFails) throw std::runtime_error("the user declined");
}

struct WindowsInstaller::Impl {};

WindowsInstaller::WindowsInstaller() {
  fake::TheWorld().journal.emplace_back("WindowsInstaller");
  if (!fake::TheWorld().installedProducts) throw std::runtime_error("no Windows Installer");
}

WindowsInstaller::~WindowsInstaller() = default;

std::optional<std::string> WindowsInstaller::ProductInfo(const std::string& productCode,
                                                         const std::string& property) const {
  auto& world = fake::TheWorld();
  world.installerQuestions.push_back(productCode + " " + property);
  if (!world.installedProducts || !world.installedProducts->contains(productCode)) {
    return std::nullopt;
  }
  return property == "VersionString" ? world.installedProducts->at(productCode) : "";
}

int OperatingSystemMajorVersion() { return fake::TheWorld().systemMajorVersion.value(); }
std::string CountryName() { return fake::TheWorld().countryName; }

void InitCommonControls(std::uint32_t recordSize, std::uint32_t classes) {
  auto& world = fake::TheWorld();
  world.journal.emplace_back("InitCommonControls");
  world.commonControls.push_back({recordSize, classes});
  if (world.commonControlsFail) throw std::runtime_error("no common controls");
}

}  // namespace platform
