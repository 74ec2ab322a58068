#include "mainwindow/feuillep.h"

#include "calculator/machine.h"
#include "chemistry/catalogue.h"
#include "configurations/configurations.h"
#include "exercises/exercisemenu.h"
#include "macro/macropanel.h"
#include "mainwindow/copymenu.h"
#include "mainwindow/helpwindow.h"
#include "mainwindow/hints.h"
#include "mainwindow/illustrationexport.h"
#include "mainwindow/intermodule.h"
#include "mainwindow/optionspanel.h"
#include "mainwindow/startup.h"
#include "mainwindow/tabstrip.h"
#include "micro/micropanel.h"
#include "platform/canvas.h"
#include "platform/messagebox.h"
#include "platform/programfolder.h"
#include "platform/richtext.h"
#include "platform/surface.h"
#include "platform/zoom.h"
#include "printing/confimp.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QCursor>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPrinter>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextEdit>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <exception>

namespace {

// The main window's handlers ignore run-time errors: a failing statement is skipped and the
// next one runs, without a message.
template <typename F> void tolerant(F&& statement) {
    try {
        statement();
    } catch (const std::exception&) {
    }
}

constexpr QColor StatementBlue(0, 0, 200);
// The statement area's paragraph indent of 20 is counted in twips, 15 to the pixel.
constexpr double ParagraphIndent = 20.0 / 15.0;

// Window layout, in pixels of the 800 × 600 client area.
constexpr QRect ComboRect(128, 8, 340, 24);
constexpr QRect OngletsRect(8, 38, 460, 408);
constexpr QRect DataPanelRect(8, 450, 352, 148);
constexpr QRect InfoRect(366, 452, 102, 144);
constexpr QRect BtexoRect(478, 8, 100, 24);
constexpr QRect FichRect(478, 38, 314, 22);
constexpr QRect SupertextRect(478, 60, 311, 436);

} // namespace

feuilleP::feuilleP(QWidget* parent) : QWidget(parent), ctx_(state_) {
    setObjectName(QStringLiteral("feuilleP"));
    setWindowTitle(QStringLiteral("Thermivo"));
    setFixedSize(800, 600);
    setFocusPolicy(Qt::StrongFocus);
    buildControls();
}

feuilleP::~feuilleP() = default;

void feuilleP::buildControls() {
    ctx_.window = this;

    label1_ = new QLabel(QStringLiteral("Réaction étudiée :"), this);
    label1_->setObjectName(QStringLiteral("Label1"));
    label1_->setGeometry(8, 8, 116, 24);
    label1_->setAlignment(Qt::AlignVCenter | Qt::AlignRight);

    combo1_ = new QComboBox(this);
    combo1_->setObjectName(QStringLiteral("Combo1"));
    combo1_->setGeometry(ComboRect);
    // A choice in the list, even of the reaction already shown, resets the views.
    connect(combo1_, &QComboBox::activated, this, [this](int) { Combo1_Click(); });
    ctx_.Combo1 = combo1_;
    label1_->setBuddy(combo1_);
    combo1_->setAccessibleName(QStringLiteral("Réaction étudiée"));
    combo1_->view()->setAccessibleName(QStringLiteral("Liste des réactions"));
    combo1_->view()->verticalScrollBar()->setAccessibleName(
        QStringLiteral("Défilement de la liste"));

    onglets_ = new platform::Surface(this, QStringLiteral("Onglets"));
    onglets_->setBackColor(QColor(212, 208, 200)); // the classic button face
    onglets_->setGeometry(OngletsRect);
    onglets_->setAccessibleName(QStringLiteral("Onglets Micro, Macro et Options"));
    ctx_.Onglets = onglets_;

    options_ = new OptionsPanel(onglets_, this);
    for (int i = 0; i < 3; ++i)
        ctx_.Check1[static_cast<std::size_t>(i)] = options_->check1()[static_cast<std::size_t>(i)];
    for (int i = 0; i < 2; ++i)
        ctx_.Option1[static_cast<std::size_t>(i)] =
            options_->option1()[static_cast<std::size_t>(i)];

    info_ = new QLabel(this);
    info_->setObjectName(QStringLiteral("info"));
    info_->setGeometry(InfoRect);
    info_->setAccessibleName(QStringLiteral("Information"));
    info_->setWordWrap(true);
    info_->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    info_->setStyleSheet(QStringLiteral("color: rgb(0, 0, 140);"));
    ctx_.info = info_;
    ctx_.printer = [this] { return &printer(); };

    tabs_ = new TabStrip(state_, onglets_, this);

    micro_ = new MicroPanel(ctx_, this);
    micro_->picture5()->setGeometry(DataPanelRect);
    macro_ = new MacroPanel(ctx_, this);
    tabs_->setPanels(micro_->picture3(), macro_->frame2(), options_->picture1());
    tabs_->setDataPanelRefresh([this] { micro_->picture5()->refresh(); });

    connect(options_, &OptionsPanel::Check1_Click, this,
            [this](int index) { tolerant([&] { micro_->Check1_Click(index); }); });
    connect(options_, &OptionsPanel::Option1_Click, this,
            [this](int index) { tolerant([&] { macro_->Option1_Click(index); }); });

    btexo_ = new QPushButton(QStringLiteral("Exercices"), this);
    btexo_->setObjectName(QStringLiteral("btexo"));
    btexo_->setGeometry(BtexoRect);
    connect(btexo_, &QPushButton::clicked, this, &feuilleP::btexo_Click);

    fich_ = new QLineEdit(this);
    fich_->setObjectName(QStringLiteral("fich"));
    fich_->setGeometry(FichRect);
    fich_->setAccessibleName(QStringLiteral("Fichier ouvert"));
    fich_->setReadOnly(true);
    connect(fich_, &QLineEdit::textChanged, this, [this](const QString& text) {
        fich_->setCursorPosition(static_cast<int>(text.size()));
        fich_->setToolTip(text);
    });

    supertext_ = new QTextEdit(this);
    supertext_->setObjectName(QStringLiteral("supertext"));
    supertext_->setGeometry(SupertextRect);
    supertext_->setAccessibleName(QStringLiteral("Énoncé"));
    supertext_->verticalScrollBar()->setAccessibleName(QStringLiteral("Défilement vertical"));
    supertext_->horizontalScrollBar()->setAccessibleName(QStringLiteral("Défilement horizontal"));
    supertext_->setAcceptRichText(true);
    connect(supertext_, &QTextEdit::textChanged, this, [this] {
        // Only the user's edits count; the program's own writes do not.
        if (!writingStatement_ && !supertext_->toPlainText().isEmpty())
            state_.StatementModified = 1;
    });

    struct ButtonDef {
        int number;
        const char* caption;
        const char* tip;
    };
    const ButtonDef defs[] = {
        {2, "&Ouvrir", "Retrouver une configuration"},
        {11, "&Enregistrer", "Enregistrer la configuration actuelle"},
        {10, "&Imprimer", "Imprimer l'image"},
        {4, "Co&pier", "Placer l'image dans le presse-papiers"},
        {8, "&Calculatrice", "Machine à calculer"},
        {7, "&Aide", "Aide pour utiliser cette application"},
        {1, "&Fermer", "Quitter cette application"},
    };
    int slot = 0;
    for (const ButtonDef& d : defs) {
        auto* b = new QPushButton(QString::fromUtf8(d.caption), this);
        b->setObjectName(QStringLiteral("Command%1").arg(d.number));
        b->setToolTip(QString::fromUtf8(d.tip));
        const int row = slot / 4, col = slot % 4;
        b->setGeometry(478 + col * 80, 510 + row * 34, 74, 28);
        commands_[static_cast<std::size_t>(d.number)] = b;
        ++slot;
    }
    connect(commands_[1], &QPushButton::clicked, this, &feuilleP::Command1_Click);
    connect(commands_[2], &QPushButton::clicked, this, &feuilleP::Command2_Click);
    connect(commands_[4], &QPushButton::clicked, this, &feuilleP::Command4_Click);
    connect(commands_[7], &QPushButton::clicked, this, &feuilleP::Command7_Click);
    connect(commands_[8], &QPushButton::clicked, this, &feuilleP::Command8_Click);
    connect(commands_[10], &QPushButton::clicked, this, &feuilleP::Command10_Click);
    connect(commands_[11], &QPushButton::clicked, this, &feuilleP::Command11_Click);

    copyMenu_ = new CopyMenu({micro_->picmicro(), micro_->picture2(), macro_->picture4()}, info_,
                             state_, this);
    copyMenu_->setExporter([this] { askAndExportIllustration(*this); });
    hints_ = new Hints(this, info_, state_);
    configurations_ = new configurations::Configurations(
        ctx_, *macro_, [this] { Combo1_Click(); }, this);
    configurations_->acceptDrops(this, [this](const QString& path) { openFile(path); });
    exerciseMenu_ = new exercises::ExerciseMenu(*this);
    exerciseOpener_ = [this](const QString& path) { exerciseMenu_->openExercise(path); };
    buildShortcuts();
}

void feuilleP::buildShortcuts() {
    const auto add = [this](const char* name, const QList<QKeySequence>& keys, auto action) {
        auto* s = new QShortcut(this);
        s->setObjectName(QString::fromLatin1(name));
        s->setKeys(keys);
        connect(s, &QShortcut::activated, this, action);
    };
    add("nextTab",
        {QKeySequence(Qt::CTRL | Qt::Key_Tab), QKeySequence(Qt::CTRL | Qt::Key_PageDown)},
        [this] { switchTab(1); });
    // Shift+Tab arrives as Backtab, with or without Shift still reported.
    add("previousTab",
        {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab),
         QKeySequence(Qt::CTRL | Qt::Key_Backtab), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab),
         QKeySequence(Qt::CTRL | Qt::Key_PageUp)},
        [this] { switchTab(-1); });
    add("tabMicro", {QKeySequence(Qt::ALT | Qt::Key_1)}, [this] { selectTab(1); });
    add("tabMacro", {QKeySequence(Qt::ALT | Qt::Key_2)}, [this] { selectTab(2); });
    add("tabOptions", {QKeySequence(Qt::ALT | Qt::Key_3)}, [this] { selectTab(3); });
    add("help", {QKeySequence(Qt::Key_F1)}, [this] { Command7_Click(); });
    // The zoom: "+" is shifted on many keyboards, so Ctrl+= works as well.
    platform::Zoom& zoom = platform::Zoom::instance();
    add("zoomIn",
        {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal),
         QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Plus)},
        [&zoom] { zoom.choose(platform::neighbourZoom(zoom.percent(), 1)); });
    add("zoomOut", {QKeySequence(Qt::CTRL | Qt::Key_Minus)},
        [&zoom] { zoom.choose(platform::neighbourZoom(zoom.percent(), -1)); });
    add("zoomReset", {QKeySequence(Qt::CTRL | Qt::Key_0)},
        [&zoom] { zoom.choose(platform::ZoomSteps.front()); });
    // A new scale changes the screen's size in logical pixels: centre the window again.
    connect(&zoom, &platform::Zoom::changed, this, [this] {
        if (loaded_)
            tolerant([&] { applySizingRule(); });
    });
}

QSize feuilleP::screenPixels() const {
    if (screenOverride_)
        return *screenOverride_;
    if (const QScreen* s = QGuiApplication::primaryScreen())
        return s->size();
    return {};
}

void feuilleP::applySizingRule() {
    if (const auto g = mainWindowGeometry(screenPixels())) {
        resizing_ = true;
        setWindowState(windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized));
        resize(g->size());
        move(g->topLeft());
        resizing_ = false;
    }
}

void feuilleP::setHint(const QString& text) {
    setInfoCaption(info_, text);
}

void feuilleP::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!loaded_)
        Form_Load();
}

void feuilleP::Form_Load() {
    if (loaded_)
        return;
    loaded_ = true;
    tolerant([&] { state_.ProgramFolder = platform::programFolder(); });
    if (!windowless_)
        tolerant([&] { InterModuleFile(state_.ProgramFolder).announceRunning(); });
    tolerant([&] { applySizingRule(); });
    tolerant([&] { ShowWelcomeText(); });
    // The strip lays out its panels when it paints: do it before the reaction is drawn.
    tolerant([&] { onglets_->refresh(); });
    tolerant([&] { liste(); });
    tolerant([&] { setHint(defaultHint()); });
    // Nothing is picked when the window opens, so the opening hint stays readable.
    tolerant([&] { setFocus(Qt::OtherFocusReason); });
    tolerant([&] { state_.CopyMessage = copyMessage(); });
    tolerant([&] {
        background_ = QImage(); // rebuilt by the next paint
        update();
    });
    tolerant([&] { macro_->prepapic4(); });
}

void feuilleP::loadWithoutWindow() {
    windowless_ = true;
    Form_Load();
}

void feuilleP::runAnimationSteps(int count) {
    for (int k = 0; k < count; ++k)
        tolerant([&] { micro_->Timer1_Timer(); });
}

void feuilleP::Form_Activate() {
    QString request;
    tolerant([&] { request = InterModuleFile(state_.ProgramFolder).takeExerciseRequest(); });
    if (request.isEmpty())
        return;
    setEnabled(false);
    tolerant([&] { state_.ProgramFolder = platform::programFolder(); });
    tolerant([&] {
        if (exerciseOpener_)
            exerciseOpener_(platform::resolveInFolder(state_.ProgramFolder, request));
    });
    setEnabled(true); // ExerciseOpened is the opener's: set only when an exercise opened
}

void feuilleP::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && loaded_)
        Form_Activate();
}

void feuilleP::Form_Resize() {
    if (!resizing_ && loaded_)
        applySizingRule();
}

void feuilleP::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    background_ = QImage();
    Form_Resize();
}

void feuilleP::Form_Paint(platform::Canvas& c) {
    c.setScale(0, 0, 800, 600);
    for (int y = 0; y <= 600; ++y) {
        const int r = static_cast<int>(std::nearbyint(255 - (y / 600.0) * 55));
        const int b = static_cast<int>(std::nearbyint(255 - (y / 600.0) * 75));
        c.line(0, y, 800, y, QColor(r, r, b));
    }
    c.line(supertext_->x() + 3, fich_->y() + 3, supertext_->x() + supertext_->width() + 3,
           supertext_->y() + supertext_->height() + 3, platform::qbColor(8),
           platform::LineKind::FilledBox);
}

void feuilleP::paintEvent(QPaintEvent*) {
    // The background is kept as a picture, as the window did with AutoRedraw on.
    const double ratio = devicePixelRatioF();
    if (background_.deviceIndependentSize() != QSizeF(size()) ||
        background_.devicePixelRatio() != ratio) {
        background_ = QImage((QSizeF(size()) * ratio).toSize(), QImage::Format_RGB32);
        background_.setDevicePixelRatio(ratio);
        background_.fill(Qt::white);
        QPainter bp(&background_);
        platform::DrawState st;
        platform::Canvas c(bp, st, size());
        Form_Paint(c);
    }
    QPainter p(this);
    p.drawImage(0, 0, background_);
    if (!painted_) {
        painted_ = true;
        QMetaObject::invokeMethod(this, &feuilleP::firstPainted, Qt::QueuedConnection);
    }
}

void feuilleP::selectReaction(int index) {
    if (index < 1 || index > combo1_->count())
        return;
    combo1_->setCurrentIndex(index - 1);
    Combo1_Click();
}

void feuilleP::selectTab(int tab) {
    onglets_->refresh();
    const auto& e = tabs_->tabEdges();
    if (tab >= 1 && tab <= 3)
        tabs_->Onglets_MouseUp(Qt::LeftButton, Qt::NoModifier, (e[tab - 1] + e[tab]) / 2.0, 5);
}

void feuilleP::switchTab(int delta) {
    const int current = std::clamp<int>(state_.ActiveTab, 1, 3);
    selectTab((current - 1 + delta + 3) % 3 + 1);
}

void feuilleP::ShowWelcomeText() {
    writingStatement_ = true;
    supertext_->hide();
    supertext_->clear();
    supertext_->setReadOnly(true); // the welcome text is protected against editing

    QTextCharFormat base;
    base.setFontFamilies({QStringLiteral("Arial"), QStringLiteral("Liberation Sans")});
    base.setFontPointSize(10);
    base.setFontWeight(QFont::Normal);
    base.setFontItalic(false);
    base.setFontUnderline(false);
    base.setVerticalAlignment(QTextCharFormat::AlignNormal);
    base.setForeground(QColor(0, 0, 0));

    // Composed in one edit block, so the statement area lays the text out once.
    QTextCursor cur(supertext_->document());
    cur.beginEditBlock();
    for (const WelcomeSegment& seg : welcomeSegments()) {
        QTextCharFormat f = base;
        QTextBlockFormat block;
        block.setAlignment(Qt::AlignLeft);
        block.setLeftMargin(seg.format == 9 ? 0 : ParagraphIndent);
        switch (seg.format) {
        case 1:
        case 6:
            f.setForeground(StatementBlue);
            break;
        case 2:
            block.setAlignment(Qt::AlignHCenter);
            break;
        case 3:
            f.setVerticalAlignment(QTextCharFormat::AlignSubScript);
            break;
        case 4:
            f.setVerticalAlignment(QTextCharFormat::AlignSuperScript);
            break;
        case 5:
            f.setFontFamilies({QStringLiteral("Symbol")});
            break;
        case 7:
            f.setFontItalic(true);
            break;
        case 8:
            f.setFontUnderline(true);
            break;
        case 9:
            f.setFontPointSize(18);
            f.setForeground(StatementBlue);
            block.setAlignment(Qt::AlignHCenter);
            break;
        default:
            break;
        }
        // A segment's CR LF pairs are paragraph breaks; the paragraph format applies to every
        // paragraph the segment touches.
        const QStringList lines = seg.text.split(QStringLiteral("\r\n"));
        for (qsizetype i = 0; i < lines.size(); ++i) {
            if (i > 0)
                cur.insertBlock();
            if (i == 0 || !lines[i].isEmpty() || i + 1 < lines.size())
                cur.setBlockFormat(block);
            cur.insertText(lines[i], f);
        }
    }
    cur.endEditBlock();
    supertext_->moveCursor(QTextCursor::Start);
    supertext_->show();
    writingStatement_ = false;
}

bool feuilleP::loadStatement(const QString& path) {
    writingStatement_ = true;
    const bool loaded = platform::loadRichText(*supertext_, path);
    if (loaded)
        supertext_->setReadOnly(false); // unlike the welcome text, a statement may be edited
    writingStatement_ = false;
    return loaded;
}

bool feuilleP::saveStatement(const QString& path) const {
    return platform::saveRichText(*supertext_, path);
}

void feuilleP::printStatement(QPagedPaintDevice& device) const {
    platform::printRichText(*supertext_, device);
}

void feuilleP::liste() {
    combo1_->clear();
    for (int i = 1; i <= chemistry::ReactionCount; ++i)
        combo1_->addItem(chemistry::reaction(i).label, i);
    combo1_->setCurrentIndex(0);
    Combo1_Click();
}

void feuilleP::Combo1_Click() {
    // The order of these steps is what the views rely on: the balance is reset before the
    // totals of the new reaction exist, and the molecules are drawn last.
    tolerant([&] {
        const std::int16_t index = chemistry::indexOfLabel(combo1_->currentText());
        if (index != 0)
            combo1_->setProperty("Tag", QString::number(index));
    });
    tolerant([&] { macro_->hscroll1()->setValue(0); });
    tolerant([&] { macro_->majqant(); });
    state_.AnimStep = 0;
    tolerant([&] {
        if (micro_->picture3()->isVisible())
            micro_->picture3()->refresh();
    });
    tolerant([&] {
        if (macro_->frame2()->isVisible())
            macro_->frame2()->refresh();
    });
    tolerant([&] {
        const chemistry::BondTotals t = chemistry::computeTotals(ctx_.reactionIndex());
        state_.BrokenBondsEnergy = t.broken;
        state_.FormedBondsEnergy = t.formed;
    });
    tolerant([&] { micro_->picture5()->refresh(); });
    tolerant([&] {
        std::int16_t index = ctx_.reactionIndex();
        micro_->animicro(index);
    });
}

void feuilleP::Command1_Click() {
    close();
}

void feuilleP::stopForOpening() {
    tolerant([&] { micro_->timer1()->stop(); });
    tolerant([&] { macro_->timer2()->stop(); });
    tolerant([&] { macro_->timer3()->stop(); });
    tolerant([&] { macro_->hscroll1()->setValue(0); });
    tolerant([&] { macro_->majqant(); });
    state_.AnimStep = 0;
}

void feuilleP::Command2_Click() {
    stopForOpening();
    tolerant([&] { configurations_->showOpenDialog(); });
}

void feuilleP::Command11_Click() {
    tolerant([&] { configurations_->showSaveDialog(); });
}

void feuilleP::openConfiguration(const QString& path) {
    stopForOpening();
    tolerant([&] { configurations_->openConfigurationFile(path); });
}

void feuilleP::openFile(const QString& path) {
    if (QFileInfo(path).suffix().compare(QLatin1String("E31"), Qt::CaseInsensitive) == 0) {
        tolerant([&] { exerciseMenu_->openExercise(path); });
        return;
    }
    openConfiguration(path);
}

void feuilleP::btexo_Click() {
    exerciseMenu_->popupUnder(btexo_);
}

void feuilleP::Command4_Click() {
    copyMenu_->popup(QCursor::pos());
}

void feuilleP::Command7_Click() {
    QString folder;
    tolerant([&] { folder = platform::programFolder(); });
    // The energy diagram is kept while the help is open and put back afterwards.
    QImage sauvetage;
    tolerant([&] { sauvetage = micro_->picture2()->image(); });
    tolerant([&] { HelpWindow::showHelp(this, folder); });
    tolerant([&] { micro_->picture2()->restoreImage(sauvetage); });
}

QPrinter& feuilleP::printer() {
    // Made on the first print, so that start-up does not look for printers.
    if (!printer_)
        printer_ = std::make_unique<QPrinter>(QPrinter::HighResolution);
    return *printer_;
}

void feuilleP::Command10_Click() {
    printing::confimp window({micro_->picmicro(), micro_->picture2(), macro_->picture4()},
                             printer(), this);
    window.exec();
}

void feuilleP::Command8_Click() {
    calculator::Machine machine(this);
    machine.exec();
}

bool feuilleP::Form_QueryUnload() {
    if (quiet_)
        return true;
    if (state_.StatementModified == 1 &&
        !platform::askOkCancel(this, QStringLiteral("Abandon des données?"),
                               QStringLiteral("Attention: perte des modifications du texte.")))
        return false;
    return platform::askOkCancel(this, QStringLiteral("Fermer"),
                                 QStringLiteral("Quitter vraiment Thermivo ?"));
}

void feuilleP::Form_Unload() {
    if (unloaded_)
        return;
    unloaded_ = true;
    tolerant([&] {
        if (QWidget* machine = QApplication::activeModalWidget();
            machine && machine->objectName() == QLatin1String("Machine"))
            machine->close();
    });
    tolerant([&] { micro_->timer1()->stop(); });
    tolerant([&] { InterModuleFile(state_.ProgramFolder).announceStopped(); });
    QCoreApplication::quit();
}

void feuilleP::closeEvent(QCloseEvent* event) {
    if (unloaded_) {
        event->accept();
        return;
    }
    if (!Form_QueryUnload()) {
        event->ignore();
        return;
    }
    Form_Unload();
    event->accept();
}
