// SPDX-License-Identifier: MIT
// Names the program, the installed camera library and the operating system.
#pragma once

#include <QDialog>
#include <QString>

#include <memory>

class Ui_AboutDialog;

/// Shows the versions of the program, of the camera library and of the system.
class AboutDialog : public QDialog {
    Q_OBJECT

public:
    /// Versions of the camera library; empty where unknown.
    struct SdkVersions {
        QString package;
        QString library;
    };

    explicit AboutDialog(QWidget *parent = nullptr);
    /// With the versions in a header at another place than sdkHeaderPath().
    AboutDialog(QWidget *parent, const QString &headerPath);
    ~AboutDialog() override;

    /// Where the camera library installs its header.
    static QString sdkHeaderPath();
    /// Reads the version block of a camera library's header. Empty for a file that is missing, not
    /// a regular file, unreadable or larger than any such header. Never writes.
    static SdkVersions readSdkVersions(const QString &headerPath);

private:
    void blackenPanel();
    void nameValues();
    void fitTitle();

    std::unique_ptr<Ui_AboutDialog> ui;
};
