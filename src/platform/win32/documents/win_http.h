// The functions of winhttp.dll, looked up in the system's folder: Windows would load a library of
// this name that lies beside the program.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>
#include <winhttp.h>

#include <memory>

#include "platform/win32/system_library.h"

namespace platform {

struct WinHttp {
  template <class Function>
  static Function* Find(const char* name) {
    return SystemFunction<Function>(L"winhttp.dll", name);
  }

  decltype(WinHttpOpen)* open = Find<decltype(WinHttpOpen)>("WinHttpOpen");
  decltype(WinHttpCrackUrl)* crackUrl = Find<decltype(WinHttpCrackUrl)>("WinHttpCrackUrl");
  decltype(WinHttpConnect)* connect = Find<decltype(WinHttpConnect)>("WinHttpConnect");
  decltype(WinHttpOpenRequest)* openRequest =
      Find<decltype(WinHttpOpenRequest)>("WinHttpOpenRequest");
  decltype(WinHttpSetOption)* setOption = Find<decltype(WinHttpSetOption)>("WinHttpSetOption");
  decltype(WinHttpSetStatusCallback)* setStatusCallback =
      Find<decltype(WinHttpSetStatusCallback)>("WinHttpSetStatusCallback");
  decltype(WinHttpSendRequest)* sendRequest =
      Find<decltype(WinHttpSendRequest)>("WinHttpSendRequest");
  decltype(WinHttpReceiveResponse)* receiveResponse =
      Find<decltype(WinHttpReceiveResponse)>("WinHttpReceiveResponse");
  decltype(WinHttpQueryHeaders)* queryHeaders =
      Find<decltype(WinHttpQueryHeaders)>("WinHttpQueryHeaders");
  decltype(WinHttpQueryAuthSchemes)* queryAuthSchemes =
      Find<decltype(WinHttpQueryAuthSchemes)>("WinHttpQueryAuthSchemes");
  decltype(WinHttpSetCredentials)* setCredentials =
      Find<decltype(WinHttpSetCredentials)>("WinHttpSetCredentials");
  decltype(WinHttpQueryDataAvailable)* queryDataAvailable =
      Find<decltype(WinHttpQueryDataAvailable)>("WinHttpQueryDataAvailable");
  decltype(WinHttpReadData)* readData = Find<decltype(WinHttpReadData)>("WinHttpReadData");
  decltype(WinHttpCloseHandle)* closeHandle =
      Find<decltype(WinHttpCloseHandle)>("WinHttpCloseHandle");
  decltype(WinHttpGetIEProxyConfigForCurrentUser)* userProxy =
      Find<decltype(WinHttpGetIEProxyConfigForCurrentUser)>(
          "WinHttpGetIEProxyConfigForCurrentUser");
  decltype(WinHttpGetProxyForUrl)* proxyForUrl =
      Find<decltype(WinHttpGetProxyForUrl)>("WinHttpGetProxyForUrl");
};

/// Throws where the system lacks the library. Tests replace functions.
inline WinHttp& TheWinHttp() {
  static WinHttp library;
  return library;
}

struct CloseInternetHandle {
  void operator()(void* handle) const { TheWinHttp().closeHandle(handle); }
};
using InternetHandle = std::unique_ptr<void, CloseInternetHandle>;

}  // namespace platform
