#include <gtest/gtest.h>

#include "app/frmGeraeteadresse.h"
#include "app/frmModBus.h"
#include "kdl/kdldevice.h"
#include "support/hexbytes.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;

const std::string startCaption = "ModBus RTU / KDL - Monitor   V2.2.2";
const std::string failedCaption = "ModBus RTU - Monitor    V2.2.2            ";
const std::string foundCaption = "Modbus RTU - Monitor   V2.2.2            ";
const std::string outOfRange =
    "Fehler|stop|ok|Eingegebene Adresse ausserhalb des gültigen Bereiches (0, 3...90)";
const char* const nameReply = "03 03 14 76 65 6B 51 41 37 33 31 2D 4B 37 2D 32 00 00 00 00 00 00 00 B3 3A";

std::string notFound(const std::string& address) {
    return "Hinweis|info|ok|Gerät mit der Adresse " + address +
           " ist nicht am ModBus vorhanden bzw. falsche Schnittstelle oder falsches Protokoll eingestellt!";
}

std::string found(const std::string& name) {
    return "Hinweis|info|ok|Das Gerät " + name + " wurde gefunden!";
}

class AddressDialog : public testing::Test {
  protected:
    AddressDialog() {
        window.mnuGeräteadresse.click();
        test.configure();
        test.program.DeviceAddress = 5;
        test.program.DeviceName = "vekQB731-K7W-2";
        test.program.DeviceType = 1;
    }

    frmGeräteadresse& dialog() {
        return dynamic_cast<frmGeräteadresse&>(*test.program.windows.find("frmGeräteadresse"));
    }
    bool isOpen() { return test.program.windows.find("frmGeräteadresse") != nullptr; }

    void search(const std::string& address, const char* reply) {
        if (!isOpen()) {
            window.mnuGeräteadresse.click();
        }
        test.serial.peer = [this, reply](std::string_view) { test.serial.reply(fromHex(reply)); };
        dialog().cmbGeraeteAdresse.text = address;
        dialog().cmbGeraeteAdresse.selectedText = address;
        dialog().btnÜbernehmen.click();
        EXPECT_FALSE(isOpen()) << "closes after every press";
        EXPECT_FALSE(test.serial.isOpen());
        EXPECT_TRUE(window.Toolbar1.visible);
    }

    TestProgram test;
    frmModBus& window = test.open<frmModBus>();
};

TEST_F(AddressDialog, OffersTheAddressesOfTheBus) {
    EXPECT_EQ(dialog().caption.get(), "ModBusRTU / KDL - Geräteadresse");
    const std::vector<std::string> items = dialog().cmbGeraeteAdresse.items;
    ASSERT_EQ(items.size(), 246U);
    EXPECT_EQ(items.front(), "2");
    EXPECT_EQ(items.back(), "247");
    EXPECT_FALSE(window.Toolbar1.visible);
    dialog().closeBoxPressed();
    EXPECT_TRUE(window.Toolbar1.visible);
    EXPECT_EQ(test.program.DeviceAddress, 5);
}

TEST_F(AddressDialog, ADeviceThatAnswersIsTakenOver) {
    search("3", nameReply);
    EXPECT_EQ(test.desktop.boxes, Boxes{found("vekQA731-K7-2")});
    EXPECT_EQ(test.program.DeviceAddress, 3);
    EXPECT_EQ(test.program.DeviceName, "vekQA731-K7-2");
    EXPECT_EQ(test.program.DeviceType, 3);
    EXPECT_EQ(window.sbStatusBar_2.caption.get(), "ModBus-Geräteadresse =  3");
    EXPECT_EQ(window.caption.get(), foundCaption + "vekQA731-K7-2");
    EXPECT_EQ(test.serial.openings.size(), 1U);
    EXPECT_EQ(test.serial.openings[0].settings, "9600,e,8,1");
}

struct AddressCase {
    const char* text;
    const char* request;  ///< "" = refused
    int address;
};

TEST_F(AddressDialog, AddressesAreZeroOr2To247) {
    const AddressCase cases[] = {
        {"2", "02 03 26 48 00 0A 4E A0", 2},
        {"247", "F7 03 26 48 00 0A 5A 05", 247},
        {"12a", "0C 03 26 48 00 0A 4F 8E", 12},
        {" 12", "0C 03 26 48 00 0A 4F 8E", 12},
        {"", "00 03 26 48 00 0A 4F 42", 0},
        {"abc", "00 03 26 48 00 0A 4F 42", 0},
        {"0", "00 03 26 48 00 0A 4F 42", 0},
        {"1", "", 5},
        {"248", "", 5},
        {"-3", "", 5},
        {"1.9", "", 5},
        {"247.1", "", 5},
        {"99999999999999", "", 5},
    };
    for (const AddressCase& c : cases) {
        test.program.shell.caption = startCaption;
        test.program.DeviceAddress = 5;
        test.serial.written.clear();
        search(c.text, nameReply);
        EXPECT_EQ(test.program.DeviceAddress, c.address) << c.text;
        const bool refused = *c.request == '\0';
        EXPECT_EQ(window.caption.get() == startCaption, refused) << c.text;
        EXPECT_EQ(test.serial.written,
                  refused ? std::vector<Bytes>{} : std::vector<Bytes>{fromHex(c.request)})
            << c.text;
        EXPECT_EQ(test.desktop.takeBoxes(), Boxes{refused ? outOfRange : found("vekQA731-K7-2")}) << c.text;
    }
}

struct FailureCase {
    const char* reply;
    Boxes boxes;
};

TEST_F(AddressDialog, ADeviceThatDoesNotAnswerLeavesNoAddress) {
    const FailureCase cases[] = {
        {"", {crcDialog, notFound("12")}},
        {"03 83 02 61 31", {notFound("12")}},
        {"03 83 04 E1 33", {"MODBUS-Fehler|stop|ok|Interner Fehler", notFound("12")}},
        {"03 03 14 45 58 43 45 50 5F 32 00 00 00 00 00 00 00 00 00 00 00 00 00 1C 0A", {notFound("12")}},
    };
    for (const FailureCase& c : cases) {
        search("12", c.reply);
        EXPECT_EQ(test.desktop.takeBoxes(), c.boxes) << c.reply;
        EXPECT_EQ(test.program.DeviceAddress, 0) << c.reply;
        EXPECT_EQ(test.program.DeviceName, "vekQB731-K7W-2") << "of the last search that found one";
        EXPECT_EQ(test.program.DeviceType, 1);
        EXPECT_EQ(window.sbStatusBar_2.caption.get(), "ModBus-Geräteadresse =  12") << c.reply;
        EXPECT_EQ(window.caption.get(), failedCaption) << c.reply;
    }
    test.serial.openErrors = {{3, PortError::NotThere}};
    search("12", nameReply);
    EXPECT_EQ(test.desktop.boxes,
              (Boxes{"Fehler|-|ok+cancel|Schnittstelle nicht vorhanden", crcDialog, notFound("12")}));
}

TEST_F(AddressDialog, TheMessageNamesTheMarkedAddressElseTheTypedOne) {
    dialog().cmbGeraeteAdresse.text = "12";
    dialog().btnÜbernehmen.click();
    EXPECT_EQ(test.desktop.takeBoxes().back(), notFound("12"));
    window.mnuGeräteadresse.click();
    dialog().cmbGeraeteAdresse.text = "12";
    dialog().cmbGeraeteAdresse.selectedText = "1";
    dialog().btnÜbernehmen.click();
    EXPECT_EQ(test.desktop.takeBoxes().back(), notFound("1"));
}

TEST_F(AddressDialog, NamesOfAnyBytes) {
    search("3", "03 03 14 50 72 FC 66 20 80 0A 09 5A 00 00 00 00 00 00 00 00 00 00 00 B8 4D");
    EXPECT_EQ(test.desktop.takeBoxes(), Boxes{found("Prüf €\uFFFD\uFFFDZ")});
    EXPECT_EQ(window.caption.get(), foundCaption + "Prüf €\uFFFD\uFFFDZ");
    EXPECT_EQ(test.program.DeviceName, "Prüf €\n\tZ");
    EXPECT_EQ(test.program.DeviceType, 1) << "of every unknown name";
    search("3", "03 03 14 41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F 50 51 52 53 54 36 D8");
    EXPECT_EQ(test.program.DeviceName, "ABCDEFGHIJKLMNOPQRST");
}

TEST_F(AddressDialog, CancelInTheCrcDialogEndsTheProgramAtOnce) {
    test.desktop.answers = {MessageAnswer::Cancel};
    test.host.log.clear();
    dialog().cmbGeraeteAdresse.text = "12";
    EXPECT_TRUE(test.endsProgram([this] { dialog().btnÜbernehmen.click(); }));
    EXPECT_EQ(test.desktop.boxes, (Boxes{crcDialog, farewell}));
    EXPECT_EQ(test.host.log,
              (std::vector<std::string>{"-frmGeräteadresse", "-frmModBusTerminal", "-frmModBus"}));
    EXPECT_EQ(window.caption.get(), startCaption) << "nothing is shown any more";
    EXPECT_FALSE(test.serial.isOpen());
    EXPECT_EQ(test.serial.written.size(), 1U);
    EXPECT_EQ(test.profileFiles.writeCount, 8) << "those of the first start";
}

TEST_F(AddressDialog, DoesNothingWhileTheLineIsInUse) {
    const LineUse other(test.program);
    dialog().btnÜbernehmen.click();
    EXPECT_TRUE(isOpen());
    EXPECT_TRUE(test.serial.openings.empty());
    EXPECT_TRUE(test.desktop.boxes.empty());
}

class KdlAddressDialog : public AddressDialog {
  protected:
    KdlAddressDialog() { configureKdl(test.program); }

    void searchKdl(const std::string& address) {
        if (!isOpen()) {
            window.mnuGeräteadresse.click();
        }
        dialog().cmbGeraeteAdresse.text = address;
        dialog().btnÜbernehmen.click();
        EXPECT_FALSE(isOpen());
        EXPECT_FALSE(test.serial.isOpen());
        EXPECT_TRUE(window.Toolbar1.visible);
    }

    static std::string notOnTheBus(const std::string& address) {
        return "Hinweis|info|ok|Gerät mit der Adresse " + address +
               " ist nicht am KDL-Bus vorhanden bzw. falsche Schnittstelle oder falsches Protokoll "
               "eingestellt!";
    }

    KdlDevice device{test.serial};
    const std::string failedKdlCaption = "KDL - Monitor    V2.2.2            ";
    const std::string foundKdlCaption = "KDL - Monitor   V2.2.2            ";
};

struct KdlFoundCase {
    const char* address;
    const char* frame;  ///< of the first request
    int deviceAddress;
    Bytes variant;
    const char* name;
    int type;
};

TEST_F(KdlAddressDialog, ADeviceThatAnswersIsTakenOver) {
    const KdlFoundCase cases[] = {
        {"3", ":;003:IDNM?&dZs\r\n", 3, "731-K7-2", "vekQA731-K7-2", 3},
        {"247", ":;247:IDNM?&dZi\r\n", 247, " 731", "vekQA 731", 3},
        {"0", ":;000:IDNM?&dZv\r\n", 0, "", "vekQA", 1},
        {" 12", ":;012:IDNM?&dZs\r\n", 12, "\x80\n", "vekQA€\uFFFD", 1},
        {"12a", ":;12a:IDNM?&dZB\r\n", 12, " 731 ", "vekQA 731 ", 1},
    };
    for (const KdlFoundCase& c : cases) {
        device.answers = {{":IDNM?", "vekQA"}, {":IDNV?", c.variant}};
        test.serial.written.clear();
        searchKdl(c.address);
        ASSERT_EQ(test.serial.written.size(), 2U) << c.address;
        EXPECT_EQ(test.serial.written[0], c.frame);
        EXPECT_EQ(test.program.KdlAddressPrefix, std::string(c.frame).substr(0, 5));
        EXPECT_EQ(test.program.DeviceAddress, c.deviceAddress) << c.address;
        EXPECT_EQ(test.program.DeviceType, c.type) << c.address;
        EXPECT_EQ(test.desktop.takeBoxes(), Boxes{found(c.name)});
        EXPECT_EQ(window.caption.get(), foundKdlCaption + c.name);
        EXPECT_EQ(window.sbStatusBar_2.caption.get(), std::string("KDL-Geräteadresse = ") + c.address);
    }
    EXPECT_EQ(test.serial.openings.back().settings, "9600,e,7,1");
}

TEST_F(KdlAddressDialog, ADeviceThatAnswersHalfOrNotAtAllLeavesNoAddress) {
    const std::map<std::string, Bytes> cases[] = {{}, {{":IDNM?", "vekQA731"}}, {{":IDNV?", "-K7-2"}}};
    for (const auto& answers : cases) {
        device.answers = answers;
        searchKdl("12");
        EXPECT_EQ(device.takeCommands(), (std::vector<std::string>{":IDNM?", ":IDNV?"}));
        EXPECT_EQ(test.desktop.takeBoxes(), Boxes{notOnTheBus("12")});
        EXPECT_EQ(test.program.KdlAddressPrefix, "     ");
        EXPECT_EQ(test.program.DeviceName, "vekQB731-K7W-2") << "of the last search that found one";
        EXPECT_EQ(test.program.DeviceType, 1);
        EXPECT_EQ(window.caption.get(), failedKdlCaption);
        EXPECT_EQ(window.sbStatusBar_2.caption.get(), "KDL-Geräteadresse = 12");
    }
    test.serial.openErrors = {{3, PortError::NotPermitted}};
    searchKdl("12");
    EXPECT_EQ(test.desktop.takeBoxes(), Boxes{notOnTheBus("12")}) << "a port without a message of its own";

    window.mnuMonitor.click();
    EXPECT_EQ(test.desktop.boxes,
              Boxes{"Hinweis|info|ok|Zuerst die Schnittstellenparameter und die Geräteadresse einstellen"});
}

TEST_F(KdlAddressDialog, AddressesOutsideTheRangeAreNotSearched) {
    for (const char* text : {"1", "248", "-3", "1.9", "999"}) {
        searchKdl(text);
        EXPECT_EQ(test.desktop.takeBoxes(), Boxes{outOfRange}) << text;
        EXPECT_EQ(window.caption.get(), startCaption);
        EXPECT_EQ(test.program.KdlAddressPrefix, ":;003");
    }
    EXPECT_TRUE(test.serial.openings.empty());
}

TEST_F(KdlAddressDialog, ATextOfAnotherLengthEndsTheProgramWithoutAWord) {
    for (const char* text : {"", "0012", "12abc"}) {
        TestProgram other;
        auto& mainWindow = other.open<frmModBus>();
        configureKdl(other.program);
        mainWindow.mnuGeräteadresse.click();
        auto& opened = dynamic_cast<frmGeräteadresse&>(*other.program.windows.find("frmGeräteadresse"));
        opened.cmbGeraeteAdresse.text = std::string(text);
        EXPECT_TRUE(other.endsProgram([&] { opened.btnÜbernehmen.click(); })) << text;
        EXPECT_TRUE(other.serial.openings.empty());
        EXPECT_TRUE(other.desktop.boxes.empty());
        EXPECT_EQ(mainWindow.sbStatusBar_2.caption.get().find("KDL"), std::string::npos);
    }
}

TEST_F(KdlAddressDialog, ClicksAndTheCloseBoxWhileTheReplyIsAwaited) {
    device.answers = {{":IDNM?", "vekQA"}, {":IDNV?", " 731"}};
    frmGeräteadresse& opened = dialog();
    test.desktop.onEvents = [&] {
        opened.btnÜbernehmen.click();
        opened.closeBoxPressed();
    };
    searchKdl("3");
    EXPECT_EQ(device.commands.size(), 2U) << "one search";
    EXPECT_EQ(test.desktop.boxes, Boxes{found("vekQA 731")});
    EXPECT_FALSE(test.program.lineInUse);
    test.program.windows.collect();
}

TEST_F(KdlAddressDialog, TheProgramEndsWhileTheReplyIsAwaited) {
    device.onCommand = [&](const std::string&) { test.desktop.onEvents = [&] { window.closeBoxPressed(); }; };
    dialog().cmbGeraeteAdresse.text = "12";
    EXPECT_TRUE(test.endsProgram([this] { dialog().btnÜbernehmen.click(); }));
    EXPECT_EQ(device.commands.size(), 1U);
    EXPECT_EQ(window.caption.get(), startCaption);
    EXPECT_TRUE(test.desktop.boxes.empty());
}

}  // namespace
}  // namespace vek
