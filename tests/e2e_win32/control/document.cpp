// A page's document. An element has the state that the page had when it was looked up: whoever
// keeps one instead of asking anew is seen to read what was.
//
// SPDX-License-Identifier: MIT
#include "tests/e2e_win32/control/document.h"

#include <algorithm>
#include <cwchar>
#include <map>

#include "core/attempt.h"
#include "platform/win32/com_object.h"

using platform::ComPtr;

namespace page {
namespace {

// In no page's text: control characters are none of a page's.
constexpr char kSeparator = '\x1f';

/// Members by name. The numbers count from 1 in the order of the names.
class NamedObject : public platform::ComObject<IDispatch> {
 public:
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* numbers) override {
    *numbers = DISPID_UNKNOWN;
    for (std::size_t at = 0; count == 1 && at < mNames.size(); ++at) {
      if (_wcsicmp(names[0], mNames[at].c_str()) == 0) *numbers = static_cast<DISPID>(at + 1);
    }
    return *numbers == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID number, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                   VARIANT* answer, EXCEPINFO*, UINT*) override {
    if (number < 1 || static_cast<std::size_t>(number) > mNames.size()) {
      return DISP_E_MEMBERNOTFOUND;
    }
    VariantInit(answer);
    VARIANT* const argument = parameters->cArgs > 0 ? parameters->rgvarg : nullptr;
    return core::AttemptOr(E_FAIL, [&] { return Get(number, argument, *answer); });
  }

 protected:
  explicit NamedObject(std::vector<std::wstring> names) : mNames(std::move(names)) {}

 private:
  /// `argument` is null where the caller gave none.
  virtual HRESULT Get(DISPID number, VARIANT* argument, VARIANT& answer) = 0;

  std::vector<std::wstring> mNames;
};

std::string TextOf(VARIANT* argument) {
  platform::Variant text;
  platform::Check(VariantCopy(&text, argument ? argument : &text));
  return text.Utf8();
}

void AnswerObject(IDispatch* object, VARIANT& answer) {
  answer.vt = VT_DISPATCH;
  answer.pdispVal = object;
  if (object) object->AddRef();
}

/// An element's attributes. As in the document mode that the control has by default, one that the
/// page changes while it lives is a Boolean and says what is now, not what the markup says.
class Element final : public NamedObject {
 public:
  /// "id=scheck7", "checked=b1": names, then values of a kind and a text, with separators between.
  explicit Element(const std::string& attributes) : NamedObject({L"getAttribute"}) {
    std::size_t start = 0;
    while (start < attributes.size()) {
      const std::size_t end = std::min(attributes.find(kSeparator, start), attributes.size());
      const std::string entry = attributes.substr(start, end - start);
      const std::size_t equals = entry.find('=');
      mAttributes[entry.substr(0, equals)] = entry.substr(equals + 1);
      start = end + 1;
    }
  }

 private:
  HRESULT Get(DISPID, VARIANT* argument, VARIANT& answer) override {
    const auto found = mAttributes.find(TextOf(argument));
    if (found == mAttributes.end()) {
      answer.vt = VT_NULL;
    } else if (found->second.starts_with('b')) {
      answer.vt = VT_BOOL;
      answer.boolVal = found->second == "b1" ? VARIANT_TRUE : VARIANT_FALSE;
    } else {
      answer.vt = VT_BSTR;
      answer.bstrVal = SysAllocString(platform::WideText(found->second.substr(1)).c_str());
    }
    return S_OK;
  }

  std::map<std::string, std::string> mAttributes;
};

class Collection final : public NamedObject {
 public:
  explicit Collection(Fields elements)
      : NamedObject({L"length", L"item"}), mElements(std::move(elements)) {}

 private:
  HRESULT Get(DISPID number, VARIANT* argument, VARIANT& answer) override {
    if (number == 1) {
      answer.vt = VT_I4;
      answer.lVal = static_cast<LONG>(mElements.size());
      return S_OK;
    }
    platform::Variant index;
    platform::Check(VariantCopy(&index, argument ? argument : &index));
    const auto at = static_cast<std::size_t>(index.As(VT_I4).lVal);
    AnswerObject(at < mElements.size() ? new Element(mElements[at]) : nullptr, answer);
    return S_OK;
  }

  Fields mElements;
};

class Document final : public NamedObject {
 public:
  explicit Document(std::shared_ptr<PageConnection> connection)
      : NamedObject({L"getElementsByTagName", L"getElementById"}),
        mConnection(std::move(connection)) {}

 private:
  HRESULT Get(DISPID number, VARIANT* argument, VARIANT& answer) override {
    Fields found = mConnection->Ask({"elements", number == 1 ? "tag" : "id", TextOf(argument)});
    found.erase(found.begin());
    if (number == 1) {
      AnswerObject(new Collection(std::move(found)), answer);
    } else {
      AnswerObject(found.empty() ? nullptr : new Element(found.front()), answer);
    }
    return S_OK;
  }

  std::shared_ptr<PageConnection> mConnection;
};

}  // namespace

ComPtr<IDispatch> MakeDocument(const std::shared_ptr<PageConnection>& connection) {
  return ComPtr<IDispatch>::Share(new Document(connection));
}

}  // namespace page
