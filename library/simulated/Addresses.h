// SPDX-License-Identifier: MIT
// Addresses of the registers that the simulation itself reads.
#pragma once

#include <cstdint>

namespace orvalis::simulated::address {

constexpr std::uint32_t kVendorName = 0x0000;
constexpr std::uint32_t kModelName = 0x0040;
constexpr std::uint32_t kSerialNumber = 0x0100;
constexpr std::uint32_t kUserId = 0x0140;
constexpr std::uint32_t kTemperature = 0x0400;
constexpr std::uint32_t kReset = 0x0408;
constexpr std::uint32_t kTimestampLatch = 0x040C;
constexpr std::uint32_t kTimestampValue = 0x0410;
constexpr std::uint32_t kTimestampReset = 0x0414;
constexpr std::uint32_t kUptime = 0x041C;
constexpr std::uint32_t kAlarmEnable = 0x0448;
constexpr std::uint32_t kAlarmTemperature = 0x044C;
constexpr std::uint32_t kAlarmStatus = 0x0450;
constexpr std::uint32_t kAlarmReset = 0x0454;

constexpr std::uint32_t kSensorWidth = 0x1000;
constexpr std::uint32_t kSensorHeight = 0x1004;
constexpr std::uint32_t kWidthMax = 0x1008;
constexpr std::uint32_t kHeightMax = 0x100C;
constexpr std::uint32_t kWidth = 0x1010;
constexpr std::uint32_t kHeight = 0x1014;
constexpr std::uint32_t kOffsetX = 0x1018;
constexpr std::uint32_t kOffsetY = 0x101C;
constexpr std::uint32_t kPixelFormat = 0x1020;
constexpr std::uint32_t kReverseX = 0x1028;
constexpr std::uint32_t kReverseY = 0x102C;
constexpr std::uint32_t kOverlay = 0x1030;
constexpr std::uint32_t kBinningHorizontal = 0x1040;
constexpr std::uint32_t kBinningVertical = 0x1044;
constexpr std::uint32_t kDecimationHorizontal = 0x1048;
constexpr std::uint32_t kDecimationVertical = 0x104C;
constexpr std::uint32_t kTestPattern = 0x1050;

constexpr std::uint32_t kAcquisitionMode = 0x1100;
constexpr std::uint32_t kFrameCount = 0x1104;
constexpr std::uint32_t kFrameRateEnable = 0x1108;
constexpr std::uint32_t kFrameRate = 0x110C;
constexpr std::uint32_t kResultingRate = 0x1110;
constexpr std::uint32_t kExposureTime = 0x1118;
constexpr std::uint32_t kExposureAuto = 0x111C;
constexpr std::uint32_t kReadOutTime = 0x1120;
constexpr std::uint32_t kTriggerSelector = 0x1130;
constexpr std::uint32_t kTriggerSoftware = 0x1144;
constexpr std::uint32_t kBurstFrameCount = 0x1148;
constexpr std::uint32_t kTriggerMode = 0x1150; ///< one for each trigger; so are those below
constexpr std::uint32_t kTriggerSource = 0x1158;
constexpr std::uint32_t kTriggerActivation = 0x1160;
constexpr std::uint32_t kTriggerDelay = 0x1168;

constexpr std::uint32_t kGain = 0x1200;
constexpr std::uint32_t kGainRaw = 0x1204;
constexpr std::uint32_t kGainAuto = 0x1208;
constexpr std::uint32_t kBlackLevel = 0x120C;
constexpr std::uint32_t kGamma = 0x1210;
constexpr std::uint32_t kGammaEnable = 0x1214;
constexpr std::uint32_t kBalanceSelector = 0x1218;
constexpr std::uint32_t kBalanceWhiteAuto = 0x121C;
constexpr std::uint32_t kBalanceRatio = 0x1220; ///< three: red, green, blue

constexpr std::uint32_t kContrast = 0x1300;
constexpr std::uint32_t kHue = 0x1304;
constexpr std::uint32_t kSaturation = 0x1308;
constexpr std::uint32_t kSharpness = 0x130C;
constexpr std::uint32_t kNoiseRemoveEnable = 0x1320;
constexpr std::uint32_t kNoiseRemoveLevel = 0x1324;
constexpr std::uint32_t kWideRangeEnable = 0x1330;
constexpr std::uint32_t kWideRangeStrength = 0x1334;

constexpr std::uint32_t kAutoTarget = 0x1400;
constexpr std::uint32_t kAutoExposureLower = 0x1404;
constexpr std::uint32_t kAutoExposureUpper = 0x1408;
constexpr std::uint32_t kAutoGainUpper = 0x140C;
constexpr std::uint32_t kAutoAreaEnable = 0x1420;
constexpr std::uint32_t kAutoAreaLeft = 0x1424;
constexpr std::uint32_t kAutoAreaTop = 0x1428;
constexpr std::uint32_t kAutoAreaWidth = 0x142C;
constexpr std::uint32_t kAutoAreaHeight = 0x1430;

constexpr std::uint32_t kLutEnable = 0x1500;
constexpr std::uint32_t kKneePoint1X = 0x1510;
constexpr std::uint32_t kKneePoint1Y = 0x1514;
constexpr std::uint32_t kKneePoint2X = 0x1518;
constexpr std::uint32_t kKneePoint2Y = 0x151C;

constexpr std::uint32_t kLineSelector = 0x1700;
constexpr std::uint32_t kDebouncerTime = 0x1704;
constexpr std::uint32_t kLineMode = 0x1710;     ///< one for each line
constexpr std::uint32_t kLineSource = 0x1720;   ///< one for each line
constexpr std::uint32_t kLineInverter = 0x1730; ///< one for each line
constexpr std::uint32_t kLineStatus = 0x1740;   ///< one for each line
constexpr std::uint32_t kStrobeEnable = 0x1750; ///< one for each line

constexpr std::uint32_t kTimerSelector = 0x1800;
constexpr std::uint32_t kTimerDelay = 0x1810;    ///< one for each timer
constexpr std::uint32_t kTimerDuration = 0x1820; ///< one for each timer

constexpr std::uint32_t kUserSetSelector = 0x1900;
constexpr std::uint32_t kUserSetLoad = 0x1904;
constexpr std::uint32_t kUserSetSave = 0x1908;
constexpr std::uint32_t kUserSetDefault = 0x190C;

constexpr std::uint32_t kPayloadSize = 0x1A00;

constexpr std::uint32_t kNucMode = 0x1B00;
constexpr std::uint32_t kNucExecute = 0x1B04;

constexpr std::uint32_t kDelivered = 0x1C00;
constexpr std::uint32_t kFailed = 0x1C04;
constexpr std::uint32_t kUnderruns = 0x1C08;
constexpr std::uint32_t kResent = 0x1C0C;
constexpr std::uint32_t kMissing = 0x1C10;
constexpr std::uint32_t kStatisticsReset = 0x1C14;

constexpr std::uint32_t kMotion = 0x1D00;
constexpr std::uint32_t kNoise = 0x1D04;
constexpr std::uint32_t kIlluminant = 0x1D08;
constexpr std::uint32_t kLine0Rate = 0x1D0C;
constexpr std::uint32_t kLine1Rate = 0x1D10;
constexpr std::uint32_t kFrameLoss = 0x1D14;
constexpr std::uint32_t kRefuseOpens = 0x1D18;
constexpr std::uint32_t kAnswerDelay = 0x1D1C;
constexpr std::uint32_t kLeaveDuration = 0x1D20;
constexpr std::uint32_t kLeaveBus = 0x1D24;
constexpr std::uint32_t kTriggerPerSelector = 0x1D28;
constexpr std::uint32_t kStrobePerLine = 0x1D2C;
constexpr std::uint32_t kRateNeedsEnable = 0x1D30;
constexpr std::uint32_t kLongExposure = 0x1D34;
constexpr std::uint32_t kCommandDuration = 0x1D38;
constexpr std::uint32_t kHoldElsewhere = 0x1D3C;
constexpr std::uint32_t kPayload = 0x1D40;
constexpr std::uint32_t kStallDuration = 0x1D44;
constexpr std::uint32_t kStall = 0x1D48;

constexpr std::uint32_t kExtraNodes = 0x10000; ///< additional nodes for load tests

} // namespace orvalis::simulated::address
