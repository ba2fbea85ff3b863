#pragma once

#include <QObject>
#include <functional>

namespace vek {

/// Turns the system's request to end the process (a terminate or interrupt signal) into an event, so that the
/// program ends as by its close box. At most one object at a time.
class EndSignals : public QObject {
  public:
    explicit EndSignals(std::function<void()> requested);
    ~EndSignals() override;

  private:
    std::function<void()> requested_;
};

}  // namespace vek
