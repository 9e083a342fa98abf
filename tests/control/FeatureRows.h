// SPDX-License-Identifier: MIT
// The integer features as data rows, and one of them on an open panel.
#pragma once

#include "tests/control/PanelFixture.h"

#include <QSlider>
#include <QSpinBox>

#include <iterator>

struct FeatureRow {
    const char *key; // in library names and in the recording library's state
    const char *spin;
    const char *slider;
    const char *range;
};

inline constexpr FeatureRow featureRows[] = {
    {"Gain", "spiGain", "sliGain", "laGain"},
    {"RGain", "spiRGain", "sliRGain", "laRGain"},
    {"GGain", "spiGGain", "sliGGain", "laGGain"},
    {"BGain", "spiBGain", "sliBGain", "laBGain"},
    {"BlackLevel", "spiBlackLevel", "sliBlackLevel", "laBlack"},
    {"Contrast", "spiContrast", "sliContrast", "laCont"},
    {"Hue", "spiHue", "sliHue", "laHue"},
    {"Saturation", "spiSaturation", "sliSaturation", "laSaturation"},
    {"Sharpness", "spiSharp", "sliSharp", "laSharp"},
    {"AutoExposure", "spiAutoExp", "sliAutoExp", "laAutoExp"},
};

/// One feature of an open panel.
struct Feature {
    explicit Feature(int index) : row(featureRows[index]) {}

    void open()
    {
        // Room on both sides for a page step of every feature.
        fakeorvalis::withState([this](fakeorvalis::State &state) {
            state.integers[row.key] = {500, 100, 1000, false};
        });
        panel.openCamera();
    }
    bool checksItsGetter() const { return !isGain() && QByteArray(row.key) != "BlackLevel"; }
    bool isGain() const { return QByteArray(row.key) == "Gain"; }
    QString set(int value) const
    {
        return QStringLiteral("OrvalisSet%1(h1, %2%3)")
            .arg(QString(row.key))
            .arg(value)
            .arg(isGain() ? QString(", false") : QString());
    }
    std::string setter() const { return std::string("OrvalisSet") + row.key; }
    QSpinBox *spin() const { return panel.find<QSpinBox>(row.spin); }
    QSlider *slider() const { return panel.find<QSlider>(row.slider); }

    FeatureRow row;
    Panel panel;
};

/// One data row, "index", for each of them.
inline void addFeatures()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < static_cast<int>(std::size(featureRows)); ++index)
        QTest::newRow(featureRows[index].key) << index;
}
