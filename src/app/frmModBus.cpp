#include "app/frmModBus.h"

#include <array>
#include <limits>
#include <memory>
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
#include "program/settings.h"
#include "program/version.h"

namespace vek {

namespace {

constexpr int dockingInterval = 500;  // milliseconds
constexpr int standardWidth = 15000;  // twips
constexpr int standardHeight = 10800;

/// Twips between a window's height and that of the text box in it.
constexpr int terminalBorder = 400;

/// The tool bar from left to right; a separator has no item.
struct Tool {
    const char* key;
    const char* caption;
    MenuItem frmModBus::*item;
};

constexpr Tool separator = {"", "", nullptr};
constexpr std::array<Tool, 12> tools = {{
    {"DEV_MONITOR", "Geräte - Monitor", &frmModBus::mnuMonitor},
    {"DEV_PARA", "Geräte - Parameter", &frmModBus::mnuParameter},
    separator,
    {"DEBUG_VALUE", "Debug - Messwerte", &frmModBus::mnuMessReg},
    {"DEBUG_PARA", "Debug - Parameter", &frmModBus::mnuParaReg},
    separator,
    {"INTERFACE", "Schnittstelle", &frmModBus::mnuSchnittstelle},
    {"DEV_ADR", "Geräte - Adresse", &frmModBus::mnuGeräteadresse},
    {"TERMINAL", "Terminalfenster", &frmModBus::mnuTerminal},
    separator,
    {"INFO", "Info", &frmModBus::mnuInfo},
    {"MODBUS_EXIT", "Beenden", &frmModBus::mnuBeenden},
}};
constexpr std::size_t terminalTool = 8;

/// What a new settings file holds, in the order of its lines.
std::vector<ProfileEntry> settingDefaults() {
    return {comSetting.with("0"),          baudSetting.with("0"),
            frameSetting.with(""),         moduleVoltageSetting.with("10,73"),
            offsetOnSetting.with("0"),     offsetSetting.with("20000"),
            moduleCountSetting.with("36"), moduleRangeSetting.with("5000")};
}

template <class Number>
Number settingNumber(Program& program, const Setting& setting) {
    using Limits = std::numeric_limits<Number>;
    const double number = leadingNumber(settingText(program, setting));
    return static_cast<Number>(wholeNumber(number, Limits::min(), Limits::max()));
}

}  // namespace

frmModBus::frmModBus(Program& program) : Form("frmModBus", Kind::Main), program_(program) {
    geometry.width = standardWidth;
    geometry.height = standardHeight;
    sbStatusBar.panels = {&sbStatusBar_1, &sbStatusBar_2, &sbStatusBar_3};
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
    for (const Tool& tool : tools) {
        using enum ToolButton::Kind;
        const bool checks = tool.item == &frmModBus::mnuTerminal;
        const auto look = tool.item == nullptr ? Separator : checks ? Check : Push;
        Toolbar1.buttons.push_back(&toolButtons_.emplace_back(tool.key, tool.caption, look));
    }
    toolButtons_[terminalTool].pressed = true;
    Toolbar1.buttonClick = [this](const std::string& key) {
        for (const Tool& tool : tools) {
            if (tool.item != nullptr && tool.key == key) {
                (this->*tool.item).click();
            }
        }
    };
}

void frmModBus::connectCommands() {
    mnuMonitor.click = [this] { openMonitor(); };
    // The editor begins with a reading, for which a poll that is still coming to its end leaves no room.
    mnuParameter.click = [this] { openChild<frmMbParameter>(!program_.lineInUse && deviceChosen()); };
    mnuMessReg.click = [this] { openChild<frmMessReg>(modbusDeviceChosen()); };
    mnuParaReg.click = [this] { openChild<frmParaReg>(modbusDeviceChosen()); };
    mnuBeenden.click = [this] { endProgram(); };
    mnuSchnittstelle.click = [this] { openChild<ModBusLink>(); };
    mnuGeräteadresse.click = [this] { openChild<frmGeräteadresse>(); };
    mnuTerminal.click = [this] { toggleTerminal(); };
    mnuInfo.click = [this] { openChild<frmAbout>(); };

    Timer2.tick = [this] { dockTerminal(); };
}

void frmModBus::followShell() {
    Shell& shell = program_.shell;
    bindings_.push_back(shell.caption.bind([this](const std::string& text) { caption = text; }));
    bindings_.push_back(
        shell.portPanel.bind([this](const std::string& text) { sbStatusBar_1.caption = text; }));
    bindings_.push_back(
        shell.addressPanel.bind([this](const std::string& text) { sbStatusBar_2.caption = text; }));
    bindings_.push_back(shell.activity.bind([this](const std::string& text) {
        sbStatusBar_3.caption = text;
        sbStatusBar_3.visible = !text.empty();
    }));
    bindings_.push_back(shell.commandsAvailable.bind([this](bool available) {
        Toolbar1.visible = available;
        mnuStart.enabled = available;
        mnuEinstellungen.enabled = available;
        mnuInfo.enabled = available;
    }));
}

void frmModBus::load() {
    terminal_ = &program_.windows.open(std::make_unique<frmModBusTerminal>(program_));
    // While the commands are not available, nothing could bring it back.
    terminal_->hideRequested = [this] {
        if (program_.shell.commandsAvailable) {
            toggleTerminal();
        }
    };
    geometry.left = terminal_->geometry.width.get();
    geometry.top = 0;
    readSettings();
    program_.shell.portPanel = portStatusText(program_);
    Timer2.interval = dockingInterval;
    Timer2.enabled = true;
    program_.shell.caption = "ModBus RTU / KDL - Monitor   V" + std::string(versionText);
    dockTerminal();
}

void frmModBus::readSettings() {
    program_.ProfilePath = program_.settingsPath = settingsFilePath(program_);
    if (settingText(program_, comSetting).empty()) {
        SetProfileValue(program_, settingDefaults());
    }
    program_.ComPort = settingNumber<std::int16_t>(program_, comSetting);
    program_.BaudRate = settingNumber<std::int32_t>(program_, baudSetting);
    program_.FrameFormat = settingText(program_, frameSetting);
}

void frmModBus::unload() {
    program_.windows.keepInput();
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
    const bool chosen = deviceChosen();
    const bool battery = program_.DeviceType == batteryDeviceType && !program_.kdlActive();
    openChild<frmBatMonitor>(chosen && battery);
    openChild<frmMbMonitor>(chosen && !battery);
}

void frmModBus::toggleTerminal() {
    const bool shown = !mnuTerminal.checked;
    mnuTerminal.checked = shown;
    terminal_->visible = shown;
    toolButtons_[terminalTool].pressed = shown;
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
