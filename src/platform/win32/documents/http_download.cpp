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
#include <atomic>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/errors.h"
#include "platform/shared/window/event_queue.h"
#include "platform/win32/documents/win_http.h"
#include "platform/win32/wide_text.h"
#include "platform/window/form.h"

namespace platform {
namespace {

constexpr std::size_t kBufferSize = std::size_t{64} << 10;
// WINHTTP_AUTOLOGON_SECURITY_LEVEL_PROXY_ONLY, which older headers and systems lack.
constexpr DWORD kLogonToProxyOnly = 3;
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
  if (parts.nScheme != INTERNET_SCHEME_HTTPS) throw Unsupported("not an https address");
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
    WINHTTP_PROXY_INFO found = {};
    const auto find = [&] {
      return TheWinHttp().proxyForUrl(session, address.c_str(), &options, &found) != FALSE;
    };
    bool isFound = find();
    if (!isFound && GetLastError() == ERROR_WINHTTP_LOGIN_FAILURE) {
      // Only now: with the logon the system keeps no script in its cache.
      options.fAutoLogonIfChallenged = TRUE;
      isFound = find();
    }
    if (isFound) {
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

/// What WinHTTP's threads see: where data goes, and whom to notify. It exists until WinHTTP has
/// notified of the end of the request, whoever else is destroyed by then.
struct DownloadChannel {
  std::weak_ptr<void> download;
  std::function<void(DWORD status, DWORD count, const std::wstring& address)> notify;
  std::array<char, kBufferSize> buffer;
  /// Of the operation under way, how many of two are missing: its call's return and its callback.
  std::atomic<int> missing = 0;
  // What the callback said.
  DWORD status = 0;
  DWORD count = 0;
};

namespace {

using Channel = std::shared_ptr<DownloadChannel>;

/// Shared by the download and by the thread that is inside a call: WinHTTP allows no handle to be
/// closed meanwhile.
struct Request {
  // In the order of creation: the last one is closed first.
  InternetHandle session;
  InternetHandle connection;
  InternetHandle handle;
};

/// From any thread.
void PostNotification(const Channel& channel, DWORD status, DWORD count,
                      const std::wstring& address) {
  Post([channel, status, count, address] {
    // The object that `notify` calls may be destroyed.
    if (const auto alive = channel->download.lock()) channel->notify(status, count, address);
  });
}

/// The call has returned, or its callback has come. The second of the two completes the operation:
/// WinHTTP allows no other one before.
void CompleteHalf(const Channel& channel) {
  if (--channel->missing == 0) PostNotification(channel, channel->status, channel->count, {});
}

struct Operation {
  Channel channel;
  std::weak_ptr<Request> request;
  std::function<BOOL(HINTERNET)> call;
};

void CALLBACK RunOperation(PTP_CALLBACK_INSTANCE, void* data) {
  const std::unique_ptr<Operation> operation(static_cast<Operation*>(data));
  core::Attempt([&] {
    const auto request = operation->request.lock();
    if (!request) return;  // given up
    if (operation->call(request->handle.get())) return CompleteHalf(operation->channel);
    // No callback comes for a call that failed.
    PostNotification(operation->channel, WINHTTP_CALLBACK_STATUS_REQUEST_ERROR, 0, {});
  });
}

}  // namespace

struct HttpDownload::Impl : std::enable_shared_from_this<Impl> {
  Impl(DownloadRules rules, Answer answer) : mRules(rules), mAnswer(std::move(answer)) {}

  void Start(const std::wstring& address);
  void GiveUp();
  void Notified(DWORD status, DWORD count, const std::wstring& address);
  void Fail() { Finish(std::nullopt); }

 private:
  void OpenSession();
  void OpenRequest(const Address& address);
  void SetOptions();
  void SetOption(DWORD option, DWORD value) const;
  void Listen();
  void Begin(std::function<BOOL(HINTERNET)> call);
  void Send();
  void Receive();
  bool LogOnToProxy();
  void TakeHeaders();
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
  bool mLogonToProxyOnly = false;
  bool mLoggedOn = false;
  std::string mBody;
  std::optional<unsigned long> mLength;
  std::chrono::steady_clock::time_point mLastWord;
  std::unique_ptr<Timer> mIdle;
  std::unique_ptr<Timer> mTotal;
  Channel mChannel;
  DWORD_PTR mContext = 0;
  std::shared_ptr<Request> mRequest = std::make_shared<Request>();
};

namespace {

/// Called on any thread.
void CALLBACK HandleCallback(HINTERNET, DWORD_PTR context, DWORD status, void* information,
                             DWORD length) {
  if (context == 0) return;
  auto* const kept = reinterpret_cast<Channel*>(context);
  switch (status) {
    case WINHTTP_CALLBACK_STATUS_HANDLE_CLOSING:
      delete kept;
      return;
    case WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE:
      length = *static_cast<const DWORD*>(information);
      [[fallthrough]];
    case WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE:
    case WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE:
    case WINHTTP_CALLBACK_STATUS_READ_COMPLETE:
    case WINHTTP_CALLBACK_STATUS_REQUEST_ERROR:
      core::Attempt([&] {
        (*kept)->status = status;
        (*kept)->count = length;
        CompleteHalf(*kept);
      });
      return;
    default:
      core::Attempt([&] {
        const bool redirects = status == WINHTTP_CALLBACK_STATUS_REDIRECT;
        PostNotification(*kept, status, 0,
                         redirects ? static_cast<const wchar_t*>(information) : L"");
      });
  }
}

}  // namespace

void HttpDownload::Impl::Start(const std::wstring& address) {
  OpenSession();
  OpenRequest(AddressFrom(address));
  SetOptions();
  if (!mSystemProxy) SetUserProxy(mRequest->session.get(), mRequest->handle.get(), address);
  mLastWord = std::chrono::steady_clock::now();
  WatchSilence(mRules.idleLimit);
  mTotal = After(mRules.totalLimit, [this] { Fail(); });
  Listen();
  Send();
}

void HttpDownload::Impl::OpenSession() {
  const WinHttp& http = TheWinHttp();
  InternetHandle& session = mRequest->session;
  const auto open = [&](DWORD access) {
    session.reset(http.open(L"VelorVoiceSetup", access, WINHTTP_NO_PROXY_NAME,
                            WINHTTP_NO_PROXY_BYPASS, WINHTTP_FLAG_ASYNC));
    return session != nullptr;
  };
  mSystemProxy = open(WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY);
  CheckHttp(mSystemProxy || open(WINHTTP_ACCESS_TYPE_DEFAULT_PROXY));
  for (DWORD protocols : kProtocolSets) {
    if (http.setOption(session.get(), WINHTTP_OPTION_SECURE_PROTOCOLS, &protocols,
                       sizeof protocols)) {
      break;
    }
  }
  // Where IPv6 is dead, IPv4 gets its turn at once. Older systems lack this.
  DWORD fastFallback = TRUE;
  http.setOption(session.get(), WINHTTP_OPTION_IPV6_FAST_FALLBACK, &fastFallback,
                 sizeof fastFallback);
}

void HttpDownload::Impl::OpenRequest(const Address& address) {
  const WinHttp& http = TheWinHttp();
  mRequest->connection.reset(
      http.connect(mRequest->session.get(), address.host.c_str(), address.port, 0));
  CheckHttp(mRequest->connection != nullptr);
  mRequest->handle.reset(http.openRequest(mRequest->connection.get(), L"GET", address.path.c_str(),
                                          nullptr, WINHTTP_NO_REFERER, WINHTTP_DEFAULT_ACCEPT_TYPES,
                                          WINHTTP_FLAG_SECURE | WINHTTP_FLAG_REFRESH));
  CheckHttp(mRequest->handle != nullptr);
}

void HttpDownload::Impl::SetOption(DWORD option, DWORD value) const {
  CheckHttp(TheWinHttp().setOption(mRequest->handle.get(), option, &value, sizeof value));
}

void HttpDownload::Impl::SetOptions() {
  SetOption(WINHTTP_OPTION_DISABLE_FEATURE, WINHTTP_DISABLE_COOKIES);
  core::Attempt([&] {
    SetOption(WINHTTP_OPTION_REDIRECT_POLICY,
              WINHTTP_OPTION_REDIRECT_POLICY_DISALLOW_HTTPS_TO_HTTP);
  });
  core::Attempt(
      [&] { SetOption(WINHTTP_OPTION_MAX_HTTP_AUTOMATIC_REDIRECTS, mRules.redirectLimit); });
  mLogonToProxyOnly =
      core::Attempt([&] { SetOption(WINHTTP_OPTION_AUTOLOGON_POLICY, kLogonToProxyOnly); });
  if (!mLogonToProxyOnly) {
    SetOption(WINHTTP_OPTION_AUTOLOGON_POLICY, WINHTTP_AUTOLOGON_SECURITY_LEVEL_HIGH);
  }
}

void HttpDownload::Impl::Listen() {
  const WinHttp& http = TheWinHttp();
  mChannel = std::make_shared<DownloadChannel>();
  mChannel->download = weak_from_this();
  mChannel->notify = [this](DWORD status, DWORD count, const std::wstring& address) {
    Notified(status, count, address);
  };
  // Connecting too, so that each address of the server has the idle limit for itself.
  constexpr DWORD kCallbacks = WINHTTP_CALLBACK_FLAG_ALL_COMPLETIONS |
                               WINHTTP_CALLBACK_FLAG_HANDLES | WINHTTP_CALLBACK_FLAG_REDIRECT |
                               WINHTTP_CALLBACK_FLAG_RESOLVE_NAME |
                               WINHTTP_CALLBACK_FLAG_CONNECT_TO_SERVER;
  auto context = std::make_unique<Channel>(mChannel);
  mContext = reinterpret_cast<DWORD_PTR>(context.get());
  const HINTERNET request = mRequest->handle.get();
  CheckHttp(http.setStatusCallback(request, HandleCallback, kCallbacks, 0) !=
            WINHTTP_INVALID_STATUS_CALLBACK);
  CheckHttp(http.setOption(request, WINHTTP_OPTION_CONTEXT_VALUE, &mContext, sizeof mContext));
  static_cast<void>(context.release());  // freed when the end of the request is notified
}

/// Not on the caller's thread: Wine waits inside the call for a chunk that has not come yet, and
/// the window would not answer meanwhile.
void HttpDownload::Impl::Begin(std::function<BOOL(HINTERNET)> call) {
  mChannel->missing = 2;
  auto operation = std::make_unique<Operation>(Operation{mChannel, mRequest, std::move(call)});
  CheckHttp(TrySubmitThreadpoolCallback(RunOperation, operation.get(), nullptr) != FALSE);
  static_cast<void>(operation.release());  // freed by RunOperation
}

void HttpDownload::Impl::Send() {
  Begin([context = mContext](HINTERNET request) {
    return TheWinHttp().sendRequest(request, WINHTTP_NO_ADDITIONAL_HEADERS, 0,
                                    WINHTTP_NO_REQUEST_DATA, 0, 0, context);
  });
}

void HttpDownload::Impl::Notified(DWORD status, DWORD count, const std::wstring& address) {
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
        return TakeHeaders();
      case WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE:
        return Read(count);
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
  Begin([](HINTERNET request) { return TheWinHttp().receiveResponse(request, nullptr); });
}

/// A proxy that requires the Windows logon gets it, once. A server never does: the policy is the
/// proxy alone; where the system lacks that, servers that are reached by a proxy are not of the
/// intranet, which alone gets a logon at the medium level.
bool HttpDownload::Impl::LogOnToProxy() {
  if (std::exchange(mLoggedOn, true)) return false;
  const HINTERNET request = mRequest->handle.get();
  DWORD schemes = 0, first = 0, target = 0;
  CheckHttp(TheWinHttp().queryAuthSchemes(request, &schemes, &first, &target));
  const DWORD scheme = (schemes & WINHTTP_AUTH_SCHEME_NEGOTIATE) != 0
                           ? WINHTTP_AUTH_SCHEME_NEGOTIATE
                           : schemes & WINHTTP_AUTH_SCHEME_NTLM;
  if (target != WINHTTP_AUTH_TARGET_PROXY || scheme == 0) return false;
  if (!mLogonToProxyOnly) {
    SetOption(WINHTTP_OPTION_AUTOLOGON_POLICY, WINHTTP_AUTOLOGON_SECURITY_LEVEL_MEDIUM);
  }
  // Without a name: the person's own logon.
  CheckHttp(TheWinHttp().setCredentials(request, target, scheme, nullptr, nullptr, nullptr));
  return true;
}

/// Of the last answer, behind all redirects.
void HttpDownload::Impl::TakeHeaders() {
  const DWORD status = NumberHeader(WINHTTP_QUERY_STATUS_CODE);
  if (status == HTTP_STATUS_PROXY_AUTH_REQ && LogOnToProxy()) return Send();
  if (status / 100 != 2) throw std::runtime_error("the server has no such document");
  core::Attempt([&] { mLength = NumberHeader(WINHTTP_QUERY_CONTENT_LENGTH); });
  AskForData();
}

DWORD HttpDownload::Impl::NumberHeader(DWORD header) const {
  DWORD number = 0;
  DWORD size = sizeof number;
  CheckHttp(TheWinHttp().queryHeaders(mRequest->handle.get(), header | WINHTTP_QUERY_FLAG_NUMBER,
                                      WINHTTP_HEADER_NAME_BY_INDEX, &number, &size,
                                      WINHTTP_NO_HEADER_INDEX));
  return number;
}

/// Before reading, which alone waits until the whole buffer is full.
void HttpDownload::Impl::AskForData() {
  Begin([](HINTERNET request) { return TheWinHttp().queryDataAvailable(request, nullptr); });
}

/// Also where nothing is said to be available: only reading nothing is the end.
void HttpDownload::Impl::Read(DWORD count) {
  const DWORD size = std::clamp<DWORD>(count, 1, static_cast<DWORD>(mChannel->buffer.size()));
  Begin([buffer = mChannel->buffer.data(), size](HINTERNET request) {
    return TheWinHttp().readData(request, buffer, size, nullptr);
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
