// SPDX-License-Identifier: MIT
// The GenICam description of a camera, written by a test.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace genicamtest {

/// Builds a GenICam description, one feature after the other. Each feature is a big-endian register
/// named <feature>Register; addresses from 0x1000 to 0x7FFF are free for a test to use.
class CameraDescription {
public:
    /// A whole number of 32 bits. With a selector, one register for each of its entries.
    void addInteger(const std::string &name, unsigned address, std::int64_t minimum,
                    std::int64_t maximum, const std::string &selector = {});
    /// A float of 32 bits.
    void addFloat(const std::string &name, unsigned address, int minimum, int maximum,
                  const std::string &selector = {});
    /// Entries have the values 0, 1, 2 ... With a selector, one register for each of its entries.
    void addEnumeration(const std::string &name, unsigned address,
                        const std::vector<std::string> &entries, const std::string &selector = {});
    /// On is 1. With a selector, one register for each of its entries.
    void addBoolean(const std::string &name, unsigned address, const std::string &selector = {});
    /// Writes 1.
    void addCommand(const std::string &name, unsigned address);
    /// Text of `length` bytes.
    void addString(const std::string &name, unsigned address, unsigned length);
    /// Any element, as a feature below the root: addNode("<Integer Name=\"A\">...</Integer>", "A").
    /// Without a feature it is only there for other nodes to point to.
    void addNode(const std::string &element, const std::string &feature = {});
    /// More elements within the feature that is added next, such as
    /// "<pIsAvailable>B</pIsAvailable>".
    void withNext(const std::string &elements) { next_ += elements; }

    /// The whole description.
    std::string text() const;

private:
    void add(const std::string &type, const std::string &name, const std::string &body);
    void addBounded(const std::string &type, const std::string &name, std::int64_t minimum,
                    std::int64_t maximum);
    void addRegister(const std::string &type, const std::string &name, unsigned address,
                     const std::string &body);
    void addWord(const std::string &name, unsigned address, const std::string &selector);

    std::string features_;
    std::string nodes_;
    std::string next_;
};

} // namespace genicamtest
