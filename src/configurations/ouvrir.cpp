#include "configurations/ouvrir.h"

#include "configurations/configurations.h"
#include "configurations/dialogparts.h"
#include "platform/dirlist.h"
#include "platform/drivelist.h"
#include "platform/filelist.h"
#include "platform/folderlists.h"

#include <QDir>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace configurations {

ouvrir::ouvrir(Configurations& configurations, QWidget* mainWindow)
    : QDialog(mainWindow), configurations_(configurations), mainWindow_(mainWindow) {
    setObjectName(QStringLiteral("ouvrir"));
    setWindowTitle(QStringLiteral("Ouvrir une configuration"));
    buildControls();
    Form_Load();
}

void ouvrir::buildControls() {
    setFixedSize(470, 318);

    makeLabel(this, QStringLiteral("Label1"), QStringLiteral("Lecteur:"), {10, 8, 200, 16});
    drive1_ = new platform::DriveList(this);
    drive1_->setObjectName(QStringLiteral("Drive1"));
    drive1_->setGeometry(10, 26, 210, 22);

    makeLabel(this, QStringLiteral("Label2"), QStringLiteral("Répertoire"), {10, 56, 200, 16});
    dir1_ = new platform::DirList(this);
    dir1_->setObjectName(QStringLiteral("Dir1"));
    dir1_->setGeometry(10, 74, 210, 166);

    makeLabel(this, QStringLiteral("Label3"), QStringLiteral("Fichiers"), {232, 8, 200, 16});
    file1_ = new platform::FileList(this);
    file1_->setObjectName(QStringLiteral("File1"));
    file1_->setGeometry(232, 26, 228, 214);
    file1_->setPattern(QStringLiteral("*.C10"));

    ficharge_ = new QLineEdit(this);
    ficharge_->setObjectName(QStringLiteral("ficharge"));
    ficharge_->setGeometry(10, 250, 450, 22);

    command1_ =
        makeButton(this, QStringLiteral("Command1"), QStringLiteral("OUVRIR"), {250, 282, 102, 26});
    command2_ = makeButton(this, QStringLiteral("Command2"), QStringLiteral("ANNULER"),
                           {358, 282, 102, 26});

    frame1_ = new QFrame(this);
    frame1_->setObjectName(QStringLiteral("Frame1"));
    frame1_->setFrameShape(QFrame::Box);
    frame1_->setAutoFillBackground(true);
    frame1_->setGeometry(95, 110, 280, 60);
    auto* image1 = new QLabel(frame1_);
    image1->setObjectName(QStringLiteral("Image1"));
    image1->setGeometry(12, 12, 36, 36);
    image1->setPixmap(hourglassPicture(36));
    makeLabel(frame1_, QStringLiteral("Label4"), QStringLiteral("Patience: chargement du fichier"),
              {58, 20, 214, 20});
    frame1_->hide();

    platform::linkFolderLists(drive1_, dir1_, file1_);
    connect(file1_, &platform::FileList::Click, this, &ouvrir::File1_Click);
    connect(file1_, &platform::FileList::DblClick, this, &ouvrir::Command1_Click);
    connect(command1_, &QPushButton::clicked, this, &ouvrir::Command1_Click);
    connect(command2_, &QPushButton::clicked, this, &ouvrir::Command2_Click);
}

void ouvrir::Form_Load() {
    placeBesideMainWindow(this, mainWindow_);
}

void ouvrir::File1_Click() {
    QDir::setCurrent(file1_->path());
    QString path = file1_->path();
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    ficharge_->setText(path + file1_->fileName());
}

void ouvrir::Command1_Click() {
    if (ficharge_->text().trimmed().isEmpty())
        return;
    const QString text = ficharge_->text();
    configurations_.ConfigFilePath() =
        QDir::isRelativePath(text) ? QDir::current().absoluteFilePath(text) : text;
    if (!configurations_.requireExistingFile())
        return; // the dialog stays open for another choice
    frame1_->show();
    configurations_.LoadConfiguration();
    done(QDialog::Accepted);
}

void ouvrir::Command2_Click() {
    reject();
}

} // namespace configurations
