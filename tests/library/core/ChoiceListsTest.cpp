// SPDX-License-Identifier: MIT
// Cached lists of names: read once from the camera, never out of date.
#include "tests/library/core/LibraryFixture.h"

#include <atomic>
#include <functional>

using namespace orvalis;
using namespace orvalis::test;

namespace {

class Lists : public LibraryFixture {
protected:
    void SetUp() override
    {
        LibraryFixture::SetUp();
        open();
        offer({"One", "Two", "Three"});
    }
    void offer(const std::vector<std::string> &names)
    {
        script_->nodes.with([&] { script_->nodes.nodes["TriggerSource"] = enumNode(names); });
    }
    std::int32_t count()
    {
        std::int32_t found = -1;
        EXPECT_EQ(OrvalisGetNumAvailableTriggerSources(handle_, &found), ORVALIS_OK);
        return found;
    }
    std::string name(std::int32_t index)
    {
        char found[ORVALIS_NAME_SIZE] = {};
        const std::int32_t result =
            OrvalisGetAvailableTriggerSourcesIdxToStr(handle_, index, found);
        return result == ORVALIS_OK ? found : std::to_string(result);
    }
    const std::string kNotFound = std::to_string(ORVALIS_ERROR_NOT_FOUND);
};

} // namespace

TEST_F(Lists, areReadOnceForAllTheirNames)
{
    EXPECT_EQ(count(), 3);
    std::atomic<int> accesses{0};
    script_->nodes.beforeAccess = [&] { ++accesses; };
    EXPECT_EQ(name(0) + name(1) + name(2), "OneTwoThree");
    EXPECT_EQ(name(3), kNotFound);
    EXPECT_EQ(name(-1), kNotFound);
    EXPECT_EQ(accesses, 0);
    script_->nodes.beforeAccess = nullptr;
}

TEST_F(Lists, areThoseOfTheLastCount)
{
    EXPECT_EQ(count(), 3);
    offer({"Other"});
    EXPECT_EQ(name(2), "Three") << "the number that the program has is the number of names";
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(name(0), "Other");
}

TEST_F(Lists, canBeReadWithoutACount) { EXPECT_EQ(name(1), "Two"); }

TEST_F(Lists, areReadAgainAfterAWrite)
{
    const std::vector<std::function<void()>> writes{
        [&] { OrvalisSetGain(handle_, 1, false); },
        [&] { OrvalisSetNodeInt(handle_, "Width", 32); },
        [&] { OrvalisSetNodeEnum(handle_, "TriggerSource", "Two"); },
        [&] { OrvalisSetNodeString(handle_, "Nonsense", "Two"); },
        [&] { OrvalisSetNodeCommand(handle_, "Nonsense"); },
        [&] { OrvalisWriteRegiser(handle_, 0, 1); },
        [&] { OrvalisSetUserDefault(handle_); },
        [&] { OrvalisStartAcquisition(handle_, frameCallback); },
        [&] { OrvalisStopAcquisition(handle_); },
    };
    for (std::size_t i = 0; i < writes.size(); ++i) {
        offer({"Old"});
        EXPECT_EQ(count(), 1) << i;
        offer({"New"});
        EXPECT_EQ(name(0), "Old") << i;
        writes[i]();
        EXPECT_EQ(name(0), "New") << i;
    }
}

TEST_F(Lists, readDuringAWriteAreNotCached)
{
    // Read the list between the beginning and the end of a write.
    const std::shared_ptr<Camera> camera = Library::instance().find(handle_);
    camera->lists().changed();
    EXPECT_EQ(count(), 3);
    offer({"New"});
    camera->lists().changed();
    EXPECT_EQ(name(0), "New");
}

TEST_F(Lists, areKeptWhenReadingFails)
{
    EXPECT_EQ(count(), 3);
    script_->nodes.with([&] { script_->nodes.failure = ORVALIS_ERROR_DEVICE; });
    std::int32_t unchanged = 77;
    EXPECT_EQ(OrvalisGetNumAvailableTriggerSources(handle_, &unchanged), ORVALIS_ERROR_DEVICE);
    EXPECT_EQ(unchanged, 77);
    EXPECT_EQ(name(1), "Two");
    OrvalisSetGain(handle_, 1, false);
    EXPECT_EQ(name(1), std::to_string(ORVALIS_ERROR_DEVICE));
    script_->nodes.with([&] { script_->nodes.failure = ORVALIS_OK; });
}
