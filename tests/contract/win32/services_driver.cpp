// The world around the services on Windows, or on Wine: files, the server that runs beside it, the
// registry in which Windows Installer keeps what it knows.
//
// SPDX-License-Identifier: MIT
#include "tests/contract/services_driver.h"

#include <windows.h>
#include <gtest/gtest.h>
#include <winsock2.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "core/text.h"
#include "platform/win32/com.h"
#include "platform/win32/wide_text.h"
#include "tests/contract/win32/driver_loop.h"
#include "tests/contract/win32/services_roles.h"
#include "tests/support/temporary_folder.h"

namespace peer {
namespace {

using platform::WideText;

constexpr const wchar_t* kInstallerClass = L"Software\\Classes\\WindowsInstaller.Installer\\CLSID";
constexpr const wchar_t* kProducts = L"Software\\Classes\\Installer\\Products\\";
constexpr const wchar_t* kUserData =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\S-1-5-18\\Products\\";

void SetText(const std::wstring& key, const wchar_t* name, const std::wstring& text) {
  const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
  if (RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, text.c_str(), size) != 0) {
    throw std::runtime_error("the registry cannot be written");
  }
}

void MakeKey(const std::wstring& key) {
  HKEY made = nullptr;
  if (RegCreateKeyW(HKEY_LOCAL_MACHINE, key.c_str(), &made) != 0) {
    throw std::runtime_error("the registry cannot be written");
  }
  RegCloseKey(made);
}

/// What a case changes, put back when it is over.
struct Surroundings {
  support::TemporaryFolder folder;
  std::vector<std::wstring> products;
  std::wstring installerClass;
  SOCKET deadSocket = INVALID_SOCKET;

  ~Surroundings() {
    for (const auto& packed : products) {
      RegDeleteTreeW(HKEY_LOCAL_MACHINE, (kProducts + packed).c_str());
      RegDeleteTreeW(HKEY_LOCAL_MACHINE, (kUserData + packed).c_str());
    }
    if (!installerClass.empty()) SetText(kInstallerClass, nullptr, installerClass);
    if (deadSocket != INVALID_SOCKET) closesocket(deadSocket);
  }
};

std::unique_ptr<Surroundings>& Holder() {
  static std::unique_ptr<Surroundings> surroundings;
  return surroundings;
}

std::filesystem::path Native(const std::string& path) { return WideText(path); }

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  if (!value) throw std::runtime_error(std::string(name) + " is not set: see with-https-server");
  return value;
}

/// A registry key's spelling of a product code: three groups backwards, eight pairs backwards.
std::wstring PackedCode(const std::string& code) {
  std::string packed;
  const auto reversed = [&](std::size_t start, std::size_t length) {
    const std::string group = code.substr(start, length);
    packed.append(group.rbegin(), group.rend());
  };
  reversed(1, 8);
  reversed(10, 4);
  reversed(15, 4);
  for (const std::size_t start : {20, 22, 25, 27, 29, 31, 33, 35}) reversed(start, 2);
  return WideText(packed);
}

constexpr NotKept kNotKept[] = {
    {"WinHttpRules.AProxyOnTheNetworkGetsTheLogonAndNoPassword", true,
     "Wine's WinHTTP does not return a proxy's answer to CONNECT"},
    {"Xml.EndsAQuestionThatIsMeantToBeSlow", false,
     "MSXML has no limit for the work that one question takes"},
    {"Xml.RefusesPrefixesThatNothingDeclares", true, "Wine's MSXML drops such a prefix"},
};

}  // namespace

void Begin() {
  Holder().reset();
  Holder() = std::make_unique<Surroundings>();
  MakeFolder(Folder());
  SkipNotKept(kNotKept);
}

bool RunUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
  return RunEventsUntil(condition, deadline);
}

std::string Folder() { return support::CorePath(Holder()->folder.Path() / "case"); }

void WriteFile(const std::string& path, std::string_view bytes) {
  support::WriteBytes(Native(path), bytes);
}

std::optional<std::string> FileBytes(const std::string& path) {
  if (!std::filesystem::is_regular_file(Native(path))) return std::nullopt;
  return support::ReadBytes(Native(path));
}

void MakeFolder(const std::string& path) { std::filesystem::create_directories(Native(path)); }

bool IsFolder(const std::string& path) { return std::filesystem::is_directory(Native(path)); }

std::size_t CountIn(const std::string& folder) {
  const std::filesystem::directory_iterator entries(Native(folder));
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

void MakeRecorder(const std::string& path) {
  const std::filesystem::path program = Native(path);
  std::filesystem::create_directories(program.parent_path());
  std::filesystem::copy_file(Native(roles::ProgramFile()), program);
}

std::string Serve(int status, const std::string& body) {
  static int files = 0;
  const std::string name = std::to_string(++files);
  support::WriteBytes(std::filesystem::path(Variable("VELOR_TEST_SERVER_FOLDER")) / name, body);
  return Variable("VELOR_TEST_SERVER") + "/status/" + std::to_string(status) + "?file=" + name;
}

/// Bound and never listened at, so that nobody else can answer there.
std::string DeadAddress() {
  WSADATA ignored;
  WSAStartup(MAKEWORD(2, 2), &ignored);
  SOCKET& number = Holder()->deadSocket;
  number = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int length = sizeof address;
  if (bind(number, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
      getsockname(number, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
    throw std::runtime_error("no port is free");
  }
  return "https://localhost:" + std::to_string(ntohs(address.sin_port)) + "/voices.xml";
}

void InstallProduct(const std::string& productCode, const std::string& version) {
  const std::wstring packed = PackedCode(productCode);
  Holder()->products.push_back(packed);
  MakeKey(kProducts + packed);
  const std::wstring properties = kUserData + packed + L"\\InstallProperties";
  MakeKey(properties);
  if (!version.empty()) SetText(properties, L"DisplayVersion", WideText(version));
}

void RemoveWindowsInstaller() {
  wchar_t classId[64] = L"";
  DWORD size = sizeof classId;
  if (RegGetValueW(HKEY_LOCAL_MACHINE, kInstallerClass, nullptr, RRF_RT_REG_SZ, nullptr, classId,
                   &size) != 0) {
    throw std::runtime_error("there is no Windows Installer to take away");
  }
  Holder()->installerClass = classId;
  RegDeleteTreeW(HKEY_LOCAL_MACHINE, kInstallerClass);
}

}  // namespace peer

int main(int argc, char** argv) {
  if (const auto ended = roles::Play()) return *ended;
  testing::InitGoogleTest(&argc, argv);
  platform::EnterApartment();
  const int result = RUN_ALL_TESTS();
  peer::Holder().reset();
  return result;
}
