// COM without leaks and without unchecked results. Knows OLE automation only, so that every file of
// this folder can use it.
//
// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>
#include <ole2.h>
#include <oleauto.h>

#include <source_location>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "platform/win32/wide_text.h"

namespace platform {

/// The one place where a failed HRESULT becomes an exception. S_FALSE is success.
inline void Check(HRESULT result, std::source_location where = std::source_location::current()) {
  if (SUCCEEDED(result)) return;
  throw std::runtime_error(std::string(where.function_name()) + " failed with code " +
                           std::to_string(result));
}

/// Makes the calling thread ready for COM, OLE included; a second call does nothing. It is never
/// undone: documents in static variables go when the process ends, and need COM until then.
inline void EnterApartment() {
  thread_local const HRESULT entered = OleInitialize(nullptr);
  Check(entered);
}

/// One counted reference to a COM object; throws when an empty one is used.
template <class T>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(const ComPtr& other) : mObject(other.mObject) {
    if (mObject) mObject->AddRef();
  }
  ComPtr(ComPtr&& other) noexcept : mObject(std::exchange(other.mObject, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(mObject, other.mObject);
    return *this;
  }
  ~ComPtr() {
    if (mObject) mObject->Release();
  }

  /// Takes over a reference that the caller owns.
  static ComPtr Adopt(T* object) {
    ComPtr result;
    result.mObject = object;
    return result;
  }
  /// Adds a reference.
  static ComPtr Share(T* object) {
    if (object) object->AddRef();
    return Adopt(object);
  }

  explicit operator bool() const { return mObject != nullptr; }
  T* Get() const {
    if (!mObject) throw std::logic_error("used after it has gone");
    return mObject;
  }
  T* operator->() const { return Get(); }
  /// For a function that answers an object; what was held is let go.
  T** Out() {
    *this = ComPtr();
    return &mObject;
  }
  void** OutVoid() { return reinterpret_cast<void**>(Out()); }

  /// The object's other interface; throws when it lacks it.
  template <class Other>
  ComPtr<Other> As(const IID& interfaceId = __uuidof(Other)) const {
    ComPtr<Other> other;
    Check(Get()->QueryInterface(interfaceId, other.OutVoid()));
    return other;
  }

 private:
  T* mObject = nullptr;
};

template <class T>
ComPtr<T> CreateObject(const CLSID& classId, const IID& interfaceId = __uuidof(T)) {
  EnterApartment();
  ComPtr<T> object;
  Check(CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, interfaceId,
                         object.OutVoid()));
  return object;
}

class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(std::wstring_view text)
      : mText(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
    if (!mText) throw std::bad_alloc();
  }
  explicit Bstr(std::string_view utf8) : Bstr(std::wstring_view(WideText(utf8))) {}
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  ~Bstr() { SysFreeString(mText); }

  BSTR Get() const { return mText; }
  BSTR* Out() { return &mText; }
  std::string Utf8() const { return Utf8Text({mText, SysStringLen(mText)}); }

 private:
  BSTR mText = nullptr;  // null is an empty text
};

/// A VARIANT that is freed; its fields are used as they are.
class Variant : public VARIANT {
 public:
  Variant() { VariantInit(this); }
  explicit Variant(const Bstr& text) : Variant(std::wstring_view(text.Get())) {}
  explicit Variant(std::wstring_view text) : Variant() {
    bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    if (!bstrVal) throw std::bad_alloc();
    vt = VT_BSTR;
  }
  explicit Variant(long number) : Variant() {
    vt = VT_I4;
    lVal = number;
  }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
  ~Variant() { VariantClear(this); }

  /// Changes the type; throws when the value has no such form.
  Variant& As(VARTYPE type) {
    Check(VariantChangeType(this, this, 0, type));
    return *this;
  }
  std::string Utf8() { return Utf8Text({As(VT_BSTR).bstrVal, SysStringLen(bstrVal)}); }
};

}  // namespace platform
