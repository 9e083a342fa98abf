// SPDX-License-Identifier: MIT
// The tree of feature nodes, and registers.
#include "tests/contract/Contract.h"

#include <cstdlib>
#include <cstring>
#include <memory>

using namespace contract;

namespace {

class Nodes : public CameraTest {
protected:
    ONodeInfo infoOf(const std::string &name)
    {
        ONodeInfo info{};
        EXPECT_EQ(OrvalisGetNodeInfo(handle_, name.c_str(), &info), ORVALIS_OK) << name;
        return info;
    }
    std::int32_t read(const std::string &name, std::int32_t type)
    {
        const char *node = name.c_str();
        switch (type) {
        case ORVALIS_NODE_INTEGER:
            return OrvalisGetNodeInt(handle_, node, &integer_);
        case ORVALIS_NODE_FLOAT:
            return OrvalisGetNodeFloat(handle_, node, &real_);
        case ORVALIS_NODE_BOOLEAN:
            return OrvalisGetNodeBoolean(handle_, node, &boolean_);
        case ORVALIS_NODE_ENUMERATION:
            enum_->count = ORVALIS_ENUM_SIZE;
            return OrvalisGetNodeEnum(handle_, node, enum_.get());
        default:
            return OrvalisGetNodeString(handle_, node, text_);
        }
    }

    OIntNode integer_{};
    OFloatNode real_{};
    bool boolean_ = false;
    std::unique_ptr<OEnumNode> enum_ = std::make_unique<OEnumNode>();
    char text_[ORVALIS_TEXT_SIZE] = "";
};

bool hasValue(std::int32_t type)
{
    return type >= ORVALIS_NODE_STRING && type <= ORVALIS_NODE_BOOLEAN;
}

bool isReadable(const ONodeInfo &info) { return info.accessMode >= ORVALIS_ACCESS_READ_ONLY; }

} // namespace

TEST_F(Nodes, everyNodeOfTheTreeIsDescribed)
{
    const std::vector<std::string> names = allNodes(handle_);
    EXPECT_GT(names.size(), 10u);
    for (const std::string &name : names) {
        const ONodeInfo info = infoOf(name);
        EXPECT_GE(info.type, ORVALIS_NODE_VALUE) << name;
        EXPECT_LE(info.type, ORVALIS_NODE_CATEGORY) << name;
        EXPECT_GE(info.accessMode, ORVALIS_ACCESS_NOT_IMPLEMENTED) << name;
        EXPECT_LE(info.accessMode, ORVALIS_ACCESS_READ_WRITE) << name;
        EXPECT_LE(info.visibility, 3) << name;
        EXPECT_LT(strnlen(info.displayName, sizeof info.displayName), sizeof info.displayName);
        EXPECT_LT(strnlen(info.description, sizeof info.description), sizeof info.description);
    }
}

TEST_F(Nodes, everyReadableNodeReadsInItsTypeAndAsText)
{
    for (const std::string &name : allNodes(handle_)) {
        const ONodeInfo info = infoOf(name);
        if (!hasValue(info.type) || !isReadable(info))
            continue;
        EXPECT_EQ(read(name, info.type), ORVALIS_OK) << name;
        EXPECT_EQ(OrvalisGetNodeString(handle_, name.c_str(), text_), ORVALIS_OK) << name;
        if (info.type == ORVALIS_NODE_ENUMERATION && enum_->currentIndex >= 0) {
            EXPECT_STREQ(text_, enum_->names[enum_->currentIndex]) << name;
        }
        if (info.type == ORVALIS_NODE_INTEGER) {
            EXPECT_GE(integer_.increment, 1) << name;
        }
    }
}

TEST_F(Nodes, wrongTypesAreRefused)
{
    for (const std::string &name : allNodes(handle_)) {
        const ONodeInfo info = infoOf(name);
        if (info.accessMode < ORVALIS_ACCESS_WRITE_ONLY)
            continue;
        for (const std::int32_t type : {ORVALIS_NODE_INTEGER, ORVALIS_NODE_FLOAT,
                                        ORVALIS_NODE_BOOLEAN, ORVALIS_NODE_ENUMERATION})
            if (type != info.type) {
                EXPECT_EQ(read(name, type), ORVALIS_ERROR_WRONG_TYPE) << name << " as " << type;
            }
        if (info.type != ORVALIS_NODE_COMMAND) {
            EXPECT_EQ(OrvalisSetNodeCommand(handle_, name.c_str()), ORVALIS_ERROR_WRONG_TYPE)
                << name;
        }
        if (!hasValue(info.type)) {
            EXPECT_EQ(read(name, ORVALIS_NODE_STRING), ORVALIS_ERROR_WRONG_TYPE) << name;
        }
    }
}

TEST_F(Nodes, unknownNodesAreNotFound)
{
    const char *name = "NoSuchNode";
    auto list = std::make_unique<ONodeList>();
    list->count = ORVALIS_NODE_LIST_SIZE;
    ONodeInfo info{};
    EXPECT_EQ(OrvalisGetNodeList(handle_, name, list.get()), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(list->count, 0u);
    EXPECT_EQ(OrvalisGetNodeInfo(handle_, name, &info), ORVALIS_ERROR_NOT_FOUND);
    for (const std::int32_t type : {ORVALIS_NODE_INTEGER, ORVALIS_NODE_FLOAT, ORVALIS_NODE_BOOLEAN,
                                    ORVALIS_NODE_ENUMERATION, ORVALIS_NODE_STRING})
        EXPECT_EQ(read(name, type), ORVALIS_ERROR_NOT_FOUND) << type;
    EXPECT_EQ(OrvalisSetNodeInt(handle_, name, 1), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(OrvalisSetNodeFloat(handle_, name, 1), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(OrvalisSetNodeBoolean(handle_, name, true), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(OrvalisSetNodeEnum(handle_, name, "x"), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(OrvalisSetNodeString(handle_, name, "x"), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(OrvalisSetNodeCommand(handle_, name), ORVALIS_ERROR_NOT_FOUND);
}

TEST_F(Nodes, listsRespectTheCapacity)
{
    auto list = std::make_unique<ONodeList>();
    std::memset(list.get(), 0, sizeof *list);
    list->count = 1;
    ASSERT_EQ(OrvalisGetNodeList(handle_, "Root", list.get()), ORVALIS_OK);
    EXPECT_EQ(list->count, 1u);
    EXPECT_NE(list->names[0][0], '\0');
    EXPECT_EQ(list->names[1][0], '\0');
    list->count = 0xFFFFFFFFu;
    ASSERT_EQ(OrvalisGetNodeList(handle_, "Root", list.get()), ORVALIS_OK);
    EXPECT_LE(list->count, std::uint32_t{ORVALIS_NODE_LIST_SIZE});
    list->count = 0;
    ASSERT_EQ(OrvalisGetNodeList(handle_, "Root", list.get()), ORVALIS_OK);
    EXPECT_EQ(list->count, 0u);
    list->count = 5;
    ASSERT_EQ(OrvalisGetNodeList(handle_, "Width", list.get()), ORVALIS_OK) << "no category";
    EXPECT_EQ(list->count, 0u);
}

TEST_F(Nodes, integerBoundsHold)
{
    OIntNode width{};
    ASSERT_EQ(OrvalisGetNodeInt(handle_, "Width", &width), ORVALIS_OK);
    EXPECT_EQ(OrvalisSetNodeInt(handle_, "Width", width.maximum + 1), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(OrvalisSetNodeInt(handle_, "Width", width.minimum - 1), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(OrvalisSetNodeInt(handle_, "Width", width.minimum), ORVALIS_OK);
    if (width.increment > 1 && width.maximum > width.minimum) {
        EXPECT_EQ(OrvalisSetNodeInt(handle_, "Width", width.minimum + width.increment - 1),
                  ORVALIS_OK);
        OIntNode after{};
        EXPECT_EQ(OrvalisGetNodeInt(handle_, "Width", &after), ORVALIS_OK);
        EXPECT_EQ(after.value, width.minimum) << "rounded down";
    }
}

TEST_F(Nodes, textOfANumberIsChecked)
{
    EXPECT_EQ(OrvalisSetNodeString(handle_, "Width", "wide"), ORVALIS_ERROR_BAD_ARGUMENT);
    EXPECT_EQ(OrvalisSetNodeString(handle_, "Width", "-5"), ORVALIS_ERROR_OUT_OF_RANGE);
    ASSERT_EQ(OrvalisGetNodeString(handle_, "Width", text_), ORVALIS_OK);
    EXPECT_EQ(OrvalisSetNodeString(handle_, "Width", text_), ORVALIS_OK);
    EXPECT_EQ(OrvalisSetNodeString(handle_, "PixelFormat", "NoSuchFormat"),
              ORVALIS_ERROR_NOT_FOUND);
}

TEST_F(Nodes, lockedNodesAreReadOnlyWhileStreaming)
{
    const bool lockable = infoOf("Width").lockable != 0;
    start();
    ASSERT_TRUE(frames_.waitFor(1));
    if (!lockable)
        GTEST_SKIP() << "the camera does not lock its width";
    EXPECT_EQ(infoOf("Width").accessMode, ORVALIS_ACCESS_READ_ONLY);
    EXPECT_EQ(OrvalisSetNodeInt(handle_, "Width", 64), ORVALIS_ERROR_ACCESS_DENIED);
    ASSERT_EQ(OrvalisStopAcquisition(handle_), ORVALIS_OK);
    EXPECT_EQ(infoOf("Width").accessMode, ORVALIS_ACCESS_READ_WRITE);
}

TEST_F(Nodes, namesWithoutNulAreBounded)
{
    const std::vector<char> name(ORVALIS_TEXT_SIZE, 'W');
    EXPECT_EQ(OrvalisGetNodeInt(handle_, name.data(), &integer_), ORVALIS_ERROR_NOT_FOUND);
}

TEST_F(Nodes, registersAreChecked)
{
    std::uint32_t data = 0;
    for (const std::uint32_t address : {1u, 6u, 0xFFFFFFFFu}) {
        EXPECT_EQ(OrvalisReadRegister(handle_, address, &data), ORVALIS_ERROR_BAD_ARGUMENT);
        EXPECT_EQ(OrvalisWriteRegiser(handle_, address, 0), ORVALIS_ERROR_BAD_ARGUMENT);
    }
    // The GigE Vision test camera crashes on a read of memory that it does not have.
    const char *backends = std::getenv("ORVALIS_BACKENDS");
    if (backends && std::string(backends) == "simulated") {
        EXPECT_EQ(OrvalisReadRegister(handle_, 0xFFFFFFFCu, &data), ORVALIS_ERROR_NOT_FOUND);
    }
    EXPECT_EQ(OrvalisReadRegister(handle_, 0, &data), ORVALIS_OK);
}
