#include <CLI/CLI.hpp>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "console/script_desk.h"
#include "frame/session.h"
#include "machine/files.h"
#include "machine/real_machine.h"
#include "runtime/errors.h"
#include "start/command_line.h"
#include "start/startup.h"

namespace {

constexpr int kFailed = 1;
constexpr int kBadScript = 2;

constexpr const char* kHelpFooter =
    "The script is read from standard input when no file is given; docs/scripts.md tells its language.\n"
    "The transcript goes to standard output.\n"
    "Exit status: 0; 1 when a failure ended the program; 2 for a wrong script or wrong arguments.\n"
    "Environment: KTL_SETTINGS (the settings file), KTL_FOLDER (the program's folder), KTL_TODAY "
    "(yyyy-mm-dd),\n"
    "KTL_SQL_LOG (a file for the statements).";

struct Arguments {
  std::string commandLine;
  std::string scriptFile;
};

int Complain(const std::string& why, int status) {
  std::cout.flush();
  std::cerr << "KTLStInsConsole: " << why << '\n';
  return status;
}

int RunScript(const char* argv0, const Arguments& arguments) {
  std::ifstream file;
  const bool fromFile = !arguments.scriptFile.empty();
  if (fromFile) {
    file.open(arguments.scriptFile);
    if (!file || std::filesystem::is_directory(arguments.scriptFile))
      return Complain("cannot read " + arguments.scriptFile, kBadScript);
  }
  ktl::RealMachine real(argv0);
  const std::string complaint =
      ktl::CommandLineComplaint(arguments.commandLine, real.machine().environment.ExecutableName());
  if (!complaint.empty()) return Complain(complaint, kBadScript);
  ktl::EndOnSignals();
  ktl::ScriptDesk desk(fromFile ? file : std::cin, std::cout,
                       [&real] { return real.machine().environment.MustEnd(); });
  ktl::Session session(real.machine(), desk);
  const int status = ktl::RunProgram(session, arguments.commandLine);
  // Standard input may belong to somebody who keeps it open: what is left there is not asked for. Nor when no
  // screen came up, which a box has told.
  if (fromFile && status == 0) desk.CheckAllRead();
  if (!std::cout.flush()) return Complain("the transcript cannot be written", kFailed);
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  ktl::KeepNewFilesPrivate();
  CLI::App app("The screens of KTLStIns without a window, worked on by a script.", "KTLStInsConsole");
  Arguments arguments;
  app.add_option("COMMANDLINE", arguments.commandLine, "as KTLStIns takes it: 1502#False#0#0")->required();
  app.add_option("SCRIPT", arguments.scriptFile, "a file of commands");
  app.set_version_flag("--version", "KTLStInsConsole " KTL_VERSION);
  app.footer(kHelpFooter);
  try {
    app.parse(argc, argv);
    return RunScript(argv[0], arguments);
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    return Complain(error.what(), kBadScript);
  } catch (const ktl::ScriptError& error) {
    std::cout.flush();
    std::cerr << error.what() << '\n';
    return kBadScript;
  } catch (const ktl::RuntimeError& error) {
    return Complain(error.description() + " (" + std::to_string(error.number()) + ")", kFailed);
  } catch (const std::exception& error) {
    return Complain(error.what(), kFailed);
  }
}
