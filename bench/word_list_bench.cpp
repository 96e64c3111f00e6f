// Words against one line of 70 bytes, none of which occurs: lists of criteria, and word files in memory.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>

#include "filters/criteria_keywords.h"
#include "filters/delimiters.h"
#include "filters/evaluation.h"
#include "filters/word_file.h"
#include "ratios.h"
#include "workload.h"

namespace pv::bench {
namespace {

constexpr int kWordsPerFilter = 100;  // what the line of a table holds; longer lists are shared out to several filters

FilterSet make_filters(int word_count) {
  FilterSet set;
  for (int first = 0; first < word_count; first += kWordsPerFilter) {
    const std::string list = words(first, std::min(kWordsPerFilter, word_count - first), '\t');
    set.filters.emplace_back().slots[kBody] = {1, list, 1, 1};
    ++set.filter_count;
  }
  return set;
}

void WordListLine(benchmark::State& state) {
  const FilterSet set = make_filters(static_cast<int>(state.range(0)));
  MatchResults results;
  AllocateMatchResults(set, results);
  for (auto _ : state) EvaluateWordList(kBody, kTextLine, kWordDelimiters, set, results);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void WordFileLine(benchmark::State& state) {
  const test::TemporaryDirectory directory;
  directory.write("words.txt", words(0, static_cast<int>(state.range(0)), '\n') + "\n");
  const std::string path = directory.path("words.txt");
  PatternCache cache;
  cache.load(path, "%s\n");
  FilterMatch match;
  const WordFileTest test{kTextLine, kWordDelimiters, kBody, 0, tag::kWord};
  for (auto _ : state) benchmark::DoNotOptimize(MatchWordFileCached(test, cache, path, match));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(WordListLine)->Arg(10)->Arg(100)->Arg(1000);              // words
BENCHMARK(WordFileLine)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);  // lines of the file

const Ratio kHundredWords("100 words against a line, to 10", "WordListLine/100", "WordListLine/10");
const Ratio kThousandWords("1000 words against a line, to 100", "WordListLine/1000", "WordListLine/100");
const Ratio kListToFile("1000 words in lists, to a word file of 1000 lines", "WordListLine/1000", "WordFileLine/1000");

}  // namespace
}  // namespace pv::bench
