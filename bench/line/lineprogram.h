#pragma once

#include <QCoreApplication>
#include <QObject>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/form.h"
#include "platform/posix/posixline.h"
#include "platform/serialport.h"
#include "program/dispatcher.h"
#include "program/program.h"
#include "support/fakedesktop.h"
#include "support/fakefiles.h"
#include "ui/qt/formview.h"
#include "ui/qt/links.h"
#include "ui/qt/qtdesktop.h"

namespace vek::bench {

/// The events and the clock of the front end without a screen. Where the program would tell its user
/// something, the measurement has failed.
class LineDesktop final : public QtDesktop {
  public:
    using QtDesktop::QtDesktop;

    std::function<void()> onEvents;  ///< called with each processEvents()

    MessageAnswer messageBox(const MessageBox& box) override { throw std::runtime_error(box.text); }

    void processEvents() override {
        QtDesktop::processEvents();
        if (onEvents) {
            onEvents();
        }
    }
};

/// The program with the serial port and the events that it really has, and a device at address 3 on COM1.
/// There may be one at a time.
class LineProgram {
  public:
    LineProgram(const std::string& dataFolder, int baudRate, const std::string& frameFormat)
        : serial(std::make_unique<PosixLine>(dataFolder)) {
        program.ComPort = 1;
        program.BaudRate = baudRate;
        program.FrameFormat = frameFormat;
        program.DeviceAddress = 3;
        program.DeviceType = 1;
        desktop.watchLine(serial);
        runTimers(timers_, timerOwner_, links_);
    }

  private:
    struct Timers final : Form {
        explicit Timers(Program& owner) : Form("timers", Kind::Main), owner_(owner) {}
        std::vector<Timer*> timers() override { return {&owner_.Timer1, &owner_.TimeOut}; }
        Box layout() override { return stretch(); }
        void closeBoxPressed() override {}

      private:
        Program& owner_;
    };

    int argumentCount_ = 1;
    std::string name_ = "bench";
    char* arguments_ = name_.data();
    QCoreApplication application_{argumentCount_, &arguments_};
    Dispatcher dispatcher_{QCoreApplication::quit};
    FakeFormHost host_;
    FakeProfileFiles profileFiles_;
    FakeFolders folders_;

  public:
    SerialPort serial;
    LineDesktop desktop{dispatcher_};
    Program program{{desktop, host_, serial, profileFiles_, folders_, {}}};

  private:
    Timers timers_{program};
    QObject timerOwner_;
    Links links_{dispatcher_};
};

}  // namespace vek::bench
