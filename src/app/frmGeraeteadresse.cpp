#include "app/frmGeraeteadresse.h"

#include <vector>

#include "app/portstatus.h"
#include "devicemodel/identification.h"
#include "kdl/KDL.h"
#include "modbus/ModBus.h"
#include "platform/leadingnumber.h"
#include "platform/textcodec.h"

namespace vek {

namespace {

constexpr int lowestAddress = 2;
constexpr int highestAddress = 247;

std::vector<std::string> addressList() {
    std::vector<std::string> list;
    for (int address = lowestAddress; address <= highestAddress; ++address) {
        list.push_back(std::to_string(address));
    }
    return list;
}

bool isBusAddress(double value) {
    return value == 0 || (value >= lowestAddress && value <= highestAddress);
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
    if (!isBusAddress(leadingNumber(cmbGeraeteAdresse.text.get()))) {
        showError(program_, "Eingegebene Adresse ausserhalb des gültigen Bereiches (0, 3...90)");
    } else if (program_.kdlActive()) {
        searchKdl();
    } else {
        searchModbus();
    }
    close();
}

void frmGeräteadresse::searchModbus() {
    SetDeviceAddress(program_, cmbGeraeteAdresse.text.get());
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

void frmGeräteadresse::searchKdl() {
    KdlSetAddress(program_, cmbGeraeteAdresse.text.get());
    program_.shell.addressPanel = "KDL-Geräteadresse = " + cmbGeraeteAdresse.text.get();
    const Bytes reply = KdlIdentify(program_);
    program_.shell.caption = searchCaption("KDL - Monitor    ", "");
    if (reply.find(kdlTimeOutError) != Bytes::npos) {
        showNote(program_, notFoundText("KDL-Bus"));
        program_.KdlAddressPrefix = blankKdlPrefix;
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
