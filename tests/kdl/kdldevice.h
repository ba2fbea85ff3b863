#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "support/testprogram.h"

namespace vek {

/// A reply as a device puts it on the line; nobody reads its header and its trailer.
inline Bytes kdlReply(const Bytes& payload) {
    return ":;003=" + payload + "&dZB\r\n";
}

/// Answers KDL requests from a table, 20 ms after each; commands that are not in it stay without an answer.
class KdlDevice {
  public:
    explicit KdlDevice(FakeSerial& serial) : serial_(serial) {
        serial_.peer = [this](std::string_view frame) { receive(frame); };
    }

    std::map<std::string, Bytes> answers;                       ///< payload by command, such as ":ALM? 1"
    std::vector<std::string> commands;                          ///< received since the last take
    std::function<void(const std::string& command)> onCommand;  ///< before the answer is looked up

    /// Whether it answers to a prefix; without a function to any.
    std::function<bool(const std::string& prefix)> onAddress;

    std::vector<std::string> takeCommands() { return std::exchange(commands, {}); }

    /// Runs `event` once, with the events that follow the n-th request for that command.
    void afterRequest(FakeDesktop& desktop, const std::string& command, int n,
                      const std::function<void()>& event) {
        onCommand = [&desktop, command, event, left = n](const std::string& received) mutable {
            if (received == command && --left == 0) {
                desktop.onEvents = [&desktop, event] {
                    const auto thisOne = std::exchange(desktop.onEvents, nullptr);
                    event();
                };
            }
        };
    }

  private:
    void receive(std::string_view frame) {
        constexpr std::size_t prefixLength = 5;
        const std::string command(frame.substr(prefixLength, frame.find('&') - prefixLength));
        commands.push_back(command);
        if (onCommand) {
            onCommand(command);
        }
        if (onAddress && !onAddress(std::string(frame.substr(0, prefixLength)))) {
            return;
        }
        if (const auto answer = answers.find(command); answer != answers.end()) {
            serial_.reply(kdlReply(answer->second), Milliseconds{20});
        }
    }

    FakeSerial& serial_;
};

}  // namespace vek
