// SPDX-License-Identifier: MIT
// The memory of a simulated camera, which its nodes and raw registers share.
#pragma once

#include "library/simulated/NodeTable.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace orvalis::simulated {

/// All settings of a camera in 32-bit words, and the dependencies between them. Not synchronised:
/// the owner holds a lock around every call.
class RegisterFile {
public:
    RegisterFile(const CameraModel &model, std::size_t extraNodes);

    /// The nodes of the words.
    const NodeTable &table() const { return table_; }

    /// The address of the word that a node refers to at present (its selector decides).
    std::uint32_t addressOf(const NodeSpec &spec) const;
    /// Bounds at present.
    Range bounds(const NodeSpec &spec, std::uint32_t address) const;
    /// The present access mode of a node. Commands that may not run while the camera streams keep
    /// their access mode: see mayExecute().
    OAccessMode access(const NodeSpec &spec, bool streaming) const;
    /// The entries that an enumeration offers at present.
    std::span<const EntrySpec> entries(const NodeSpec &spec) const { return spec.entries; }

    /// The word at an address, which must be in the table; so for all functions below.
    std::uint32_t word(std::uint32_t address) const { return words_[address / 4]; }
    /// Writes without applying any rules: for values that the camera itself measures.
    void setWord(std::uint32_t address, std::uint32_t value) { words_[address / 4] = value; }

    /// The word as IEEE 754 single precision.
    float real(std::uint32_t address) const;
    /// Like setWord(), in single precision.
    void setReal(std::uint32_t address, double value);
    /// True unless the word is 0.
    bool flag(std::uint32_t address) const { return word(address) != 0; }

    /// The number at an address, interpreted according to the node.
    double number(const NodeSpec &spec, std::uint32_t address) const;
    /// Writes a number and applies the rules, or returns ORVALIS_ERROR_OUT_OF_RANGE. Does not check
    /// access modes.
    OResult setNumber(const NodeSpec &spec, std::uint32_t address, double value);

    /// A string, up to its first NUL.
    std::string text(const NodeSpec &spec) const;
    /// ORVALIS_ERROR_OUT_OF_RANGE for a text that does not fit.
    OResult setText(const NodeSpec &spec, std::string_view value);

    /// Writes a 32-bit value, as the raw register calls do, with the same rules as setNumber().
    OResult writeWord(const NodeSpec &spec, std::uint32_t address, std::uint32_t value);

    /// All words of a user set, in an internal order.
    std::vector<std::uint32_t> userSet() const;
    /// Restores the result of userSet().
    void loadUserSet(const std::vector<std::uint32_t> &words);
    /// The factory settings.
    const std::vector<std::uint32_t> &factorySet() const { return factorySet_; }

    /// The trigger that frames wait for, by its number in TriggerSelector; if several are on, the
    /// one that the others depend on.
    std::uint32_t activeTrigger() const;
    /// True if TriggerSelector selects activeTrigger().
    bool selectsActiveTrigger() const;

    /// The minimum time between two frames at present, in microseconds.
    double shortestPeriod() const;
    /// The configured time between two frames, in microseconds.
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
    std::vector<std::uint32_t> saved_; ///< indices of the words in user sets
    std::vector<std::uint32_t> factorySet_;
};

} // namespace orvalis::simulated
