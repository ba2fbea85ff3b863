#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>

#include "parameters/parametercontrols.h"
#include "parameters/typeset.h"

/// What there is to know about each parameter of a device, in one row per parameter. Reading, the range
/// check, writing, files and the editor's captions all run from these rows.
namespace vek {

enum class ParameterField : std::uint8_t {
    ZWarnung,
    ZAlarm,
    RWarnungAktiv,
    RAlarmAktiv,
    RWarnung,
    RAlarm,
    UnterSpgAktiv,
    UnterSpg,
    UeberSpgAktiv,
    UeberSpg,
    BattH,
    BattL,
    CrossH,
    CrossL,
    Fehlerspeicher,
    Relais1Arbeitsweise,
    Relais2Arbeitsweise,
    Adresse,
    BaudCode,
    Paritaet,
    Tein,
    Tan,   ///< K1 and K2 together
    Tan1,  ///< K1 alone
    Tan2,
    Tab,
    Selbsttest,
    ZeAktiv,
    Netzfrequenz,
    Kapazitaet,
    GenModus,
    Netzankopplung,
    StartCalTest,
    StopModus,
    AlarmRelais1,
    AlarmRelais2,
    Messpuls,
};
inline constexpr std::size_t parameterCount = 36;

/// Title of the message about a parameter that the device has not taken.
inline constexpr const char* writeErrorTitle = "Write Error";

/// Whole numbers that are accepted, both bounds included.
struct NumberRange {
    int lowest = 0;
    int highest = 0;
    const char* caption = nullptr;  ///< how the editor names the range
};

struct ParameterType;

/// The caption of one of the controls.
using CaptionOf = Property<std::string>& (*)(ParameterControls&);

/// A whole number, typed in a text box.
struct NumberParameter {
    TextBox ParameterControls::*box;
    const char* fileKey;
    NumberRange range{};
    NumberRange ParameterType::*rangeOfType = nullptr;  ///< in place of `range`, where each type has its own
    CaptionOf rangeCaption = nullptr;  ///< where the range's own caption goes; null when it has none
    const char* outOfRangeBegin = "";  ///< message: this, lowest, "...", highest, outOfRangeEnd
    const char* outOfRangeEnd = "";
};

/// 0 or 1, in a check box.
struct FlagParameter {
    CheckBox ParameterControls::*box;
    const char* fileKey = "WERT";
};

/// One of several codes, each with its option button.
struct ChoiceParameter {
    struct Option {
        OptionButton ParameterControls::*button;
        std::uint16_t code;
        const char* fileKey;
        const char* writeFailure = nullptr;      ///< in place of the parameter's own
        std::optional<std::uint16_t> kdlCode{};  ///< on the KDL bus, where it is another
    };
    std::span<const Option> options;
    const char* noneSelected = nullptr;       ///< message when there is nothing to write; null = none
    const char* noneSelectedTitle = nullptr;  ///< its title
};

/// One bit per alarm that switches a relay.
struct AlarmMaskParameter {
    AlarmBoxes ParameterControls::*boxes;
    std::size_t relay;  ///< 0 = K1, 1 = K2
};

using ParameterKind = std::variant<NumberParameter, FlagParameter, ChoiceParameter, AlarmMaskParameter>;

/// What the impedance measurement of types 1 and 2 decides about a parameter.
enum class NeedsImpedance : std::uint8_t {
    Never,
    ToWrite,         ///< written only while the measurement is on
    ToReadAndWrite,  ///< neither read nor written while it is off; its box then shows that
};

/// What a flag's reply on the KDL bus says.
enum class KdlFlag : std::uint8_t {
    ZeroOrOne,
    NotZero,  ///< set unless the number is 0: the threshold itself tells whether it is on
    NotOff,   ///< set unless the text is "off", likewise
};

/// How the KDL bus reads and writes a parameter. Messages stand here where they differ from those for Modbus.
struct KdlColumns {
    TypedNumbers numbers{};                  ///< of ":TRSH?" and ":CAN"; a type in none of them lacks it
    const char* query = nullptr;             ///< the request that reads a parameter without a number
    std::array<const char*, 2> orders = {};  ///< the requests that write it as 0 and as 1
    const char* invalidValue = nullptr;      ///< message for a value read that is none
    const char* outOfRange = nullptr;        ///< message for a number that is not written
    bool hasRange = true;                    ///< false: any number is written
    KdlFlag flag = KdlFlag::ZeroOrOne;
    /// Shows whether a threshold is on, where it can be off: it is then "off" in its box and 0 on the line.
    CheckBox ParameterControls::*onOff = nullptr;
    bool zeroIsOff = false;  ///< a box that counts as 0 says "off" as well
};

struct ParameterRow {
    ParameterField field;
    TypedNumbers registers;  ///< a type that is in none of them lacks the parameter
    const char* section;     ///< of the parameter file
    const char* name;        ///< as users are told of it
    ParameterKind kind;
    const char* invalidValue = nullptr;  ///< message for a value read that the parameter cannot have
    const char* writeFailure = nullptr;  ///< message when the device has not acknowledged
    NeedsImpedance needsImpedance = NeedsImpedance::Never;
    KdlColumns kdl = {};
};

/// All of them, in the order of ParameterField.
std::span<const ParameterRow, parameterCount> parameterRows();
const ParameterRow& parameterRow(ParameterField field);

/// The register that this type keeps the parameter in, which it must have.
std::uint16_t registerOf(const ParameterRow& row, std::uint8_t deviceType);

/// The range for this type; the parameter must have one.
const NumberRange& rangeOf(const NumberParameter& number, std::uint8_t deviceType);

/// Message for a number outside the range of this type.
std::string outOfRangeText(const NumberParameter& number, std::uint8_t deviceType);

}  // namespace vek
