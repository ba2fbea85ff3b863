#include <gtest/gtest.h>

#include <iterator>

#include "campaign/pluggedline.h"
#include "campaign/witness.h"

namespace vek {
namespace {

std::ptrdiff_t openHandles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

/// A use on a real port. The adapter is pulled out at the n-th request (from 0), before it or when half of
/// its reply is on the line, and is back for the one after the next.
void usePlugged(std::uint32_t seed, bool kdl, std::size_t pulledAt, bool beforeIt) {
    SCOPED_TRACE(testing::Message() << "seed " << seed << (kdl ? " on KDL" : "") << ", request " << pulledAt
                                    << (beforeIt ? ", before it" : ""));
    const TemporaryFolder data;
    PluggedLine line(data);
    Use use(seed, kdl, &line);
    use.requests = 45;
    line.clock = &use.bench.test.clock;
    line.device = &use.bench.peer.line;
    std::vector<Exchange> exchanges;
    line.onWrite = [&](std::string_view frame) {
        use.look(frame);
        const std::size_t past = exchanges.size() - pulledAt;  // huge before it
        past == 0 && beforeIt ? line.pullOut() : past == 2 && !line.isPluggedIn() ? line.plugIn() : void();
        exchanges.push_back(
            {.request = Bytes(frame), .pluggedIn = past > 1, .clean = past > 1 && line.isOpen()});
    };
    line.duringReply = [&] { exchanges.size() == pulledAt + 1 ? line.pullOut() : void(); };
    line.onRead = [&](std::string_view bytes) { exchanges.back().received += bytes; };
    use.run();
    EXPECT_FALSE(line.isOpen());
    for (const Exchange& exchange : exchanges) {
        EXPECT_EQ(answerTo(exchange).inTime, exchange.clean) << spacedHex(exchange.request);
    }
    Use second(seed, kdl);
    second.requests = use.requests;
    Witness(use, exchanges, [](std::size_t at, const std::string& what) {
        ADD_FAILURE() << "request " << at << ": " << what;
    }).compareWith(second);
}

TEST(Unplug, AtAnyRequestAndTheProgramGoesOn) {
    const std::ptrdiff_t handles = openHandles();
    for (const auto& [seed, kdl] :
         {std::pair(1U, false), {8U, false}, {11U, false}, {1U, true}, {11U, true}}) {
        for (std::size_t pulledAt = 0; pulledAt < 45 && !HasFailure(); pulledAt += 3) {
            usePlugged(seed, kdl, pulledAt, true);
            usePlugged(seed, kdl, pulledAt + 1, false);
        }
    }
    EXPECT_EQ(openHandles(), handles);
}

}  // namespace
}  // namespace vek
