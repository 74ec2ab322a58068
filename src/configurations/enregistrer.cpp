#include "configurations/enregistrer.h"

#include "configurations/configurations.h"
#include "configurations/dialogparts.h"
#include "platform/dirlist.h"
#include "platform/drivelist.h"
#include "platform/filelist.h"
#include "platform/folderlists.h"
#include "platform/messagebox.h"
#include "platform/programfolder.h"

#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>

namespace configurations {

enregistrer::enregistrer(Configurations& configurations, QWidget* mainWindow)
    : QDialog(mainWindow), configurations_(configurations), mainWindow_(mainWindow) {
    setObjectName(QStringLiteral("enregistrer"));
    setWindowTitle(QStringLiteral("Enregistrer les paramètres."));
    buildControls();
    Form_Load();
}

void enregistrer::buildControls() {
    setFixedSize(470, 318);

    makeLabel(this, QStringLiteral("Label2"), QStringLiteral("Nom du fichier:"), {10, 8, 200, 16});
    text1_ = new QLineEdit(this);
    text1_->setObjectName(QStringLiteral("Text1"));
    text1_->setGeometry(10, 26, 450, 22);
    text1_->installEventFilter(this);

    makeLabel(this, QStringLiteral("Label1"), QStringLiteral("Lecteur:"), {10, 56, 200, 16});
    drive1_ = new platform::DriveList(this);
    drive1_->setObjectName(QStringLiteral("Drive1"));
    drive1_->setGeometry(10, 74, 210, 22);

    makeLabel(this, QStringLiteral("Label3"), QStringLiteral("Répertoire:"), {10, 104, 200, 16});
    dir1_ = new platform::DirList(this);
    dir1_->setObjectName(QStringLiteral("Dir1"));
    dir1_->setGeometry(10, 122, 210, 150);

    makeLabel(this, QStringLiteral("Label4"), QStringLiteral("Fichiers enregistrés"),
              {232, 56, 228, 16});
    file1_ = new platform::FileList(this);
    file1_->setObjectName(QStringLiteral("File1"));
    file1_->setGeometry(232, 74, 228, 198);
    file1_->setPattern(QStringLiteral("*.C10"));

    command1_ = makeButton(this, QStringLiteral("Command1"), QStringLiteral("ENREGISTRER"),
                           {250, 282, 102, 26});
    command2_ = makeButton(this, QStringLiteral("Command2"), QStringLiteral("ANNULER"),
                           {358, 282, 102, 26});

    platform::linkFolderLists(drive1_, dir1_, file1_);
    connect(file1_, &platform::FileList::DblClick, this, &enregistrer::File1_DblClick);
    connect(file1_, &platform::FileList::PathChange, this, &enregistrer::File1_PathChange);
    connect(command1_, &QPushButton::clicked, this, &enregistrer::Command1_Click);
    connect(command2_, &QPushButton::clicked, this, &enregistrer::Command2_Click);
}

void enregistrer::Form_Load() {
    placeBesideMainWindow(this, mainWindow_);
    // Browsing the shipped exercises leaves the current folder in the installed, read-only
    // program folder: a save could not land there.
    if (!QFileInfo(dir1_->path()).isWritable())
        dir1_->setPath(platform::documentsFolder());
    text1_->setText(configurations_.ConfigFilePath());
}

void enregistrer::File1_DblClick() {
    text1_->setText(file1_->fileName());
    Command1_Click();
}

void enregistrer::File1_PathChange() {
    // Only the bare name stays when the folder changes.
    const QString text = text1_->text();
    const qsizetype slash = text.lastIndexOf(QLatin1Char('/'));
    if (slash >= 0)
        text1_->setText(text.mid(slash + 1));
}

void enregistrer::Command1_Click() {
    const SaveName name = saveNameFor(text1_->text(), dir1_->path());
    text1_->setText(name.text);
    if (name.path.isEmpty()) {
        platform::showCritical(this, QStringLiteral("Enregistrement impossible"),
                               QStringLiteral("Il faut donner un nom au fichier!"));
        return;
    }
    configurations_.ConfigFilePath() = name.path;
    if (configurationFileExists(name.path) &&
        !platform::askYesNoWarning(this, QStringLiteral("Ce fichier existe déjà!"),
                                   QStringLiteral("Ecraser le fichier existant?")))
        return;
    configurations_.writeConfiguration(this);
}

void enregistrer::Command2_Click() {
    reject();
}

bool enregistrer::eventFilter(QObject* watched, QEvent* event) {
    if (watched == text1_ && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            Command1_Click();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace configurations
