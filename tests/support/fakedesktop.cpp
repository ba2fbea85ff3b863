#include "support/fakedesktop.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace vek {

namespace {

template <class Answers, class Default>
Default takeFirst(Answers& answers, Default otherwise) {
    if (answers.empty()) {
        return otherwise;
    }
    Default first = std::move(answers.front());
    answers.pop_front();
    return first;
}

}  // namespace

std::string boxText(const MessageBox& box) {
    constexpr const char* icons[] = {"|-", "|info", "|stop"};
    const char* buttons = box.buttons == MessageButtons::Ok ? "|ok|" : "|ok+cancel|";
    return box.title + icons[static_cast<int>(box.icon)] + buttons + box.text;
}

MessageAnswer FakeDesktop::messageBox(const MessageBox& box) {
    boxes.push_back(boxText(box));
    if (onMessageBox) {
        onMessageBox();
    }
    return takeFirst(answers, MessageAnswer::Ok);
}

std::optional<std::string> FakeDesktop::chooseFile(const FileDialog& dialog) {
    dialogs.push_back(dialog);
    return takeFirst(files, std::optional<std::string>{});
}

void FakeDesktop::processEvents() {
    tickDueTimers();
    ++eventRounds;
    if (onEvents && !inputHeld_) {
        onEvents();
    }
}

void FakeDesktop::run(Timer& timer) {
    RunningTimer& running = timers_.emplace_back(RunningTimer{&timer, TimePoint::max(), {}});
    running.enabled = timer.enabled.bind([this, &running](bool enabled) {
        running.due = enabled ? clock_.now() + Milliseconds{running.timer->interval.get()} : TimePoint::max();
    });
}

TimePoint FakeDesktop::wakeTime(TimePoint until) const {
    for (const RunningTimer& running : timers_) {
        until = std::min(until, running.due);
    }
    const auto input = nextInput ? nextInput() : std::nullopt;
    return input ? std::min(until, *input) : until;
}

void FakeDesktop::tickDueTimers() {
    for (RunningTimer& running : timers_) {
        if (running.due <= clock_.now()) {
            running.due = clock_.now() + Milliseconds{running.timer->interval.get()};
            running.timer->tick();
        }
    }
}

void FakeDesktop::waitForEvents(TimePoint until) {
    const TimePoint wake = wakeTime(until);
    if (wake == TimePoint::max()) {
        throw std::logic_error("a wait that nothing would end");
    }
    clock_.advanceTo(wake);
    processEvents();
}

void FakeFormHost::shown(Form& form) {
    log.push_back("+" + form.name);
    open.push_back(&form);
}

void FakeFormHost::closed(Form& form) {
    log.push_back("-" + form.name);
    std::erase(open, &form);
}

}  // namespace vek
