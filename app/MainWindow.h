// SPDX-License-Identifier: MIT
// The main window: owns the one camera connection, the live stream and the docks around the
// image.
#pragma once

#include "app/CameraFinder.h"
#include "app/Guidance.h"
#include "capture/FrameHub.h"
#include "capture/FrameSaver.h"
#include "capture/LatestFrame.h"
#include "capture/Picture.h"
#include "capture/StreamControl.h"
#include "sdk/OrvalisAPI.h"
#include "session/SessionState.h"
#include "view/PictureView.h"

#include <QColor>
#include <QElapsedTimer>
#include <QFutureWatcher>
#include <QMainWindow>
#include <QPixmap>
#include <QStringList>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
#include <memory>
#include <thread>

class AboutDialog;
class AccessRegister;
class CameraCtrl;
class CameraList;
class DrawCenterDlg;
class HintLabel;
class LogStatus;
class QDockWidget;
class QGraphicsPixmapItem;
class StreamStatus;
class XMLCtrl;
namespace Ui {
class MainWindow;
}

/// Functions run on the GUI thread unless their comment names another. Only one window exists at a
/// time. The constructor initialises the camera library, the destructor uninitialises it.
class MainWindow : public QMainWindow, public StreamControl {
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    /// Waits for pending save tasks until the user gives up, and at most three seconds for
    /// discovery.
    ~MainWindow() override;

    bool isStreaming() const override { return m_session.isLive(); }
    /// True while the live stream runs or a single shot waits for its frame.
    bool isAcquiring() const { return m_session.isAcquiring(); }
    void resetFrameCount() override { m_hub.restartCount(); }
    void pausePreview() override;
    void resumePreview() override;

    /// Bytes of frames queued for saving. Any thread.
    std::size_t bytesToSave() const { return m_saver.limiter().taken(); }

    /// Runs one discovery pass. Any thread; returns 0.
    int DiscoveryProc();

    /// Closes the open camera after it has left the bus, and displays the loss.
    void loseCamera();

    /// Enables and disables actions: stage 0 camera opened or closed, 1 right after an open, any
    /// other stream started or stopped.
    void UpdateUIStatus(bool on, int stage);

signals:
    /// The display names of all cameras on the bus, in its order.
    void sigUpdateCameraList(QStringList names);
    /// A camera was opened (true) or closed (false).
    void sigCameraOpened(bool opened);
    /// An image to display, without the cross. From the display thread and from the delivery
    /// thread.
    void sigDisplayFrame(QPixmap pixmap);
    /// The same image with all bits of the frame, for code that reads samples. From the same
    /// threads. Connect queued; frames are skipped while the GUI thread is late.
    void sigPicture(PicturePtr picture);
    /// A line for the log. From any thread.
    void sigTraceLog(QString message);
    /// kind 0: `a` frames were received; kind 1: `a` frames and `b` MB a second come in. From any
    /// thread, once for each frame: connect slots that coalesce.
    void sigStatusBar(int kind, double a, double b);

public slots:
    void slotStartCamera() override;
    void slotStopCamera() override;
    /// Takes one frame and stops; does nothing without a camera or while it streams.
    void slotOneGrab();
    /// Ends the single shot, whether or not its frame has arrived.
    void slotFinishedGrab();
    /// Arms or disarms saving: the next displayed frames are saved with the options of the control
    /// panel.
    void slotSaveImg(bool checked);
    /// Displays the image while a stream or a single shot runs, with the centre cross if it is
    /// enabled.
    void slotDisplayFrame(QPixmap pixmap);
    /// Displays the figures of sigStatusBar(). On any thread but the GUI thread, stores them for
    /// the next refresh without an allocation. Any thread.
    void slotStatusBar(int kind, double a, double b);

    /// @param[out] count cameras found; may be null
    void slotRefreshCamera(int *count = nullptr);
    /// Starts a discovery pass on the pool, unless too many are pending or no file descriptor is
    /// left.
    void OnTimer();
    /// @param index of the camera, -1 for the current row of the list
    void slotOpenCamera(int index = -1);
    /// Stops the stream and closes the camera. Without a camera it still updates the actions and
    /// logs the close.
    void slotCloseCamera();
    /// Asks the user, then restarts the camera and closes it.
    void slotResetCamera();

    /// Closes the camera and ends the program.
    void slotExit();
    /// Shows and raises the dock and gives it the focus; does nothing if `show` is false.
    void slotShowCameraList(bool show = true);
    /// @copydoc slotShowCameraList
    void slotShowXMLCtrl(bool show = true);
    /// @copydoc slotShowCameraList
    void slotShowCameraCtrl(bool show = true);
    /// @copydoc slotShowCameraList
    void slotShowLogStatus(bool show = true);
    /// Shows the about dialog.
    void slotShowAboutDlg();
    /// Shows or hides the dialog of the centre cross.
    void slotShowDrawCenterDlg(bool show);
    /// Sets width, in pixels of the image, and colour of the centre cross.
    void slotCenterValue(int width, QColor color);
    /// Shows the register dialog of the open camera; does nothing before the first open.
    void slotAccessRegister();
    /// Zooms in by one step and stops fitting the image to the window.
    void slotZoomIn();
    /// Zooms out by one step and stops fitting the image to the window.
    void slotZoomOut();
    /// Displays the image at 100 %; from the next frame on, fits it to the window.
    void slotZoomFit();
    /// Displays the image at 100 % and stops fitting it to the window.
    void slotZoom100();

private:
    friend void OneGrabThread(void *mainWindow);

    // Construction, in the order of the calls.
    void addToolBarIcons();
    void assignDockCorners();
    void connectCameraActions();
    void createLogDock();
    void createCameraListDock();
    void createTreeDock();
    void createControlDock();
    void createDialogs();
    void connectRemainingActions();
    void createStatusLabels();
    void createGuidance();
    void startDiscovery();
    // Destruction.
    void stopDiscovery();
    void awaitDiscovery();
    void awaitPoolTasks();

    // View.
    void init_graphics_view(bool streaming);

    // Guidance.
    Situation situation() const;
    void updateGuidance();
    void startGracePeriod();

    // Connection.
    /// Takes a step of the session. Logs a warning if the table refuses it.
    void enter(SessionStep next);
    void closeCamera(SessionStep afterwards);
    void cameraOpened(const CameraId &id);
    void attachPanels();
    void detachPanels();
    void releaseOpenCamera();
    void reportOpenError(const CameraId &id);
    void deleteRegisterDialog();
    void showSizeInTitle();
    QString cameraIdText() const { return ::cameraIdText(m_szCameraID); }

    // Stream and single shot.
    static void callback_imgrecv(OImageFrame *frame); ///< delivery thread
    static void callback_oneGrab(OImageFrame *frame); ///< delivery thread
    /// Passes the frame to `handle` of the window, if there is one. Catches exceptions, which must
    /// not reach the library.
    static void receive(OImageFrame *frame, void (MainWindow::*handle)(OImageFrame *)) noexcept;
    void frameReceived(OImageFrame *frame);    ///< delivery thread
    void oneFrameReceived(OImageFrame *frame); ///< delivery thread
    bool displayOneFrame(OImageFrame *frame);  ///< delivery thread; false if it is not displayed
    void waitForOneGrab();                     ///< pool thread
    void DisplayThread();                      ///< body of m_displayThread
    void displayIfPossible(const PublishedFrame &frame, PictureMaker *maker); ///< display thread
    void displayFrame(const PublishedFrame &frame, PictureMaker *maker);      ///< display thread
    bool guiIsLate() const;                       ///< too many images are pending in it
    void sendToScreen(const PicturePtr &picture); ///< display thread, delivery thread of a shot
    SaveOptions saveOptions() const;              ///< display thread
    void saveIfArmed(const Picture &picture);     ///< display thread
    void readStreamFormat();
    StreamInfo streamInfo() const { return {m_sizeInfo, m_pixelFormat, m_sensorPixelFormat, 0}; }
    /// @return false if an event during the call cancelled or replaced the start
    bool prepareStart();
    void cancelStart();
    bool startDisplaying();
    void joinDisplayThread();
    void endStream();
    void acquisitionChanged();
    void endOneGrab();
    void endSingleFrameMode();
    void continueInContinuousMode();

    std::unique_ptr<Ui::MainWindow> ui;

    // Children of the window.
    CameraList *m_pCameraList = nullptr;
    XMLCtrl *m_pXMLCtrl = nullptr;
    CameraCtrl *m_pCameraCtrl = nullptr;
    LogStatus *m_pLogStatus = nullptr;
    AccessRegister *m_pAccessRegister = nullptr; ///< null until a camera is opened
    AboutDialog *m_pAboutDialog = nullptr;
    DrawCenterDlg *m_pDrawCenterDlg = nullptr;
    StreamStatus *m_pStatus = nullptr;
    HintLabel *m_pHint = nullptr;
    QTimer *m_pTimer = nullptr;

    OCameraHandle m_hCamera = nullptr;
    CameraId m_szCameraID{};         ///< of the camera opened last; kept after a close
    unsigned m_nConnection = 0;      ///< number of opens so far; identifies a connection
    unsigned m_nStops = 0;           ///< calls of slotStopCamera() so far
    QString m_singleFrameCamera;     ///< ID of the camera that a shot set to its mode, or empty
    OSizeInfo m_sizeInfo{};          ///< written only while nothing is acquired
    std::uint32_t m_pixelFormat = 0; ///< PFNC code of frames, likewise
    std::uint32_t m_sensorPixelFormat = 0; ///< PFNC code that the camera is set to, likewise
    PixelMeaning m_meaning;                ///< of the format, likewise

    // Shared with the delivery, display and pool threads.
    SessionState m_session;
    const SessionQuery m_bStreaming{m_session, &SessionState::isAcquiring};
    FrameHub m_hub;
    std::atomic<std::uint64_t> &m_u64FrameCount{m_hub.count()};
    std::atomic<std::size_t> m_pendingDisplayBytes{0}; ///< images in the GUI thread's queue
    std::atomic<bool> m_bOneGrabDone{false};
    std::atomic<unsigned> m_nGrabRun{0}; ///< number of single shots so far
    FrameSaver m_saver{[this] { return saveOptions(); }};
    SaveRequest &m_bSaveRequest{m_saver.request()};
    LatestFrame frameQueue; ///< a tap of the hub, read by the display thread
    QThreadPool m_grabPool; ///< one thread for single shots, independent of save tasks
    const std::shared_ptr<CameraFinder> m_finder = std::make_shared<CameraFinder>();

    bool m_bNUCCamera = false;
    int m_nCameras = 0;         ///< number of cameras in the list
    QElapsedTimer m_sinceStart; ///< since the acquisition started

    PictureView m_view;
    bool &m_bFitView{m_view.fit()};
    QGraphicsPixmapItem *const &m_pixmapItem{m_view.item()};
    CenterCross m_cross;
    int &m_crossWidth{m_cross.width};
    QColor &m_crossColor{m_cross.color};

    QFutureWatcher<void> m_discoveryWatcher;
    QFutureWatcher<void> m_grabWatcher;
    QFutureWatcher<void> m_saveWatcher;
    std::thread m_displayThread;
};

/// The main window, null if there is none. Frame callbacks have no user pointer.
extern std::atomic<MainWindow *> g_inst;

/// Pool task: runs one discovery pass of a MainWindow; does nothing if it has been destroyed.
void DiscoveryThread(void *mainWindow);

/// Pool task: waits for the frame of a single shot of a MainWindow, at most 1.5 s. The window must
/// outlive the task.
void OneGrabThread(void *mainWindow);
