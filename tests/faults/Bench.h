// SPDX-License-Identifier: MIT
// The main window on the recording library, with a camera that delivers frames while it streams, a
// user who closes message boxes, and a folder for saved frames.
#pragma once

#include "tests/app/Shell.h"

#include <QSize>
#include <QTemporaryDir>
#include <QVector>

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace faults {

/// Processes events until `done` is true, at most `longestMs`. Returns false after the time-out.
bool waitFor(const std::function<bool()> &done, int longestMs = 20000);

/// Waits until the pool has no task left. Unlike QThreadPool::waitForDone() it keeps the pool's
/// threads.
void waitForTasks();

/// Delivers frames with their number in the first 8 bytes of each plane, every few milliseconds
/// while an acquisition runs. Stops on destruction.
class Feeder {
public:
    explicit Feeder(QSize size);
    ~Feeder();
    Feeder(const Feeder &) = delete;
    Feeder &operator=(const Feeder &) = delete;

    /// A resting feeder delivers no frame and needs no thread.
    void rest(bool on) { m_resting = on; }

    static std::uint64_t numberIn(const QByteArray &pixels);

private:
    void run();
    OImageFrame *next();

    struct Picture {
        std::vector<std::uint8_t> plane;
        OImageFrame record{};
    };
    std::vector<Picture> m_ring;
    std::uint64_t m_number = 0;
    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_resting{false};
    std::thread m_thread;
};

class Bench {
public:
    /// @param size of the camera's frames
    explicit Bench(QSize size = {64, 48});
    ~Bench();
    Bench(const Bench &) = delete;
    Bench &operator=(const Bench &) = delete;

    /// Runs `prepare` after the reset of the library, before the window is created.
    void beforeStart(std::function<void()> prepare) { m_beforeStart = std::move(prepare); }
    /// Creates the window.
    void start();
    /// Destroys the window.
    void exit() { m_shell.reset(); }
    bool hasWindow() const { return m_shell != nullptr; }
    shell::Shell &shell() { return *m_shell; }
    MainWindow &window() { return **m_shell; }

    bool isOpen();
    void open(int index = 0) { window().slotOpenCamera(index); }
    /// Starts the stream. Returns true if an image is displayed within the time.
    bool play(int longestMs);
    /// Sets whether the camera sends nothing.
    void restCamera(bool on) { m_feeder.rest(on); }
    bool waitForPictures(int count, int longestMs = 20000);
    int pictures() const { return m_pictures; }
    int boxes() const { return m_boxes; }

    /// Clears the folder and arms saving of every frame, in `format`.
    void armSaving(const QString &format);
    void disarmSaving();
    /// Frames that were displayed while saving was armed but are missing or incomplete on disk. The
    /// stream must be stopped. Clears the list of displayed frames.
    QStringList lostFrames();
    QString folder() const { return m_folder.path(); }
    QStringList files() const;

    /// Closes, opens, plays, saves and closes again, without a fault. Empty if everything worked.
    QString wayBack();

private:
    void answerBox();
    void shown(const QPixmap &pixmap);

    void setDefaults() const;

    const QSize m_size;
    QTemporaryDir m_folder;
    std::function<void()> m_beforeStart = [] {};
    std::unique_ptr<shell::Shell> m_shell;
    Feeder m_feeder;
    QTimer m_boxTimer;
    int m_boxes = 0;
    int m_pictures = 0;
    QVector<std::uint64_t> m_numbers; ///< of the frames displayed since saving was armed
};

} // namespace faults
