// SPDX-License-Identifier: MIT
// Mutates fuzzer inputs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace fuzz {

using Input = std::vector<std::uint8_t>;

/// Returns the same inputs for the same seed and corpus on every machine.
class Mutator {
public:
    /// `corpus` must not be empty and must outlive the mutator.
    Mutator(std::uint32_t seed, const std::vector<Input> &corpus)
        : generator_(seed), corpus_(corpus)
    {
    }

    /// One input of the corpus with a few random changes, at most 4096 bytes.
    Input next();

private:
    std::size_t below(std::size_t limit) { return generator_() % limit; }
    const Input &any() { return corpus_[below(corpus_.size())]; }
    void change(Input &input);
    void overwrite(Input &input);
    void insert(Input &input);
    void repeat(Input &input);
    void erase(Input &input);
    void splice(Input &input);

    std::mt19937 generator_;
    const std::vector<Input> &corpus_;
};

} // namespace fuzz
