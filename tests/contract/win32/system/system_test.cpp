// What only Windows has: long paths, names in every script, downloads that misbehave, libraries
// that are taken from the system's folder.
//
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <cstdlib>
#include <optional>

#include "platform/documents/files.h"
#include "platform/shared/documents/http_download.h"
#include "platform/system/profile.h"
#include "platform/system/program.h"
#include "platform/system/shell.h"
#include "platform/win32/system_library.h"
#include "platform/win32/wide_text.h"
#include "tests/contract/services_case.h"

namespace {

using platform::DownloadRules;
using platform::HttpDownload;
using std::chrono::milliseconds;

using Paths = ServiceCase;

TEST_F(Paths, OfAnyScriptWork) {
  const std::string folder = In("\u0645\u062c\u0644\u062f \u4e2d\u6587 \u00e5");
  platform::CreateFolder(folder);
  peer::WriteFile(folder + "\\\u00f6.ini", "[S]\r\nk=\xE5\r\n");
  EXPECT_TRUE(platform::FileExists(folder + "\\\u00f6.ini"));
  EXPECT_EQ(platform::ReadProfileString(folder + "\\\u00f6.ini", "S", "k", "", 256), "\u00e5");
  platform::WriteUtf16File(folder + "\\\u00f6.htm", "A");
  EXPECT_TRUE(peer::FileBytes(folder + "\\\u00f6.htm"));
}

TEST_F(Paths, MayBeLongerThanTheOldLimit) {
  std::string folder = peer::Folder();
  while (folder.size() < 400) {
    folder += "\\" + std::string(50, 'x');
    platform::CreateFolder(folder);
  }
  platform::WriteUtf16File(folder + "\\index.htm", "A");
  EXPECT_TRUE(platform::FileExists(folder + "\\index.htm"));
}

class Download : public ServiceCase {
 protected:
  using Body = std::optional<std::string>;

  static Body Get(const std::string& address, const DownloadRules& rules = {}) {
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

  /// The server's other answers: its file is named as for peer::Serve.
  static std::string On(const std::string& path) {
    return std::string(std::getenv("VELOR_TEST_SERVER")) + path;
  }
  static std::string File(const std::string& body) {
    const std::string address = peer::Serve(200, body);
    return address.substr(address.rfind('=') + 1);
  }
  static DownloadRules Impatient() {
    DownloadRules rules;
    rules.idleLimit = milliseconds(1500);
    return rules;
  }
};

TEST_F(Download, AnswersEveryByte) {
  std::string bytes;
  for (int i = 0; i < 300'000; ++i) bytes += static_cast<char>(i * 7);
  EXPECT_EQ(Get(On("/file/" + File(bytes))), bytes);
}

TEST_F(Download, AnswersAnEmptyBody) { EXPECT_EQ(Get(On("/file/" + File(""))), ""); }

TEST_F(Download, FollowsARedirectOverHttps) {
  EXPECT_EQ(Get(On("/redirect?to=/file/" + File("body"))), "body");
}

TEST_F(Download, TakesNothingThatComesFromARedirectAwayFromHttps) {
  EXPECT_EQ(Get(On("/redirect?to=http%3A//localhost%3A1/file/" + File("body"))), std::nullopt);
}

TEST_F(Download, EndsALoopOfRedirects) { EXPECT_EQ(Get(On("/loop")), std::nullopt); }

TEST_F(Download, FailsWhenTheConnectionEndsEarly) {
  EXPECT_EQ(Get(On("/cut?file=" + File("<r/>"))), std::nullopt);
}

TEST_F(Download, EndsAtTheSizeLimit) {
  DownloadRules rules;
  rules.sizeLimit = 1'000'000;
  EXPECT_EQ(Get(On("/blanks?megabytes=2"), rules), std::nullopt);
}

TEST_F(Download, EndsWhenNothingHappens) {
  EXPECT_EQ(Get(On("/silent"), Impatient()), std::nullopt);
  EXPECT_EQ(Get(On("/stall?file=" + File("body")), Impatient()), std::nullopt);
}

TEST_F(Download, GoesOnWhileSomethingHappens) {
  EXPECT_EQ(Get(On("/drip?pieces=6&pause=0.5&file=" + File("abcdef")), Impatient()), "abcdef");
}

TEST_F(Download, EndsADripThatTakesTooLong) {
  DownloadRules rules;
  rules.totalLimit = milliseconds(1500);
  EXPECT_EQ(Get(On("/drip?pieces=30&pause=0.3&file=" + File(std::string(30, 'x'))), rules),
            std::nullopt);
}

TEST_F(Download, RefusesAnAuthorityThatNobodyVouchesFor) {
  // The certificate is for "localhost"; for the number it is a stranger's.
  std::string address = On("/file/" + File("body"));
  address.replace(address.find("localhost"), 9, "127.0.0.1");
  EXPECT_EQ(Get(address), std::nullopt);
}

TEST_F(Download, TellsNothingOnceItIsGivenUp) {
  bool answered = false;
  {
    const HttpDownload download(On("/silent"), {}, [&](auto) { answered = true; });
  }
  EXPECT_EQ(Get(On("/file/" + File("later"))), "later");
  EXPECT_FALSE(answered);
}

TEST_F(Download, MayEndInItsOwnAnswer) {
  std::unique_ptr<HttpDownload> download;
  bool answered = false;
  download =
      std::make_unique<HttpDownload>(On("/file/" + File("body")), DownloadRules(), [&](auto) {
        download.reset();
        answered = true;
      });
  EXPECT_TRUE(peer::RunUntil([&] { return answered; }));
}

using Starting = ServiceCase;

TEST_F(Starting, ThrowsForWhatIsNotThere) {
  for (const std::string& line : {std::string(), In("none.exe"), '"' + In("none.exe") + "\" /a"}) {
    EXPECT_ANY_THROW(platform::RunCommandLine(line)) << line;
  }
  EXPECT_ANY_THROW(platform::RunElevated(In("none.exe"), peer::Folder()));
  EXPECT_ANY_THROW(platform::RunElevated("notepad.exe", peer::Folder()));
  EXPECT_ANY_THROW(platform::RunElevated("", peer::Folder()));
}

TEST_F(Starting, RunsAProgramWithItsArguments) {
  const std::string mark = In("was here");
  platform::RunCommandLine("cmd.exe /c mkdir \"" + mark + "\"");
  EXPECT_TRUE(peer::RunUntil([&] { return peer::IsFolder(mark); }));
}

using Libraries = ServiceCase;

TEST_F(Libraries, AreTakenFromTheSystemsFolder) {
  ASSERT_NE(platform::FindSystemFunction(L"version.dll", "VerQueryValueW"), nullptr);
  wchar_t file[MAX_PATH] = L"", folder[MAX_PATH] = L"";
  GetModuleFileNameW(GetModuleHandleW(L"version.dll"), file, MAX_PATH);
  GetSystemDirectoryW(folder, MAX_PATH);
  EXPECT_EQ(_wcsnicmp(file, folder, wcslen(folder)), 0);
}

TEST_F(Libraries, AnswerNothingForWhatTheyLack) {
  EXPECT_EQ(platform::FindSystemFunction(L"no such.dll", "Function"), nullptr);
  EXPECT_EQ(platform::FindSystemFunction(L"kernel32.dll", "NoSuchFunction"), nullptr);
  EXPECT_ANY_THROW(platform::RequiredSystemFunction(L"kernel32.dll", "NoSuchFunction"));
}

using Arguments = ServiceCase;

TEST_F(Arguments, ComeWithoutTheProgramsOwnPath) {
  EXPECT_THAT(platform::CommandLineArguments(),
              testing::Not(testing::HasSubstr("contract_services")));
}

}  // namespace
