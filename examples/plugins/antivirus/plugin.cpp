// PVAVGEN: an antivirus scanner that knows one virus, the EICAR test text.
//
// The agent names the message but not its queue. That is the directory in the first line of the file "PVAVGEN.queues"
// beside the library, and without that file the directory "queues" beside the library's own.
#include "pvmtafilter/plugin.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include "antivirus/eicar_search.h"
#include "support/library_files.h"
#include "support/texts.h"

namespace example {
namespace {

std::string queue_directory() {
  std::ifstream file(path_beside_library("queues"));
  std::string line;
  if (!std::getline(file, line)) return library_directory() + "../queues";
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

bool holds_eicar(const std::string& path) {
  if (!std::filesystem::is_regular_file(path)) return false;  // opening a pipe would wait for its other end
  std::ifstream file(path, std::ios::binary);
  EicarSearch search;
  std::array<char, 65536> block;
  while (file.read(block.data(), block.size()) || file.gcount() > 0) {
    for (std::streamsize i = 0; i < file.gcount(); ++i) {
      if (search.feed(block[static_cast<std::size_t>(i)])) return true;
    }
  }
  return false;
}

// The message lies in the inbound queue, or for the filters of a postoffice in the outgoing one.
bool is_infected(const std::string& connector, const std::string& message_id) {
  static const std::string queues = queue_directory();
  for (const char* queue : {"/Inbound/Messages/", "/Outgoing/Messages/"}) {
    std::string path = queues;
    path.append("/").append(connector).append(queue).append(message_id);
    if (holds_eicar(path)) return true;
  }
  return false;
}

}  // namespace
}  // namespace example

// Called on several threads at once. A message that cannot be read passes: mail is not held up by its scanner.
extern "C" int32_t PV_CALL ProviderExecute(const char*, const char* message_id, const char* connector,
                                           char* result_text) {
  try {
    if (!example::is_infected(connector, message_id)) return 0;
    example::fill(result_text, PV_RESULT_TEXT_SIZE, "EICAR test file");
    return 1;
  } catch (...) {  // no memory
    return 0;
  }
}
