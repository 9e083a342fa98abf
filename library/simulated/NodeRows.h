// SPDX-License-Identifier: MIT
// Short forms for the rows of the node tables.
#pragma once

#include "library/simulated/Addresses.h"
#include "library/simulated/NodeTable.h"

#include <array>

namespace orvalis::simulated {

constexpr OAccessMode kReadWrite = ORVALIS_ACCESS_READ_WRITE;
constexpr OAccessMode kReadOnly = ORVALIS_ACCESS_READ_ONLY;
constexpr OAccessMode kWriteOnly = ORVALIS_ACCESS_WRITE_ONLY;

/// Entries of ExposureAuto and GainAuto, with their values in the SFNC.
constexpr std::array<EntrySpec, 2> kAutomatic{{{"Off", 0}, {"Continuous", 2}}};

constexpr NodeSpec category(std::string_view name, std::string_view parent,
                            std::string_view description, std::uint32_t flags = 0)
{
    return {.name = name,
            .category = parent,
            .type = ORVALIS_NODE_CATEGORY,
            .flags = flags,
            .description = description};
}

constexpr NodeSpec integer(std::string_view name, std::string_view parent, std::uint32_t address,
                           OAccessMode access, Range range, std::string_view unit,
                           std::string_view description, std::uint32_t flags = 0,
                           Selector selector = Selector::None)
{
    return {.name = name,
            .category = parent,
            .type = ORVALIS_NODE_INTEGER,
            .access = access,
            .address = address,
            .range = range,
            .unit = unit,
            .flags = flags,
            .selector = selector,
            .description = description};
}

constexpr NodeSpec real(std::string_view name, std::string_view parent, std::uint32_t address,
                        OAccessMode access, Range range, std::string_view unit,
                        std::string_view description, std::uint32_t flags = 0,
                        Selector selector = Selector::None)
{
    NodeSpec spec =
        integer(name, parent, address, access, range, unit, description, flags, selector);
    spec.type = ORVALIS_NODE_FLOAT;
    return spec;
}

constexpr NodeSpec boolean(std::string_view name, std::string_view parent, std::uint32_t address,
                           OAccessMode access, bool initial, std::string_view description,
                           std::uint32_t flags = 0, Selector selector = Selector::None)
{
    NodeSpec spec = integer(name, parent, address, access, {0, 1, 1, initial ? 1.0 : 0.0}, "",
                            description, flags, selector);
    spec.type = ORVALIS_NODE_BOOLEAN;
    return spec;
}

constexpr NodeSpec enumeration(std::string_view name, std::string_view parent,
                               std::uint32_t address, OAccessMode access,
                               std::span<const EntrySpec> entries, std::uint32_t initial,
                               std::string_view description, std::uint32_t flags = 0,
                               Selector selector = Selector::None)
{
    NodeSpec spec = integer(name, parent, address, access, {0, 0, 1, double(initial)}, "",
                            description, flags, selector);
    spec.type = ORVALIS_NODE_ENUMERATION;
    spec.entries = entries;
    return spec;
}

constexpr NodeSpec text(std::string_view name, std::string_view parent, std::uint32_t address,
                        OAccessMode access, std::string_view initial, std::string_view description,
                        std::uint32_t flags = kKept)
{
    NodeSpec spec = integer(name, parent, address, access, {}, "", description, flags);
    spec.type = ORVALIS_NODE_STRING;
    spec.text = initial;
    return spec;
}

/// A command: `access` read-write if it may be executed at any time, write-only otherwise.
constexpr NodeSpec command(std::string_view name, std::string_view parent, std::uint32_t address,
                           OAccessMode access, std::string_view description,
                           std::uint32_t flags = kKept)
{
    NodeSpec spec = integer(name, parent, address, access, {0, 1, 1, 0}, "", description, flags);
    spec.type = ORVALIS_NODE_COMMAND;
    return spec;
}

} // namespace orvalis::simulated
