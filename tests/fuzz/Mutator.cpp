// SPDX-License-Identifier: MIT
// Mutates fuzzer inputs.
#include "tests/fuzz/Mutator.h"

#include <algorithm>
#include <array>

namespace fuzz {

namespace {

constexpr std::size_t longest = 4096;
constexpr std::size_t mostChanges = 8;

Input::iterator at(Input &input, std::size_t position)
{
    return input.begin() + static_cast<std::ptrdiff_t>(position);
}

} // namespace

Input Mutator::next()
{
    Input input = any();
    for (std::size_t changes = 1 + below(mostChanges); changes > 0; --changes)
        change(input);
    input.resize(std::min(input.size(), longest));
    return input;
}

void Mutator::change(Input &input)
{
    constexpr std::array changes{&Mutator::overwrite, &Mutator::insert, &Mutator::repeat,
                                 &Mutator::erase, &Mutator::splice};
    if (input.empty())
        return insert(input);
    (this->*changes[below(changes.size())])(input);
}

/// Flips one bit, or sets one byte to a number that often causes errors.
void Mutator::overwrite(Input &input)
{
    constexpr std::array<std::uint8_t, 8> favourites{0, 1, 63, 64, 127, 128, 254, 255};
    std::uint8_t &byte = input[below(input.size())];
    byte = below(2) == 0 ? static_cast<std::uint8_t>(byte ^ 1U << below(8))
                         : favourites[below(favourites.size())];
}

void Mutator::insert(Input &input)
{
    Input added(1 + below(8));
    std::generate(added.begin(), added.end(), [this] { return std::uint8_t(below(256)); });
    input.insert(at(input, below(input.size() + 1)), added.begin(), added.end());
}

void Mutator::repeat(Input &input)
{
    const std::size_t first = below(input.size());
    const std::size_t count = 1 + below(std::min<std::size_t>(input.size() - first, 64));
    const Input part(at(input, first), at(input, first + count));
    input.insert(at(input, below(input.size() + 1)), part.begin(), part.end());
}

void Mutator::erase(Input &input)
{
    const std::size_t first = below(input.size());
    const std::size_t count = 1 + below(input.size() - first);
    input.erase(at(input, first), at(input, first + count));
}

/// Combines the front of this input with the back of another.
void Mutator::splice(Input &input)
{
    const Input &other = any();
    input.resize(below(input.size() + 1));
    const auto from = static_cast<std::ptrdiff_t>(below(other.size() + 1));
    input.insert(input.end(), other.begin() + from, other.end());
}

} // namespace fuzz
