#include "program/dispatcher.h"

#include "program/program.h"

namespace vek {

void Dispatcher::serve(Program& program) {
    onEnd = [&program] { program.RS485.close(); };
    onIdle = [&program] { program.windows.collect(); };
}

void Dispatcher::run(const std::function<void()>& call) noexcept {
    if (ending_) {
        return;
    }
    ++depth_;
    try {
        call();
    } catch (const ProgramEnd&) {
        end();
    }
    --depth_;
    if (depth_ == 0 && onIdle) {
        onIdle();
    }
}

void Dispatcher::throwIfEnding() const {
    if (ending_) {
        throw ProgramEnd();
    }
}

void Dispatcher::end() {
    if (ending_) {
        return;  // a handler further out, unwinding after the end came from within its event loop
    }
    ending_ = true;
    if (onEnd) {
        onEnd();
    }
    leave_();
}

}  // namespace vek
