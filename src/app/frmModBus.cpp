#include "app/frmModBus.h"

#include <array>
#include <limits>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "app/ModBusLink.h"
#include "app/frmAbout.h"
#include "app/frmGeraeteadresse.h"
#include "app/portstatus.h"
#include "devicemodel/devicetypes.h"
#include "modbus/ModBusLink1.h"
#include "monitor/frmBatMonitor.h"
#include "monitor/frmMbMonitor.h"
#include "monitor/frmMessReg.h"
#include "monitor/frmParaReg.h"
#include "parameters/frmMbParameter.h"
#include "platform/leadingnumber.h"
#include "program/IOatINI.h"
#include "program/version.h"

namespace vek {

namespace {

constexpr int dockingInterval = 500;  // milliseconds
constexpr int standardWidth = 15000;  // twips
constexpr int standardHeight = 10800;

/// Twips between a window's height and that of the text box in it.
constexpr int terminalBorder = 400;

/// What a new settings file holds, in the order of its lines.
std::vector<ProfileEntry> settingDefaults() {
    return {
        {"RS485", "COM", "0"},
        {"RS485", "BAUD", "0"},
        {"RS485", "FRAME", ""},
        {"BATTERIE_PARA", "U_MODUL", "10,73"},
        {"BATTERIE_PARA", "ON_ROFF", "0"},
        {"BATTERIE_PARA", "ROFF_VAL", "20000"},
        {"BATTERIE_PARA", "ANZ_MODULE", "36"},
        {"BATTERIE_PARA", "MODUL_BER", "5000"},
    };
}

template <class Number>
Number settingNumber(const std::string& text) {
    using Limits = std::numeric_limits<Number>;
    return static_cast<Number>(wholeNumber(leadingNumber(text), Limits::min(), Limits::max()));
}

}  // namespace

frmModBus::frmModBus(Program& program) : Form("frmModBus", Kind::Main), program_(program) {
    geometry.width = standardWidth;
    geometry.height = standardHeight;
    sbStatusBar.panels = {&sbStatusBar_1, &sbStatusBar_2};
    buildMenu();
    buildToolBar();
    connectCommands();
    followShell();
}

void frmModBus::buildMenu() {
    mnuDevice.items = {&mnuMonitor, &mnuParameter};
    mnuDebug.items = {&mnuMessReg, &mnuParaReg};
    mnuStart.items = {&mnuDevice, &mnuDebug, &trenn1, &mnuBeenden};
    mnuEinstellungen.items = {&mnuSchnittstelle, &mnuGeräteadresse, &mnuTerminal};
    mnuTerminal.checkable = true;
    mnuTerminal.checked = true;
}

void frmModBus::buildToolBar() {
    Toolbar1.buttons = {&tbMonitor_,  &tbParameter_,  &tbSeparator1_, &tbMessReg_,
                        &tbParaReg_,  &tbSeparator2_, &tbInterface_,  &tbAddress_,
                        &tbTerminal_, &tbSeparator3_, &tbInfo_,       &tbExit_};
    tbTerminal_.pressed = true;
}

void frmModBus::connectCommands() {
    mnuMonitor.click = [this] { openMonitor(); };
    mnuParameter.click = [this] { openParameter(); };
    mnuMessReg.click = [this] { openMeasurementRegisters(); };
    mnuParaReg.click = [this] { openParameterRegisters(); };
    mnuBeenden.click = [this] { endProgram(); };
    mnuSchnittstelle.click = [this] { openChild<ModBusLink>(); };
    mnuGeräteadresse.click = [this] { openChild<frmGeräteadresse>(); };
    mnuTerminal.click = [this] { toggleTerminal(); };
    mnuInfo.click = [this] { openChild<frmAbout>(); };

    const std::array<std::pair<std::string_view, const MenuItem*>, 9> keys = {{
        {"DEV_MONITOR", &mnuMonitor},
        {"DEV_PARA", &mnuParameter},
        {"DEBUG_VALUE", &mnuMessReg},
        {"DEBUG_PARA", &mnuParaReg},
        {"INTERFACE", &mnuSchnittstelle},
        {"DEV_ADR", &mnuGeräteadresse},
        {"TERMINAL", &mnuTerminal},
        {"INFO", &mnuInfo},
        {"MODBUS_EXIT", &mnuBeenden},
    }};
    Toolbar1.buttonClick = [keys](const std::string& key) {
        for (const auto& [toolKey, item] : keys) {
            if (toolKey == key) {
                item->click();
            }
        }
    };

    Timer2.tick = [this] { dockTerminal(); };
}

void frmModBus::followShell() {
    Shell& shell = program_.shell;
    bindings_.push_back(shell.caption.bind([this](const std::string& text) { caption = text; }));
    bindings_.push_back(
        shell.portPanel.bind([this](const std::string& text) { sbStatusBar_1.caption = text; }));
    bindings_.push_back(
        shell.addressPanel.bind([this](const std::string& text) { sbStatusBar_2.caption = text; }));
    bindings_.push_back(shell.commandsAvailable.bind([this](bool available) {
        Toolbar1.visible = available;
        mnuStart.enabled = available;
        mnuEinstellungen.enabled = available;
        mnuInfo.enabled = available;
    }));
}

void frmModBus::load() {
    terminal_ = &program_.windows.open(std::make_unique<frmModBusTerminal>(program_));
    terminal_->hideRequested = [this] { toggleTerminal(); };
    geometry.left = terminal_->geometry.width.get();
    geometry.top = 0;
    readSettings();
    program_.shell.portPanel = portStatusText(program_);
    Timer2.interval = dockingInterval;
    Timer2.enabled = true;
    program_.shell.caption = "ModBus RTU / KDL - Monitor   V" + versionText();
    dockTerminal();
}

void frmModBus::readSettings() {
    program_.ProfilePath = settingsFilePath(program_);
    if (GetProfileValue(program_, "COM", "RS485").empty()) {
        SetProfileValue(program_, settingDefaults());
    }
    program_.ComPort = settingNumber<std::int16_t>(GetProfileValue(program_, "COM", "RS485"));
    program_.BaudRate = settingNumber<std::int32_t>(GetProfileValue(program_, "BAUD", "RS485"));
    program_.FrameFormat = GetProfileValue(program_, "FRAME", "RS485");
}

void frmModBus::unload() {
    terminal_->visible = false;
    throw ProgramEnd{};
}

void frmModBus::closeBoxPressed() {
    program_.windows.close(*this);
}

void frmModBus::endProgram() {
    ClosePort(program_);
    program_.windows.close(*this);
}

bool frmModBus::deviceChosen() {
    const bool addressed =
        program_.kdlActive() ? program_.KdlAddressPrefix != blankKdlPrefix : program_.DeviceAddress != 0;
    if (!addressed || program_.ComPort == 0) {
        showNote(program_, "Zuerst die Schnittstellenparameter und die Geräteadresse einstellen");
        return false;
    }
    return true;
}

bool frmModBus::modbusDeviceChosen() {
    if (program_.kdlActive()) {
        showNote(program_, "Diese Funktion steht nur für das ModBus RTU - Protokoll zur Verfügung");
        return false;
    }
    return deviceChosen();
}

void frmModBus::openMonitor() {
    if (!deviceChosen()) {
        return;
    }
    if (program_.DeviceType == batteryDeviceType && !program_.kdlActive()) {
        openChild<frmBatMonitor>();
    } else {
        openChild<frmMbMonitor>();
    }
}

void frmModBus::openParameter() {
    // The editor begins with a reading, for which a poll that is still coming to its end leaves no room.
    if (!program_.lineInUse && deviceChosen()) {
        openChild<frmMbParameter>();
    }
}

void frmModBus::openMeasurementRegisters() {
    if (modbusDeviceChosen()) {
        openChild<frmMessReg>();
    }
}

void frmModBus::openParameterRegisters() {
    if (modbusDeviceChosen()) {
        openChild<frmParaReg>();
    }
}

void frmModBus::toggleTerminal() {
    const bool shown = !mnuTerminal.checked;
    mnuTerminal.checked = shown;
    terminal_->visible = shown;
    tbTerminal_.pressed = shown;
}

void frmModBus::dockTerminal() {
    terminal_->geometry.height = geometry.height.get();
    terminal_->RichTextBox1.height = terminal_->geometry.height - terminalBorder;
    if (geometry.left != lastLeft_ || geometry.top != lastTop_) {
        terminal_->geometry.left = geometry.left - terminal_->geometry.width;
        terminal_->geometry.top = geometry.top.get();
        lastLeft_ = geometry.left;
        lastTop_ = geometry.top;
    }
}

}  // namespace vek
