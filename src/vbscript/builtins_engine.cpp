// What scripts ask of their engine. Objects that act (files, programs, the network, windows) are refused.
#include <functional>

#include "vbscript/arguments.h"
#include "vbscript/builtins.h"
#include "vbscript/code_page.h"
#include "vbscript/dictionary.h"
#include "vbscript/engine.h"
#include "vbscript/regexp.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

using Arguments = std::span<const Value>;

constexpr auto kPermissionDenied = static_cast<ErrorCode>(70);
constexpr auto kUnknownLocale = static_cast<ErrorCode>(447);
constexpr std::int16_t kEnglishUnitedStates = 1033;

Value create_object(Engine& engine, Arguments arguments) {
  const TextArgument name(engine, arguments[0], TextArgument::kNoNull);
  Object* object = nullptr;
  if (equal_ignoring_case(name.view(), "Scripting.Dictionary")) object = new_dictionary(engine);
  if (equal_ignoring_case(name.view(), "VBScript.RegExp")) object = new_regexp(engine);
  if (object == nullptr) raise(ErrorCode::kCantCreateObject, name.view());
  return Value::adopt(object);
}

Value get_object(Engine& engine, Arguments arguments) {
  if (arguments.empty() || arguments[0].is_missing()) raise(ErrorCode::kCantCreateObject);
  const TextArgument name(engine, arguments[0], TextArgument::kNoNull);
  raise(ErrorCode::kCantCreateObject, name.view());
}

// A mail server has nobody to ask.
Value msg_box(Engine&, Arguments) {
  raise(kPermissionDenied, "MsgBox");
}
Value input_box(Engine&, Arguments) {
  raise(kPermissionDenied, "InputBox");
}
Value load_picture(Engine&, Arguments) {
  raise(kPermissionDenied, "LoadPicture");
}

Value script_engine(Engine& engine, Arguments) {
  return engine.heap().text("VBScript");
}
Value script_engine_major_version(Engine&, Arguments) {
  return Value::of_long(5);
}
Value script_engine_minor_version(Engine&, Arguments) {
  return Value::of_long(8);
}
Value script_engine_build_version(Engine&, Arguments) {
  return Value::of_long(16384);
}

Value get_locale(Engine&, Arguments) {
  return Value::of_long(kEnglishUnitedStates);
}

// There is one locale; naming it (or 0, the system's) changes nothing. Gives the one before.
Value set_locale(Engine& engine, Arguments arguments) {
  if (!arguments.empty() && !arguments[0].is_missing()) {
    const TextArgument locale(engine, arguments[0], TextArgument::kNoNull);
    const std::string_view name = locale.view();
    if (!name.empty() && name != "0" && name != "1033" && !equal_ignoring_case(name, "en-us")) raise(kUnknownLocale);
  }
  return get_locale(engine, arguments);
}

constexpr Builtin kFunctions[] = {
    {"createobject", 1, 2, create_object},
    {"getlocale", 0, 0, get_locale},
    {"getobject", 0, 2, get_object},
    {"inputbox", 1, 7, input_box},
    {"loadpicture", 0, 1, load_picture},
    {"msgbox", 1, 5, msg_box},
    {"scriptengine", 0, 0, script_engine},
    {"scriptenginebuildversion", 0, 0, script_engine_build_version},
    {"scriptenginemajorversion", 0, 0, script_engine_major_version},
    {"scriptengineminorversion", 0, 0, script_engine_minor_version},
    {"setlocale", 0, 1, set_locale},
};

}  // namespace

std::span<const Builtin> engine_functions() {
  return kFunctions;
}

}  // namespace pv::vbscript
