// SPDX-License-Identifier: MIT
// All entry points, called as a program would call them on an unknown camera.
#include "tests/contract/Probes.h"

#include "tests/contract/Contract.h"
#include "tests/contract/FeatureTables.h"

#include <algorithm>
#include <memory>
#include <type_traits>
#include <vector>

namespace contract {

namespace {

using Probes = std::vector<Probe>;

constexpr std::uint32_t kGrabPatience = 30000;
constexpr std::uint32_t kRegistersTried = 0x1000;

/// The first failure of several calls, else the last result.
template <class... Calls> std::int32_t inTurn(Calls... calls)
{
    std::int32_t result = ORVALIS_OK;
    ((result = calls(), result == ORVALIS_OK) && ...);
    return result;
}

template <class Value> using Get = std::int32_t (*)(OCameraHandle, Value *);
template <class Value> using Set = std::int32_t (*)(OCameraHandle, Value);

/// Values other than `value`, the nearest first.
template <class Value> std::vector<Value> othersThan(const Value &value)
{
    if constexpr (std::is_same_v<Value, bool>) {
        return {!value};
    } else if constexpr (std::is_same_v<Value, OSizeInfo>) {
        OSizeInfo half = value;
        half.width /= 2;
        half.height /= 2;
        return {half};
    } else {
        std::vector<Value> others;
        for (const int step : {1, 10, 100, 1000})
            others.insert(others.end(), {static_cast<Value>(value + static_cast<Value>(step)),
                                         static_cast<Value>(value - static_cast<Value>(step))});
        return others;
    }
}

bool same(const OSizeInfo &a, const OSizeInfo &b)
{
    return a.width == b.width && a.height == b.height;
}
template <class Value> bool same(Value a, Value b) { return !(a < b) && !(b < a); }

/// Sets `wanted` and checks that the camera reports it.
template <class Value>
std::int32_t setAndGet(OCameraHandle handle, Get<Value> get, Set<Value> set, const Value &wanted,
                       Value &now)
{
    return inTurn([&] { return set(handle, wanted); }, [&] { return get(handle, &now); });
}

/// Sets another value than the present one, checks that the camera reports a changed value, and
/// restores the old one. If the camera accepts no other value, it must accept the present one.
template <class Value> std::int32_t change(OCameraHandle handle, Get<Value> get, Set<Value> set)
{
    Value before{};
    if (const std::int32_t result = get(handle, &before); result != ORVALIS_OK)
        return result;
    Value now = before;
    bool taken = false;
    for (const Value &other : othersThan(before)) {
        taken = setAndGet(handle, get, set, other, now) == ORVALIS_OK || taken;
        if (!same(now, before))
            break;
    }
    const bool changed = !same(now, before);
    const std::int32_t result = setAndGet(handle, get, set, before, now);
    if (result != ORVALIS_OK)
        return result;
    return changed == taken && same(now, before) ? std::int32_t{ORVALIS_OK} : ORVALIS_ERROR_DEVICE;
}

template <class Value>
void addValue(Probes &all, const std::string &name, Get<Value> get, Set<Value> set)
{
    all.push_back({"OrvalisGet" + name, [=](OCameraHandle handle) {
                       Value value{};
                       return get(handle, &value);
                   }});
    all.push_back(
        {"OrvalisSet" + name, [=](OCameraHandle handle) { return change(handle, get, set); }});
}

template <class Value>
void addBounds(Probes &all, const std::string &name,
               std::int32_t (*bounds)(OCameraHandle, Value *, Value *))
{
    all.push_back({"OrvalisGet" + name + "MinMax", [=](OCameraHandle handle) {
                       Value minimum{};
                       Value maximum{};
                       return bounds(handle, &minimum, &maximum);
                   }});
}

std::int32_t getShutter(OCameraHandle handle, std::uint32_t *value)
{
    bool automatic = false;
    return OrvalisGetShutter(handle, value, &automatic);
}

std::int32_t setShutter(OCameraHandle handle, std::uint32_t value)
{
    return OrvalisSetShutter(handle, value, false);
}

void addNumbers(Probes &all)
{
    for (const IntegerFeature &feature : kIntegers) {
        addValue(all, feature.name, feature.get, feature.set);
        addBounds(all, feature.name, feature.bounds);
    }
    for (const NumberFeature &feature : kNumbers)
        addValue(all, feature.name, feature.get, feature.set);
    addValue<std::uint32_t>(all, "Shutter", getShutter, setShutter);
    addBounds(all, "Shutter", OrvalisGetShutterMinMax);
    addValue<float>(all, "Gamma", OrvalisGetGamma, OrvalisSetGamma);
    addBounds(all, "Gamma", OrvalisGetGammaMinMax);
    addValue<float>(all, "FrameRate", OrvalisGetFrameRate, OrvalisSetFrameRate);
    addBounds(all, "FrameRate", OrvalisGetFrameRateMinMax);
    addValue<bool>(all, "TriggerEnable", OrvalisGetTriggerEnable, OrvalisSetTriggerEnable);
    addValue<bool>(all, "StrobeEnable", OrvalisGetStrobeEnable, OrvalisSetStrobeEnable);
}

void addLists(Probes &all)
{
    for (const ListFeature &feature : kLists) {
        const std::string name = feature.name;
        all.push_back({"OrvalisGetNumAvailable" + name + "s", [=](OCameraHandle handle) {
                           std::int32_t count = 0;
                           return feature.count(handle, &count);
                       }});
        all.push_back({"OrvalisGetAvailable" + name + "sIdxToStr", [=](OCameraHandle handle) {
                           char entry[ORVALIS_NAME_SIZE] = "";
                           return feature.at(handle, 0, entry);
                       }});
        all.push_back({"OrvalisGet" + name + "Str", [=](OCameraHandle handle) {
                           char entry[ORVALIS_NAME_SIZE] = "";
                           return feature.get(handle, entry);
                       }});
        all.push_back({"OrvalisSet" + name + "Str", [=](OCameraHandle handle) {
                           char entry[ORVALIS_NAME_SIZE] = "";
                           return inTurn([&] { return feature.get(handle, entry); },
                                         [&] { return feature.set(handle, entry); });
                       }});
    }
}

/// A readable and writable node of this type; empty if the camera has none.
std::string nodeOf(OCameraHandle handle, std::int32_t type)
{
    for (const std::string &name : allNodes(handle)) {
        ONodeInfo info{};
        if (OrvalisGetNodeInfo(handle, name.c_str(), &info) == ORVALIS_OK &&
            static_cast<std::int32_t>(info.type) == type &&
            info.accessMode == ORVALIS_ACCESS_READ_WRITE)
            return name;
    }
    return {};
}

template <class Value, class Read, class Write>
void addNode(Probes &all, const std::string &name, std::int32_t type, Read read, Write write)
{
    const auto use = [=](OCameraHandle handle, bool andWrite) -> std::int32_t {
        const std::string node = nodeOf(handle, type);
        if (node.empty())
            return ORVALIS_ERROR_NOT_SUPPORTED;
        const auto value = std::make_unique<Value>();
        return inTurn([&] { return read(handle, node.c_str(), value.get()); },
                      [&] {
                          return andWrite ? write(handle, node.c_str(), *value)
                                          : std::int32_t{ORVALIS_OK};
                      });
    };
    all.push_back({"OrvalisGetNode" + name, [=](OCameraHandle h) { return use(h, false); }});
    all.push_back({"OrvalisSetNode" + name, [=](OCameraHandle h) { return use(h, true); }});
}

struct Entries : OEnumNode {
    Entries() : OEnumNode{} { count = ORVALIS_ENUM_SIZE; }
};

struct Text {
    char text[ORVALIS_TEXT_SIZE] = "";
};

std::int32_t listRoot(OCameraHandle handle)
{
    const auto list = std::make_unique<ONodeList>();
    list->count = ORVALIS_NODE_LIST_SIZE;
    return OrvalisGetNodeList(handle, "Root", list.get());
}

std::int32_t trigger(OCameraHandle handle)
{
    return OrvalisSetNodeCommand(handle, "TriggerSoftware");
}

void addNodes(Probes &all)
{
    all.push_back({"OrvalisGetNodeList", listRoot});
    all.push_back({"OrvalisGetNodeInfo", [](OCameraHandle handle) {
                       ONodeInfo info{};
                       return OrvalisGetNodeInfo(handle, "Width", &info);
                   }});
    addNode<OIntNode>(all, "Int", ORVALIS_NODE_INTEGER, OrvalisGetNodeInt,
                      [](OCameraHandle h, const char *name, const OIntNode &node) {
                          return OrvalisSetNodeInt(h, name, node.value);
                      });
    addNode<OFloatNode>(all, "Float", ORVALIS_NODE_FLOAT, OrvalisGetNodeFloat,
                        [](OCameraHandle h, const char *name, const OFloatNode &node) {
                            return OrvalisSetNodeFloat(h, name, node.value);
                        });
    addNode<bool>(all, "Boolean", ORVALIS_NODE_BOOLEAN, OrvalisGetNodeBoolean,
                  OrvalisSetNodeBoolean);
    addNode<Entries>(all, "Enum", ORVALIS_NODE_ENUMERATION, OrvalisGetNodeEnum,
                     [](OCameraHandle h, const char *name, const Entries &node) {
                         return OrvalisSetNodeEnum(h, name, node.names[node.currentIndex]);
                     });
    addNode<Text>(
        all, "String", ORVALIS_NODE_INTEGER,
        [](OCameraHandle h, const char *name, Text *value) {
            return OrvalisGetNodeString(h, name, value->text);
        },
        [](OCameraHandle h, const char *name, const Text &value) {
            return OrvalisSetNodeString(h, name, value.text);
        });
    all.push_back({"OrvalisSetNodeCommand", trigger});
}

/// Finds a register to read, or to write: the first one that accepts its own value.
std::int32_t useRegister(OCameraHandle handle, bool andWrite)
{
    std::int32_t result = ORVALIS_ERROR_NOT_SUPPORTED;
    for (std::uint32_t address = 0x100; address < kRegistersTried; address += 4) {
        std::uint32_t data = 0;
        result = inTurn([&] { return OrvalisReadRegister(handle, address, &data); },
                        [&] {
                            return andWrite ? OrvalisWriteRegiser(handle, address, data)
                                            : std::int32_t{ORVALIS_OK};
                        });
        if (result == ORVALIS_OK)
            break;
    }
    return result;
}

using GrabFunction = std::int32_t (*)(OCameraHandle, OImageFrame *, std::uint32_t);

std::int32_t grab(OCameraHandle handle, GrabFunction function)
{
    OSizeInfo size{};
    if (const std::int32_t result = OrvalisGetSizeInfo(handle, &size); result != ORVALIS_OK)
        return result;
    const auto pixels =
        static_cast<std::size_t>(size.maxWidth) * static_cast<std::size_t>(size.maxHeight);
    std::vector<std::uint8_t> plane(pixels * 3);
    OImageFrame frame{};
    frame.raw = frame.rgb = plane.data();
    return function(handle, &frame, kGrabPatience);
}

std::int32_t streamOnce(OCameraHandle handle)
{
    Frames frames;
    const std::int32_t started = OrvalisStartAcquisition(handle, &Frames::callback);
    const bool came = started == ORVALIS_OK && frames.waitFor(1);
    OrvalisStopAcquisition(handle);
    return came || started != ORVALIS_OK ? started : std::int32_t{ORVALIS_ERROR_TIMEOUT};
}

void addPictures(Probes &all)
{
    all.push_back({"OrvalisGetCamInfo", [](OCameraHandle handle) {
                       OCameraInfo info{};
                       return OrvalisGetCamInfo(handle, &info);
                   }});
    all.push_back({"OrvalisSetBayerConversion",
                   [](OCameraHandle handle) { return OrvalisSetBayerConversion(handle, 0); }});
    all.push_back({"OrvalisStartAcquisition", streamOnce});
    all.push_back({"OrvalisStopAcquisition", OrvalisStopAcquisition});
    all.push_back({"OrvalisGrabRGBData",
                   [](OCameraHandle handle) { return grab(handle, OrvalisGrabRGBData); }});
    all.push_back({"OrvalisGrabRAWData",
                   [](OCameraHandle handle) { return grab(handle, OrvalisGrabRAWData); }});
    addValue<OSizeInfo>(all, "SizeInfo", OrvalisGetSizeInfo, OrvalisSetSizeInfo);
}

} // namespace

std::vector<Probe> probes()
{
    Probes all;
    addPictures(all);
    addLists(all);
    addNumbers(all);
    all.push_back({"OrvalisRunSoftwareTrigger", OrvalisRunSoftwareTrigger});
    all.push_back({"OrvalisSetUserDefault", OrvalisSetUserDefault});
    addNodes(all);
    all.push_back({"OrvalisReadRegister", [](OCameraHandle h) { return useRegister(h, false); }});
    all.push_back({"OrvalisWriteRegiser", [](OCameraHandle h) { return useRegister(h, true); }});
    all.push_back({"OrvalisCameraReset", OrvalisCameraReset});
    all.push_back({"OrvalisCloseCamera", OrvalisCloseCamera});
    return all;
}

} // namespace contract
