#include <gtest/gtest.h>

#include "kdl/KDL.h"
#include "kdl/kdldevice.h"

namespace vek {
namespace {

using Answers = std::map<std::string, Bytes>;
using Commands = std::vector<std::string>;

TEST(KdlIdentification, TheNameIsModelAndVariantAndBothAreAlwaysAskedFor) {
    const std::pair<Answers, Bytes> cases[] = {
        {{{":IDNM?", "vekQA731"}, {":IDNV?", "-K7-2"}}, "vekQA731-K7-2"},
        {{{":IDNM?", "vekQA 731"}, {":IDNV?", ""}}, "vekQA 731"},
        {{{":IDNV?", "-K7-2"}}, "#TIMEOUT_ERROR#-K7-2"},
        {{{":IDNM?", "vekQA731"}}, "vekQA731#TIMEOUT_ERROR#"},
    };
    for (const auto& [answers, name] : cases) {
        TestProgram test;
        KdlDevice device(test.serial);
        configureKdl(test.program);
        device.answers = answers;
        EXPECT_EQ(KdlIdentify(test.program), name);
        EXPECT_EQ(device.commands, (Commands{":IDNM?", ":IDNV?"})) << name;
        EXPECT_FALSE(test.serial.isOpen());
        test.serial.openErrors = {{3, PortError::NotThere}};
        EXPECT_EQ(KdlIdentify(test.program), "#TIMEOUT_ERROR##TIMEOUT_ERROR#");
        EXPECT_TRUE(test.desktop.boxes.empty());
    }
}

TEST(KdlIdentification, DeviceDataAndVersionUseTheOpenPort) {
    TestProgram test{NumberLocale{.decimalPoint = ",", .groupSeparator = "."}};
    KdlDevice device(test.serial);
    configureKdl(test.program);
    KdlOpenPort(test.program);
    EXPECT_EQ(KdlReadDeviceData(test.program), "#TIMEOUT_ERROR#");
    EXPECT_EQ(KdlReadSoftwareVersion(test.program), "0.00");
    device.answers = {{":IDND?", "D 1731"}, {":IDNF?", "vekQA731 Sw 212 "}};
    EXPECT_EQ(KdlReadDeviceData(test.program), "D 1731");
    EXPECT_EQ(KdlReadSoftwareVersion(test.program), "2.12") << "with a point in every locale";
    EXPECT_TRUE(test.serial.isOpen());

    const std::pair<const char*, const char*> versions[] = {{"", "0.00"},
                                                            {"#TIMEOUT_ERROR#", "0.00"},
                                                            {"Sw", "0.00"},
                                                            {"Sw5", "0.05"},
                                                            {"Sw 12345", "123.45"},
                                                            {"Sw 99b7", "0.99"},
                                                            {"sw 123", "0.00"},
                                                            {"123", "0.00"},
                                                            {"Sw x1", "0.00"},
                                                            {"Sw 12 Sw 34", "0.12"},
                                                            {"Sw 12345678", "123456.78"}};
    for (const auto& [reply, version] : versions) {
        EXPECT_EQ(kdlSoftwareVersion(reply), version) << reply;
    }
}

}  // namespace
}  // namespace vek
