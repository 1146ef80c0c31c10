// The program's only window: loads the catalogue and an earlier queue, shows the voices, follows
// the ticks, hands the selection to the installer program. It decides; the modules below do the
// work.
//
// Created -> waiting (wait page, both documents load) -> page shown -> unloaded; a catalogue that
// cannot be loaded leads from waiting straight to unloaded.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/layout.h"
#include "catalogue/clsVoice.h"
#include "platform/documents/xml_document.h"
#include "platform/system/windows_installer.h"
#include "platform/window/form.h"
#include "platform/window/web_browser.h"

/// The address of the voice catalogue.
std::string GetCatalogueURL();

/// Owned by a std::shared_ptr, so that a handler which shows a message, and with it handles events,
/// still has its window when the owner lets go of it meanwhile.
class frmSelect : public std::enable_shared_from_this<frmSelect> {
 public:
  /// `whenUnloaded` is told from the event loop after the window has gone; the owner may let go of
  /// this object in it.
  explicit frmSelect(std::function<void()> whenUnloaded);

  /// Starts loading, then shows the window.
  void Show();

 private:
  void Form_Initialize();
  void Form_Load();
  void Form_Resize();
  void Form_Unload();

  void StartLoadingCatalogue();
  void StartLoadingQueue();
  void mProductsDoc_onreadystatechange();
  void mQueueDoc_onreadystatechange();
  void CheckDocumentsLoaded();
  void ReportFailedCatalogue();

  void BuildVoicesPage(const platform::XmlDocument& catalogue);
  void tmrCheckSelected_Timer();
  void ShowSelection(const platform::PageInputs& inputs);
  void webOptions_PageLost();
  void tmrReload_Timer();
  void cmdInstall_Click();
  void Install(const platform::PageInputs& inputs);
  void AwaitInputs();
  void SaveQueue(const platform::PageInputs& inputs);

  platform::Form mForm;
  WindowControls mControls;
  platform::WebBrowser webOptions;
  platform::Timer tmrCheckSelected;
  /// Enabled for the minute after a page that was lost has been loaded again.
  platform::Timer tmrReload;

  /// Null where there is no Windows Installer.
  std::unique_ptr<platform::WindowsInstaller> mInstaller;
  /// In the order of the page's check boxes.
  std::vector<clsVoice> mOfferedVoices;
  std::unique_ptr<platform::XmlDocument> mProductsDoc;
  /// Null when there is no queue file or it is malformed.
  std::unique_ptr<platform::XmlDocument> mQueueDoc;
  /// The queue document has settled: loaded, failed, or absent.
  bool mQueueLoaded = false;
  /// The catalogue has loaded without error.
  bool mProductsLoaded = false;
  /// At least one voice of the catalogue is installed already.
  bool mAnyVoiceInstalled = false;
  /// The installer program has been started.
  bool mInstallerStarted = false;

  /// The page has been lost and not been loaded again yet.
  bool mPageLost = false;

  // The page answers later, so a question can be under way when the next one is due.
  bool mAskingSelection = false;
  bool mInstalling = false;
  /// Install has requested the page's inputs and has not got them yet.
  bool mAwaitingInputs = false;
};
