// SPDX-License-Identifier: MIT
// The feature nodes of a real camera, through Aravis' GenICam engine.
#pragma once

#include "library/core/NodeMap.h"
#include "library/genicam/CameraLink.h"
#include "library/genicam/StreamCounters.h"

#include <atomic>
#include <functional>

namespace orvalis {

/// The camera's own nodes, and the category "StreamStatistics" with our counters.
class GenicamNodeMap : public NodeMap {
public:
    GenicamNodeMap(CameraLink &link, StreamCounters &counters) : link_(link), counters_(counters) {}

    /// Whether the camera acquires for the user. Nodes that have to be locked then are locked here
    /// even if the camera's description does not say so.
    void setStreaming(bool streaming) { streaming_ = streaming; }

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
    using Work = std::function<OResult(ArvGcFeatureNode *, Failure &)>;
    enum class Purpose { Look, Read, Write };

    OResult withNode(std::string_view name, ONodeType type, Purpose purpose, const Work &work);
    OResult withAnyNode(std::string_view name, const Work &work);
    ArvGcFeatureNode *find(std::string_view name) const;
    OAccessMode access(ArvGcFeatureNode *node, Failure &failure) const;
    bool locked(ArvGcFeatureNode *node, Failure &failure) const;

    CameraLink &link_;
    StreamCounters &counters_;
    std::atomic<bool> streaming_{false};
};

} // namespace orvalis
