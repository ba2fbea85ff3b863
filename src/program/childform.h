#pragma once

#include <string>
#include <utility>

#include "platform/form.h"
#include "program/program.h"

namespace vek {

/// A window inside the main window. While one is open, the main window's commands are not available.
class ChildForm : public Form {
  public:
    ChildForm(Program& program, std::string formName)
        : Form(std::move(formName), Kind::Child), program_(program) {}

    void load() override { program_.shell.commandsAvailable = false; }
    /// Not before an operation has ended that still holds the line; see LineUse.
    void unload() override { program_.shell.commandsAvailable = !program_.lineInUse; }
    void closeBoxPressed() override { close(); }

  protected:
    void close() { program_.windows.close(*this); }
    bool isOpen() const { return program_.windows.isOpen(*this); }

    Program& program_;
};

}  // namespace vek
