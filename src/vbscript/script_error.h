// What stops a script.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pv::vbscript {

// A place in a program text; both count from 1. 0: not known.
struct Position {
  std::uint32_t line = 0;
  std::uint32_t column = 0;
};

// The run-time errors that the engine itself raises, by Microsoft's numbers.
enum class ErrorCode : std::int32_t {
  kInvalidCall = 5,  // Invalid procedure call or argument
  kOverflow = 6,
  kOutOfMemory = 7,
  kSubscriptOutOfRange = 9,
  kArrayFixedOrLocked = 10,
  kDivisionByZero = 11,
  kTypeMismatch = 13,
  kOutOfStringSpace = 14,
  kCantPerformOperation = 17,
  kOutOfStackSpace = 28,
  kInternalError = 51,
  kObjectNotSet = 91,  // Object variable not set
  kForLoopNotInitialised = 92,
  kInvalidUseOfNull = 94,
  kObjectRequired = 424,
  kCantCreateObject = 429,
  kClassDoesNotSupportAutomation = 430,
  kNoSuchMember = 438,  // Object doesn't support this property or method
  kNamedArgumentMissing = 448,
  kArgumentNotOptional = 449,
  kWrongArgumentCount = 450,  // Wrong number of arguments or invalid property assignment
  kNotACollection = 451,
  kVariableUndefined = 500,
  kIllegalAssignment = 501,
  kObjectNotSafeForScripting = 502,
  kInvalidReference = 505,  // Invalid or unqualified reference: ".x" outside With
  kClassNotDefined = 506,
  kElementNotFound = 32811,
};

// A run-time error on its way to the nearest "On Error Resume Next"; thrown inside the engine alone.
struct RuntimeError {
  std::int32_t number = 0;  // what Err.Number gives
  std::string description;
  std::string source = "Microsoft VBScript runtime error";
  bool fatal = false;  // the time limit: nothing catches it
};

// Throws a RuntimeError with Microsoft's text; `detail` is put behind it as ": 'detail'" when it is not empty.
[[noreturn]] void raise(ErrorCode code, std::string_view detail = {});

// Microsoft's text for a run-time error number; "Unknown runtime error" for a number without one.
std::string_view runtime_error_text(std::int32_t number);

// Microsoft's text for a compile error number (1001 to 1058).
std::string_view compile_error_text(std::int32_t number);

// A mistake in a program text; thrown by lexer, parser and compiler, caught by Engine.
struct CompileError {
  std::int32_t number = 0;  // 1001 to 1058
  Position at;
};

// What became of a program that did not run to its end.
struct ScriptError {
  bool compile_error = false;
  std::int32_t number = 0;  // 1001 to 1058 for compile errors; Err.Number for run-time errors
  std::string description;  // Microsoft's text, in Windows-1252
  std::string source;       // "Microsoft VBScript compilation error", "Microsoft VBScript runtime error", Err.Source
  Position at;
  std::int32_t hresult() const;  // 0x800A0000 + number; a number that is an HRESULT already stays
};

}  // namespace pv::vbscript
