#include "parameters/parameterfiles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <vector>

#include "parameters/ParamValueText.h"
#include "parameters/kdlparametervalue.h"
#include "parameters/knownparameters.h"
#include "parameters/parameterorders.h"
#include "parameters/parametertypes.h"
#include "platform/numberlocale.h"
#include "platform/profiletext.h"
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

std::optional<bool> booleanValue(std::string_view text) {
    constexpr std::array<std::pair<std::string_view, bool>, 4> words = {
        {{"false", false}, {"falsch", false}, {"true", true}, {"wahr", true}}};
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    for (const auto& [word, value] : words) {
        if (lower == word) {
            return value;
        }
    }
    const std::optional<double> number = wholeTextNumber(text);
    return number ? std::optional(*number != 0) : std::nullopt;
}

/// Only 0 and 1 are a state, and the words for them.
std::optional<bool> flagValue(std::string_view text) {
    const std::optional<double> number = leadingTextNumber(text);
    const double state = number ? std::nearbyint(*number) : 0;
    return number ? (state == 0 || state == 1 ? std::optional(state == 1) : std::nullopt)
                  : booleanValue(text);
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

/// Whether the value is one for its control, which then shows it. An empty one says nothing.
bool loadEntry(C& controls, const FileEntry& entry, const std::string& value) {
    if (TextBox* const* box = std::get_if<TextBox*>(&entry.control)) {
        (*box)->text = value;
        (*box)->unknown = false;
        return leadingTextNumber(value) || value == noValueText || value == kdlOffText;
    }
    if (CheckBox* const* flag = std::get_if<CheckBox*>(&entry.control)) {
        const std::optional<bool> set = flagValue(value);
        if (set) {
            controls.check(**flag, *set);
        }
        return set.has_value();
    }
    const std::optional<bool> set = booleanValue(value);
    if (set == true) {
        std::get<OptionButton*>(entry.control)->value = true;
    }
    return set.has_value();
}

/// Takes all values of the file, and forgets what it lacks. The keys whose values are none.
std::vector<std::string> loadEntries(const Program& program, C& controls, const ProfileSnapshot& file) {
    std::vector<std::string> notUnderstood;
    for (const ParameterRow* row : rowsInOrder(ParameterOrder::File, program.DeviceType)) {
        forget(controls, *row);
        for (const FileEntry& entry : entriesOf(controls, *row, program.DeviceType)) {
            const std::string value = file.value(entry.key, row->section);
            if (!value.empty() && !loadEntry(controls, entry, value)) {
                notUnderstood.push_back(std::string(row->section) + "/" + entry.key + "=" +
                                        withoutControls(value));
            }
        }
    }
    return notUnderstood;
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

/// What nobody knows is left out, and goes where an older set stands in the file.
std::vector<ProfileEntry> fileContent(const Program& program, C& controls) {
    std::vector<ProfileEntry> content = {{nameSection, nameKey, program.DeviceName}};
    for (const ParameterRow* row : rowsInOrder(ParameterOrder::File, program.DeviceType)) {
        const bool known = isKnown(controls, *row);
        for (const FileEntry& entry : entriesOf(controls, *row, program.DeviceType)) {
            content.push_back({row->section, entry.key, savedValue(entry), !known});
        }
    }
    return content;
}

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : ", ") + text;
    }
    return all;
}

void noteUnsaved(Program& program, const C& controls) {
    std::vector<std::string> names;
    for (const ParameterRow* row : rowsInOrder(ParameterOrder::File, program.DeviceType)) {
        if (!isKnown(controls, *row)) {
            names.emplace_back(row->name);
        }
    }
    if (!names.empty()) {
        showNote(program, "Nicht gespeichert, weil nicht gelesen: " + joined(names));
    }
}

/// As it is read back from a file: blanks and quotes around a value are not part of it there.
std::string nameInFile(const std::string& name) {
    std::string file;
    writeProfileText(file, {{nameSection, nameKey, name}});
    return readProfileText(file, nameSection, nameKey, file.size());
}

/// Nothing when the user wants none, and for a type that has no files, of which the user is told.
std::optional<std::string> chosenFile(Program& program, const FileDialog& CommonDialog1) {
    if (parameterType(program.DeviceType).model == withoutFiles) {
        showNote(program, "Für dieses Gerät gibt es keine Parameter-Datei.");
        return std::nullopt;
    }
    return program.desktop.chooseFile(CommonDialog1);
}

/// Tells the user when the file is not one of the connected device.
bool belongsToDevice(Program& program, const ProfileSnapshot& file) {
    const std::string name = file.value(nameKey, nameSection);
    if (!name.empty() && (name == program.DeviceName || name == nameInFile(program.DeviceName))) {
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
    const auto& model = parameterType(program.DeviceType).model;
    const auto path = chosenFile(program, {.title = "Parameter-Datei öffnen",
                                           .fileName = filePattern,
                                           .filterName = fileFilterName,
                                           .filePattern = filePattern,
                                           .purpose = FileDialog::Purpose::Open});
    if (!path) {
        return false;
    }
    program.ProfilePath = *path;
    const ProfileSnapshot file(program);
    if (!belongsToDevice(program, file)) {
        return false;
    }
    if (!model) {
        showError(program, "Parameter konnten nicht eingelesen werden");
        return false;
    }
    const std::vector<std::string> notUnderstood = loadEntries(program, controls, file);
    showNote(program, "Geräte-Parameter für " + std::string(*model) + " aus Parameter-Datei eingelesen.");
    if (!notUnderstood.empty()) {
        showNote(program, "Nicht verstanden: " + joined(notUnderstood));
    }
    return true;
}

void SaveParameterFile(Program& program, ParameterControls& controls) {
    const auto& model = parameterType(program.DeviceType).model;
    const auto path = chosenFile(program, {.title = "Parameter in Datei speichern",
                                           .fileName = parameterFileName(program.DeviceName),
                                           .filterName = fileFilterName,
                                           .filePattern = filePattern,
                                           .purpose = FileDialog::Purpose::Save});
    if (!path) {
        return;
    }
    program.ProfilePath = *path;
    if (!model || !program.profileFiles.write(*path, fileContent(program, controls))) {
        showError(program, "Parameter konnten nicht gesichert werden");
        return;
    }
    showNote(program, "Geräte-Parameter für " + std::string(*model) + " unter " + *path + " gespeichert.");
    noteUnsaved(program, controls);
}

}  // namespace vek
