#pragma once

#include <QDialog>

class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;

namespace platform {
class DirList;
class DriveList;
class FileList;
} // namespace platform

namespace configurations {

class Configurations;

// "Ouvrir une configuration": the drive, folder and file lists (files "*.C10"), the path to
// open `ficharge`, "OUVRIR" and "ANNULER", and the waiting notice Frame1 shown while the file
// loads. Shown modally by Configurations::showOpenDialog.
class ouvrir : public QDialog {
    Q_OBJECT
public:
    ouvrir(Configurations& configurations, QWidget* mainWindow);

    platform::DriveList* drive1() const { return drive1_; }
    platform::DirList* dir1() const { return dir1_; }
    platform::FileList* file1() const { return file1_; }
    QLineEdit* ficharge() const { return ficharge_; }
    QFrame* frame1() const { return frame1_; }

    void Form_Load();
    void File1_Click();
    void Command1_Click();
    void Command2_Click();

private:
    void buildControls();

    Configurations& configurations_;
    QWidget* mainWindow_;
    platform::DriveList* drive1_ = nullptr;
    platform::DirList* dir1_ = nullptr;
    platform::FileList* file1_ = nullptr;
    QLineEdit* ficharge_ = nullptr;
    QPushButton* command1_ = nullptr;
    QPushButton* command2_ = nullptr;
    QFrame* frame1_ = nullptr;
};

} // namespace configurations
