// Documents, program, shell, Windows Installer and system of the fake platform.
//
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/documents/files.h"
#include "platform/documents/xml_document.h"
#include "platform/system/program.h"
#include "platform/system/shell.h"
#include "platform/system/system.h"
#include "platform/system/windows_installer.h"
#include "tests/fake_platform/fake.h"

namespace platform {

struct XmlDocument::Impl {
  std::function<void()> handler;
  std::string source;
  bool holdsAnything = false;
  XmlNode node;
  int readyState = 4;
  int parseErrorCode = 0;

  void Take(const std::optional<std::string>& bytes) {
    node = XmlNode();
    holdsAnything = core::Attempt([&] { node = ParseXml(bytes.value()); });
    source = holdsAnything ? *bytes : "";
    parseErrorCode = holdsAnything ? 0 : 1;
    readyState = 4;
  }
};

XmlDocument::XmlDocument() : mImpl(std::make_shared<Impl>()) {}
XmlDocument::~XmlDocument() { mImpl->handler = nullptr; }

void XmlDocument::OnReadyStateChange(std::function<void()> handler) {
  mImpl->handler = std::move(handler);
}

void XmlDocument::Load(const std::string& addressOrPath) {
  mImpl->readyState = 1;
  auto load = std::make_shared<fake::PendingLoad>();
  load->address = addressOrPath;
  load->finish = [weak = std::weak_ptr(mImpl)](std::optional<std::string> bytes) {
    const auto document = weak.lock();
    if (!document) return;
    document->Take(bytes);
    if (const auto handler = document->handler) handler();
  };
  auto& world = fake::TheWorld();
  world.journal.push_back("Load " + addressOrPath);
  world.pendingLoads.push_back(load);
  if (addressOrPath.find("://") != std::string::npos) return;
  world.events.push_back([load] {
    auto& loads = fake::TheWorld().pendingLoads;
    if (std::erase(loads, load) == 0) return;  // the test finished it before
    const auto& files = fake::TheWorld();
    load->finish(FileExists(load->address) ? std::optional(files.ReadFile(load->address))
                                           : std::nullopt);
  });
}

void XmlDocument::LoadXml(std::string text) { mImpl->Take(std::move(text)); }
int XmlDocument::ReadyState() const { return mImpl->readyState; }
int XmlDocument::ParseErrorCode() const { return mImpl->parseErrorCode; }
XmlNode XmlDocument::DocumentNode() const { return mImpl->node; }
XmlNode XmlDocument::DocumentElement() const {
  return mImpl->node ? mImpl->node.SelectSingleNode("*") : XmlNode();
}

void XmlDocument::Save(const std::string& path) const {
  if (!mImpl->holdsAnything) throw std::logic_error("the document holds nothing");
  auto& world = fake::TheWorld();
  world.journal.push_back("Save " + path);
  const auto folder = path.substr(0, path.rfind('\\'));
  if (!world.HasFile(folder)) throw std::runtime_error("there is no folder " + folder);
  world.WriteFile(path, mImpl->source);
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

std::string SpecialFolder(int csidl) { return fake::TheWorld().specialFolders.at(csidl); }

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
