#include <iostream>
#include <string_view>
#include <vector>

#include "simulator/options.h"
#include "simulator/runner.h"

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const auto parsed = vek::sim::parseOptions(arguments);
    if (const auto* problem = std::get_if<std::string>(&parsed)) {
        std::cerr << "vekXX731_Simulator: " << *problem << "\nTry --help.\n";
        return 2;
    }
    const auto& options = std::get<vek::sim::ProgramOptions>(parsed);
    if (options.help) {
        std::cout << vek::sim::helpText();
        return 0;
    }
    return vek::sim::runSimulator(options, std::cout, std::cerr);
}
