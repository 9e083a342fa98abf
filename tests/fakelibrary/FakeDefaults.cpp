// SPDX-License-Identifier: MIT
// Default answers of the recording camera library.
#include "tests/fakelibrary/FakeLibrary.h"

namespace fakeorvalis {

namespace {

Node category(std::vector<std::string> children)
{
    Node node;
    node.type = ORVALIS_NODE_CATEGORY;
    node.access = ORVALIS_ACCESS_READ_ONLY;
    node.children = std::move(children);
    return node;
}

Node integer(std::int32_t value, std::int32_t minimum, std::int32_t maximum, std::int32_t step = 1)
{
    Node node;
    node.type = ORVALIS_NODE_INTEGER;
    node.integer = {value, minimum, maximum, step};
    return node;
}

Node real(double value, double minimum, double maximum)
{
    Node node;
    node.type = ORVALIS_NODE_FLOAT;
    node.real = {value, minimum, maximum, 0};
    return node;
}

Node choice(std::vector<std::string> entries)
{
    Node node;
    node.type = ORVALIS_NODE_ENUMERATION;
    node.text = entries.front();
    node.entries = std::move(entries);
    return node;
}

Node text(std::string value, std::int32_t access)
{
    Node node;
    node.type = ORVALIS_NODE_STRING;
    node.access = access;
    node.text = std::move(value);
    return node;
}

Node plain(std::int32_t type)
{
    Node node;
    node.type = type;
    return node;
}

OCameraInfo colourCamera()
{
    OCameraInfo info{};
    putText(info.cameraId, sizeof info.cameraId, "CAM-A");
    putText(info.displayName, sizeof info.displayName, "Camera A");
    putText(info.vendor, sizeof info.vendor, "Recording");
    putText(info.model, sizeof info.model, "FAKE-128C");
    putText(info.serialNumber, sizeof info.serialNumber, "A");
    putText(info.firmware, sizeof info.firmware, "1.0");
    info.pixelFormat = 0x01080008; // BayerGR8
    info.sensorPixelFormat = info.pixelFormat;
    return info;
}

std::map<std::string, IntegerFeature> defaultIntegers()
{
    return {{"Gain", {10, 0, 48}},          {"Shutter", {10000, 20, 1000000}},
            {"AutoExposure", {50, 0, 100}}, {"BlackLevel", {16, 0, 255}},
            {"Contrast", {508, 0, 1016}},   {"Hue", {508, 0, 1016}},
            {"Saturation", {512, 0, 1023}}, {"Sharpness", {10, 10, 20}},
            {"RGain", {1024, 64, 4095}},    {"GGain", {1024, 64, 4095}},
            {"BGain", {1024, 64, 4095}},    {"TriggerParameter", {1, 1, 255}},
            {"TriggerDelay", {0, 0, 4000}}, {"TriggerNoiseFilter", {0, 0, 1023}},
            {"StrobeDelay", {0, 0, 3900}},  {"StrobeDuration", {1000, 250, 50000}}};
}

std::map<std::string, ListFeature> defaultLists()
{
    return {{"PixelFormat", {{"BayerGR8", "BayerGR12", "RGB8", "Mono8", "Mono12"}, "BayerGR8"}},
            {"WhiteBalance", {{"Off", "Once", "Continuous"}, "Off"}},
            {"TriggerMode", {{"FrameStart", "FrameBurstStart"}, "FrameStart"}},
            {"TriggerSource", {{"Software", "Line0", "Line1"}, "Software"}},
            {"TriggerPolarity", {{"RisingEdge", "FallingEdge"}, "RisingEdge"}},
            {"StrobeMode", {{"ExposureActive", "Timer0Active", "FixedPulse"}, "ExposureActive"}},
            {"StrobePolarity", {{"ActiveHigh", "ActiveLow"}, "ActiveHigh"}}};
}

std::map<std::string, Node> defaultNodes()
{
    return {{"Root", category({"DeviceControl", "ImageFormatControl", "AcquisitionControl",
                               "UserSetControl", "TransportLayerControl"})},
            {"DeviceControl", category({"DeviceVendorName", "DeviceUserID", "DeviceReset"})},
            {"ImageFormatControl", category({"Width", "Height", "PixelFormat", "ReverseX"})},
            {"AcquisitionControl",
             category({"AcquisitionMode", "AcquisitionFrameRate", "ExposureTime", "Gain"})},
            {"UserSetControl",
             category({"UserSetSelector", "UserSetLoad", "UserSetSave", "UserSetDefaultSelector"})},
            {"TransportLayerControl", category({"GevPersistentIPAddress", "GevSCDA"})},
            {"DeviceVendorName", text("Recording", ORVALIS_ACCESS_READ_ONLY)},
            {"DeviceUserID", text("bench", ORVALIS_ACCESS_READ_WRITE)},
            {"DeviceReset", plain(ORVALIS_NODE_COMMAND)},
            {"Width", integer(64, 16, 128, 8)},
            {"Height", integer(48, 16, 96, 8)},
            {"PixelFormat", choice({"BayerGR8", "BayerGR12", "RGB8", "Mono8", "Mono12"})},
            {"ReverseX", plain(ORVALIS_NODE_BOOLEAN)},
            {"AcquisitionMode", choice({"Continuous", "SingleFrame", "MultiFrame"})},
            {"AcquisitionFrameRate", real(30, 1, 120)},
            {"ExposureTime", real(10000, 20, 1000000)},
            {"Gain", real(10, 0, 48)},
            {"UserSetSelector", choice({"Default", "UserSet1", "UserSet2", "UserSet3"})},
            {"UserSetLoad", plain(ORVALIS_NODE_COMMAND)},
            {"UserSetSave", plain(ORVALIS_NODE_COMMAND)},
            {"UserSetDefaultSelector", choice({"Default", "UserSet1", "UserSet2", "UserSet3"})},
            {"GevPersistentIPAddress", integer(0x7f000001, INT32_MIN, INT32_MAX)},
            {"GevSCDA", integer(0x7f000001, INT32_MIN, INT32_MAX)}};
}

} // namespace

State defaultState()
{
    State state;
    state.cameras = {{"CAM-A", "Camera A"}, {"CAM-B", "Camera B"}};
    state.info = colourCamera();
    state.size = {0, 0, 64, 48, 128, 96};
    state.integers = defaultIntegers();
    state.floats = {{"Gamma", {1, 0.25, 4}}, {"FrameRate", {30, 1, 120}}};
    state.switches = {{"TriggerEnable", false}, {"StrobeEnable", false}};
    state.lists = defaultLists();
    state.nodes = defaultNodes();
    state.registers = {{0x0000, 0x00010002}, {0x0100, 0x12345678}, {0x0104, 0}};
    return state;
}

} // namespace fakeorvalis
