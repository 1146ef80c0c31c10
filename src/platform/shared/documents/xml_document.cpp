// Documents that are loaded and saved, on every system: when they are complete and who is told. The
// tree is each back end's; kept here are the bytes as they came, since a document is saved
// unchanged.
//
// SPDX-License-Identifier: MIT
#include "platform/documents/xml_document.h"

#include <optional>
#include <stdexcept>
#include <utility>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/errors.h"
#include "platform/shared/documents/document_files.h"
#include "platform/shared/documents/http_download.h"
#include "platform/shared/window/event_queue.h"

namespace platform {
namespace {

// MSXML's code for every failed load.
constexpr int kFailed = static_cast<int>(0x80004005);
// The same as for a download: what one may bring, a file may hold.
constexpr std::size_t kFileLimit = std::size_t{64} << 20;

bool IsAddress(const std::string& addressOrPath) {
  return addressOrPath.find("://") != std::string::npos;
}

bool IsHttpsAddress(const std::string& addressOrPath) {
  return core::UpperCase(addressOrPath.substr(0, 8)) == "HTTPS://";
}

std::optional<std::string> FileBytes(const std::string& path) {
  std::optional<std::string> bytes;
  core::Attempt([&] { bytes = ReadDocument(path, kFileLimit); });
  return bytes;
}

}  // namespace

struct XmlDocument::Impl : std::enable_shared_from_this<Impl> {
  void Clear();
  void Load(const std::string& addressOrPath);
  void SetContent(std::optional<std::string> text);
  void Complete(std::optional<std::string> text);

  std::function<void()> handler;
  std::string bytes;
  bool holdsAnything = false;
  XmlNode document;
  int errorCode = 0;
  bool isComplete = true;
  /// Loads so far, begun or given up: by it a posted completion knows that it is still awaited.
  int loads = 0;
  std::unique_ptr<HttpDownload> download;
};

XmlDocument::XmlDocument() : mImpl(std::make_shared<Impl>()) {}

XmlDocument::~XmlDocument() {
  mImpl->handler = nullptr;
  mImpl->Clear();
}

void XmlDocument::OnReadyStateChange(std::function<void()> handler) {
  mImpl->handler = std::move(handler);
}

void XmlDocument::Load(const std::string& addressOrPath) { mImpl->Load(addressOrPath); }

void XmlDocument::LoadXml(std::string text) {
  mImpl->Clear();
  mImpl->SetContent(std::move(text));
}

bool XmlDocument::IsComplete() const { return mImpl->isComplete; }

int XmlDocument::ParseErrorCode() const { return mImpl->errorCode; }

XmlNode XmlDocument::DocumentNode() const { return mImpl->document; }

XmlNode XmlDocument::DocumentElement() const {
  return mImpl->document ? mImpl->document.SelectSingleNode("/*") : XmlNode();
}

void XmlDocument::Save(const std::string& path) const {
  if (!mImpl->holdsAnything) throw Unavailable("the document holds nothing to save");
  ReplaceDocument(path, mImpl->bytes);
}

// Also gives up a load under way, of which nothing is reported then.
void XmlDocument::Impl::Clear() {
  ++loads;
  download.reset();
  bytes.clear();
  holdsAnything = false;
  document = XmlNode();
  isComplete = true;
  errorCode = 0;
}

void XmlDocument::Impl::Load(const std::string& addressOrPath) {
  Clear();
  isComplete = false;
  if (IsHttpsAddress(addressOrPath)) {
    download = std::make_unique<HttpDownload>(
        addressOrPath, DownloadRules{},
        [this](std::optional<std::string> body) { Complete(std::move(body)); });
    return;
  }
  PostTo(weak_from_this(), [load = loads, text = IsAddress(addressOrPath)
                                                     ? std::nullopt
                                                     : FileBytes(addressOrPath)](Impl& document) {
    if (document.loads == load) document.Complete(text);
  });
}

void XmlDocument::Impl::SetContent(std::optional<std::string> text) {
  errorCode = kFailed;
  core::Attempt([&] {
    document = ParseXml(text.value());
    bytes = std::move(text).value();
    holdsAnything = true;
    errorCode = 0;
  });
}

void XmlDocument::Impl::Complete(std::optional<std::string> text) {
  const auto kept = shared_from_this();  // the handler may destroy the document
  SetContent(std::move(text));
  isComplete = true;
  download.reset();
  Notify(handler);
}

}  // namespace platform
