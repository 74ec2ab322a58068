#pragma once

#include <QDialog>
#include <array>

class QFrame;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class feuilleP;

namespace platform {
class DirList;
class DriveList;
class FileList;
} // namespace platform

namespace exercises {

// Opens the exercise file `path` into the main window: the statement into `supertext`, the
// path into `fich`, ExerciseOpened (1 only when the exercise has a correction) and the
// statement's configuration through the configuration loader. Names inside the file count from
// the file's own folder. Shows "Lecture impossible" or "Fichier absent" and returns false,
// leaving the main window as it was, when the exercise or its statement cannot be read.
bool openExerciseInto(feuilleP& main, const QString& path, QWidget* messageParent);

// The exercise browser: folder and file lists showing "*.E31", a preview of the highlighted
// exercise, and `ouvreur` to open it.
class Fichexo : public QDialog {
    Q_OBJECT
public:
    // `startFolder`: the folder the lists show first.
    Fichexo(feuilleP& main, const QString& startFolder);

    QLineEdit* fichierexo() const { return fichierexo_; }
    platform::FileList* file1() const { return file1_; }
    // True once an exercise has been opened from this window.
    bool opened() const { return opened_; }

    void Form_Load(const QString& startFolder);
    void Form_Activate();
    void File1_Click();
    void apercu();
    void ouvreur_Click();
    void Image5_Click();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void buildControls();
    void showPreview(bool visible);

    feuilleP& main_;
    QLabel* tito_ = nullptr;
    platform::DriveList* drive1_ = nullptr;
    platform::DirList* dir1_ = nullptr;
    platform::FileList* file1_ = nullptr;
    QLineEdit* fichierexo_ = nullptr;
    QLabel* titratexo_ = nullptr;
    QLabel* intratro_ = nullptr;
    QLabel* label1_ = nullptr;
    QPlainTextEdit* text1_ = nullptr;
    QLabel* label4_ = nullptr;
    std::array<QLabel*, 3> image4_{};
    QLabel* imagalu_ = nullptr;
    QLabel* imagenoir_ = nullptr;
    QLabel* label2_ = nullptr;
    QLabel* label3_ = nullptr;
    QPushButton* ouvreur_ = nullptr;
    QPushButton* image5_ = nullptr;
    QFrame* frame2_ = nullptr;
    bool opened_ = false;
    bool activated_ = false;
};

} // namespace exercises
