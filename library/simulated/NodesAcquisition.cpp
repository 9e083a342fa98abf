// SPDX-License-Identifier: MIT
// Node tables: region, pixel format, acquisition, trigger.
#include "library/simulated/NodeRows.h"

#include <array>

namespace orvalis::simulated {
namespace {

constexpr std::array<EntrySpec, 6> kPixelFormats{{{"Mono8", format::kMono8},
                                                  {"Mono12", format::kMono12},
                                                  {"BayerGR8", format::kBayerGR8},
                                                  {"BayerGR12", format::kBayerGR12},
                                                  {"RGB8", format::kRgb8},
                                                  {"YUV422_8", format::kYuv422}}};
constexpr std::array<EntrySpec, 3> kAcquisitionModes{
    {{"Continuous", 0}, {"SingleFrame", 1}, {"MultiFrame", 2}}};
constexpr std::array<EntrySpec, 1> kExposureModes{{{"Timed", 0}}};
constexpr std::array<EntrySpec, 2> kTriggerSelectors{{{"FrameStart", 0}, {"FrameBurstStart", 1}}};
constexpr std::array<EntrySpec, 2> kOffOn{{{"Off", 0}, {"On", 1}}};
constexpr std::array<EntrySpec, 3> kTriggerSources{{{"Software", 0}, {"Line0", 1}, {"Line1", 2}}};
constexpr std::array<EntrySpec, 2> kEdges{{{"RisingEdge", 0}, {"FallingEdge", 1}}};

constexpr std::array<EntrySpec, 10> kTestPatterns{{{"Off", 0},
                                                   {"Black", 1},
                                                   {"White", 2},
                                                   {"GreyHorizontalRamp", 3},
                                                   {"GreyVerticalRamp", 4},
                                                   {"GreyHorizontalRampMoving", 5},
                                                   {"GreyVerticalRampMoving", 6},
                                                   {"HorizontalLineMoving", 7},
                                                   {"VerticalLineMoving", 8},
                                                   {"ColorBar", 9}}};

constexpr std::string_view kFormat = "ImageFormatControl";
constexpr std::string_view kAcquisition = "AcquisitionControl";

constexpr auto kAcquisitionRows = std::to_array<NodeSpec>({
    category(kFormat, "Root", "Size and format of the pictures."),
    integer("SensorWidth", kFormat, address::kSensorWidth, kReadOnly, {0, 65535, 1, 0}, "px",
            "Pixels in a row of the sensor.", kKept),
    integer("SensorHeight", kFormat, address::kSensorHeight, kReadOnly, {0, 65535, 1, 0}, "px",
            "Rows of the sensor.", kKept),
    integer("WidthMax", kFormat, address::kWidthMax, kReadOnly, {0, 65535, 1, 0}, "px",
            "Largest width of the region of interest: what binning and decimation leave of the "
            "sensor.",
            kKept),
    integer("HeightMax", kFormat, address::kHeightMax, kReadOnly, {0, 65535, 1, 0}, "px",
            "Largest height of the region of interest.", kKept),
    integer("Width", kFormat, address::kWidth, kReadWrite, {kSmallestWidth, 0, kRegionStep, 0},
            "px",
            "Width of the region of interest. OffsetX and Width together stay within WidthMax.",
            kLockable),
    integer("Height", kFormat, address::kHeight, kReadWrite, {kSmallestHeight, 0, kRegionStep, 0},
            "px", "Height of the region of interest. A lower region is read out faster.",
            kLockable),
    integer("OffsetX", kFormat, address::kOffsetX, kReadWrite, {0, 0, kRegionStep, 0}, "px",
            "Left edge of the region of interest.", kLockable),
    integer("OffsetY", kFormat, address::kOffsetY, kReadWrite, {0, 0, kRegionStep, 0}, "px",
            "Upper edge of the region of interest.", kLockable),
    enumeration("PixelFormat", kFormat, address::kPixelFormat, kReadWrite, kPixelFormats, 0,
                "How a pixel is sent. Formats with more bytes per pixel may lower the largest "
                "frame rate.",
                kLockable),
    integer("BinningHorizontal", kFormat, address::kBinningHorizontal, kReadWrite, {1, 4, 1, 1}, "",
            "Neighbours in a row that are read as one pixel, their mean. Less noise, and a smaller "
            "picture: the region and its largest size follow.",
            kLockable),
    integer("BinningVertical", kFormat, address::kBinningVertical, kReadWrite, {1, 4, 1, 1}, "",
            "Rows that are read as one, their mean.", kLockable),
    integer("DecimationHorizontal", kFormat, address::kDecimationHorizontal, kReadWrite,
            {1, 4, 1, 1}, "",
            "One of so many pixels in a row is read, after binning. Both together make at most 8 "
            "pixels into one.",
            kLockable),
    integer("DecimationVertical", kFormat, address::kDecimationVertical, kReadWrite, {1, 4, 1, 1},
            "", "One of so many rows is read, after binning.", kLockable),
    boolean("ReverseX", kFormat, address::kReverseX, kReadWrite, false,
            "Mirrors the picture left to right.", kLockable),
    boolean("ReverseY", kFormat, address::kReverseY, kReadWrite, false,
            "Turns the picture upside down.", kLockable),
    enumeration(
        "TestPattern", kFormat, address::kTestPattern, kReadWrite, kTestPatterns, 0,
        "A picture that the camera computes instead of taking one. Ramps rise by 1/255 of "
        "full scale from pixel to pixel and begin again every 256 pixels; what moves does so "
        "by one pixel from frame to frame. Neither light nor noise has an effect."),
    boolean("FrameNumberOverlay", kFormat, address::kOverlay, kReadWrite, false,
            "Writes the number of the frame into its upper left corner: 32 fields of 8 x 8 "
            "pixels, bit 0 first, white for 1 and black for 0, a row of fields for each 256 "
            "pixels or less of width. The first frame of a stream is number 0."),

    category(kAcquisition, "Root", "When pictures are taken, and how long they are exposed."),
    enumeration("AcquisitionMode", kAcquisition, address::kAcquisitionMode, kReadWrite,
                kAcquisitionModes, 0,
                "How many frames a start of the acquisition delivers: all, one, or "
                "AcquisitionFrameCount.",
                kLockable),
    integer("AcquisitionFrameCount", kAcquisition, address::kFrameCount, kReadWrite,
            {1, 65535, 1, 1}, "", "Frames of an acquisition in the mode \"MultiFrame\".",
            kLockable),
    boolean("AcquisitionFrameRateEnable", kAcquisition, address::kFrameRateEnable, kReadWrite, true,
            "Holds the camera to AcquisitionFrameRate. Off: as fast as it can."),
    real("AcquisitionFrameRate", kAcquisition, address::kFrameRate, kReadWrite, {0.1, 0, 0, 0},
         "fps", "Frames per second. A long exposure may hold the camera below it."),
    real("ResultingFrameRate", kAcquisition, address::kResultingRate, kReadOnly, {0, 100000, 0, 0},
         "fps", "Frames per second that come out of frame rate, exposure time and read-out.",
         kKept),
    real("SensorReadoutTime", kAcquisition, address::kReadOutTime, kReadOnly, {0, 1e9, 0, 0}, "us",
         "Shortest time between two frames of this region and pixel format.", kKept | kExpert),
    enumeration("ExposureMode", kAcquisition, 0x1114, kReadWrite, kExposureModes, 0,
                "What ends the exposure."),
    real("ExposureTime", kAcquisition, address::kExposureTime, kReadWrite, {0, 2000000, 0, 0}, "us",
         "How long the sensor collects light. Read-only while ExposureAuto is on."),
    enumeration("ExposureAuto", kAcquisition, address::kExposureAuto, kReadWrite, kAutomatic, 0,
                "Lets the camera find the exposure time for AutoExposureTargetBrightness."),
    enumeration("TriggerSelector", kAcquisition, address::kTriggerSelector, kReadWrite,
                kTriggerSelectors, 0,
                "What one trigger starts: a frame, or AcquisitionBurstFrameCount frames."),
    enumeration("TriggerMode", kAcquisition, address::kTriggerMode, kReadWrite, kOffOn, 0,
                "On: frames are taken only when the trigger fires.", 0, Selector::Trigger),
    enumeration("TriggerSource", kAcquisition, address::kTriggerSource, kReadWrite, kTriggerSources,
                0, "Where triggers come from.", 0, Selector::Trigger),
    enumeration("TriggerActivation", kAcquisition, address::kTriggerActivation, kReadWrite, kEdges,
                0, "Edge of the line's signal that counts.", 0, Selector::Trigger),
    real("TriggerDelay", kAcquisition, address::kTriggerDelay, kReadWrite, {0, 4000, 0, 0}, "us",
         "Time from the trigger to the start of the exposure.", 0, Selector::Trigger),
    command("TriggerSoftware", kAcquisition, address::kTriggerSoftware, kReadWrite,
            "Fires the trigger. It counts while the camera waits for it: TriggerMode is on, "
            "TriggerSource is \"Software\" and the acquisition runs."),
    integer("AcquisitionBurstFrameCount", kAcquisition, address::kBurstFrameCount, kReadWrite,
            {1, 255, 1, 1}, "", "Frames for one trigger of the kind FrameBurstStart."),
});

} // namespace

std::span<const NodeSpec> acquisitionNodes() { return kAcquisitionRows; }

} // namespace orvalis::simulated
