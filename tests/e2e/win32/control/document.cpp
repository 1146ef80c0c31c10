// A page's document. An element has the state that the page had when it was looked up: whoever
// keeps one instead of asking anew is seen to read what was.
//
// SPDX-License-Identifier: MIT
#include "tests/e2e/win32/control/document.h"

#include <mshtmdid.h>

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

/// What a caller gave, in its order.
class Arguments {
 public:
  explicit Arguments(const DISPPARAMS& parameters) : mParameters(parameters) {}

  std::string Text(UINT at) const {
    platform::Variant text;
    if (at < mParameters.cArgs) platform::Check(VariantCopy(&text, &Passed(at)));
    return text.Utf8();
  }
  std::size_t Index() const {
    platform::Variant index;
    if (mParameters.cArgs > 0) platform::Check(VariantCopy(&index, &Passed(0)));
    return static_cast<std::size_t>(index.As(VT_I4).lVal);
  }

 private:
  // They are passed last one first.
  VARIANT& Passed(UINT at) const { return mParameters.rgvarg[mParameters.cArgs - 1 - at]; }

  const DISPPARAMS& mParameters;
};

struct Member {
  std::wstring name;
  DISPID number;
};

/// Members by name.
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
    for (const Member& member : mMembers) {
      if (count == 1 && _wcsicmp(names[0], member.name.c_str()) == 0) *numbers = member.number;
    }
    return *numbers == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID number, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                   VARIANT* answer, EXCEPINFO*, UINT*) override {
    const auto known = [&](const Member& member) { return member.number == number; };
    if (std::ranges::none_of(mMembers, known)) return DISP_E_MEMBERNOTFOUND;
    platform::Variant unwanted;
    VARIANT* const wanted = answer ? answer : &unwanted;
    VariantInit(wanted);
    return core::AttemptOr(E_FAIL, [&] { return Get(number, Arguments(*parameters), *wanted); });
  }

 protected:
  explicit NamedObject(std::vector<Member> members) : mMembers(std::move(members)) {}

 private:
  /// Reads, calls or writes the member.
  virtual HRESULT Get(DISPID number, const Arguments& arguments, VARIANT& answer) = 0;

  std::vector<Member> mMembers;
};

void AnswerObject(IDispatch* object, VARIANT& answer) {
  answer.vt = VT_DISPATCH;
  answer.pdispVal = object;
  if (object) object->AddRef();
}

void AnswerText(const std::string& text, VARIANT& answer) {
  answer.vt = VT_BSTR;
  answer.bstrVal = SysAllocString(platform::WideText(text).c_str());
}

/// How the host finds an element again: the n-th of a tag, or the one with an id.
struct Address {
  std::shared_ptr<PageConnection> connection;
  std::string by;
  std::string name;
  std::size_t index = 0;
};

/// An element's attributes. As in the document mode that the control has by default, one that the
/// page changes while it lives is a Boolean and says what is now, not what the markup says.
class Element final : public NamedObject {
 public:
  /// "id=scheck7", "checked=b1": names, then values of a kind and a text, with separators between.
  Element(Address address, const std::string& attributes)
      : NamedObject(
            {{L"getAttribute", 1}, {L"setAttribute", 2}, {L"htmlFor", 3}, {L"innerText", 4}}),
        mAddress(std::move(address)) {
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
  HRESULT Get(DISPID number, const Arguments& arguments, VARIANT& answer) override {
    switch (number) {
      case 1:
        return GetAttribute(arguments.Text(0), answer);
      case 2:
        return Set(arguments.Text(0), arguments.Text(1));
      case 3:
        return Set("for", arguments.Text(0));
      default:
        AnswerText(mAddress.connection
                       ->Ask({"text", mAddress.by, mAddress.name, std::to_string(mAddress.index)})
                       .at(1),
                   answer);
        return S_OK;
    }
  }

  HRESULT GetAttribute(const std::string& name, VARIANT& answer) {
    const auto found = mAttributes.find(name);
    if (found == mAttributes.end()) {
      answer.vt = VT_NULL;
    } else if (found->second.starts_with('b')) {
      answer.vt = VT_BOOL;
      answer.boolVal = found->second == "b1" ? VARIANT_TRUE : VARIANT_FALSE;
    } else {
      AnswerText(found->second.substr(1), answer);
    }
    return S_OK;
  }

  HRESULT Set(const std::string& attribute, const std::string& value) {
    mAddress.connection->Ask(
        {"set", mAddress.by, mAddress.name, std::to_string(mAddress.index), attribute, value});
    return S_OK;
  }

  Address mAddress;
  std::map<std::string, std::string> mAttributes;
};

class Collection final : public NamedObject {
 public:
  Collection(Address address, Fields elements)
      : NamedObject({{L"length", DISPID_COLLECTION}, {L"item", DISPID_VALUE}}),
        mAddress(std::move(address)),
        mElements(std::move(elements)) {}

 private:
  HRESULT Get(DISPID number, const Arguments& arguments, VARIANT& answer) override {
    if (number == DISPID_COLLECTION) {
      answer.vt = VT_I4;
      answer.lVal = static_cast<LONG>(mElements.size());
      return S_OK;
    }
    Address element = mAddress;
    element.index = arguments.Index();
    const bool exists = element.index < mElements.size();
    AnswerObject(exists ? new Element(element, mElements[element.index]) : nullptr, answer);
    return S_OK;
  }

  Address mAddress;
  Fields mElements;
};

class Document final : public NamedObject {
 public:
  explicit Document(std::shared_ptr<PageConnection> connection)
      : NamedObject({{L"getElementsByTagName", 1}, {L"getElementById", 2}}),
        mConnection(std::move(connection)) {}

 private:
  HRESULT Get(DISPID number, const Arguments& arguments, VARIANT& answer) override {
    const Address address{mConnection, number == 1 ? "tag" : "id", arguments.Text(0)};
    Fields found = mConnection->Ask({"elements", address.by, address.name});
    found.erase(found.begin());
    if (number == 1) {
      AnswerObject(new Collection(address, std::move(found)), answer);
    } else {
      AnswerObject(found.empty() ? nullptr : new Element(address, found.front()), answer);
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
