// SPDX-License-Identifier: MIT
// A control panel on the recording camera library, in a window that stands in for the live stream.
#pragma once

#include "capture/StreamControl.h"
#include "control/CameraCtrl.h"
#include "tests/fakelibrary/FakeOrvalis.h"

#include <QComboBox>
#include <QStringList>
#include <QTest>
#include <QWidget>

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// Records the panel's requests together with the library calls that precede them.
class StreamWindow : public QWidget, public StreamControl {
public:
    bool isStreaming() const override { return streaming; }
    void slotStartCamera() override
    {
        streaming = true;
        note(QStringLiteral("start"));
        if (onStart)
            onStart();
    }
    void slotStopCamera() override
    {
        streaming = false;
        note(QStringLiteral("stop"));
    }
    void resetFrameCount() override { note(QStringLiteral("reset")); }
    void pausePreview() override { ++paused; }
    void resumePreview() override { --paused; }

    bool streaming = false;
    int paused = 0;                                     ///< pauses of the preview without a resume
    std::function<void()> onStart;                      ///< called when the stream starts
    std::vector<std::pair<std::size_t, QString>> notes; ///< number of preceding calls, request

private:
    void note(const QString &what) { notes.emplace_back(fakeorvalis::calls().size(), what); }
};

/// A panel without a camera; openCamera() gives it one.
class Panel {
public:
    Panel()
    {
        fakeorvalis::reset();
        panel.setStreamControl(&window);
    }
    ~Panel() { panel.DeleteGrabThread(); }
    Panel(const Panel &) = delete;
    Panel &operator=(const Panel &) = delete;

    /// Opens "CAM-A", loads everything and clears the recorded calls.
    void openCamera()
    {
        OrvalisOpenCamera("CAM-A", &handle);
        panel.loadConfigurationValue(handle);
        forget();
    }
    /// Reopens the camera, which to the panel is another one, and clears the recorded calls.
    void changeCamera()
    {
        panel.DeleteGrabThread();
        panel.releaseCamera();
        OrvalisCloseCamera(handle);
        openCamera();
    }
    /// Opens "CAM-A" and passes it to the panel while every library call fails.
    void openUnloaded()
    {
        OrvalisOpenCamera("CAM-A", &handle);
        fakeorvalis::failAll(true);
        panel.loadConfigurationValue(handle);
        fakeorvalis::failAll(false);
        forget();
    }

    void forget()
    {
        fakeorvalis::clearCalls();
        window.notes.clear();
    }

    /// Library calls with the window's "stop", "start" and "reset" in between.
    QStringList log() const
    {
        QStringList merged;
        std::size_t made = 0;
        auto note = window.notes.begin();
        for (const std::string &call : fakeorvalis::calls()) {
            for (; note != window.notes.end() && note->first <= made; ++note)
                merged << note->second;
            merged << QString::fromLatin1(call.c_str());
            ++made;
        }
        for (; note != window.notes.end(); ++note)
            merged << note->second;
        return merged;
    }

    /// The log without getters.
    QStringList sent() const
    {
        QStringList kept;
        for (const QString &line : log()) {
            if (!line.startsWith(QLatin1String("OrvalisGet")))
                kept << line;
        }
        return kept;
    }

    /// Names of the called functions, without arguments.
    QStringList functions() const
    {
        QStringList names;
        for (const QString &line : log())
            names << line.section(QLatin1Char('('), 0, 0);
        return names;
    }

    template <typename Widget> Widget *find(const char *name) const
    {
        return panel.findChild<Widget *>(QLatin1String(name));
    }

    /// Acts like a user who chooses `text` from the list.
    void choose(const char *name, const QString &text) const
    {
        QComboBox *combo = find<QComboBox>(name);
        combo->setCurrentText(text);
        QMetaObject::invokeMethod(combo, "activated", Q_ARG(QString, text));
    }

    QStringList items(const char *name) const
    {
        QStringList texts;
        const QComboBox *combo = find<QComboBox>(name);
        for (int index = 0; index < combo->count(); ++index)
            texts << combo->itemText(index);
        return texts;
    }

    StreamWindow window;
    CameraCtrl panel{&window};
    OCameraHandle handle = nullptr;
};

/// Data rows: with and without a stream, the camera accepts or refuses the call.
inline void addStreamingAndRefusedRows()
{
    QTest::addColumn<bool>("streaming");
    QTest::addColumn<bool>("refused");
    QTest::newRow("stopped, accepted") << false << false;
    QTest::newRow("stopped, refused") << false << true;
    QTest::newRow("streaming, accepted") << true << false;
    QTest::newRow("streaming, refused") << true << true;
}
