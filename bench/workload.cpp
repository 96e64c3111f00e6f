#include "workload.h"

#include <string_view>

#include "filters/criteria_keywords.h"

namespace pv::bench {
namespace {

constexpr int kLetters = 26;

// Words differ early, as the words of a language do.
std::string word(int number) {
  const auto letter = [number](int divisor) { return static_cast<char>('a' + number / divisor % kLetters); };
  return {letter(1), letter(kLetters), 'q', 'z', 'x', 'j', letter(kLetters * kLetters)};
}

}  // namespace

std::string words(int first, int count, char separator) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    if (i > 0) text += separator;
    text += word(first + i);
  }
  return text;
}

std::string message_text(std::size_t body_bytes) {
  std::string text = kHeaders;
  for (std::size_t size = 0; size < body_bytes; size += kTextLineSize) text += kTextLine;
  return text;
}

FilterServer::FilterServer(int filters) {
  std::string table;
  for (int i = 0; i < filters; ++i) {
    const std::string name = "f" + std::to_string(i);
    table.append(name).append("\t1\t").append(name).append("\t\tFilter ").append(name).append("\t\r\n");
    const std::string subject = words(15 * i, 5, ',');
    const std::string sender = words(15 * i + 5, 5, ',');
    const std::string body = words(15 * i + 10, 5, ',');
    criteria(name, {{kSubject, subject},
                    {kBody, body},
                    {kToOrCc, "*@example.net"},
                    {kFrom, sender},
                    {kSenderAuth, "7"},
                    {kIpAddress, "198.51.100.*"},
                    {kAccount, "other"},
                    {kConnector, "LS"}});
  }
  write("conf/FILTERS/FILTER.TAB", table);
}

}  // namespace pv::bench
