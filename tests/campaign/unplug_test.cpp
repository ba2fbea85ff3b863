#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "campaign/pluggedline.h"
#include "monitor/frmMbMonitor.h"
#include "parameters/frmMbParameter.h"
#include "support/shown.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Texts = std::vector<std::string>;

constexpr std::size_t slots = 9;
constexpr std::array<float, slots> steadyValues = {60e3F, 70e3F, 230, 2e-6F, 115, -115, 40, 50e3F, 8};

std::ptrdiff_t openHandles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

/// The program at a device of type 1 on a real port, where an adapter is pulled out once.
class Rig {
  public:
    explicit Rig(bool kdl = false) : line_(options(kdl)) {
        line_.clock = &test.clock;
        test.configure();
        if (kdl) {
            test.configureKdl();
        }
        test.program.ComPort = 1;
        test.program.DeviceType = 1;
        for (std::size_t slot = 0; slot < slots; ++slot) {
            line_.device().pin(slot, {steadyValues.at(slot), std::nullopt, std::nullopt});
        }
        test.desktop.nextInput = [this] {
            return line_.hasInput() ? std::optional(test.clock.now()) : std::nullopt;
        };
        test.open<LastWindow>();
    }

    /// Plans the pulling for the n-th request from now on.
    void plan(Pull pull) {
        pull.request += pull.request > 0 ? line_.requests() : 0;
        line_.pull = pull;
        before_ = line_.unanswered();
        firstRequest_ = line_.lengths().size();
    }

    PluggedLine& line() { return line_; }

    /// The requests since then.
    std::vector<FrameLengths> lengths() const {
        return {line_.lengths().begin() + static_cast<std::ptrdiff_t>(firstRequest_), line_.lengths().end()};
    }

    /// Over Modbus, where each of them gets its dialog.
    void expectOnlyThePulledRequestsFailed() {
        EXPECT_FALSE(line_.isOpen());
        if (test.program.kdlActive()) {
            return;
        }
        const auto dialogs = static_cast<std::size_t>(std::ranges::count(test.desktop.boxes, crcDialog));
        EXPECT_EQ(dialogs, line_.unanswered() - before_);
    }

    /// Puts the adapter in again should the operation have ended before.
    void recover() {
        if (!line_.isPluggedIn()) {
            line_.plugIn();
        }
        line_.pull = {};
        test.desktop.boxes.clear();
    }

  private:
    static sim::LineOptions options(bool kdl) {
        sim::LineOptions options;
        options.device.kdl = kdl;
        return options;
    }

    PluggedLine line_;
    std::size_t before_ = 0;
    std::size_t firstRequest_ = 0;

  public:
    TestProgram test{NumberLocale{}, &line_};
};

/// One operation of the user. It runs with an adapter pulled out as planned, and gives what the windows show
/// in the end, when the adapter was back.
struct Operation {
    const char* name;
    std::size_t requests;  ///< of one cycle
    Texts (*run)(Rig& rig, const Pull& pull);
    bool kdl = false;
};

void PrintTo(const Operation& operation, std::ostream* out) {
    *out << operation.name;
}

/// Watches until, the adapter being back for good, all rows have been read anew.
Texts watch(Rig& rig, const Pull& pull) {
    const std::size_t requestsOfTwoPasses = rig.test.program.kdlActive() ? 90 : 60;
    rig.plan(pull);
    auto& window = rig.test.open<frmMbMonitor>();
    const std::size_t enough = pull.request + requestsOfTwoPasses;
    rig.test.desktop.onEvents = [&] {
        if (rig.line().requests() >= enough) {
            window.cmdStop.click();
        }
    };
    window.cmdRunMonitor.click();
    rig.expectOnlyThePulledRequestsFailed();
    Texts texts;
    for (std::size_t row = 0; row < slots; ++row) {
        texts.push_back(
            captions({&window.lblMesswert[row], &window.lblEinheit[row], &window.lblMessName[row]}));
    }
    return texts;
}

Texts readParameters(Rig& rig, const Pull& pull) {
    rig.plan(pull);
    auto& editor = rig.test.open<frmMbParameter>();
    rig.expectOnlyThePulledRequestsFailed();
    rig.recover();
    editor.cmdReadPara.click();
    EXPECT_EQ(rig.test.desktop.boxes, Texts());
    Texts texts;
    for (const TextBox* box :
         {&editor.txtRWarnung, &editor.txtRAlarm, &editor.txtUnterSpg, &editor.txtUeberSpg,
          &editor.txtAdresse, &editor.txtTein, &editor.txtTan, &editor.txtTab}) {
        texts.push_back(box->text);
    }
    for (const OptionButton* option :
         {&editor.optR1nc, &editor.optBaud9600, &editor.optEven, &editor.optSelfTest24h}) {
        texts.emplace_back(option->value ? "on" : "off");
    }
    return texts;
}

Texts writeParameters(Rig& rig, const Pull& pull) {
    auto& editor = rig.test.open<frmMbParameter>();
    editor.txtRWarnung.text = std::string("77");
    editor.txtTab.text = std::string("33");
    rig.plan(pull);
    editor.cmdWritePara.click();
    rig.expectOnlyThePulledRequestsFailed();
    rig.recover();
    editor.cmdWritePara.click();
    EXPECT_EQ(rig.test.desktop.boxes, Texts());
    const auto& parameters = rig.line().device().parameters();
    return {std::to_string(parameters.read(3005).value_or(0)),
            std::to_string(parameters.read(3020).value_or(0))};
}

class Unplug : public testing::TestWithParam<Operation> {
  protected:
    Unplug() {
        Rig rig(GetParam().kdl);
        undisturbed_ = GetParam().run(rig, {});
        lengths_ = rig.lengths();
    }

    void pullAt(const Pull& pull) {
        SCOPED_TRACE(testing::Message() << "request " << pull.request << (pull.beforeIt ? ", before it" : "")
                                        << ", heard " << pull.heard << ", answered " << pull.answered);
        Rig rig(GetParam().kdl);
        EXPECT_EQ(GetParam().run(rig, pull), undisturbed_);
        EXPECT_FALSE(rig.line().isOpen());
        ++steps_;
    }

    template <class PullAtSomeBytes>
    void expectTheProgramGoesOn(PullAtSomeBytes pullAtSomeBytes) {
        const std::ptrdiff_t handles = openHandles();
        const std::size_t requests = std::min(GetParam().requests, lengths_.size());
        ASSERT_GE(requests, 20U);
        for (std::size_t request = 1; request <= requests && !HasFailure(); ++request) {
            pullAt({.request = request, .beforeIt = true});
            pullAtSomeBytes(request, lengths_.at(request - 1));
        }
        RecordProperty("steps", steps_);
        EXPECT_EQ(openHandles(), handles);
    }

    Texts undisturbed_;
    std::vector<FrameLengths> lengths_;
    int steps_ = 0;
};

TEST_P(Unplug, AtEachRequestAndTheProgramGoesOn) {
    expectTheProgramGoesOn([this](std::size_t request, const FrameLengths& frame) {
        // Another byte each time, so that all of them have their turn.
        pullAt({.request = request, .heard = request % frame.request});
        pullAt({.request = request, .heard = frame.request});
        pullAt({.request = request, .heard = frame.request, .answered = request % frame.reply});
    });
}

/// Takes a minute; to be run by hand.
TEST_P(Unplug, DISABLED_AtEachByteOfEachRequestAndTheProgramGoesOn) {
    expectTheProgramGoesOn([this](std::size_t request, const FrameLengths& frame) {
        for (std::size_t heard = 0; heard < frame.request; ++heard) {
            pullAt({.request = request, .heard = heard});
        }
        for (std::size_t answered = 0; answered < frame.reply; ++answered) {
            pullAt({.request = request, .heard = frame.request, .answered = answered});
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Operations, Unplug,
                         testing::Values(Operation{"Monitor", 33, watch},
                                         Operation{"Read", 25, readParameters},
                                         Operation{"Write", 25, writeParameters},
                                         Operation{"KdlMonitor", 40, watch, true},
                                         Operation{"KdlRead", 22, readParameters, true},
                                         Operation{"KdlWrite", 45, writeParameters, true}),
                         [](const auto& operation) { return std::string(operation.param.name); });

}  // namespace
}  // namespace vek
