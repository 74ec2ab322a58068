#pragma once

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace platform {
class DirList;
class DriveList;
class FileList;
} // namespace platform

namespace configurations {

class Configurations;

// "Enregistrer les paramètres.": the name box Text1 (starting with the configuration path in
// use), the drive, folder and file lists (files "*.C10"), "ENREGISTRER" and "ANNULER".
// Shown modally by Configurations::showSaveDialog.
class enregistrer : public QDialog {
    Q_OBJECT
public:
    enregistrer(Configurations& configurations, QWidget* mainWindow);

    QLineEdit* text1() const { return text1_; }
    platform::DriveList* drive1() const { return drive1_; }
    platform::DirList* dir1() const { return dir1_; }
    platform::FileList* file1() const { return file1_; }

    void Form_Load();
    void File1_DblClick();
    void File1_PathChange();
    void Command1_Click();
    void Command2_Click();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildControls();

    Configurations& configurations_;
    QWidget* mainWindow_;
    QLineEdit* text1_ = nullptr;
    platform::DriveList* drive1_ = nullptr;
    platform::DirList* dir1_ = nullptr;
    platform::FileList* file1_ = nullptr;
    QPushButton* command1_ = nullptr;
    QPushButton* command2_ = nullptr;
};

} // namespace configurations
