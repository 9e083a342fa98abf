// SPDX-License-Identifier: MIT
// The tables in docs/simulated-cameras.md must match the program. ORVALIS_UPDATE_DOCUMENT=1 in the
// environment writes them.
#include "library/simulated/RegisterFile.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <sstream>

namespace orvalis::simulated {
namespace {

constexpr std::string_view kBegin = "<!-- begin: node tables -->\n";
constexpr std::string_view kEnd = "<!-- end: node tables -->\n";

std::string number(double value)
{
    std::ostringstream text;
    text << std::setprecision(10) << value;
    return text.str();
}

std::string addressText(const NodeSpec &spec)
{
    std::ostringstream text;
    text << "0x" << std::hex << std::uppercase << std::setw(4) << std::setfill('0') << spec.address;
    if (spec.words() > 1)
        text << " + " << std::dec << spec.words() * 4 << " B";
    return text.str();
}

std::string typeText(const NodeSpec &spec)
{
    constexpr const char *kTypes[] = {"",        "command", "",        "string",  "enumeration",
                                      "integer", "float",   "boolean", "category"};
    std::string text = kTypes[spec.type];
    if (spec.type == ORVALIS_NODE_COMMAND)
        return text + (spec.access == ORVALIS_ACCESS_WRITE_ONLY ? ", WO" : "");
    text += spec.access == ORVALIS_ACCESS_READ_ONLY    ? ", RO"
            : spec.access == ORVALIS_ACCESS_WRITE_ONLY ? ", WO"
                                                       : "";
    return text + (spec.has(kLockable) ? ", locked" : "");
}

std::string valueText(const NodeSpec &spec, const RegisterFile &registers)
{
    std::string text;
    if (spec.type == ORVALIS_NODE_ENUMERATION) {
        for (const EntrySpec &entry : spec.entries)
            text += (text.empty() ? "" : ", ") + std::string(entry.name) + " = " +
                    (entry.value > 999 ? "PFNC code" : number(entry.value));
    } else if (spec.type == ORVALIS_NODE_INTEGER || spec.type == ORVALIS_NODE_FLOAT) {
        if (spec.access == ORVALIS_ACCESS_READ_ONLY)
            return std::string(spec.unit);
        const Range range = registers.bounds(spec, spec.address);
        text = number(range.minimum) + " to " + number(spec.range.maximum);
        if (range.increment > 1)
            text += " by " + number(range.increment);
        if (!spec.unit.empty())
            text += " " + std::string(spec.unit);
        text += "; " + number(registers.number(spec, spec.address));
    } else if (spec.type == ORVALIS_NODE_BOOLEAN && spec.access == ORVALIS_ACCESS_READ_WRITE) {
        text = number(spec.range.initial);
    }
    return text;
}

void writeCategory(std::ostream &out, const NodeTable &table, const RegisterFile &registers,
                   const std::string &name)
{
    const NodeSpec &spec = *table.find(name);
    out << "### " << name << "\n\n" << spec.description << "\n\n";
    out << "| address | node | type | values; factory value | description "
           "|\n|---|---|---|---|---|\n";
    for (const std::string &child : table.children(name)) {
        const NodeSpec &node = *table.find(child);
        if (!node.isCategory())
            out << "| " << addressText(node) << " | " << child << " | " << typeText(node) << " | "
                << valueText(node, registers) << " | " << node.description << " |\n";
    }
    out << '\n';
    for (const std::string &child : table.children(name))
        if (table.find(child)->isCategory())
            writeCategory(out, table, registers, child);
}

/// All nodes of the colour camera, and those that only the thermal camera has.
std::string makeTables()
{
    std::ostringstream out;
    const RegisterFile color(cameraModels()[1], 0), thermal(cameraModels()[3], 0);
    for (const std::string &name : color.table().children("Root"))
        writeCategory(out, color.table(), color, name);
    writeCategory(out, thermal.table(), thermal, "ThermalControl");
    return out.str();
}

TEST(Document, showsTheTablesOfTheProgram)
{
    std::ifstream in(ORVALIS_DOCUMENT);
    std::stringstream buffer;
    buffer << in.rdbuf();
    const std::string text = buffer.str();
    const std::size_t begin = text.find(kBegin), end = text.find(kEnd);
    ASSERT_TRUE(begin != std::string::npos && end != std::string::npos);
    const std::string head = text.substr(0, begin + kBegin.size()) + "\n";
    const std::string fresh = head + makeTables() + text.substr(end);
    if (std::getenv("ORVALIS_UPDATE_DOCUMENT"))
        std::ofstream(ORVALIS_DOCUMENT) << fresh;
    else
        EXPECT_EQ(text, fresh);
}

} // namespace
} // namespace orvalis::simulated
