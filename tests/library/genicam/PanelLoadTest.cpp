// SPDX-License-Identifier: MIT
// The round trips to a camera when the control panel opens: on a slow camera each takes some
// milliseconds.
#include "tests/library/genicam/DescribedLibrary.h"

using namespace genicamtest;

namespace {

/// Allocates consecutive register addresses.
class Registers {
public:
    unsigned next(unsigned words = 1) { return std::exchange(next_, next_ + 4 * words); }

private:
    unsigned next_ = 0x1000;
};

std::vector<std::string> numbered(const std::string &name, int count)
{
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i) {
        names.push_back(name + std::to_string(i));
    }
    return names;
}

/// A typical camera: selectors, automatic modes, lists whose entries depend on registers, bounds
/// that depend on other settings.
class PanelLoad : public DescribedLibrary {
protected:
    void describe()
    {
        describeTrigger();
        describeLines();
        describeImage();
        describeFormat();
        camera.addEnumeration("UserSetSelector", registers.next(), {"Default", "UserSet1"});
        camera.addEnumeration("UserSetDefault", registers.next(), {"Default", "UserSet1"});
    }
    void describeTrigger()
    {
        camera.addEnumeration("TriggerSelector", triggerSelector = registers.next(),
                              {"AcquisitionStart", "FrameStart", "FrameBurstStart"});
        camera.addEnumeration("TriggerMode", registers.next(3), {"Off", "On"}, "TriggerSelector");
        camera.addEnumeration("TriggerSource", triggerSource = registers.next(3),
                              {"Software", "Line0", "Line1", "Line2", "Counter0End", "Timer0End"},
                              "TriggerSelector");
        camera.addEnumeration("TriggerActivation", registers.next(3),
                              {"RisingEdge", "FallingEdge", "AnyEdge"}, "TriggerSelector");
        camera.addFloat("TriggerDelay", registers.next(3), 0, 1000000, "TriggerSelector");
        camera.addInteger("AcquisitionBurstFrameCount", registers.next(), 0, 255);
    }
    void describeLines()
    {
        camera.addEnumeration("LineSelector", registers.next(),
                              {"Line0", "Line1", "Line2", "Line3"});
        camera.addEnumeration("LineMode", lineMode = registers.next(4), {"Input", "Output"},
                              "LineSelector");
        camera.addEnumeration("LineSource", registers.next(4), lineSources, "LineSelector");
        camera.addBoolean("LineInverter", registers.next(4), "LineSelector");
        camera.addFloat("LineDebouncerTime", registers.next(4), 0, 1000, "LineSelector");
        camera.addEnumeration("TimerSelector", registers.next(), {"Timer0", "Timer1"});
        camera.addFloat("TimerDelay", registers.next(2), 0, 1000000, "TimerSelector");
        camera.addFloat("TimerDuration", registers.next(2), 0, 1000000, "TimerSelector");
    }
    void addBounded(const std::string &name)
    {
        const auto bound = [&](const char *which) {
            const std::string node = name + which;
            camera.addNode("<FloatReg Name=\"" + node + "\"><Address>" +
                           std::to_string(registers.next()) +
                           "</Address><Length>4</Length><AccessMode>RO</AccessMode>"
                           "<pPort>Device</pPort><Endianess>BigEndian</Endianess></FloatReg>");
            return "<p" + std::string(which) + ">" + node + "</p" + which + ">";
        };
        const std::string bounds = bound("Min") + bound("Max");
        camera.addNode("<Float Name=\"" + name + "\"><pValue>" + name + "Register</pValue>" +
                           bounds + "</Float>",
                       name);
        camera.addNode("<FloatReg Name=\"" + name + "Register\"><Address>" +
                       std::to_string(registers.next()) +
                       "</Address><Length>4</Length><AccessMode>RW</AccessMode>"
                       "<pPort>Device</pPort><Endianess>BigEndian</Endianess></FloatReg>");
    }
    void describeImage()
    {
        for (const char *name : {"Gain", "ExposureTime", "AcquisitionFrameRate"}) {
            addBounded(name);
        }
        camera.addEnumeration("GainSelector", registers.next(), {"All", "Red", "Blue"});
        camera.addEnumeration("GainAuto", registers.next(), {"Off", "Once", "Continuous"});
        camera.addEnumeration("ExposureAuto", registers.next(), {"Off", "Once", "Continuous"});
        camera.addFloat("Gamma", registers.next(), 0, 4);
        camera.addFloat("BlackLevel", registers.next(), 0, 255);
        camera.addEnumeration("BlackLevelSelector", registers.next(), {"All"});
        camera.addEnumeration("BalanceRatioSelector", registers.next(), {"Red", "Green", "Blue"});
        camera.addFloat("BalanceRatio", registers.next(3), 0, 4, "BalanceRatioSelector");
        camera.addEnumeration("BalanceWhiteAuto", registers.next(), {"Off", "Once", "Continuous"});
        camera.addInteger("AutoTargetValue", registers.next(), 0, 255);
        for (const char *name : {"Saturation", "Hue", "Sharpness"}) {
            camera.addInteger(name, registers.next(), 0, 255);
        }
    }
    void describeFormat()
    {
        for (const char *name : {"Width", "Height", "OffsetX", "OffsetY"}) {
            camera.addInteger(name, registers.next(), 0, 4096);
        }
        camera.addInteger("WidthMax", registers.next(), 0, 4096);
        camera.addInteger("HeightMax", registers.next(), 0, 4096);
        // A bit of a register enables each format.
        std::string entries;
        std::string bits;
        const std::string mask = std::to_string(registers.next());
        constexpr unsigned first = 0x01080001; // Mono8
        for (unsigned i = 0; i < formats.size(); ++i) {
            const std::string bit = "Has" + formats[i];
            entries += "<EnumEntry Name=\"" + formats[i] + "\"><pIsImplemented>" + bit +
                       "</pIsImplemented><Value>" + std::to_string(first + i) +
                       "</Value></EnumEntry>";
            camera.addNode("<MaskedIntReg Name=\"" + bit + "\"><Address>" + mask +
                           "</Address><Length>4</Length><AccessMode>RO</AccessMode>"
                           "<pPort>Device</pPort><Bit>" +
                           std::to_string(i) +
                           "</Bit><Sign>Unsigned</Sign><Endianess>LittleEndian</Endianess>"
                           "</MaskedIntReg>");
        }
        pixelFormat = registers.next();
        formatMask = static_cast<unsigned>(std::stoul(mask));
        camera.addNode("<Enumeration Name=\"PixelFormat\">" + entries +
                           "<pValue>PixelFormatRegister</pValue></Enumeration>",
                       "PixelFormat");
        camera.addNode("<IntReg Name=\"PixelFormatRegister\"><Address>" +
                       std::to_string(pixelFormat) +
                       "</Address><Length>4</Length><AccessMode>RW</AccessMode>"
                       "<pPort>Device</pPort><Endianess>BigEndian</Endianess></IntReg>");
    }
    /// Describes the camera, opens it and sets its registers to sensible values.
    void openTypical()
    {
        describe();
        open();
        setWord(pixelFormat, 0x01080001);
        setWord(formatMask, 0xFFFFFFFF);
        setWord(lineMode + 8, 1); // Line2 is the output
        traffic->reset();
    }

    Registers registers;
    unsigned triggerSelector = 0;
    unsigned triggerSource = 0;
    unsigned lineMode = 0;
    unsigned pixelFormat = 0;
    unsigned formatMask = 0;
    std::vector<std::string> formats = numbered("Format", 12);
    std::vector<std::string> lineSources{"Off",          "ExposureActive", "Timer0Active",
                                         "Timer1Active", "UserOutput0",    "UserOutput1"};
};

using Count = std::int32_t (*)(OCameraHandle, std::int32_t *);
using Entry = std::int32_t (*)(OCameraHandle, std::int32_t, char *);
using NameOf = std::int32_t (*)(OCameraHandle, char *);

/// Reads a list as the panel does for its combo boxes.
std::vector<std::string> listOf(OCameraHandle handle, Count count, Entry entry)
{
    std::int32_t size = 0;
    count(handle, &size);
    std::vector<std::string> names;
    for (std::int32_t i = 0; i < size; ++i) {
        char name[ORVALIS_NAME_SIZE] = {};
        EXPECT_EQ(entry(handle, i, name), ORVALIS_OK) << i;
        names.emplace_back(name);
    }
    return names;
}

std::vector<std::string> fill(OCameraHandle handle, Count count, Entry entry, NameOf present)
{
    std::vector<std::string> names = listOf(handle, count, entry);
    char name[ORVALIS_NAME_SIZE] = {};
    present(handle, name);
    names.emplace_back(name);
    return names;
}

template <typename Value>
void get(OCameraHandle handle, std::int32_t (*read)(OCameraHandle, Value *))
{
    Value value{};
    read(handle, &value);
}

template <typename Value>
void getBounded(OCameraHandle handle, std::int32_t (*bounds)(OCameraHandle, Value *, Value *),
                std::int32_t (*read)(OCameraHandle, Value *))
{
    Value minimum{};
    Value maximum{};
    bounds(handle, &minimum, &maximum);
    get(handle, read);
}

template <typename Value>
void getAutomatic(OCameraHandle handle, std::int32_t (*bounds)(OCameraHandle, Value *, Value *),
                  std::int32_t (*read)(OCameraHandle, Value *, bool *))
{
    Value minimum{};
    Value maximum{};
    bool automatic = false;
    bounds(handle, &minimum, &maximum);
    read(handle, &minimum, &automatic);
}

void loadTrigger(OCameraHandle handle)
{
    get(handle, OrvalisGetTriggerEnable);
    fill(handle, OrvalisGetNumAvailableTriggerSources, OrvalisGetAvailableTriggerSourcesIdxToStr,
         OrvalisGetTriggerSourceStr);
    get(handle, OrvalisGetTriggerParameter);
    fill(handle, OrvalisGetNumAvailableTriggerModes, OrvalisGetAvailableTriggerModesIdxToStr,
         OrvalisGetTriggerModeStr);
    fill(handle, OrvalisGetNumAvailableTriggerPolaritys,
         OrvalisGetAvailableTriggerPolaritysIdxToStr, OrvalisGetTriggerPolarityStr);
    get(handle, OrvalisGetTriggerDelay);
    get(handle, OrvalisGetTriggerNoiseFilter);
}

void loadStrobe(OCameraHandle handle)
{
    get(handle, OrvalisGetStrobeEnable);
    fill(handle, OrvalisGetNumAvailableStrobeModes, OrvalisGetAvailableStrobeModesIdxToStr,
         OrvalisGetStrobeModeStr);
    fill(handle, OrvalisGetNumAvailableStrobePolaritys, OrvalisGetAvailableStrobePolaritysIdxToStr,
         OrvalisGetStrobePolarityStr);
    get(handle, OrvalisGetStrobeDelay);
    get(handle, OrvalisGetStrobeDuration);
}

void loadFeatures(OCameraHandle handle)
{
    getBounded(handle, OrvalisGetGammaMinMax, OrvalisGetGamma);
    getAutomatic(handle, OrvalisGetGainMinMax, OrvalisGetGain);
    getBounded(handle, OrvalisGetRGainMinMax, OrvalisGetRGain);
    getBounded(handle, OrvalisGetGGainMinMax, OrvalisGetGGain);
    getBounded(handle, OrvalisGetBGainMinMax, OrvalisGetBGain);
    getBounded(handle, OrvalisGetBlackLevelMinMax, OrvalisGetBlackLevel);
    getBounded(handle, OrvalisGetContrastMinMax, OrvalisGetContrast);
    getBounded(handle, OrvalisGetHueMinMax, OrvalisGetHue);
    getBounded(handle, OrvalisGetSaturationMinMax, OrvalisGetSaturation);
    getBounded(handle, OrvalisGetSharpnessMinMax, OrvalisGetSharpness);
    getAutomatic(handle, OrvalisGetShutterMinMax, OrvalisGetShutter);
    getBounded(handle, OrvalisGetAutoExposureMinMax, OrvalisGetAutoExposure);
    char name[ORVALIS_NAME_SIZE] = {};
    OrvalisGetPixelFormatStr(handle, name);
    fill(handle, OrvalisGetNumAvailableWhiteBalances, OrvalisGetAvailableWhiteBalancesIdxToStr,
         OrvalisGetWhiteBalanceStr);
}

void loadVideo(OCameraHandle handle)
{
    get(handle, OrvalisGetSizeInfo);
    getBounded(handle, OrvalisGetFrameRateMinMax, OrvalisGetFrameRate);
    const auto formats = fill(handle, OrvalisGetNumAvailablePixelFormats,
                              OrvalisGetAvailablePixelFormatsIdxToStr, OrvalisGetPixelFormatStr);
    OrvalisSetPixelFormatStr(handle, formats.back().c_str());
    loadFeatures(handle);
}

void loadUserSets(OCameraHandle handle)
{
    const auto sets = std::make_unique<OEnumNode>();
    sets->count = ORVALIS_ENUM_SIZE;
    OrvalisGetNodeEnum(handle, "UserSetSelector", sets.get());
    char name[ORVALIS_TEXT_SIZE] = {};
    OrvalisGetNodeString(handle, "UserSetDefaultSelector", name);
}

TEST_F(PanelLoad, needsFewRoundTrips)
{
    openTypical();
    const auto part = [&](const char *name, void (*load)(OCameraHandle)) {
        const unsigned before = traffic->reads;
        load(handle);
        std::printf("%-10s %4u register reads\n", name, traffic->reads - before);
    };
    part("trigger", loadTrigger);
    part("strobe", loadStrobe);
    part("features", loadFeatures);
    part("video", loadVideo);
    part("user sets", loadUserSets);
    RecordProperty("RegisterReads", static_cast<int>(traffic->reads));
    std::printf("%-10s %4u register reads, %u writes\n", "all", traffic->reads, traffic->writes);
    EXPECT_LE(traffic->reads, 148U);
}

} // namespace
