#include "store/store_library.h"

#include <gtest/gtest.h>

#include "common/agent_settings.h"
#include "common/registry_access.h"
#include "support/server_tree.h"

namespace pv {
namespace {

class StoreLibrary : public ::testing::Test {
 protected:
  ~StoreLibrary() {
    ReleaseStoreLibrary();
    forget_agent_settings();
  }

  void use(std::string_view application_directory) {
    tree_.set_text(kRootKey, "Application Directory", application_directory);
    read_server_settings();
  }

  test::ServerTree tree_;
};

TEST_F(StoreLibrary, IsInitialisedOnceAndCleanedUp) {
  use(STORE_LIBRARIES "/whole");
  EXPECT_EQ(LoadStoreLibrary(), 41);
  EXPECT_EQ(LoadStoreLibrary(), 1) << "loaded already";
  ASSERT_NE(store_entry("RemoveMailboxShares"), nullptr);
  EXPECT_EQ(reinterpret_cast<std::int32_t (*)()>(store_entry("RemoveMailboxShares"))(), 1) << "initialised once";
  EXPECT_EQ(store_entry("StoreFolder_Open"), nullptr) << "the library lacks it";
  EXPECT_EQ(store_entry("NoEntry"), nullptr);
  EXPECT_EQ(ReleaseStoreLibrary(), 42);
  EXPECT_EQ(store_entry("RemoveMailboxShares"), nullptr);
  EXPECT_EQ(ReleaseStoreLibrary(), 0) << "released already";
  EXPECT_EQ(LoadStoreLibrary(), 41) << "anew";
}

TEST_F(StoreLibrary, NeedsNeitherEntry) {
  use(STORE_LIBRARIES "/bare");
  EXPECT_EQ(LoadStoreLibrary(), 0);
  EXPECT_EQ(LoadStoreLibrary(), 1) << "loaded all the same";
  EXPECT_EQ(ReleaseStoreLibrary(), 0);
}

TEST_F(StoreLibrary, MayBeMissing) {
  use(tree_.path("app"));
  EXPECT_EQ(LoadStoreLibrary(), 0);
  tree_.write("app/PVAISP.DLL", "no library");
  EXPECT_EQ(LoadStoreLibrary(), 0);
  EXPECT_EQ(ReleaseStoreLibrary(), 0);
}

}  // namespace
}  // namespace pv
