#include "devicemodel/devicetypes.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace vek {
namespace {

TEST(DeviceTypes, ArticleAndDisplayNamesOfAModelGiveOneType) {
    struct Case {
        int type;
        std::initializer_list<std::string_view> names;
    };
    for (const Case& c : {
             Case{1, {"vekQB731-K7W-2", "vekQB 731"}},
             Case{2, {"vekQC731-K7W-2", "vekQC 731"}},
             Case{3, {"vekQA731-K75-2", "vekQA731-K7-2", "vekQA 731"}},
             Case{4, {"vekQD731-K7-5", "vekQD731-K7-2", "vekQD 731"}},
             Case{5, {"vekQC731QF-K7W-2", "vekQC 731QF"}},
             Case{6, {"vekQE731-K7-2", "vekQE 731"}},
             Case{7, {"vekQF731-K7-2", "vekQF 731"}},
             Case{8, {"vekQG731-K7-2", "vekQG 731"}},
             Case{9, {"vekQH731-K7-2", "vekQH 731", "vekQJK731-K7-2", "vekQJ 731"}},
             Case{10, {"vekQLN729-K7-2", "vekQL 729"}},
         }) {
        for (const std::string_view name : c.names) {
            EXPECT_EQ(deviceTypeFromName(name), c.type) << name;
        }
    }
}

TEST(DeviceTypes, NamesThatAreNotExactlyKnownCountAsTypeOne) {
    for (const std::string_view name :
         {"", "vekQLN729-K7-2 ", " vekQL 729", "vekqh 731", "VEKQH731-K7-2", "vekQC731", "CRC_TIMEOUT"}) {
        EXPECT_EQ(deviceTypeFromName(name), 1) << name;
    }
}

}  // namespace
}  // namespace vek
