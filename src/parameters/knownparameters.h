#pragma once

#include <string>

#include "parameters/parametertable.h"

/// A parameter is known when its controls hold what the device has said, or what the user has typed or chosen
/// or a file has brought. What is not known is never sent to a device and never saved.
namespace vek {

/// Whether the controls of the parameter stand for a value. An alarm mask is known when each of its boxes
/// that can be clicked is; with an impedance measurement of which nobody knows whether it is on, what depends
/// on it is unknown as well.
bool isKnown(const ParameterControls& controls, const ParameterRow& row);

/// Has the controls show that nothing is known: empty boxes, check boxes in their third state, no option.
void forget(ParameterControls& controls, const ParameterRow& row);

/// What the controls of the parameter show, to be compared with what they showed before.
std::string shownState(const ParameterControls& controls, const ParameterRow& row);

}  // namespace vek
