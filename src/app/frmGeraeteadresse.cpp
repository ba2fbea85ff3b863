#include "app/frmGeraeteadresse.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include "app/portstatus.h"
#include "devicemodel/identification.h"
#include "kdl/KDL.h"
#include "modbus/ModBus.h"
#include "parameters/bussettings.h"
#include "platform/leadingnumber.h"
#include "platform/textcodec.h"

namespace vek {

namespace {

constexpr int lowestAddress = 2;
constexpr int highestAddress = 247;
constexpr std::size_t longestAddress = 3;  // digits

std::vector<std::string> addressList() {
    std::vector<std::string> list;
    for (int address = lowestAddress; address <= highestAddress; ++address) {
        list.push_back(std::to_string(address));
    }
    return list;
}

/// The address that a text begins with, one to three digits, with the blanks in front of them; nothing when
/// no device can have it.
std::optional<std::string> addressIn(std::string_view text) {
    const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
    const std::size_t end = std::min(text.find_first_not_of("0123456789", begin), text.size());
    const double value = leadingNumber(text.substr(begin, end - begin));
    const bool valid = value == 0 || (value >= lowestAddress && value <= highestAddress);
    const bool fits = begin < end && end - begin <= longestAddress;
    return valid && fits ? std::optional(std::string(text.substr(0, end))) : std::nullopt;
}

}  // namespace

frmGeräteadresse::frmGeräteadresse(Program& program) : ChildForm(program, "frmGeräteadresse") {
    caption = "ModBusRTU / KDL - Geräteadresse";
    cmbGeraeteAdresse.hint = "Geräteadresse auswählen";
    btnÜbernehmen.click = [this] { search(); };
}

void frmGeräteadresse::load() {
    ChildForm::load();
    cmbGeraeteAdresse.items = addressList();
}

void frmGeräteadresse::search() {
    const LineUse line(program_);
    if (!line) {
        return;
    }
    const auto address = addressIn(cmbGeraeteAdresse.text.get());
    if (!address) {
        showError(program_, addressRefused);
    } else if (program_.kdlActive()) {
        searchKdl(*address);
    } else {
        searchModbus(*address);
    }
    close();
}

void frmGeräteadresse::searchModbus(const std::string& address) {
    SetDeviceAddress(program_, address);
    const Bytes reply = ReadDeviceText(program_, 9800);
    // The number stands behind two blanks: one of the text, one in place of a sign.
    program_.shell.addressPanel = "ModBus-Geräteadresse =  " + std::to_string(program_.DeviceAddress);
    program_.shell.caption = searchCaption("ModBus RTU - Monitor    ", "");
    if (reply == crcTimeout || reply.find(exceptionPrefix) != Bytes::npos) {
        showNote(program_, notFoundText("ModBus"));
        program_.DeviceAddress = 0;
    } else {
        deviceFound("Modbus RTU - Monitor   ", utf8FromWindows1252(reply));
    }
}

void frmGeräteadresse::searchKdl(const std::string& address) {
    KdlSetAddress(program_, address);
    program_.shell.addressPanel = "KDL-Geräteadresse = " + address;
    const Bytes reply = KdlIdentify(program_);
    program_.shell.caption = searchCaption("KDL - Monitor    ", "");
    if (reply.find(kdlTimeOutError) != Bytes::npos) {
        showNote(program_, notFoundText("KDL-Bus"));
        program_.KdlAddressPrefix = blankKdlPrefix;
        program_.DeviceAddress = 0;
    } else {
        deviceFound("KDL - Monitor   ", utf8FromWindows1252(reply));
    }
}

void frmGeräteadresse::deviceFound(const std::string& title, const std::string& deviceName) {
    program_.DeviceName = deviceName;
    SetDeviceTypeFromName(program_, deviceName);
    showNote(program_, "Das Gerät " + withoutControls(deviceName) + " wurde gefunden!");
    program_.shell.caption = searchCaption(title, withoutControls(deviceName));
}

/// Names the address as it stands marked in the edit field; nothing is marked after typing, then it is the
/// whole text.
std::string frmGeräteadresse::notFoundText(const std::string& bus) const {
    const std::string& marked = cmbGeraeteAdresse.selectedText;
    return "Gerät mit der Adresse " + (marked.empty() ? cmbGeraeteAdresse.text.get() : marked) +
           " ist nicht am " + bus +
           " vorhanden bzw. falsche Schnittstelle oder falsches Protokoll eingestellt!";
}

Box frmGeräteadresse::layout() {
    return column({Label1, row({cmbGeraeteAdresse, stretch(), btnÜbernehmen})});
}

}  // namespace vek
