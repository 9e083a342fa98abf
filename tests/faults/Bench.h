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

/// Waits until `done`, letting events through, at most `longestMs`. False if it did not come.
bool waitFor(const std::function<bool()> &done, int longestMs = 20000);

/// Waits until the pool has no task left. Unlike QThreadPool::waitForDone() it leaves the pool its
/// threads.
void waitForTasks();

/// Frames with their number in the first 8 bytes of each plane, every few
/// milliseconds while an acquisition runs. Ends with its destruction.
class Feeder {
public:
    explicit Feeder(QSize size);
    ~Feeder();
    Feeder(const Feeder &) = delete;
    Feeder &operator=(const Feeder &) = delete;

    /// While it rests no frame comes, and no thread is needed for one.
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

    /// Runs `prepare` when the library is back at its start, before the window is made.
    void beforeStart(std::function<void()> prepare) { m_beforeStart = std::move(prepare); }
    /// Makes the window.
    void start();
    /// Destroys it.
    void exit() { m_shell.reset(); }
    bool hasWindow() const { return m_shell != nullptr; }
    shell::Shell &shell() { return *m_shell; }
    MainWindow &window() { return **m_shell; }

    bool isOpen();
    void open(int index = 0) { window().slotOpenCamera(index); }
    /// Plays; true if a picture comes within the time.
    bool play(int longestMs);
    /// Whether the camera sends nothing.
    void restCamera(bool on) { m_feeder.rest(on); }
    bool waitForPictures(int count, int longestMs = 20000);
    int pictures() const { return m_pictures; }
    int boxes() const { return m_boxes; }

    /// Empties the folder and arms saving of every frame, in `format`.
    void armSaving(const QString &format);
    void disarmSaving();
    /// Frames that were shown while saving was armed and are not on disk, or not whole. The stream
    /// has to be stopped. Forgets what was shown.
    QStringList lostFrames();
    QString folder() const { return m_folder.path(); }
    QStringList files() const;

    /// Closes, opens, plays, saves and closes again, without a fault. Empty if all of it went.
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
    QVector<std::uint64_t> m_numbers; ///< of the pictures shown since saving was armed
};

} // namespace faults
