// SPDX-License-Identifier: MIT
// Nodes of described cameras through the entry points: addresses, long numbers, unlimited sizes,
// slow commands.
#include "tests/library/genicam/DescribedLibrary.h"

#include <cstring>
#include <limits>
#include <tuple>

using namespace genicamtest;

namespace {

constexpr unsigned valueAddress = 0x1000;
constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();

std::string registerNode(const std::string &type, const std::string &name, unsigned address,
                         const std::string &length, const std::string &mode = "RW")
{
    return "<" + type + " Name=\"" + name + "\"><Address>" + std::to_string(address) +
           "</Address>" + length + "<AccessMode>" + mode +
           "</AccessMode><pPort>Device</pPort><Endianess>BigEndian</Endianess></" + type + ">";
}

class DescribedNodes : public DescribedLibrary {
protected:
    OIntNode read(const char *name)
    {
        OIntNode node{};
        EXPECT_EQ(OrvalisGetNodeInt(handle, name, &node), ORVALIS_OK) << name;
        return node;
    }
    std::string text(const char *name)
    {
        char value[ORVALIS_TEXT_SIZE] = {};
        EXPECT_EQ(OrvalisGetNodeString(handle, name, value), ORVALIS_OK) << name;
        return value;
    }
};

TEST_F(DescribedNodes, addressesAreReadAndWrittenWhole)
{
    camera.addInteger("GevPersistentIPAddress", valueAddress, 0, 0xFFFFFFFF);
    // Descriptions often omit the bounds; the register has some.
    camera.addNode("<Integer Name=\"GevSCDA\"><pValue>DestinationRegister</pValue></Integer>",
                   "GevSCDA");
    camera.addNode(
        registerNode("IntReg", "DestinationRegister", valueAddress + 4, "<Length>4</Length>"));
    open();
    setWord(valueAddress, 0xC0A80101);
    setWord(valueAddress + 4, 0xC0A80101);
    unsigned address = valueAddress;
    for (const char *name : {"GevPersistentIPAddress", "GevSCDA"}) {
        EXPECT_EQ(read(name).value, -1062731519) << name;
        EXPECT_EQ(read(name).minimum, smallest) << name;
        EXPECT_EQ(read(name).maximum, largest) << name;
        EXPECT_EQ(text(name), "3232235777") << name;
        EXPECT_EQ(OrvalisSetNodeInt(handle, name, -1062731518), ORVALIS_OK) << name;
        EXPECT_EQ(word(address), 0xC0A80102U) << name;
        EXPECT_EQ(OrvalisSetNodeInt(handle, name, -1), ORVALIS_OK) << name;
        EXPECT_EQ(word(address), 0xFFFFFFFFU) << name;
        EXPECT_EQ(OrvalisSetNodeString(handle, name, "2130706433"), ORVALIS_OK) << name;
        EXPECT_EQ(read(name).value, 0x7F000001) << name;
        address += 4;
    }
}

TEST_F(DescribedNodes, theCameraRefusesPatternsBeyondItsBounds)
{
    camera.addInteger("Address", valueAddress, 0x0A000000, 0xC0A8FFFF);
    open();
    setWord(valueAddress, 0xC0A80101);
    EXPECT_EQ(read("Address").minimum, smallest);
    EXPECT_EQ(OrvalisSetNodeInt(handle, "Address", -1), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(OrvalisSetNodeInt(handle, "Address", 5), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(word(valueAddress), 0xC0A80101U);
    EXPECT_EQ(OrvalisSetNodeInt(handle, "Address", 0x0A000001), ORVALIS_OK);
    EXPECT_EQ(word(valueAddress), 0x0A000001U);
}

TEST_F(DescribedNodes, longNumbersAreClampedAndWrittenAsTextOnly)
{
    camera.addNode("<Integer Name=\"Long\"><pValue>LongRegister</pValue></Integer>", "Long");
    camera.addNode(registerNode("IntReg", "LongRegister", valueAddress, "<Length>8</Length>"));
    open();
    EXPECT_EQ(OrvalisSetNodeString(handle, "Long", "5000000000"), ORVALIS_OK);
    EXPECT_EQ(read("Long").value, largest);
    EXPECT_EQ(read("Long").maximum, largest);
    EXPECT_EQ(OrvalisSetNodeInt(handle, "Long", 1), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(text("Long"), "5000000000");
}

TEST_F(DescribedNodes, withoutBoundsTheValueDeterminesTheRange)
{
    camera.addNode("<Integer Name=\"Free\"><Value>5</Value></Integer>", "Free");
    open();
    EXPECT_EQ(read("Free").value, 5);
    EXPECT_EQ(OrvalisSetNodeInt(handle, "Free", -6), ORVALIS_OK);
    EXPECT_EQ(read("Free").value, -6);
    EXPECT_EQ(OrvalisSetNodeString(handle, "Free", "5000000000"), ORVALIS_OK);
    EXPECT_EQ(OrvalisSetNodeInt(handle, "Free", 6), ORVALIS_ERROR_ACCESS_DENIED);
}

TEST_F(DescribedNodes, aWriteOnlyNumberIsWrittenUnchecked)
{
    camera.addNode("<Integer Name=\"Key\"><pValue>KeyRegister</pValue></Integer>", "Key");
    camera.addNode(registerNode("IntReg", "KeyRegister", valueAddress, "<Length>4</Length>", "WO"));
    open();
    OIntNode node{};
    EXPECT_EQ(OrvalisGetNodeInt(handle, "Key", &node), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(OrvalisSetNodeInt(handle, "Key", 0x1234), ORVALIS_OK);
    EXPECT_EQ(word(valueAddress), 0x1234U);
}

// --- Sizes that a description states ---

TEST_F(DescribedNodes, longTextIsTruncated)
{
    camera.addNode(
        registerNode("StringReg", "Endless", valueAddress, "<Length>2000000000</Length>"),
        "Endless");
    open();
    for (unsigned i = 0; i < 64; ++i) {
        setWord(valueAddress + 4 * i, 0x61616161); // 256 times "a", and no NUL
    }
    traffic->reset();
    EXPECT_EQ(text("Endless"), std::string(ORVALIS_TEXT_SIZE - 1, 'a'));
    EXPECT_LE(traffic->bytesRead, std::uint64_t{ORVALIS_TEXT_SIZE});
}

TEST_F(DescribedNodes, textIsWrittenWithoutTheRestOfItsRegister)
{
    camera.addNode(
        registerNode("StringReg", "Endless", valueAddress, "<Length>2000000000</Length>"),
        "Endless");
    camera.addNode("<String Name=\"Name\"><pValue>Endless</pValue></String>", "Name");
    open();
    for (const char *name : {"Endless", "Name"}) {
        setWord(valueAddress + 8, 0xFFFFFFFF);
        EXPECT_EQ(OrvalisSetNodeString(handle, name, "camera"), ORVALIS_OK);
        EXPECT_EQ(text(name), "camera");
        EXPECT_EQ(word(valueAddress + 8), 0xFFFFFFFFU) << "nothing is written after the NUL";
        EXPECT_EQ(OrvalisSetNodeString(handle, name, "four"), ORVALIS_OK);
        EXPECT_EQ(text(name), "four");
        EXPECT_EQ(OrvalisSetNodeString(handle, name, ""), ORVALIS_OK);
        EXPECT_EQ(text(name), "");
    }
}

TEST_F(DescribedNodes, textOfARegisterThatFitsIsWrittenWhole)
{
    camera.addString("Name", valueAddress, 16);
    open();
    EXPECT_EQ(OrvalisSetNodeString(handle, "Name", "sixteen letters!"), ORVALIS_OK);
    EXPECT_EQ(text("Name"), "sixteen letters!");
    EXPECT_EQ(OrvalisSetNodeString(handle, "Name", "seventeen letters"),
              ORVALIS_ERROR_OUT_OF_RANGE);
}

TEST_F(DescribedNodes, impossibleLengthsAreRefused)
{
    const std::vector<std::string> types{"IntReg", "FloatReg", "StringReg"};
    const std::vector<std::string> lengths{"<Length>-5</Length>",
                                           "<Length>4000000000000000000</Length>",
                                           "<Length>0</Length>", "<pLength>Size</pLength>"};
    camera.addNode("<Integer Name=\"Size\"><pValue>SizeRegister</pValue></Integer>", "Size");
    camera.addNode("<IntReg Name=\"SizeRegister\"><Address>4096</Address><Length>8</Length>"
                   "<AccessMode>RW</AccessMode><pPort>Device</pPort><Sign>Signed</Sign>"
                   "<Endianess>BigEndian</Endianess></IntReg>");
    for (const std::string &type : types) {
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            const std::string name = type + std::to_string(i);
            camera.addNode(registerNode(type, name, valueAddress + 16, lengths[i]), name);
        }
    }
    open();
    setWord(valueAddress, 0xFFFFFFFF); // Size is -1
    setWord(valueAddress + 4, 0xFFFFFFFF);
    for (const std::string &type : types) {
        for (std::size_t i = 0; i < lengths.size(); ++i) {
            const std::string name = type + std::to_string(i);
            char value[ORVALIS_TEXT_SIZE] = {};
            EXPECT_EQ(OrvalisGetNodeString(handle, name.c_str(), value), ORVALIS_ERROR_DEVICE)
                << name;
            EXPECT_EQ(OrvalisSetNodeString(handle, name.c_str(), "1"), ORVALIS_ERROR_DEVICE)
                << name;
            ONodeInfo info{};
            EXPECT_EQ(OrvalisGetNodeInfo(handle, name.c_str(), &info), ORVALIS_OK) << name;
        }
    }
}

TEST_F(DescribedNodes, circularNodesAreRefused)
{
    camera.addNode("<Integer Name=\"A\"><pValue>B</pValue></Integer>", "A");
    camera.addNode("<Integer Name=\"B\"><pValue>A</pValue></Integer>", "B");
    camera.addNode("<Integer Name=\"C\"><pIsAvailable>C</pIsAvailable><Value>1</Value></Integer>",
                   "C");
    camera.addNode("<IntSwissKnife Name=\"D\"><pVariable Name=\"X\">D</pVariable>"
                   "<Formula>X+1</Formula></IntSwissKnife>",
                   "D");
    camera.addNode("<Command Name=\"E\"><pValue>A</pValue><CommandValue>1</CommandValue></Command>",
                   "E");
    camera.addNode("<Enumeration Name=\"F\"><EnumEntry Name=\"One\"><pIsAvailable>A</pIsAvailable>"
                   "<Value>0</Value></EnumEntry><Value>0</Value></Enumeration>",
                   "F");
    open();
    OIntNode node{};
    for (const char *name : {"A", "B", "D"}) {
        EXPECT_EQ(OrvalisGetNodeInt(handle, name, &node), ORVALIS_ERROR_DEVICE) << name;
        EXPECT_EQ(OrvalisSetNodeInt(handle, name, 1), ORVALIS_ERROR_DEVICE) << name;
    }
    EXPECT_EQ(read("C").value, 1) << "whose availability depends on its value, which is no loop";
    EXPECT_EQ(OrvalisSetNodeCommand(handle, "E"), ORVALIS_ERROR_DEVICE);
    EXPECT_EQ(OrvalisSetNodeEnum(handle, "F", "One"), ORVALIS_OK);
    ONodeInfo info{};
    for (const char *name : {"A", "B", "C", "D", "E", "F"}) {
        EXPECT_EQ(OrvalisGetNodeInfo(handle, name, &info), ORVALIS_OK) << name;
    }
    EXPECT_EQ(text("F"), "One") << "an entry with an unreadable state is offered";
}

/// Bounds that depend on each other's values are not circular.
TEST_F(DescribedNodes, boundsMayDependOnEachOther)
{
    for (const auto &[name, other, address] :
         {std::tuple{"Width", "OffsetX", "4096"}, std::tuple{"OffsetX", "Width", "4100"}}) {
        camera.addNode("<Integer Name=\"" + std::string(name) + "\"><pValue>" + name +
                           "Register</pValue><Min>0</Min><pMax>" + name + "Max</pMax></Integer>",
                       name);
        camera.addNode(registerNode("IntReg", name + std::string("Register"),
                                    static_cast<unsigned>(std::stoul(address)),
                                    "<Length>4</Length>"));
        camera.addNode("<IntSwissKnife Name=\"" + std::string(name) +
                       "Max\"><pVariable Name=\"OTHER\">" + other +
                       "</pVariable><Formula>1000-OTHER</Formula></IntSwissKnife>");
    }
    open();
    EXPECT_EQ(OrvalisSetNodeInt(handle, "Width", 600), ORVALIS_OK);
    EXPECT_EQ(read("OffsetX").maximum, 400);
    EXPECT_EQ(OrvalisSetNodeInt(handle, "OffsetX", 401), ORVALIS_ERROR_OUT_OF_RANGE);
}

/// Each of these formulas reads the one below twice: 2 to the power of 40 registers.
TEST_F(DescribedNodes, nodesWithTooManyRegistersAreRefused)
{
    constexpr int levels = 40;
    camera.addNode(registerNode("IntReg", "Level0", valueAddress, "<Length>4</Length>"));
    for (int i = 1; i <= levels; ++i) {
        const std::string below = "Level" + std::to_string(i - 1);
        camera.addNode("<IntSwissKnife Name=\"Level" + std::to_string(i) +
                       "\"><pVariable Name=\"X\">" + below + "</pVariable><pVariable Name=\"Y\">" +
                       below + "</pVariable><Formula>X+Y</Formula></IntSwissKnife>");
    }
    camera.addNode("<Integer Name=\"Small\"><pValue>Level4</pValue></Integer>", "Small");
    camera.addNode("<Integer Name=\"Huge\"><pValue>Level40</pValue></Integer>", "Huge");
    open();
    setWord(valueAddress, 3);
    EXPECT_EQ(read("Small").value, 48);
    OIntNode node{};
    EXPECT_EQ(OrvalisGetNodeInt(handle, "Huge", &node), ORVALIS_ERROR_DEVICE);
}

TEST_F(DescribedNodes, endlessListsAreTruncated)
{
    std::string entries;
    for (int i = 0; i < 3000; ++i) {
        const std::string number = std::to_string(i);
        entries += "<EnumEntry Name=\"E" + number + "\"><pIsAvailable>There</pIsAvailable><Value>" +
                   number + "</Value></EnumEntry>";
    }
    camera.addNode(registerNode("IntReg", "There", valueAddress, "<Length>4</Length>"));
    camera.addNode("<Enumeration Name=\"PixelFormat\">" + entries +
                       "<pValue>Format</pValue></Enumeration>",
                   "PixelFormat");
    camera.addNode(registerNode("IntReg", "Format", valueAddress + 4, "<Length>4</Length>"));
    open();
    setWord(valueAddress, 1);
    std::int32_t count = 0;
    EXPECT_EQ(OrvalisGetNumAvailablePixelFormats(handle, &count), ORVALIS_OK);
    EXPECT_EQ(count, 512);
    EXPECT_LE(traffic->reads, 600U);
    traffic->reset();
    EXPECT_EQ(OrvalisSetPixelFormatStr(handle, "E100"), ORVALIS_OK);
    EXPECT_LE(traffic->reads, 5U);
    EXPECT_EQ(word(valueAddress + 4), 100U);
}

} // namespace
