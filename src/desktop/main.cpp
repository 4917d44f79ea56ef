#include <QApplication>
#include <cstdio>
#include <exception>
#include <string>

#include "desktop/look.h"
#include "desktop/qt_desk.h"
#include "frame/session.h"
#include "machine/real_machine.h"
#include "runtime/errors.h"
#include "start/startup.h"

namespace {

constexpr int kFailed = 1;

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

}  // namespace

int main(int argc, char** argv) {
  if (!HasDisplay()) return Complain("there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set");
  const std::string commandLine = JoinedArguments(argc, argv);
  QApplication application(argc, argv);
  ktl::ApplyLook(application);
  ktl::QtDesk desk;
  const std::string picture = qEnvironmentVariable("KTL_SCREENSHOT").toStdString();
  if (!picture.empty()) desk.TakePicture(picture);
  std::string why;
  try {
    return Run(desk, argv[0], commandLine);
  } catch (const ktl::PictureTaken&) {
    return 0;
  } catch (const ktl::RuntimeError& failure) {
    why = failure.description() + " (" + std::to_string(failure.number()) + ")";
  } catch (const std::exception& failure) {
    why = failure.what();
  }
  const int status = Complain(why);
  if (picture.empty()) desk.ShowError(why, ktl::kApplicationTitle);  // nobody sits before a picture
  return status;
}
