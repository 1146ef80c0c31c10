// What the download calls of WinHTTP, and when: the functions are replaced by ones that watch and
// then call the system's.
//
// SPDX-License-Identifier: MIT
#include <windows.h>
#include <winsock2.h>

#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <map>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <utility>

#include "platform/shared/documents/http_download.h"
#include "platform/win32/documents/win_http.h"
#include "tests/contract/services_case.h"

namespace {

using platform::DownloadRules;
using platform::HttpDownload;
using platform::TheWinHttp;
using std::chrono::milliseconds;

constexpr DWORD kLogonToProxyOnly = 3;

struct Credentials {
  DWORD target, scheme;
  bool hasName;
  bool operator==(const Credentials&) const = default;
};

/// What a request is in the middle of.
struct State {
  int inside = 0;        // threads inside an operation's call
  bool pending = false;  // the operation's callback has not come
  bool closed = false;
  WINHTTP_STATUS_CALLBACK callback = nullptr;
  DWORD_PTR context = 0;
  DWORD flags = 0;
};

/// Of all requests of a case. Never destroyed, since WinHTTP's threads may be late.
struct Watch {
  const platform::WinHttp system = TheWinHttp();
  std::mutex mutex;
  std::condition_variable changed;
  std::map<HINTERNET, State> requests;
  HINTERNET last = nullptr;
  int operations = 0;
  int violations = 0;
  /// How many times nothing is said to be available.
  int falseEnds = 0;
  /// How many answers are replaced by one of a proxy that requires a logon.
  int challenges = 0;
  DWORD challenger = WINHTTP_AUTH_TARGET_PROXY;
  DWORD schemes = WINHTTP_AUTH_SCHEME_BASIC | WINHTTP_AUTH_SCHEME_NEGOTIATE;
  std::vector<Credentials> credentials;
  bool knowsProxyOnly = true;
  std::vector<std::pair<DWORD, DWORD>> options;
  bool hasSystemProxy = true;
  std::vector<bool> scriptLogons;
  /// "host:port" of the proxy to be used in place of the user's.
  std::wstring proxy;
};

Watch& watch() {
  static auto* const kept = new Watch;
  return *kept;
}

bool IsCompletion(DWORD status) {
  return status == WINHTTP_CALLBACK_STATUS_SENDREQUEST_COMPLETE ||
         status == WINHTTP_CALLBACK_STATUS_HEADERS_AVAILABLE ||
         status == WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE ||
         status == WINHTTP_CALLBACK_STATUS_READ_COMPLETE ||
         status == WINHTTP_CALLBACK_STATUS_REQUEST_ERROR;
}

void CALLBACK Callback(HINTERNET request, DWORD_PTR context, DWORD status, void* information,
                       DWORD length) {
  WINHTTP_STATUS_CALLBACK callback = nullptr;
  DWORD nothing = 0;
  {
    const std::lock_guard lock(watch().mutex);
    State& state = watch().requests[request];
    if (IsCompletion(status)) state.pending = false;
    if (status == WINHTTP_CALLBACK_STATUS_DATA_AVAILABLE && watch().falseEnds > 0) {
      --watch().falseEnds;
      information = &nothing;
    }
    callback = state.callback;
  }
  watch().changed.notify_all();
  callback(request, context, status, information, length);
}

BOOL Operate(HINTERNET request, const std::function<BOOL()>& call) {
  {
    const std::lock_guard lock(watch().mutex);
    State& state = watch().requests[request];
    if (state.inside > 0 || state.pending || state.closed) ++watch().violations;
    ++state.inside;
    state.pending = true;
    ++watch().operations;
  }
  const BOOL taken = call();
  const DWORD error = GetLastError();
  {
    // Inside until its callback has come and somebody could have broken the rules meanwhile.
    std::unique_lock lock(watch().mutex);
    State& state = watch().requests[request];
    if (!taken) state.pending = false;
    watch().changed.wait_for(lock, milliseconds(5), [&] { return !state.pending; });
    watch().changed.wait_for(lock, milliseconds(1), [&] { return state.inside > 1; });
    --state.inside;
  }
  watch().changed.notify_all();
  SetLastError(error);
  return taken;
}

/// The system gives the number of a closed handle to a new one of any kind.
HINTERNET ForgetRequest(HINTERNET handle) {
  const std::lock_guard lock(watch().mutex);
  watch().requests.erase(handle);
  return handle;
}

HINTERNET WINAPI Open(const wchar_t* agent, DWORD access, const wchar_t* proxy,
                      const wchar_t* bypass, DWORD flags) {
  if (access == WINHTTP_ACCESS_TYPE_AUTOMATIC_PROXY && !watch().hasSystemProxy) return nullptr;
  const bool isReplaced = !watch().proxy.empty();
  return ForgetRequest(
      watch().system.open(agent, isReplaced ? WINHTTP_ACCESS_TYPE_NAMED_PROXY : access,
                          isReplaced ? watch().proxy.c_str() : proxy, bypass, flags));
}

HINTERNET WINAPI Connect(HINTERNET session, const wchar_t* host, INTERNET_PORT port,
                         DWORD reserved) {
  return ForgetRequest(watch().system.connect(session, host, port, reserved));
}

HINTERNET WINAPI OpenRequest(HINTERNET connection, const wchar_t* verb, const wchar_t* path,
                             const wchar_t* version, const wchar_t* referrer, const wchar_t** types,
                             DWORD flags) {
  const HINTERNET request =
      watch().system.openRequest(connection, verb, path, version, referrer, types, flags);
  const std::lock_guard lock(watch().mutex);
  watch().requests[request] = {};
  watch().last = request;
  return request;
}

BOOL WINAPI SetOption(HINTERNET handle, DWORD option, void* value, DWORD size) {
  {
    const std::lock_guard lock(watch().mutex);
    const auto found = watch().requests.find(handle);
    if (found != watch().requests.end() && found->second.closed) ++watch().violations;
    if (size == sizeof(DWORD)) {
      watch().options.emplace_back(option, *static_cast<const DWORD*>(value));
    }
    if (option == WINHTTP_OPTION_AUTOLOGON_POLICY) {
      return watch().knowsProxyOnly || *static_cast<const DWORD*>(value) != kLogonToProxyOnly;
    }
  }
  return watch().system.setOption(handle, option, value, size);
}

WINHTTP_STATUS_CALLBACK WINAPI SetStatusCallback(HINTERNET request,
                                                 WINHTTP_STATUS_CALLBACK callback, DWORD flags,
                                                 DWORD_PTR reserved) {
  {
    const std::lock_guard lock(watch().mutex);
    watch().requests[request].callback = callback;
    watch().requests[request].flags = flags;
  }
  return watch().system.setStatusCallback(request, Callback, flags, reserved);
}

BOOL WINAPI SendRequest(HINTERNET request, const wchar_t* headers, DWORD length, void* optional,
                        DWORD optionalLength, DWORD total, DWORD_PTR context) {
  {
    const std::lock_guard lock(watch().mutex);
    watch().requests[request].context = context;
  }
  return Operate(request, [&] {
    return watch().system.sendRequest(request, headers, length, optional, optionalLength, total,
                                      context);
  });
}

BOOL WINAPI ReceiveResponse(HINTERNET request, void* reserved) {
  return Operate(request, [&] { return watch().system.receiveResponse(request, reserved); });
}

BOOL WINAPI QueryDataAvailable(HINTERNET request, DWORD* count) {
  return Operate(request, [&] { return watch().system.queryDataAvailable(request, count); });
}

BOOL WINAPI ReadData(HINTERNET request, void* buffer, DWORD size, DWORD* count) {
  return Operate(request, [&] { return watch().system.readData(request, buffer, size, count); });
}

BOOL WINAPI QueryHeaders(HINTERNET request, DWORD header, const wchar_t* name, void* value,
                         DWORD* size, DWORD* index) {
  const BOOL found = watch().system.queryHeaders(request, header, name, value, size, index);
  if (header == (WINHTTP_QUERY_STATUS_CODE | WINHTTP_QUERY_FLAG_NUMBER) && watch().challenges > 0) {
    --watch().challenges;
    *static_cast<DWORD*>(value) = HTTP_STATUS_PROXY_AUTH_REQ;
  }
  return found;
}

BOOL WINAPI QueryAuthSchemes(HINTERNET request, DWORD* schemes, DWORD* first, DWORD* target) {
  if (!watch().proxy.empty()) {
    return watch().system.queryAuthSchemes(request, schemes, first, target);
  }
  *schemes = watch().schemes;
  *first = WINHTTP_AUTH_SCHEME_BASIC;
  *target = watch().challenger;
  return TRUE;
}

BOOL WINAPI SetCredentials(HINTERNET request, DWORD target, DWORD scheme, const wchar_t* name,
                           const wchar_t* password, void* reserved) {
  watch().credentials.push_back({target, scheme, name || password});
  return watch().proxy.empty() ||
         watch().system.setCredentials(request, target, scheme, name, password, reserved);
}

BOOL WINAPI CloseHandle(HINTERNET handle) {
  {
    const std::lock_guard lock(watch().mutex);
    const auto found = watch().requests.find(handle);
    if (found != watch().requests.end()) {
      if (found->second.inside > 0 || found->second.closed) ++watch().violations;
      found->second.closed = true;
    }
  }
  return watch().system.closeHandle(handle);
}

/// The caller frees the text.
wchar_t* GlobalText(std::wstring_view text) {
  auto* const copy = static_cast<wchar_t*>(GlobalAlloc(GPTR, (text.size() + 1) * sizeof(wchar_t)));
  text.copy(copy, text.size());
  return copy;
}

BOOL WINAPI UserProxy(WINHTTP_CURRENT_USER_IE_PROXY_CONFIG* config) {
  *config = {FALSE, GlobalText(L"https://localhost/proxy.pac"), nullptr, nullptr};
  return TRUE;
}

BOOL WINAPI ProxyForUrl(HINTERNET, const wchar_t*, WINHTTP_AUTOPROXY_OPTIONS* options,
                        WINHTTP_PROXY_INFO*) {
  watch().scriptLogons.push_back(options->fAutoLogonIfChallenged != FALSE);
  SetLastError(ERROR_WINHTTP_LOGIN_FAILURE);
  return FALSE;
}

class WinHttpRules : public ServiceCase {
 protected:
  using Body = std::optional<std::string>;

  WinHttpRules() {
    Watch& all = watch();
    {
      const std::lock_guard lock(all.mutex);
      all.operations = all.violations = all.falseEnds = all.challenges = 0;
      all.challenger = WINHTTP_AUTH_TARGET_PROXY;
      all.schemes = WINHTTP_AUTH_SCHEME_BASIC | WINHTTP_AUTH_SCHEME_NEGOTIATE;
      all.credentials.clear();
      all.knowsProxyOnly = all.hasSystemProxy = true;
      all.options.clear();
      all.scriptLogons.clear();
      all.proxy.clear();
    }
    platform::WinHttp& http = TheWinHttp();
    http.open = Open;
    http.connect = Connect;
    http.openRequest = OpenRequest;
    http.setOption = SetOption;
    http.setStatusCallback = SetStatusCallback;
    http.sendRequest = SendRequest;
    http.receiveResponse = ReceiveResponse;
    http.queryDataAvailable = QueryDataAvailable;
    http.readData = ReadData;
    http.queryHeaders = QueryHeaders;
    http.queryAuthSchemes = QueryAuthSchemes;
    http.setCredentials = SetCredentials;
    http.closeHandle = CloseHandle;
    http.userProxy = UserProxy;
    http.proxyForUrl = ProxyForUrl;
  }
  ~WinHttpRules() override {
    EXPECT_TRUE(peer::RunUntil([] { return !IsInside(); }));
    TheWinHttp() = watch().system;
  }

  static bool IsInside() {
    const std::lock_guard lock(watch().mutex);
    for (const auto& [request, state] : watch().requests) {
      if (state.inside > 0) return true;
    }
    return false;
  }
  static int Operations() {
    const std::lock_guard lock(watch().mutex);
    return watch().operations;
  }

  static std::string On(const std::string& path) {
    return std::string(std::getenv("VELOR_TEST_SERVER")) + path;
  }
  static std::string File(const std::string& body) {
    const std::string address = peer::Serve(200, body);
    return address.substr(address.rfind('=') + 1);
  }
  static Body Get(const std::string& address) {
    bool answered = false;
    Body answer;
    const HttpDownload download(address, {}, [&](Body body) {
      answered = true;
      answer = std::move(body);
    });
    EXPECT_TRUE(peer::RunUntil([&] { return answered; }));
    return answer;
  }
  static std::vector<DWORD> ValuesOf(DWORD option) {
    std::vector<DWORD> values;
    for (const auto& [each, value] : watch().options) {
      if (each == option) values.push_back(value);
    }
    return values;
  }
};

TEST_F(WinHttpRules, NoCallBeginsOrClosesWhileAnotherIsUnderWay) {
  const std::string file = File(std::string(30'000, 'x'));
  for (int i = 0; i < 120; ++i) {
    const bool dribbles = i % 4 == 3;
    bool answered = false;
    auto download = std::make_unique<HttpDownload>(
        On(dribbles ? "/drip?pieces=5&pause=0.01&file=" + file : "/file/" + file), DownloadRules(),
        [&](auto body) { answered = body.has_value(); });
    // Every third one is given up, after one operation or after some.
    const int enough = Operations() + 1 + i % 7;
    EXPECT_TRUE(peer::RunUntil([&] { return answered || (i % 3 == 0 && Operations() >= enough); }));
  }
  EXPECT_TRUE(peer::RunUntil([] { return !IsInside(); }));
  EXPECT_GE(Operations(), 500);
  EXPECT_EQ(watch().violations, 0);
}

TEST_F(WinHttpRules, TheBodyEndsWhereReadingEnds) {
  watch().falseEnds = 2;
  const std::string body(100'000, 'x');
  EXPECT_TRUE(Get(On("/file/" + File(body))) == body);
}

TEST_F(WinHttpRules, AProxyGetsTheWindowsLogonAndTheRequestIsSentOnceMore) {
  watch().challenges = 1;
  EXPECT_EQ(Get(On("/file/" + File("body"))), "body");
  const Credentials expected = {WINHTTP_AUTH_TARGET_PROXY, WINHTTP_AUTH_SCHEME_NEGOTIATE, false};
  EXPECT_THAT(watch().credentials, testing::ElementsAre(expected));
}

TEST_F(WinHttpRules, AProxyThatRefusesTheLogonEndsTheDownload) {
  watch().challenges = 5;
  watch().schemes = WINHTTP_AUTH_SCHEME_NTLM;
  EXPECT_EQ(Get(On("/file/" + File("body"))), std::nullopt);
  const Credentials expected = {WINHTTP_AUTH_TARGET_PROXY, WINHTTP_AUTH_SCHEME_NTLM, false};
  EXPECT_THAT(watch().credentials, testing::ElementsAre(expected));
}

TEST_F(WinHttpRules, NobodyElseGetsALogon) {
  watch().challenges = 1;
  watch().challenger = WINHTTP_AUTH_TARGET_SERVER;
  EXPECT_EQ(Get(On("/file/" + File("body"))), std::nullopt);
  watch().challenges = 1;
  watch().challenger = WINHTTP_AUTH_TARGET_PROXY;
  watch().schemes = WINHTTP_AUTH_SCHEME_BASIC | WINHTTP_AUTH_SCHEME_DIGEST;
  EXPECT_EQ(Get(On("/file/" + File("body"))), std::nullopt);
  EXPECT_EQ(Get(On("/status/401?file=" + File("body"))), std::nullopt);
  EXPECT_THAT(watch().credentials, testing::IsEmpty());
  EXPECT_THAT(ValuesOf(WINHTTP_OPTION_AUTOLOGON_POLICY), testing::Each(kLogonToProxyOnly));
}

TEST_F(WinHttpRules, OlderSystemsLogOnToNobodyBeforeAProxyRequiresIt) {
  watch().knowsProxyOnly = false;
  watch().challenges = 1;
  EXPECT_EQ(Get(On("/file/" + File("body"))), "body");
  EXPECT_THAT(ValuesOf(WINHTTP_OPTION_AUTOLOGON_POLICY),
              testing::ElementsAre(kLogonToProxyOnly, WINHTTP_AUTOLOGON_SECURITY_LEVEL_HIGH,
                                   WINHTTP_AUTOLOGON_SECURITY_LEVEL_MEDIUM));
}

TEST_F(WinHttpRules, TheProxyScriptIsLoadedWithALogonOnlyWhereItIsRequired) {
  watch().hasSystemProxy = false;
  EXPECT_EQ(Get(On("/file/" + File("body"))), "body");
  EXPECT_THAT(watch().scriptLogons, testing::ElementsAre(false, true));
}

TEST_F(WinHttpRules, FallsBackFromDeadIPv6) {
  EXPECT_EQ(Get(On("/file/" + File("body"))), "body");
  EXPECT_THAT(ValuesOf(WINHTTP_OPTION_IPV6_FAST_FALLBACK), testing::ElementsAre(DWORD{TRUE}));
}

TEST_F(WinHttpRules, EachAddressThatIsTriedHasTheIdleLimitForItself) {
  DownloadRules rules;
  rules.idleLimit = milliseconds(1000);
  bool answered = false;
  const HttpDownload download(On("/silent"), rules, [&](auto) { answered = true; });
  ASSERT_TRUE(peer::RunUntil([] {
    const std::lock_guard lock(watch().mutex);
    return watch().requests[watch().last].context != 0;
  }));
  // As the system does before each attempt, for longer than the limit.
  for (int i = 0; i < 6; ++i) {
    WINHTTP_STATUS_CALLBACK callback = nullptr;
    DWORD_PTR context = 0;
    {
      const std::lock_guard lock(watch().mutex);
      const State& state = watch().requests[watch().last];
      if ((state.flags & WINHTTP_CALLBACK_FLAG_CONNECT_TO_SERVER) != 0) callback = state.callback;
      context = state.context;
    }
    if (callback) {
      wchar_t address[] = L"::1";
      callback(watch().last, context, WINHTTP_CALLBACK_STATUS_CONNECTING_TO_SERVER, address,
               sizeof address / sizeof *address);
    }
    EXPECT_FALSE(peer::RunUntil([&] { return answered; }, milliseconds(400)));
  }
  EXPECT_TRUE(peer::RunUntil([&] { return answered; }));
}

/// A proxy on this machine that answers every request with a challenge, and keeps what it was sent.
class ChallengingProxy {
 public:
  ChallengingProxy() {
    WSADATA ignored;
    WSAStartup(MAKEWORD(2, 2), &ignored);
    mListener = socket(AF_INET, SOCK_STREAM, 0);
    mAddress.sin_family = AF_INET;
    mAddress.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int length = sizeof mAddress;
    if (bind(mListener, reinterpret_cast<sockaddr*>(&mAddress), length) != 0 ||
        listen(mListener, SOMAXCONN) != 0 ||
        getsockname(mListener, reinterpret_cast<sockaddr*>(&mAddress), &length) != 0) {
      throw std::runtime_error("no port is free");
    }
    mThread = CreateThread(nullptr, 0, Answer, this, 0, nullptr);
  }
  ~ChallengingProxy() {
    // One more client, so that the thread sees the end.
    mEnding = true;
    const SOCKET client = socket(AF_INET, SOCK_STREAM, 0);
    connect(client, reinterpret_cast<sockaddr*>(&mAddress), sizeof mAddress);
    closesocket(client);
    WaitForSingleObject(mThread, INFINITE);
    ::CloseHandle(mThread);
    closesocket(mListener);
  }
  ChallengingProxy(const ChallengingProxy&) = delete;
  ChallengingProxy& operator=(const ChallengingProxy&) = delete;

  std::wstring Address() const { return L"127.0.0.1:" + std::to_wstring(ntohs(mAddress.sin_port)); }
  std::vector<std::string> Requests() {
    const std::lock_guard lock(mMutex);
    return mRequests;
  }

 private:
  static DWORD WINAPI Answer(void* data) {
    auto& proxy = *static_cast<ChallengingProxy*>(data);
    SOCKET client = INVALID_SOCKET;
    while ((client = accept(proxy.mListener, nullptr, nullptr)) != INVALID_SOCKET) {
      if (!proxy.mEnding) proxy.AnswerOne(client);
      closesocket(client);
      if (proxy.mEnding) break;
    }
    return 0;
  }
  void AnswerOne(SOCKET client) {
    std::string request;
    char buffer[1024];
    for (int count = 0; request.find("\r\n\r\n") == std::string::npos &&
                        (count = recv(client, buffer, sizeof buffer, 0)) > 0;) {
      request.append(buffer, static_cast<std::size_t>(count));
    }
    {
      const std::lock_guard lock(mMutex);
      mRequests.push_back(request);
    }
    constexpr std::string_view kChallenge =
        "HTTP/1.1 407 Proxy Authentication Required\r\nProxy-Authenticate: NTLM\r\n"
        "Proxy-Authenticate: Basic realm=\"x\"\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
    send(client, kChallenge.data(), static_cast<int>(kChallenge.size()), 0);
    shutdown(client, SD_SEND);
  }

  SOCKET mListener = INVALID_SOCKET;
  sockaddr_in mAddress = {};
  std::atomic<bool> mEnding = false;
  HANDLE mThread = nullptr;
  std::mutex mMutex;
  std::vector<std::string> mRequests;
};

TEST_F(WinHttpRules, AProxyOnTheNetworkGetsTheLogonAndNoPassword) {
  ChallengingProxy proxy;
  watch().proxy = proxy.Address();
  EXPECT_EQ(Get(On("/file/" + File("body"))), std::nullopt);
  const auto requests = proxy.Requests();
  EXPECT_THAT(requests, testing::Each(testing::StartsWith("CONNECT localhost:")));
  EXPECT_THAT(requests, testing::Contains(testing::HasSubstr("Proxy-Authorization: NTLM ")));
  EXPECT_THAT(requests, testing::Each(testing::Not(testing::HasSubstr("Basic "))));
  const Credentials expected = {WINHTTP_AUTH_TARGET_PROXY, WINHTTP_AUTH_SCHEME_NTLM, false};
  EXPECT_THAT(watch().credentials, testing::ElementsAre(expected));
}

}  // namespace
