// Reals that are the same bits in every build: the distributions of the C++ libraries are not.
#pragma once

#include <cstdint>
#include <random>

class RandomReals {
 public:
    explicit RandomReals(std::uint64_t seed) : m_random(seed) {}

    // From -range to range.
    double Within(double range) {
        return static_cast<double>(static_cast<std::int64_t>(m_random()) >> 11) * 0x1p-52 * range;
    }

 private:
    std::mt19937_64 m_random;
};
