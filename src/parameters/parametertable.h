#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "parameters/parametercontrols.h"
#include "parameters/typeset.h"

/// What there is to know about each parameter of a device, in one row per parameter. Reading, the range
/// check, writing, files and the editor's captions all run from these rows; which rows an operation visits
/// and in which order stands in its list.
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

/// The number that some types know the parameter by: its register, or its number on the KDL bus.
struct TypedNumber {
    TypeSet types;
    std::uint16_t number;
};

/// Whole numbers that some types accept, both bounds included.
struct NumberRange {
    TypeSet types;
    int lowest;
    int highest;
    const char* caption = nullptr;  ///< how the editor names the range
};

/// The caption of one of the controls.
using CaptionOf = Property<std::string>& (*)(ParameterControls&);

/// A whole number, typed in a text box.
struct NumberParameter {
    TextBox ParameterControls::*box;
    const char* fileKey;
    std::vector<NumberRange> ranges;
    CaptionOf rangeCaption = nullptr;  ///< where the range's own caption goes; null when it has none
    const char* outOfRangeBegin = "";  ///< message: this, lowest, "...", highest, outOfRangeEnd
    const char* outOfRangeEnd = "";
};

/// 0 or 1, in a check box.
struct FlagParameter {
    CheckBox ParameterControls::*box;
    const char* invalidValue;  ///< message for any other value read
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
    std::vector<Option> options;
    const char* invalidValue;                 ///< message for a code without a button
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
    std::vector<TypedNumber> numbers{};      ///< of ":TRSH?" and ":CAN"; a type in none of them lacks it
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
    std::vector<TypedNumber> registers;  ///< a type that is in none of them lacks the parameter
    const char* section;                 ///< of the parameter file
    ParameterKind kind;
    const char* writeFailure;  ///< message when the device has not acknowledged
    NeedsImpedance needsImpedance = NeedsImpedance::Never;
    KdlColumns kdl = {};
};

const ParameterRow& parameterRow(ParameterField field);

/// The register that this type keeps the parameter in, which it must have.
std::uint16_t registerOf(const ParameterRow& row, std::uint8_t deviceType);

/// The range for this type; the parameter must have one.
const NumberRange& rangeOf(const NumberParameter& number, std::uint8_t deviceType);

/// Message for a number outside the range of this type.
std::string outOfRangeText(const NumberParameter& number, std::uint8_t deviceType);

/// Message when the device has not acknowledged what the controls of this parameter say.
const char* writeFailureOf(const ParameterControls& controls, const ParameterRow& row);

/// The option whose button is set; nullptr when none is.
const ChoiceParameter::Option* selectedOption(const ParameterControls& controls,
                                              const ChoiceParameter& choice);

/// The orders in which the operations visit the parameters.
std::span<const ParameterField> readOrder();
std::span<const ParameterField> writeOrder();
std::span<const ParameterField> fileOrder();
std::span<const ParameterField> kdlReadOrder();
std::span<const ParameterField> kdlWriteOrder();

/// Those parameters of an order that the type has.
std::vector<const ParameterRow*> rowsInOrder(std::span<const ParameterField> order, std::uint8_t deviceType);

/// Those parameters of an order that the type has on the KDL bus.
std::vector<const ParameterRow*> kdlRowsInOrder(std::span<const ParameterField> order,
                                                std::uint8_t deviceType);

}  // namespace vek
