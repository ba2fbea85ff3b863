#pragma once

namespace vek {

/// A window of a form on the screen.
class FormWindow {
  public:
    virtual ~FormWindow() = default;

    /// Shows the window for the first time, as far as its form is visible.
    virtual void present() = 0;

    /// The form is closed: the window leaves the screen at once, does not touch the form any more and
    /// destroys itself when no event of it is being handled.
    virtual void discard() = 0;
};

}  // namespace vek
