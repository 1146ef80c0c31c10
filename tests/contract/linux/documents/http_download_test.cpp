// Downloads: whom they trust, where they go, what they endure.
//
// SPDX-License-Identifier: MIT
#include "platform/shared/documents/http_download.h"

#include <glib.h>

#include <ctime>
#include <memory>
#include <optional>

#include "platform/documents/xml_document.h"
#include "tests/contract/linux/services_driver.h"
#include "tests/contract/services_case.h"
#include "tests/support/folders.h"

namespace {

using platform::DownloadRules;
using platform::HttpDownload;
using std::chrono::milliseconds;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class Download : public ServiceCase {
 protected:
  using Body = std::optional<std::string>;

  static DownloadRules Rules() {
    DownloadRules rules;
    rules.trustedCa = peer::CertificateFolder() / "ca.pem";
    return rules;
  }

  static Body Get(const std::string& address, const DownloadRules& rules = Rules()) {
    bool answered = false;
    Body answer;
    const HttpDownload download(address, rules, [&](Body body) {
      EXPECT_FALSE(answered);
      answered = true;
      answer = std::move(body);
    });
    EXPECT_FALSE(answered) << "answered from inside the call";
    EXPECT_TRUE(peer::RunUntil([&] { return answered; }));
    return answer;
  }

  static std::string On(const std::string& path) { return peer::TheServer().Address(path); }
  static std::string File(const std::string& body) { return peer::TheServer().AddFile(body); }
  static std::string Escaped(const std::string& address) {
    return platform::GMemory<char>(g_uri_escape_string(address.c_str(), nullptr, FALSE)).get();
  }
  static std::string RedirectTo(const std::string& target, int status = 302) {
    return On("/redirect?status=" + std::to_string(status) + "&to=" + Escaped(target));
  }
};

TEST_F(Download, AnswersTheBody) { EXPECT_EQ(Get(On("/file/" + File("body"))), "body"); }

TEST_F(Download, AnswersEveryByte) {
  std::string bytes;
  for (int i = 0; i < 300'000; ++i) bytes += static_cast<char>(i * 7);
  EXPECT_EQ(Get(On("/file/" + File(bytes))), bytes);
}

TEST_F(Download, AnswersAnEmptyBody) { EXPECT_EQ(Get(On("/file/" + File(""))), ""); }

TEST_F(Download, DecodesACompressedBody) {
  EXPECT_EQ(Get(On("/gzip?file=" + File("body"))), "body");
}

TEST_F(Download, FailsForAnyStatusOtherThanSuccess) {
  for (const int status : {304, 400, 401, 403, 404, 407, 410, 429, 500, 502, 503}) {
    EXPECT_EQ(Get(On("/status/" + std::to_string(status) + "?file=" + File("body"))), std::nullopt)
        << status;
  }
}

TEST_F(Download, TakesOtherStatusesOfSuccess) {
  EXPECT_EQ(Get(On("/status/203?file=" + File("body"))), "body");
}

// Trust

TEST_F(Download, RefusesAnAuthorityThatNobodyVouchesFor) {
  DownloadRules shipped = Rules();
  shipped.trustedCa.clear();
  EXPECT_EQ(Get(On("/file/" + File("body")), shipped), std::nullopt);
}

TEST_F(Download, SendsNothingToAServerThatItDoesNotTrust) {
  const std::string name = File("untrusted-body");
  DownloadRules shipped = Rules();
  shipped.trustedCa.clear();
  Get(On("/file/" + name + "?secret"), shipped);
  for (const std::string& line : peer::TheServer().Log())
    EXPECT_THAT(line, Not(HasSubstr("secret")));
}

TEST_F(Download, RefusesAnotherAuthorityThanTheAdditionalOne) {
  const auto folder = peer::NativeFolder() / "ca";
  peer::Run({std::string(support::kSourceFolder) + "/scripts/make-local-ca", folder});
  peer::HttpServer other(folder);
  EXPECT_EQ(Get(other.Address("/file/" + other.AddFile("body"))), std::nullopt);
  DownloadRules rules = Rules();
  rules.trustedCa = folder / "ca.pem";
  EXPECT_EQ(Get(other.Address("/file/" + other.AddFile("body")), rules), "body");
}

TEST_F(Download, RefusesACertificateForAnotherName) {
  const std::string port = std::to_string(peer::TheServer().Port());
  EXPECT_EQ(Get("https://127.0.0.1:" + port + "/file/" + File("body")), std::nullopt);
}

TEST_F(Download, FailsWhenTheAuthoritysFileIsMissing) {
  DownloadRules rules = Rules();
  rules.trustedCa = peer::NativeFolder() / "none.pem";
  EXPECT_EQ(Get(On("/file/" + File("body")), rules), std::nullopt);
}

class Certificate : public Download {
 protected:
  /// A server whose certificate comes from an authority of its own, made with these options.
  static std::optional<std::string> GetFromServerWith(const std::string& extensions,
                                                      const std::string& days) {
    const auto folder = peer::NativeFolder();
    const auto at = [&](const char* name) { return (folder / name).string(); };
    peer::WriteFile(In("extensions"), "basicConstraints=CA:FALSE\n" + extensions);
    peer::Run({"openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj",
               "/CN=authority", "-addext", "keyUsage=critical,keyCertSign", "-keyout", at("ca.key"),
               "-out", at("ca.pem")});
    peer::Run({"openssl", "req", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=localhost",
               "-keyout", at("server.key"), "-out", at("server.csr")});
    peer::Run({"openssl", "x509", "-req", "-in", at("server.csr"), "-CA", at("ca.pem"), "-CAkey",
               at("ca.key"), "-CAcreateserial", "-days", days, "-extfile", at("extensions"), "-out",
               at("server.pem")});
    if (days == "0") WaitUntilExpired();
    peer::HttpServer server(folder);
    DownloadRules rules = Rules();
    rules.trustedCa = at("ca.pem");
    return Get(server.Address("/file/" + server.AddFile("body")), rules);
  }

 private:
  static void WaitUntilExpired() {
    const std::time_t made = std::time(nullptr);
    ASSERT_TRUE(peer::RunUntil([&] { return std::time(nullptr) > made + 1; }));
  }
};

TEST_F(Certificate, IsTakenWhenItIsTheServersOwn) {
  EXPECT_EQ(GetFromServerWith("subjectAltName=DNS:localhost\nextendedKeyUsage=serverAuth", "2"),
            "body");
}

TEST_F(Certificate, IsRefusedWhenItHasExpired) {
  EXPECT_EQ(GetFromServerWith("subjectAltName=DNS:localhost\nextendedKeyUsage=serverAuth", "0"),
            std::nullopt);
}

TEST_F(Certificate, IsRefusedForAnotherName) {
  EXPECT_EQ(GetFromServerWith("subjectAltName=DNS:elsewhere\nextendedKeyUsage=serverAuth", "2"),
            std::nullopt);
}

TEST_F(Download, SpeaksHttp11ToAServerThatPrefersHttp2) {
  EXPECT_EQ(Get(On("/file/" + File("body"))), "body");
  EXPECT_THAT(peer::TheServer().Log().back(), HasSubstr(R"("protocol": "http/1.1")"));
}

// Redirects

TEST_F(Download, FollowsARedirectOverHttps) {
  for (const int status : {301, 302, 303, 307, 308}) {
    EXPECT_EQ(Get(RedirectTo("/file/" + File("body"), status)), "body") << status;
  }
  EXPECT_EQ(Get(RedirectTo(On("/file/" + File("body")))), "body");
}

TEST_F(Download, LeavesHttpsForNothing) {
  peer::HttpServer canary;
  const std::string body = canary.Address("/file/" + canary.AddFile("body"));
  EXPECT_EQ(Get(RedirectTo(body)), std::nullopt);
  EXPECT_EQ(Get(RedirectTo(RedirectTo(body))), std::nullopt);
  EXPECT_EQ(Get(RedirectTo("//localhost:" + std::to_string(canary.Port()) + "/")), std::nullopt);
  EXPECT_EQ(Get(body), std::nullopt);
  // The last but one speaks TLS to it; in no other case may it hear of anybody.
  for (const std::string& line : canary.Log()) EXPECT_THAT(line, Not(HasSubstr("request")));
}

TEST_F(Download, ConnectsToNoServerOverPlainHttp) {
  peer::HttpServer canary;
  EXPECT_EQ(Get(RedirectTo(canary.Address("/"))), std::nullopt);
  EXPECT_EQ(Get(canary.Address("/")), std::nullopt);
  EXPECT_THAT(canary.Log(), IsEmpty());
}

TEST_F(Download, GoesToNoOtherScheme) {
  for (const char* target : {"file:///etc/hostname", "ftp://localhost/", "data:,body",
                             "resource:///org/gtk", "javascript:1", "https://", "https:///a"}) {
    EXPECT_EQ(Get(RedirectTo(target)), std::nullopt) << target;
  }
}

TEST_F(Download, EndsARedirectLoop) { EXPECT_EQ(Get(On("/loop")), std::nullopt); }

TEST_F(Download, KeepsNoCookie) {
  const std::string target = "/file/" + File("body") + "?after-cookie";
  EXPECT_EQ(Get(On("/cookie?to=" + Escaped(target))), "body");
  const std::string last = peer::TheServer().Log().back();
  EXPECT_THAT(last, AllOf(HasSubstr("after-cookie"), Not(HasSubstr("Cookie"))));
}

// Interruptions

TEST_F(Download, FailsWhenTheConnectionEndsBeforeTheAnnouncedLength) {
  EXPECT_EQ(Get(On("/cut?file=" + File("<r/>"))), std::nullopt);
}

TEST_F(Download, FailsWhenTheConnectionIsCutBeforeTheLastChunk) {
  EXPECT_EQ(Get(On("/cut-chunks?file=" + File("<r/>"))), std::nullopt);
}

TEST_F(Download, FailsWhenTheConnectionIsCutAndNoLengthWasAnnounced) {
  EXPECT_EQ(Get(On("/cut-unannounced?file=" + File("<r/>"))), std::nullopt);
}

TEST_F(Download, TakesABodyThatTheConnectionsEndCompletes) {
  EXPECT_EQ(Get(On("/unannounced?file=" + File("<r/>"))), "<r/>");
}

TEST_F(Download, IsNoDocumentWhenACompressedBodyEndsEarly) {
  platform::XmlDocument document;
  document.Load(On("/gzip-cut?file=" + File("<r>" + std::string(100, 'x') + "</r>")));
  ASSERT_TRUE(peer::RunUntil([&] { return document.IsComplete(); }));
  EXPECT_NE(document.ParseErrorCode(), 0);
}

TEST_F(Download, IsNoDocumentWhenItWasCutThoughWellFormed) {
  platform::XmlDocument document;
  document.Load(On("/cut?file=" + File("<r/>")));
  ASSERT_TRUE(peer::RunUntil([&] { return document.IsComplete(); }));
  EXPECT_NE(document.ParseErrorCode(), 0);
  EXPECT_FALSE(document.DocumentNode());
}

TEST_F(Download, GivesUpOnAServerThatSaysNothing) {
  DownloadRules rules = Rules();
  rules.idleLimit = milliseconds(300);
  EXPECT_EQ(Get(On("/silent"), rules), std::nullopt);
}

TEST_F(Download, GivesUpOnAServerThatStopsHalfway) {
  DownloadRules rules = Rules();
  rules.idleLimit = milliseconds(300);
  EXPECT_EQ(Get(On("/stall?file=" + File("<r/>")), rules), std::nullopt);
}

TEST_F(Download, EnduresASlowServerThatGoesOn) {
  DownloadRules rules = Rules();
  rules.idleLimit = milliseconds(1000);
  EXPECT_EQ(Get(On("/drip?pieces=8&pause=0.3&file=" + File("slow body")), rules), "slow body");
}

TEST_F(Download, EndsADripThatTakesTooLong) {
  DownloadRules rules = Rules();
  rules.totalLimit = milliseconds(1500);
  EXPECT_EQ(Get(On("/drip?pieces=30&pause=0.3&file=" + File(std::string(30, 'x'))), rules),
            std::nullopt);
}

TEST_F(Download, WaitsThirtySecondsForAWordInTheProgramAndTenMinutesAltogether) {
  EXPECT_EQ(DownloadRules().idleLimit, std::chrono::seconds(30));
  EXPECT_EQ(DownloadRules().totalLimit, std::chrono::minutes(10));
}

// Size

TEST_F(Download, TakesSixtyFourMegabytesInTheProgram) {
  EXPECT_EQ(DownloadRules().sizeLimit, std::size_t{64} * 1024 * 1024);
}

TEST_F(Download, TakesABodyOfTheLimitAndNoByteMore) {
  DownloadRules rules = Rules();
  rules.sizeLimit = 5;
  EXPECT_EQ(Get(On("/file/" + File("12345")), rules), "12345");
  EXPECT_EQ(Get(On("/file/" + File("123456")), rules), std::nullopt);
}

TEST_F(Download, CountsWhatComesOutOfACompressedBody) {
  DownloadRules rules = Rules();
  rules.sizeLimit = std::size_t{1} << 20;
  EXPECT_EQ(Get(On("/bomb?megabytes=2"), rules), std::nullopt);
  EXPECT_EQ(Get(On("/blanks?megabytes=2"), rules), std::nullopt);
}

// The owner's end

TEST_F(Download, AnswersNothingOnceItsOwnerHasGone) {
  bool answered = false;
  {
    const HttpDownload download(On("/file/" + File("body")), Rules(),
                                [&](Body) { answered = true; });
  }
  EXPECT_EQ(Get(On("/file/" + File("later"))), "later");
  EXPECT_FALSE(answered);
}

TEST_F(Download, MayBeGivenUpHalfway) {
  bool answered = false;
  {
    const std::size_t before = peer::TheServer().Log().size();
    const HttpDownload download(On("/stall?file=" + File("halfway")), Rules(),
                                [&](Body) { answered = true; });
    // A connection and a request.
    ASSERT_TRUE(peer::RunUntil([&] { return peer::TheServer().Log().size() >= before + 2; }));
  }
  EXPECT_EQ(Get(On("/file/" + File("later"))), "later");
  EXPECT_FALSE(answered);
}

TEST_F(Download, MayGoInsideItsOwnAnswer) {
  std::unique_ptr<HttpDownload> download;
  bool answered = false;
  download = std::make_unique<HttpDownload>(On("/file/" + File("body")), Rules(), [&](Body) {
    download.reset();
    answered = true;
  });
  EXPECT_TRUE(peer::RunUntil([&] { return answered; }));
}

TEST_F(Download, FailsForAddressesThatAreNone) {
  for (const char* address : {"", "https", "https://", "https://[", "https://local host/",
                              "https://localhost:99999/", "HTTP://localhost/"}) {
    EXPECT_EQ(Get(address), std::nullopt) << address;
  }
}

}  // namespace
