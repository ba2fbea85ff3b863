#pragma once

#include <QObject>
#include <memory>

#include "platform/seams/rawline.h"

namespace vek {

/// Wakes the event loop when bytes have come on the line, for as long as it lives; the event has no handler.
class InputNotifier {
  public:
    explicit InputNotifier(const SystemInput& input);

  private:
    std::unique_ptr<QObject> notifier_;
};

}  // namespace vek
