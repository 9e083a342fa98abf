// SPDX-License-Identifier: MIT
// Displays the versions of the program, the installed camera library and the operating system.
#pragma once

#include <QDialog>
#include <QString>

#include <memory>

class Ui_AboutDialog;

/// The dialog of the action "About". GUI thread.
class AboutDialog : public QDialog {
    Q_OBJECT

public:
    /// Versions of the camera library; empty if unknown.
    struct SdkVersions {
        QString package;
        QString library;
    };

    explicit AboutDialog(QWidget *parent = nullptr);
    /// Reads the versions from `headerPath` instead of sdkHeaderPath().
    AboutDialog(QWidget *parent, const QString &headerPath);
    ~AboutDialog() override;

    /// Installed header of the camera library.
    static QString sdkHeaderPath();
    /// Reads the version block of a camera library's header. Empty for a file that is missing, not
    /// a regular file, unreadable, or larger than 1 MiB. Never writes.
    static SdkVersions readSdkVersions(const QString &headerPath);

private:
    void setPanelTextBlack();
    void nameValues();
    void fitTitle();

    std::unique_ptr<Ui_AboutDialog> ui;
};
