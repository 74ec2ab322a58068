#include "printing/confimp.h"

#include "platform/messagebox.h"
#include "platform/printer.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPushButton>
#include <QSpinBox>
#include <exception>

namespace printing {

namespace {

constexpr int WindowWidth = 420;
constexpr int WindowHeight = 290;
constexpr QRect FrameRect(8, 6, 404, 236);
constexpr int ButtonTop = 252;

// The print routine ignores run-time errors: a printer that fails part-way leaves the job as
// the platform leaves it, and the window still closes.
template <typename F> void tolerant(F&& statement) {
    try {
        statement();
    } catch (const std::exception&) {
    }
}

void showEmptyChoice(QWidget* parent) {
    platform::showCritical(parent, QStringLiteral("Erreur sélection"),
                           QStringLiteral("Il faut choisir au moins une illustration à imprimer"));
}

} // namespace

confimp::confimp(const Illustrations& pictures, QPrinter& printer, QWidget* mainWindow)
    : QDialog(mainWindow), pictures_(pictures), printer_(printer), mainWindow_(mainWindow) {
    setObjectName(QStringLiteral("confimp"));
    setWindowTitle(QStringLiteral("Imprimer"));
    setModal(true);
    setFixedSize(WindowWidth, WindowHeight);
    buildControls();
    Form_Load();
}

confimp::~confimp() = default;

void confimp::buildControls() {
    frame1_ = new QGroupBox(QStringLiteral("Options"), this);
    frame1_->setObjectName(QStringLiteral("Frame1"));
    frame1_->setGeometry(FrameRect);

    label5_ = new QLabel(QStringLiteral("Titre de la page :"), frame1_);
    label5_->setObjectName(QStringLiteral("Label5"));
    label5_->setGeometry(12, 24, 108, 22);
    text1_ = new QLineEdit(QStringLiteral("Orbitex - Thermivo"), frame1_);
    text1_->setObjectName(QStringLiteral("Text1"));
    text1_->setGeometry(122, 24, 270, 22);

    const char* const captions[4] = {
        "L'illustration de l'aspect microscopique",
        "Le bilan énergétique de l'aspect microscopique",
        "L'illustration de l'aspect macroscopique",
        "Le tableau de valeurs",
    };
    for (int i = 0; i < 4; ++i) {
        auto* box = new QCheckBox(QString::fromUtf8(captions[i]), frame1_);
        box->setObjectName(QStringLiteral("Chec_%1").arg(i));
        box->setGeometry(12, 56 + 22 * i, 380, 20);
        chec_[static_cast<std::size_t>(i)] = box;
    }
    // Designed inactive: the value table is never printed from here.
    chec_[3]->setEnabled(false);

    label3_ = new QLabel(QStringLiteral("Nombre d'exemplaires :"), frame1_);
    label3_->setObjectName(QStringLiteral("Label3"));
    label3_->setGeometry(12, 150, 140, 22);
    label4_ = new QLabel(QStringLiteral("1"), frame1_);
    label4_->setObjectName(QStringLiteral("Label4"));
    label4_->setGeometry(154, 150, 32, 22);
    label4_->setAlignment(Qt::AlignCenter);
    label4_->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    // The spin control is its arrows; Label4 shows the number.
    upDown1_ = new QSpinBox(frame1_);
    upDown1_->setObjectName(QStringLiteral("UpDown1"));
    upDown1_->setRange(1, 99);
    upDown1_->setValue(1);
    upDown1_->setGeometry(186, 149, 20, 24);
    upDown1_->setButtonSymbols(QAbstractSpinBox::UpDownArrows);
    connect(upDown1_, &QSpinBox::valueChanged, this, &confimp::UpDown1_Change);

    defaut_ = new QLineEdit(frame1_);
    defaut_->setObjectName(QStringLiteral("defaut"));
    defaut_->setGeometry(12, 190, 380, 22);
    defaut_->setReadOnly(true);

    struct ButtonDef {
        QPushButton*& button;
        const char* name;
        const char* caption;
        int left;
    };
    const ButtonDef buttons[] = {
        {command2_, "Command2", "&Imprimantes", 8},
        {apercu_, "Apercu", "Aper&çu", 112},
        {command1_, "Command1", "&OK", 236},
        {command3_, "Command3", "&Annuler", 326},
    };
    for (const ButtonDef& d : buttons) {
        d.button = new QPushButton(QString::fromUtf8(d.caption), this);
        d.button->setObjectName(QString::fromLatin1(d.name));
        d.button->setGeometry(d.left, ButtonTop, d.left < 200 ? 96 : 86, 28);
        d.button->setAutoDefault(false);
    }
    command1_->setDefault(true);
    connect(command1_, &QPushButton::clicked, this, &confimp::Command1_Click);
    connect(command2_, &QPushButton::clicked, this, &confimp::Command2_Click);
    connect(command3_, &QPushButton::clicked, this, &confimp::Command3_Click);
    connect(apercu_, &QPushButton::clicked, this, &confimp::Apercu_Click);

    frame2_ = new QGroupBox(this);
    frame2_->setObjectName(QStringLiteral("Frame2"));
    frame2_->setGeometry(FrameRect);
    label1_ = new QLabel(QStringLiteral("Veuillez patienter quelques instants..."), frame2_);
    label1_->setObjectName(QStringLiteral("Label1"));
    label1_->setGeometry(12, 90, 380, 40);
    label1_->setAlignment(Qt::AlignCenter);
    frame2_->hide();
}

void confimp::Form_Load() {
    if (mainWindow_) {
        // Twenty pixels below the main window's top, across its middle.
        const QRect main = mainWindow_->frameGeometry();
        move(main.left() + (main.width() - width()) / 2, main.top() + 20);
    }
    defaut_->setText(platform::Printer(printer_).deviceName());
}

void confimp::UpDown1_Change() {
    label4_->setText(QString::number(upDown1_->value()));
}

bool confimp::choiceIsEmpty() const {
    // The value table (Chec_3) plays no part.
    return !chec_[0]->isChecked() && !chec_[1]->isChecked() && !chec_[2]->isChecked();
}

PrintJob confimp::job() const {
    PrintJob j;
    j.title = text1_->text();
    j.choice = Choice{chec_[0]->isChecked(), chec_[1]->isChecked(), chec_[2]->isChecked()};
    j.copies = upDown1_->value();
    return j;
}

void confimp::Command1_Click() {
    if (choiceIsEmpty()) {
        showEmptyChoice(this);
        return;
    }
    if (printer_.printerName().isEmpty() && printer_.outputFileName().isEmpty()) {
        // No printer on this computer and no file chosen yet: the printer dialog offers a PDF
        // file. Cancelled, nothing is printed and the window stays.
        Command2_Click();
        if (printer_.printerName().isEmpty() && printer_.outputFileName().isEmpty())
            return;
    }
    for (QWidget* w : {static_cast<QWidget*>(command1_), static_cast<QWidget*>(command2_),
                       static_cast<QWidget*>(command3_), static_cast<QWidget*>(apercu_),
                       static_cast<QWidget*>(frame1_)})
        w->hide();
    frame2_->show();
    repaint();

    const PrintJob j = job();
    tolerant([&] {
        // The copies are pages of their own here; the printer must not repeat each one.
        printer_.setCopyCount(1);
        platform::Printer printer(printer_);
        printPages(printer, pictures_, j);
    });
    accept();
}

void confimp::Command2_Click() {
    QPrintDialog dialog(&printer_, this);
    dialog.exec();
    Form_Load();
}

void confimp::Command3_Click() {
    reject();
}

void confimp::Apercu_Click() {
    if (choiceIsEmpty()) {
        showEmptyChoice(this);
        return;
    }
    const PrintJob j = job();
    QPrintPreviewDialog preview(&printer_, this);
    preview.setObjectName(QStringLiteral("apercu"));
    connect(&preview, &QPrintPreviewDialog::paintRequested, this, [&](QPrinter* device) {
        tolerant([&] {
            platform::Printer printer(*device);
            printPages(printer, pictures_, j);
        });
    });
    preview.exec();
}

} // namespace printing
