// pvfilter: plays the mail server for the content-filter agent.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <functional>

#include "pvfilter/commands.h"

namespace {

using namespace pvfilter;

using Command = std::function<ExitStatus()>;

constexpr char kRegistryHelp[] =
    "a registry key in the place of SOFTWARE\\Post Vane\\Post Vane, as HKCU\\Software\\Trial; on Windows only";

void add_settings_options(CLI::App& command, SettingsPlace& settings) {
  CLI::Option_group* group = command.add_option_group("Where the server's settings are");
  group->add_option("--server", settings.server, "the server tree, a directory with a settings.reg");
  group->add_option("--settings", settings.file, "a settings file of any name");
  group->add_option("--registry", settings.registry, kRegistryHelp);
  group->require_option(1);
}

struct NewOptions {
  std::string directory;
  std::string registry;
};

void add_new(CLI::App& app, NewOptions& options, Command& chosen) {
  CLI::App* command = app.add_subcommand("new", "make a ready server tree with example filters");
  command->add_option("DIR", options.directory, "the directory to make; it must not exist or be empty")->required();
  command->add_option("--registry", options.registry, std::string("puts the settings into ") + kRegistryHelp);
  command->callback([&] { chosen = [&] { return new_server(options.directory, options.registry); }; });
}

void add_run(CLI::App& app, RunOptions& options, Command& chosen) {
  CLI::App* command =
      app.add_subcommand("run", "queue messages, have the agent filter them, and show what became of each");
  EnvelopeOptions& envelope = options.envelope;
  add_settings_options(*command, options.settings);
  command->add_option("FILE", options.files, "message files (RFC 5322)")->required();
  command->add_option("--connector", envelope.connector, "the queue the message arrives in")->capture_default_str();
  command->add_option("--from", envelope.from, "the envelope's sender")->capture_default_str();
  command->add_option("--to", envelope.to, "a recipient; may be given several times")
      ->capture_default_str()
      ->allow_extra_args(false);
  command->add_option("--ip", envelope.client_ip, "the address of the connecting client")->capture_default_str();
  command->add_option("--account", envelope.account, "the account (postoffice) the message was accepted for");
  command->add_option("--auth", envelope.authentication, "the sender's authentication status")->capture_default_str();
  command->add_flag("--raw", envelope.raw, "keep bare line feeds instead of making them CR LF");
  command->add_flag("--json", options.json, "print a JSON array, one object a message");
  command->add_flag("--show-output", options.show_output, "show what the agent printed as well");
  command->add_option("--agent", options.agent_library, "the agent library; by default the one beside this program");
  command->callback([&] { chosen = [&] { return run_messages(options); }; });
}

struct SettingsOptions {
  SettingsPlace settings;
  std::string name;
  std::string value;
  bool text = false;
  bool number = false;
};

constexpr char kNameHelp[] = "a setting of the agent, as \"Reload\", or KEY\\NAME below SOFTWARE\\Post Vane\\Post Vane";

void add_settings(CLI::App& app, SettingsOptions& options, Command& chosen) {
  CLI::App* command = app.add_subcommand("settings", "read and edit the server's settings safely");
  add_settings_options(*command, options.settings);
  command->require_subcommand(1);

  CLI::App* get = command->add_subcommand("get", "print one value");
  get->add_option("NAME", options.name, kNameHelp)->required();
  get->callback([&] { chosen = [&] { return get_setting(options.settings, options.name); }; });

  CLI::App* set = command->add_subcommand("set", "set one value; `set Reload 1` asks the agent to reload its filters");
  set->add_option("NAME", options.name, kNameHelp)->required();
  set->add_option("VALUE", options.value, "the new value; numbers in decimal")->required();
  CLI::Option* text = set->add_flag("--text", options.text, "the value is a text");
  set->add_flag("--number", options.number, "the value is a number")->excludes(text);
  set->callback([&] {
    chosen = [&] {
      const SettingType type = options.text     ? SettingType::kText
                               : options.number ? SettingType::kNumber
                                                : SettingType::kUnknown;
      return set_setting(options.settings, options.name, options.value, type);
    };
  });

  CLI::App* list = command->add_subcommand("list", "print every value, by key");
  list->callback([&] { chosen = [&] { return list_settings(options.settings); }; });
}

void add_check(CLI::App& app, SettingsPlace& settings, Command& chosen) {
  CLI::App* command = app.add_subcommand(
      "check", "read settings, tables, scripts, templates and word files as the agent will, and name every mistake");
  add_settings_options(*command, settings);
  command->callback([&] { chosen = [&] { return check_server(settings); }; });
}

// Help and version end well; anything else about the command line is a usage error.
int end_of_parsing(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == 0) return app.exit(error);
  std::fprintf(stderr, "pvfilter: %s\nRun `pvfilter --help` for the commands.\n", error.what());
  return kUsage;
}

int run_command(const Command& command) {
  try {
    return command();
  } catch (const CommandError& error) {
    std::fprintf(stderr, "pvfilter: %s\n", error.what());
    return error.status();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "pvfilter: %s\n", error.what());
    return kSoftware;
  }
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app(
      "Plays the mail server for the content-filter agent: queues messages, has the agent filter them, and shows "
      "what happened.",
      "pvfilter");
  app.set_version_flag("--version", "pvfilter " PVFILTER_VERSION);
  app.require_subcommand(1);
  app.fallthrough();
  app.allow_windows_style_options(false);  // "/srv/a.eml" is a path everywhere

  Command chosen;
  SettingsPlace checked;
  NewOptions new_options;
  RunOptions run;
  SettingsOptions settings;
  add_new(app, new_options, chosen);
  add_run(app, run, chosen);
  add_check(app, checked, chosen);
  add_settings(app, settings, chosen);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return end_of_parsing(app, error);
  }
  return run_command(chosen);
}
