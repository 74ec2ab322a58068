#include "exercises/fichexo.h"

#include "configurations/configurations.h"
#include "configurations/dialogparts.h"
#include "exercises/exercisefile.h"
#include "mainwindow/feuillep.h"
#include "platform/dirlist.h"
#include "platform/drivelist.h"
#include "platform/filelist.h"
#include "platform/folderlists.h"
#include "platform/messagebox.h"
#include "platform/programfolder.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>

namespace exercises {

namespace {

void showReadFailure(QWidget* parent) {
    platform::showCritical(
        parent, QStringLiteral("Lecture impossible"),
        platform::captionText(QStringLiteral("Vérifier:\r\n- le nom du "
                                             "fichier,\r\n- l'état du lecteur.")));
}

// The level marks' two pictures: a lit (yellow) and a dark round mark.
QPixmap levelMark(bool lit) {
    QPixmap pixmap(18, 18);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(64, 64, 64), 1));
    p.setBrush(lit ? QColor(255, 220, 0) : QColor(64, 64, 64));
    p.drawEllipse(QRectF(1.5, 1.5, 15, 15));
    return pixmap;
}

QString folderOf(const QString& path) {
    return platform::withTrailingSeparator(QFileInfo(path).absolutePath());
}

} // namespace

bool openExerciseInto(feuilleP& main, const QString& path, QWidget* messageParent) {
    const ExerciseRead read = readExerciseFile(path, ExerciseRecords::Statement);
    if (!read.ok) {
        showReadFailure(messageParent);
        return false;
    }
    const QString folder = folderOf(path);
    const QString statement = platform::resolveInFolder(folder, read.file.statement);
    if (read.file.statement.isEmpty() || !main.loadStatement(statement)) {
        platform::showCritical(messageParent, QStringLiteral("Fichier absent"),
                               QStringLiteral("Le fichier ") + statement +
                                   QStringLiteral(" est introuvable"));
        return false;
    }
    main.fich()->setText(path);
    main.state().StatementModified = 0;
    const ExerciseRead correction = readExerciseFile(path, ExerciseRecords::Correction);
    main.state().ExerciseOpened = correction.ok && correction.file.corrected() ? 1 : 0;
    if (!read.file.statementConfig.isEmpty()) {
        main.configurations()->ConfigFilePath() =
            platform::resolveInFolder(folder, read.file.statementConfig);
        main.configurations()->LoadConfiguration();
    }
    return true;
}

Fichexo::Fichexo(feuilleP& main, const QString& startFolder) : QDialog(&main), main_(main) {
    setObjectName(QStringLiteral("Fichexo"));
    setWindowTitle(QStringLiteral("Exercices"));
    setModal(true);
    setFixedSize(560, 340);
    buildControls();
    Form_Load(startFolder);
}

void Fichexo::buildControls() {
    using configurations::makeLabel;
    tito_ = makeLabel(this, QStringLiteral("tito"), QStringLiteral("Ouvrir un exercice"),
                      {0, 0, 560, 30});
    tito_->setAlignment(Qt::AlignCenter);
    tito_->setStyleSheet(
        QStringLiteral("background: rgb(0,0,128); color: white; font-weight: bold; "
                       "font-size: 12pt;"));

    makeLabel(this, QStringLiteral("Label5"), QStringLiteral("Liste des exercices:"),
              {8, 38, 240, 18});
    drive1_ = new platform::DriveList(this);
    drive1_->setObjectName(QStringLiteral("Drive1"));
    drive1_->setGeometry(8, 58, 240, 24);
    dir1_ = new platform::DirList(this);
    dir1_->setObjectName(QStringLiteral("Dir1"));
    dir1_->setGeometry(8, 86, 240, 116);
    file1_ = new platform::FileList(this);
    file1_->setObjectName(QStringLiteral("File1"));
    file1_->setGeometry(8, 206, 240, 126);

    fichierexo_ = new QLineEdit(this);
    fichierexo_->setObjectName(QStringLiteral("fichierexo"));
    fichierexo_->setGeometry(260, 38, 292, 22);
    fichierexo_->setReadOnly(true);
    titratexo_ = makeLabel(this, QStringLiteral("titratexo"), QString(), {260, 64, 292, 36});
    titratexo_->setWordWrap(true);
    titratexo_->setStyleSheet(QStringLiteral("font-weight: bold; color: rgb(0,0,128);"));
    intratro_ = makeLabel(this, QStringLiteral("intratro"),
                          QStringLiteral("Sélectionner un fichier"), {260, 106, 292, 20});

    label4_ = makeLabel(this, QStringLiteral("Label4"), QStringLiteral("Niveau de difficulté :"),
                        {260, 106, 150, 20});
    for (int i = 0; i < 3; ++i) {
        image4_[i] = makeLabel(this, QStringLiteral("Image4_%1").arg(i), QString(),
                               {414 + i * 24, 107, 18, 18});
    }
    imagalu_ = makeLabel(this, QStringLiteral("Imagalu"), QString(), {0, 0, 18, 18});
    imagalu_->setPixmap(levelMark(true));
    imagalu_->hide();
    imagenoir_ = makeLabel(this, QStringLiteral("Imagenoir"), QString(), {0, 0, 18, 18});
    imagenoir_->setPixmap(levelMark(false));
    imagenoir_->hide();

    label1_ = makeLabel(this, QStringLiteral("Label1"), QStringLiteral("Notions abordées :"),
                        {260, 132, 292, 18});
    text1_ = new QPlainTextEdit(this);
    text1_->setObjectName(QStringLiteral("Text1"));
    text1_->setGeometry(260, 152, 292, 96);
    text1_->setReadOnly(true);

    // Label3 is the caption's shadow, Label2 the caption itself. A light shadow one pixel off
    // lifts the caption; a dark one two pixels off smeared it.
    label3_ = makeLabel(this, QStringLiteral("Label3"), QString(), {261, 257, 180, 22});
    label3_->setStyleSheet(QStringLiteral("font-weight: bold; color: rgb(200,200,200);"));
    label2_ = makeLabel(this, QStringLiteral("Label2"), QString(), {260, 256, 180, 22});
    label2_->setStyleSheet(QStringLiteral("font-weight: bold; color: rgb(128,0,0);"));

    ouvreur_ = configurations::makeButton(this, QStringLiteral("ouvreur"), QStringLiteral("Ouvrir"),
                                          {370, 302, 86, 28});
    ouvreur_->setToolTip(QStringLiteral("Ouvrir l'exercice sélectionné"));
    image5_ = configurations::makeButton(this, QStringLiteral("Image5"), QStringLiteral("Fermer"),
                                         {466, 302, 86, 28});
    image5_->setToolTip(QStringLiteral("Fermer sans charger d'exercice"));

    frame2_ = new QFrame(this);
    frame2_->setObjectName(QStringLiteral("Frame2"));
    frame2_->setGeometry(150, 130, 260, 70);
    frame2_->setFrameShape(QFrame::Box);
    frame2_->setAutoFillBackground(true);
    auto* hourglass = makeLabel(frame2_, QStringLiteral("Image6"), QString(), {12, 17, 36, 36});
    hourglass->setPixmap(configurations::hourglassPicture(36));
    makeLabel(frame2_, QStringLiteral("Label6"), QStringLiteral("Patienter quelques instants"),
              {58, 14, 196, 20});
    makeLabel(frame2_, QStringLiteral("Label7"), QStringLiteral("Chargement des fichiers"),
              {58, 36, 196, 20});

    platform::linkFolderLists(drive1_, dir1_, file1_);
    connect(file1_, &platform::FileList::Click, this, &Fichexo::File1_Click);
    connect(file1_, &platform::FileList::DblClick, this, &Fichexo::ouvreur_Click);
    connect(ouvreur_, &QPushButton::clicked, this, &Fichexo::ouvreur_Click);
    connect(image5_, &QPushButton::clicked, this, &Fichexo::Image5_Click);
}

void Fichexo::Form_Load(const QString& startFolder) {
    configurations::placeBesideMainWindow(this, &main_);
    file1_->setPattern(QStringLiteral("*.E31"));
    text1_->clear();
    frame2_->hide();
    dir1_->setPath(startFolder);
    drive1_->setDrive(dir1_->path());
    file1_->setPath(dir1_->path());
    showPreview(false);
}

void Fichexo::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!activated_) {
        activated_ = true;
        Form_Activate();
    }
}

void Fichexo::Form_Activate() {
    if (file1_->listCount() > 0) {
        file1_->setListIndex(0);
        file1_->setFocus();
        File1_Click();
    }
}

void Fichexo::File1_Click() {
    QDir::setCurrent(file1_->path());
    QString path = file1_->path();
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    fichierexo_->setText(path + file1_->fileName());
    apercu();
}

void Fichexo::showPreview(bool visible) {
    label4_->setVisible(visible);
    for (QLabel* mark : image4_)
        mark->setVisible(visible);
    ouvreur_->setVisible(visible);
    label1_->setVisible(visible);
    text1_->setVisible(visible);
    label2_->setVisible(visible);
    label3_->setVisible(visible);
    intratro_->setVisible(!visible);
}

void Fichexo::apercu() {
    // The previous exercise's preview goes before the next file is read.
    text1_->clear();
    titratexo_->clear();
    label2_->clear();
    label3_->clear();
    showPreview(false);
    if (fichierexo_->text().trimmed().isEmpty() || file1_->fileName().isEmpty())
        return;
    const ExerciseRead read = readExerciseFile(fichierexo_->text(), ExerciseRecords::Preview);
    if (!read.ok) {
        intratro_->hide();
        showReadFailure(this);
        return;
    }
    showPreview(true);
    const QString caption =
        read.file.corrected() ? QStringLiteral("Exercice corrigé") : QStringLiteral("Non corrigé");
    label2_->setText(caption);
    label3_->setText(caption);
    for (int i = 0; i < 3; ++i)
        image4_[i]->setPixmap(i < read.file.level ? imagalu_->pixmap() : imagenoir_->pixmap());
    text1_->setPlainText(read.file.topics.join(QLatin1Char('\n')));
    titratexo_->setText(read.file.title);
}

void Fichexo::ouvreur_Click() {
    const QString path = fichierexo_->text();
    if (path.trimmed().isEmpty())
        return;
    frame2_->show();
    frame2_->repaint();
    const bool ok = openExerciseInto(main_, path, this);
    frame2_->hide();
    if (!ok)
        return;
    opened_ = true;
    accept();
}

void Fichexo::Image5_Click() {
    reject();
}

} // namespace exercises
