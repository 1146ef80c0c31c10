// The download on WinHTTP. It works on threads of its own; each thing that it tells is handed to
// the user-interface thread, where everything else here happens.
//
// It is WinHTTP's work and not MSXML's own loading, since that tells neither the status of an
// answer nor its bytes, knows no limits, and keeps the catalogue in a cache. Compression is not
// asked for.
//
// SPDX-License-Identifier: MIT
#include "platform/shared/documents/http_download.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/shared/window/event_queue.h"
#include "platform/win32/documents/win_http.h"
#include "platform/win32/wide_text.h"
#include "platform/window/form.h"

namespace platform {
namespace {

constexpr std::size_t kBufferSize = std::size_t{64} << 10;
// Newest first: a system takes the whole set or refuses it. Windows 7 would offer nothing newer
// than TLS 1.0 by itself.
constexpr std::array<DWORD, 2> kProtocolSets = {
    WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2 | WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_3,
    WINHTTP_FLAG_SECURE_PROTOCOL_TLS1_2};

void CheckHttp(bool succeeded) {
  if (succeeded) return;
  const auto code = static_cast<int>(GetLastError());
  throw std::system_error(code, std::system_category(), "the download failed");
}

/// An address taken apart.
struct Address {
  std::wstring host;
  INTERNET_PORT port;
  std::wstring path;
};

/// Throws for anything but https.
Address AddressFrom(const std::wstring& text) {
  constexpr auto kAsk = static_cast<DWORD>(-1);  // "where in the text": nothing is copied
  URL_COMPONENTS parts = {};
  parts.dwStructSize = sizeof parts;
  parts.dwHostNameLength = parts.dwUrlPathLength = parts.dwExtraInfoLength = kAsk;
  CheckHttp(TheWinHttp().crackUrl(text.c_str(), 0, 0, &parts));
  if (parts.nScheme != INTERNET_SCHEME_HTTPS) throw std::invalid_argument("not an https address");
  std::wstring path(parts.lpszUrlPath, parts.dwUrlPathLength);
  path.append(parts.lpszExtraInfo, parts.dwExtraInfoLength);
  return {
      {parts.lpszHostName, parts.dwHostNameLength}, parts.nPort, path.substr(0, path.find(L'#'))};
}

/// A redirect's target, which some systems tell as it was sent: without host it stays where it is.
void CheckRedirect(const std::wstring& target) {
  if (target.find(L"://") != std::wstring::npos) AddressFrom(target);
}

/// Texts that WinHTTP gave, to be freed by the caller.
struct FreeGlobal {
  void operator()(wchar_t* text) const { GlobalFree(text); }
};
using GlobalText = std::unique_ptr<wchar_t, FreeGlobal>;

/// Windows before 8.1 does not apply the person's proxy settings by itself.
void SetUserProxy(HINTERNET session, HINTERNET request, const std::wstring& address) {
  WINHTTP_CURRENT_USER_IE_PROXY_CONFIG user = {};
  if (!TheWinHttp().userProxy(&user)) return;
  const GlobalText script(user.lpszAutoConfigUrl), proxy(user.lpszProxy),
      bypass(user.lpszProxyBypass);
  WINHTTP_PROXY_INFO chosen = {WINHTTP_ACCESS_TYPE_NAMED_PROXY, proxy.get(), bypass.get()};
  GlobalText foundProxy, foundBypass;
  if (script || user.fAutoDetect) {
    WINHTTP_AUTOPROXY_OPTIONS options = {};
    options.dwFlags = script ? WINHTTP_AUTOPROXY_CONFIG_URL : WINHTTP_AUTOPROXY_AUTO_DETECT;
    options.dwAutoDetectFlags =
        script ? 0 : WINHTTP_AUTO_DETECT_TYPE_DHCP | WINHTTP_AUTO_DETECT_TYPE_DNS_A;
    options.lpszAutoConfigUrl = script.get();
    options.fAutoLogonIfChallenged = TRUE;
    WINHTTP_PROXY_INFO found = {};
    if (TheWinHttp().proxyForUrl(session, address.c_str(), &options, &found)) {
      foundProxy.reset(found.lpszProxy);
      foundBypass.reset(found.lpszProxyBypass);
      chosen = found;
    }
  }
  if (chosen.lpszProxy) {
    TheWinHttp().setOption(request, WINHTTP_OPTION_PROXY, &chosen, sizeof chosen);
  }
}

}  // namespace

/// What WinHTTP's threads see: where data goes, and whom to tell. It lives until WinHTTP has told
/// the end of the request, whoever else has gone by then.
struct DownloadChannel {
  std::weak_ptr<void> download;
  std::function<void(DWORD status, DWORD count, const std::wstring& address)> tell;
  std::array<char, kBufferSize> buffer;
};

namespace {

using Channel = std::shared_ptr<DownloadChannel>;

/// From any thread.
void PostTold(const Channel& channel, DWORD status, DWORD count, const std::wstring& address) {
  Post([channel, status, count, address] {
    // The object that `tell` speaks to may have gone.
    if (const auto alive = channel->download.lock()) channel->tell(status, count, address);
  });
}

/// What WinHTTP is to be asked; whether it took the question.
struct Question {
  Channel channel;
  std::function<bool()> ask;
};

void CALLBACK AskNow(PTP_CALLBACK_INSTANCE, void* data) {
  const std::unique_ptr<Question> question(static_cast<Question*>(data));
  core::Attempt([&] {
    if (question->ask()) return;
    PostTold(question->channel, WINHTTP_CALLBACK_STATUS_REQUEST_ERROR, 0, {});
  });
}

/// Not on the caller's thread: Wine waits inside the call for a chunk that has not come yet, and
/// the window would not answer meanwhile. A request that is closed by then refuses the question.
void AskElsewhere(Channel channel, std::function<bool()> ask) {
  auto question = std::make_unique<Question>(Question{std::move(channel), std::move(ask)});
  CheckHttp(TrySubmitThreadpoolCallback(AskNow, question.get(), nullptr) != FALSE);
  static_cast<void>(question.release());  // freed when it is asked
}

}  // namespace

struct HttpDownload::Impl : std::enable_shared_from_this<Impl> {
  Impl(DownloadRules rules, Answer answer) : mRules(rules), mAnswer(std::move(answer)) {}

  void Start(const std::wstring& address);
  void GiveUp();
  void Told(DWORD status, DWORD count, const std::wstring& address);
  void Fail() { Finish(std::nullopt); }

 private:
  void OpenSession();
  void OpenRequest(const Address& address);
  void SetOptions();
  void Send();
  void Receive();
  void CheckAnswer();
  DWORD NumberHeader(DWORD header) const;
  void AskForData();
  void Read(DWORD count);
  void Take(DWORD count);
  void TakeEnd();
  void CheckLength() const;
  void Finish(std::optional<std::string> body);
  std::unique_ptr<Timer> After(std::chrono::milliseconds time, std::function<void()> step);
  void WatchSilence(std::chrono::milliseconds left);

  const DownloadRules mRules;
  Answer mAnswer;
  bool mSystemProxy = true;
  std::string mBody;
  std::optional<unsigned long> mLength;
  std::chrono::steady_clock::time_point mLastWord;
  std::unique_ptr<Timer> mIdle;
  std::unique_ptr<Timer> mTotal;
  Channel mChannel;
  // In the order of making: the last one is closed first.
  InternetHandle mSession;
  InternetHandle mConnection;
  InternetHandle mRequest;
};

namespace {

/// Called on any thread.
void CALLBACK Tell(HINTERNET, DWORD_PTR context, DWORD status, void* information, DWORD length) {
  if (context == 0) return;
  auto* const kept = reinterpret_cast<Channel*>(context);
  if (status == WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING) {
    delete kept;
    return;
  }
  core::Attempt([&] {
    const bool available = status == WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE;
    const DWORD count = available ? *static_cast<const DWORD*>(information) : length;
    std::wstring address;
    if (status == WINHTTP_CALLBACK_STATUS_REDIRECT) {
      address = static_cast<const wchar_t*>(information);
    }
    PostTold(*kept, status, count, address);
  });
}

}  // namespace

void HttpDownload::Impl::Start(const std::wstring& address) {
  OpenSession();
  OpenRequest(AddressFrom(address));
  SetOptions();
  if (!mSystemProxy) SetUserProxy(mSession.get(), mRequest.get(), address);
  mLastWord = std::chrono::steady_clock::now();
  WatchSilence(mRules.idleLimit);
  mTotal = After(mRules.totalLimit, [this] { Fail(); });
  Send();
}

void HttpDownload::Impl::OpenSession() {
  const WinHttp& http = TheWinHttp();
  const auto open = [&](DWORD access) {
    return InternetHandle(http.open(L"VelorVoiceSetup", access, WINHTTP_NO_PROXY_NAME,
                                    WINHTTP_NO_PROXY_BYPASS, WINHTTP_FLAG_ASYNC));
  };
  mSession = open(WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY);
  mSystemProxy = mSession != nullptr;
  if (!mSession) mSession = open(WINHTTP_ACCESS_TYPE_DEFAULT_PROXY);
  CheckHttp(mSession != nullptr);
  for (DWORD protocols : kProtocolSets) {
    if (http.setOption(mSession.get(), WINHTTP_OPTION_SECURE_PROTOCOLS, &protocols,
                       sizeof protocols)) {
      break;
    }
  }
}

void HttpDownload::Impl::OpenRequest(const Address& address) {
  const WinHttp& http = TheWinHttp();
  mConnection.reset(http.connect(mSession.get(), address.host.c_str(), address.port, 0));
  CheckHttp(mConnection != nullptr);
  mRequest.reset(http.openRequest(mConnection.get(), L"GET", address.path.c_str(), nullptr,
                                  WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES,
                                  WINHTTP_FLAG_SECURE | WINHTTP_FLAG_REFRESH));
  CheckHttp(mRequest != nullptr);
}

void HttpDownload::Impl::SetOptions() {
  const WinHttp& http = TheWinHttp();
  const auto set = [&](DWORD option, DWORD value) {
    CheckHttp(http.setOption(mRequest.get(), option, &value, sizeof value));
  };
  set(WINHTTP_OPTION_DISABLE_FEATURE, WINHTTP_DISABLE_COOKIES);
  core::Attempt([&] {
    set(WINHTTP_OPTION_REDIRECT_POLICY, WINHTTP_OPTION_REDIRECT_POLICY_DISALLOW_HTTPS_TO_HTTP);
  });
  core::Attempt([&] { set(WINHTTP_OPTION_MAX_HTTP_AUTOMATIC_REDIRECTS, mRules.redirectLimit); });
}

void HttpDownload::Impl::Send() {
  const WinHttp& http = TheWinHttp();
  mChannel = std::make_shared<DownloadChannel>();
  mChannel->download = weak_from_this();
  mChannel->tell = [this](DWORD status, DWORD count, const std::wstring& address) {
    Told(status, count, address);
  };
  constexpr DWORD kTold = WINHTTP_CALLBACK_FLAG_ALL_COMPLETIONS | WINHTTP_CALLBACK_FLAG_HANDLES |
                          WINHTTP_CALLBACK_FLAG_REDIRECT;
  auto context = std::make_unique<Channel>(mChannel);
  auto value = reinterpret_cast<DWORD_PTR>(context.get());
  CheckHttp(http.setStatusCallback(mRequest.get(), Tell, kTold, 0) !=
            WINHTTP_INVALID_STATUS_CALLBACK);
  CheckHttp(http.setOption(mRequest.get(), WINHTTP_OPTION_CONTEXT_VALUE, &value, sizeof value));
  static_cast<void>(context.release());  // freed when the end of the request is told
  CheckHttp(http.sendRequest(mRequest.get(), WINHTTP_NO_ADDITIONAL_HEADERS, 0,
                             WINHTTP_NO_REQUEST_DATA, 0, 0, value));
}

void HttpDownload::Impl::Told(DWORD status, DWORD count, const std::wstring& address) {
  if (!mRequest) return;  // it has answered
  const auto alive = shared_from_this();
  const bool went = core::Attempt([&] {
    mLastWord = std::chrono::steady_clock::now();
    switch (status) {
      case WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE:
        return Receive();
      case WINHTTP_CALLBACK_STATUS_REDIRECT:
        // The policy against leaving https is not kept by every system.
        CheckRedirect(address);
        return;
      case WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE:
        CheckAnswer();
        return AskForData();
      case WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE:
        return count > 0 ? Read(count) : TakeEnd();
      case WINHTTP_CALLBACK_STATUS_READ_COMPLETE:
        return Take(count);
      case WINHTTP_CALLBACK_STATUS_REQUEST_ERROR:
        throw std::runtime_error("the network or the other side failed");
      default:
        return;
    }
  });
  if (!went) Fail();
}

void HttpDownload::Impl::Receive() {
  CheckHttp(TheWinHttp().receiveResponse(mRequest.get(), nullptr));
}

/// Of the last answer, behind all redirects.
void HttpDownload::Impl::CheckAnswer() {
  if (NumberHeader(WINHTTP_QUERY_STATUS_CODE) / 100 != 2) {
    throw std::runtime_error("the server has no such document");
  }
  core::Attempt([&] { mLength = NumberHeader(WINHTTP_QUERY_CONTENT_LENGTH); });
}

DWORD HttpDownload::Impl::NumberHeader(DWORD header) const {
  DWORD number = 0;
  DWORD size = sizeof number;
  CheckHttp(TheWinHttp().queryHeaders(mRequest.get(), header | WINHTTP_QUERY_FLAG_NUMBER,
                                      WINHTTP_HEADER_NAME_BY_INDEX, &number, &size,
                                      WINHTTP_NO_HEADER_INDEX));
  return number;
}

/// Asked first, since reading alone waits until the whole buffer is full.
void HttpDownload::Impl::AskForData() {
  AskElsewhere(mChannel, [request = mRequest.get()] {
    return TheWinHttp().queryDataAvailable(request, nullptr) != FALSE;
  });
}

void HttpDownload::Impl::Read(DWORD count) {
  const DWORD size = std::min(count, static_cast<DWORD>(mChannel->buffer.size()));
  AskElsewhere(mChannel, [request = mRequest.get(), buffer = mChannel->buffer.data(), size] {
    return TheWinHttp().readData(request, buffer, size, nullptr) != FALSE;
  });
}

void HttpDownload::Impl::Take(DWORD count) {
  if (count == 0) return TakeEnd();
  if (count > mRules.sizeLimit - mBody.size()) throw std::runtime_error("the document is too long");
  mBody.append(mChannel->buffer.data(), count);
  AskForData();
}

void HttpDownload::Impl::TakeEnd() {
  CheckLength();
  Finish(std::move(mBody));
}

/// A connection that ends early ends like one that is done.
void HttpDownload::Impl::CheckLength() const {
  if (mLength && *mLength != mBody.size()) throw std::runtime_error("the answer is cut off");
}

void HttpDownload::Impl::Finish(std::optional<std::string> body) {
  GiveUp();
  if (const auto answer = std::exchange(mAnswer, nullptr)) answer(std::move(body));
}

void HttpDownload::Impl::GiveUp() {
  mIdle.reset();
  mTotal.reset();
  mRequest.reset();
  mConnection.reset();
  mSession.reset();
}

std::unique_ptr<Timer> HttpDownload::Impl::After(std::chrono::milliseconds time,
                                                 std::function<void()> step) {
  auto timer = std::make_unique<Timer>(static_cast<int>(time.count()), [this, step] {
    const auto alive = shared_from_this();
    step();
  });
  timer->SetEnabled(true);
  return timer;
}

/// A timer that is set anew for every few bytes would take most of the time of a long download.
void HttpDownload::Impl::WatchSilence(std::chrono::milliseconds left) {
  mIdle = After(left, [this] {
    const auto silence = std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now() - mLastWord);
    if (silence >= mRules.idleLimit) return Fail();
    WatchSilence(mRules.idleLimit - silence);
  });
}

HttpDownload::HttpDownload(const std::string& address, DownloadRules rules, Answer answer)
    : mImpl(std::make_shared<Impl>(rules, std::move(answer))) {
  // A start that fails is told like any other failure, later.
  if (core::Attempt([&] { mImpl->Start(WideText(address)); })) return;
  Post([download = std::weak_ptr(mImpl)] {
    if (const auto alive = download.lock()) alive->Fail();
  });
}

HttpDownload::~HttpDownload() { mImpl->GiveUp(); }

}  // namespace platform
