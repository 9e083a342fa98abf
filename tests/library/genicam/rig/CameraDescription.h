// SPDX-License-Identifier: MIT
// Builds the GenICam description of a test's camera.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace genicamtest {

/// Builds a GenICam description feature by feature. Each feature is a big-endian register named
/// <feature>Register; tests may use addresses from 0x1000 to 0x7FFF.
class CameraDescription {
public:
    /// A 32-bit integer. With a selector, one register for each of its entries.
    void addInteger(const std::string &name, unsigned address, std::int64_t minimum,
                    std::int64_t maximum, const std::string &selector = {});
    /// A 32-bit float.
    void addFloat(const std::string &name, unsigned address, int minimum, int maximum,
                  const std::string &selector = {});
    /// The entries have the values 0, 1, 2 ... With a selector, one register for each of its
    /// entries.
    void addEnumeration(const std::string &name, unsigned address,
                        const std::vector<std::string> &entries, const std::string &selector = {});
    /// On is 1. With a selector, one register for each of its entries.
    void addBoolean(const std::string &name, unsigned address, const std::string &selector = {});
    /// A command that writes 1.
    void addCommand(const std::string &name, unsigned address);
    /// A text of `length` bytes.
    void addString(const std::string &name, unsigned address, unsigned length);
    /// Any element, as a feature below the root: addNode("<Integer Name=\"A\">...</Integer>", "A").
    /// Without a feature name, other nodes can only refer to it.
    void addNode(const std::string &element, const std::string &feature = {});
    /// Adds elements to the next feature, such as "<pIsAvailable>B</pIsAvailable>".
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
