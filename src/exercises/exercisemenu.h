#pragma once

#include <QObject>
#include <functional>

class QAction;
class QMenu;
class QPushButton;
class feuilleP;

namespace exercises {

// The exercise menu `optionexo` that the main window pops up under `btexo`: getting started,
// open an exercise, see the correction, save, reopen and print the statement area, close the
// exercise. Items that replace the statement ask first when it has been edited.
class ExerciseMenu : public QObject {
    Q_OBJECT
public:
    explicit ExerciseMenu(feuilleP& main);

    QMenu* optionexo() const { return menu_; }
    // The folder the browser opens in: "exercices/" of the program folder when it exists.
    static QString startFolder();

    // btexo Click: the two items' states, then the menu under the button.
    void popupUnder(QPushButton* btexo);
    void updateItems();

    // Opens an exercise file as the browser's `ouvreur` does (the suite's request, the
    // command line). False when nothing opened.
    bool openExercise(const QString& path);

    // The file dialogs of savetexte and opentexte; tests replace them. An empty name cancels.
    void setFileChooser(std::function<QString(bool save)> chooser) {
        chooser_ = std::move(chooser);
    }

    // True when the statement may be replaced: not edited, or the user answered OK.
    bool askModification();

    void PRISENMAIN_Click();
    void openexo_Click();
    void opencor_Click();
    void savetexte_Click();
    void opentexte_Click();
    void imprimetexte_Click();
    void Closexo_Click();
    // The teacher's authoring window (creerexo).
    void CreerExercice_Click();

private:
    QAction* addItem(const QString& name, const QString& caption, void (ExerciseMenu::*slot)());
    QString chooseFile(bool save);

    feuilleP& main_;
    QMenu* menu_ = nullptr;
    QAction* opencor_ = nullptr;
    QAction* closexo_ = nullptr;
    std::function<QString(bool)> chooser_;
};

} // namespace exercises
