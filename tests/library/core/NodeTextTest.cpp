// SPDX-License-Identifier: MIT
// Converting node values to text and back.
#include "library/core/NodeText.h"
#include "tests/library/core/ScriptedNodes.h"

#include <gtest/gtest.h>

using namespace orvalis;
using namespace orvalis::test;

namespace {

class NodeText : public testing::Test {
protected:
    void SetUp() override
    {
        nodes_.nodes["Int"] = integerNode(-42, -1e9, 1e9);
        nodes_.nodes["Float"] = floatNode(2.5, -100, 100);
        nodes_.nodes["Bool"] = booleanNode(true);
        nodes_.nodes["Enum"] = enumNode({"One", "Two"}, 1);
        nodes_.nodes["Text"] = textNode("abc");
        nodes_.nodes["Command"] = commandNode();
        nodes_.nodes["Category"].type = ORVALIS_NODE_CATEGORY;
    }
    std::string read(const char *name)
    {
        std::string text = "unchanged";
        EXPECT_EQ(readAsText(nodes_, name, text), ORVALIS_OK) << name;
        return text;
    }
    OResult write(const char *name, const std::string &text)
    {
        return writeAsText(nodes_, name, text);
    }

    ScriptedNodes nodes_;
};

} // namespace

TEST_F(NodeText, everyTypeReads)
{
    EXPECT_EQ(read("Int"), "-42");
    EXPECT_EQ(read("Float"), "2.5");
    EXPECT_EQ(read("Bool"), "1");
    EXPECT_EQ(read("Enum"), "Two");
    EXPECT_EQ(read("Text"), "abc");
}

TEST_F(NodeText, textThatWasReadCanBeWritten)
{
    for (const char *name : {"Int", "Float", "Bool", "Enum", "Text"})
        EXPECT_EQ(write(name, read(name)), ORVALIS_OK) << name;
}

TEST_F(NodeText, everyTypeWrites)
{
    EXPECT_EQ(write("Int", " 17 "), ORVALIS_OK);
    EXPECT_EQ(write("Int", "+18"), ORVALIS_OK);
    EXPECT_EQ(read("Int"), "18");
    EXPECT_EQ(write("Float", "-1e1"), ORVALIS_OK);
    EXPECT_EQ(read("Float"), "-10");
    EXPECT_EQ(write("Bool", "0"), ORVALIS_OK);
    EXPECT_EQ(read("Bool"), "0");
    EXPECT_EQ(write("Enum", "One"), ORVALIS_OK);
    EXPECT_EQ(write("Text", ""), ORVALIS_OK);
    EXPECT_EQ(read("Text"), "");
}

TEST_F(NodeText, invalidNumberIsABadArgument)
{
    for (const char *text : {"", " ", "x", "1x", "1.5", "--1", "+-1", "0x10"})
        EXPECT_EQ(write("Int", text), ORVALIS_ERROR_BAD_ARGUMENT) << text;
    for (const char *text : {"", "x", "1,5", "1.5.2"})
        EXPECT_EQ(write("Float", text), ORVALIS_ERROR_BAD_ARGUMENT) << text;
    for (const char *text : {"", "2", "yes"})
        EXPECT_EQ(write("Bool", text), ORVALIS_ERROR_BAD_ARGUMENT) << text;
}

TEST_F(NodeText, tooLargeOrTooLongIsOutOfRange)
{
    EXPECT_EQ(write("Int", "99999999999999999999"), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(write("Float", "nan"), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(write("Text", std::string(255, 'x')), ORVALIS_OK);
    EXPECT_EQ(write("Text", std::string(256, 'x')), ORVALIS_ERROR_OUT_OF_RANGE);
}

TEST_F(NodeText, nodesWithoutAValueAreOfTheWrongType)
{
    std::string text = "unchanged";
    for (const char *name : {"Command", "Category"}) {
        EXPECT_EQ(readAsText(nodes_, name, text), ORVALIS_ERROR_WRONG_TYPE) << name;
        EXPECT_EQ(write(name, "1"), ORVALIS_ERROR_WRONG_TYPE) << name;
    }
    EXPECT_EQ(readAsText(nodes_, "Nothing", text), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(write("Enum", "Three"), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_EQ(text, "unchanged");
}
