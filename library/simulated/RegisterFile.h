// SPDX-License-Identifier: MIT
// The memory of a simulated camera: what all its nodes, and its raw registers, are views of.
#pragma once

#include "library/simulated/NodeTable.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvalis::simulated {

/// All settings of a camera in 32-bit words, with the rules that hold between them. Not
/// synchronised: its owner holds a lock around every call.
class RegisterFile {
public:
    RegisterFile(const CameraModel &model, std::size_t extraNodes);

    /// What the words mean.
    const NodeTable &table() const { return table_; }

    /// Address of the word that a node shows at present (its selector decides).
    std::uint32_t addressOf(const NodeSpec &spec) const;
    /// Bounds at present.
    Range bounds(const NodeSpec &spec, std::uint32_t address) const;
    /// What may be done with a node at present. Commands that may not run while the camera streams
    /// keep their access mode: see mayExecute().
    OAccessMode access(const NodeSpec &spec, bool streaming) const;
    /// The entries that an enumeration offers at present.
    std::span<const EntrySpec> entries(const NodeSpec &spec) const { return spec.entries; }

    /// The word at an address that the table has, as for all below.
    std::uint32_t word(std::uint32_t address) const { return words_[address / 4]; }
    /// Writes without any rule: for what the camera itself measures and finds.
    void setWord(std::uint32_t address, std::uint32_t value) { words_[address / 4] = value; }

    /// The word as IEEE 754 single precision.
    float real(std::uint32_t address) const;
    /// As setWord(), in single precision.
    void setReal(std::uint32_t address, double value);
    /// True unless the word is 0.
    bool flag(std::uint32_t address) const { return word(address) != 0; }

    /// The number that stands at an address, read as the node says.
    double number(const NodeSpec &spec, std::uint32_t address) const;
    /// Writes a number under the rules: ORVALIS_ERROR_OUT_OF_RANGE, or done, with everything that
    /// follows from it. Does not look at access modes.
    OResult setNumber(const NodeSpec &spec, std::uint32_t address, double value);

    /// A string, up to its first NUL.
    std::string text(const NodeSpec &spec) const;
    /// ORVALIS_ERROR_OUT_OF_RANGE for a text that does not fit.
    OResult setText(const NodeSpec &spec, std::string_view value);

    /// A 32-bit value as the raw register calls write it, under the same rules as setNumber().
    OResult writeWord(const NodeSpec &spec, std::uint32_t address, std::uint32_t value);

    /// All words that belong to a user set, in an order of their own.
    std::vector<std::uint32_t> userSet() const;
    /// Takes what userSet() gave.
    void loadUserSet(const std::vector<std::uint32_t> &words);
    /// What leaves the factory.
    const std::vector<std::uint32_t> &factorySet() const { return factorySet_; }

    /// The trigger that frames wait for, by its number in TriggerSelector; of several that are on
    /// the one that all others wait for.
    std::uint32_t activeTrigger() const;
    /// True if the software trigger is that of activeTrigger().
    bool selectsActiveTrigger() const;

    /// Shortest time between two frames at present, in microseconds.
    double shortestPeriod() const;
    /// Time between two frames as set, in microseconds.
    double framePeriod() const;

private:
    void setFactoryValues();
    bool belongsToOutputs(const NodeSpec &spec) const;
    void changed(std::uint32_t address, std::uint32_t previous);
    void followReduction(std::uint32_t address, std::uint32_t previous);
    void updateDerived();
    double largestRate() const;

    const CameraModel &model_;
    NodeTable table_;
    std::vector<std::uint32_t> words_;
    std::vector<std::uint32_t> saved_; ///< indices of the words that user sets hold
    std::vector<std::uint32_t> factorySet_;
};

} // namespace orvalis::simulated
