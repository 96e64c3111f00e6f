#include "store/store_library.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

#include "common/agent_settings.h"
#include "common/caught_exception.h"
#include "common/never_destroyed.h"
#include "platform/library.h"
#include "platform/paths.h"
#include "pvmtafilter/plugin.h"

namespace pv {
namespace {

constexpr std::string_view kLibraryName = "PVAISP.DLL";

// In the order in which they are looked up.
constexpr const char* kEntryNames[] = {
    "StoreLibrary_Init",
    "StoreLibrary_UnInit",
    "StoreLibrary_ThreadInit",
    "StoreLibrary_ThreadRelease",
    "StoreFolder_Open",
    "StoreFolder_Close",
    "StoreFolder_Save",
    "StoreFolder_OpenItem",
    "StoreFolder_SelectItem",
    "StoreFolder_CommitItem",
    "StoreFolder_SelectItemByField",
    "StoreFolder_SelectItemByField_Ex",
    "StoreFolder_Lock",
    "StoreFolder_UnLock",
    "StoreFolder_DeleteItem",
    "StoreFolder_CreateItem",
    "StoreItem_GetProperty",
    "StoreItem_SetProperty",
    "StoreIndex_GetItemPropertyItem",
    "StoreIndex_SetItemPropertyItem",
    "StoreItem_FreeProperty",
    "StoreItem_SaveToStore",
    "Store_Save",
    "StoreFolder_FindFirstItem",
    "StoreFolder_FindNextItem",
    "StoreFolder_FindClose",
    "GetMailboxSize",
    "GetMailboxSize_Ex",
    "StoreFolderAdd",
    "StoreFolderGet",
    "StoreFolderGet_Ex",
    "StoreFolderRemove",
    "StoreFolderEdit",
    "StoreFolderCopy",
    "StoreFolderFindNext",
    "StoreFolderFindFirst",
    "StoreFolderFindClose",
    "StoreLibrary_SetAffinity",
    "StoreItemProperty_GetType",
    "Memory_Allocate",
    "Memory_Free",
    "StoreFolder_GetHierarchyModificationDate",
    "StoreFolder_GetContentsModificationDate",
    "StoreIndex_SetPaths",
    "StoreIndexItem_Clear",
    "StoreIndex_Open",
    "StoreIndex_Init",
    "StoreIndex_Close",
    "StoreIndex_Release",
    "StoreIndex_Get",
    "StoreIndex_Save",
    "GetStoreItemByMessageID",
    "Direct_StoreIndex_UpdateItem",
    "Direct_StoreIndex_InsertItem",
    "Direct_StoreIndex_InsertItemEx",
    "Direct_StoreIndex_RemoveItem",
    "StoreIndex_UpdateItem",
    "StoreIndex_InsertItem",
    "StoreIndex_RemoveItem",
    "RemoveMailboxShares",
};
constexpr std::size_t kInit = 0;
constexpr std::size_t kUnInit = 1;

// Set at attach, cleared at detach, read-only in between.
struct LoadedStore {
  std::optional<platform::Library> library;
  std::array<StoreEntry*, std::size(kEntryNames)> entries{};  // nullptr: the library lacks it
};

LoadedStore& store() {
  static NeverDestroyed<LoadedStore> loaded;
  return *loaded;
}

void look_up_entries(LoadedStore& loaded) {
  std::transform(std::begin(kEntryNames), std::end(kEntryNames), loaded.entries.begin(),
                 [&](const char* name) { return loaded.library->find<StoreEntry>(name); });
}

// Both that are called have this form.
std::int32_t call(StoreEntry* entry) {
  return entry == nullptr ? 0 : reinterpret_cast<decltype(StoreLibrary_Init)*>(entry)();
}

std::int32_t clean_up(StoreEntry* entry) {
  try {
    return call(entry);
  } catch (...) {
    report_caught_exception("StoreLibrary_UnInit", "store/store_library.cpp", __LINE__);
    return 0;
  }
}

}  // namespace

std::int32_t LoadStoreLibrary() {
  if (store().library) return 1;
  std::optional<platform::Library> library =
      platform::Library::load(platform::join_path({settings().application_directory, kLibraryName}));
  if (!library) return 0;
  store().library = std::move(library);
  look_up_entries(store());
  return call(store().entries[kInit]);
}

std::int32_t ReleaseStoreLibrary() {
  if (!store().library) return 0;
  const std::int32_t result = clean_up(store().entries[kUnInit]);
  store().entries.fill(nullptr);
  store().library.reset();
  return result;
}

StoreEntry* store_entry(std::string_view name) {
  const auto found = std::find(std::begin(kEntryNames), std::end(kEntryNames), name);
  return found == std::end(kEntryNames) ? nullptr
                                        : store().entries[static_cast<std::size_t>(found - std::begin(kEntryNames))];
}

}  // namespace pv
