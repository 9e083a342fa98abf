// SPDX-License-Identifier: MIT
// Builds one camera's node table from the common rows.
#include "library/simulated/NodeTable.h"

#include "library/simulated/NodeRows.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace orvalis::simulated {
namespace {

/// A value in a row that depends on the model.
struct ModelValue {
    std::uint32_t address;
    double Range::*field;
    double (*value)(const CameraModel &);
};

constexpr auto kWidthOf = [](const CameraModel &m) { return double(m.width); };
constexpr auto kHeightOf = [](const CameraModel &m) { return double(m.height); };

const std::array kModelValues = std::to_array<ModelValue>({
    {address::kSensorWidth, &Range::initial, kWidthOf},
    {address::kSensorHeight, &Range::initial, kHeightOf},
    {address::kWidthMax, &Range::initial, kWidthOf},
    {address::kHeightMax, &Range::initial, kHeightOf},
    {address::kWidth, &Range::initial, kWidthOf},
    {address::kWidth, &Range::maximum, kWidthOf},
    {address::kHeight, &Range::initial, kHeightOf},
    {address::kHeight, &Range::maximum, kHeightOf},
    {address::kOffsetX, &Range::maximum,
     [](const CameraModel &m) { return m.width - double(kSmallestWidth); }},
    {address::kOffsetY, &Range::maximum,
     [](const CameraModel &m) { return m.height - double(kSmallestHeight); }},
    {address::kPixelFormat, &Range::initial,
     [](const CameraModel &m) { return double(m.formats.front()); }},
    {address::kFrameRate, &Range::initial, [](const CameraModel &m) { return m.rateDefault; }},
    {address::kFrameRate, &Range::maximum, [](const CameraModel &m) { return m.maximumRate; }},
    {address::kExposureTime, &Range::initial,
     [](const CameraModel &m) { return m.exposureDefault; }},
    {address::kExposureTime, &Range::minimum,
     [](const CameraModel &m) { return m.exposureMinimum; }},
    {address::kGamma, &Range::maximum, [](const CameraModel &m) { return m.gammaMaximum; }},
});

bool isOn(const NodeSpec &spec, const CameraModel &model)
{
    return (!spec.has(kColorOnly) || model.color) && (!spec.has(kThermalOnly) || model.thermal);
}

constexpr std::size_t kExtraNodesInCategory = 100;

} // namespace

std::uint32_t NodeSpec::words() const
{
    if (isCategory())
        return 0;
    return type == ORVALIS_NODE_STRING ? kTextBytes / 4 : selectorCount(selector);
}

NodeTable::NodeTable(const CameraModel &model, std::size_t extraNodes)
{
    for (const auto rows : {deviceNodes(), acquisitionNodes(), pictureNodes(), automaticNodes(),
                            connectionNodes(), simulationNodes()})
        for (const NodeSpec &spec : rows)
            if (isOn(spec, model))
                add(spec, model);
    addExtraNodes(extraNodes, model);
    index();
}

std::string_view NodeTable::keep(std::string text) { return texts_.emplace_back(std::move(text)); }

void NodeTable::add(const NodeSpec &spec, const CameraModel &model)
{
    NodeSpec node = spec;
    for (const ModelValue &value : kModelValues)
        if (!node.isCategory() && value.address == node.address)
            node.range.*value.field = value.value(model);
    if (node.address == address::kPixelFormat && !node.isCategory()) {
        auto &offered = entries_.emplace_back();
        for (const std::uint32_t code : model.formats)
            offered.push_back(*std::ranges::find(spec.entries, code, &EntrySpec::value));
        node.entries = offered;
    }
    if (node.type == ORVALIS_NODE_STRING && node.address == address::kModelName)
        node.text = model.model;
    if (node.type == ORVALIS_NODE_STRING && node.address == address::kSerialNumber)
        node.text = model.serialNumber;
    nodes_.push_back(node);
}

void NodeTable::addExtraNodes(std::size_t count, const CameraModel &model)
{
    std::string_view parent;
    for (std::size_t i = 0; i < count; ++i) {
        if (i % kExtraNodesInCategory == 0) {
            parent = keep("ExtraFeatures" + std::to_string(i / kExtraNodesInCategory));
            add(category(parent, "Root", "Features without a meaning, for load tests."), model);
        }
        const auto address = static_cast<std::uint32_t>(address::kExtraNodes + 4 * i);
        add(integer(keep("ExtraNode" + std::to_string(i)), parent, address, kReadWrite,
                    {0, 1000000, 1, double(i)}, "", "A number without a meaning, for load tests."),
            model);
    }
}

void NodeTable::index()
{
    for (std::size_t i = 0; i < nodes_.size(); ++i) {
        const NodeSpec &spec = nodes_[i];
        byName_.emplace(spec.name, i);
        if (spec.has(kAlias))
            continue;
        for (std::uint32_t word = 0; word < spec.words(); ++word)
            byAddress_.emplace(spec.address + 4 * word, i);
        memoryWords_ = std::max<std::size_t>(memoryWords_, spec.address / 4 + spec.words());
    }
}

const NodeSpec *NodeTable::find(std::string_view name) const
{
    const auto found = byName_.find(name);
    return found == byName_.end() ? nullptr : &nodes_[found->second];
}

const NodeSpec *NodeTable::at(std::uint32_t address) const
{
    const auto found = byAddress_.find(address);
    return found == byAddress_.end() ? nullptr : &nodes_[found->second];
}

std::vector<std::string> NodeTable::children(std::string_view category) const
{
    std::vector<std::string> names;
    for (const NodeSpec &spec : nodes_)
        if (!category.empty() && spec.category == category)
            names.emplace_back(spec.name);
    return names;
}

std::string displayNameOf(std::string_view name)
{
    const auto upper = [&](std::size_t i) {
        return i < name.size() && std::isupper(static_cast<unsigned char>(name[i])) != 0;
    };
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool starts =
            upper(i) && i > 0 && (!upper(i - 1) || (i + 1 < name.size() && !upper(i + 1)));
        if (starts)
            text += ' ';
        text += name[i];
    }
    return text;
}

} // namespace orvalis::simulated
