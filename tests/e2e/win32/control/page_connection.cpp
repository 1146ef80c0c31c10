// The line to the page's host.
//
// SPDX-License-Identifier: MIT
#include "tests/e2e/win32/control/page_connection.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <stdexcept>

namespace page {
namespace {

// A host that is busy with a test's own question still answers within this time.
constexpr long kPatienceSeconds = 20;

std::string Encoded(const std::string& text) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '%' || byte < ' ') {
      encoded += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    } else {
      encoded += c;
    }
  }
  return encoded;
}

std::string Decoded(const std::string& text) {
  std::string decoded;
  for (std::size_t at = 0; at < text.size(); ++at) {
    unsigned byte = 0;
    if (text[at] == '%' && at + 2 < text.size() &&
        std::from_chars(&text[at + 1], &text[at] + 3, byte, 16).ec == std::errc()) {
      decoded += static_cast<char>(byte);
      at += 2;
    } else {
      decoded += text[at];
    }
  }
  return decoded;
}

std::string Line(const Fields& fields) {
  std::string line;
  for (const std::string& field : fields) {
    line += (line.empty() ? "" : "\t") + Encoded(field);
  }
  return line + "\n";
}

Fields FieldsOf(const std::string& line) {
  Fields fields;
  std::size_t start = 0;
  while (start <= line.size()) {
    const std::size_t end = std::min(line.find('\t', start), line.size());
    fields.push_back(Decoded(line.substr(start, end - start)));
    start = end + 1;
  }
  return fields;
}

[[noreturn]] void ThrowGone() { throw std::runtime_error("the page's host has gone"); }

SOCKET Connected() {
  WSADATA data;
  WSAStartup(MAKEWORD(2, 2), &data);
  const char* const port = std::getenv("VELOR_PAGE_HOST");
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<u_short>(std::atoi(port ? port : "0")));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const SOCKET made = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  if (connect(made, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    closesocket(made);
    ThrowGone();
  }
  return made;
}

}  // namespace

PageConnection::PageConnection() : mSocket(Connected()) { Tell({"control"}); }

PageConnection::~PageConnection() { closesocket(mSocket); }

void PageConnection::Wake(HWND window, UINT message) {
  mWindow = window;
  mMessage = message;
  WSAAsyncSelect(mSocket, window, message, FD_READ | FD_CLOSE);
}

Fields PageConnection::Ask(const Fields& question) {
  Tell(question);
  return WaitForAnswer();
}

Fields PageConnection::Ask(const Fields& question, std::string& bytes) {
  const Fields answer = Ask(question);
  const auto size = static_cast<std::size_t>(std::stoul(answer.back()));
  while (mRead.size() < size) ReadMore(true);
  bytes = mRead.substr(0, size);
  mRead.erase(0, size);
  return answer;
}

void PageConnection::Tell(const Fields& what) {
  const std::string line = Line(what);
  std::size_t sent = 0;
  while (sent < line.size()) {
    const int count = send(mSocket, line.data() + sent, static_cast<int>(line.size() - sent), 0);
    if (count > 0) {
      sent += static_cast<std::size_t>(count);
    } else if (WSAGetLastError() != WSAEWOULDBLOCK) {
      ThrowGone();
    }
  }
}

std::optional<Fields> PageConnection::TakeEvent() {
  if (mEvents.empty()) {
    ReadMore(false);
    Fields fields;
    // Nobody waits for an answer now.
    while (TakeLine(fields)) mEvents.push_back(fields);
  }
  if (mEvents.empty()) return std::nullopt;
  Fields event = mEvents.front();
  mEvents.pop_front();
  return event;
}

void PageConnection::ReadMore(bool wait) {
  char buffer[1 << 16];
  const int count = recv(mSocket, buffer, sizeof buffer, 0);
  if (count > 0) {
    mRead.append(buffer, static_cast<std::size_t>(count));
    return;
  }
  if (count == 0 || WSAGetLastError() != WSAEWOULDBLOCK) {
    if (wait) ThrowGone();
    return;
  }
  fd_set readable;
  FD_ZERO(&readable);
  FD_SET(mSocket, &readable);
  timeval patience = {kPatienceSeconds, 0};
  if (wait && select(0, &readable, nullptr, nullptr, &patience) != 1) ThrowGone();
}

bool PageConnection::TakeLine(Fields& fields) {
  const std::size_t end = mRead.find('\n');
  if (end == std::string::npos) return false;
  fields = FieldsOf(mRead.substr(0, end));
  mRead.erase(0, end + 1);
  return true;
}

Fields PageConnection::WaitForAnswer() {
  Fields fields;
  while (true) {
    while (!TakeLine(fields)) ReadMore(true);
    if (fields.front() == "=") return fields;
    // It came meanwhile, and is nobody's answer.
    mEvents.push_back(fields);
    PostMessageW(mWindow, mMessage, 0, 0);
  }
}

}  // namespace page
