#include "campaign/pluggedline.h"

#include <algorithm>
#include <filesystem>

namespace vek {

namespace {

namespace fs = std::filesystem;

/// More than any reply takes; a line that is whole never lets it pass.
constexpr std::chrono::seconds patience{5};

}  // namespace

PluggedLine::PluggedLine(const sim::LineOptions& options) : line_(options) {
    fs::create_directory(data_.path() / "ports");
    plugIn();
}

/// A pulled adapter comes back as a new device.
void PluggedLine::plugIn() {
    terminal_ = std::make_unique<PseudoTerminal>();
    nameDevice(terminal_->path());
}

/// The name goes with the device: the system may give its number to the next pseudo-terminal of another
/// process.
void PluggedLine::pullOut() {
    nameDevice(data_.file("no device"));
    terminal_.reset();
}

void PluggedLine::nameDevice(const std::string& path) {
    const std::string link = data_.file("ports/com1");
    fs::remove(link);
    fs::create_symlink(path, link);
}

Bytes PluggedLine::readInput() {
    Bytes input = serial_.readInput();
    sent_ -= std::min(sent_, input.size());
    return input;
}

void PluggedLine::writeOutput(std::string_view bytes) {
    lengths_.push_back({bytes.size(), 0});
    sent_ = 0;
    const bool pulled = requests() == pull.request;
    if (pulled && pull.beforeIt) {
        pullOut();
    } else if (!isPluggedIn() && requests() > pull.request + 1) {
        plugIn();
    }
    serial_.writeOutput(bytes);
    if (isPluggedIn()) {
        answer(pulled);
    }
    unanswered_ += isPluggedIn() ? 0U : 1U;
}

void PluggedLine::answer(bool pulled) {
    const std::size_t length = lengths_.back().request;
    const std::size_t heard = pulled ? pull.heard : length;
    const std::string request = terminal_->take(heard);
    if (heard == length) {
        const Bytes reply = replyTo(request);
        lengths_.back().reply = reply.size();
        sent_ = pulled ? pull.answered : reply.size();
        send(reply.substr(0, sent_));
    }
    if (pulled) {
        pullOut();
    }
}

void PluggedLine::send(std::string_view reply) {
    const std::size_t half = reply.size() / 2;
    terminal_->send(reply.substr(0, half));
    if (duringReply) {
        duringReply();
    }
    terminal_->send(reply.substr(half));
}

Bytes PluggedLine::replyTo(std::string_view request) {
    Bytes reply;
    line_.receive(sim::Bytes(request.begin(), request.end()), clock->now().time_since_epoch());
    while (const auto next = line_.nextEvent()) {
        const sim::Bytes due = line_.transmit(*next);
        reply.append(due.begin(), due.end());
    }
    return reply;
}

bool PluggedLine::waitReceived(std::size_t count, TimePoint deadline) {
    constexpr Milliseconds moment{1};
    const bool whole = isPluggedIn() && serial_.isConnected();
    if (serial_.waitReceived(count, Clock::now() + (whole ? Clock::duration{patience} : moment))) {
        return true;
    }
    clock->advanceTo(deadline);
    return false;
}

}  // namespace vek
