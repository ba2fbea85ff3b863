#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>

#include "campaign/pluggedline.h"
#include "campaign/use.h"

namespace vek {
namespace {

std::ptrdiff_t openHandles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

/// A use of the program on a real port, with the adapter pulled out as it says.
struct PluggedUse {
    PluggedUse(std::uint32_t seed, bool kdl, std::size_t pulledAt, bool beforeIt) : use(seed, kdl, &line) {
        line.clock = &use.bench.test.clock;
        line.device = &use.bench.peer.line;
        line.onWrite = [this](std::string_view frame) { use.beforeRequest(frame); };
        use.beforeLastStep = [this] { line.plugBack(); };
        line.pulledAt = pulledAt;
        line.beforeIt = beforeIt;
        use.bench.test.desktop.nextInput = [this] {
            return line.hasInput() ? std::optional(use.bench.test.clock.now()) : std::nullopt;
        };
        use.run();
    }

    PluggedLine line;
    Use use;
};

/// What the last step has to show: in the editor what the device holds, in a monitor what it measures.
std::map<std::string, std::string> dueIn(const PluggedUse& pulled, const PluggedUse& whole,
                                         std::uint32_t seed, bool kdl) {
    if (seed % 2 == 0) {
        return whole.use.moments.back().shown;
    }
    Bench fresh(static_cast<int>(seed % 10) + 1, kdl);
    fresh.parameters = pulled.use.bench.parameters;
    fresh.test.open<LastWindow>();
    return fresh.shown(fresh.test.open<frmMbParameter>());
}

/// The adapter is back for the last step, which shows what it shows on a whole line. Over Modbus each request
/// that the pulling has spoilt has had its message box.
TEST(Unplug, AtAnyRequestAndTheProgramGoesOn) {
    for (const auto& [seed, kdl] : {std::pair(2U, false), {3U, false}, {8U, false}, {3U, true}}) {
        const PluggedUse whole(seed, kdl, 0, false);
        const std::ptrdiff_t handles = openHandles();
        for (std::size_t request = 1; request < 40 && !HasFailure(); request += 3) {
            for (const bool beforeIt : {true, false}) {
                SCOPED_TRACE(testing::Message() << "seed " << seed << (kdl ? " on KDL" : "") << ", request "
                                                << request << (beforeIt ? ", before it" : ""));
                const PluggedUse pulled(seed, kdl, request, beforeIt);
                EXPECT_EQ(pulled.use.moments.back().shown, dueIn(pulled, whole, seed, kdl));
                std::size_t dialogs = 0;
                for (const Moment& moment : pulled.use.moments) {
                    dialogs += static_cast<std::size_t>(std::ranges::count(moment.boxes, crcDialog));
                }
                EXPECT_EQ(dialogs, kdl ? 0 : pulled.line.unanswered);
                EXPECT_FALSE(pulled.line.isOpen());
            }
        }
        EXPECT_EQ(openHandles(), handles);
    }
}

}  // namespace
}  // namespace vek
