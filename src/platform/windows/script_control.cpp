// The script control of Windows, a COM object reached by the names of its members. Every identifier is looked up at
// each use: nothing of one run survives into the next.
#include "platform/script_control.h"

#include <ole2.h>  // has all of automation
#include <windows.h>

#include <climits>
#include <span>
#include <utility>

namespace pv::platform {
namespace {

constexpr wchar_t kControlName[] = L"MSScriptControl.ScriptControl";

struct ReleaseInterface {
  void operator()(IUnknown* object) const { object->Release(); }
};
using Dispatch = std::unique_ptr<IDispatch, ReleaseInterface>;

// A variant that gives back what it holds.
class Variant {
 public:
  Variant() { ::VariantInit(&value_); }
  ~Variant() { ::VariantClear(&value_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;

  VARIANT* get() { return &value_; }
  const VARIANT& operator*() const { return value_; }

 private:
  VARIANT value_;
};

// The text in wide characters; nullptr when it cannot be had. An empty text converts to no characters, which the
// conversion would report as its failure.
BSTR wide_text(std::string_view text) {
  if (text.empty()) return ::SysAllocStringLen(nullptr, 0);
  if (text.size() > INT_MAX) return nullptr;
  const int size = static_cast<int>(text.size());
  const int length = ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, nullptr, 0);
  if (length <= 0) return nullptr;
  const BSTR wide = ::SysAllocStringLen(nullptr, static_cast<UINT>(length));
  if (wide != nullptr) ::MultiByteToWideChar(CP_ACP, 0, text.data(), size, wide, length);
  return wide;
}

// Makes `variant`, which is empty, own the text.
HRESULT set_text(Variant& variant, std::string_view text) {
  const BSTR wide = wide_text(text);
  if (wide == nullptr) return E_OUTOFMEMORY;
  V_VT(variant.get()) = VT_BSTR;
  V_BSTR(variant.get()) = wide;
  return S_OK;
}

// A null pointer is an empty text too.
std::string ansi_text(BSTR wide) {
  const int length = static_cast<int>(::SysStringLen(wide));
  if (length == 0) return {};
  const int size = ::WideCharToMultiByte(CP_ACP, 0, wide, length, nullptr, 0, nullptr, nullptr);
  std::string text(static_cast<std::size_t>(size), '\0');
  ::WideCharToMultiByte(CP_ACP, 0, wide, length, text.data(), size, nullptr, nullptr);
  return text;
}

// Half goes to the even neighbour, as CInt has it; what is no number or has more than 16 bits is 0.
std::int16_t number_of(const VARIANT& variant) {
  Variant number;
  if (V_VT(&variant) == VT_NULL) return 0;
  const HRESULT changed = ::VariantChangeType(number.get(), const_cast<VARIANT*>(&variant), 0, VT_I2);
  return FAILED(changed) ? std::int16_t{0} : V_I2(number.get());
}

std::optional<std::string> text_of(const VARIANT& variant) {
  if (V_VT(&variant) == VT_NULL) return std::nullopt;
  Variant text;
  const HRESULT changed = ::VariantChangeType(text.get(), const_cast<VARIANT*>(&variant), VARIANT_ALPHABOOL, VT_BSTR);
  if (FAILED(changed)) return std::nullopt;
  return ansi_text(V_BSTR(text.get()));
}

// Uses a member, by its name, with `arguments`, the last one first.
HRESULT invoke(IDispatch& object, const wchar_t* name, WORD kind, std::span<VARIANT> arguments, VARIANT* result) {
  DISPID member = DISPID_UNKNOWN;
  auto* spelt = const_cast<wchar_t*>(name);  // only read, in spite of its type
  const HRESULT found = object.GetIDsOfNames(GUID{}, &spelt, 1, LOCALE_USER_DEFAULT, &member);
  if (FAILED(found)) return found;
  DISPID put = DISPID_PROPERTYPUT;  // a property's new value has this name, a method's arguments have none
  const bool puts = kind == DISPATCH_PROPERTYPUT;
  DISPPARAMS parameters{arguments.data(), puts ? &put : nullptr, static_cast<UINT>(arguments.size()), puts ? 1U : 0U};
  return object.Invoke(member, GUID{}, LOCALE_USER_DEFAULT, kind, &parameters, result, nullptr, nullptr);
}

// Sets the property or calls the method with one text. A text goes to a property by value; only objects, arrays and
// references would have to be tried by reference first.
HRESULT invoke_with_text(IDispatch& object, const wchar_t* name, WORD kind, std::string_view text, VARIANT* result) {
  Variant argument;
  const HRESULT made = set_text(argument, text);
  return FAILED(made) ? made : invoke(object, name, kind, {argument.get(), 1}, result);
}

// Calls the function with an empty list of arguments, which Wine's control wants to see.
HRESULT run_with_empty_list(IDispatch& object, std::string_view function_name, VARIANT* result) {
  Variant list;
  SAFEARRAYBOUND no_elements{0, 0};
  V_ARRAY(list.get()) = ::SafeArrayCreate(VT_VARIANT, 1, &no_elements);
  if (V_ARRAY(list.get()) == nullptr) return E_OUTOFMEMORY;
  V_VT(list.get()) = VT_ARRAY | VT_VARIANT;
  Variant name;
  const HRESULT made = set_text(name, function_name);
  if (FAILED(made)) return made;
  VARIANT arguments[2] = {{}, *name};  // borrowed from the two above
  V_VT(&arguments[0]) = VT_BYREF | VT_ARRAY | VT_VARIANT;
  V_ARRAYREF(&arguments[0]) = &V_ARRAY(list.get());
  return invoke(object, L"Run", DISPATCH_METHOD, arguments, result);
}

class SystemScriptControl : public ScriptControl {
 public:
  explicit SystemScriptControl(Dispatch control) : control_(std::move(control)) {}

  std::int32_t set_language(std::string_view language) override {
    return invoke_with_text(*control_, L"Language", DISPATCH_PROPERTYPUT, language, nullptr);
  }

  std::int32_t add_code(std::string_view program) override {
    Variant ignored;
    return invoke_with_text(*control_, L"AddCode", DISPATCH_METHOD, program, ignored.get());
  }

  std::int32_t run(std::string_view function_name, ScriptValue& value) override {
    Variant result;
    HRESULT outcome = invoke_with_text(*control_, L"Run", DISPATCH_METHOD, function_name, result.get());
    if (outcome == DISP_E_BADPARAMCOUNT) {  // nothing has run yet, so a second call repeats nothing
      ::VariantClear(result.get());
      outcome = run_with_empty_list(*control_, function_name, result.get());
    }
    value = {number_of(*result), text_of(*result)};
    return outcome;
  }

 private:
  Dispatch control_;
};

}  // namespace

std::unique_ptr<ScriptControl> create_script_control(std::int32_t& failure) {
  CLSID class_identifier;
  failure = ::CLSIDFromProgID(kControlName, &class_identifier);
  if (FAILED(failure)) return nullptr;
  void* created = nullptr;
  failure = ::CoCreateInstance(class_identifier, nullptr, CLSCTX_ALL, __uuidof(IDispatch), &created);
  if (FAILED(failure)) return nullptr;
  return std::make_unique<SystemScriptControl>(Dispatch(static_cast<IDispatch*>(created)));
}

std::string ScriptControl::failure_text(std::int32_t code) const {
  return script_failure_text(code);
}

std::string script_failure_text(std::int32_t code) {
  char text[128];
  const DWORD size = ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                      static_cast<DWORD>(code), LANG_USER_DEFAULT, text, sizeof text, nullptr);
  std::string line(text, size);
  line.erase(line.find_last_not_of("\r\n") + 1);
  return line;
}

}  // namespace pv::platform
