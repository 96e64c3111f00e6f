#include "platform/file_faults.h"

#include <atomic>

#include "platform/last_error.h"

namespace pv::platform {
namespace {

constinit std::atomic<FileOperationHook> installed_hook = nullptr;

}  // namespace

bool fails_for_test(FileOperation operation) {
  const FileOperationHook hook = installed_hook.load(std::memory_order_relaxed);
  if (hook == nullptr || !hook(operation)) return false;
  set_last_system_error(kDiskFullError);
  return true;
}

void set_file_operation_hook_for_test(FileOperationHook hook) {
  installed_hook.store(hook, std::memory_order_relaxed);
}

}  // namespace pv::platform
