// SPDX-License-Identifier: MIT
// The feature nodes of the simulated cameras as a table with look-up functions.
#pragma once

#include "library/simulated/CameraModel.h"
#include "sdk/OrvalisAPI.h"

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace orvalis::simulated {

/// An entry of an enumeration; `value` is the register's content.
struct EntrySpec {
    std::string_view name;
    std::uint32_t value;
};

/// The selector that selects among the registers of one node.
enum class Selector : std::uint8_t {
    None,
    Balance,
    Line,
    Timer,
    Trigger, ///< only if SimulationTriggerPerSelector is on
    Strobe   ///< LineSelector, only if SimulationStrobePerLine is on
};

/// The number of registers that a selector selects among.
constexpr std::uint32_t selectorCount(Selector selector)
{
    constexpr std::uint32_t kCounts[] = {1, 3, 3, 2, 2, 3};
    return kCounts[static_cast<std::size_t>(selector)];
}

/// Properties of a node; a bit mask.
enum NodeFlag : std::uint32_t {
    kLockable = 1,  ///< read-only while the camera streams
    kColorOnly = 2, ///< only on colour cameras; not available in monochrome formats
    kThermalOnly = 4,
    kKept = 8,    ///< not part of the user sets
    kAlias = 16,  ///< a second name for registers of another node
    kExpert = 32, ///< visibility "Expert"
    kGuru = 64    ///< visibility "Guru"
};

/// Bounds, increment and factory value of a number.
struct Range {
    double minimum = 0;
    double maximum = 0;
    double increment = 0;
    double initial = 0;
};

/// The size of a string node in bytes.
constexpr std::uint32_t kTextBytes = 64;

/// One node. Numbers, booleans, enumerations and commands occupy one 32-bit word at `address`
/// (floats as IEEE 754 single precision), or one word for each choice of a selector; strings occupy
/// kTextBytes bytes, padded with NUL.
struct NodeSpec {
    std::string_view name;
    std::string_view category;
    ONodeType type = ORVALIS_NODE_VALUE;
    OAccessMode access = ORVALIS_ACCESS_READ_ONLY;
    std::uint32_t address = 0;
    Range range{};
    std::string_view unit{};
    std::span<const EntrySpec> entries{};
    std::uint32_t flags = 0;
    Selector selector = Selector::None;
    std::string_view text{}; ///< factory value of a string
    std::string_view description{};

    /// True if the flag is set.
    bool has(NodeFlag flag) const { return (flags & flag) != 0; }
    /// True for a category.
    bool isCategory() const { return type == ORVALIS_NODE_CATEGORY; }
    /// Number of words from `address` on.
    std::uint32_t words() const;
};

/// The common rows of all cameras' tables, by subject.
std::span<const NodeSpec> deviceNodes();
std::span<const NodeSpec> acquisitionNodes();
std::span<const NodeSpec> pictureNodes();
std::span<const NodeSpec> automaticNodes();
std::span<const NodeSpec> connectionNodes();
std::span<const NodeSpec> simulationNodes();

/// The nodes of one camera. Immutable.
class NodeTable {
public:
    /// @param extraNodes additional integer nodes for load tests
    NodeTable(const CameraModel &model, std::size_t extraNodes);
    NodeTable(const NodeTable &) = delete;
    NodeTable &operator=(const NodeTable &) = delete;

    /// All nodes, the category "Root" first.
    std::span<const NodeSpec> nodes() const { return nodes_; }
    /// Null if the camera has no such node.
    const NodeSpec *find(std::string_view name) const;
    /// The node that owns a word (never an alias); null if there is none.
    const NodeSpec *at(std::uint32_t address) const;
    /// Names below a category, in table order.
    std::vector<std::string> children(std::string_view category) const;
    /// The memory size of these nodes in words.
    std::size_t memoryWords() const { return memoryWords_; }

private:
    void add(const NodeSpec &spec, const CameraModel &model);
    void addExtraNodes(std::size_t count, const CameraModel &model);
    void index();
    std::string_view keep(std::string text);

    std::vector<NodeSpec> nodes_;
    std::deque<std::string> texts_;
    std::deque<std::vector<EntrySpec>> entries_;
    std::unordered_map<std::string_view, std::size_t> byName_;
    std::unordered_map<std::uint32_t, std::size_t> byAddress_;
    std::size_t memoryWords_ = 0;
};

/// "ExposureTime" becomes "Exposure Time".
std::string displayNameOf(std::string_view name);

} // namespace orvalis::simulated
