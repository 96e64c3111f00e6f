#include "platform/file_faults.h"

#include <atomic>

#include "platform/last_error.h"

namespace pv::platform {
namespace {

constinit std::atomic<FileOperationHook> installed_hook = nullptr;
constinit std::atomic<FileFailure> chosen_failure = FileFailure::kNoSpace;

int error_of(FileFailure failure) {
  switch (failure) {
    case FileFailure::kInputOutput:
      return kInputOutputError;
    case FileFailure::kNoPermission:
      return kNoPermissionError;
    case FileFailure::kTooManyFiles:
      return kTooManyFilesError;
    case FileFailure::kNoSpace:
      break;
  }
  return kDiskFullError;
}

}  // namespace

bool fails_for_test(FileOperation operation) {
  const FileOperationHook hook = installed_hook.load(std::memory_order_relaxed);
  if (hook == nullptr || !hook(operation)) return false;
  set_last_system_error(error_of(chosen_failure.load(std::memory_order_relaxed)));
  return true;
}

void set_file_operation_hook_for_test(FileOperationHook hook, FileFailure failure) {
  chosen_failure.store(failure, std::memory_order_relaxed);
  installed_hook.store(hook, std::memory_order_relaxed);
}

}  // namespace pv::platform
