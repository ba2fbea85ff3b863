#include "program/program.h"

namespace vek {

void showError(Program& program, const std::string& text, const std::string& title) {
    program.ask({text, title, MessageIcon::Stop, MessageButtons::Ok});
}

void showNote(Program& program, const std::string& text, const std::string& title) {
    program.ask({text, title, MessageIcon::Information, MessageButtons::Ok});
}

}  // namespace vek
