#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/form.h"
#include "platform/logstore.h"

namespace vek::test {

/// A main window with everything that a main window can have.
class DemoMain : public Form {
  public:
    DemoMain() : Form("frmDemo", Kind::Main) {
        caption = "Demo   V1.2.3";
        device.items = {&monitor};
        start.items = {&device};
        settings.items = {&terminal};
        terminal.checkable = true;
        terminal.checked = true;
        terminal.click = [this] { terminal.checked = !terminal.checked.get(); };
        monitor.click = [this] { happened.emplace_back("monitor"); };
        info.click = [this] { happened.emplace_back("info"); };
        bar.buttons = {&barMonitor, &barTerminal};
        bar.buttonClick = [this](const std::string& key) { happened.emplace_back(key); };
    }

    Box layout() override { return column({}); }
    std::vector<MenuItem*> menu() override { return {&start, &settings, &info}; }
    ToolBar* toolBar() override { return &bar; }
    void closeBoxPressed() override {
        if (close) {
            close();
        }
    }

    std::function<void()> close;
    std::vector<std::string> happened;

    MenuItem start{"mnuStart", "Start", 'S'};
    MenuItem device{"mnuDevice", "Geräte", 'G'};
    MenuItem monitor{"mnuMonitor", "Monitor", 'M'};
    MenuItem settings{"mnuEinstellungen", "Einstellungen", 'E'};
    MenuItem terminal{"mnuTerminal", "Terminalfenster", 'T'};
    MenuItem info{"mnuInfo", "Info", 'I'};
    ToolBar bar{"Toolbar1"};
    ToolButton barMonitor{"DEV_MONITOR", "Geräte - Monitor"};
    ToolButton barTerminal{"TERMINAL", "Terminalfenster", ToolButton::Kind::Check};
};

/// A child window with a control of every kind.
class DemoChild : public Form {
  public:
    DemoChild() : Form("frmChild", Kind::Child) {
        caption = "Alle Steuerelemente";
        value.sunken = true;
        value.minimumCharacters = 8;
        choice.items = {"2", "3", "10"};
        text.change = [this] { happened.emplace_back("change " + text.text.get()); };
        choice.change = [this] { happened.emplace_back("choice " + choice.text.get()); };
        check.click = [this] { happened.emplace_back("check"); };
        optA.click = [this] { happened.emplace_back("a"); };
        optB.click = [this] { happened.emplace_back("b"); };
        ok.click = [this] { happened.emplace_back("ok"); };
        cancel.click = [this] { happened.emplace_back("cancel"); };
        for (int line = 0; line < 3; ++line) {
            store.append(LogColor::Red, LogForm::Hex, "\x01\x03");
        }
    }

    Box layout() override {
        return column({
            row({picture, column({title, row({value, lamp})})}),
            framed(group, column({optA, optB, optC})),
            grid(2, {name, text, check, choice}, {1}),
            position,
            log,
            row({stretch(), ok, cancel}),
        });
    }
    void closeBoxPressed() override { happened.emplace_back("close"); }
    Button* defaultButton() override { return defaultIsCancel ? &cancel : &ok; }
    Button* cancelButton() override { return hasCancel ? &cancel : nullptr; }

    std::vector<std::string> happened;
    bool hasCancel = true;
    bool defaultIsCancel = false;

    Picture picture{"picIcon"};
    Label title{"lblTitle", "Titel & Text"};
    Label value{"lblValue", "---"};
    vek::Shape lamp{"LED_0", colors::green};
    Frame group{"Frame1", "Relais 1"};
    OptionButton optA{group, "optA", "Arbeitsstrom (n.o.)"};
    OptionButton optB{group, "optB", "Ruhestrom (n.c.)"};
    OptionButton optC{group, "optC", "Aus"};
    Label name{"lblName", "Adresse    [0, 3...90]"};
    TextBox text{"txtAdresse"};
    CheckBox check{"chkMemory", "Ein & Aus", 'A'};
    ComboBox choice{"cmbAdresse"};
    Slider position{"Slider1", -100, 100};
    LogStore store;
    Log log{"RichTextBox1", store};
    Button ok{"cmdOK", "Übernehmen", 'b'};
    Button cancel{"cmdCancel", "Schließen", 'S'};
};

/// A log beside the main window.
class DemoBeside : public Form {
  public:
    explicit DemoBeside(LogStore& store) : Form("frmBeside", Kind::Beside), log("RichTextBox2", store) {
        caption = "Terminal";
    }

    Box layout() override { return log; }
    void closeBoxPressed() override { visible = false; }

    Log log;
};

}  // namespace vek::test
