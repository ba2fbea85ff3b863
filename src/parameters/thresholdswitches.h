#pragma once

#include <cstdint>
#include <vector>

#include "parameters/parametercontrols.h"
#include "platform/property.h"

namespace vek {

struct ParameterRow;

/// Over the KDL bus a threshold has no register that switches it: the text of its box alone is written. The
/// check boxes and the texts are therefore kept in step: "off" in the box is a cleared check box.
class ThresholdSwitches {
  public:
    explicit ThresholdSwitches(ParameterControls& controls) : controls_(controls) {}

    /// Ties the check boxes of the type's thresholds to their texts; without this call nothing here has an
    /// effect.
    void tie(std::uint8_t deviceType);

    /// Between these calls check boxes and texts can be set one by one.
    void pause() { paused_ = true; }
    void resume() { paused_ = false; }

    /// Puts "off" where a check box is clear, and empties the box where one is set beside "off".
    void textsFollow();

  private:
    void textFollows(const ParameterRow& row);
    void checkFollows(const ParameterRow& row);

    ParameterControls& controls_;
    std::vector<const ParameterRow*> rows_;
    std::vector<Subscription> texts_;
    bool paused_ = false;
};

}  // namespace vek
