// Stands for the system's WebBrowser control in the tests' own prefix, where the system has no
// engine: a window, the interfaces that the program uses, and a connection to the host that shows
// the page. It must not know what the program expects; it tells what the engine does.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "tests/e2e/win32/control/basic_control.h"
#include "tests/e2e/win32/control/page_connection.h"

namespace page {

class PageControl final : public BasicControl {
 public:
  PageControl() = default;

  // IWebBrowser2: what the program uses.
  HRESULT STDMETHODCALLTYPE Navigate2(VARIANT* address, VARIANT*, VARIANT*, VARIANT*,
                                      VARIANT*) override;
  HRESULT STDMETHODCALLTYPE get_Document(IDispatch** document) override;
  HRESULT STDMETHODCALLTYPE ExecWB(OLECMDID command, OLECMDEXECOPT, VARIANT* argument,
                                   VARIANT*) override;

  // IOleObject
  HRESULT STDMETHODCALLTYPE Close(DWORD) override;
  HRESULT STDMETHODCALLTYPE DoVerb(LONG verb, LPMSG message, IOleClientSite*, LONG, HWND parent,
                                   LPCRECT place) override;

  // IOleWindow, IOleInPlaceObject, IOleInPlaceActiveObject
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
  HRESULT STDMETHODCALLTYPE InPlaceDeactivate() override;
  HRESULT STDMETHODCALLTYPE SetObjectRects(LPCRECT place, LPCRECT) override;
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(LPMSG message) override;

 private:
  static LRESULT CALLBACK HandleMessage(HWND window, UINT message, WPARAM first, LPARAM second);
  LRESULT Handle(UINT message, WPARAM first, LPARAM second);
  void Activate(HWND parent, const RECT& place);
  void TellSite();
  void TellPolicy();
  void TakeEvents();
  void Told(const Fields& event);
  void Resized();
  void Paint(HDC screen);

  bool IsCancelled(const std::string& address);
  bool IsNewWindowCancelled(const std::string& address);
  void FireAddress(DISPID event, const std::string& address);

  std::shared_ptr<PageConnection> mConnection;
  HWND mWindow = nullptr;
  bool mShown = false;
};

}  // namespace page
