// One download over https, through the system's proxy settings and trust. It keeps nothing on disk,
// sends no cookie, and goes nowhere but over https.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/build_settings.h"

namespace platform {

/// What a download may take. The defaults are what the program uses; tests are more impatient.
struct DownloadRules {
  /// The longest time in which nothing happens.
  std::chrono::milliseconds idleLimit = std::chrono::seconds(30);
  /// The longest time altogether, so that a server which goes on and on in drops keeps nobody
  /// waiting for ever. The catalogue comes in a fifth of it over the slowest line in use.
  std::chrono::milliseconds totalLimit = std::chrono::minutes(10);
  /// Of the body as it is after decoding, so that a small compressed answer cannot fill the memory.
  /// The catalogue is about 1 MB.
  std::size_t sizeLimit = std::size_t{64} << 20;
  unsigned redirectLimit = 10;
  /// A PEM file of authorities that are trusted besides the system's; none when empty. Looked at on
  /// Linux alone: Windows trusts what is in its store.
  std::string trustedCa = std::string(core::kAdditionalTrustedCa);
};

class HttpDownload {
 public:
  /// The body when everything went well, absent for every failure: of the network, of trust, a
  /// status other than success, a redirect to anything but https, a limit, or a connection that
  /// ended early.
  using Answer = std::function<void(std::optional<std::string> body)>;

  /// Starts; `answer` is called once, from the event loop, and may destroy this object. Throws when
  /// the system has no means of downloading.
  HttpDownload(const std::string& address, DownloadRules rules, Answer answer);
  /// Gives the download up; nothing is answered any more.
  ~HttpDownload();
  HttpDownload(const HttpDownload&) = delete;
  HttpDownload& operator=(const HttpDownload&) = delete;

 private:
  struct Impl;
  std::shared_ptr<Impl> mImpl;
};

}  // namespace platform
