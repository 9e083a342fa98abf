// SPDX-License-Identifier: MIT
// Compares what works on each camera with docs/backends.md. ORVALIS_CONTRACT_COLUMN names the
// column of the camera under test; ORVALIS_UPDATE_DOCUMENT=1 in the environment writes that column.
#include "tests/contract/Contract.h"
#include "tests/contract/EntryPoints.h"
#include "tests/contract/Probes.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

using namespace contract;

namespace {

using Row = std::vector<std::string>;
using Results = std::vector<std::pair<std::string, std::string>>; // entry point, result

constexpr const char *kWorks = "works";
constexpr const char *kNotSupported = "not supported by this device";

/// Cells of a line "| a | b |"; empty for other lines.
Row cellsOf(const std::string &line)
{
    Row cells;
    if (!line.starts_with("| "))
        return cells;
    for (std::size_t at = 2; at < line.size();) {
        const std::size_t end = std::min(line.find(" |", at), line.size());
        cells.push_back(line.substr(at, end - at));
        at = end + 3;
    }
    return cells;
}

std::string lineOf(const Row &cells)
{
    std::string line = "|";
    for (const std::string &cell : cells)
        line += " " + cell + " |";
    return line;
}

/// Replaces one column of the document's table. Does not add missing rows.
std::string withColumn(const std::string &text, const std::string &column, const Results &results)
{
    std::istringstream in(text);
    std::string fresh;
    std::size_t index = 0;
    for (std::string line; std::getline(in, line); fresh += line + "\n") {
        Row cells = cellsOf(line);
        const auto heading = std::find(cells.begin(), cells.end(), column);
        if (heading != cells.end())
            index = static_cast<std::size_t>(heading - cells.begin());
        const auto row = std::find_if(results.begin(), results.end(), [&](const auto &result) {
            return !cells.empty() && cells[0] == "`" + result.first + "`";
        });
        if (index != 0 && index < cells.size() && row != results.end()) {
            cells[index] = row->second;
            line = lineOf(cells);
        }
    }
    return fresh;
}

std::string meaning(std::int32_t result)
{
    if (result == ORVALIS_OK)
        return kWorks;
    return result == ORVALIS_ERROR_NOT_SUPPORTED ? kNotSupported
                                                 : "fails: " + std::to_string(result);
}

/// Results of the calls without a handle: they have succeeded if a test has a camera.
Results withoutHandle()
{
    Results results;
    for (const char *name : {"OrvalisInit", "OrvalisUninit", "OrvalisNumberOfCameras",
                             "OrvalisGetDisplayName", "OrvalisGetCameraID", "OrvalisOpenCamera"})
        results.emplace_back(name, kWorks);
    return results;
}

class BackendTable : public CameraTest {};

} // namespace

TEST_F(BackendTable, probesCoverEveryEntryPoint)
{
    std::set<std::string> all;
    std::set<std::string> probed;
    for (const EntryPoint &entry : entryPoints())
        all.insert(entry.name);
    for (const Probe &probe : probes())
        probed.insert(probe.name);
    EXPECT_EQ(probed, all);
}

TEST_F(BackendTable, matchesTheDocument)
{
    const char *column = std::getenv("ORVALIS_CONTRACT_COLUMN");
    if (!column)
        GTEST_SKIP() << "no column of the document is this camera's: ORVALIS_CONTRACT_COLUMN";
    Results results = withoutHandle();
    for (const Probe &probe : probes()) {
        const std::int32_t result = probe.use(handle_);
        EXPECT_TRUE(result == ORVALIS_OK || result == ORVALIS_ERROR_NOT_SUPPORTED)
            << probe.name << ": " << result;
        results.emplace_back(probe.name, meaning(result));
    }
    handle_ = nullptr; // the last probe has closed it
    std::ifstream in(ORVALIS_DOCUMENT);
    std::stringstream text;
    text << in.rdbuf();
    const std::string fresh = withColumn(text.str(), column, results);
    for (const auto &[name, what] : results)
        EXPECT_NE(fresh.find("| `" + name + "` |"), std::string::npos) << name << " has no row";
    if (std::getenv("ORVALIS_UPDATE_DOCUMENT"))
        std::ofstream(ORVALIS_DOCUMENT) << fresh;
    else
        EXPECT_EQ(text.str(), fresh);
    EXPECT_NE(fresh.find("| " + std::string(column) + " |"), std::string::npos);
}
