#pragma once

#include <cstdint>
#include <optional>

#include "modbus/modbusframe.h"
#include "program/childform.h"

namespace vek {

/// The parameter-register tool: reads up to ten registers, each shown as hexadecimal, decimal and characters,
/// and writes one.
class frmParaReg : public ChildForm {
  public:
    static constexpr std::size_t rowCount = 10;

    explicit frmParaReg(Program& program);

    TextBox txtParaReg{"txtParaReg"};
    ComboBox cmbRegAnz{"cmbRegAnz"};
    TextBox txtRegVal{"txtRegVal"};
    Button cmdRead{"cmdRead", "Read", 'R'};
    Button cmdWrite{"cmdWrite", "Write", 'W'};

    ControlArray<Label> lblHexVal{"lblHexVal", rowCount};
    ControlArray<Label> lblDezVal{"lblDezVal", rowCount};
    ControlArray<Label> lblChr{"lblChr", rowCount};

    Box layout() override;
    void load() override;
    Button* defaultButton() override { return &cmdRead; }

  private:
    void styleTable();
    void readRegisters();
    void writeRegister();
    void clearTable();
    std::optional<std::int64_t> startRegister() const;
    std::optional<std::int64_t> registerCount() const;
    std::optional<std::int64_t> valueToWrite() const;
    void refuse();
    void showRegisters(const Bytes& data, std::size_t count);

    Label lblParaReg_{"lblParaReg", "Register Nr.:"};
    Label lblRegAnz_{"lblRegAnz", "Anzahl Register :"};
    Label lblRegVal_{"lblRegVal", "Register-Wert"};
    ControlArray<Label> lblHeading_{"lblHeading", 4};
    ControlArray<Label> lblRowNumber_{"lblRowNumber", rowCount};
    Frame fraRegister_{"fraRegister", "Register"};
};

}  // namespace vek
