#pragma once

#include <string>

#include "program/childform.h"

namespace vek {

/// The device address dialog: finds the device at a bus address and identifies its model.
class frmGeräteadresse : public ChildForm {
  public:
    explicit frmGeräteadresse(Program& program);

    Label Label1{"Label1", "Adresse des Gerätes am Bus (3 bis 90):"};
    ComboBox cmbGeraeteAdresse{"cmbGeraeteAdresse"};
    Button btnÜbernehmen{"btnÜbernehmen", "Übernehmen", 'b'};

    Box layout() override;
    void load() override;
    Button* defaultButton() override { return &btnÜbernehmen; }

  private:
    void search();
    void searchModbus(const std::string& address);
    void searchKdl(const std::string& address);
    void deviceFound(const std::string& title, const std::string& deviceName);
    std::string notFoundText(const std::string& bus) const;
};

}  // namespace vek
