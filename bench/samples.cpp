#include "samples.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace vek::bench {

double median(std::vector<double> values) {
    const auto middle = std::next(values.begin(), static_cast<std::ptrdiff_t>(values.size() / 2));
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

std::vector<double> interleavedMedians(int rounds, std::initializer_list<Sample> sides) {
    std::vector<std::vector<double>> samples(sides.size());
    for (int round = 0; round <= rounds; ++round) {
        for (std::size_t turn = 0; turn < sides.size(); ++turn) {
            const std::size_t side = (turn + static_cast<std::size_t>(round)) % sides.size();
            const double seconds = std::data(sides)[side]();
            if (round > 0) {
                samples[side].push_back(seconds);
            }
        }
    }
    std::vector<double> medians;
    std::transform(samples.begin(), samples.end(), std::back_inserter(medians), median);
    return medians;
}

}  // namespace vek::bench
