#include <gtest/gtest.h>

#include "app/frmGeraeteadresse.h"
#include "app/frmModBus.h"
#include "kdl/kdldevice.h"
#include "modbus/modbusframe.h"
#include "support/hexbytes.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;

const std::string startCaption = "ModBus RTU / KDL - Monitor   V2.2.2";
const std::string outOfRange =
    "Fehler|stop|ok|Eingegebene Adresse ausserhalb des gültigen Bereiches (0, 3...90)";
const char* const nameReply = "03 03 14 76 65 6B 51 41 37 33 31 2D 4B 37 2D 32 00 00 00 00 00 00 00 B3 3A";

std::string notFound(const std::string& address, const std::string& bus) {
    return "Hinweis|info|ok|Gerät mit der Adresse " + address + " ist nicht am " + bus +
           " vorhanden bzw. falsche Schnittstelle oder falsches Protokoll eingestellt!";
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

    void search(const std::string& address, const std::string& marked = "") {
        if (!isOpen()) {
            window.mnuGeräteadresse.click();
        }
        test.program.shell.caption = startCaption;
        test.serial.written.clear();
        dialog().cmbGeraeteAdresse.text = address;
        dialog().cmbGeraeteAdresse.selectedText = marked;
        dialog().btnÜbernehmen.click();
        EXPECT_FALSE(isOpen()) << "closes after every press";
        EXPECT_FALSE(test.serial.isOpen() || test.program.lineInUse);
        EXPECT_TRUE(window.Toolbar1.visible);
    }

    /// Has the device that is asked send this reply, whose address and CRC become its own.
    void answerWith(const std::string& hex) {
        test.serial.peer = [this, reply = fromHex(hex)](std::string_view request) {
            const Bytes sent =
                reply.empty() ? reply : Bytes(request.substr(0, 1)) + reply.substr(1, reply.size() - 3);
            test.serial.reply(sent.empty() ? sent : sent + ComputeCrc(sent));
        };
    }

    /// What the main window tells: caption and address panel.
    std::string shown() { return window.caption.get() + "|" + window.sbStatusBar_2.caption.get(); }

    /// A failed search leaves the device of the last one that found one.
    void expectOldDevice() {
        EXPECT_EQ(test.program.DeviceName, "vekQB731-K7W-2");
        EXPECT_EQ(test.program.DeviceType, 1);
    }

    TestProgram test;
    frmModBus& window = test.open<frmModBus>();
};

TEST_F(AddressDialog, OffersTheAddressesOfTheBus) {
    const std::vector<std::string> items = dialog().cmbGeraeteAdresse.items;
    ASSERT_EQ(items.size(), 246U);
    EXPECT_EQ(items.front(), "2");
    EXPECT_EQ(items.back(), "247");
    EXPECT_FALSE(window.Toolbar1.visible);
    {
        const LineUse other(test.program);
        dialog().btnÜbernehmen.click();
        EXPECT_TRUE(isOpen()) << "does nothing while the line is in use";
    }
    dialog().closeBoxPressed();
    EXPECT_TRUE(window.Toolbar1.visible);
    EXPECT_EQ(test.program.DeviceAddress, 5);
    EXPECT_TRUE(test.serial.openings.empty() && test.desktop.boxes.empty());
}

TEST_F(AddressDialog, ADeviceThatAnswersIsTakenOver) {
    answerWith(nameReply);
    search("3");
    EXPECT_EQ(test.desktop.takeBoxes(), Boxes{found("vekQA731-K7-2")});
    EXPECT_EQ(test.program.DeviceName, "vekQA731-K7-2");
    EXPECT_EQ(test.program.DeviceType, 3);
    EXPECT_EQ(shown(), "Modbus RTU - Monitor   V2.2.2            vekQA731-K7-2|ModBus-Geräteadresse =  3");
    EXPECT_EQ(test.serial.openings.back().settings, "9600,e,8,1");

    // A name of any bytes.
    answerWith("03 03 14 50 72 FC 66 20 80 0A 09 5A 00 00 00 00 00 00 00 00 00 00 00 B8 4D");
    search("3");
    EXPECT_EQ(test.desktop.takeBoxes(), Boxes{found("Prüf €\uFFFD\uFFFDZ")});
    EXPECT_EQ(window.caption.get(), "Modbus RTU - Monitor   V2.2.2            Prüf €\uFFFD\uFFFDZ");
    EXPECT_EQ(test.program.DeviceName, "Prüf €\n\tZ");
    EXPECT_EQ(test.program.DeviceType, 1) << "of every unknown name";
}

TEST_F(AddressDialog, AddressesAreZeroOr2To247) {
    const std::tuple<const char*, const char*, int> cases[] = {{"2", "02 03 26 48 00 0A 4E A0", 2},
                                                               {"247", "F7 03 26 48 00 0A 5A 05", 247},
                                                               {"12a", "0C 03 26 48 00 0A 4F 8E", 12},
                                                               {"abc", "00 03 26 48 00 0A 4F 42", 0}};
    answerWith(nameReply);
    for (const auto& [text, request, address] : cases) {
        search(text);
        EXPECT_EQ(test.program.DeviceAddress, address) << text;
        EXPECT_EQ(test.serial.written, std::vector<Bytes>{fromHex(request)}) << text;
        EXPECT_EQ(test.desktop.takeBoxes(), Boxes{found("vekQA731-K7-2")}) << text;
    }
    test.configureKdl();
    for (const char* frameFormat : {",e,8,1", kdlFrameFormat}) {
        test.program.FrameFormat = frameFormat;
        for (const char* text : {"1", "248", "-3", "1.9", "247.1", "99999999999999"}) {
            search(text);
            EXPECT_EQ(test.desktop.takeBoxes(), Boxes{outOfRange}) << text;
            EXPECT_TRUE(test.serial.written.empty()) << text;
            EXPECT_EQ(window.caption.get(), startCaption);
            EXPECT_EQ(test.program.KdlAddressPrefix, ":;003");
        }
    }
}

TEST_F(AddressDialog, ADeviceThatDoesNotAnswerLeavesNoAddress) {
    const std::string missing = notFound("12", "ModBus");
    const std::pair<const char*, Boxes> cases[] = {
        {"", {crcDialog, missing}},
        {"03 83 02 61 31", {missing}},
        {"03 83 04 E1 33", {"MODBUS-Fehler|stop|ok|Interner Fehler", missing}},
        {"03 03 14 45 58 43 45 50 5F 32 00 00 00 00 00 00 00 00 00 00 00 00 00 1C 0A", {missing}},
    };
    for (const auto& [reply, boxes] : cases) {
        answerWith(reply);
        search("12");
        EXPECT_EQ(test.desktop.takeBoxes(), boxes) << reply;
        EXPECT_EQ(test.program.DeviceAddress, 0) << reply;
        EXPECT_EQ(shown(), "ModBus RTU - Monitor    V2.2.2            |ModBus-Geräteadresse =  12") << reply;
        expectOldDevice();
    }
    search("12", "1");
    EXPECT_EQ(test.desktop.takeBoxes().back(), notFound("1", "ModBus")) << "names the marked text";
    test.serial.openErrors = {{3, PortError::NotThere}};
    search("12");
    EXPECT_EQ(test.desktop.boxes,
              (Boxes{"Fehler|-|ok+cancel|Schnittstelle nicht vorhanden", crcDialog, missing}));
}

class KdlAddressDialog : public AddressDialog {
  protected:
    KdlAddressDialog() { test.configureKdl(); }
    KdlDevice device{test.serial};
};

TEST_F(KdlAddressDialog, ADeviceThatAnswersIsTakenOver) {
    // Address, the first request, the address kept; the device's variant, its name and type.
    const std::tuple<std::string, std::string, int, const char*, const char*, int> cases[] = {
        {"3", ":;003:IDNM?&dZs\r\n", 3, "731-K7-2", "vekQA731-K7-2", 3},
        {"0", ":;000:IDNM?&dZv\r\n", 0, "", "vekQA", 1},
        {" 12", ":;012:IDNM?&dZs\r\n", 12, "\x80\n", "vekQA€\uFFFD", 1},
        {"12a", ":;12a:IDNM?&dZB\r\n", 12, " 731 ", "vekQA 731 ", 1}};
    for (const auto& [address, frame, number, variant, name, type] : cases) {
        // Clicks while the reply is awaited do nothing.
        test.desktop.onEvents = [&] {
            if (test.program.lineInUse) {
                dialog().btnÜbernehmen.click();
            }
        };
        device.answers = {{":IDNM?", "vekQA"}, {":IDNV?", variant}};
        search(address);
        ASSERT_EQ(test.serial.written.size(), 2U) << address;
        EXPECT_EQ(test.serial.written[0], frame);
        EXPECT_EQ(test.program.KdlAddressPrefix, frame.substr(0, 5));
        EXPECT_EQ(test.program.DeviceAddress, number) << address;
        EXPECT_EQ(test.program.DeviceType, type) << address;
        EXPECT_EQ(test.desktop.takeBoxes(), Boxes{found(name)});
        EXPECT_EQ(shown(), std::string("KDL - Monitor   V2.2.2            ") + name +
                               "|KDL-Geräteadresse = " + address);
    }
    EXPECT_EQ(test.serial.openings.back().settings, "9600,e,7,1");
}

TEST_F(KdlAddressDialog, ADeviceThatAnswersHalfOrNotAtAllLeavesNoAddress) {
    const std::string missing = notFound("12", "KDL-Bus");
    const std::map<std::string, Bytes> cases[] = {{}, {{":IDNM?", "vekQA731"}}, {{":IDNV?", "-K7-2"}}};
    for (const auto& answers : cases) {
        device.answers = answers;
        search("12");
        EXPECT_EQ(device.takeCommands(), (Boxes{":IDNM?", ":IDNV?"}));
        EXPECT_EQ(test.desktop.takeBoxes(), Boxes{missing});
        EXPECT_EQ(test.program.KdlAddressPrefix, "     ");
        EXPECT_EQ(shown(), "KDL - Monitor    V2.2.2            |KDL-Geräteadresse = 12");
        expectOldDevice();
    }
}

TEST_F(KdlAddressDialog, ATextOfAnotherLengthEndsTheProgramWithoutAWord) {
    for (const char* text : {"", "   ", "0012", "12abc"}) {
        TestProgram other;
        other.open<frmModBus>();
        other.configureKdl();
        auto& opened = other.open<frmGeräteadresse>();
        opened.cmbGeraeteAdresse.text = std::string(text);
        EXPECT_TRUE(other.endsProgram([&] { opened.btnÜbernehmen.click(); })) << text;
        EXPECT_EQ(other.program.KdlAddressPrefix, "     ");
        EXPECT_TRUE(other.serial.openings.empty() && other.desktop.boxes.empty());
    }
}

TEST_F(KdlAddressDialog, DialogAndProgramMayEndWhileTheReplyIsAwaited) {
    device.answers = {{":IDNM?", "vekQA"}, {":IDNV?", " 731"}};
    test.desktop.onEvents = [opened = &dialog()] { opened->closeBoxPressed(); };
    search("3");
    EXPECT_EQ(test.desktop.takeBoxes(), Boxes{found("vekQA 731")});
    test.program.windows.collect();

    device.commands.clear();
    window.mnuGeräteadresse.click();
    test.desktop.onEvents = nullptr;
    device.onCommand = [&](const std::string&) { test.desktop.onEvents = [&] { window.closeBoxPressed(); }; };
    dialog().cmbGeraeteAdresse.text = "12";
    EXPECT_TRUE(test.endsProgram([this] { dialog().btnÜbernehmen.click(); }));
    EXPECT_EQ(device.commands.size(), 1U);
    EXPECT_TRUE(test.desktop.boxes.empty());
}

}  // namespace
}  // namespace vek
