// The functions and constants that every script has.
#pragma once

#include <span>
#include <string_view>

#include "vbscript/value.h"

namespace pv::vbscript {

class Engine;

struct Builtin {
  std::string_view name;  // lower case
  int min_arguments;
  int max_arguments;
  // `arguments` are resolved; omitted ones are Value::missing(); their number is checked before (error 450).
  // Objects come as they are: the conversions of conversions.h take their default property.
  Value (*call)(Engine& engine, std::span<const Value> arguments);
};

// One table a group, sorted by name; builtins.cpp looks through them all.
std::span<const Builtin> string_functions();  // Len Left Right Mid InStr InStrRev Replace Trim LTrim RTrim UCase LCase
                                              // StrComp String Space StrReverse Asc AscB AscW Chr ChrB ChrW LenB …
                                              // Escape Unescape
std::span<const Builtin> array_functions();   // Array Join Split Filter LBound UBound
std::span<const Builtin> conversion_functions();  // CBool CByte CCur CDate CDbl CInt CLng CSng CStr Hex Oct
std::span<const Builtin> math_functions();        // Abs Atn Cos Exp Fix Int Log Rnd Round Sgn Sin Sqr Tan RGB
std::span<const Builtin> date_functions();        // Date Time Now Timer DateAdd DateDiff DatePart DateSerial DateValue
                                                  // TimeSerial TimeValue Year … Second Weekday WeekdayName MonthName
std::span<const Builtin> format_functions();      // FormatNumber FormatCurrency FormatPercent FormatDateTime
std::span<const Builtin> type_functions();        // IsArray IsDate IsEmpty IsNull IsNumeric IsObject TypeName VarType
std::span<const Builtin> engine_functions();      // CreateObject GetObject ScriptEngine… GetLocale SetLocale
                                                  // (Eval, GetRef, Randomize's statement form: the compiler's)

// The function of that name (lower case), or nullptr.
const Builtin* find_builtin(std::string_view name);

// The constant of that name (lower case: vbcr, vbobjecterror…); false when there is none. Texts are made on `heap`.
bool find_constant(Heap& heap, std::string_view name, Value& value);

}  // namespace pv::vbscript
