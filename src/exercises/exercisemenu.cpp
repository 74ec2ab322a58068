#include "exercises/exercisemenu.h"

#include "configurations/configurations.h"
#include "exercises/creerexo.h"
#include "exercises/exercisefile.h"
#include "exercises/fichexo.h"
#include "mainwindow/feuillep.h"
#include "platform/messagebox.h"
#include "platform/programfolder.h"

#include <QAction>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>

namespace exercises {

namespace {
const QString RtfFilter = QStringLiteral("Texte au format RTF (*.RTF *.rtf)");
} // namespace

ExerciseMenu::ExerciseMenu(feuilleP& main) : QObject(&main), main_(main) {
    menu_ = new QMenu(&main);
    menu_->setObjectName(QStringLiteral("optionexo"));
    addItem(QStringLiteral("PRISENMAIN"), QStringLiteral("Prise en main"),
            &ExerciseMenu::PRISENMAIN_Click);
    menu_->addSeparator();
    addItem(QStringLiteral("openexo"),
            QStringLiteral("Ouvrir un exercice (énoncé + configuration)"),
            &ExerciseMenu::openexo_Click);
    opencor_ = addItem(QStringLiteral("opencor"), QStringLiteral("Voir la correction"),
                       &ExerciseMenu::opencor_Click);
    menu_->addSeparator();
    addItem(QStringLiteral("savetexte"),
            QStringLiteral("Enregistrer le contenu de la fenêtre exercice"),
            &ExerciseMenu::savetexte_Click);
    addItem(QStringLiteral("opentexte"), QStringLiteral("Retrouver un texte"),
            &ExerciseMenu::opentexte_Click);
    addItem(QStringLiteral("imprimetexte"),
            QStringLiteral("Imprimer le contenu de la fenêtre exercice"),
            &ExerciseMenu::imprimetexte_Click);
    menu_->addSeparator();
    closexo_ = addItem(QStringLiteral("Closexo"), QStringLiteral("Fermer l'exercice"),
                       &ExerciseMenu::Closexo_Click);
    menu_->addSeparator();
    addItem(QStringLiteral("CreerExercice"), QStringLiteral("Créer un exercice…"),
            &ExerciseMenu::CreerExercice_Click);
    updateItems();
}

QAction* ExerciseMenu::addItem(const QString& name, const QString& caption,
                               void (ExerciseMenu::*slot)()) {
    QAction* action = menu_->addAction(caption);
    action->setObjectName(name);
    connect(action, &QAction::triggered, this, slot);
    return action;
}

QString ExerciseMenu::startFolder() {
    const QString program = platform::programFolder();
    const QFileInfo exercices(program + QStringLiteral("exercices"));
    return exercices.isDir() ? exercices.absoluteFilePath() : program;
}

void ExerciseMenu::updateItems() {
    opencor_->setEnabled(main_.state().ExerciseOpened == 1);
    closexo_->setEnabled(!main_.fich()->text().isEmpty());
}

void ExerciseMenu::popupUnder(QPushButton* btexo) {
    updateItems();
    menu_->popup(main_.mapToGlobal(QPoint(btexo->x(), btexo->y() + btexo->height())));
}

bool ExerciseMenu::askModification() {
    if (main_.state().StatementModified != 1)
        return true;
    if (!platform::askOkCancel(&main_, QStringLiteral("Abandon des données?"),
                               QStringLiteral("Attention: perte des modifications du texte.")))
        return false;
    main_.state().StatementModified = 0;
    return true;
}

bool ExerciseMenu::openExercise(const QString& path) {
    Fichexo window(main_, startFolder());
    window.fichierexo()->setText(path);
    window.ouvreur_Click();
    return window.opened();
}

void ExerciseMenu::PRISENMAIN_Click() {
    if (!askModification())
        return;
    const QString path = platform::programFolder() + QStringLiteral("tervox.PEM");
    if (!QFileInfo(path).isFile()) {
        platform::showCritical(&main_, QStringLiteral("Erreur lors du chargement"),
                               QStringLiteral("Fichier introuvable. Revoir l'installation du "
                                              "logiciel."));
        return;
    }
    if (openExerciseInto(main_, path, &main_))
        main_.state().ExerciseOpened = 0; // getting started has no correction to show
}

void ExerciseMenu::openexo_Click() {
    if (!askModification())
        return;
    Fichexo window(main_, startFolder());
    window.exec();
}

void ExerciseMenu::opencor_Click() {
    if (!askModification())
        return;
    const QString path = main_.fich()->text();
    const ExerciseRead read = readExerciseFile(path, ExerciseRecords::Correction);
    if (!read.ok) {
        platform::showCritical(&main_, QStringLiteral("Lecture impossible"),
                               platform::captionText(QStringLiteral(
                                   "Vérifier:\r\n- le nom du fichier,\r\n- l'état du lecteur.")));
        return;
    }
    // The correction's names count from the open exercise's folder, whatever was browsed since.
    const QString folder = platform::withTrailingSeparator(QFileInfo(path).absolutePath());
    if (!read.file.correction.isEmpty()) {
        const QString text = platform::resolveInFolder(folder, read.file.correction);
        if (!main_.loadStatement(text)) {
            platform::showCritical(&main_, QStringLiteral("Fichier absent"),
                                   QStringLiteral("Le fichier ") + text +
                                       QStringLiteral(" est introuvable"));
            return;
        }
    }
    if (!read.file.correctionConfig.isEmpty()) {
        main_.configurations()->ConfigFilePath() =
            platform::resolveInFolder(folder, read.file.correctionConfig);
        main_.configurations()->LoadConfiguration();
    }
}

QString ExerciseMenu::chooseFile(bool save) {
    if (chooser_)
        return chooser_(save);
    if (save)
        return QFileDialog::getSaveFileName(&main_, QString(), QString(), RtfFilter, nullptr,
                                            QFileDialog::DontConfirmOverwrite);
    return QFileDialog::getOpenFileName(&main_, QString(), QStringLiteral("*.rtf"), RtfFilter);
}

void ExerciseMenu::savetexte_Click() {
    QString path = chooseFile(true);
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".RTF");
    const QFileInfo info(path);
    if (info.exists() &&
        !platform::askOkCancel(&main_, QStringLiteral("Ecraser le fichier?"),
                               QStringLiteral("Le fichier ") + info.fileName() +
                                   QStringLiteral(" existe déjà.\nEcraser l'ancien?")))
        return;
    if (main_.saveStatement(path))
        main_.state().StatementModified = 0;
}

void ExerciseMenu::opentexte_Click() {
    if (!askModification())
        return;
    const QString path = chooseFile(false);
    if (path.isEmpty())
        return;
    main_.state().ExerciseOpened = 0;
    if (!main_.loadStatement(path)) {
        platform::showCritical(&main_, QStringLiteral("Fichier absent"),
                               QStringLiteral("Le fichier ") + path +
                                   QStringLiteral(" est introuvable"));
        return;
    }
    main_.fich()->setText(QStringLiteral("Texte: ") + QFileInfo(path).fileName());
    main_.state().StatementModified = 0;
}

void ExerciseMenu::imprimetexte_Click() {
    QPrinter& printer = main_.printer();
    QPrintDialog dialog(&printer, &main_);
    if (dialog.exec() != QDialog::Accepted)
        return;
    main_.printStatement(printer);
}

void ExerciseMenu::Closexo_Click() {
    if (!askModification())
        return;
    main_.fich()->clear();
    main_.state().ExerciseOpened = 0;
    main_.ShowWelcomeText();
}

void ExerciseMenu::CreerExercice_Click() {
    CreerExo window(main_);
    window.exec();
}

} // namespace exercises
