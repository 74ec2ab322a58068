#pragma once

class QApplication;

// Application-wide settings shared by the program and the tests that build its windows:
// French standard buttons and the Arial-compatible interface font.
void setUpApplication(QApplication& app);
