#include "parameters/parameterfiles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "parameters/ParamValueText.h"
#include "parameters/alarmassignment.h"
#include "parameters/parametertable.h"
#include "parameters/unreadparameters.h"
#include "platform/textcodec.h"
#include "program/IOatINI.h"

namespace vek {

namespace {

using C = ParameterControls;

constexpr const char* filePattern = "*.GPM";
constexpr const char* fileFilterName = "Parameter-Dateien";
constexpr const char* nameSection = "ZEPHYRON";
constexpr const char* nameKey = "NAME";

/// The model without a parameter file.
constexpr std::uint8_t typeWithoutFile = 6;

struct ModelRow {
    std::uint8_t type;
    const char* name;
};

/// How the messages call the models that have parameter files.
constexpr std::array<ModelRow, 9> models = {{
    {1, "vekQB731"},
    {2, "vekQCC731"},
    {3, "vekQA731"},
    {4, "vekQD731"},
    {5, "vekQCC731QF"},
    {7, "vekQF731"},
    {8, "vekQG731"},
    {9, "vekQJK731"},
    {10, "vekQLN729"},
}};

const char* modelName(std::uint8_t deviceType) {
    const auto* const found = std::find_if(models.begin(), models.end(),
                                           [&](const ModelRow& row) { return row.type == deviceType; });
    return found == models.end() ? nullptr : found->name;
}

/// Bytes that no file name may have on one of the usual file systems; those above 127 belong to letters.
bool isForbidden(char c) {
    constexpr std::string_view reserved = "/\\:*?\"<>|";
    const auto byte = static_cast<unsigned char>(c);
    return byte < ' ' || byte == 0x7F || reserved.find(c) != std::string_view::npos;
}

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

void replaceAll(std::string& text, std::string_view what, std::string_view with) {
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
}

/// Whether some systems take a name with this part before its first dot for a device.
bool isDeviceName(std::string_view name) {
    constexpr std::array<std::string_view, 4> devices = {"CON", "PRN", "AUX", "NUL"};
    constexpr std::array<std::string_view, 2> numbered = {"COM", "LPT"};
    std::string stem(name.substr(0, name.find('.')));
    stem.erase(stem.find_last_not_of(' ') + 1);
    std::transform(stem.begin(), stem.end(), stem.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    const auto is = [&stem](std::string_view device) { return stem == device; };
    const auto isNumbered = [&stem](std::string_view device) {
        return stem.size() == device.size() + 1 && stem.starts_with(device) && stem.back() >= '0' &&
               stem.back() <= '9';
    };
    return std::any_of(devices.begin(), devices.end(), is) ||
           std::any_of(numbered.begin(), numbered.end(), isNumbered);
}

std::string chosenFile(Program& program, const FileDialog& dialog) {
    return program.desktop.chooseFile(dialog).value_or(parameterFileName(program.DeviceName));
}

std::optional<bool> booleanValue(std::string_view text) {
    constexpr std::array<std::string_view, 2> words = {"false", "true"};
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    const auto* const word = std::find(words.begin(), words.end(), lower);
    if (word != words.end()) {
        return word != words.begin();
    }
    const std::optional<double> number = wholeTextNumber(text);
    return number ? std::optional(*number != 0) : std::nullopt;
}

/// Sets the controls of one parameter from the file.
struct LoadKind {
    const ProfileSnapshot& file;
    C& controls;
    const ParameterRow& row;
    std::uint8_t deviceType;

    std::string value(const char* key) const { return file.value(key, row.section); }

    /// Only 0 and 1 are a state; a missing value counts as 0.
    void loadFlag(CheckBox& box, const char* key) const {
        const double state = std::nearbyint(ParamValueText(value(key)));
        if (state == 0 || state == 1) {
            controls.check(box, state == 1);
        }
    }

    void operator()(const NumberParameter& number) const {
        (controls.*number.box).text = value(number.fileKey);
    }

    void operator()(const FlagParameter& flag) const { loadFlag(controls.*flag.box, flag.fileKey); }

    void operator()(const ChoiceParameter& choice) const {
        for (const ChoiceParameter::Option& option : choice.options) {
            if (const auto set = booleanValue(value(option.fileKey))) {
                (controls.*option.button).value = *set;
            }
        }
    }

    void operator()(const AlarmMaskParameter& mask) const {
        for (std::size_t number = 1; number <= AlarmBoxes::count; ++number) {
            loadFlag((controls.*mask.boxes)[number], alarmMeaning(deviceType, number).fileKey);
        }
    }
};

const char* flagText(bool set) {
    return set ? "1" : "0";
}

/// Adds the entries of one parameter.
struct SaveKind {
    const C& controls;
    const ParameterRow& row;
    std::uint8_t deviceType;
    std::vector<ProfileEntry>& entries;

    void add(const char* key, const std::string& value) const {
        entries.push_back({row.section, key, value});
    }

    void operator()(const NumberParameter& number) const { add(number.fileKey, (controls.*number.box).text); }

    void operator()(const FlagParameter& flag) const {
        add(flag.fileKey, flagText((controls.*flag.box).value));
    }

    void operator()(const ChoiceParameter& choice) const {
        for (const ChoiceParameter::Option& option : choice.options) {
            add(option.fileKey, (controls.*option.button).value ? "True" : "False");
        }
    }

    void operator()(const AlarmMaskParameter& mask) const {
        for (std::size_t number = 1; number <= AlarmBoxes::count; ++number) {
            add(alarmMeaning(deviceType, number).fileKey, flagText((controls.*mask.boxes)[number].value));
        }
    }
};

std::vector<ProfileEntry> fileEntries(const Program& program, const C& controls) {
    std::vector<ProfileEntry> entries = {{nameSection, nameKey, program.DeviceName}};
    for (const ParameterRow* row : rowsInOrder(fileOrder(), program.DeviceType)) {
        std::visit(SaveKind{controls, *row, program.DeviceType, entries}, row->kind);
    }
    return entries;
}

/// Whether no parameter of the device shows a 0 that nobody has read. From a file it would go to a device as
/// if it were meant.
bool isWhole(const Program& program, const C& controls) {
    const auto rows = rowsInOrder(fileOrder(), program.DeviceType);
    return std::none_of(rows.begin(), rows.end(), [&](const ParameterRow* row) {
        return showsUnread(controls, *row) && !controls.lacking.test(static_cast<std::size_t>(row->field));
    });
}

/// Tells the user when the file is not one of the connected device.
bool belongsToDevice(Program& program, const ProfileSnapshot& file) {
    const std::string name = file.value(nameKey, nameSection);
    if (name == program.DeviceName) {
        return true;
    }
    showError(program, "Parameter-Datei (" + withoutControls(name) +
                           ") ist nicht für das angeschlossenem Gerät (" +
                           withoutControls(program.DeviceName) + ") geeignet");
    return false;
}

}  // namespace

std::string parameterFileName(std::string_view deviceName) {
    std::string name = withoutControls(deviceName);
    replaceAll(name, replacementCharacter, "_");
    std::replace_if(name.begin(), name.end(), isForbidden, '_');
    replaceAll(name, "..", "__");
    if (name.ends_with('.')) {
        name.back() = '_';
    }
    if (name.empty() || isDeviceName(name)) {
        name.insert(0, "_");
    }
    return name + ".GPM";
}

bool LoadParameterFile(Program& program, ParameterControls& controls) {
    program.ProfilePath = chosenFile(program, {.title = "Parameter-Datei öffnen",
                                               .fileName = filePattern,
                                               .filterName = fileFilterName,
                                               .filePattern = filePattern,
                                               .purpose = FileDialog::Purpose::Open});
    const ProfileSnapshot file(program);
    if (!belongsToDevice(program, file) || program.DeviceType == typeWithoutFile) {
        return false;
    }
    const char* model = modelName(program.DeviceType);
    if (model == nullptr) {
        showError(program, "Parameter konnten nicht eingelesen werden");
        return false;
    }
    for (const ParameterRow* row : rowsInOrder(fileOrder(), program.DeviceType)) {
        std::visit(LoadKind{file, controls, *row, program.DeviceType}, row->kind);
    }
    controls.unread.reset();
    showNote(program, std::string("Geräte-Parameter für ") + model + " aus Parameter-Datei eingelesen.");
    return true;
}

void SaveParameterFile(Program& program, const ParameterControls& controls) {
    program.ProfilePath = chosenFile(program, {.title = "Parameter in Datei speichern",
                                               .fileName = parameterFileName(program.DeviceName),
                                               .filterName = fileFilterName,
                                               .filePattern = filePattern,
                                               .purpose = FileDialog::Purpose::Save});
    if (program.DeviceType == typeWithoutFile) {
        return;
    }
    const char* model = modelName(program.DeviceType);
    if (model == nullptr || !isWhole(program, controls) ||
        !program.profileFiles.write(program.ProfilePath, fileEntries(program, controls))) {
        showError(program, "Parameter konnten nicht gesichert werden");
        return;
    }
    showNote(program, std::string("Geräte-Parameter für ") + model + " unter " + program.ProfilePath +
                          " gespeichert.");
}

}  // namespace vek
