// What actions cost: the two that rewrite a message, on 20 MB beside copying the file, and each on a small message.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "actions/add_header.h"
#include "actions/dispatcher.h"
#include "actions/subject_prefix.h"
#include "common/agent_settings.h"
#include "filters/criteria_keywords.h"
#include "heap_count.h"
#include "ratios.h"
#include "workload.h"

namespace pv::bench {
namespace {
namespace fs = std::filesystem;

constexpr std::size_t kLarge = 20 * 1000 * 1000;  // bytes
constexpr std::size_t kSmall = 4096;

class QueuedMessage {
 public:
  explicit QueuedMessage(std::size_t body_bytes) : text_(message_text(body_bytes)) {
    server_.queue("B.MAI", kCommandFile, text_);
    server_.write("queues/LS/Outgoing/Messages/B.MAI", text_);
    server_.write("queues/SMTP/Outgoing/Messages/B.MAI", text_);
    server_.write("mail/po/MAILROOT/jane/B.MAI", text_);
    server_.write("conf/Postoffices/System/Annotations/D.TXT", "Checked by the filter.\r\n");
    server_.write("conf/FILTERS/Templates/T.TXT", "Subject: [PV_FILTERNAME]\r\n\r\n[PV_HEADERS]\r\n[PV_MID]\r\n");
    read_server_settings();
    message.connector.cut("SMTP");
    message.message_id.cut("B.MAI");
    message.envelope.recipients = "[SMTP:joe@example.com]";
    message.envelope.sender.cut("[SMTP:ann@example.org]");
    message.envelope.user.cut("jane");
    message.directories = reread_directories();
  }
  ~QueuedMessage() { forget_agent_settings(); }

  std::string path() const { return server_.path("queues/SMTP/Inbound/Messages/B.MAI"); }
  const test::ServerTree& server() const { return server_; }

  // Undoes what the last action did, so that every one meets the same message and no growing directories.
  void restore() {
    for (const char* directory : {"queues/SMTP/Inbound", "queues/SMTP/Inbound/Messages"}) {
      for (const std::string& name : server_.names(directory)) {
        if (name != "Messages" && name != "B.MAI") server_.remove(std::string(directory) + "/" + name);
      }
    }
    for (const char* copy : {"badmail/B.MAI", "badmail/Messages/B.MAI", "quarantine/B.MAI", "quarantine/Messages/B.MAI",
                             "mail/po/MAILROOT/jane/_FOLDER.DTY", "mail/po/MAILROOT/jane/Work/B.MAI",
                             "mail/po/MAILROOT/jane/Work/_CHANGE.DTY"}) {
      server_.remove(copy);
    }
    server_.queue("B.MAI", kCommandFile, text_);
    server_.write("queues/LS/Outgoing/Messages/B.MAI", text_);
    server_.write("mail/po/MAILROOT/jane/B.MAI", text_);
  }

  MessageContext message;

 private:
  const std::string text_;
  const FilterServer server_{0};
};

// The floor: the same bytes read and written by the system's own means.
void CopyFile20MB(benchmark::State& state) {
  const QueuedMessage queued(kLarge);
  const std::string copy = queued.server().path("copy");
  for (auto _ : state) {
    fs::remove(copy);
    fs::copy_file(queued.path(), copy);
  }
}

// The same by the program that administrators know, with the time that its start takes.
void CpProgram20MB(benchmark::State& state) {
  const QueuedMessage queued(kLarge);
  const std::string copy = queued.server().path("copy");
  const std::string command = "cp '" + queued.path() + "' '" + copy + "'";
  for (auto _ : state) {
    fs::remove(copy);
    if (std::system(command.c_str()) != 0) state.SkipWithError("cp failed");
  }
}

void AddHeader20MB(benchmark::State& state) {
  const QueuedMessage queued(kLarge);
  const HeapCount heap;
  for (auto _ : state) benchmark::DoNotOptimize(AddHeader(queued.message, "X-Filter", "yes", Queue::kInbound));
  state.counters["peak_heap"] = static_cast<double>(heap.peak());
}

void AddSubjectPrefix20MB(benchmark::State& state) {
  const QueuedMessage queued(kLarge);
  int number = 0;  // a prefix that is there already would not be put there again
  for (auto _ : state) {
    const std::string prefix = "[" + std::to_string(++number) + "] ";
    benchmark::DoNotOptimize(AddSubjectPrefix(queued.message, prefix, Queue::kInbound));
  }
}

// What the file system takes for replacing a small file in one step, which most actions do once.
void ReplaceSmallFile(benchmark::State& state) {
  QueuedMessage queued(kSmall);
  const std::string copy = queued.server().path("copy");
  for (auto _ : state) {
    fs::copy_file(queued.path(), copy);
    fs::rename(copy, queued.path());
    state.PauseTiming();
    queued.restore();
    state.ResumeTiming();
  }
}

// One action of a 4 KB message, from its table to the report line.
void SmallAction(benchmark::State& state, const char* keyword, const char* data, bool mailbox_rule) {
  QueuedMessage queued(kSmall);
  queued.server().write(
      mailbox_rule ? "conf/Postoffices/po/Mailboxes/jane/RULES/ACTIONS/D.TAB" : "conf/FILTERS/ACTIONS/D.TAB",
      "1\t\t" + std::string(data) + "\t" + keyword + "\tdescription\r\n");
  FilterSet set;
  set.filter_count = 1;
  set.filters.emplace_back().slots[kAllMessages].status = 1;
  set.filter(1).definition_name.cut("D");
  set.filter(1).display_name.cut("admin@example.com");
  if (mailbox_rule) {
    set.postoffice.cut("po");
    set.mailbox.cut("jane");
  }
  MatchResults results;
  AllocateMatchResults(set, results);
  results.match(1).match_count[kAllMessages] = 1;
  for (auto _ : state) {
    ReportLine line;
    MessageContext message = queued.message;
    benchmark::DoNotOptimize(ExecuteFilterActions(message, set, results, line));
    state.PauseTiming();
    if (line.view().find(keyword) == std::string_view::npos) state.SkipWithError("the action failed");
    queued.restore();
    state.ResumeTiming();
  }
}

BENCHMARK(CopyFile20MB)->Unit(benchmark::kMillisecond);
BENCHMARK(CpProgram20MB)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(AddHeader20MB)->Unit(benchmark::kMillisecond);
BENCHMARK(AddSubjectPrefix20MB)->Unit(benchmark::kMillisecond);

BENCHMARK(ReplaceSmallFile)->Unit(benchmark::kMicrosecond)->Iterations(2000);
#define SMALL_ACTION(name, keyword, data, mailbox_rule) \
  BENCHMARK_CAPTURE(SmallAction, name, keyword, data, mailbox_rule)->Unit(benchmark::kMicrosecond)->Iterations(2000)
SMALL_ACTION(DELETE, "DELETE", "", false);
SMALL_ACTION(COPY_TO_BADMAIL, "COPY_TO_BADMAIL", "", false);
SMALL_ACTION(COPY_TO_QUARANTINE, "COPY_TO_QUARANTINE", "", false);
SMALL_ACTION(ADD_SUBJECT_PREFIX, "ADD_SUBJECT_PREFIX", "[x] ", false);
SMALL_ACTION(ADD_HEADER, "ADD_HEADER", "X-Filter|[PV_IP]", false);
SMALL_ACTION(NOTIFY_SENDER, "NOTIFY_SENDER", "T", false);
SMALL_ACTION(NOTIFY_ADDRESS, "NOTIFY_ADDRESS", "<REFERENCE><FILE>T</FILE><ADDRESS>a@example.org</ADDRESS>", false);
SMALL_ACTION(NOTIFY_RECIPIENTS, "NOTIFY_RECIPIENTS", "T", false);
SMALL_ACTION(FORWARD_TO_ADDRESS, "FORWARD_TO_ADDRESS", "a@example.org", false);
SMALL_ACTION(APPEND_RECIPIENTS, "APPEND_RECIPIENTS", "", false);
SMALL_ACTION(APPEND_ANNOTATIONS, "APPEND_ANNOTATIONS", "2", false);
SMALL_ACTION(STOP_PROCESSING, "STOP_PROCESSING", "", false);
SMALL_ACTION(MOVE, "MOVE", "Work", true);
SMALL_ACTION(PREFIX_SUBJECT, "PREFIX-SUBJECT", "[x] ", true);
#undef SMALL_ACTION

const Ratio kHeader("ADD_HEADER on 20 MB, to copying the file within this process (at most 2)", "AddHeader20MB",
                    "CopyFile20MB");
const Ratio kPrefix("ADD_SUBJECT_PREFIX on 20 MB, to the same (at most 2)", "AddSubjectPrefix20MB", "CopyFile20MB");
const Ratio kHeaderTime("ADD_HEADER on 20 MB, to cp, real time", "AddHeader20MB", "CpProgram20MB/real_time",
                        RatioOf::kRealTime);
const Ratio kPrefixTime("ADD_SUBJECT_PREFIX on 20 MB, to cp, real time", "AddSubjectPrefix20MB",
                        "CpProgram20MB/real_time", RatioOf::kRealTime);

}  // namespace
}  // namespace pv::bench
