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

/// The camera's own nodes, and the library's category "StreamStatistics" with counters.
class GenicamNodeMap : public NodeMap {
public:
    GenicamNodeMap(CameraLink &link, StreamCounters &counters) : link_(link), counters_(counters) {}

    /// Sets whether a stream runs. Some nodes are locked then even if the camera's description does
    /// not lock them.
    void setStreaming(bool streaming) { streaming_ = streaming; }

    /// Call this after writing a register other than through a node.
    void invalidateRegisters() { stale_ = true; }

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
    enum class Purpose { Inspect, Read, Write };

    OResult withNode(std::string_view name, ONodeType type, Purpose purpose, const Work &work);
    OResult withAnyNode(std::string_view name, const Work &work,
                        Purpose purpose = Purpose::Inspect);
    ArvGcFeatureNode *find(std::string_view name) const;
    OAccessMode access(ArvGcFeatureNode *node, Failure &failure) const;
    bool locked(ArvGcFeatureNode *node, Failure &failure) const;
    void awaitCommand(std::string_view name);
    OResult workOn(ArvGcFeatureNode *node, Purpose purpose, const Work &work);

    CameraLink &link_;
    StreamCounters &counters_;
    // Guarded by the link's lock:
    NodeReach reach_;
    std::optional<RegisterMemo> memo_;                    ///< created at the first use of a node
    std::set<std::string, std::less<>> timedOutCommands_; ///< commands that did not finish in time
    std::atomic<bool> streaming_{false};
    std::atomic<int> accesses_{0};   ///< number of accesses in progress
    std::atomic<bool> stale_{false}; ///< cached registers may be out of date
};

} // namespace orvalis
