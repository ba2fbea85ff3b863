#pragma once

#include "parameters/parametercontrols.h"
#include "parameters/parameterorigin.h"
#include "parameters/thresholdswitches.h"
#include "program/childform.h"

namespace vek {

/// The parameter editor: shows the parameter set of the device, reads and writes it over the protocol in use,
/// loads and saves parameter files.
class frmMbParameter : public ChildForm, public ParameterControls {
  public:
    explicit frmMbParameter(Program& program);

    Button cmdReadPara{"cmdReadPara", "Parameter auslesen", 'l'};
    Button cmdWritePara{"cmdWritePara", "Parameter setzen", 'z'};
    Button cmd_Para_File_open{"cmd_Para_File_open", "Parameter-Datei einlesen", 'D'};
    Button cmd_Para_File_Save{"cmd_Para_File_Save", "Parameter in Datei speichern", 'i'};
    Button cmdClose{"cmdClose", "Schließen", 'c'};

    Box layout() override;
    void load() override;
    /// What has been typed must not go with one key.
    bool escapeCloses() const override { return false; }

  private:
    void readBeforeShown();
    void readDevice();
    void writeDevice();
    void loadFile();
    void saveFile();
    void useDevice(void (frmMbParameter::*operation)());
    const Control& keyboardAfterWriting();
    void giveKeyboardTo(const Control& control);

    Box thresholds();
    Box relays();
    Box lineSettings();

    ThresholdSwitches switches_{*this};
    ParameterOrigin origin_{*this, lblHerkunft};
};

}  // namespace vek
