// See frmSelect.h. Reads in the order of events: load, documents, page, ticks, Install, unload.
//
// SPDX-License-Identifier: MIT
#include "app/frmSelect.h"

#include <array>
#include <chrono>
#include <utility>

#include "app/modDisplayHTMLInWebbrowser.h"
#include "app/modMain.h"
#include "app/modXPStyle.h"
#include "catalogue/catalogue_reader.h"
#include "catalogue/install_queue.h"
#include "catalogue/page_builder.h"
#include "catalogue/selection_status.h"
#include "catalogue/voice_names.h"
#include "core/attempt.h"
#include "core/build_settings.h"
#include "core/text.h"
#include "i18n/modI18N2.h"
#include "paths/modPath.h"
#include "platform/documents/files.h"
#include "platform/system/shell.h"
#include "platform/window/dialogs.h"
#include "platform/window/event_loop.h"

using core::Attempt;
using core::AttemptOr;
using platform::PageInputs;
using platform::XmlDocument;
using platform::XmlNode;

namespace {

/// The title of both messages, and the window's where the language files are missing.
constexpr const char* kTitle = "Velor Voice Setup";

// The window's design, in twips. The client area shows about fifteen voices.
constexpr float kClientWidth = 10200;
constexpr float kClientHeight = 8700;
constexpr float kLogoWidth = 1500;
constexpr float kButtonWidth = 1215;
constexpr float kButtonHeight = 495;
constexpr float kStatusWidth = 6900;
constexpr float kBrowserSize = 5415;

constexpr int kCheckSelectedMilliseconds = 500;
/// A page that ends the engine every time is not to keep the machine busy.
constexpr int kReloadMilliseconds = 60'000;
/// How long unloading waits for the page's inputs that Install has requested.
constexpr std::chrono::seconds kInputsLimit(2);

void ShowText(const std::string& key) {
  Attempt(
      [&] { platform::ShowMessage(modI18N2::GetText(key), kTitle, modI18N2::IsRightToLeft()); });
}

std::string Text(const std::string& key) { return modI18N2::GetText(key); }

/// The bare name of a voice that Parvix speaks with in the first or second configured language.
std::string DefaultVoice(const std::string& key, std::int16_t slot) {
  std::string name = modI18N2::GetLanguageSetting(key, slot, "");
  return CleanVoiceName(name);
}

/// Added in the order of the tab key: first the page, then the button.
WindowControls AddControls(platform::Form& form) {
  auto picLogo = form.AddControl("PictureBox", "picLogo", kLogoWidth, kBrowserSize);
  auto webOptions = form.AddControl("WebBrowser", "webOptions", kBrowserSize, kBrowserSize);
  auto lblStatus = form.AddControl("Label", "lblStatus", kStatusWidth, kButtonHeight);
  auto cmdInstall = form.AddControl("CommandButton", "cmdInstall", kButtonWidth, kButtonHeight);
  Attempt([&] { cmdInstall.SetCaption("Install"); });
  // There is nothing to install before something is ticked.
  Attempt([&] { cmdInstall.SetEnabled(false); });
  return {picLogo, webOptions, cmdInstall, lblStatus};
}

}  // namespace

std::string GetCatalogueURL() {
  return "https://" + std::string(core::kDownloadServer) + "/downloads/voices.xml";
}

frmSelect::frmSelect(std::function<void()> whenUnloaded)
    : mForm("frmSelect", kClientWidth, kClientHeight),
      mControls(AddControls(mForm)),
      webOptions(mControls.webOptions),
      tmrCheckSelected(kCheckSelectedMilliseconds, [this] { tmrCheckSelected_Timer(); }),
      tmrReload(kReloadMilliseconds, [this] { tmrReload_Timer(); }) {
  Attempt([&] { mForm.SetCaption(kTitle); });
  mForm.OnResize([this] { Form_Resize(); });
  mForm.OnUnload([this] { Form_Unload(); });
  mForm.OnUnloaded(std::move(whenUnloaded));
  mControls.cmdInstall.OnClick([this] { cmdInstall_Click(); });
  // A plain search, so that every link into the web is dead, whatever surrounds it.
  webOptions.OnBeforeNavigate(
      [](const std::string& address) { return core::ContainsIgnoringCase(address, "http"); });
  webOptions.OnPageLost([this] { webOptions_PageLost(); });
  Form_Initialize();
}

void frmSelect::Show() {
  Form_Load();
  mForm.Show();
}

void frmSelect::Form_Initialize() { modXPStyle::InitCommonControlsXP(); }

void frmSelect::Form_Load() {
  Attempt([&] { modI18N2::TranslateForm(mForm, 0); });
  // The wait page has no words of its own; who cannot see it hears what the status line says.
  Attempt([&] { webOptions.SetBusyText(mControls.lblStatus.Caption()); });
  Attempt([&] { mControls.lblStatus.Announce(mControls.lblStatus.Caption()); });
  Attempt([&] { mOfferedVoices.clear(); });
  Attempt([&] { webOptions.Navigate(modPath::GetAppFolder() + "\\wait.htm"); });
  Attempt([&] { StartLoadingCatalogue(); });
  Attempt([&] { StartLoadingQueue(); });
  Attempt([&] { mInstaller = std::make_unique<platform::WindowsInstaller>(); });
}

void frmSelect::StartLoadingCatalogue() {
  mProductsDoc = std::make_unique<XmlDocument>();
  mProductsDoc->OnReadyStateChange([this] { mProductsDoc_onreadystatechange(); });
  mProductsDoc->Load(GetCatalogueURL());
}

void frmSelect::StartLoadingQueue() {
  const std::string path = modPath::GetQueuePath();
  if (!AttemptOr(false, [&] { return platform::FileExists(path); })) {
    mQueueLoaded = true;  // nothing to wait for
    return;
  }
  mQueueDoc = std::make_unique<XmlDocument>();
  mQueueDoc->OnReadyStateChange([this] { mQueueDoc_onreadystatechange(); });
  mQueueDoc->Load(path);
}

void frmSelect::mProductsDoc_onreadystatechange() {
  if (!mProductsDoc->IsComplete()) return;
  if (mProductsDoc->ParseErrorCode() != 0) {
    ReportFailedCatalogue();
    return;
  }
  mProductsLoaded = true;
  CheckDocumentsLoaded();
}

void frmSelect::mQueueDoc_onreadystatechange() {
  if (!mQueueDoc->IsComplete()) return;
  if (mQueueDoc->ParseErrorCode() != 0) mQueueDoc.reset();
  mQueueLoaded = true;
  CheckDocumentsLoaded();
}

/// Each document completes once, so the one that completes last builds the page.
void frmSelect::CheckDocumentsLoaded() {
  if (mProductsLoaded && mQueueLoaded) BuildVoicesPage(*mProductsDoc);
}

void frmSelect::ReportFailedCatalogue() {
  // The system may close the window while the message is shown, as at the end of a session.
  const auto self = shared_from_this();
  Attempt([&] { mForm.Hide(); });
  ShowText("Failed to access Velor Software website. Please check your Internet connection.");
  if (!modMain::gFallbackCommand.empty()) {
    Attempt([] { platform::RunCommandLine(modMain::gFallbackCommand); });
  }
  mForm.Unload();
}

void frmSelect::BuildVoicesPage(const XmlDocument& catalogue) {
  std::vector<clsVoice> voices;
  VoicesPage page;
  Attempt([&] {
    voices = ReadCatalogue(catalogue.DocumentElement(), modI18N2::GetLanguage1(), mInstaller.get());
  });
  Attempt([&] {
    page = BuildPage(std::move(voices), Text,
                     {DefaultVoice("Speech.Voice1", 1), DefaultVoice("Speech.Voice2", 2)},
                     mQueueDoc ? mQueueDoc->DocumentElement() : XmlNode(), mInstaller.get());
  });
  mOfferedVoices = std::move(page.offered);
  mAnyVoiceInstalled = page.anyVoiceInstalled;
  Attempt([&] { modDisplayHTMLInWebbrowser::DisplayHTMLInWebbrowser(page.body, webOptions); });
  Attempt([&] { tmrCheckSelected.SetEnabled(true); });
}

void frmSelect::tmrCheckSelected_Timer() {
  // What would be read is what is shown already.
  if (mAskingSelection || !webOptions.InputsMayHaveChanged()) return;
  mAskingSelection = true;
  webOptions.ReadInputs([this](const PageInputs& inputs) {
    mAskingSelection = false;
    ShowSelection(inputs);
  });
}

/// Sets only what differs, so that nothing flickers and a screen reader speaks changes alone.
void frmSelect::ShowSelection(const PageInputs& inputs) {
  auto& cmdInstall = mControls.cmdInstall;
  auto& lblStatus = mControls.lblStatus;
  const Selection selection = inputs ? CountSelection(*inputs, mOfferedVoices) : Selection();
  const bool anything = selection.count > 0;
  const bool anythingBefore = AttemptOr(false, [&] { return cmdInstall.Enabled(); });
  Attempt([&] {
    if (anythingBefore != anything) cmdInstall.SetEnabled(anything);
  });
  Attempt([&] {
    const std::string text = StatusText(selection, Text);
    if (lblStatus.Caption() == text) return;
    lblStatus.SetCaption(text);
    if (anything || anythingBefore) lblStatus.Announce(SpokenStatusText(selection, Text));
  });
}

/// The ticks are lost. Install would replace the queue of an earlier run by an empty one.
void frmSelect::webOptions_PageLost() {
  mPageLost = true;
  Attempt([&] { mControls.cmdInstall.SetEnabled(false); });
  if (!tmrReload.Enabled()) tmrReload_Timer();
}

void frmSelect::tmrReload_Timer() {
  tmrReload.SetEnabled(mPageLost);
  if (std::exchange(mPageLost, false)) Attempt([&] { webOptions.Reload(); });
}

void frmSelect::cmdInstall_Click() {
  if (mInstalling) return;
  mInstalling = true;
  mAwaitingInputs = true;
  webOptions.ReadInputs([this](const PageInputs& inputs) {
    mAwaitingInputs = false;
    Install(inputs);
  });
}

/// A window that is closed right after the click on Install still installs.
void frmSelect::AwaitInputs() {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + kInputsLimit;
  while (mAwaitingInputs && Clock::now() < deadline) platform::ProcessPendingEvents();
}

void frmSelect::Install(const PageInputs& inputs) {
  if (!mProductsDoc) return;  // unloading has waited long enough
  // Asking for elevated rights may handle events, and so end the window.
  const auto self = shared_from_this();
  Attempt([&] { SaveQueue(inputs); });
  Attempt([&] { mProductsDoc->Save(modPath::GetProductsPath()); });
  Attempt([] {
    const std::string folder = modPath::GetAppFolder();
    platform::RunElevated(folder + "\\VelorVoiceInstaller.exe", folder);
  });
  mInstallerStarted = true;
  mForm.Unload();
}

void frmSelect::SaveQueue(const PageInputs& inputs) {
  XmlDocument queue;
  queue.LoadXml(QueueText(inputs.value_or(std::vector<platform::InputState>()), mOfferedVoices));
  queue.Save(modPath::GetQueuePath());
}

void frmSelect::Form_Resize() {
  if (mForm.IsMinimised()) return;
  PlaceControls(mControls, mForm.ClientWidth(), mForm.ClientHeight(), platform::TwipsPerPixelX(),
                platform::TwipsPerPixelY());
}

/// Whoever closes the window is done with it: a document that arrives while the message is shown
/// brings up no page and no second message.
void frmSelect::Form_Unload() {
  tmrCheckSelected.SetEnabled(false);
  tmrReload.SetEnabled(false);
  AwaitInputs();
  mProductsDoc.reset();
  mQueueDoc.reset();
  if (!mAnyVoiceInstalled && !mInstallerStarted) ShowText("Get more voices prompt");
}
