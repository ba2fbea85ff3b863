#include "parameters/parameterfiles.h"

#include <QSettings>
#include <QString>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/diskprofilefiles.h"
#include "platform/temporaryfolder.h"
#include "report.h"
#include "samples.h"
#include "support/fakedesktop.h"
#include "support/fakeserial.h"

/// Saving and loading the parameter set of a device of type 1, beside QSettings with the same keys and values
/// in an INI file. Both put a file in place whole and have it on the disk before they return; both load files
/// that they have not seen before.
namespace vek::bench {

namespace {

namespace fs = std::filesystem;

constexpr int rounds = 300;
constexpr double microseconds = 1e6;

/// A program whose user always chooses the file named last, and its editor's controls.
class Editor {
  public:
    Editor() {
        program_.DeviceType = 1;
        program_.DeviceName = "vekQB731-K7-1";
        controls_.optSelfTest24h.value = true;
        controls_.optBaud9600.value = true;
        controls_.optEven.value = true;
        controls_.txtRWarnung.text = "100";
        controls_.txtRAlarm.text = "50";
    }

    void save(const std::string& path) {
        desktop_.files = {path};
        SaveParameterFile(program_, controls_);
        expect("gespeichert");
    }

    void load(const std::string& path) {
        desktop_.files = {path};
        LoadParameterFile(program_, controls_);
        expect("eingelesen");
    }

  private:
    void expect(const std::string& word) {
        const std::vector<std::string> boxes = desktop_.takeBoxes();
        if (boxes.size() != 1 || boxes.front().find(word) == std::string::npos) {
            throw std::runtime_error(boxes.empty() ? "no message" : boxes.front());
        }
    }

    FakeClock clock_;
    FakeDesktop desktop_{clock_};
    FakeFormHost host_;
    FakeSerial serial_{clock_};
    FakeFolders folders_;
    DiskProfileFiles profileFiles_;
    Program program_{{desktop_, host_, serial_, profileFiles_, folders_, {}}};
    ParameterControls controls_;
};

struct Entry {
    QString key;  ///< with its section
    QString value;
};

/// What stands in one of our files, for the other side.
std::vector<Entry> entriesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<Entry> entries;
    QString section;
    for (std::string line; std::getline(file, line);) {
        const QString text = QString::fromLatin1(line.c_str()).trimmed();
        if (text.startsWith(QLatin1Char('['))) {
            section = text.mid(1, text.size() - 2);
        } else {
            const auto equals = text.indexOf(QLatin1Char('='));
            entries.push_back({section + QLatin1Char('/') + text.left(equals), text.mid(equals + 1)});
        }
    }
    return entries;
}

void saveSettings(const std::string& path, const std::vector<Entry>& entries) {
    QSettings settings(QString::fromStdString(path), QSettings::IniFormat);
    for (const Entry& entry : entries) {
        settings.setValue(entry.key, entry.value);
    }
    settings.sync();
}

void loadSettings(const std::string& path, const std::vector<Entry>& entries) {
    const QSettings settings(QString::fromStdString(path), QSettings::IniFormat);
    for (const Entry& entry : entries) {
        if (settings.value(entry.key).toString() != entry.value) {
            throw std::runtime_error("QSettings lost " + entry.key.toStdString());
        }
    }
}

/// Names that no earlier sample has used.
class FreshNames {
  public:
    explicit FreshNames(const TemporaryFolder& folder) : folder_(folder) {}

    std::string next() { return folder_.file(std::to_string(++count_) + ".ini"); }

    std::string copyOf(const std::string& path) {
        std::string copy = next();
        fs::copy_file(path, copy);
        return copy;
    }

  private:
    const TemporaryFolder& folder_;
    int count_ = 0;
};

void measure() {
    const TemporaryFolder folder;
    FreshNames names(folder);
    Editor editor;
    const std::string ours = folder.file("ours.GPM");
    editor.save(ours);
    const std::vector<Entry> entries = entriesOf(ours);
    const std::string theirs = folder.file("theirs.ini");
    saveSettings(theirs, entries);

    const auto saved =
        interleavedMedians(rounds, {[&] { return secondsOf([&] { editor.save(ours); }); },
                                    [&] { return secondsOf([&] { saveSettings(theirs, entries); }); }});
    print({"parameter file: save over the old one", saved[0] * microseconds, saved[1] * microseconds, "us",
           "QSettings", 1.0});

    const auto loaded =
        interleavedMedians(rounds, {[&, path = std::string()]() mutable {
                                        path = names.copyOf(ours);
                                        return secondsOf([&] { editor.load(path); });
                                    },
                                    [&, path = std::string()]() mutable {
                                        path = names.copyOf(theirs);
                                        return secondsOf([&] { loadSettings(path, entries); });
                                    }});
    print(
        {"parameter file: load", loaded[0] * microseconds, loaded[1] * microseconds, "us", "QSettings", 1.0});
}

}  // namespace

}  // namespace vek::bench

int main() {
    return vek::bench::run(vek::bench::measure);
}
