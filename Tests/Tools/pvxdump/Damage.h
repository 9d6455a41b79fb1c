#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "Tools/pvxdump/Dump.h"

// Damages a file in many ways, the same at every run. Each ends in text or in a std::runtime_error; with each of the
// options there are some of both.
inline void ExpectTextOrException(const std::string& bytes, uint32_t seed, int count,
                                  const std::vector<DumpOptions>& allOptions,
                                  const std::function<std::string(const std::string&, const DumpOptions&)>& print) {
    std::mt19937 random(seed);
    std::vector<int> refused(allOptions.size());
    for (int i = 0; i < count; ++i) {
        std::string damaged = bytes.substr(0, i % 2 == 0 ? bytes.size() : random() % bytes.size());
        for (uint32_t faults = random() % 4; faults > 0 && !damaged.empty(); --faults)
            damaged[random() % damaged.size()] = static_cast<char>(random());
        for (size_t option = 0; option < allOptions.size(); ++option)
            try {
                EXPECT_NE(print(damaged, allOptions[option]), "") << i;
            } catch (const std::runtime_error&) {
                ++refused[option];
            }
    }
    EXPECT_THAT(refused, testing::Each(testing::AllOf(testing::Gt(0), testing::Lt(count))));
}
