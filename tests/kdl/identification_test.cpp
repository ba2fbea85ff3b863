#include <gtest/gtest.h>

#include "kdl/KDL.h"
#include "kdl/kdldevice.h"

namespace vek {
namespace {

using Answers = std::map<std::string, Bytes>;
using Commands = std::vector<std::string>;

class KdlIdentification : public testing::Test {
  protected:
    KdlIdentification() { configureKdl(test.program); }

    TestProgram test{NumberLocale{.decimalPoint = ",", .groupSeparator = "."}};
    KdlDevice device{test.serial};
};

TEST_F(KdlIdentification, TheNameIsModelAndVariantAndBothAreAlwaysAskedFor) {
    const std::pair<Answers, Bytes> cases[] = {
        {{{":IDNM?", "vekQA731"}, {":IDNV?", "-K7-2"}}, "vekQA731-K7-2"},
        {{{":IDNM?", "vekQA 731"}, {":IDNV?", ""}}, "vekQA 731"},
        {{{":IDNV?", "-K7-2"}}, "#TIMEOUT_ERROR#-K7-2"},
        {{{":IDNM?", "vekQA731"}}, "vekQA731#TIMEOUT_ERROR#"},
        {Answers(), "#TIMEOUT_ERROR##TIMEOUT_ERROR#"},
    };
    int closed = 0;
    for (const auto& [answers, name] : cases) {
        device.answers = answers;
        EXPECT_EQ(KdlIdentify(test.program), name);
        EXPECT_EQ(device.takeCommands(), (Commands{":IDNM?", ":IDNV?"})) << name;
        EXPECT_FALSE(test.serial.isOpen());
        EXPECT_EQ(test.serial.closeCount, ++closed);
    }
    test.serial.openErrors = {{3, PortError::NotThere}};
    EXPECT_EQ(KdlIdentify(test.program), "#TIMEOUT_ERROR##TIMEOUT_ERROR#");
    EXPECT_TRUE(test.desktop.boxes.empty());
}

TEST_F(KdlIdentification, DeviceDataAndVersionUseTheOpenPort) {
    KdlOpenPort(test.program);
    EXPECT_EQ(KdlReadDeviceData(test.program), "#TIMEOUT_ERROR#");
    EXPECT_EQ(KdlReadSoftwareVersion(test.program), "0.00");
    device.answers = {{":IDND?", "D 1731"}, {":IDNF?", "vekQA731 Sw 212 "}};
    EXPECT_EQ(KdlReadDeviceData(test.program), "D 1731");
    EXPECT_EQ(KdlReadSoftwareVersion(test.program), "2.12") << "with a point in every locale";
    EXPECT_EQ(device.commands, (Commands{":IDND?", ":IDNF?", ":IDND?", ":IDNF?"}));
    EXPECT_TRUE(test.serial.isOpen());
}

TEST(KdlSoftwareVersion, Texts) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "0.00"},
        {"#TIMEOUT_ERROR#", "0.00"},
        {"Sw", "0.00"},
        {"Sw 123", "1.23"},
        {"Sw5", "0.05"},
        {"xx Sw   100  ", "1.00"},
        {"Sw 12345", "123.45"},
        {"Sw 99b7", "0.99"},
        {"sw 123", "0.00"},
        {"SW 123", "0.00"},
        {"123", "0.00"},
        {"Sw x1", "0.00"},
        {"Sw x Sw 1", "0.00"},
        {"Sw 12 Sw 34", "0.12"},
        {"Sw 12345678", "123456.78"},
    };
    for (const auto& [reply, version] : cases) {
        EXPECT_EQ(kdlSoftwareVersion(reply), version) << reply;
    }
}

}  // namespace
}  // namespace vek
