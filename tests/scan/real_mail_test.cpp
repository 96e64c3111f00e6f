// Real mail, scanned with compiled words and word by word. The words are taken from the mail itself, so that many
// match.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "common/agent_settings.h"
#include "filters/compiled_filters.h"
#include "filters/printed_by.h"
#include "scan/message_scan.h"
#include "support/server_tree.h"

namespace pv {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kEvery = 12;  // one message in so many

std::vector<std::string> read_mail() {
  const fs::path root = fs::exists(CORPUS_DIRECTORY) ? CORPUS_DIRECTORY : SAMPLE_DIRECTORY;
  std::vector<fs::path> paths;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
    if (entry.is_regular_file()) paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::vector<std::string> mail;
  for (std::size_t i = 0; i<paths.size(); i += paths.size()> 100 ? kEvery : 1) {
    std::ifstream in(paths[i], std::ios::binary);
    mail.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  return mail;
}

// Pieces of the mail: tokens, parts of tokens, and what stands beside one another; one in four with asterisks.
class WordsOfMail {
 public:
  explicit WordsOfMail(const std::vector<std::string>& mail) : mail_(mail) {}

  std::string list(std::size_t words, char separator) {
    std::string list;
    while (words-- > 0) list += word() + separator;
    return list;
  }

 private:
  std::size_t below(std::size_t limit) { return random_() % limit; }
  std::string word() {
    const std::string& message = mail_[below(mail_.size())];
    if (message.empty()) return "x";
    const std::size_t start = message.find_first_not_of(" \t\r\n", below(message.size()));
    if (start == std::string::npos) return "x";
    std::string word = message.substr(start, below(4) == 0 ? below(12) + 1 : token_length(message, start));
    for (char& c : word) c = c == '\t' || c == '\n' || c == '\r' || c == '\0' ? ' ' : c;
    if (below(4) == 0) word.insert(below(word.size() + 1), "*");
    if (below(8) == 0) word.insert(0, "*");
    return word;
  }
  std::size_t token_length(const std::string& message, std::size_t start) {
    std::size_t end = start;
    for (std::size_t tokens = below(3) + 1; tokens > 0 && end < message.size(); --tokens) {
      end = std::min(message.find_first_of(" '\"\r\n", end + 1), message.size());
    }
    return end - start;
  }

  const std::vector<std::string>& mail_;
  std::mt19937 random_{20241125};
};

std::string scanned(const MessageContext& message, const FilterSet& set) {
  std::string found;
  const std::string printed = test::printed_by([&] {
    MatchResults results;
    AllocateMatchResults(set, results);
    results.message = &message;
    ScanMessage(message, set, results);
    for (FilterIndex i = 1; i <= set.filter_count; ++i) {
      for (SlotIndex slot = 0; slot < kSlotCount; ++slot) {
        const FilterMatch& match = results.match(i);
        found += std::to_string(match.match_count[static_cast<std::size_t>(slot)]);
        found.append(match.matched_text(slot)).append(match.match_value(slot, 0)).append("\n");
      }
    }
  });
  return printed + found;
}

TEST(RealMail, CompiledWordsFindWhatAWalkThroughThemFinds) {
  const std::vector<std::string> mail = read_mail();
  ASSERT_FALSE(mail.empty());
  const test::ServerTree server;
  forget_agent_settings();
  WordsOfMail words(mail);
  server.write("conf/FILTERS/PATTERNS/list.txt", words.list(150, '\n'));
  FilterSet set;
  for (int i = 0; i < 6; ++i) {
    const std::string data = i == 0 ? "<REFERENCE><FILE>list.txt</FILE>" : words.list(20, '\t');
    FilterDefinition& filter = set.filters.emplace_back();
    for (const ListCriterion& criterion : kListCriteria) {
      filter.slots[static_cast<std::size_t>(criterion.slot)] = {1, data, 1, 1};
    }
    ++set.filter_count;
  }
  MessageContext message;
  message.directories = reread_directories();
  ASSERT_TRUE(message.connector.assign("SMTP") && message.message_id.assign("M.MAI"));
  std::size_t matched = 0;
  for (std::size_t i = 0; i < mail.size(); ++i) {
    server.queue("M.MAI", "", mail[i]);
    set.compiled.reset();
    const std::string walked = scanned(message, set);
    compile_filters(set);
    ASSERT_EQ(scanned(message, set), walked) << "message " << i;
    matched += walked.find("in specified word") != std::string::npos ? 1 : 0;
  }
  EXPECT_GT(matched, mail.size() / 2);
  forget_agent_settings();
}

}  // namespace
}  // namespace pv
