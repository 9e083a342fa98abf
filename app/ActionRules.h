// SPDX-License-Identifier: MIT
// Which actions are enabled in which state of the camera.
#pragma once

namespace Ui {
class MainWindow;
}

/// Enables and disables the actions of `form` as MainWindow::UpdateUIStatus() documents.
void applyActionRules(const Ui::MainWindow &form, bool on, int stage);
