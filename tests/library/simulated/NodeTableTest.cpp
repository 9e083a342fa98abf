// SPDX-License-Identifier: MIT
// Requirements for every row of the node tables.
#include "library/simulated/NodeTable.h"
#include "library/simulated/RegisterFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace orvalis::simulated {
namespace {

class NodeTables : public ::testing::TestWithParam<const CameraModel *> {
protected:
    const NodeTable table_{*GetParam(), 0};
};

TEST_P(NodeTables, haveAtLeastEightyNodes) { EXPECT_GE(table_.nodes().size(), 80u); }

TEST_P(NodeTables, haveUniqueNames)
{
    std::set<std::string_view> names;
    for (const NodeSpec &spec : table_.nodes())
        EXPECT_TRUE(names.insert(spec.name).second) << spec.name;
}

TEST_P(NodeTables, haveRegistersThatDoNotOverlap)
{
    std::map<std::uint32_t, std::string_view> owners;
    for (const NodeSpec &spec : table_.nodes())
        for (std::uint32_t i = 0; i < spec.words() && !spec.has(kAlias); ++i) {
            const auto [at, fresh] = owners.emplace(spec.address + 4 * i, spec.name);
            EXPECT_TRUE(fresh) << spec.name << " and " << at->second;
        }
}

TEST_P(NodeTables, haveAlignedAddresses)
{
    for (const NodeSpec &spec : table_.nodes())
        EXPECT_EQ(spec.address % 4, 0u) << spec.name;
}

TEST_P(NodeTables, leadFromRootToEveryNode)
{
    std::set<std::string> reached{"Root"};
    std::vector<std::string> open{"Root"};
    while (!open.empty()) {
        const std::string parent = open.back();
        open.pop_back();
        const auto children = table_.children(parent);
        EXPECT_LE(children.size(), std::size_t(ORVALIS_NODE_LIST_SIZE)) << parent;
        for (const std::string &child : children) {
            EXPECT_TRUE(reached.insert(child).second) << child;
            open.push_back(child);
        }
    }
    EXPECT_EQ(reached.size(), table_.nodes().size());
}

TEST_P(NodeTables, haveNoEmptyCategories)
{
    for (const NodeSpec &spec : table_.nodes())
        if (spec.isCategory()) {
            EXPECT_FALSE(table_.children(spec.name).empty()) << spec.name;
        }
}

TEST_P(NodeTables, describeEveryNode)
{
    for (const NodeSpec &spec : table_.nodes()) {
        EXPECT_GE(spec.description.size(), 10u) << spec.name;
        EXPECT_EQ(spec.description.back(), '.') << spec.name;
        EXPECT_LT(spec.description.size(), 1024u) << spec.name;
        EXPECT_LT(spec.unit.size(), std::size_t(ORVALIS_NAME_SIZE)) << spec.name;
        EXPECT_LT(spec.name.size(), std::size_t(ORVALIS_NAME_SIZE)) << spec.name;
    }
}

TEST_P(NodeTables, haveFactoryValuesWithinBounds)
{
    const RegisterFile registers(*GetParam(), 0);
    for (const NodeSpec &spec : table_.nodes()) {
        if (spec.type == ORVALIS_NODE_ENUMERATION) {
            EXPECT_TRUE(std::ranges::any_of(spec.entries, [&](const EntrySpec &entry) {
                return entry.value == registers.word(spec.address);
            })) << spec.name;
        } else if (spec.type == ORVALIS_NODE_INTEGER || spec.type == ORVALIS_NODE_FLOAT) {
            const Range range = registers.bounds(spec, spec.address);
            EXPECT_LE(range.minimum, range.maximum) << spec.name;
            EXPECT_GE(registers.number(spec, spec.address), range.minimum) << spec.name;
            EXPECT_LE(registers.number(spec, spec.address), range.maximum) << spec.name;
            const double steps = range.increment > 0 ? range.increment : 1e-9;
            const double over =
                std::remainder(registers.number(spec, spec.address) - range.minimum, steps);
            EXPECT_NEAR(over, 0, 1e-8) << spec.name;
        }
    }
}

TEST_P(NodeTables, haveTheNodesThatViewersLookFor)
{
    const char *const kNames[] = {"LUTKneePointControls",
                                  "SnowNoiseRemoveControls",
                                  "AutoIris",
                                  "AutoIrisMode",
                                  "WDGControl",
                                  "AutoAreaControl",
                                  "AutoFocusControl",
                                  "DeviceTemperatureRange",
                                  "AlarmCommonControls",
                                  "TemperatureCompensations",
                                  "GevSCDA",
                                  "GevPersistentIPAddress",
                                  "GevPersistentSubnetMask",
                                  "GevPersistentDefaultGateway",
                                  "Width",
                                  "Height",
                                  "OffsetX",
                                  "OffsetY",
                                  "PixelFormat",
                                  "AcquisitionFrameRate",
                                  "AcquisitionMode",
                                  "ExposureTime",
                                  "ExposureAuto",
                                  "ExposureMode",
                                  "Gain",
                                  "GainRaw",
                                  "GainAuto",
                                  "BlackLevel",
                                  "Gamma",
                                  "Contrast",
                                  "Sharpness",
                                  "AutoExposureTargetBrightness",
                                  "TriggerSelector",
                                  "TriggerMode",
                                  "TriggerSource",
                                  "TriggerActivation",
                                  "TriggerDelay",
                                  "TriggerSoftware",
                                  "LineSelector",
                                  "LineSource",
                                  "LineInverter",
                                  "StrobeEnable",
                                  "TimerSelector",
                                  "TimerDelay",
                                  "TimerDuration",
                                  "Timer1Delay",
                                  "UserSetSelector",
                                  "UserSetLoad",
                                  "UserSetSave",
                                  "UserSetDefaultSelector",
                                  "StreamStatistics",
                                  "SimulationControl",
                                  "DeviceReset"};
    for (const char *name : kNames)
        EXPECT_NE(table_.find(name), nullptr) << name;
}

TEST_P(NodeTables, haveColorAndThermalNodesWhereTheyBelong)
{
    for (const char *name : {"Hue", "Saturation", "BalanceRatio", "BalanceWhiteAuto"})
        EXPECT_EQ(table_.find(name) != nullptr, GetParam()->color) << name;
    EXPECT_EQ(table_.find("NUCMode") != nullptr, GetParam()->thermal);
}

TEST_P(NodeTables, haveChildrenBelowTheSubcategoriesOfTheThirdLevel)
{
    for (const char *name :
         {"LUTKneePointControls", "SnowNoiseRemoveControls", "AutoIris", "WDGControl",
          "AutoAreaControl", "AutoFocusControl", "DeviceTemperatureRange", "AlarmCommonControls",
          "TemperatureCompensations"}) {
        EXPECT_GE(table_.children(name).size(), 2u) << name;
        EXPECT_EQ(table_.find(table_.find(name)->category)->category, "Root") << name;
    }
}

INSTANTIATE_TEST_SUITE_P(AllModels, NodeTables,
                         ::testing::Values(&cameraModels()[0], &cameraModels()[1],
                                           &cameraModels()[2], &cameraModels()[3]),
                         [](const auto &parameter) {
                             std::string name(parameter.param->model);
                             std::ranges::replace(name, '-', '_');
                             return name;
                         });

TEST(NodeTable, makesExtraNodesInCategoriesThatAListCanHold)
{
    const NodeTable table(cameraModels()[0], 250);
    EXPECT_EQ(table.children("ExtraFeatures0").size(), 100u);
    EXPECT_EQ(table.children("ExtraFeatures2").size(), 50u);
    ASSERT_NE(table.find("ExtraNode249"), nullptr);
    EXPECT_EQ(table.at(table.find("ExtraNode249")->address), table.find("ExtraNode249"));
}

TEST(NodeTable, findsNoNodeForForeignNamesAndAddresses)
{
    const NodeTable table(cameraModels()[0], 0);
    EXPECT_EQ(table.find(""), nullptr);
    EXPECT_EQ(table.find("width"), nullptr);
    EXPECT_EQ(table.at(0xFFFFFFFC), nullptr);
    EXPECT_TRUE(table.children("").empty());
    EXPECT_TRUE(table.children("Width").empty());
}

TEST(NodeTable, makesDisplayNamesOutOfNames)
{
    EXPECT_EQ(displayNameOf("ExposureTime"), "Exposure Time");
    EXPECT_EQ(displayNameOf("DeviceUserID"), "Device User ID");
    EXPECT_EQ(displayNameOf("NUCMode"), "NUC Mode");
    EXPECT_EQ(displayNameOf("Gain"), "Gain");
    EXPECT_EQ(displayNameOf(""), "");
}

TEST(CameraModels, haveNamesThatFitTheirBuffers)
{
    for (const CameraModel &model : cameraModels()) {
        EXPECT_LT(model.id.size(), std::size_t(ORVALIS_NAME_SIZE));
        EXPECT_LT(model.displayName.size(), std::size_t(ORVALIS_NAME_SIZE));
    }
}

TEST(CameraModels, reachTheRatesThatTheyAreMeantFor)
{
    const auto rate = [](const CameraModel &m) {
        return 1e6 / shortestPeriod(m, m.width, m.height, m.formats.front());
    };
    EXPECT_GE(rate(cameraModels()[0]), 200.0);
    EXPECT_GE(rate(cameraModels()[1]), 60.0);
    EXPECT_NEAR(rate(cameraModels()[2]), 1000.0, 0.001);
    EXPECT_GE(rate(cameraModels()[3]), 60.0);
}

} // namespace
} // namespace orvalis::simulated
