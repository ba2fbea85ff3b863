#include "support/fakedesktop.h"

#include <utility>
namespace vek {

namespace {

const char* iconText(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::None:
            return "-";
        case MessageIcon::Information:
            return "info";
        case MessageIcon::Stop:
            return "stop";
    }
    return "?";
}

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
    const char* buttons = box.buttons == MessageButtons::Ok ? "ok" : "ok+cancel";
    return box.title + "|" + iconText(box.icon) + "|" + buttons + "|" + box.text;
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
    ++eventRounds;
    if (onEvents) {
        onEvents();
    }
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
