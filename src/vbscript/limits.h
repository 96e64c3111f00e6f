// What a script may use. Scripts come from administrators, but a mistake in one must not stop the mail: beyond a limit
// the run ends with the error a VBScript host would give.
#pragma once

#include <cstddef>
#include <cstdint>

namespace pv::vbscript {

// About one second of a current processor: a step is an instruction, and operations on long texts and arrays count
// more. Beyond it the run is aborted, and no "On Error" catches that.
inline constexpr std::int64_t kMaxSteps = 100'000'000;

// Bytes of all texts, arrays and objects of one engine together, far above what a decision needs: "Out of memory", 7.
inline constexpr std::size_t kMaxHeapBytes = std::size_t{64} << 20U;

// Bytes of one text ("Out of string space", 14) and elements of one array ("Out of memory", 7).
inline constexpr std::size_t kMaxTextBytes = std::size_t{16} << 20U;
inline constexpr std::size_t kMaxArrayElements = std::size_t{1} << 20U;
inline constexpr std::size_t kMaxArrayDimensions = 60;

// Procedures called from one another: "Out of stack space", 28. They do not use the thread's stack.
inline constexpr int kMaxCallDepth = 8000;

// Calls that do use the thread's stack: Class_Initialize, Class_Terminate, default properties, Eval and Execute.
inline constexpr int kMaxNestedRuns = 60;

// Parentheses, operators and blocks within one another: an MTA's threads may have small stacks. "Out of memory", 1001.
inline constexpr int kMaxNestedSource = 200;

// Bytes of one program text, of one identifier: "Out of memory", 1001, and "Identifier too long", 1030.
inline constexpr std::size_t kMaxSourceBytes = std::size_t{1} << 20U;
inline constexpr std::size_t kMaxIdentifierBytes = 255;

// Bytes of one program's tree, about four hundred for each line of a usual script: "Out of memory", 1001.
inline constexpr std::size_t kMaxTreeBytes = std::size_t{64} << 20U;

}  // namespace pv::vbscript
