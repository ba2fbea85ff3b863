#include "platform/serialsettings.h"

#include <gtest/gtest.h>

namespace vek {
namespace {

TEST(SerialSettings, OnlyTheExactFormIsTakenAndByteTimeCountsEveryBit) {
    const auto settings = parseSerialSettings("115200,e,7,2");
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->baudRate, 115200);
    EXPECT_EQ(settings->parity, 'e');
    EXPECT_EQ(settings->dataBits, 7);
    EXPECT_EQ(settings->stopBits, 2);
    const std::pair<const char*, int> times[] = {
        {"9600,n,8,1", 1042}, {"9600,e,8,1", 1146}, {"9600,e,7,1", 1042}, {"1200,o,8,2", 10000}};
    for (const auto& [text, microseconds] : times) {
        EXPECT_EQ(parseSerialSettings(text)->byteTime().count(), microseconds) << text;
    }
    for (const char* text :
         {"", "9600", "9600,n,8", "9600,n,8,1,", "9600,m,8,1", "9600,N,8,1", "9600,n,6,1", "9600,n,8,1.5",
          "14400,n,8,1", "09600,n,8,1", " 9600,n,8,1", "9600,,8,1", "9600,n,8,1 "}) {
        EXPECT_FALSE(parseSerialSettings(text)) << text;
    }
}

}  // namespace
}  // namespace vek
