// Runs the inputs of a corpus through a fuzz target, in any build: replay DIRECTORY|FILE...
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz_target.h"

namespace {

namespace fs = std::filesystem;

void add_inputs(const fs::path& path, std::vector<fs::path>& inputs) {
  if (!fs::is_directory(path)) {
    inputs.push_back(path);
    return;
  }
  for (const fs::directory_entry& entry : fs::directory_iterator(path)) inputs.push_back(entry.path());
}

bool run(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  if (!in) {
    std::fprintf(stderr, "replay: %s: cannot be read\n", path.string().c_str());
    return false;
  }
  std::fprintf(stderr, "%s (%zu bytes)\n", path.string().c_str(), bytes.size());
  // A copy of exactly this size, so that AddressSanitizer sees a read behind its end.
  const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(input.data(), input.size());
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<fs::path> inputs;
  for (int i = 1; i < argc; ++i) add_inputs(argv[i], inputs);
  std::sort(inputs.begin(), inputs.end());
  if (inputs.empty()) {
    std::fputs("replay: no inputs\n", stderr);
    return 1;
  }
  LLVMFuzzerInitialize(&argc, &argv);
  return std::all_of(inputs.begin(), inputs.end(), run) ? 0 : 1;
}
