// The surroundings of the Linux services' cases beyond what every peer has: a server that
// misbehaves on demand, a Wine prefix, other programs.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <gio/gio.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/g_ref.h"
#include "tests/support/temporary_folder.h"

namespace peer {

/// tests/support/https_server.py, as long as this object lives.
class HttpServer {
 public:
  /// Over https with server.pem and server.key of a folder.
  explicit HttpServer(const std::filesystem::path& certificateFolder);
  /// Over plain http.
  HttpServer();
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  /// `path` is what the script lists; the host is localhost.
  std::string Address(const std::string& path) const;
  int Port() const { return mPort; }
  /// Puts a body into the server's folder; the name for the script's `file`.
  std::string AddFile(std::string_view bytes);
  /// The lines of the log so far, connections and requests.
  std::vector<std::string> Log() const;

 private:
  void Start(std::vector<std::string> options);

  support::TemporaryFolder mFolder;
  std::string mScheme;
  int mPort = 0;
  int mFiles = 0;
  platform::GRef<GSubprocess> mProcess;
};

/// The server of all cases, with the certificate that the build makes.
HttpServer& TheServer();

/// Where the build puts authority and certificate.
std::filesystem::path CertificateFolder();

/// The case's folder and its Wine prefix, which $WINEPREFIX names.
std::filesystem::path NativeFolder();
std::filesystem::path Prefix();
/// Holds the folders of the whole run, called as the variables that name them: HOME,
/// XDG_CONFIG_HOME and XDG_DATA_HOME.
std::filesystem::path Home();

/// Runs a program to its end; its output. Throws when it fails.
std::string Run(const std::vector<std::string>& command);

/// Writes an executable file.
void WriteProgram(const std::filesystem::path& path, std::string_view bytes);

/// Sets a variable of the environment for as long as this object lives.
class Variable {
 public:
  /// Null takes it away.
  Variable(const char* name, const char* value);
  ~Variable();
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const std::string mName;
  const platform::GMemory<char> mEarlier;
};

}  // namespace peer
