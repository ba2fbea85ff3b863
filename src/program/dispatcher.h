#pragma once

#include <functional>
#include <utility>

namespace vek {

struct Program;

/// The single door from the front end into the program's code: every handler, tick and property change that
/// comes from the user goes through run(), and the end of the program comes out here.
class Dispatcher {
  public:
    /// `leave` hides the windows and has the front end's event loop end.
    explicit Dispatcher(std::function<void()> leave) : leave_(std::move(leave)) {}

    /// Has the program end with its line closed, and destroys the windows that its handlers have closed.
    void serve(Program& program);

    /// Runs once when the program ends, before anything else happens: closes the line. Must not throw.
    std::function<void()> onEnd;

    /// Runs whenever no call is under way any more: destroys what handlers have closed. Must not throw.
    std::function<void()> onIdle;

    /// Calls into the program; calls may nest through event loops that a handler starts. Does nothing once
    /// the program is ending. An exception other than ProgramEnd is a fault of the program and terminates it.
    void run(const std::function<void()>& call) noexcept;

    /// True from the moment that a call has ended the program: nothing may be shown any more.
    bool ending() const { return ending_; }

    /// Throws ProgramEnd when the program is ending; for a handler that comes back from a nested event loop.
    void throwIfEnding() const;

    /// Refuses all further calls without ending anything: the windows are being torn down.
    void stop() { ending_ = true; }

  private:
    void end();

    std::function<void()> leave_;
    int depth_ = 0;
    bool ending_ = false;
};

}  // namespace vek
