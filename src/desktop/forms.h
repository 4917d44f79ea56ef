#pragma once

#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace ktl {

// The forms by the names of their screens.
using FormMaker = std::function<std::unique_ptr<QWidget>()>;
using Forms = std::map<std::string, FormMaker, std::less<>>;

// Every form of the program.
const Forms& ProgramForms();

}  // namespace ktl
