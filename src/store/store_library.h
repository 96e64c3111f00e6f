// The mail server's library for its message store, "PVAISP.DLL" in the application directory.
#pragma once

#include <cstdint>
#include <string_view>

namespace pv {

// Loads the library and looks its entry points up. What the library's initialisation returns; 1 when it is loaded
// already, 0 when it cannot be loaded or has no initialisation. At start-up, before the first message.
std::int32_t LoadStoreLibrary();

// What the library's clean-up returns; 0 when it is not loaded or has none. The library is unloaded in any case, also
// when its clean-up throws, which is reported.
std::int32_t ReleaseStoreLibrary();

// The function exported under one of the names in store_library.cpp; nullptr when the library is not loaded or lacks
// it. The caller knows its type. Valid until ReleaseStoreLibrary().
using StoreEntry = void();
StoreEntry* store_entry(std::string_view name);

}  // namespace pv
