// SPDX-License-Identifier: MIT
// A node map that a test defines.
#pragma once

#include "library/core/NodeMap.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace orvalis::test {

/// One node. `value` holds numbers of every type; enumeration entries are numbered from 0.
struct ScriptedNode {
    ONodeType type = ORVALIS_NODE_INTEGER;
    double value = 0;
    double minimum = 0;
    double maximum = 100;
    double increment = 1;
    std::vector<std::string> entries{};
    std::vector<std::string> children{};
    std::string text{};
    OAccessMode access = ORVALIS_ACCESS_READ_WRITE;
    std::string selector{};                   ///< enumeration that selects an entry of `selected`
    std::map<std::string, double> selected{}; ///< values by selector entry
    std::vector<std::int64_t> entryValues{};  ///< values of the entries, if not 0, 1, 2 ...
};

ScriptedNode integerNode(double value, double minimum, double maximum, double increment = 1);
ScriptedNode floatNode(double value, double minimum, double maximum);
ScriptedNode booleanNode(bool value);
ScriptedNode enumNode(std::vector<std::string> entries, int current = 0);
ScriptedNode textNode(std::string text);
ScriptedNode commandNode();

/// Fill `nodes` before use; afterwards access them through with().
class ScriptedNodes : public NodeMap {
public:
    std::map<std::string, ScriptedNode, std::less<>> nodes;
    /// Runs after every write, under the lock, to update dependent nodes.
    std::function<void()> afterWrite;
    /// Runs before every access, without the lock.
    std::function<void()> beforeAccess;
    /// The result of every access while it is not ORVALIS_OK.
    OResult failure = ORVALIS_OK;

    void with(const std::function<void()> &change);
    /// Writes so far, as "Width=640", "TriggerMode=On", "TriggerSoftware()".
    std::vector<std::string> writes();

    OResult list(std::string_view category, std::vector<std::string> &children) override;
    OResult info(std::string_view name, NodeInfo &info) override;
    OResult getInteger(std::string_view name, IntegerValue &value) override;
    OResult setInteger(std::string_view name, std::int64_t value) override;
    OResult getFloat(std::string_view name, FloatValue &value) override;
    OResult setFloat(std::string_view name, double value) override;
    OResult getBoolean(std::string_view name, bool &value) override;
    OResult setBoolean(std::string_view name, bool value) override;
    OResult getEnumeration(std::string_view name, EnumerationValue &value) override;
    OResult setEnumeration(std::string_view name, std::string_view entry) override;
    OResult getText(std::string_view name, std::string &value) override;
    OResult setText(std::string_view name, std::string_view value) override;
    OResult execute(std::string_view name) override;

private:
    using Lock = std::unique_lock<std::mutex>;
    Lock enter();
    OResult find(std::string_view name, ONodeType type, ScriptedNode *&node);
    OResult findWritable(std::string_view name, ONodeType type, ScriptedNode *&node);
    double &valueOf(ScriptedNode &node);
    void wrote(const std::string &what);

    std::mutex mutex_; // guards everything
    std::vector<std::string> writes_;
};

} // namespace orvalis::test
