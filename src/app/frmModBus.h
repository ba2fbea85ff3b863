#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "app/frmModBusTerminal.h"
#include "platform/form.h"
#include "program/program.h"

namespace vek {

/// The main window: the frame of all other windows, with the commands that open them. It is that of both
/// protocols, and talks to no device itself.
class frmModBus : public Form {
  public:
    explicit frmModBus(Program& program);

    MenuItem mnuStart{"mnuStart", "Start", 'S'};
    MenuItem mnuDevice{"mnuDevice", "Geräte", 'G'};
    MenuItem mnuMonitor{"mnuMonitor", "Monitor", 'M'};
    MenuItem mnuParameter{"mnuParameter", "Parameter", 'P'};
    MenuItem mnuDebug{"mnuDebug", "Debug", 'D'};
    MenuItem mnuMessReg{"mnuMessReg", "Messwert-Register", 'M'};
    MenuItem mnuParaReg{"mnuParaReg", "Parameter-Register", 'P'};
    MenuItem trenn1{"trenn1", "-"};
    MenuItem mnuBeenden{"mnuBeenden", "Beenden", 'B'};
    MenuItem mnuEinstellungen{"mnuEinstellungen", "Einstellungen", 'E'};
    MenuItem mnuSchnittstelle{"mnuSchnittstelle", "Schnittstelle", 'S'};
    MenuItem mnuGeräteadresse{"mnuGeräteadresse", "Geräteadresse", 'G'};
    MenuItem mnuTerminal{"mnuTerminal", "Terminalfenster", 'T'};
    MenuItem mnuInfo{"mnuInfo", "Info", 'I'};

    ToolBar Toolbar1{"Toolbar1"};
    StatusBar sbStatusBar{"sbStatusBar"};
    Label sbStatusBar_1{"sbStatusBar_1"};
    Label sbStatusBar_2{"sbStatusBar_2"};
    Label sbStatusBar_3{"sbStatusBar_3"};

    Timer Timer2;

    Box layout() override { return stretch(); }
    void load() override;
    void unload() override;
    void closeBoxPressed() override;
    std::vector<MenuItem*> menu() override { return {&mnuStart, &mnuEinstellungen, &mnuInfo}; }
    ToolBar* toolBar() override { return &Toolbar1; }
    StatusBar* statusBar() override { return &sbStatusBar; }
    std::vector<Timer*> timers() override { return {&program_.Timer1, &Timer2, &program_.TimeOut}; }

  private:
    void buildMenu();
    void buildToolBar();
    void connectCommands();
    void followShell();
    void readSettings();

    /// Only one window is open inside at a time.
    template <class FormClass>
    void openChild(bool allowed = true) {
        if (allowed && program_.shell.commandsAvailable) {
            program_.windows.open(std::make_unique<FormClass>(program_));
        }
    }
    void openMonitor();
    void toggleTerminal();
    void endProgram();
    bool deviceChosen();
    bool modbusDeviceChosen();

    void dockTerminal();

    Program& program_;
    frmModBusTerminal* terminal_ = nullptr;
    int lastLeft_ = 0;
    int lastTop_ = 0;

    std::deque<ToolButton> toolButtons_;
    std::vector<Subscription> bindings_;
};

}  // namespace vek
