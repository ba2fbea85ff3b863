#include "parameters/unreadparameters.h"

#include "modbus/modbusframe.h"
#include "parameters/parametercodes.h"

namespace vek {

bool isErrorText(std::string_view text) {
    return text == crcTimeout || text.starts_with(exceptionPrefix);
}

void noteAnswer(ParameterControls& controls, const ParameterRow& row, bool answered) {
    controls.unread.set(static_cast<std::size_t>(row.field), !answered);
}

bool showsUnread(const ParameterControls& controls, const ParameterRow& row) {
    return controls.unread.test(static_cast<std::size_t>(row.field)) &&
           !std::holds_alternative<NumberParameter>(row.kind) && shownCode(controls, row, Bus::Modbus) == 0;
}

}  // namespace vek
