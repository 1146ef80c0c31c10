// See service_world.h, and the Linux side of tests/contract/services_driver.h.
//
// SPDX-License-Identifier: MIT
#include "tests/contract/linux/services_driver.h"

#include <arpa/inet.h>
#include <gio/gio.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <map>
#include <memory>
#include <stdexcept>

#include "core/text.h"
#include "tests/contract/services_driver.h"
#include "tests/support/folders.h"

namespace peer {
namespace {

using platform::GErrorCheck;
using platform::GMemory;
using platform::GRef;

struct Surroundings {
  support::TemporaryFolder folder;
  std::map<std::string, std::string> products;
  // Bound and never listened at, so that nobody else can answer there.
  int deadSocket = -1;
  ~Surroundings() {
    if (deadSocket >= 0) close(deadSocket);
  }
};

std::unique_ptr<Surroundings>& Holder() {
  static std::unique_ptr<Surroundings> surroundings;
  return surroundings;
}

std::unique_ptr<support::TemporaryFolder>& HomeHolder() {
  static auto home = std::make_unique<support::TemporaryFolder>();
  return home;
}

std::unique_ptr<HttpServer>& ServerHolder() {
  static std::unique_ptr<HttpServer> server;
  return server;
}

std::filesystem::path Native(const std::string& path) { return core::ReplaceAll(path, "\\", "/"); }

GRef<GSubprocess> StartProcess(const std::vector<std::string>& command, GSubprocessFlags flags) {
  std::vector<const char*> arguments;
  for (const std::string& argument : command) arguments.push_back(argument.c_str());
  arguments.push_back(nullptr);
  GErrorCheck error;
  auto process = GRef<GSubprocess>::Adopt(g_subprocess_newv(arguments.data(), flags, error.Out()));
  error.Check();
  return process;
}

std::string PackedCode(const std::string& code) {
  std::string packed;
  const auto reversed = [&](std::size_t start, std::size_t length) {
    const std::string group = code.substr(start, length);
    packed.append(group.rbegin(), group.rend());
  };
  reversed(1, 8);
  reversed(10, 4);
  reversed(15, 4);
  for (const std::size_t start : {20, 22, 25, 27, 29, 31, 33, 35}) reversed(start, 2);
  return packed;
}

void WriteRegistry() {
  std::string text =
      "WINE REGISTRY Version 2\n;; All keys relative to \\\\Machine\n\n#arch=win64\n";
  for (const auto& [code, version] : Holder()->products) {
    const std::string packed = PackedCode(code);
    text += "\n[Software\\\\Classes\\\\Installer\\\\Products\\\\" + packed + "] 1700000000\n";
    text +=
        "\n[Software\\\\Microsoft\\\\Windows\\\\CurrentVersion\\\\Installer\\\\UserData\\\\"
        "S-1-5-18\\\\Products\\\\" +
        packed + "\\\\InstallProperties] 1700000000\n";
    if (!version.empty()) text += "\"DisplayVersion\"=\"" + version + "\"\n";
  }
  support::WriteBytes(Prefix() / "system.reg", text);
}

}  // namespace

HttpServer::HttpServer(const std::filesystem::path& certificateFolder) : mScheme("https") {
  Start({"--certificate", certificateFolder / "server.pem", "--key",
         certificateFolder / "server.key"});
}

HttpServer::HttpServer() : mScheme("http") { Start({}); }

void HttpServer::Start(std::vector<std::string> options) {
  const std::string script = std::string(support::kSourceFolder) + "/tests/support/https_server.py";
  std::vector<std::string> command = {script, "--folder", mFolder.Path(), "--log",
                                      mFolder.Path() / "log"};
  command.insert(command.end(), options.begin(), options.end());
  mProcess = StartProcess(command, static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDIN_PIPE |
                                                                 G_SUBPROCESS_FLAGS_STDOUT_PIPE));
  const auto output = GRef<GDataInputStream>::Adopt(
      g_data_input_stream_new(g_subprocess_get_stdout_pipe(mProcess.Get())));
  const GMemory<char> line(g_data_input_stream_read_line(output.Get(), nullptr, nullptr, nullptr));
  if (!line) throw std::runtime_error("the server did not start");
  mPort = std::stoi(line.get());
}

HttpServer::~HttpServer() {
  g_subprocess_force_exit(mProcess.Get());
  g_subprocess_wait(mProcess.Get(), nullptr, nullptr);
}

std::string HttpServer::Address(const std::string& path) const {
  return mScheme + "://localhost:" + std::to_string(mPort) + path;
}

std::string HttpServer::AddFile(std::string_view bytes) {
  const std::string name = std::to_string(++mFiles);
  support::WriteBytes(mFolder.Path() / name, bytes);
  return name;
}

std::vector<std::string> HttpServer::Log() const {
  std::vector<std::string> lines = core::Split(support::ReadBytes(mFolder.Path() / "log"), "\n");
  lines.pop_back();
  return lines;
}

HttpServer& TheServer() {
  if (!ServerHolder()) ServerHolder() = std::make_unique<HttpServer>(CertificateFolder());
  return *ServerHolder();
}

std::filesystem::path CertificateFolder() { return support::kContractCaFolder; }

std::filesystem::path NativeFolder() { return Holder()->folder.Path() / "case"; }

std::filesystem::path Prefix() { return Holder()->folder.Path() / "prefix"; }

std::filesystem::path Home() { return HomeHolder()->Path(); }

std::string Run(const std::vector<std::string>& command) {
  const auto flags = static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE |
                                                   G_SUBPROCESS_FLAGS_STDERR_MERGE);
  const auto process = StartProcess(command, flags);
  GErrorCheck error;
  GBytes* output = nullptr;
  g_subprocess_communicate(process.Get(), nullptr, nullptr, &output, nullptr, error.Out());
  error.Check();
  gsize size = 0;
  const GMemory<char> text(static_cast<char*>(g_bytes_unref_to_data(output, &size)));
  const std::string said(platform::TextOf(text.get()), 0, size);
  if (!g_subprocess_get_successful(process.Get())) {
    throw std::runtime_error(command.at(0) + " failed: " + said);
  }
  return said;
}

void WriteProgram(const std::filesystem::path& path, std::string_view bytes) {
  support::WriteBytes(path, bytes);
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

Variable::Variable(const char* name, const char* value)
    : mName(name), mEarlier(g_strdup(g_getenv(name))) {
  if (value) {
    g_setenv(name, value, TRUE);
  } else {
    g_unsetenv(name);
  }
}

Variable::~Variable() {
  if (mEarlier) {
    g_setenv(mName.c_str(), mEarlier.get(), TRUE);
  } else {
    g_unsetenv(mName.c_str());
  }
}

void Begin() {
  Holder() = std::make_unique<Surroundings>();
  std::filesystem::create_directories(NativeFolder());
  std::filesystem::create_directories(Prefix() / "drive_c");
  g_setenv("WINEPREFIX", Prefix().c_str(), TRUE);
  WriteRegistry();
}

bool RunUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
  const gint64 end = g_get_monotonic_time() + deadline.count() * 1000;
  // Conditions may look at files, of which the loop hears nothing.
  constexpr guint kLookEvery = 10;
  const guint wake =
      g_timeout_add(kLookEvery, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
  bool holds = condition();
  while (!holds && g_get_monotonic_time() < end) {
    g_main_context_iteration(nullptr, TRUE);
    holds = condition();
  }
  g_source_remove(wake);
  return holds;
}

std::string Folder() { return support::CorePath(NativeFolder()); }

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
  WriteProgram(Native(path), R"(#!/bin/sh
for argument; do printf '%s\n' "$argument"; done >"$0.new"
mv "$0.new" "$0.log"
)");
}

std::string Serve(int status, const std::string& body) {
  HttpServer& server = TheServer();
  return server.Address("/status/" + std::to_string(status) + "?file=" + server.AddFile(body));
}

std::string DeadAddress() {
  int& number = Holder()->deadSocket;
  number = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t length = sizeof address;
  if (bind(number, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
      getsockname(number, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
    throw std::runtime_error("no port is free");
  }
  return "https://localhost:" + std::to_string(ntohs(address.sin_port)) + "/voices.xml";
}

void InstallProduct(const std::string& productCode, const std::string& version) {
  Holder()->products[productCode] = version;
  WriteRegistry();
}

void RemoveWindowsInstaller() { std::filesystem::remove_all(Prefix()); }

}  // namespace peer

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  // Criticals end the run. And every connection is a full hand-shake: where a session is resumed,
  // the certificate is not looked at again, and a case would profit from another one's trust.
  int none = 1;
  g_test_init(&none, &argv, nullptr);
  g_log_set_default_handler(g_log_default_handler, nullptr);  // that has less to say
  // Before anything asks: GLib keeps what it was told first.
  for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
    g_setenv(variable, (peer::Home() / variable).c_str(), TRUE);
  }
  const int result = RUN_ALL_TESTS();
  peer::Holder().reset();
  peer::ServerHolder().reset();
  peer::HomeHolder().reset();
  return result;
}
