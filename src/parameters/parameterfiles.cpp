#include "parameters/parameterfiles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "parameters/ParamValueText.h"
#include "parameters/parameterorders.h"
#include "parameters/parametertypes.h"
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
constexpr std::string_view withoutFiles;

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

std::string chosenFile(Program& program, const FileDialog& CommonDialog1) {
    return program.desktop.chooseFile(CommonDialog1).value_or(parameterFileName(program.DeviceName));
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

/// One entry of a file and the control that it keeps.
struct FileEntry {
    const char* key;
    std::variant<TextBox*, CheckBox*, OptionButton*> control;
};

std::vector<FileEntry> entriesOf(C& controls, const ParameterRow& row, std::uint8_t deviceType) {
    if (const auto* number = std::get_if<NumberParameter>(&row.kind)) {
        return {{number->fileKey, &(controls.*number->box)}};
    }
    if (const auto* flag = std::get_if<FlagParameter>(&row.kind)) {
        return {{flag->fileKey, &(controls.*flag->box)}};
    }
    std::vector<FileEntry> entries;
    if (const auto* choice = std::get_if<ChoiceParameter>(&row.kind)) {
        for (const ChoiceParameter::Option& option : choice->options) {
            entries.push_back({option.fileKey, &(controls.*option.button)});
        }
    } else {
        AlarmBoxes& boxes = controls.*std::get<AlarmMaskParameter>(row.kind).boxes;
        const AlarmAssignment& meanings = *parameterType(deviceType).alarms;
        for (std::size_t number = 1; number <= AlarmBoxes::count; ++number) {
            entries.push_back({meanings.at(number - 1).fileKey, &boxes[number]});
        }
    }
    return entries;
}

/// Only 0 and 1 are a state; a missing value counts as 0.
void loadFlag(C& controls, CheckBox& box, std::string_view value) {
    const double state = std::nearbyint(ParamValueText(value));
    if (state == 0 || state == 1) {
        controls.check(box, state == 1);
    }
}

void loadEntry(C& controls, const FileEntry& entry, const std::string& value) {
    if (TextBox* const* box = std::get_if<TextBox*>(&entry.control)) {
        (*box)->text = value;
    } else if (CheckBox* const* flag = std::get_if<CheckBox*>(&entry.control)) {
        loadFlag(controls, **flag, value);
    } else if (const auto set = booleanValue(value)) {
        std::get<OptionButton*>(entry.control)->value = *set;
    }
}

std::string savedValue(const FileEntry& entry) {
    if (TextBox* const* box = std::get_if<TextBox*>(&entry.control)) {
        return (*box)->text;
    }
    if (CheckBox* const* flag = std::get_if<CheckBox*>(&entry.control)) {
        return (*flag)->value ? "1" : "0";
    }
    return std::get<OptionButton*>(entry.control)->value ? "True" : "False";
}

std::vector<ProfileEntry> fileContent(const Program& program, C& controls) {
    std::vector<ProfileEntry> content = {{nameSection, nameKey, program.DeviceName}};
    for (const ParameterRow* row : rowsInOrder(ParameterOrder::File, program.DeviceType)) {
        for (const FileEntry& entry : entriesOf(controls, *row, program.DeviceType)) {
            content.push_back({row->section, entry.key, savedValue(entry)});
        }
    }
    return content;
}

/// Whether no parameter of the device shows a 0 that nobody has read. From a file it would go to a device as
/// if it were meant.
bool isWhole(const Program& program, const C& controls) {
    const auto rows = rowsInOrder(ParameterOrder::File, program.DeviceType);
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
    const auto& model = parameterType(program.DeviceType).model;
    if (!belongsToDevice(program, file) || model == withoutFiles) {
        return false;
    }
    if (!model) {
        showError(program, "Parameter konnten nicht eingelesen werden");
        return false;
    }
    for (const ParameterRow* row : rowsInOrder(ParameterOrder::File, program.DeviceType)) {
        for (const FileEntry& entry : entriesOf(controls, *row, program.DeviceType)) {
            loadEntry(controls, entry, file.value(entry.key, row->section));
        }
    }
    controls.unread.reset();
    showNote(program, "Geräte-Parameter für " + std::string(*model) + " aus Parameter-Datei eingelesen.");
    return true;
}

void SaveParameterFile(Program& program, ParameterControls& controls) {
    program.ProfilePath = chosenFile(program, {.title = "Parameter in Datei speichern",
                                               .fileName = parameterFileName(program.DeviceName),
                                               .filterName = fileFilterName,
                                               .filePattern = filePattern,
                                               .purpose = FileDialog::Purpose::Save});
    const auto& model = parameterType(program.DeviceType).model;
    if (model == withoutFiles) {
        return;
    }
    if (!model || !isWhole(program, controls) ||
        !program.profileFiles.write(program.ProfilePath, fileContent(program, controls))) {
        showError(program, "Parameter konnten nicht gesichert werden");
        return;
    }
    showNote(program, "Geräte-Parameter für " + std::string(*model) + " unter " + program.ProfilePath +
                          " gespeichert.");
}

}  // namespace vek
