// What a scanner library of the tests is told to do.
#pragma once

#include <cstdint>

struct ScannerScript {
  enum Behaviour { kAnswers, kFillsAll, kThrows };

  std::int32_t result = 1;
  const char* reply = "";  // stays the test's
  Behaviour behaviour = kAnswers;
  bool noted = true;           // whether calls are; not while several threads call
  const char* file = nullptr;  // gets the line when the library cleans up
  const char* clean_up_line = "";
};

using SetScript = void(const ScannerScript*);
using NotedCalls = const char*();
using NumberOfCalls = int();
