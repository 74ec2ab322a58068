#pragma once

#include <QDialog>
#include <array>
#include <functional>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class feuilleP;

namespace exercises {

// The teacher's exercise authoring window: a title, a level, up to five topic lines, the
// statement (by default the statement area and the situation the main window shows now), an
// optional correction (an RTF text and a configuration chosen by the teacher), a folder and a
// base name. "Créer" writes, side by side in that folder:
//   NAME_enonce.rtf, NAME_enonce.C10 (when there is a situation), NAME_correction.rtf and
//   NAME_correction.C10 (when given), and NAME.E31 naming them.
// Every file goes through a temporary file and replaces an old one only once all of them are
// written; existing files are replaced only after a Yes. Refused input gets a French message
// and writes nothing.
class CreerExo : public QDialog {
    Q_OBJECT
public:
    explicit CreerExo(feuilleP& main);

    // The file dialogs behind the "Parcourir…" buttons; tests replace them. `kind` is the
    // line edit's objectName; an empty answer cancels.
    void setFileChooser(std::function<QString(const QString& kind)> chooser) {
        chooser_ = std::move(chooser);
    }

    // The exercise file written by the last successful Créer, else empty.
    const QString& created() const { return created_; }

    // Créer: checks, asks, writes; closes the window when the exercise is written.
    void Creer_Click();

private:
    void buildControls();
    void updateStatementFields();
    void browse(QLineEdit* field);
    bool refuse(QWidget* field, const QString& title, const QString& text);
    bool writeExercise();

    feuilleP& main_;
    QLineEdit* titre_ = nullptr;
    QComboBox* niveau_ = nullptr;
    std::array<QLineEdit*, 5> notions_{};
    QCheckBox* actuel_ = nullptr;
    QGroupBox* enonce_ = nullptr;
    QLineEdit* texteEnonce_ = nullptr;
    QLineEdit* situationEnonce_ = nullptr;
    QLineEdit* texteCorrection_ = nullptr;
    QLineEdit* situationCorrection_ = nullptr;
    QLineEdit* dossier_ = nullptr;
    QLineEdit* nom_ = nullptr;
    QPushButton* creer_ = nullptr;
    QPushButton* annuler_ = nullptr;
    std::function<QString(const QString&)> chooser_;
    QString created_;
};

} // namespace exercises
