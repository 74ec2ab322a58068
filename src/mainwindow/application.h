#pragma once

class QApplication;

// Application-wide settings shared by the program and the tests that build its windows:
// French standard buttons and the Arial-compatible interface font.
void setUpApplication(QApplication& app);

// The windows' icon. Drawing it from SVG loads Qt's image plugins; the program sets it once its
// window has painted, so that the window shows that much sooner.
void setApplicationIcon();
