// SPDX-License-Identifier: MIT
// User sets: their content, and when they are loaded.
#include "tests/library/simulated/Bench.h"

#include "library/simulated/RegisterFile.h"

namespace orvalis::test {
namespace {

class UserSetNodes : public Bench {
protected:
    void save(const char *name)
    {
        set("UserSetSelector", name);
        EXPECT_EQ(nodes().execute("UserSetSave"), ORVALIS_OK);
    }
    void load(const char *name)
    {
        set("UserSetSelector", name);
        EXPECT_EQ(nodes().execute("UserSetLoad"), ORVALIS_OK);
    }
};

TEST_F(UserSetNodes, restoreAllSettings)
{
    open(kColor);
    const simulated::NodeTable table(simulated::cameraModels()[1], 0);
    for (const auto &spec : table.nodes()) {
        if (spec.access != ORVALIS_ACCESS_READ_WRITE || spec.has(simulated::kKept) ||
            spec.has(simulated::kColorOnly))
            continue;
        const std::string name(spec.name);
        IntegerValue number;
        if (spec.type == ORVALIS_NODE_INTEGER) {
            EXPECT_EQ(nodes().getInteger(name, number), ORVALIS_OK) << name;
            const auto other = number.value == number.minimum ? number.maximum : number.minimum;
            EXPECT_EQ(nodes().setInteger(name, other), ORVALIS_OK) << name;
        } else if (spec.type == ORVALIS_NODE_BOOLEAN) {
            EXPECT_EQ(nodes().setBoolean(name, spec.range.initial == 0), ORVALIS_OK) << name;
        }
    }
    const auto readAll = [&] {
        std::vector<std::uint32_t> words;
        for (const auto &spec : table.nodes())
            for (std::uint32_t i = 0; i < spec.words(); ++i) {
                std::uint32_t word = 0;
                if (spec.access == ORVALIS_ACCESS_READ_WRITE && !spec.has(simulated::kKept) &&
                    camera_->readRegister(spec.address + 4 * i, word) == ORVALIS_OK)
                    words.push_back(word);
            }
        return words;
    };
    save("UserSet1");
    const auto saved = readAll();
    load("Default");
    EXPECT_NE(readAll(), saved);
    load("UserSet1");
    EXPECT_EQ(readAll(), saved);
}

TEST_F(UserSetNodes, includeTheValuesBehindSelectors)
{
    open(kColor);
    set("BalanceRatioSelector", "Blue");
    set("BalanceRatio", 3.5);
    set("BalanceRatioSelector", "Red");
    save("UserSet2");
    load("Default");
    set("BalanceRatioSelector", "Blue");
    EXPECT_EQ(real("BalanceRatio"), 1.6);
    load("UserSet2");
    EXPECT_EQ(entry("BalanceRatioSelector"), "Red");
    set("BalanceRatioSelector", "Blue");
    EXPECT_EQ(real("BalanceRatio"), 3.5);
}

TEST_F(UserSetNodes, doNotChangeTheFactorySet)
{
    open(kMono);
    set("UserSetSelector", "Default");
    EXPECT_EQ(nodes().execute("UserSetSave"), ORVALIS_ERROR_ACCESS_DENIED);
}

TEST_F(UserSetNodes, doNotContainFaultsAndAddresses)
{
    open(kMono);
    set("SimulationFrameLoss", 5.0);
    set("GevSCDA", 7);
    EXPECT_EQ(nodes().setText("DeviceUserID", "left camera"), ORVALIS_OK);
    load("Default");
    EXPECT_EQ(real("SimulationFrameLoss"), 5.0);
    EXPECT_EQ(integer("GevSCDA"), 7);
    std::string name;
    EXPECT_EQ(nodes().getText("DeviceUserID", name), ORVALIS_OK);
    EXPECT_EQ(name, "left camera");
}

TEST_F(UserSetNodes, outliveTheLibrary)
{
    open(kMono);
    set("Gain", 7.5);
    save("UserSet3");
    set("UserSetDefaultSelector", "UserSet3");
    camera_.reset();
    bus_ = makeSimulatedBackend(); // powers on the cameras
    open(kMono);
    EXPECT_EQ(entry("UserSetDefaultSelector"), "UserSet3");
    EXPECT_EQ(real("Gain"), 7.5);
}

TEST_F(UserSetNodes, areLoadedAtPowerOnAfterAReset)
{
    open(kMono);
    set("Gain", 3.5);
    save("UserSet1");
    set("UserSetDefaultSelector", "UserSet1");
    set("Gain", 1.0);
    EXPECT_EQ(camera_->reset(), ORVALIS_OK);
    camera_.reset();
    while (bus_->open(kMono, camera_) == ORVALIS_ERROR_NOT_FOUND)
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ASSERT_TRUE(camera_);
    EXPECT_EQ(real("Gain"), 3.5);
}

} // namespace
} // namespace orvalis::test
