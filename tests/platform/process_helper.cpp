// The program that the tests of started programs start.
//
//     process_helper print WORD...         prints the words, each in brackets, as one line
//     process_helper hold MUTEX FILE       locks the mutex, makes the file, and waits to be killed
//     process_helper hold-by MUTEX FILE    has a program of its own do that, and waits for it
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <span>
#include <string>
#include <string_view>

#include "platform/event.h"
#include "platform/named_mutex.h"

namespace {

int print(std::span<char*> words) {
  std::string line;
  for (const char* word : words) line.append("[").append(word).append("]");
  std::puts(line.c_str());
  return 0;
}

int hold(const char* mutex_name, const char* file) {
  constexpr std::chrono::minutes kLimit{10};  // so that a failed test leaves nothing behind for ever
  pv::platform::NamedMutex mutex(mutex_name);
  if (!mutex.lock_for(kLimit)) return 1;
  std::ofstream(file) << "locked";
  pv::platform::Event never;
  never.wait_or_input(std::chrono::milliseconds(kLimit).count());
  mutex.unlock();
  return 0;
}

int hold_by(const std::string& self, const std::string& mutex_name, const std::string& file) {
  return std::system(("\"" + self + "\" hold " + mutex_name + " " + file).c_str());
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) return 2;
  const std::string_view command = arguments[1];
  if (command == "print") return print({arguments + 2, arguments + count});
  if (count != 4) return 2;
  return command == "hold" ? hold(arguments[2], arguments[3]) : hold_by(arguments[0], arguments[2], arguments[3]);
}
