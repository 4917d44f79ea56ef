#include <unistd.h>

#include <QApplication>
#include <QSettings>
#include <cstdio>
#include <exception>
#include <string>
#include <string_view>

#include "desktop/look.h"
#include "desktop/qt_desk.h"
#include "frame/session.h"
#include "machine/files.h"
#include "machine/real_machine.h"
#include "start/command_line.h"
#include "start/startup.h"

namespace {

constexpr int kFailed = 1;
constexpr int kBadCommandLine = 2;

bool HasDisplay() {
  return qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || !qEnvironmentVariableIsEmpty("DISPLAY") ||
         !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

int Complain(const std::string& why) {
  std::fprintf(stderr, "KTLStIns: %s\n", why.c_str());
  return kFailed;
}

std::string JoinedArguments(int argc, char** argv) {
  std::string joined;
  for (int i = 1; i < argc; ++i) joined += (i > 1 ? " " : "") + std::string(argv[i]);
  return joined;
}

int Run(ktl::QtDesk& desk, const char* argv0, const std::string& commandLine) {
  ktl::RealMachine real(argv0);
  ktl::Session session(real.machine(), desk);
  return ktl::RunProgram(session, commandLine);
}

constexpr const char* kHelp =
    "The screens of KestrelLedger - Standing Instruction, one a start.\n"
    "Usage: KTLStIns COMMANDLINE\n\n"
    "  KTLStIns '1501#False#0#0'                advances\n"
    "  KTLStIns '1502#False#0#0$Acme Payroll'   loans, under a title of one's own\n\n"
    "COMMANDLINE is a code with its arguments, whether a report called, a report's number and a reserved "
    "number.\n"
    "Environment: KTL_SETTINGS (the settings file), KTL_FOLDER (the program's folder), KTL_TODAY "
    "(yyyy-mm-dd),\n"
    "KTL_SQL_LOG (a file for the statements), KTL_SCREENSHOT (a file for a picture; the program ends "
    "then).\n";

// The file stands in the folder of the user's configuration, apart from the settings store that machines
// share.
void RememberWindows(QApplication& application) {
  QSettings::setDefaultFormat(QSettings::IniFormat);
  application.setOrganizationName(QStringLiteral("KestrelLedger"));
  application.setApplicationName(QStringLiteral("KTLStIns-windows"));
}

// Told where a person looks: on the terminal, or in a box when the program was started without one.
int RefuseCommandLine(ktl::QtDesk& desk, const std::string& complaint) {
  if (isatty(STDERR_FILENO) == 0) desk.ShowError(complaint, ktl::kApplicationTitle);
  Complain(complaint);
  return kBadCommandLine;
}

}  // namespace

int main(int argc, char** argv) {
  ktl::KeepNewFilesPrivate();
  const std::string_view wanted = argc == 2 ? argv[1] : "";
  if (wanted == "--help" || wanted == "-h") return std::fputs(kHelp, stdout) < 0 ? kFailed : 0;
  if (wanted == "--version") return std::puts("KTLStIns " KTL_VERSION) < 0 ? kFailed : 0;
  if (!HasDisplay()) return Complain("there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set");
  const std::string commandLine = JoinedArguments(argc, argv);
  const std::string picture = qEnvironmentVariable("KTL_SCREENSHOT").toStdString();
  QApplication application(argc, argv);
  ktl::ApplyLook(application);
  application.setDesktopFileName(QStringLiteral("KTLStIns"));
  if (picture.empty()) RememberWindows(application);
  ktl::QtDesk desk;
  const std::string complaint = ktl::CommandLineComplaint(
      commandLine, ktl::RealMachine(argv[0]).machine().environment.ExecutableName());
  if (!complaint.empty()) return RefuseCommandLine(desk, complaint);
  if (!picture.empty()) desk.TakePicture(picture);
  desk.EndOn(ktl::EndOnSignals());
  std::string why;
  try {
    return Run(desk, argv[0], commandLine);
  } catch (const ktl::PictureTaken&) {
    return 0;
  } catch (const std::exception& failure) {
    why = failure.what();
  }
  const int status = Complain(why);
  // Nobody sits before a picture, nor waits for an answer after a signal.
  if (!picture.empty() || why == ktl::kEndedBySignal) return status;
  try {
    desk.ShowError(why, ktl::kApplicationTitle);
  } catch (const std::exception&) {
    // A signal has closed the box.
  }
  return status;
}
