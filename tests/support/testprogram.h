#pragma once

#include <memory>

#include "platform/desktop.h"
#include "program/program.h"
#include "support/fakeclock.h"
#include "support/fakedesktop.h"
#include "support/fakefiles.h"
#include "support/fakeserial.h"

namespace vek {

/// Stands for the main window: the program ends with it.
class LastWindow final : public Form {
  public:
    explicit LastWindow(Program& program) : Form("lastWindow", Kind::Main), program_(program) {}
    Box layout() override { return stretch(); }
    void unload() override { throw ProgramEnd{}; }
    void closeBoxPressed() override { program_.windows.close(*this); }

  private:
    Program& program_;
};

/// A program on stand-ins for everything that the platform gives it.
struct TestProgram {
    FakeClock clock;
    FakeSerial serial{clock};
    FakeDesktop desktop{clock};
    FakeFormHost host;
    FakeProfileFiles profileFiles;
    FakeFolders folders;
    Program program;

    /// `line` takes the place of `serial`, `disk` that of `profileFiles`.
    explicit TestProgram(const NumberLocale& locale = {}, SerialControl* line = nullptr,
                         ProfileFiles* disk = nullptr)
        : program({desktop, host, line != nullptr ? *line : serial, disk != nullptr ? *disk : profileFiles,
                   folders, locale}) {
        desktop.run(program.Timer1);
        desktop.run(program.TimeOut);
        desktop.line = &program.RS485;
        desktop.nextInput = [this] { return serial.nextArrival(); };
    }

    /// COM3, 9600 baud, the device at address 3, over Modbus with even parity.
    void configure(const char* frameFormat = ",e,8,1") {
        program.ComPort = 3;
        program.BaudRate = 9600;
        program.FrameFormat = frameFormat;
        program.DeviceAddress = 3;
    }

    /// The same over the KDL bus.
    void configureKdl() {
        configure(kdlFrameFormat);
        program.KdlAddressPrefix = ":;003";
    }

    template <class FormClass>
    FormClass& open() {
        return program.windows.open(std::make_unique<FormClass>(program));
    }

    /// Runs what a front end would dispatch; whether it ended the program.
    template <class Handler>
    bool endsProgram(Handler handler) {
        try {
            handler();
        } catch (const ProgramEnd&) {
            return true;
        }
        return false;
    }
};

}  // namespace vek
