#pragma once

#include <cstddef>
#include <deque>
#include <string>

#include "platform/controls.h"

namespace vek {

/// The alarms that switch one relay, number 1 to 11; the boxes are named `prefix01` to `prefix11`.
class AlarmBoxes {
  public:
    static constexpr std::size_t count = 11;

    explicit AlarmBoxes(const std::string& prefix) {
        for (std::size_t number = 1; number <= count; ++number) {
            boxes_.emplace_back(prefix + (number < 10 ? "0" : "") + std::to_string(number), "-");
        }
    }

    CheckBox& operator[](std::size_t number) { return boxes_.at(number - 1); }
    const CheckBox& operator[](std::size_t number) const { return boxes_.at(number - 1); }
    auto begin() { return boxes_.begin(); }
    auto end() { return boxes_.end(); }
    auto begin() const { return boxes_.begin(); }
    auto end() const { return boxes_.end(); }

  private:
    std::deque<CheckBox> boxes_;
};

/// The frames and inputs of the parameter editor: what reading fills, writing sends and files keep.
struct ParameterControls {
    ParameterControls();
    ParameterControls(const ParameterControls&) = delete;
    ParameterControls& operator=(const ParameterControls&) = delete;

    /// Sets a check box as the user would; that of the impedance measurement takes its frames along.
    void check(CheckBox& box, bool checked);

    /// Enables and shows what belongs to the impedance measurement while it is on.
    void followImpedanceMeasurement();

    Frame Frame1{"Frame1", "Relais 1"};
    OptionButton optR1no{Frame1, "optR1no", "Arbeitsstrom (n.o.)"};
    OptionButton optR1nc{Frame1, "optR1nc", "Ruhestrom (n.c.)"};

    Frame Frame2{"Frame2", "Relais 2"};
    OptionButton optR2no{Frame2, "optR2no", "Arbeitsstrom (n.o.)"};
    OptionButton optR2nc{Frame2, "optR2nc", "Ruhestrom (n.c.)"};

    Frame Frame3{"Frame3", "Ansprechwert R-Iso"};
    CheckBox chkRWarnung{"chkRWarnung", ""};
    Label lblRWarnung{"lblRWarnung"};
    TextBox txtRWarnung{"txtRWarnung"};
    CheckBox chkRAlarm{"chkRAlarm", "Alarm         [1...495 k]"};
    Label lblRAlarm{"lblRAlarm"};
    TextBox txtRAlarm{"txtRAlarm"};

    Frame Frame4{"Frame4", "Ansprechwert Impedanz"};
    Label lblZWarnung{"lblZWarnung", "Vorwarnung"};
    TextBox txtZWarnung{"txtZWarnung"};
    Label lblZAlarm{"lblZAlarm", "Alarm"};
    TextBox txtZAlarm{"txtZAlarm"};

    Frame Frame5{"Frame5", "Ansprechwert Unter-/Überspannung"};
    CheckBox chkUnterspg{"chkUnterspg", "Unterspannung"};
    TextBox txtUnterSpg{"txtUnterSpg"};
    CheckBox chkUeberSpg{"chkUeberSpg", "Überspannung"};
    TextBox txtUeberSpg{"txtUeberSpg"};

    Frame Frame6{"Frame6", "Fehlerspeicher"};
    CheckBox chkMemory{"chkMemory", "Ein / Aus"};

    Frame Frame7{"Frame7", "Geräte-Busadresse"};
    Label lblAdresse{"lblAdresse", "Adresse    [0, 3...90]"};
    TextBox txtAdresse{"txtAdresse"};

    Frame Frame8{"Frame8", "Baudrate"};
    OptionButton optBaud0{Frame8, "optBaud0", "KDL      -> 9600 bit/s"};
    OptionButton optBaud1200{Frame8, "optBaud1200", "Modbus -> 1200 bit/s"};
    OptionButton optBaud2400{Frame8, "optBaud2400", "Modbus -> 2400 bit/s"};
    OptionButton optBaud4800{Frame8, "optBaud4800", "Modbus -> 4800 bit/s"};
    OptionButton optBaud9600{Frame8, "optBaud9600", "Modbus -> 9600 bit/s"};
    OptionButton optBaud19200{Frame8, "optBaud19200", "Modbus -> 19200 bit/s"};
    OptionButton optBaud38400{Frame8, "optBaud38400", "Modbus -> 38400 bit/s"};
    OptionButton optBaud57600{Frame8, "optBaud57600", "Modbus -> 57600 bit/s"};
    OptionButton optBaud115200{Frame8, "optBaud115200", "Modbus -> 115200 bit/s"};

    Frame Frame9{"Frame9", "Parität"};
    OptionButton optNo{Frame9, "optNo", "8, N, 1"};
    OptionButton optOdd{Frame9, "optOdd", "8, O, 1"};
    OptionButton optEven{Frame9, "optEven", "8, E, 1"};

    Frame Frame10{"Frame10", "Einschalt/Ansprech/Abfallverzögerung"};
    Label lblTein{"lblTein", "Einschaltverzögerung [0...10 s]"};
    TextBox txtTein{"txtTein"};
    Label lblTan{"lblTan", "Ansprechverzögerung [0...99 s]"};
    TextBox txtTan{"txtTan"};
    Label Label1{"Label1", "K1"};
    TextBox txtTan1{"txtTan1"};
    Label Label2{"Label2", "K2"};
    TextBox txtTan2{"txtTan2"};
    Label lblTab{"lblTab", "Abfallverzögerung      [0...99 s]"};
    TextBox txtTab{"txtTab"};

    Frame Frame11{"Frame11", "Impedanzmessung"};
    CheckBox chkZe{"chkZe", "Ein / Aus"};

    Frame Frame12{"Frame12", "Netzableitkapazität"};
    OptionButton opt50Hz_1uF{Frame12, "opt50Hz_1uF", "50 Hz"};
    OptionButton opt60Hz_10uF{Frame12, "opt60Hz_10uF", "60 Hz"};
    OptionButton opt20uF{Frame12, "opt20uF", "20 µF"};
    OptionButton opt30uF{Frame12, "opt30uF", "30 µF"};
    OptionButton opt40uF{Frame12, "opt40uF", "40 µF"};
    OptionButton opt50uF{Frame12, "opt50uF", "50 µF"};

    Frame Frame13{"Frame13", "Netzanschluss Überwachung"};
    CheckBox chkAnkop{"chkAnkop", "Ein / Aus"};

    Frame Frame14{"Frame14", "Start mit CAL + TEST"};
    CheckBox chkCalTest{"chkCalTest", "Ein / Aus"};

    Frame Frame15{"Frame15", "Stop-Modus über Bus"};
    CheckBox chkStopMod{"chkStopMod", "Gerät aktiviert / deaktiviert"};

    Frame Frame16{"Frame16", "Alarmzuordnung Relais 1"};
    AlarmBoxes chkR1_Bit{"chkR1_Bit_"};

    Frame Frame17{"Frame17", "Alarmzuordnung Relais 2"};
    AlarmBoxes chkR2_Bit{"chkR2_Bit_"};

    Frame Frame18{"Frame18", "Selbsttest Intervall"};
    OptionButton optSelfTestOff{Frame18, "optSelfTestOff", "Aus"};
    OptionButton optSelfTest1h{Frame18, "optSelfTest1h", "1h"};
    OptionButton optSelfTest24h{Frame18, "optSelfTest24h", "24h"};

    Frame Frame19{"Frame19", "Batteriesollwert"};
    Label lblBattH{"lblBattH", "Obere Grenze  [UBattL...500 V]"};
    TextBox txtBattH{"txtBattH"};
    Label lblBattL{"lblBattL", "Untere Grenze [3 V...UBattH]"};
    TextBox txtBattL{"txtBattL"};

    Frame Frame20{"Frame20", "Crossfault"};
    Label lblCrossH{"lblCrossH", "Obere Grenze [UCrossL...500 V]"};
    TextBox txtCrossH{"txtCrossH"};
    Label lblCrossL{"lblCrossL", "Untere Grenze [3 V...UCrossH]"};
    TextBox txtCrossL{"txtCrossL"};

    Frame Frame21{"Frame21", "Messpuls Periodendauer"};
    OptionButton optAuto_08s{Frame21, "optAuto_08s", "auto 0,8 s"};
    OptionButton optAuto_2s{Frame21, "optAuto_2s", "auto 2,0 s"};
    OptionButton opt_08s{Frame21, "opt_08s", "0,8 s"};
    OptionButton opt_2s{Frame21, "opt_2s", "2,0 s"};
    OptionButton opt_8s{Frame21, "opt_8s", "8,0 s"};

    Frame Frame22{"Frame22", "vekQLN - Modus"};
    OptionButton optGENmode{Frame22, "optGENmode", "GEN"};
    OptionButton optDCmode{Frame22, "optDCmode", "DC"};

    ProgressBar prgFortschritt{"prgFortschritt"};  ///< parameters done of the last reading or writing
    Label lblHerkunft{"lblHerkunft"};              ///< where the values come from
};

}  // namespace vek
