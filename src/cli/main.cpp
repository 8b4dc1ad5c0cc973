#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "cli/commands.h"
#include "cli/list_commands.h"
#include "platform/program.h"

namespace quillan {
namespace {

using Command = std::function<ExitStatus(Session&)>;
using MakeList = std::unique_ptr<CommandList> (*)(Session&);

// The command that does `run` to one of the lists.
Command On(MakeList make, ExitStatus (*run)(CommandList&, Session&)) {
  return [make, run](Session& session) { return run(*make(session), session); };
}

// The options and subcommands of the program. The parser keeps references into `options`.
class CommandLine {
 public:
  explicit CommandLine(Options& options) : options_(options) {
    app_.set_version_flag("--version", "quillanctl " + std::string(Version()));
    app_.set_help_all_flag("--help-all", "Print the help of every command and exit");
    app_.require_subcommand(1);
    app_.footer(
        "Exit status: 0 done, 1 difference or refused input, 2 wrong usage, 3 no session,\n"
        "4 some statements failed. The connection file is looked for as quillan does.");
    CLI::App* status = Add(app_, "status", "Show the database and what it holds", ShowStatus);
    AddFormat(status);
    AddPorts();
    AddGroups();
    AddSources();
    AddListeningPort();
  }

  CLI::App& app() { return app_; }
  Command command() const { return command_; }

 private:
  CLI::App* Add(CLI::App& parent, const std::string& name, const std::string& description,
                const Command& run) {
    CLI::App* app = parent.add_subcommand(name, description);
    app->callback([this, run] { command_ = run; });
    return app;
  }

  CLI::App* AddParent(const std::string& name, const std::string& description) {
    CLI::App* app = app_.add_subcommand(name, description);
    app->require_subcommand(1);
    return app;
  }

  void AddFormat(CLI::App* app) {
    const std::map<std::string, OutputFormat> formats = {{"table", OutputFormat::kTable},
                                                         {"csv", OutputFormat::kCsv},
                                                         {"json", OutputFormat::kJson}};
    app->add_option_function<std::string>(
           "--format",
           [this, formats](const std::string& name) { options_.format = formats.at(name); },
           "How to print")
        ->check(CLI::IsMember({"table", "csv", "json"}))
        ->type_name("");
  }

  void AddListing(CLI::App* app) {
    AddFormat(app);
    app->add_option("--filter", options_.filter,
                    "Only rows that hold every word; a port's number or an address that a group "
                    "holds")
        ->type_name("TEXT");
  }

  // What every command that writes takes.
  CLI::App* AddWriting(CLI::App* app) {
    app->add_flag("--dry-run", options_.dry_run, "Print what would be written; write nothing");
    app->add_flag("--yes,-y", options_.yes, "Answer every question with yes");
    AddFormat(app);
    return app;
  }

  void AddSkip(CLI::App* app) {
    app->add_flag("--skip-refused", options_.skip_refused, "Go on without what is refused");
  }

  void AddKeys(CLI::App* app, const std::string& type) {
    app->add_option("key", options_.keys, "What to change")->required()->type_name(type);
    AddSkip(app);
  }

  void AddKeyAndName(CLI::App* app, const std::string& type) {
    app->add_option("key", options_.key, "The key of the row")->required()->type_name(type);
    app->add_option("name", options_.name, "The description")->required()->type_name("NAME");
  }

  void AddFiles(CLI::App* parent, MakeList list) {
    CLI::App* importing = AddWriting(
        Add(*parent, "import", "Read rows from a CSV or tab-separated file", On(list, ImportFile)));
    importing->add_option("file", options_.file, "The file; - is standard input")->required();
    importing->add_flag("--replace", options_.replace, "Delete rows that the file lacks");
    AddSkip(importing);
    Add(*parent, "export", "Print all rows as CSV", On(list, ExportRows));
    CLI::App* comparing =
        Add(*parent, "diff", "Print what import --replace would change", On(list, DiffFile));
    comparing->add_option("file", options_.file, "The file; - is standard input")->required();
    AddFormat(comparing);
  }

  void AddPorts() {
    CLI::App* ports = AddParent("ports", "Application and service ports");
    AddListing(Add(*ports, "list", "Print the ports", On(Ports, PrintList)));
    AddKeyAndName(AddWriting(Add(*ports, "add", "Add a port", On(Ports, AddRow))), "NUMBER");
    AddKeys(AddWriting(Add(*ports, "enable", "Monitor ports", On(Ports, EnableRows))), "NUMBER");
    AddKeys(AddWriting(Add(*ports, "disable", "Do not monitor ports", On(Ports, DisableRows))),
            "NUMBER");
    AddKeys(AddWriting(Add(*ports, "delete", "Delete ports", On(Ports, DeleteRows))), "NUMBER");
    AddKeyAndName(AddWriting(Add(*ports, "rename", "Describe a port anew", On(Ports, RenameRow))),
                  "NUMBER");
    AddFiles(ports, Ports);
  }

  void AddGroups() {
    CLI::App* groups = AddParent(
        "groups", "IP address groups; a RANGE is 10.0.0.0/8, 10.0.0.0-10.0.3.255 or one address");
    AddListing(Add(*groups, "list", "Print the groups", On(Groups, PrintList)));
    AddKeyAndName(AddWriting(Add(*groups, "add", "Add a group", On(Groups, AddRow))), "RANGE");
    AddKeys(AddWriting(Add(*groups, "enable", "Manage groups", On(Groups, EnableRows))), "RANGE");
    AddKeys(AddWriting(Add(*groups, "disable", "Do not manage groups", On(Groups, DisableRows))),
            "RANGE");
    AddKeys(AddWriting(Add(*groups, "delete", "Delete groups", On(Groups, DeleteRows))), "RANGE");
    AddKeyAndName(AddWriting(Add(*groups, "rename", "Rename a group", On(Groups, RenameRow))),
                  "RANGE");
    AddFiles(groups, Groups);
    CLI::App* which = Add(*groups, "which", "Say which group gets an address, and why", WhichGroup);
    which->add_option("address", options_.key, "The address")->required()->type_name("ADDRESS");
    AddFormat(which);
  }

  void AddSources() {
    CLI::App* sources = AddParent("sources", "Interfaces whose NetFlow exports are accepted");
    AddListing(Add(*sources, "list", "Print the interfaces", ListSources));
    const auto add = [&](const char* name, const char* description, const Command& run) {
      CLI::App* app = AddWriting(Add(*sources, name, description, run));
      auto* which = app->add_option_group("interfaces")->require_option(1);
      which->add_option("id", options_.keys, "The identifiers of interfaces")->type_name("ID");
      which->add_option("--node", options_.node, "All interfaces of the node")->type_name("NAME");
      which->add_flag("--all", options_.all, "All interfaces");
      AddSkip(app);
    };
    add("enable", "Accept exports", EnableSources);
    add("disable", "Do not accept exports", DisableSources);
  }

  void AddListeningPort() {
    CLI::App* port = AddParent("port", "The UDP port on which this computer's receiver listens");
    Add(*port, "get", "Print the port", GetPort);
    CLI::App* set = AddWriting(Add(*port, "set", "Store another port", SetPort));
    set->add_option("number", options_.key, "1 to 65535")->required()->type_name("NUMBER");
  }

  Options& options_;
  Command command_;
  CLI::App app_{"Configures the suite's NetFlow receiver: ports, address groups and sources.",
                "quillanctl"};
};

int Run(int argc, char** argv) {
  Options options;
  CommandLine line(options);
  try {
    line.app().parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return line.app().exit(error) == 0 ? kDone : kWrongUsage;
  }
  Session session(ProgramFolder(), options);
  return session.Open() ? line.command()(session) : kNoSession;
}

}  // namespace
}  // namespace quillan

int main(int argc, char** argv) {
  try {
    return quillan::Run(argc, argv);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "quillanctl: %s\n", failure.what());
    return quillan::kFailed;
  }
}
