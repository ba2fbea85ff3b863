#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "kills.h"

vek::Kills vek::kills;

/// durability_tests [options of the test runner] [KILLS [SEED]]
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    unsigned* const settings[] = {&vek::kills.count, &vek::kills.seed};
    for (int index = 1; index < argc && index <= 2; ++index) {
        char* end = nullptr;
        *settings[index - 1] = static_cast<unsigned>(std::strtoul(argv[index], &end, 10));
        if (*end != '\0') {
            std::fprintf(stderr, "no number: %s\n", argv[index]);
            return 2;
        }
    }
    return RUN_ALL_TESTS();
}
