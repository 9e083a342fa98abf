// SPDX-License-Identifier: MIT
// Builds the GenICam description of a test's camera.
#include "tests/library/genicam/rig/CameraDescription.h"

#include <utility>

namespace genicamtest {
namespace {

constexpr const char *head =
    "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
    "<RegisterDescription ModelName=\"Described\" VendorName=\"Test\" StandardNameSpace=\"None\" "
    "SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" SchemaSubMinorVersion=\"0\" "
    "MajorVersion=\"1\" MinorVersion=\"0\" SubMinorVersion=\"0\" ProductGuid=\"0\" "
    "VersionGuid=\"0\" xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">\n";

/// One register of 4 bytes for each entry of the selector.
std::string selected(const std::string &selector)
{
    return selector.empty() ? std::string()
                            : "<pIndex Offset=\"4\">" + selector + "Register</pIndex>";
}

std::string pointerTo(const std::string &name) { return "<pValue>" + name + "Register</pValue>"; }

} // namespace

void CameraDescription::addInteger(const std::string &name, unsigned address, std::int64_t minimum,
                                   std::int64_t maximum, const std::string &selector)
{
    addBounded("Integer", name, minimum, maximum);
    addWord(name, address, selector);
}

void CameraDescription::addFloat(const std::string &name, unsigned address, int minimum,
                                 int maximum, const std::string &selector)
{
    addBounded("Float", name, minimum, maximum);
    addRegister("FloatReg", name, address, selected(selector) + "<Length>4</Length>");
}

void CameraDescription::addEnumeration(const std::string &name, unsigned address,
                                       const std::vector<std::string> &entries,
                                       const std::string &selector)
{
    std::string text;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        text += "<EnumEntry Name=\"" + entries[i] + "\"><Value>" + std::to_string(i) +
                "</Value></EnumEntry>";
    }
    add("Enumeration", name, text + pointerTo(name));
    addWord(name, address, selector);
}

void CameraDescription::addBoolean(const std::string &name, unsigned address,
                                   const std::string &selector)
{
    add("Boolean", name, pointerTo(name));
    addWord(name, address, selector);
}

void CameraDescription::addCommand(const std::string &name, unsigned address)
{
    add("Command", name, pointerTo(name) + "<CommandValue>1</CommandValue>");
    addWord(name, address, {});
}

void CameraDescription::addString(const std::string &name, unsigned address, unsigned length)
{
    addRegister("StringReg", name, address, "<Length>" + std::to_string(length) + "</Length>");
    add("String", name, pointerTo(name));
}

void CameraDescription::addNode(const std::string &element, const std::string &feature)
{
    features_ += feature.empty() ? std::string() : "<pFeature>" + feature + "</pFeature>";
    nodes_ += element + "\n";
}

std::string CameraDescription::text() const
{
    return head + ("<Category Name=\"Root\">" + features_) + "</Category>\n" + nodes_ +
           "<Port Name=\"Device\"/>\n</RegisterDescription>\n";
}

void CameraDescription::add(const std::string &type, const std::string &name,
                            const std::string &body)
{
    addNode("<" + type + " Name=\"" + name + "\">" + std::exchange(next_, {}) + body + "</" + type +
                ">",
            name);
}

void CameraDescription::addBounded(const std::string &type, const std::string &name,
                                   std::int64_t minimum, std::int64_t maximum)
{
    add(type, name,
        pointerTo(name) + "<Min>" + std::to_string(minimum) + "</Min><Max>" +
            std::to_string(maximum) + "</Max>");
}

void CameraDescription::addRegister(const std::string &type, const std::string &name,
                                    unsigned address, const std::string &body)
{
    addNode("<" + type + " Name=\"" + name + "Register\"><Address>" + std::to_string(address) +
            "</Address>" + body +
            "<AccessMode>RW</AccessMode><pPort>Device</pPort><Endianess>BigEndian</Endianess></" +
            type + ">");
}

void CameraDescription::addWord(const std::string &name, unsigned address,
                                const std::string &selector)
{
    addRegister("IntReg", name, address,
                selected(selector) + "<Length>4</Length><Sign>Unsigned</Sign>");
}

} // namespace genicamtest
