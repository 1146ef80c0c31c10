// The surroundings of services that exist in memory only. Files are the system's own, in the
// world's folder.
//
// SPDX-License-Identifier: MIT
#include "tests/contract/services_driver.h"

#include <gtest/gtest.h>

#include <iterator>
#include <map>

#include "core/text.h"
#include "tests/fake_platform/fake.h"

namespace peer {
namespace {

/// What is answered at an address; nobody answers at others.
std::map<std::string, std::optional<std::string>> answers;

std::filesystem::path Native(const std::string& path) {
  const std::string native = core::ReplaceAll(path, "\\", "/");
  return std::filesystem::path(std::u8string(native.begin(), native.end()));
}

void AnswerLoads() {
  const auto loads = fake::TheWorld().pendingLoads;
  for (const auto& load : loads) {
    if (const auto answer = answers[load->address]) {
      fake::FinishLoad(load->address, *answer);
    } else {
      fake::FailLoad(load->address);
    }
  }
}

}  // namespace

void Begin() {
  fake::Reset();
  answers.clear();
  MakeFolder(Folder());
}

bool RunUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
  for (auto left = deadline; !condition(); --left) {
    if (left <= left.zero()) return false;
    fake::Pass(1);
    AnswerLoads();
  }
  return true;
}

std::string Folder() { return support::CorePath(fake::TheWorld().folder.Path() / "case"); }

void WriteFile(const std::string& path, std::string_view bytes) {
  fake::TheWorld().WriteFile(path, bytes);
}

std::optional<std::string> FileBytes(const std::string& path) {
  if (!std::filesystem::is_regular_file(Native(path))) return std::nullopt;
  return fake::TheWorld().ReadFile(path);
}

void MakeFolder(const std::string& path) { std::filesystem::create_directories(Native(path)); }

bool IsFolder(const std::string& path) { return std::filesystem::is_directory(Native(path)); }

std::size_t CountIn(const std::string& folder) {
  const std::filesystem::directory_iterator entries(Native(folder));
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

std::string Serve(int status, const std::string& body) {
  const std::string address = "https://server.example/" + std::to_string(answers.size());
  const bool isSuccess = status >= 200 && status < 300;
  answers[address] = isSuccess ? std::optional(body) : std::nullopt;
  return address;
}

std::string DeadAddress() { return "https://nobody.example/"; }

void InstallProduct(const std::string& productCode, const std::string& version) {
  fake::TheWorld().installedProducts.value()[productCode] = version;
}

void RemoveWindowsInstaller() { fake::TheWorld().installedProducts.reset(); }

}  // namespace peer
