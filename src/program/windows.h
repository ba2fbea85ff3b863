#pragma once

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/form.h"

namespace vek {

/// Shows windows on the screen; the front end's side of Windows.
class FormHost {
  public:
    virtual ~FormHost() = default;

    /// The form has been opened: from now on it stands on the screen as long as it is visible.
    virtual void shown(Form& form) = 0;

    /// The form has been closed: it leaves the screen at once and must not be touched after this call.
    virtual void closed(Form& form) = 0;
};

/// The open windows. A window that closes leaves the screen at once, its object only with collect(), so that
/// a handler of it that is still running ends on a living object.
class Windows {
  public:
    explicit Windows(FormHost& host) : host_(host) {}

    /// Opens the window; the reference is good until the window closes.
    template <class FormClass>
    FormClass& open(std::unique_ptr<FormClass> form) {
        FormClass& opened = *form;
        add(std::move(form));
        return opened;
    }

    /// Closes the window; does nothing when it is closed already.
    void close(Form& form);

    /// Closes all windows, the last opened first.
    void closeAll();

    /// Has all open windows store what has been typed.
    void keepInput();

    /// Whether a window inside the main window is open.
    bool hasChild() const;

    bool isOpen(const Form& form) const;
    Form* find(std::string_view name) const;

    /// Destroys the closed windows. To be called when no handler of any window is running.
    void collect() { closed_.clear(); }

  private:
    void add(std::unique_ptr<Form> form);

    FormHost& host_;
    std::vector<std::unique_ptr<Form>> open_;
    std::vector<std::unique_ptr<Form>> closed_;
};

}  // namespace vek
