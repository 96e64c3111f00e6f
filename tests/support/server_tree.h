// A server's directory tree for one test: settings, tables, queues, in a fresh temporary directory.
#pragma once

#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pv::test {

// A fresh directory, removed with everything in it.
class TemporaryDirectory {
 public:
  TemporaryDirectory();
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  std::string path() const { return path_.string(); }
  // Absolute path of something in it, given with '/'.
  std::string path(std::string_view relative) const { return (path_ / relative).make_preferred().string(); }

  // Bytes as they are; missing parent directories are made.
  void write(std::string_view relative, std::string_view bytes) const;
  // The empty text when there is no such file.
  std::string read(std::string_view relative) const;
  bool exists(std::string_view relative) const;
  // False when the system keeps it, as some do with files that are open.
  bool remove(std::string_view relative) const;
  void make_directory(std::string_view relative) const;
  // The names of the entries of a directory, sorted.
  std::vector<std::string> names(std::string_view relative) const;

 private:
  std::filesystem::path path_;
};

// A server tree with the usual directories and a settings file that names them, chosen as the process's settings.
//
//     conf/FILTERS/{FILTER.TAB,CRITERIA,ACTIONS,PATTERNS,Templates}   queues/SMTP/Inbound/Messages (and Outgoing)
//     badmail/Messages   quarantine/Messages   logs   app   mail   settings.reg
class ServerTree : public TemporaryDirectory {
 public:
  ServerTree();
  ~ServerTree();

  void set_number(std::string_view key, std::string_view name, std::uint32_t number) const;
  void set_text(std::string_view key, std::string_view name, std::string_view text) const;
  // From now on the agent cannot write settings: their lock cannot be had.
  void refuse_settings_writes() const;

  // FILTER.TAB: one enabled row per definition name, whose display name is "<name> filter".
  void filters(std::initializer_list<std::string> definition_names) const;
  // CRITERIA/<definition>.TAB with the given slots in use: {slot, "values"}; minimum 1.
  void criteria(std::string_view definition, std::initializer_list<std::pair<int, std::string_view>> slots) const;
  // ACTIONS/<definition>.TAB: one enabled row per {keyword, data}.
  void actions(std::string_view definition,
               std::initializer_list<std::pair<std::string_view, std::string_view>> rows) const;

  // Puts a message into the inbound queue of SMTP.
  void queue(std::string_view message_id, std::string_view command_file, std::string_view message) const;
  std::string message(std::string_view message_id) const;  // its bytes now
};

}  // namespace pv::test
