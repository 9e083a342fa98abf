// SPDX-License-Identifier: MIT
// A test camera with a GenICam description that the test writes.
#pragma once

#include "tests/library/genicam/GenicamFixture.h"

#include <arv.h>
#include <unistd.h>

namespace genicamtest {

/// Builds the description of a camera whose features are registers of Aravis' in-process test
/// camera, and opens the camera. Addresses from 0x1000 on are free.
class DescribedCamera {
public:
    /// A whole number of 32 bits. With a selector, one register for each of its entries.
    void addInteger(const std::string &name, unsigned address, int minimum, int maximum,
                    const std::string &selector = {})
    {
        addBounded("Integer", name, minimum, maximum);
        addRegister("IntReg", name, address,
                    selected(selector, 4) + "<Length>4</Length><Sign>Unsigned</Sign>");
    }
    /// A float of 32 bits.
    void addFloat(const std::string &name, unsigned address, int minimum, int maximum,
                  const std::string &selector = {})
    {
        addBounded("Float", name, minimum, maximum);
        addRegister("FloatReg", name, address, selected(selector, 4) + "<Length>4</Length>");
    }
    /// Entries have the values 0, 1, 2 ...
    void addEnumeration(const std::string &name, unsigned address,
                        const std::vector<std::string> &entries)
    {
        std::string text;
        for (std::size_t i = 0; i < entries.size(); ++i) {
            text += "<EnumEntry Name=\"" + entries[i] + "\"><Value>" + std::to_string(i) +
                    "</Value></EnumEntry>";
        }
        add("Enumeration", name, text + "<pValue>" + name + "Register</pValue>");
        addRegister("IntReg", name, address, "<Length>4</Length><Sign>Unsigned</Sign>");
    }
    void addBoolean(const std::string &name, unsigned address)
    {
        add("Boolean", name, "<pValue>" + name + "Register</pValue>");
        addRegister("IntReg", name, address, "<Length>4</Length><Sign>Unsigned</Sign>");
    }
    /// Writes 1.
    void addCommand(const std::string &name, unsigned address)
    {
        add("Command", name, "<pValue>" + name + "Register</pValue><CommandValue>1</CommandValue>");
        addRegister("IntReg", name, address, "<Length>4</Length><Sign>Unsigned</Sign>");
    }

    std::unique_ptr<Device> open(Backend &backend) const
    {
        char path[] = "/tmp/orvalis-camera-XXXXXX";
        const int file = mkstemp(path);
        EXPECT_GE(file, 0);
        close(file);
        std::ofstream(path) << text();
        arv_set_fake_camera_genicam_filename(path);
        std::unique_ptr<Device> device = openCamera(backend, backend.discover().at(0).id);
        arv_set_fake_camera_genicam_filename(nullptr);
        unlink(path);
        return device;
    }

private:
    static std::string selected(const std::string &selector, int step)
    {
        return selector.empty() ? std::string()
                                : "<pIndex Offset=\"" + std::to_string(step) + "\">" + selector +
                                      "Register</pIndex>";
    }
    void add(const std::string &type, const std::string &name, const std::string &body)
    {
        features_ += "<pFeature>" + name + "</pFeature>";
        nodes_ += "<" + type + " Name=\"" + name + "\">" + body + "</" + type + ">\n";
    }
    void addBounded(const std::string &type, const std::string &name, int minimum, int maximum)
    {
        add(type, name,
            "<pValue>" + name + "Register</pValue><Min>" + std::to_string(minimum) + "</Min><Max>" +
                std::to_string(maximum) + "</Max>");
    }
    void addRegister(const std::string &type, const std::string &name, unsigned address,
                     const std::string &body)
    {
        nodes_ += "<" + type + " Name=\"" + name + "Register\"><Address>" +
                  std::to_string(address) + "</Address>" + body +
                  "<AccessMode>RW</AccessMode><pPort>Device</pPort>"
                  "<Endianess>BigEndian</Endianess></" +
                  type + ">\n";
    }
    std::string text() const
    {
        return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
               "<RegisterDescription ModelName=\"Described\" VendorName=\"Test\" "
               "StandardNameSpace=\"None\" SchemaMajorVersion=\"1\" SchemaMinorVersion=\"1\" "
               "SchemaSubMinorVersion=\"0\" MajorVersion=\"1\" MinorVersion=\"0\" "
               "SubMinorVersion=\"0\" ProductGuid=\"0\" VersionGuid=\"0\" "
               "xmlns=\"http://www.genicam.org/GenApi/Version_1_1\">\n"
               "<Category Name=\"Root\">" +
               features_ + "</Category>\n" + nodes_ +
               "<Port Name=\"Device\"/>\n</RegisterDescription>\n";
    }

    std::string features_;
    std::string nodes_;
};

} // namespace genicamtest
