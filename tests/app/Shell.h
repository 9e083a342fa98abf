// SPDX-License-Identifier: MIT
// The main window with the recording camera library.
#pragma once

#include "app/MainWindow.h"
#include "tests/fakelibrary/FakeOrvalis.h"
#include "tests/support/QtTestMain.h"

#include <QAction>
#include <QDockWidget>
#include <QGraphicsPixmapItem>
#include <QGraphicsView>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>

#include <cstring>
#include <string>
#include <vector>

namespace shell {

constexpr std::uint32_t mono12 = 0x01100005;
constexpr std::uint32_t bayerGR12 = 0x01100010;

/// Closes message boxes and menus as soon as they open.
inline void dismissBoxes(QTimer *timer)
{
    timer->setInterval(1);
    QObject::connect(timer, &QTimer::timeout, [] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
            box->done(QMessageBox::Ok);
        if (QWidget *menu = QApplication::activePopupWidget())
            menu->close();
    });
    timer->start();
}

/// A frame that owns its planes, filled with `grey`. The destructor stops the stream, which may use
/// the frame.
class Frame {
public:
    Frame(std::uint32_t width, std::uint32_t height, std::uint8_t grey)
        : m_plane(std::size_t{width} * height * 3, grey), record{width * height, width,
                                                                 height,         8,
                                                                 m_plane.data(), m_plane.data(),
                                                                 m_plane.data()}
    {
    }
    ~Frame()
    {
        if (MainWindow *window = g_inst)
            window->slotStopCamera();
    }
    Frame(const Frame &) = delete;
    Frame &operator=(const Frame &) = delete;

    bool deliver() { return fakeorvalis::deliver(record); }
    std::vector<std::uint8_t> &plane() { return m_plane; }

private:
    std::vector<std::uint8_t> m_plane;

public:
    OImageFrame record;
};

inline QStringList texts(const std::vector<std::string> &calls)
{
    QStringList list;
    for (const std::string &call : calls)
        list << QString::fromLatin1(call.c_str());
    return list;
}

/// Calls of the GUI thread, without those of discovery.
inline QStringList calls()
{
    QStringList kept;
    for (const QString &call : texts(fakeorvalis::callsHere())) {
        if (!call.startsWith(QLatin1String("OrvalisNumberOfCameras(")) &&
            !call.startsWith(QLatin1String("OrvalisGetDisplayName(")) &&
            !call.startsWith(QLatin1String("OrvalisGetCameraID(")))
            kept << call;
    }
    return kept;
}

/// Calls that control library, connection and stream; none of panels.
inline QStringList lifeCalls()
{
    return texts(
        fakeorvalis::callsOf({"OrvalisInit", "OrvalisUninit", "OrvalisOpenCamera",
                              "OrvalisCloseCamera", "OrvalisCameraReset", "OrvalisStartAcquisition",
                              "OrvalisStopAcquisition", "OrvalisSetBayerConversion"}));
}

/// Code of the pixel format "Mono8".
inline constexpr std::uint32_t mono8 = 0x01080001;

inline void setPixelFormat(const std::string &name, std::uint32_t code)
{
    fakeorvalis::withState([&](fakeorvalis::State &state) {
        state.lists["PixelFormat"].current = name;
        state.info.pixelFormat = code;
    });
}

inline void setRegion(int width, int height)
{
    fakeorvalis::withState([&](fakeorvalis::State &state) {
        state.size = {0, 0, width, height, qMax(128, width), qMax(96, height)};
    });
}

inline void setCameras(const std::vector<fakeorvalis::Camera> &cameras)
{
    fakeorvalis::withState([&](fakeorvalis::State &state) { state.cameras = cameras; });
}

/// Answers the next message box.
class BoxAnswer : public QObject {
public:
    explicit BoxAnswer(QMessageBox::StandardButton button) : m_button(button)
    {
        m_timer.setInterval(5);
        connect(&m_timer, &QTimer::timeout, this, [this] { answer(); });
        m_timer.start();
    }
    bool asked = false;
    QString title;
    QString text;
    QMessageBox::StandardButtons buttons;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    std::function<void()> beforeAnswer;

private:
    void answer()
    {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (box == nullptr)
            return;
        m_timer.stop();
        asked = true;
        title = box->windowTitle();
        text = box->text();
        buttons = box->standardButtons();
        icon = box->icon();
        if (beforeAnswer)
            beforeAnswer();
        box->button(m_button)->click();
    }

    QMessageBox::StandardButton m_button;
    QTimer m_timer;
};

/// The window, with access to its parts.
class Shell {
public:
    /// Resets the recording library first.
    Shell()
    {
        fakeorvalis::reset();
        make();
    }
    /// Resets the recording library and then runs `prepare`.
    explicit Shell(const std::function<void()> &prepare)
    {
        fakeorvalis::reset();
        prepare();
        make();
    }

    MainWindow *operator->() const { return window.get(); }
    MainWindow &operator*() const { return *window; }

    template <typename T> T *child(const char *name) const
    {
        T *found = window->findChild<T *>(QString::fromLatin1(name));
        if (found == nullptr)
            qFatal("no child %s", name);
        return found;
    }
    QAction *action(const char *name) const { return child<QAction>(name); }
    QDockWidget *dock(const char *name) const { return child<QDockWidget>(name); }
    QListWidget *list() const { return dock("CameraList")->findChild<QListWidget *>(); }

    /// Log lines without their time stamps.
    QStringList log() const
    {
        const auto *lines = dock("LogStatus")->findChild<QListWidget *>();
        QStringList messages;
        for (int i = 0; i < lines->count(); ++i)
            messages << lines->item(i)->text().section("] ", 1);
        return messages;
    }
    QString lastLog() const { return log().isEmpty() ? QString() : log().last(); }

    QLabel *rateLabel() const { return statusLabel(0); }
    QLabel *recvLabel() const { return statusLabel(1); }
    QString recv() const { return recvLabel()->text().section(' ', -1); }

    QGraphicsPixmapItem *item() const
    {
        const auto items = view()->scene()->items();
        return items.size() == 1 ? dynamic_cast<QGraphicsPixmapItem *>(items.first()) : nullptr;
    }
    QImage picture() const { return item()->pixmap().toImage(); }
    QGraphicsView *view() const { return child<QGraphicsView>("graphicsView"); }

    /// Opens camera `index` and clears the recorded calls.
    void open(int index = 0) const
    {
        window->slotOpenCamera(index);
        fakeorvalis::clearCalls();
    }
    /// Opens a camera, starts the stream and clears the recorded calls.
    void play() const
    {
        open();
        window->slotStartCamera();
        fakeorvalis::clearCalls();
    }

    std::unique_ptr<MainWindow> window;

private:
    void make() { window = std::make_unique<MainWindow>(); }
    QLabel *statusLabel(int position) const
    {
        const auto labels = window->statusBar()->findChildren<QLabel *>();
        return labels.size() == 2 ? labels.at(position) : nullptr;
    }
};

inline QRgb gray(int value) { return qRgb(value, value, value); }

/// Processes pending events, and the events that these cause.
inline void settle()
{
    for (int round = 0; round < 10; ++round)
        QCoreApplication::processEvents();
}

/// Delivers the frame until it is displayed.
inline bool shows(const Shell &shell, Frame &frame, QRgb colour)
{
    return QTest::qWaitFor([&] {
        frame.deliver();
        QCoreApplication::processEvents();
        const QImage picture = shell.picture();
        return !picture.isNull() && picture.pixel(0, 0) == colour;
    });
}

} // namespace shell
