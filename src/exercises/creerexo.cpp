#include "exercises/creerexo.h"

#include "configurations/configurationfile.h"
#include "configurations/configurations.h"
#include "configurations/dialogparts.h"
#include "exercises/exercisefile.h"
#include "mainwindow/feuillep.h"
#include "platform/cp1252.h"
#include "platform/messagebox.h"
#include "platform/recordfile.h"
#include "platform/richtext.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTextEdit>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>
#include <vector>

namespace exercises {

namespace {

const QString RtfFilter = QStringLiteral("Texte au format RTF (*.RTF *.rtf)");
const QString ConfigFilter = QStringLiteral("Configuration (*.C10 *.c10)");
// The longest suffix a base name gets, so that every name fits its record.
const QString LongestSuffix = QStringLiteral("_correction.rtf");
// Characters a file name cannot hold on the systems the suite runs on.
const QString ForbiddenInName = QStringLiteral("\\/:*?\"<>|");

struct OutputFile {
    QString path;
    QByteArray bytes;
};

QString defaultFolder() {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return !documents.isEmpty() && QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

} // namespace

CreerExo::CreerExo(feuilleP& main) : QDialog(&main), main_(main) {
    setObjectName(QStringLiteral("creerexo"));
    setWindowTitle(QStringLiteral("Créer un exercice"));
    setModal(true);
    buildControls();
    updateStatementFields();
    adjustSize();
    setFixedSize(sizeHint().expandedTo(QSize(520, 0)));
    configurations::placeBesideMainWindow(this, &main_);
    titre_->setFocus();
}

void CreerExo::buildControls() {
    auto* page = new QVBoxLayout(this);

    // Each field is built in reading order, so that Tab walks the window top to bottom.
    auto lineEdit = [](QWidget* parent, const QString& name, const QString& accessible) {
        auto* edit = new QLineEdit(parent);
        edit->setObjectName(name);
        edit->setAccessibleName(accessible);
        return edit;
    };
    auto label = [](QWidget* parent, const QString& caption, QWidget* buddy) {
        auto* l = new QLabel(caption, parent);
        l->setBuddy(buddy);
        return l;
    };
    // A file field: label, line edit and its "Parcourir…" button on one grid row.
    auto fileRow = [&](QGroupBox* box, QGridLayout* grid, int row, const QString& caption,
                       const QString& name, const QString& accessible) {
        QLineEdit* edit = lineEdit(box, name, accessible);
        grid->addWidget(label(box, caption, edit), row, 0);
        grid->addWidget(edit, row, 1);
        auto* button = new QPushButton(QStringLiteral("Parcourir…"), box);
        button->setObjectName(QStringLiteral("Parcourir") + name);
        button->setAccessibleName(QStringLiteral("Parcourir : ") + accessible);
        button->setAutoDefault(false);
        grid->addWidget(button, row, 2);
        connect(button, &QPushButton::clicked, this, [this, edit] { browse(edit); });
        return edit;
    };

    auto* exercise = new QGroupBox(QStringLiteral("Exercice"), this);
    auto* grid = new QGridLayout(exercise);
    titre_ = lineEdit(exercise, QStringLiteral("Titre"), QStringLiteral("Titre de l'exercice"));
    grid->addWidget(label(exercise, QStringLiteral("&Titre :"), titre_), 0, 0);
    grid->addWidget(titre_, 0, 1);
    niveau_ = new QComboBox(exercise);
    niveau_->setObjectName(QStringLiteral("Niveau"));
    niveau_->setAccessibleName(QStringLiteral("Niveau de difficulté"));
    for (int level = MinLevel; level <= MaxLevel; ++level)
        niveau_->addItem(QString::number(level), level);
    grid->addWidget(label(exercise, QStringLiteral("&Niveau de difficulté :"), niveau_), 1, 0);
    auto* levelRow = new QHBoxLayout;
    levelRow->addWidget(niveau_);
    levelRow->addStretch();
    grid->addLayout(levelRow, 1, 1);
    for (std::size_t i = 0; i < notions_.size(); ++i) {
        notions_[i] = lineEdit(exercise, QStringLiteral("Notion_%1").arg(i),
                               QStringLiteral("Notion abordée %1").arg(i + 1));
        grid->addWidget(notions_[i], 2 + static_cast<int>(i), 1);
    }
    auto* topics = label(exercise, QStringLiteral("N&otions abordées :"), notions_[0]);
    topics->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    grid->addWidget(topics, 2, 0);
    page->addWidget(exercise);

    actuel_ = new QCheckBox(QStringLiteral("&Utiliser la situation actuelle comme énoncé"), this);
    actuel_->setObjectName(QStringLiteral("EnonceActuel"));
    actuel_->setChecked(true);
    page->addWidget(actuel_);

    enonce_ = new QGroupBox(QStringLiteral("Énoncé"), this);
    enonce_->setObjectName(QStringLiteral("Enonce"));
    grid = new QGridLayout(enonce_);
    texteEnonce_ = fileRow(enonce_, grid, 0, QStringLiteral("Texte (RTF) :"),
                           QStringLiteral("TexteEnonce"), QStringLiteral("Texte de l'énoncé"));
    situationEnonce_ =
        fileRow(enonce_, grid, 1, QStringLiteral("Configuration :"),
                QStringLiteral("SituationEnonce"), QStringLiteral("Configuration de l'énoncé"));
    page->addWidget(enonce_);

    auto* correction = new QGroupBox(QStringLiteral("Correction (facultative)"), this);
    grid = new QGridLayout(correction);
    texteCorrection_ =
        fileRow(correction, grid, 0, QStringLiteral("Texte (RTF) :"),
                QStringLiteral("TexteCorrection"), QStringLiteral("Texte de la correction"));
    situationCorrection_ = fileRow(correction, grid, 1, QStringLiteral("Configuration :"),
                                   QStringLiteral("SituationCorrection"),
                                   QStringLiteral("Configuration de la correction"));
    page->addWidget(correction);

    auto* save = new QGroupBox(QStringLiteral("Enregistrement"), this);
    grid = new QGridLayout(save);
    dossier_ = fileRow(save, grid, 0, QStringLiteral("&Dossier :"), QStringLiteral("Dossier"),
                       QStringLiteral("Dossier de l'exercice"));
    dossier_->setText(QDir::toNativeSeparators(defaultFolder()));
    nom_ = lineEdit(save, QStringLiteral("NomFichier"), QStringLiteral("Nom du fichier"));
    grid->addWidget(label(save, QStringLiteral("No&m du fichier :"), nom_), 1, 0);
    grid->addWidget(nom_, 1, 1);
    grid->addWidget(new QLabel(QStringLiteral(".E31"), save), 1, 2);
    page->addWidget(save);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    creer_ = new QPushButton(QStringLiteral("&Créer"), this);
    creer_->setObjectName(QStringLiteral("Creer"));
    creer_->setDefault(true);
    annuler_ = new QPushButton(QStringLiteral("Annuler"), this);
    annuler_->setObjectName(QStringLiteral("Annuler"));
    annuler_->setAutoDefault(false);
    buttons->addWidget(creer_);
    buttons->addWidget(annuler_);
    page->addLayout(buttons);

    connect(actuel_, &QCheckBox::toggled, this, &CreerExo::updateStatementFields);
    connect(creer_, &QPushButton::clicked, this, &CreerExo::Creer_Click);
    connect(annuler_, &QPushButton::clicked, this, &QDialog::reject);
}

void CreerExo::updateStatementFields() {
    enonce_->setEnabled(!actuel_->isChecked());
}

void CreerExo::browse(QLineEdit* field) {
    const QString kind = field->objectName();
    QString chosen;
    if (chooser_) {
        chosen = chooser_(kind);
    } else if (field == dossier_) {
        chosen = QFileDialog::getExistingDirectory(this, QStringLiteral("Dossier de l'exercice"),
                                                   dossier_->text());
    } else {
        const bool config = field == situationEnonce_ || field == situationCorrection_;
        chosen = QFileDialog::getOpenFileName(this, field->accessibleName(),
                                              QFileInfo(field->text()).absolutePath(),
                                              config ? ConfigFilter : RtfFilter);
    }
    if (!chosen.isEmpty())
        field->setText(QDir::toNativeSeparators(chosen));
    field->setFocus();
}

bool CreerExo::refuse(QWidget* field, const QString& title, const QString& text) {
    platform::showExclamation(this, title, text);
    if (field) {
        field->setFocus();
        if (auto* edit = qobject_cast<QLineEdit*>(field))
            edit->selectAll();
    }
    return false;
}

void CreerExo::Creer_Click() {
    if (writeExercise())
        accept();
}

bool CreerExo::writeExercise() {
    created_.clear();
    QString base = nom_->text().trimmed();
    if (base.endsWith(QLatin1String(".E31"), Qt::CaseInsensitive))
        base.chop(4);

    // The exercise's own texts first: the engine knows what its records hold.
    ExerciseFile x;
    x.title = titre_->text().trimmed();
    x.level = niveau_->currentData().toInt();
    std::vector<QLineEdit*> topicFields;
    for (QLineEdit* line : notions_) {
        if (line->text().trimmed().isEmpty())
            continue;
        x.topics << line->text().trimmed();
        topicFields.push_back(line);
    }
    const bool current = actuel_->isChecked();
    const QString statementText = texteEnonce_->text().trimmed();
    const QString statementConfig = situationEnonce_->text().trimmed();
    const QString correctionText = texteCorrection_->text().trimmed();
    const QString correctionConfig = situationCorrection_->text().trimmed();
    x.statement = base + QStringLiteral("_enonce.rtf");
    if (current || !statementConfig.isEmpty())
        x.statementConfig = base + QStringLiteral("_enonce.C10");
    if (!correctionText.isEmpty())
        x.correction = base + QStringLiteral("_correction.rtf");
    if (!correctionConfig.isEmpty())
        x.correctionConfig = base + QStringLiteral("_correction.C10");

    const EncodedExercise encoded = encodeExercise(x);
    QWidget* field = nom_;
    QString subject = QStringLiteral("Le nom du fichier");
    QString of = QStringLiteral("du nom du fichier");
    int limit = platform::RecordFile::MaxTextLength - static_cast<int>(LongestSuffix.size());
    if (encoded.record == 11) {
        field = titre_;
        subject = QStringLiteral("Le titre");
        of = QStringLiteral("du titre");
        limit = platform::RecordFile::MaxTextLength;
    } else if (encoded.record >= 6 && encoded.record <= 10) {
        const auto k = static_cast<std::size_t>(encoded.record - 6);
        field = topicFields[k];
        const auto line = std::find(notions_.begin(), notions_.end(), field) - notions_.begin() + 1;
        subject = QStringLiteral("La notion n° %1").arg(line);
        of = QStringLiteral("de la notion n° %1").arg(line);
        limit = platform::RecordFile::MaxTextLength;
    }
    switch (encoded.problem) {
    case EncodeProblem::None:
        break;
    case EncodeProblem::BlankTitle:
        return refuse(titre_, QStringLiteral("Titre manquant"),
                      QStringLiteral("Donner un titre à l'exercice."));
    case EncodeProblem::NotEncodable:
        return refuse(field, QStringLiteral("Caractère non valide"),
                      QStringLiteral("Le caractère « %1 » %2 ne peut pas être enregistré dans un "
                                     "fichier d'exercice.")
                          .arg(encoded.character, of));
    case EncodeProblem::TooLong:
        return refuse(
            field, QStringLiteral("Texte trop long"),
            QStringLiteral("%1 ne doit pas dépasser %2 caractères.").arg(subject).arg(limit));
    case EncodeProblem::BlankStatement:
    case EncodeProblem::BadLevel:
    case EncodeProblem::TooManyTopics:
        // The window cannot produce these: the name always carries its suffix, the level
        // comes from the list and there are five topic lines.
        return refuse(nullptr, QStringLiteral("Enregistrement impossible"),
                      QStringLiteral("L'exercice ne peut pas être enregistré."));
    }

    if (base.isEmpty())
        return refuse(nom_, QStringLiteral("Nom manquant"),
                      QStringLiteral("Donner un nom au fichier de l'exercice."));
    if (base.startsWith(QLatin1Char('.')) ||
        std::any_of(base.begin(), base.end(), [](QChar c) { return ForbiddenInName.contains(c); }))
        return refuse(nom_, QStringLiteral("Nom non valide"),
                      QStringLiteral("Le nom du fichier ne doit pas commencer par un point ni "
                                     "contenir l'un des caractères \\ / : * ? \" < > |"));
    if (platform::toCp1252(base).size() > limit)
        return refuse(
            nom_, QStringLiteral("Texte trop long"),
            QStringLiteral("Le nom du fichier ne doit pas dépasser %1 caractères.").arg(limit));

    const QString folderText = dossier_->text().trimmed();
    const QFileInfo folderInfo(QDir::fromNativeSeparators(folderText));
    if (folderText.isEmpty() || !folderInfo.isDir())
        return refuse(dossier_, QStringLiteral("Dossier introuvable"),
                      QStringLiteral("Le dossier « %1 » n'existe pas.").arg(folderText));
    const QString folder = QDir(folderInfo.absoluteFilePath()).absolutePath() + QLatin1Char('/');

    // Everything to write is gathered before any file is touched.
    auto readSource = [this](QLineEdit* source, bool config, QByteArray& out) {
        const QString path = QDir::fromNativeSeparators(source->text().trimmed());
        QFile file(path);
        if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
            return refuse(source, QStringLiteral("Fichier absent"),
                          QStringLiteral("Le fichier ") + path +
                              QStringLiteral(" est introuvable"));
        if (config) {
            const std::optional<QByteArray> bytes = configurations::readConfigurationFile(path);
            if (!bytes || !configurations::decodeConfiguration(*bytes))
                return refuse(source, QStringLiteral("Fichier non valide"),
                              QStringLiteral("Le fichier ") + path +
                                  QStringLiteral(" ne correspond pas à cette application"));
            out = *bytes;
            return true;
        }
        out = file.read(platform::MaxRichTextFileSize);
        if (!out.startsWith("{\\rtf"))
            return refuse(source, QStringLiteral("Fichier non valide"),
                          QStringLiteral("Le fichier ") + path +
                              QStringLiteral(" n'est pas un texte au format RTF"));
        return true;
    };
    std::vector<OutputFile> files;
    auto add = [&](const QString& name, const QByteArray& bytes) {
        files.push_back({folder + name, bytes});
    };
    QByteArray bytes;
    if (current) {
        add(x.statement, platform::toRtf(*main_.supertext()->document()));
        const std::optional<QByteArray> config =
            configurations::encodeConfiguration(main_.configurations()->currentConfiguration());
        if (!config)
            return refuse(nullptr, QStringLiteral("Enregistrement impossible"),
                          QStringLiteral("La situation actuelle ne peut pas être enregistrée."));
        add(x.statementConfig, *config);
    } else {
        if (statementText.isEmpty())
            return refuse(texteEnonce_, QStringLiteral("Énoncé manquant"),
                          QStringLiteral("Choisir le texte de l'énoncé (fichier RTF)."));
        if (!readSource(texteEnonce_, false, bytes))
            return false;
        add(x.statement, bytes);
        if (!statementConfig.isEmpty()) {
            if (!readSource(situationEnonce_, true, bytes))
                return false;
            add(x.statementConfig, bytes);
        }
    }
    if (!correctionText.isEmpty()) {
        if (!readSource(texteCorrection_, false, bytes))
            return false;
        add(x.correction, bytes);
    }
    if (!correctionConfig.isEmpty()) {
        if (!readSource(situationCorrection_, true, bytes))
            return false;
        add(x.correctionConfig, bytes);
    }
    // The index last: it names the others, so it is only replaced once they are in place.
    add(base + QStringLiteral(".E31"), encoded.bytes);

    QStringList existing;
    for (const OutputFile& f : files)
        if (QFileInfo::exists(f.path))
            existing << QFileInfo(f.path).fileName();
    if (existing.size() == 1 &&
        !platform::askYesNoWarning(this, QStringLiteral("Ecraser le fichier?"),
                                   QStringLiteral("Le fichier ") + existing.first() +
                                       QStringLiteral(" existe déjà.\nEcraser l'ancien?")))
        return false;
    if (existing.size() > 1 &&
        !platform::askYesNoWarning(this, QStringLiteral("Ecraser le fichier?"),
                                   QStringLiteral("Les fichiers ") +
                                       existing.join(QStringLiteral(", ")) +
                                       QStringLiteral(" existent déjà.\nEcraser les anciens?")))
        return false;

    // Every file is written in full beside its place before any one replaces an old file; a
    // failure drops the temporary files and leaves the folder as it was.
    auto failed = [this](const QString& path) {
        platform::showCritical(this, QStringLiteral("Enregistrement impossible"),
                               QStringLiteral("Ecriture impossible sur disque\n") +
                                   QDir::toNativeSeparators(path));
        return false;
    };
    std::vector<std::unique_ptr<QSaveFile>> saves;
    for (const OutputFile& f : files) {
        auto save = std::make_unique<QSaveFile>(f.path);
        if (!save->open(QIODevice::WriteOnly | QIODevice::Unbuffered) ||
            save->write(f.bytes) != f.bytes.size())
            return failed(f.path);
        saves.push_back(std::move(save));
    }
    for (std::size_t i = 0; i < saves.size(); ++i)
        if (!saves[i]->commit())
            return failed(files[i].path);
    created_ = files.back().path;
    return true;
}

} // namespace exercises
