// Downloads with libsoup 3. Each hop of a redirect is a message of its own, so that its address is
// looked at before anything is sent there.
//
// SPDX-License-Identifier: MIT
#include <libsoup/soup.h>
#include <malloc.h>

#include <array>
#include <stdexcept>
#include <thread>
#include <utility>

#include "core/attempt.h"
#include "platform/linux/documents/trust_store.h"
#include "platform/linux/g_ref.h"
#include "platform/linux/signals.h"
#include "platform/shared/window/event_queue.h"

namespace platform {
namespace {

// The macro is a sum of flags, which C++ takes for a number.
constexpr auto kHttpUri = static_cast<GUriFlags>(SOUP_HTTP_URI_FLAGS);

// When a connection is over its last thread has let go of the authorities, too.
constexpr guint kEndOfConnectionMilliseconds = 1000;

struct ReleaseUri {
  void operator()(GUri* uri) const { g_uri_unref(uri); }
};
using Uri = std::unique_ptr<GUri, ReleaseUri>;

Uri ParseAddress(GUri* base, const char* address) {
  GErrorCheck error;
  Uri uri(base ? g_uri_parse_relative(base, address, kHttpUri, error.Out())
               : g_uri_parse(address, kHttpUri, error.Out()));
  error.Check();
  return uri;
}

bool IsHttps(GUri* uri) {
  const char* host = g_uri_get_host(uri);
  // GLib has put the scheme in lower case.
  return g_str_equal(g_uri_get_scheme(uri), "https") && host && *host;
}

/// Whether the authorities of `caFile`, and no others, vouch for `certificate` as this server's,
/// which the system's store has refused.
bool IsTrusted(const std::string& caFile, GTlsCertificate* certificate, GUri* server) {
  GErrorCheck error;
  const auto authorities =
      GRef<GTlsDatabase>::Adopt(g_tls_file_database_new(caFile.c_str(), error.Out()));
  error.Check();
  const auto identity = GRef<GSocketConnectable>::Adopt(
      g_network_address_new(g_uri_get_host(server), static_cast<guint16>(g_uri_get_port(server))));
  const GTlsCertificateFlags faults = g_tls_database_verify_chain(
      authorities.Get(), certificate, G_TLS_DATABASE_PURPOSE_AUTHENTICATE_SERVER, identity.Get(),
      nullptr, G_TLS_DATABASE_VERIFY_NONE, nullptr, error.Out());
  error.Check();
  return faults == 0;
}

// The library still takes versions that nobody should trust any more. Nothing is asked of the
// server before this.
void InsistOnASoundVersion(GTlsConnection* connection) {
  if (g_tls_connection_get_protocol_version(connection) < G_TLS_PROTOCOL_VERSION_TLS_1_2) {
    throw std::runtime_error("the server speaks outdated TLS");
  }
}

void CheckConnection(GSocketClientEvent event, GIOStream* stream) {
  if (!G_IS_TLS_CONNECTION(stream)) return;
  GTlsConnection* const connection = G_TLS_CONNECTION(stream);
  // Otherwise a connection that is cut looks like one that has ended, and what came like
  // everything, wherever no length was announced.
  if (event == G_SOCKET_CLIENT_TLS_HANDSHAKING) {
    g_tls_connection_set_require_close_notify(connection, TRUE);
    // In HTTP/2 the library takes a cut connection for a silent one, and trailers for an error.
    std::array<const char*, 2> protocols = {"http/1.1", nullptr};
    g_tls_connection_set_advertised_protocols(connection, protocols.data());
  }
  if (event == G_SOCKET_CLIENT_TLS_HANDSHAKED) InsistOnASoundVersion(connection);
}

/// They take some megabytes, and a second download is rare: it would read them again. The C library
/// keeps what is freed, until it is told to give it back.
void ForgetAuthorities() {
  g_tls_backend_set_default_database(g_tls_backend_get_default(), nullptr);
  g_timeout_add_full(
      G_PRIORITY_LOW, kEndOfConnectionMilliseconds,
      [](gpointer) -> gboolean {
        malloc_trim(0);
        return G_SOURCE_REMOVE;
      },
      nullptr, nullptr);
}

}  // namespace

struct HttpDownload::Impl : std::enable_shared_from_this<Impl> {
  Impl(DownloadRules rulesOfThis, Answer answerOfThis)
      : rules(std::move(rulesOfThis)), answer(std::move(answerOfThis)) {}
  ~Impl() { StopWatches(); }

  void Start(const std::string& address);
  void GiveUp();

 private:
  // What a pending call of the library holds on to, until it calls back.
  using Keeper = std::shared_ptr<Impl>;
  gpointer Keep() { return new Keeper(shared_from_this()); }
  static Keeper Taken(gpointer data) {
    const std::unique_ptr<Keeper> keeper(static_cast<Keeper*>(data));
    return *keeper;
  }

  // Runs what an event brings; when it fails, the download has failed. Events that come after the
  // end, such as the library's word that it was cancelled, do nothing.
  template <class Step>
  void OnEvent(Step&& step) {
    if (!answer) return;
    RestartIdleWatch();
    if (!core::Attempt(std::forward<Step>(step))) Finish(std::nullopt);
  }

  void Send(Uri uri);
  void ConnectSignals();
  void OnHeaders(GAsyncResult* result);
  void Redirect();
  void ReadNext();
  void OnBytes(GAsyncResult* result);
  void Finish(std::optional<std::string> outcome);

  void Watch(guint& watch, std::chrono::milliseconds limit);
  void RestartIdleWatch() { Watch(idleWatch, rules.idleLimit); }
  static void StopWatch(guint& watch);
  void StopWatches();

  static void SentCallback(GObject*, GAsyncResult* result, gpointer data);
  static void ReadCallback(GObject*, GAsyncResult* result, gpointer data);
  static gboolean LimitCallback(gpointer data);

  const DownloadRules rules;
  Answer answer;
  // The idle watch replaces the session's own limits: it holds for names and hand-shakes too.
  const GRef<SoupSession> session = GRef<SoupSession>::Adopt(
      soup_session_new_with_options("timeout", 0, "idle-timeout", 0, nullptr));
  const GRef<GCancellable> cancellable = GRef<GCancellable>::Adopt(g_cancellable_new());
  GRef<SoupMessage> message;
  GRef<GInputStream> stream;
  SignalConnection certificateSignal;
  SignalConnection networkSignal;
  std::string body;
  std::array<char, 64 * 1024> buffer{};
  unsigned redirects = 0;
  guint idleWatch = 0;
  guint totalWatch = 0;
};

void PrepareDownloads() {
  // Waited for when the process ends.
  static const std::jthread thread([] {
    core::Attempt([] {
      GRef<GTlsDatabase>::Adopt(g_tls_backend_get_default_database(g_tls_backend_get_default()));
    });
  });
}

HttpDownload::HttpDownload(const std::string& address, DownloadRules rules, Answer answer)
    : mImpl(std::make_shared<Impl>(std::move(rules), std::move(answer))) {
  mImpl->Start(address);
}

HttpDownload::~HttpDownload() { mImpl->GiveUp(); }

void HttpDownload::Impl::Start(const std::string& address) {
  RestartIdleWatch();
  Watch(totalWatch, rules.totalLimit);
  if (core::Attempt([&] { Send(ParseAddress(nullptr, address.c_str())); })) return;
  // The failure is told from the main loop, like every other.
  StopWatches();
  Post([self = shared_from_this()] { self->Finish(std::nullopt); });
}

void HttpDownload::Impl::GiveUp() {
  answer = nullptr;
  StopWatches();
  g_cancellable_cancel(cancellable.Get());
}

void HttpDownload::Impl::Send(Uri uri) {
  if (!IsHttps(uri.get())) throw std::runtime_error("only https addresses are loaded");
  message = GRef<SoupMessage>::Adopt(soup_message_new_from_uri(SOUP_METHOD_GET, uri.get()));
  soup_message_add_flags(message.Get(), SOUP_MESSAGE_NO_REDIRECT);
  ConnectSignals();
  soup_session_send_async(session.Get(), message.Get(), G_PRIORITY_DEFAULT, cancellable.Get(),
                          SentCallback, Keep());
}

void HttpDownload::Impl::ConnectSignals() {
  networkSignal = Connect<void(GSocketClientEvent, GIOStream*)>(
      message.Get(), "network-event", [this](GSocketClientEvent event, GIOStream* connection) {
        OnEvent([&] { CheckConnection(event, connection); });
      });
  if (rules.trustedCa.empty()) return;
  certificateSignal = Connect<gboolean(GTlsCertificate*, GTlsCertificateFlags)>(
      message.Get(), "accept-certificate",
      [this](GTlsCertificate* certificate, GTlsCertificateFlags) -> gboolean {
        return IsTrusted(rules.trustedCa, certificate, soup_message_get_uri(message.Get()));
      });
}

void HttpDownload::Impl::OnHeaders(GAsyncResult* result) {
  GErrorCheck error;
  stream = GRef<GInputStream>::Adopt(soup_session_send_finish(session.Get(), result, error.Out()));
  error.Check();
  const unsigned status = soup_message_get_status(message.Get());
  if (SOUP_STATUS_IS_REDIRECTION(status)) return Redirect();
  if (!SOUP_STATUS_IS_SUCCESSFUL(status)) throw std::runtime_error("the server refused");
  ReadNext();
}

void HttpDownload::Impl::Redirect() {
  if (++redirects > rules.redirectLimit) throw std::runtime_error("too many redirects");
  SoupMessageHeaders* headers = soup_message_get_response_headers(message.Get());
  const char* location = soup_message_headers_get_one(headers, "Location");
  if (!location) throw std::runtime_error("a redirect to nowhere");
  Uri target = ParseAddress(soup_message_get_uri(message.Get()), location);
  Send(std::move(target));
}

void HttpDownload::Impl::ReadNext() {
  g_input_stream_read_async(stream.Get(), buffer.data(), buffer.size(), G_PRIORITY_DEFAULT,
                            cancellable.Get(), ReadCallback, Keep());
}

void HttpDownload::Impl::OnBytes(GAsyncResult* result) {
  GErrorCheck error;
  // A connection that ends before the announced length is an error of the stream.
  const gssize count = g_input_stream_read_finish(stream.Get(), result, error.Out());
  error.Check();
  if (count == 0) return Finish(std::move(body));
  if (static_cast<std::size_t>(count) > rules.sizeLimit - body.size()) {
    throw std::runtime_error("the answer is too long");
  }
  body.append(buffer.data(), static_cast<std::size_t>(count));
  ReadNext();
}

void HttpDownload::Impl::Finish(std::optional<std::string> outcome) {
  const Answer tell = std::exchange(answer, nullptr);
  if (!tell) return;
  GiveUp();
  ForgetAuthorities();
  core::Attempt([&] { tell(std::move(outcome)); });
}

void HttpDownload::Impl::Watch(guint& watch, std::chrono::milliseconds limit) {
  StopWatch(watch);
  watch = g_timeout_add(static_cast<guint>(limit.count()), LimitCallback, this);
}

void HttpDownload::Impl::StopWatch(guint& watch) {
  if (watch) g_source_remove(std::exchange(watch, 0));
}

void HttpDownload::Impl::StopWatches() {
  StopWatch(idleWatch);
  StopWatch(totalWatch);
}

void HttpDownload::Impl::SentCallback(GObject*, GAsyncResult* result, gpointer data) {
  const Keeper self = Taken(data);
  self->OnEvent([&] { self->OnHeaders(result); });
}

void HttpDownload::Impl::ReadCallback(GObject*, GAsyncResult* result, gpointer data) {
  const Keeper self = Taken(data);
  self->OnEvent([&] { self->OnBytes(result); });
}

// Goes on as a source, which the end of the download removes.
gboolean HttpDownload::Impl::LimitCallback(gpointer data) {
  const Keeper self = static_cast<Impl*>(data)->shared_from_this();
  self->Finish(std::nullopt);
  return G_SOURCE_CONTINUE;
}

}  // namespace platform
