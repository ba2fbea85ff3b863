#include "ui/qt/inputnotifier.h"

#include <QSocketNotifier>

#include "platform/posix/systeminput.h"

namespace vek {

InputNotifier::InputNotifier(const SystemInput& input)
    : notifier_(std::make_unique<QSocketNotifier>(input.descriptor, QSocketNotifier::Read)) {}

}  // namespace vek
