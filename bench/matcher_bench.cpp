// The compiled words against the body lines of real mail, by the number of words: plain words, and one in eight with
// asterisks; and shapes of words and lines that are bad for a matcher. With PV_BENCH_HYPERSCAN the same work is done
// with Hyperscan. Every ratio with a mark is printed behind the table.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "filters/delimiters.h"
#include "filters/match_pattern.h"
#include "filters/word_matcher.h"
#include "heap_count.h"
#include "mail_text.h"
#include "ratios.h"

#ifdef PV_BENCH_HYPERSCAN
#include "hyperscan_matcher.h"
#endif

namespace pv::bench {
namespace {

std::vector<std::string_view> views(const std::vector<std::string>& texts) {
  return {texts.begin(), texts.end()};
}

std::size_t bytes_of(const std::vector<std::string>& lines) {
  std::size_t sum = 0;
  for (const std::string& line : lines) sum += line.size();
  return sum;
}

std::vector<std::string> few_lines() {
  std::vector<std::string> lines;
  for (std::size_t i = 0; i < mail_lines().size(); i += 100) lines.push_back(mail_lines()[i]);
  return lines;
}

// `find(line, matches)` appends the numbers of the words that match.
template <typename Find>
void scan_lines(benchmark::State& state, const std::vector<std::string>& lines, Find find) {
  std::vector<std::uint32_t> matches;
  std::size_t found = 0;
  for (auto _ : state) {
    found = 0;
    for (const std::string& line : lines) {
      matches.clear();
      find(line, matches);
      found += matches.size();
    }
  }
  benchmark::DoNotOptimize(found);
  state.SetBytesProcessed(static_cast<std::int64_t>(bytes_of(lines)) * static_cast<std::int64_t>(state.iterations()));
  state.counters["matches"] = static_cast<double>(found);
}

void scan_compiled(benchmark::State& state, const std::vector<std::string>& words,
                   const std::vector<std::string>& lines) {
  const WordMatcher matcher(views(words), kWordDelimiters);
  MatcherScratch scratch;
  scan_lines(state, lines, [&](std::string_view line, std::vector<std::uint32_t>& matches) {
    matcher.find(line, false, scratch, matches);
  });
}

void MatcherPlain(benchmark::State& state) {
  scan_compiled(state, word_list(static_cast<std::size_t>(state.range(0)), Asterisks::kNone), mail_lines());
}
void MatcherAsterisks(benchmark::State& state) {
  scan_compiled(state, word_list(static_cast<std::size_t>(state.range(0)), Asterisks::kOneInEight), mail_lines());
}

// One search a word: what the compiled words save.
void MatcherWordByWord(benchmark::State& state) {
  const std::vector<std::string> words = word_list(static_cast<std::size_t>(state.range(0)), Asterisks::kNone);
  scan_lines(state, few_lines(), [&](std::string_view line, std::vector<std::uint32_t>& matches) {
    for (std::uint32_t i = 0; i < words.size(); ++i) {
      if (MatchPattern(line, words[i], kWordDelimiters, false)) matches.push_back(i);
    }
  });
}

void MatcherBuild(benchmark::State& state) {
  const std::vector<std::string> words = word_list(static_cast<std::size_t>(state.range(0)), Asterisks::kOneInEight);
  const HeapCount heap;
  std::size_t memory = 0;
  for (auto _ : state) {
    const WordMatcher matcher(views(words), kWordDelimiters);
    memory = matcher.memory();
  }
  state.counters["tables"] = static_cast<double>(memory);
  state.counters["peak_heap"] = static_cast<double>(heap.peak());
}

// Shapes that are bad for a matcher: the cost of a byte has to stay in the order of the others.
std::string repeated(std::string_view piece, std::size_t size) {
  std::string text;
  while (text.size() < size) text += piece;
  text.resize(size);
  return text;
}
std::vector<std::string> numbered(std::string_view before, std::string_view after) {
  std::vector<std::string> words;
  for (int i = 0; i < 10000; ++i) words.push_back(std::string(before) + std::to_string(i) + std::string(after));
  return words;
}
std::vector<std::string> grown(std::string_view before, std::string_view piece, std::string_view after) {
  std::vector<std::string> words;
  std::string middle;
  for (int i = 0; i < 1000; ++i) words.push_back(std::string(before) + (middle += piece) + std::string(after));
  return words;
}

constexpr std::size_t kLongLine = 2047;

void WorstWordsThatBeginAlike(benchmark::State& state) {
  scan_compiled(state, numbered("click here ", ""), {repeated("click here ", kLongLine)});
}
void WorstWordsOfOneToken(benchmark::State& state) {
  scan_compiled(state, grown("", "a ", "a"), {repeated("a ", kLongLine)});
}
void WorstOneCharacter(benchmark::State& state) {
  scan_compiled(state, grown("", "a", ""), {repeated("a", kLongLine)});
}
void WorstPiecesOfOneCharacter(benchmark::State& state) {
  scan_compiled(state, grown("*", "a", "b*"), {repeated("a", kLongLine)});
}
void WorstPiecesThatBeginAlike(benchmark::State& state) {
  scan_compiled(state, numbered("*click here ", "*"), {repeated("click here ", kLongLine)});
}
void WorstPrefixes(benchmark::State& state) {
  scan_compiled(state, numbered("click here ", "*"), {repeated("click here ", kLongLine)});
}

#ifdef PV_BENCH_HYPERSCAN
void scan_hyperscan(benchmark::State& state, Asterisks asterisks) {
  const std::vector<std::string> words = word_list(static_cast<std::size_t>(state.range(0)), asterisks);
  HyperscanMatcher matcher(views(words), kWordDelimiters);
  scan_lines(state, mail_lines(),
             [&](std::string_view line, std::vector<std::uint32_t>& matches) { matcher.find(line, matches); });
}
void HyperscanPlain(benchmark::State& state) {
  scan_hyperscan(state, Asterisks::kNone);
}
void HyperscanAsterisks(benchmark::State& state) {
  scan_hyperscan(state, Asterisks::kOneInEight);
}
void HyperscanBuild(benchmark::State& state) {
  const std::vector<std::string> words = word_list(static_cast<std::size_t>(state.range(0)), Asterisks::kOneInEight);
  for (auto _ : state) HyperscanMatcher(views(words), kWordDelimiters);
}
BENCHMARK(HyperscanPlain)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(HyperscanAsterisks)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(HyperscanBuild)->Arg(10000)->Unit(benchmark::kMicrosecond);
#endif

BENCHMARK(MatcherPlain)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);  // words
BENCHMARK(MatcherAsterisks)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(MatcherWordByWord)->Arg(10)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(MatcherBuild)->Arg(10)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(WorstWordsThatBeginAlike);
BENCHMARK(WorstWordsOfOneToken);
BENCHMARK(WorstOneCharacter);
BENCHMARK(WorstPiecesOfOneCharacter);
BENCHMARK(WorstPiecesThatBeginAlike);
BENCHMARK(WorstPrefixes);

const Ratio kPlain10("10 plain words, to Hyperscan (mark: 1.0)", "MatcherPlain/10", "HyperscanPlain/10");
const Ratio kPlain1000("1000 plain words, to Hyperscan (1.0)", "MatcherPlain/1000", "HyperscanPlain/1000");
const Ratio kPlain10000("10000 plain words, to Hyperscan (0.7)", "MatcherPlain/10000", "HyperscanPlain/10000");
const Ratio kStars10("10 words, one in eight with asterisks, to Hyperscan (1.0)", "MatcherAsterisks/10",
                     "HyperscanAsterisks/10");
const Ratio kStars1000("1000 of them, to Hyperscan (1.0)", "MatcherAsterisks/1000", "HyperscanAsterisks/1000");
const Ratio kStars10000("10000 of them, to Hyperscan (1.0)", "MatcherAsterisks/10000", "HyperscanAsterisks/10000");
const Ratio kGrowth("10000 plain words, to 10 (1.3)", "MatcherPlain/10000", "MatcherPlain/10");
const Ratio kGrowthStars("10000 words, one in eight with asterisks, to 10 (2.5)", "MatcherAsterisks/10000",
                         "MatcherAsterisks/10");
const Ratio kBuild("building for 10000 words, to Hyperscan (0.02)", "MatcherBuild/10000", "HyperscanBuild/10000");

}  // namespace
}  // namespace pv::bench
