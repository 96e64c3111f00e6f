#include "platform/com.h"

#include <array>
#include <cstdio>

namespace pv::platform {
namespace {

constinit thread_local int initialisations = 0;

struct CodeText {
  std::uint32_t code;
  const char* text;
};
constexpr CodeText kCodeTexts[] = {
    {0x00000000, "The operation completed successfully."},
    {0x80004001, "Not implemented"},
    {0x80004002, "No such interface supported"},
    {0x80004003, "Invalid pointer"},
    {0x80004004, "Operation aborted"},
    {0x80004005, "Unspecified error"},
    {0x8000FFFF, "Catastrophic failure"},
    {0x80020003, "Member not found."},
    {0x80020005, "Type mismatch."},
    {0x80020006, "Unknown name."},
    {0x80020009, "Exception occurred."},
    {0x80040154, "Class not registered"},
    {0x800401F0, "CoInitialize has not been called."},
    {0x80070005, "Access is denied."},
    {0x80070006, "The handle is invalid."},
    {0x8007000E, "Not enough memory resources are available to complete this operation."},
    {0x80070057, "The parameter is incorrect."},
};

}  // namespace

void initialise_com() {
  ++initialisations;
}

void uninitialise_com() {
  --initialisations;
}

int com_initialisations_of_thread() {
  return initialisations;
}

std::string com_code_text(std::int32_t code) {
  const auto number = static_cast<std::uint32_t>(code);
  for (const CodeText& entry : kCodeTexts) {
    if (entry.code == number) return entry.text;
  }
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "Unknown error 0x%08X", static_cast<unsigned>(number));
  return text.data();
}

}  // namespace pv::platform
