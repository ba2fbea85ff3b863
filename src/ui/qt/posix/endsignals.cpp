#include "ui/qt/endsignals.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>
#include <utility>

namespace vek {

namespace {

constexpr int endSignals[] = {SIGTERM, SIGINT, SIGHUP};

// A handler can reach nothing but what is global: the pipe that wakes the event loop.
std::array<int, 2> wakePipe{-1, -1};

void wake(int /*signal*/) {
    const int keptError = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(wakePipe[1], &byte, 1);
    errno = keptError;
}

void handleWith(void (*handler)(int)) {
    for (const int number : endSignals) {
        struct sigaction action {};
        action.sa_handler = handler;
        action.sa_flags = SA_RESTART;
        ::sigaction(number, &action, nullptr);
    }
}

}  // namespace

EndSignals::EndSignals(std::function<void()> requested) : requested_(std::move(requested)) {
    if (::pipe2(wakePipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;  // the signals then end the process the system's way
    }
    auto* const notifier = new QSocketNotifier(wakePipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> bytes{};
        while (::read(wakePipe[0], bytes.data(), bytes.size()) > 0) {
        }
        requested_();
    });
    handleWith(wake);
}

EndSignals::~EndSignals() {
    if (wakePipe[0] < 0) {
        return;
    }
    handleWith(SIG_DFL);
    for (int& end : wakePipe) {
        ::close(std::exchange(end, -1));
    }
}

}  // namespace vek
