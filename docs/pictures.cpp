#include <QApplication>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>

#include "console/commands.h"
#include "desktop/look.h"
#include "desktop/qt_desk.h"
#include "frame/session.h"
#include "machine/real_machine.h"
#include "start/startup.h"

// Plays a script of KTLStInsConsole on the windows of KTLStIns and saves the one that is open at its end: the
// pictures of the user's guide.
//   ktl_pictures COMMANDLINE SCRIPT PICTURE.png [WIDTH HEIGHT]
namespace {

int Complain(const std::string& why) {
  std::cerr << "ktl_pictures: " << why << '\n';
  return 1;
}

bool PlayLine(ktl::Script& script, ktl::Screen& screen) {
  const auto line = script.Next();
  if (!line) return false;
  ktl::CommandWords words(line->text);
  const std::string verb = words.Word("a command");
  ktl::RunScreenCommand(verb, words, screen, std::cout);
  return true;
}

void ResizeWindows(QSize size) {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible()) window->resize(size);
  }
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc != 4 && argc != 6) return Complain("COMMANDLINE SCRIPT PICTURE.png [WIDTH HEIGHT] are expected");
  const QSize size = argc == 6 ? QSize(QString(argv[4]).toInt(), QString(argv[5]).toInt()) : QSize();
  std::ifstream file(argv[2]);
  if (!file) return Complain(std::string("cannot read ") + argv[2]);
  ktl::ApplyLook(application);
  ktl::Script script(file);
  ktl::QtDesk desk;
  desk.TakePicture(argv[3], [&script, size](ktl::Screen& screen) {
    if (size.isValid()) ResizeWindows(size);
    return PlayLine(script, screen);
  });
  try {
    ktl::RealMachine real(argv[0]);
    ktl::Session session(real.machine(), desk);
    ktl::RunProgram(session, argv[1]);
    return Complain("no screen was open at the end of the script");
  } catch (const ktl::PictureTaken&) {
    return 0;
  } catch (const std::exception& failure) {
    return Complain(failure.what());
  }
}
