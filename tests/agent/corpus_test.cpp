// Real mail through a server with all criteria enabled: alone and on eight threads the agent does the same to each
// message.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <thread>

#include "agent/every_criterion.h"
#include "agent/loaded_agent.h"
#include "platform/output_capture.h"

namespace pv {
namespace {

namespace fs = std::filesystem;
using test::LoadedAgent;
using test::ServerTree;

// Message identifier to bytes. The project's own samples where the corpus is not at hand.
std::map<std::string, std::string> read_corpus() {
  const fs::path root = fs::exists(CORPUS_DIRECTORY) ? CORPUS_DIRECTORY : SAMPLE_DIRECTORY;
  std::map<std::string, std::string> messages;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
    if (!entry.is_regular_file() || entry.path().extension() == ".md") continue;
    std::ifstream in(entry.path(), std::ios::binary);
    messages[entry.path().filename().string().substr(0, 63)] = {std::istreambuf_iterator<char>(in),
                                                                std::istreambuf_iterator<char>()};
  }
  return messages;
}

// What the report log says of each message, line by line without the times.
std::map<std::string, std::string> reports(const ServerTree& server) {
  std::map<std::string, std::string> lines;
  const std::string log = test::report_log(server);
  for (std::size_t at = log.find("\tExecuted\t"); at != std::string::npos; at = log.find("\tExecuted\t", at + 1)) {
    const std::string line = log.substr(at + 10, log.find("\r\n", at) - at - 10);
    lines[line.substr(0, line.find('\t'))] += line + "\n";
  }
  return lines;
}

struct Outcome {
  std::map<std::string, std::string> messages;
  std::map<std::string, std::string> reports;
};

Outcome filter_corpus(const std::map<std::string, std::string>& corpus, int thread_count) {
  const ServerTree server;
  test::enable_every_criterion(server);
  std::vector<std::string> ids;
  for (const auto& [id, bytes] : corpus) {
    server.queue(id, test::kCommandFile, bytes);
    ids.push_back(id);
  }
  platform::OutputCapture quiet;
  {
    const LoadedAgent agent(server);
    std::atomic<std::size_t> next{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < thread_count; ++t) {
      threads.emplace_back([&] {
        for (std::size_t i = next++; i < ids.size(); i = next++) agent.execute(ids[i]);
      });
    }
    for (std::thread& thread : threads) thread.join();
  }
  Outcome outcome;
  for (const std::string& id : ids) outcome.messages[id] = server.message(id);
  outcome.reports = reports(server);
  return outcome;
}

TEST(CorpusConcurrent, EightThreadsDoWhatOneDoes) {
  const auto corpus = read_corpus();
  ASSERT_FALSE(corpus.empty());
  const Outcome alone = filter_corpus(corpus, 1);
  const Outcome together = filter_corpus(corpus, 8);
  EXPECT_EQ(alone.reports.size(), corpus.size()) << "every message meets at least CONNECTOR";
  for (const auto& [id, bytes] : corpus) {
    EXPECT_EQ(alone.messages.at(id), together.messages.at(id)) << id;
    EXPECT_EQ(alone.reports.at(id), together.reports.at(id)) << id;
    EXPECT_NE(alone.messages.at(id), bytes) << id;
  }
}

}  // namespace
}  // namespace pv
