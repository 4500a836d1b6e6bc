// SPDX-License-Identifier: MIT
#pragma once
// A small random generator: equal seeds give equal runs with every compiler and library.

#include <cmath>
#include <cstdint>
#include <numbers>

namespace receiver
{

class Random
{
public:
    explicit Random(uint64_t seed) : State(seed) {}

    uint64_t Next()
    {
        State += 0x9E3779B97F4A7C15u;
        uint64_t z = State;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return z ^ (z >> 31);
    }

    double Uniform() { return static_cast<double>(Next() >> 11) * 0x1p-53; } // [0, 1)
    bool Chance(double probability) { return probability > 0 && Uniform() < probability; }
    uint8_t Byte() { return static_cast<uint8_t>(Next() >> 56); }

    double Normal() // mean 0, deviation 1
    {
        const double radius = std::sqrt(-2.0 * std::log(1.0 - Uniform()));
        return radius * std::cos(2.0 * std::numbers::pi * Uniform());
    }

private:
    uint64_t State;
};

} // namespace receiver
