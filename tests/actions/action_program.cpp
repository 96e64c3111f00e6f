// The program that the tests start as an action:
//
//     action_program               ends at once
//     action_program append FILE WORD...   appends the words to the file, a line each
//     action_program print WORD    prints the word
//     action_program wait FILE     writes the file after a time that no test waits for
#include <chrono>
#include <cstdio>
#include <fstream>
#include <string_view>
#include <thread>

namespace {

int append(int count, char** words) {
  std::ofstream file(words[0], std::ios::app | std::ios::binary);
  for (int i = 1; i < count; ++i) file << words[i] << '\n';
  return file.flush() ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 3) return 0;
  const std::string_view command = arguments[1];
  if (command == "append") return append(count - 2, arguments + 2);
  if (command == "print") return std::puts(arguments[2]) < 0 ? 1 : 0;
  if (command == "wait") std::this_thread::sleep_for(std::chrono::hours(1));
  return append(count - 2, arguments + 2);
}
