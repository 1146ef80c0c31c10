// The line to the page's host (page_host.py), which has the engine: what is asked, what it answers,
// what it tells by itself. Knows sockets only.
//
// Both sides write lines of fields with tabs between them, each field percent-encoded. The first
// field of a host's line is "=" for an answer and "!" for an event.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>
#include <winsock2.h>

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace page {

using Fields = std::vector<std::string>;

class PageConnection {
 public:
  /// To the port of this machine that the environment variable VELOR_PAGE_HOST names. Throws where
  /// nobody listens there.
  PageConnection();
  ~PageConnection();
  PageConnection(const PageConnection&) = delete;
  PageConnection& operator=(const PageConnection&) = delete;

  /// Posts `message` to the window whenever the host may have told something.
  void Wake(HWND window, UINT message);
  /// Sends a question and waits for its answer. Throws when the host has gone.
  Fields Ask(const Fields& question);
  /// The same; behind the answer's line follow as many bytes as its last field says.
  Fields Ask(const Fields& question, std::string& bytes);
  /// What needs no answer.
  void Tell(const Fields& what);
  /// The next event, if one has come.
  std::optional<Fields> TakeEvent();

 private:
  void ReadMore(bool wait);
  bool TakeLine(Fields& fields);
  Fields WaitForAnswer();

  SOCKET mSocket;
  HWND mWindow = nullptr;
  UINT mMessage = 0;
  std::string mRead;
  std::deque<Fields> mEvents;
};

}  // namespace page
