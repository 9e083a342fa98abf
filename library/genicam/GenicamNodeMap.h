// SPDX-License-Identifier: MIT
// The feature nodes of a real camera, through Aravis' GenICam engine.
#pragma once

#include "library/core/NodeMap.h"
#include "library/genicam/CameraLink.h"
#include "library/genicam/NodeReach.h"
#include "library/genicam/RegisterMemo.h"
#include "library/genicam/StreamCounters.h"

#include <atomic>
#include <functional>
#include <optional>
#include <set>
#include <string>

namespace orvalis {

/// The camera's own nodes, and the category "StreamStatistics" with our counters.
class GenicamNodeMap : public NodeMap {
public:
    GenicamNodeMap(CameraLink &link, StreamCounters &counters) : link_(link), counters_(counters) {}

    /// Whether the camera acquires for the user. Nodes that have to be locked then are locked here
    /// even if the camera's description does not say so.
    void setStreaming(bool streaming) { streaming_ = streaming; }

    /// Something was written past the nodes.
    void forgetRegisters() { stale_ = true; }

    void beginAccess() override;
    void endAccess() override { --accesses_; }
    OResult list(std::string_view category, std::vector<std::string> &children) override;
    OResult info(std::string_view name, NodeInfo &info) override;
    OResult getInteger(std::string_view name, IntegerValue &value) override;
    OResult setInteger(std::string_view name, std::int64_t value) override;
    OResult getFloat(std::string_view name, FloatValue &value) override;
    OResult setFloat(std::string_view name, double value) override;
    OResult peekNumber(std::string_view name, FloatValue &value) override;
    OResult getPart(std::string_view name, NumberPart part, FloatValue &value) override;
    OResult getBoolean(std::string_view name, bool &value) override;
    OResult setBoolean(std::string_view name, bool value) override;
    OResult getEnumeration(std::string_view name, EnumerationValue &value) override;
    OResult getEntries(std::string_view name, std::vector<std::string> &entries) override;
    OResult getEntry(std::string_view name, std::string &entry) override;
    OResult setEnumeration(std::string_view name, std::string_view entry) override;
    OResult getText(std::string_view name, std::string &value) override;
    OResult setText(std::string_view name, std::string_view value) override;
    OResult execute(std::string_view name) override;

private:
    using Work = std::function<OResult(ArvGcFeatureNode *, Failure &)>;
    enum class Purpose { Look, Read, Write };

    OResult withNode(std::string_view name, ONodeType type, Purpose purpose, const Work &work);
    OResult withAnyNode(std::string_view name, const Work &work, Purpose purpose = Purpose::Look);
    ArvGcFeatureNode *find(std::string_view name) const;
    OAccessMode access(ArvGcFeatureNode *node, Failure &failure) const;
    bool locked(ArvGcFeatureNode *node, Failure &failure) const;
    void awaitCommand(std::string_view name);
    OResult workOn(ArvGcFeatureNode *node, Purpose purpose, const Work &work);

    CameraLink &link_;
    StreamCounters &counters_;
    // Of the one that has the turn:
    NodeReach reach_;
    std::optional<RegisterMemo> memo_;           ///< from the first use of a node on
    std::set<std::string, std::less<>> endless_; ///< commands that were never done
    std::atomic<bool> streaming_{false};
    std::atomic<int> accesses_{0};   ///< that have begun and not ended
    std::atomic<bool> stale_{false}; ///< what was kept of registers may not be true any more
};

} // namespace orvalis
