#include "macro/macropanel.h"

#include "chemistry/catalogue.h"
#include "macro/description.h"
#include "macro/graphes.h"
#include "mainwindow/context.h"
#include "platform/canvas.h"
#include "platform/checkedint.h"
#include "platform/focusscrollbar.h"
#include "platform/imagebutton.h"
#include "platform/surface.h"
#include "platform/zoom.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCoreApplication>
#include <QFocusEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTimer>
#include <QWidget>
#include <algorithm>

using macro::GaugeMode;
using platform::Canvas;
using platform::FillStyle;
using platform::LineKind;

namespace {

// Frame2 layout in pixels. The amount fields keep their design positions, given in twips
// (1560, 2640, 3840 and 4920 from the left, 660 from the top, 975 × 315).
constexpr int TwipsPerPixel = 15;
constexpr std::array<int, 4> FieldLeft = {1560 / TwipsPerPixel, 2640 / TwipsPerPixel,
                                          3840 / TwipsPerPixel, 4920 / TwipsPerPixel};
constexpr int FieldTop = 660 / TwipsPerPixel;
constexpr int FieldWidth = 975 / TwipsPerPixel;
constexpr int FieldHeight = 315 / TwipsPerPixel;

constexpr int FrameWidth = 452;
constexpr int FrameHeight = 386;
constexpr int LabelHeight = 17;
constexpr int AmountRowTop = 90;
constexpr int AdvancementRowTop = 108;
constexpr int EnergyRowTop = 126;
constexpr int ResultLeft = FieldLeft[1]; // Label5 and Label6 start under the second column
constexpr int ResultWidth = 92;
constexpr int SliderLeft = ResultLeft + ResultWidth + 4;
constexpr int SliderRight = FrameWidth - 6;

constexpr int PictureLeft = 4;
constexpr int PictureTop = 146;
constexpr int PictureWidth = 376;
constexpr int PictureHeight = 238;
constexpr int ButtonColumnLeft = PictureLeft + PictureWidth + 8;

const QColor TableBack(240, 235, 230);
const QColor Red(255, 0, 0);
const QColor Blue(0, 100, 200);
const QColor Black(0, 0, 0);
const QColor White(255, 255, 255);

QFont controlFont(double points, bool bold) {
    QFont f;
    f.setFamilies({QStringLiteral("Arial"), QStringLiteral("Liberation Sans"),
                   QStringLiteral("DejaVu Sans")});
    f.setPixelSize(platform::pointsToPixels(points));
    f.setBold(bold);
    return f;
}

QString fieldStyle(const QColor& back) {
    return QStringLiteral("QLineEdit { background: %1; color: black; border: 1px solid "
                          "rgb(128,128,128); padding: 0px 1px; }")
        .arg(back.name());
}

// The character code a key press types, as the old KeyPress event saw it; -1 for keys that
// type nothing (arrows, Delete, Tab, function keys), which the field handles itself.
int keyAsciiOf(const QKeyEvent* ke) {
    switch (ke->key()) {
    case Qt::Key_Backspace:
        return 8;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return 13;
    case Qt::Key_Escape:
        return 27;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Delete: // some platforms give it the text "\x7f"; it edits, it does not type
        return -1;
    default:
        break;
    }
    const bool ctrl =
        ke->modifiers().testFlag(Qt::ControlModifier) && !ke->modifiers().testFlag(Qt::AltModifier);
    if (ctrl && ke->key() >= Qt::Key_A && ke->key() <= Qt::Key_Z)
        return ke->key() - Qt::Key_A + 1; // Ctrl+V arrives as 22 and is refused like any other
    const QString text = ke->text();
    if (text.size() != 1)
        return -1;
    return text.at(0).unicode();
}

} // namespace

MacroPanel::MacroPanel(MainContext& ctx, QObject* parent) : QObject(parent), ctx_(ctx) {
    setObjectName(QStringLiteral("MacroPanel"));
    buildControls();
}

void MacroPanel::buildControls() {
    frame2_ = new platform::Surface(ctx_.Onglets, QStringLiteral("Frame2"));
    frame2_->setBackColor(TableBack);
    frame2_->resize(FrameWidth, FrameHeight);
    frame2_->setAccessibleName(QStringLiteral("Onglet Macro"));
    frame2_->setPaintHandler([self = QPointer<MacroPanel>(this)](Canvas& c) {
        if (self)
            self->paintTable(c);
    });

    // Small enough for "66 666,664" to show whole in a 65-pixel field.
    const QFont valueFont = controlFont(8, false);
    for (int i = 0; i < 4; ++i) {
        auto* field = new QLineEdit(frame2_);
        field->setObjectName(QStringLiteral("Text1_%1").arg(i));
        field->setAccessibleName(
            i < 2 ? QStringLiteral("Quantité initiale du réactif %1 (mol)").arg(i + 1)
                  : QStringLiteral("Quantité initiale du produit %1 (mol)").arg(i - 1));
        field->setGeometry(FieldLeft[i], FieldTop, FieldWidth, FieldHeight);
        field->setFont(valueFont);
        // Reactants are entered; the products always start from nothing.
        field->setStyleSheet(fieldStyle(i < 2 ? White : QColor(224, 224, 224)));
        field->setText(i < 2 ? QStringLiteral("1,0") : QStringLiteral("0,0"));
        field->installEventFilter(this);
        // Dropped and middle-click text would also bypass the key filter.
        field->setAcceptDrops(false);
        field->setContextMenuPolicy(Qt::CustomContextMenu);
        connect(field, &QWidget::customContextMenuRequested, this,
                [this, i](const QPoint& pos) { showAmountMenu(i, pos); });
        text1_[static_cast<std::size_t>(i)] = field;

        auto* amount = new QLabel(frame2_);
        amount->setObjectName(QStringLiteral("Label4_%1").arg(i));
        amount->setGeometry(FieldLeft[i], AmountRowTop, FieldWidth + 6, LabelHeight);
        amount->setFont(valueFont);
        amount->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        amount->setIndent(2); // digits under the digits of the field above
        label4_[static_cast<std::size_t>(i)] = amount;
    }

    label5_ = new QLabel(frame2_);
    label5_->setObjectName(QStringLiteral("Label5"));
    label5_->setGeometry(ResultLeft, AdvancementRowTop, ResultWidth, LabelHeight);
    label6_ = new QLabel(QStringLiteral("0,0 kJ"), frame2_);
    label6_->setObjectName(QStringLiteral("Label6"));
    label6_->setGeometry(ResultLeft, EnergyRowTop, FrameWidth - ResultLeft - 6, LabelHeight);
    for (QLabel* l : {label5_, label6_}) {
        l->setFont(controlFont(9, true));
        l->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        l->setIndent(2);
    }

    hscroll1_ = new platform::FocusScrollBar(Qt::Horizontal, frame2_);
    hscroll1_->setObjectName(QStringLiteral("HScroll1"));
    hscroll1_->setAccessibleName(QStringLiteral("Avancement"));
    hscroll1_->setRange(0, macro::SliderMax);
    hscroll1_->setPageStep(macro::SliderPageStep);
    hscroll1_->setSingleStep(1);
    hscroll1_->setValue(0);
    // Clicking the slider takes the focus, so an amount being typed is validated first.
    hscroll1_->setFocusPolicy(Qt::StrongFocus);
    hscroll1_->setGeometry(SliderLeft, AdvancementRowTop, SliderRight - SliderLeft, LabelHeight);
    // Change and Scroll both recompute, so the labels follow the thumb while it is dragged.
    connect(hscroll1_, &QScrollBar::valueChanged, this, &MacroPanel::majqant);

    picture4_ = new platform::Surface(frame2_, QStringLiteral("Picture4"));
    picture4_->setBackColor(TableBack);
    picture4_->setGeometry(PictureLeft, PictureTop, PictureWidth, PictureHeight);
    picture4_->setAccessibleName(QStringLiteral("Système et milieu extérieur"));
    // A click on the picture leaves the fields; Tab passes it by, as it has nothing to act on.
    picture4_->setFocusPolicy(Qt::ClickFocus);
    // Drawn from outside any Paint handler; printing redraws it from the same code at the
    // printer's resolution.
    picture4_->setRedrawHandler([self = QPointer<MacroPanel>(this)](Canvas& c) {
        if (self)
            self->drawPicture4(c);
    });

    // The frozen background was drawn at the old resolution: draw it again at the new one.
    connect(&platform::Zoom::instance(), &platform::Zoom::changed, this,
            &MacroPanel::redrawPicture4);

    using Glyph = platform::ImageButton::Glyph;
    image8_ = new platform::ImageButton(Glyph::First, QStringLiteral("Image8"),
                                        QStringLiteral("État initial"), frame2_);
    image9_ = new platform::ImageButton(Glyph::Last, QStringLiteral("Image9"),
                                        QStringLiteral("État final"), frame2_);
    image11_ = new platform::ImageButton(Glyph::Play, QStringLiteral("Image11"),
                                         QStringLiteral("Animation"), frame2_);
    image10_ = new platform::ImageButton(Glyph::Pause, QStringLiteral("Image10"),
                                         QStringLiteral("Pause"), frame2_);
    // Two rows beside the picture: the two ends, then play and pause.
    const int col2 = ButtonColumnLeft + 30;
    image8_->setGeometry(ButtonColumnLeft, PictureTop + 40, 26, 24);
    image9_->setGeometry(col2, PictureTop + 40, 26, 24);
    image11_->setGeometry(ButtonColumnLeft, PictureTop + 70, 26, 24);
    image10_->setGeometry(col2, PictureTop + 70, 26, 24);
    connect(image8_, &QAbstractButton::clicked, this, &MacroPanel::Image8_Click);
    connect(image9_, &QAbstractButton::clicked, this, &MacroPanel::Image9_Click);
    connect(image10_, &QAbstractButton::clicked, this, &MacroPanel::Image10_Click);
    connect(image11_, &QAbstractButton::clicked, this, &MacroPanel::Image11_Click);

    command3_ = new QPushButton(QStringLiteral("Graphe"), frame2_);
    command3_->setObjectName(QStringLiteral("Command3"));
    command3_->setToolTip(QStringLiteral("Énergie libérée en fonction de l'avancement"));
    command3_->setGeometry(ButtonColumnLeft, PictureTop + 120, 56, 26);
    connect(command3_, &QPushButton::clicked, this, &MacroPanel::Command3_Click);

    timer2_ = new QTimer(this);
    timer2_->setObjectName(QStringLiteral("Timer2"));
    timer2_->setInterval(20);
    connect(timer2_, &QTimer::timeout, this, &MacroPanel::Timer2_Timer);
    timer3_ = new QTimer(this);
    timer3_->setObjectName(QStringLiteral("Timer3"));
    timer3_->setInterval(100);
    connect(timer3_, &QTimer::timeout, this, &MacroPanel::Timer3_Timer);
}

bool MacroPanel::isOpenSystem() const {
    // The open system is the one selected at start.
    return ctx_.Option1[1] == nullptr || ctx_.Option1[1]->isChecked();
}

void MacroPanel::updateColumns() {
    const auto nu = macro::stoichiometry(ctx_.reactionIndex());
    if (!nu)
        return;
    text1_[3]->setHidden(!nu->hasSecondProduct());
    label4_[3]->setHidden(!nu->hasSecondProduct());
}

void MacroPanel::majqant() {
    AppState& st = ctx_.state;
    const auto nu = macro::stoichiometry(ctx_.reactionIndex());
    const float a = macro::readAmount(text1_[0]->text());
    const float b = macro::readAmount(text1_[1]->text());
    if (nu)
        st.MaxAdvancement = macro::maxAdvancement(a, b, *nu);

    command3_->setEnabled(st.MaxAdvancement != 0);

    const int value = hscroll1_->value();
    const double x = macro::advancementAt(st.MaxAdvancement, value, hscroll1_->maximum());
    label5_->setText(macro::formatWithUnit(x, QStringLiteral("mol")));

    if (nu) {
        const macro::Amounts n = macro::amountsAt(a, b, *nu, x);
        const int species = nu->hasSecondProduct() ? 4 : 3;
        for (int i = 0; i < species; ++i)
            label4_[static_cast<std::size_t>(i)]->setText(macro::formatAmount(n.n[i]));
    }
    updateColumns();

    const bool open = isOpenSystem();
    if (open) {
        try {
            const double energy =
                macro::exchangedEnergy(x, st.BrokenBondsEnergy, st.FormedBondsEnergy);
            label6_->setText(macro::formatWithUnit(energy, QStringLiteral("kJ")));
        } catch (const platform::OverflowError&) {
            // The label keeps its previous caption.
        }
    } else {
        // Nothing crosses the wall of an isolated system.
        label6_->setText(macro::formatWithUnit(0.0, QStringLiteral("kJ")));
    }

    if (open && value == hscroll1_->maximum()) {
        st.CoolingCounter = macro::CoolingStart;
        if (!timer3_->isActive())
            timer3_->start();
    }

    drawGauges(open ? GaugeMode::Open : GaugeMode::Isolated, value);
}

namespace {

// A thermometer of the system picture; the surroundings' one is the same 200 pixels right.
void drawThermometer(Canvas& c, int dx) {
    platform::DrawState& s = c.state();
    s.fillColor = White;
    c.circle(138 + dx, 26, 8);
    c.circle(138 + dx, 190, 8);
    c.line(130 + dx, 26, 146 + dx, 190, Black, LineKind::Box);
    // Open the tube onto its rounded ends.
    c.line(131 + dx, 26, 146 + dx, 26, White);
    c.line(131 + dx, 190, 146 + dx, 190, White);
    s.fillColor = QColor(200, 0, 0);
    c.line(136 + dx, 198, 140 + dx, 218, Black, LineKind::Box);
    c.line(137 + dx, 199, 137 + dx, 218, Red);
    for (int y = 28; y <= 188; y += 3)
        c.line(132 + dx, y, 145 + dx, y, platform::qbColor(7));
    s.fillColor = White;
    c.line(137 + dx, 25, 139 + dx, 198, platform::qbColor(8), LineKind::Box);
}

// The system picture's background: the ball, the two thermometers and bars, the captions.
void drawSystemBackground(Canvas& c, bool open) {
    platform::DrawState& s = c.state();
    s.foreColor = Black;
    s.drawWidth = 1;
    s.fillStyle = FillStyle::Solid;

    // The system: a ball shaded from orange at the rim to pale yellow, lit from the top left.
    float t = 0;
    for (int r = 140; r >= 10; r -= 2) {
        t += 0.8F;
        s.fillColor = QColor(255, 255 - r, 200 - r);
        c.circle(90 - t, 135 - t, r, s.fillColor);
    }

    if (!open) {
        // The isolating wall.
        s.fillStyle = FillStyle::Transparent;
        s.drawWidth = 2;
        c.circle(89, 134, 145, Black);
        s.drawWidth = 1;
        s.fillStyle = FillStyle::Solid;
    }

    s.fillColor = White;
    c.line(55, 18, 85, 218, Black, LineKind::Box);
    drawThermometer(c, 0);
    s.fillColor = White;
    c.line(255, 18, 285, 218, Black, LineKind::Box);
    drawThermometer(c, 200);

    s.fontName = QStringLiteral("Arial");
    s.fontSize = 8;
    s.fontBold = true;
    s.fontItalic = false;
    s.foreColor = White; // these captions stand on the ball
    s.currentX = 50;
    s.currentY = 2;
    c.print(open ? QStringLiteral("Système ouvert") : QStringLiteral("Système isolé"));
    s.currentY = 223;
    s.currentX = 50;
    c.print(QStringLiteral("Énergie"));
    s.currentX = 100;
    c.print(QStringLiteral("Température"));
    s.foreColor = Black;
    s.currentX = 260;
    s.currentY = 2;
    c.print(QStringLiteral("Milieu extérieur"));
    s.currentY = 223;
    s.currentX = 250;
    c.print(QStringLiteral("Énergie"));
    s.currentX = 300;
    c.print(QStringLiteral("Température"));

    // Marks of the initial temperatures, where the red columns start.
    c.line(131, 106, 146, 106, Black);
    if (open)
        c.line(331, 106, 346, 106, Black);
    else
        c.line(331, 136, 346, 136, Black);
}

// The levels over the background: red columns, blue energy bars and their marks.
void drawGaugeBars(Canvas& c, const macro::GaugeLevels& g) {
    platform::DrawState& s = c.state();
    s.fillStyle = FillStyle::Solid;
    c.line(138, g.systemThermometer, 138, 198, Red);
    s.fillColor = Blue;
    c.line(55, g.systemBar, 85, 218, Black, LineKind::Box);
    c.line(53, 138, 88, 138, Black);
    c.line(338, g.surroundingsThermometer, 338, 198, Red);
    s.fillColor = Blue;
    c.line(255, g.surroundingsBar, 285, 218, Black, LineKind::Box);
    c.line(253, 98, 288, 98, Black);
    s.fillStyle = FillStyle::Transparent;
}

} // namespace

void MacroPanel::drawGauges(GaugeMode mode, int sliderValue) {
    gauges_ = macro::gaugeLevels(mode, sliderValue, ctx_.state.CoolingCounter);
    picture4_->cls(); // back to the frozen background
    drawGaugeBars(picture4_->canvas(), gauges_);
    describePicture4(mode != GaugeMode::Isolated, sliderValue);
}

void MacroPanel::describePicture4(bool open, int sliderValue) {
    const AppState& st = ctx_.state;
    const double x = macro::advancementAt(st.MaxAdvancement, sliderValue, hscroll1_->maximum());
    double energy = 0;
    if (open) {
        try {
            energy = macro::exchangedEnergy(x, st.BrokenBondsEnergy, st.FormedBondsEnergy);
        } catch (const platform::OverflowError&) {
            energy = 0;
        }
    }
    picture4_->setAccessibleDescription(macro::systemDescription(open, x, energy, gauges_));
}

void MacroPanel::drawPicture4(Canvas& c) {
    drawSystemBackground(c, systemOpen_);
    drawGaugeBars(c, gauges_);
}

void MacroPanel::redrawPicture4() {
    picture4_->clearPicture();
    picture4_->cls();
    drawSystemBackground(picture4_->canvas(), systemOpen_);
    picture4_->freezePicture();
    drawGaugeBars(picture4_->canvas(), gauges_);
}

void MacroPanel::prepapic4() {
    const bool open = isOpenSystem();
    systemOpen_ = open;
    picture4_->clearPicture();
    picture4_->cls();
    drawSystemBackground(picture4_->canvas(), open);
    picture4_->freezePicture();
    drawGauges(open ? GaugeMode::Open : GaugeMode::Isolated, 0);
}

void MacroPanel::printSpecies(Canvas& c, const QString& coefficient, const QString& formula,
                              int column) {
    platform::DrawState& s = c.state();
    const QString whole = coefficient + formula + QStringLiteral(" (g)");
    const QLineEdit* field = text1_[static_cast<std::size_t>(column)];
    // Butane's "2 C4H10 (g)" is wider than its column; narrowed, it keeps clear of the signs.
    const double natural = c.textWidth(whole);
    const double room = field->width() - 4.0;
    if (natural > room)
        s.fontStretch = static_cast<int>(100.0 * room / natural);
    s.currentX = field->x() + (field->width() - c.textWidth(whole)) / 2;
    c.print(coefficient);
    for (QChar ch : formula) {
        if (ch.isDigit()) {
            s.fontSize = 8;
            s.currentY += 4;
            c.print(QString(ch));
            s.currentY -= 4;
            s.fontSize = 10;
        } else {
            c.print(QString(ch));
        }
    }
    c.print(QStringLiteral(" (g)"));
    s.fontStretch = 100;
}

void MacroPanel::paintTable(Canvas& c) {
    platform::DrawState& s = c.state();
    s.foreColor = platform::qbColor(0);
    s.fontName = QStringLiteral("Arial");
    s.fontBold = true;
    s.fontItalic = false;
    s.fontSize = 10;
    s.currentX = 63;
    s.currentY = 18;

    updateColumns();

    // Equation row: each species centred over its column, the signs in the gaps between.
    const int index = ctx_.reactionIndex();
    if (chemistry::isValidIndex(index)) {
        const chemistry::Reaction& r = chemistry::reaction(index);
        std::vector<const chemistry::Species*> species = {&r.fuel, &r.oxidant};
        for (const chemistry::Species& p : r.products)
            species.push_back(&p);
        const auto gapCentre = [this](int left) {
            const QLineEdit* a = text1_[static_cast<std::size_t>(left)];
            const QLineEdit* b = text1_[static_cast<std::size_t>(left) + 1];
            return (a->x() + a->width() + b->x()) / 2.0;
        };
        for (std::size_t i = 0; i < species.size() && i < 4; ++i) {
            const chemistry::Species& sp = *species[i];
            const QString coefficient = sp.coefficient == 1
                                            ? QString()
                                            : QString::number(sp.coefficient) + QLatin1Char(' ');
            printSpecies(c, coefficient, sp.formula, static_cast<int>(i));
            if (i + 1 >= species.size())
                break;
            if (i == 1) {
                s.fontName = QStringLiteral("Symbol");
                s.currentX = gapCentre(1) - c.textWidth(QStringLiteral("\u00AE")) / 2;
                c.print(QStringLiteral("\u00AE"));
                s.fontName = QStringLiteral("Arial");
            } else {
                s.currentX = gapCentre(static_cast<int>(i)) - c.textWidth(QStringLiteral("+")) / 2;
                c.print(QStringLiteral("+"));
            }
        }
    }

    // Row captions, each ending where its control begins. "État initial (mol) : " is wider
    // than the room left of its field; narrowed a little, it stays whole on the panel.
    const auto captionAt = [&](const QWidget* control, const QString& measured) {
        s.fontStretch = 100;
        const double room = control->x() - 2.0;
        const double natural = c.textWidth(measured);
        if (natural > room)
            s.fontStretch = static_cast<int>(100.0 * room / natural);
        s.currentX = control->x() - c.textWidth(measured);
        s.currentY = control->y();
    };
    captionAt(text1_[0], QStringLiteral("État initial (mol) : "));
    c.print(QStringLiteral("État initial (mol) : "));
    captionAt(label4_[0], QStringLiteral("n (mol) : "));
    c.print(QStringLiteral("n"));
    c.print(QStringLiteral(" (mol) :"));
    captionAt(label5_, QStringLiteral("Avancement : x = "));
    c.print(QStringLiteral("Avancement :"));
    c.print(QStringLiteral(" x ="));
    captionAt(label6_, QStringLiteral("Énergie échangée : X E = "));
    c.print(QStringLiteral("Énergie échangée :"));
    s.fontName = QStringLiteral("Symbol");
    c.print(QStringLiteral(" D"));
    s.fontName = QStringLiteral("Arial");
    c.print(QStringLiteral("E ="));
    s.fontStretch = 100;

    // Etched section title between the initial row and the rows that follow the reaction.
    const double w = c.scaleWidth();
    c.line(10, 81, w - 10, 81, platform::qbColor(8));
    c.line(10, 82, w - 10, 82, platform::qbColor(15));
    const QString title = QStringLiteral(" Pendant la réaction ");
    const double tw = c.textWidth(title);
    const double tx = (w - tw) / 2;
    c.line(tx, 74, tx + tw, 74 + c.textHeight(title), TableBack, LineKind::FilledBox);
    s.currentX = tx;
    s.currentY = 74;
    c.print(title);
}

void MacroPanel::Option1_Click(int) {
    prepapic4();
    hscroll1_->setValue(0);
    majqant();
}

void MacroPanel::Text1_LostFocus(int index) {
    if (index < 0 || index > 3)
        return;
    QLineEdit* field = text1_[static_cast<std::size_t>(index)];
    field->setText(macro::validatedAmountText(field->text()));
    hscroll1_->setValue(0);
    majqant();
}

void MacroPanel::leaveFields() {
    // Picture4 takes the focus so that a field being edited is left, and so validated. A
    // button reached with the keyboard keeps it: the fields were left already.
    if (!qobject_cast<platform::ImageButton*>(QApplication::focusWidget()))
        picture4_->setFocus();
}

void MacroPanel::Image8_Click() {
    leaveFields();
    timer2_->stop();
    hscroll1_->setValue(0);
    majqant();
}

void MacroPanel::Image9_Click() {
    leaveFields();
    timer2_->stop();
    hscroll1_->setValue(hscroll1_->maximum());
    majqant();
    if (ctx_.window)
        ctx_.window->repaint();
    QCoreApplication::processEvents();
    // Second pass on purpose: whatever the events above repainted, the final state is drawn last.
    hscroll1_->setValue(hscroll1_->maximum());
    majqant();
}

void MacroPanel::Image10_Click() {
    leaveFields();
    timer2_->stop();
}

void MacroPanel::Image11_Click() {
    leaveFields();
    if (hscroll1_->value() == hscroll1_->maximum())
        hscroll1_->setValue(0); // a finished animation starts again from the initial state
    if (!timer2_->isActive())
        timer2_->start();
}

void MacroPanel::Timer2_Timer() {
    macro::AnimationTick tick;
    try {
        tick = macro::animationTick(static_cast<std::int16_t>(hscroll1_->value()),
                                    static_cast<std::int16_t>(hscroll1_->maximum()));
    } catch (const platform::OverflowError&) {
        return;
    }
    if (tick.finished)
        timer2_->stop();
    hscroll1_->setValue(tick.value);
    majqant();
}

void MacroPanel::Timer3_Timer() {
    AppState& st = ctx_.state;
    if (hscroll1_->value() != hscroll1_->maximum() || st.CoolingCounter <= 0) {
        timer3_->stop();
        return;
    }
    st.CoolingCounter = platform::sub16(st.CoolingCounter, macro::CoolingStep);
    drawGauges(GaugeMode::Cooling, hscroll1_->value());
}

std::optional<macro::GraphInput> MacroPanel::graphInput() const {
    const AppState& st = ctx_.state;
    if (!(st.MaxAdvancement > 0))
        return std::nullopt; // nothing to plot without an advancement
    macro::GraphInput input;
    input.maxAdvancement = st.MaxAdvancement;
    input.brokenBondsEnergy = st.BrokenBondsEnergy;
    input.formedBondsEnergy = st.FormedBondsEnergy;
    input.openSystem = isOpenSystem();
    return input;
}

void MacroPanel::Command3_Click() {
    const std::optional<macro::GraphInput> input = graphInput();
    if (!input)
        return;
    graphes window(*input, ctx_.window);
    if (ctx_.printer)
        window.setPrinter(ctx_.printer());
    window.exec();
}

bool MacroPanel::handleAmountKey(int index, QEvent* event) {
    const auto* ke = static_cast<QKeyEvent*>(event);
    // The editing shortcuts the field's own menu advertises; a paste goes through the key
    // filter like typing.
    if (ke->matches(QKeySequence::Paste)) {
        pasteAmount(index);
        return true;
    }
    if (ke->matches(QKeySequence::SelectAll) || ke->matches(QKeySequence::Copy))
        return false;
    const int code = keyAsciiOf(ke);
    if (code < 0)
        return false;
    const macro::KeyFilterResult r = macro::filterAmountKey(code);
    if (r.validate) {
        Text1_LostFocus(index);
        return true;
    }
    if (r.keyAscii == 0)
        return true;
    if (r.keyAscii != code) {
        text1_[static_cast<std::size_t>(index)]->insert(QString(QChar(r.keyAscii)));
        return true;
    }
    return false;
}

void MacroPanel::pasteAmount(int index) {
    const QString text = macro::filterPastedAmount(QGuiApplication::clipboard()->text());
    if (!text.isEmpty())
        text1_[static_cast<std::size_t>(index)]->insert(text);
}

void MacroPanel::showAmountMenu(int index, const QPoint& pos) {
    // The field's own menu would paste the clipboard unfiltered, so it gets this one, whose
    // paste is the key filter's.
    QLineEdit* field = text1_[static_cast<std::size_t>(index)];
    const bool selected = field->hasSelectedText();
    QMenu menu(field);
    const auto add = [&](const char* id, const QString& text, QKeySequence::StandardKey key,
                         bool enabled, auto handler) {
        QAction* a = menu.addAction(text, this, handler);
        a->setObjectName(QString::fromLatin1(id));
        a->setShortcut(key);
        a->setEnabled(enabled);
    };
    add("edit-cut", QStringLiteral("Co&uper"), QKeySequence::Cut, selected,
        [field] { field->cut(); });
    add("edit-copy", QStringLiteral("&Copier"), QKeySequence::Copy, selected,
        [field] { field->copy(); });
    add("edit-paste", QStringLiteral("Co&ller"), QKeySequence::Paste,
        !QGuiApplication::clipboard()->text().isEmpty(), [this, index] { pasteAmount(index); });
    add("edit-delete", QStringLiteral("&Supprimer"), QKeySequence::Delete, selected,
        [field] { field->del(); });
    menu.addSeparator();
    add("select-all", QStringLiteral("Tout &sélectionner"), QKeySequence::SelectAll,
        !field->text().isEmpty(), [field] { field->selectAll(); });
    menu.exec(field->mapToGlobal(pos));
}

bool MacroPanel::eventFilter(QObject* watched, QEvent* event) {
    // A field being destroyed (it is no longer a QLineEdit then) is not left by the user.
    if (qobject_cast<QLineEdit*>(watched) == nullptr)
        return QObject::eventFilter(watched, event);
    for (int i = 0; i < 4; ++i) {
        if (watched != text1_[static_cast<std::size_t>(i)])
            continue;
        if (event->type() == QEvent::KeyPress)
            return handleAmountKey(i, event);
        if (event->type() == QEvent::MouseButtonRelease &&
            static_cast<QMouseEvent*>(event)->button() == Qt::MiddleButton)
            return true;
        if (event->type() == QEvent::FocusOut) {
            const auto reason = static_cast<QFocusEvent*>(event)->reason();
            // Switching windows or opening a menu does not leave the field.
            if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
                Text1_LostFocus(i);
        }
        return false;
    }
    return QObject::eventFilter(watched, event);
}
