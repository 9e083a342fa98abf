// SPDX-License-Identifier: MIT
// Node tables: the device itself, its temperature, its lens, its user sets.
#include "library/simulated/NodeRows.h"

#include <array>

namespace orvalis::simulated {
namespace {

constexpr std::array<EntrySpec, 1> kScanTypes{{{"Areascan", 0}}};
constexpr std::array<EntrySpec, 2> kThermometers{{{"Sensor", 0}, {"Mainboard", 1}}};
constexpr std::array<EntrySpec, 3> kIndicatorModes{
    {{"Active", 0}, {"Inactive", 1}, {"ErrorStatus", 2}}};
constexpr std::array<EntrySpec, 3> kIrisModes{{{"Manual", 0}, {"Automatic", 1}, {"Open", 2}}};
constexpr std::array<EntrySpec, 4> kUserSets{
    {{"Default", 0}, {"UserSet1", 1}, {"UserSet2", 2}, {"UserSet3", 3}}};
constexpr std::array<EntrySpec, 3> kNucModes{{{"Off", 0}, {"Manual", 1}, {"Automatic", 2}}};

constexpr auto kDeviceRows = std::to_array<NodeSpec>({
    category("Root", "", "Top of the feature tree."),

    category("DeviceControl", "Root", "Who the camera is and how it is doing."),
    text("DeviceVendorName", "DeviceControl", address::kVendorName, kReadOnly, "Orvalis",
         "Name of the camera's maker."),
    text("DeviceModelName", "DeviceControl", address::kModelName, kReadOnly, "",
         "Name of the camera's model."),
    text("DeviceVersion", "DeviceControl", 0x0080, kReadOnly, "SIM-2",
         "Version of the camera's hardware."),
    text("DeviceFirmwareVersion", "DeviceControl", 0x00C0, kReadOnly, "2.4.1",
         "Version of the camera's own program."),
    text("DeviceSerialNumber", "DeviceControl", address::kSerialNumber, kReadOnly, "",
         "Serial number of the camera."),
    text("DeviceUserID", "DeviceControl", address::kUserId, kReadWrite, "",
         "A name of your own for the camera, up to 63 characters."),
    text("DeviceManufacturerInfo", "DeviceControl", 0x0180, kReadOnly, "Simulated camera",
         "What the maker has to say about the camera."),
    text("DeviceMaintenanceKey", "DeviceControl", 0x01C0, kWriteOnly, "",
         "Key for the maker's service. It can be written, but not read.", kKept | kGuru),
    enumeration("DeviceScanType", "DeviceControl", 0x0418, kReadOnly, kScanTypes, 0,
                "How the sensor scans the scene.", kKept | kExpert),
    integer("DeviceUptime", "DeviceControl", address::kUptime, kReadOnly, {0, 2147483647, 1, 0},
            "s", "Time since the camera was switched on.", kKept | kExpert),
    enumeration("DeviceIndicatorMode", "DeviceControl", 0x0420, kReadWrite, kIndicatorModes, 0,
                "What the light on the camera's back shows.", kExpert),
    integer("TimestampLatchValue", "DeviceControl", address::kTimestampValue, kReadOnly,
            {0, 2147483647, 1, 0}, "ms", "Camera time at the last TimestampLatch.",
            kKept | kExpert),
    command("TimestampLatch", "DeviceControl", address::kTimestampLatch, kWriteOnly,
            "Takes note of the camera time, to be read from TimestampLatchValue.", kKept | kExpert),
    command("TimestampReset", "DeviceControl", address::kTimestampReset, kWriteOnly,
            "Sets the camera time to zero.", kKept | kExpert),
    command("DeviceReset", "DeviceControl", address::kReset, kReadWrite,
            "Reboots the camera. It leaves the bus for about three seconds and comes back with "
            "its power-on user set."),

    category("TemperatureControl", "Root", "Temperature of the camera and its supervision."),
    enumeration("DeviceTemperatureSelector", "TemperatureControl", 0x0404, kReadWrite,
                kThermometers, 0, "Place that DeviceTemperature is measured at."),
    real("DeviceTemperature", "TemperatureControl", address::kTemperature, kReadOnly,
         {-40, 120, 0, 38}, "C", "Temperature inside of the camera.", kKept),
    category("DeviceTemperatureRange", "TemperatureControl",
             "Temperatures between which the camera is meant to work."),
    integer("DeviceTemperatureLow", "DeviceTemperatureRange", 0x0440, kReadWrite, {-40, 20, 1, -10},
            "C", "Lowest temperature that the camera is used at.", kExpert),
    integer("DeviceTemperatureHigh", "DeviceTemperatureRange", 0x0444, kReadWrite, {21, 100, 1, 70},
            "C", "Highest temperature that the camera is used at.", kExpert),
    category("AlarmCommonControls", "TemperatureControl", "Alarm for a camera that gets too hot."),
    boolean("AlarmEnable", "AlarmCommonControls", address::kAlarmEnable, kReadWrite, false,
            "Switches the temperature alarm."),
    real("AlarmTemperature", "AlarmCommonControls", address::kAlarmTemperature, kReadWrite,
         {0, 100, 0, 75}, "C", "Temperature from which on the alarm is raised."),
    boolean("AlarmStatus", "AlarmCommonControls", address::kAlarmStatus, kReadOnly, false,
            "Whether the alarm was raised since the last AlarmReset.", kKept),
    command("AlarmReset", "AlarmCommonControls", address::kAlarmReset, kWriteOnly,
            "Takes the alarm back."),
    category("TemperatureCompensations", "TemperatureControl",
             "Corrections for the warmth of the sensor."),
    boolean("TemperatureCompensationEnable", "TemperatureCompensations", 0x0460, kReadWrite, true,
            "Switches the correction of the dark signal.", kExpert),
    real("TemperatureCompensationOffset", "TemperatureCompensations", 0x0464, kReadWrite,
         {-10, 10, 0, 0}, "C", "Difference between thermometer and sensor.", kExpert),

    category("LensControl", "Root", "Motors of the lens. The simulated lens keeps the settings."),
    enumeration("AutoIrisMode", "LensControl", 0x1600, kReadWrite, kIrisModes, 0,
                "Who moves the iris."),
    category("AutoIris", "LensControl", "The automatic iris."),
    boolean("AutoIrisEnable", "AutoIris", 0x1610, kReadWrite, false,
            "Switches the automatic iris."),
    integer("AutoIrisLevel", "AutoIris", 0x1614, kReadWrite, {0, 100, 1, 50}, "%",
            "Brightness that the automatic iris aims at."),
    category("AutoFocusControl", "LensControl", "The automatic focus."),
    boolean("AutoFocusEnable", "AutoFocusControl", 0x1620, kReadWrite, false,
            "Switches the automatic focus."),
    integer("FocusPosition", "AutoFocusControl", 0x1624, kReadWrite, {0, 1000, 5, 500}, "steps",
            "Position of the focus motor."),
    command("AutoFocusOnce", "AutoFocusControl", 0x1628, kReadWrite, "Focuses once."),

    category("UserSetControl", "Root", "Settings that are kept in the camera."),
    enumeration("UserSetSelector", "UserSetControl", address::kUserSetSelector, kReadWrite,
                kUserSets, 0, "User set that UserSetLoad and UserSetSave act on.", kKept),
    command("UserSetLoad", "UserSetControl", address::kUserSetLoad, kReadWrite,
            "Loads the selected user set. Refused while the camera streams.", kKept | kLockable),
    command("UserSetSave", "UserSetControl", address::kUserSetSave, kReadWrite,
            "Saves all settings to the selected user set. \"Default\" cannot be written."),
    enumeration("UserSetDefaultSelector", "UserSetControl", address::kUserSetDefault, kReadWrite,
                kUserSets, 0, "User set that the camera loads when it is switched on.", kKept),

    category("ThermalControl", "Root", "What only a thermal camera has.", kThermalOnly),
    enumeration("NUCMode", "ThermalControl", address::kNucMode, kReadWrite, kNucModes, 2,
                "Non-uniformity correction: evens out the differences between the pixels. With "
                "\"Off\" the columns of the sensor show.",
                kThermalOnly),
    command("NUCExecute", "ThermalControl", address::kNucExecute, kReadWrite,
            "Corrects the non-uniformity now.", kKept | kThermalOnly),
});

} // namespace

std::span<const NodeSpec> deviceNodes() { return kDeviceRows; }

} // namespace orvalis::simulated
