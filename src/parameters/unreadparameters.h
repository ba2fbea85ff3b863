#pragma once

#include <string_view>

#include "parameters/parametertable.h"

/// A value that is none leaves the controls as they were. A read that failed counts as 0 for a check
/// box or an option, and leaves an error text in a box. None of that is what the device holds, and none of it
/// may go back to the device as if it were.
namespace vek {

/// Whether the text in a box is the result of a request that failed ("CRC_TIMEOUT", "EXCEP_4"), and no value.
bool isErrorText(std::string_view text);

/// Notes whether the device has told the parameter, with a value that it can have.
void noteAnswer(ParameterControls& controls, const ParameterRow& row, bool answered);

/// Whether the controls of a flag, choice or mask still show the 0 that the last read left there for want of
/// an answer.
bool showsUnread(const ParameterControls& controls, const ParameterRow& row);

}  // namespace vek
