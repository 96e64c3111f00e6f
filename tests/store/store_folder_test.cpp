#include "store/store_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/agent_settings.h"
#include "common/registry_access.h"
#include "platform/output_capture.h"
#include "store/store_paths.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using ::testing::ElementsAre;

constexpr char kFlagText[] = "This file is a flag file that denotes that this folder has been changed";

class StoreFolder : public ::testing::Test {
 protected:
  StoreFolder() { tree_.make_directory("mail/po/MAILROOT/jane"); }
  ~StoreFolder() { forget_agent_settings(); }
  test::ServerTree tree_;
};

TEST_F(StoreFolder, CreatingOneFlagsItsParent) {
  const std::string path = tree_.path("mail/po/MAILROOT/jane/Junk E-mail");
  for (const bool created : {true, false}) {
    EXPECT_EQ(CreateStoreFolder(path), created);
    EXPECT_EQ(tree_.read("mail/po/MAILROOT/jane/_FOLDER.DTY"), kFlagText);
    EXPECT_TRUE(tree_.remove("mail/po/MAILROOT/jane/_FOLDER.DTY"));
  }
  EXPECT_FALSE(CreateStoreFolder(tree_.path("mail/po/MAILROOT/jane/a/b"))) << "one level only";
  EXPECT_THAT(tree_.names("mail/po/MAILROOT/jane"), ElementsAre("Junk E-mail"));
}

TEST_F(StoreFolder, OnlyTheStoresTreesAreFlagged) {
  struct Case {
    const char* parent;
    bool flagged;
  };
  for (const Case& c : {Case{"x/PUBROOT/a", true}, Case{"x/fileroot/a", true}, Case{"x/PUBROOT", true},
                        Case{"x/MAILROOTS/a", false}, Case{"x", false}}) {
    tree_.make_directory(c.parent);
    tree_.remove(std::string(c.parent) + "/new");
    EXPECT_TRUE(CreateStoreFolder(tree_.path(c.parent) + "/new")) << c.parent;
    EXPECT_EQ(tree_.exists(std::string(c.parent) + "/_FOLDER.DTY"), c.flagged) << c.parent;
  }
}

TEST_F(StoreFolder, AChangeIsFlaggedInTheFolder) {
  tree_.write("mail/po/MAILROOT/jane/Quarantine/_CHANGE.DTY", "an older and longer flag" + std::string(100, ' '));
  platform::OutputCapture output;
  EXPECT_EQ(MarkFolderChanged("po", "jane", "Quarantine", "ADD", "M1.MAI", 1, 1), 1);
  EXPECT_EQ(MarkFolderChanged("po", "jane", "missing", "ADD", "M1.MAI", 1, 1), 1) << "passed over";
  EXPECT_EQ(output.take(),
            "Folder=Quarantine::Folder Made Dirty to notify clients\nFolder=missing::Folder Made Dirty to notify "
            "clients\n");
  EXPECT_EQ(tree_.read("mail/po/MAILROOT/jane/Quarantine/_CHANGE.DTY"), kFlagText);
  EXPECT_THAT(tree_.names("mail/po/MAILROOT/jane/Quarantine"), ElementsAre("_CHANGE.DTY"));
}

TEST_F(StoreFolder, TheRootIsReadOnce) {
  tree_.set_text(kRootKey, "Mail Root", "");
  EXPECT_EQ(PostofficeRoot("po"), std::nullopt) << "without a root there is no store";
  tree_.set_text(kRootKey, "Mail Root", tree_.path("mail"));
  EXPECT_EQ(PostofficeRoot("po"), tree_.path("mail/po"));
  tree_.set_text(kRootKey, "Mail Root", tree_.path("other"));
  EXPECT_EQ(PostofficeRoot("po"), tree_.path("mail/po"));
  for (const char* name : {"", ".", "..", "a/b", "a\\b", "c:"}) EXPECT_EQ(PostofficeRoot(name), std::nullopt) << name;
}

}  // namespace
}  // namespace pv
