#pragma once

#include <map>
#include <string>
#include <vector>

#include "parameters/parameterorders.h"
#include "program/program.h"

namespace vek {

/// Tells in a label where the values of the editor come from, and how many of them the user has changed since
/// then: "aus Gerät gelesen 08:11, 3 geändert".
class ParameterOrigin {
  public:
    /// The controls and the label outlive this object.
    ParameterOrigin(const ParameterControls& controls, Label& label) : controls_(controls), label_(label) {}

    /// Watches the controls of these parameters.
    void watch(const ParameterRows& rows, ParameterControls& controls);

    /// The values come from here now.
    void set(const std::string& origin);

    /// Until the next set() changes are not the user's.
    void pause() { paused_ = true; }

  private:
    void count();

    const ParameterControls& controls_;
    Label& label_;
    std::string origin_;
    std::map<const ParameterRow*, std::string> before_;  // what was shown at the last set()
    std::vector<Subscription> changes_;
    bool paused_ = true;
};

}  // namespace vek
