// SPDX-License-Identifier: MIT
// The dock in which the user browses the camera's feature nodes and reads, sets or executes one.
#pragma once

#include <QDockWidget>

#include <memory>

class QComboBox;
class QKeyEvent;
class QModelIndex;
class StreamControl;
class TreeModel;
class Ui_XMLCtrl;

/// GUI thread. All library calls are made synchronously from the slots; their failures are silent.
class XMLCtrl : public QDockWidget {
    Q_OBJECT

public:
    explicit XMLCtrl(QWidget *parent);
    ~XMLCtrl() override;

    /// @param stream stopped and restarted around commands; not owned. Null: never streaming.
    void setStreamControl(StreamControl *stream) { m_pMainWindow = stream; }

    /// Reads the node tree of an open camera. `handle` is not owned and must stay open until
    /// DeleteXMLTree().
    void CreateXMLTree(void *handle);
    /// Discards tree and handle. Keeps the value panel and the current node.
    void DeleteXMLTree();
    /// Enables or disables the value widgets and displays those of `mode`: 0 none, 1 value field,
    /// 2 enumeration, 3 command; any other mode displays the same ones as before.
    void HideShowXMLCtrl(int mode, bool enable);
    /// Locks or unlocks the value widgets if the current node must not change while acquiring.
    void UpdateAcqState(bool acquiring);
    /// Keypad Enter in the value field writes it to the current node.
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

public slots:
    /// Reads the node and displays it on the panel below the tree.
    void on_treeXML_clicked(const QModelIndex &index);
    /// Writes `text` to the current node.
    void on_cmbXMLValue_activated(const QString &text);
    /// Executes the current node. Stops the stream while a user set is loaded.
    void on_btnXMLExcute_clicked();

signals:
    // Each makes the control panel reload one group of settings.
    /// Reload the features of the first tab. `init` has no effect.
    void sigUpdateFeatureInfo(bool init = false);
    /// Reload region, pixel format and frame rate.
    void sigUpdateVideoInfo();
    /// Reload the trigger settings.
    void sigUpdateTriggerInfo();
    /// Reload the strobe settings.
    void sigUpdateStrobeInfo();
    /// Reload the user sets.
    void sigUpdateUSerSetInfo();

private:
    struct NotificationRule;

    void fillHeader();
    void showModel(TreeModel *model);
    void showNode(const QByteArray &name, int type, bool readWrite);
    void showText(bool readable, bool readWrite, const QString &text);
    void showInteger(const QByteArray &name, bool readWrite);
    void showFloat(const QByteArray &name, bool readWrite);
    void showString(const QByteArray &name, bool readWrite);
    void showBoolean(const QByteArray &name, bool readWrite);
    void showEnumeration(const QByteArray &name, bool readWrite);

    void commitValue(const QString &text);
    QString commitBoolean(const QByteArray &name, const QString &text);
    QString commitString(const QByteArray &name, const QString &text);
    QString commitFloat(const QByteArray &name, const QString &text);
    QString commitInteger(const QByteArray &name, const QString &text);

    template <std::size_t N> void notify(const NotificationRule (&rules)[N]);

    std::unique_ptr<Ui_XMLCtrl> ui;
    void *m_pHandle = nullptr;              // null while no camera is attached
    TreeModel *m_pModel = nullptr;          // child object
    QString m_strNodeName;                  // of the node clicked last
    int m_nNodeType = -1;                   // an ONodeType, -1 unknown
    StreamControl *m_pMainWindow = nullptr; // not owned; may be null
};
