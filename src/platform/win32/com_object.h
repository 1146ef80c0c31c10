// Our own COM objects: what the system calls back. Their methods are called by the system, so no
// exception may leave them.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include "platform/win32/com.h"

namespace platform {

/// Counts references and answers for `Interfaces`, the first of which stands for the object. It
/// belongs to one thread.
template <class First, class... Others>
class ComObject : public First, public Others... {
 public:
  ComObject() = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  ULONG STDMETHODCALLTYPE AddRef() override { return ++mReferences; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --mReferences;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID interfaceId, void** object) override {
    if (!object) return E_POINTER;
    *object = Find(interfaceId);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

 protected:
  virtual ~ComObject() = default;

  /// For interfaces that others of the list contain, and for names of interfaces without methods.
  virtual void* FindMore(REFIID) { return nullptr; }

 private:
  void* Find(REFIID interfaceId) {
    if (IsEqualIID(interfaceId, IID_IUnknown)) return static_cast<First*>(this);
    void* found = nullptr;
    Match<First>(interfaceId, found);
    (Match<Others>(interfaceId, found), ...);
    return found ? found : FindMore(interfaceId);
  }
  template <class Interface>
  void Match(REFIID interfaceId, void*& found) {
    if (!found && IsEqualIID(interfaceId, __uuidof(Interface))) {
      found = static_cast<Interface*>(this);
    }
  }

  ULONG mReferences = 0;
};

}  // namespace platform
