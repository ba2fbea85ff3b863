#include "program/windows.h"

#include <algorithm>
#include <utility>

namespace vek {

void Windows::add(std::unique_ptr<Form> form) {
    Form& opened = *form;
    open_.push_back(std::move(form));
    opened.load();
    if (isOpen(opened)) {
        host_.shown(opened);
    }
}

void Windows::close(Form& form) {
    const auto found =
        std::find_if(open_.begin(), open_.end(), [&](const auto& open) { return open.get() == &form; });
    if (found == open_.end()) {
        return;
    }
    closed_.push_back(std::move(*found));
    open_.erase(found);
    host_.closed(form);
    form.unload();
}

void Windows::closeAll() {
    while (!open_.empty()) {
        close(*open_.back());
    }
}

void Windows::keepInput() {
    std::vector<Form*> forms;  // a message may let one close meanwhile, which lives until collect()
    for (const auto& open : open_) {
        forms.push_back(open.get());
    }
    for (Form* form : forms) {
        form->keepInput();
    }
}

bool Windows::hasChild() const {
    return std::any_of(open_.begin(), open_.end(),
                       [](const auto& open) { return open->kind == Form::Kind::Child; });
}

bool Windows::isOpen(const Form& form) const {
    return std::any_of(open_.begin(), open_.end(), [&](const auto& open) { return open.get() == &form; });
}

Form* Windows::find(std::string_view name) const {
    const auto found =
        std::find_if(open_.begin(), open_.end(), [&](const auto& open) { return open->name == name; });
    return found == open_.end() ? nullptr : found->get();
}

}  // namespace vek
