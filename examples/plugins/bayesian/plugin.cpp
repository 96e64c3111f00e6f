// PVFLTMBF: stands in for a Bayesian filter. Answers a scan with the probability that the word list beside the library,
// "PVFLTMBF.words", gives the message as it stands in its file: headers and body, encoded parts as they are.
#include "pvmtafilter/plugin.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

#include "bayesian/word_list.h"
#include "support/library_files.h"
#include "support/texts.h"

namespace example {
namespace {

constexpr std::size_t kMostBytes = 1U << 20;  // of a message; what comes after is not looked at

// Read at first use, not in PV_Initialize: with "Bayesian Filtering Load Mode" 0 that is never called.
const std::optional<WordList>& word_list() {
  static const std::optional<WordList> list = [] {
    std::optional<WordList> read(std::in_place);
    if (!read->read(path_beside_library("words"))) read.reset();
    return read;
  }();
  return list;
}

std::optional<std::string> read_message(std::string_view path) {
  if (!std::filesystem::is_regular_file(path)) return std::nullopt;  // opening a pipe would wait for its other end
  std::ifstream file(std::string(path), std::ios::binary);
  if (!file) return std::nullopt;
  std::string message(kMostBytes, '\0');
  file.read(message.data(), static_cast<std::streamsize>(message.size()));
  message.resize(static_cast<std::size_t>(file.gcount()));
  return message;
}

// The answer to a scan request; nullopt for other requests (commands to train a filter), and without list or message.
std::optional<std::string> answer(std::string_view request) {
  const std::optional<std::string_view> path = element(request, "FILENAME");
  if (!path || !word_list()) return std::nullopt;
  const std::optional<std::string> message = read_message(*path);
  if (!message) return std::nullopt;
  return "<SP>" + std::to_string(word_list()->spam_probability(*message)) + "</SP>";
}

}  // namespace
}  // namespace example

extern "C" int32_t PV_CALL PV_Initialize(const char*, int32_t, char*, int32_t*) {
  return 1;
}

// Called on several threads at once; the list is only read.
extern "C" int32_t PV_CALL PV_Execute(const char* request, int32_t request_length, char* reply, int32_t* reply_length) {
  try {
    const std::optional<std::string> text =
        example::answer({request, static_cast<std::size_t>(std::max(request_length, 0))});
    if (!text) return 0;
    *reply_length = static_cast<int32_t>(example::fill(reply, PV_REPLY_SIZE, *text));
    return 1;
  } catch (...) {  // no memory
    return 0;
  }
}

extern "C" int32_t PV_CALL PV_CleanUp(const char*, int32_t, char*, int32_t*) {
  return 1;
}
