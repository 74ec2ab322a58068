#include "calculator/machine.h"

#include "calculator/evaluator.h"
#include "calculator/memory.h"
#include "calculator/numbertext.h"
#include "platform/canvas.h"
#include "platform/numberformat.h"

#include <QApplication>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <algorithm>
#include <cmath>

namespace calculator {

const QString Machine::WaitingText = QStringLiteral("    Patience... Calculs en cours.     ");
const QString Machine::ScientificPattern = QStringLiteral("#.#######E+00");
const QString Machine::ImpossibleMessage = QStringLiteral("Calcul impossible");
const QString Machine::ParenthesesMessage = QStringLiteral("Erreur saisie: revoir les parenthèses");
const QString Machine::OperatorsMessage =
    QStringLiteral("Erreur saisie: incompréhension sur opérateurs: ^ * / + -");
const QString Machine::OverflowMessage = QStringLiteral("Dépassement de capacité");

namespace {

const QString FontName = QStringLiteral("MS Sans Serif");

QFont keyFont(double points, bool bold) {
    QFont f(FontName);
    f.setPixelSize(platform::pointsToPixels(points));
    f.setBold(bold);
    return f;
}

// Key pictures: a base with a raised, smaller exponent (x^y, x^2, 10^x, e^x).
QPixmap powerPicture(const QString& base, const QString& exponent, qreal ratio) {
    const QFont baseFont = keyFont(10, true);
    const QFont expFont = keyFont(7, true);
    const QFontMetrics bm(baseFont);
    const QFontMetrics em(expFont);
    const int w = bm.horizontalAdvance(base) + em.horizontalAdvance(exponent) + 2;
    const int h = bm.height() + em.ascent() / 2;
    QPixmap pm(QSize(w, h) * ratio);
    pm.setDevicePixelRatio(ratio);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::TextAntialiasing);
    p.setPen(Qt::black);
    p.setFont(baseFont);
    const int baseline = h - bm.descent();
    p.drawText(0, baseline, base);
    p.setFont(expFont);
    p.drawText(bm.horizontalAdvance(base) + 1, baseline - bm.ascent() + em.ascent() - 1, exponent);
    return pm;
}

} // namespace

Machine::Machine(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Machine"));
    setWindowTitle(QStringLiteral("Machine à calculer"));
    setFixedSize(302, 430);
    beep_ = [] { QApplication::beep(); };

    z1 = new QLineEdit(this);
    z1->setObjectName(QStringLiteral("z1"));
    z1->setGeometry(8, 8, 286, 28);
    z1->setFont(keyFont(DisplayPoints, false));
    z1->setContextMenuPolicy(Qt::NoContextMenu);
    z1->setAcceptDrops(false);
    z1->setAttribute(Qt::WA_InputMethodEnabled, false);
    z1->installEventFilter(this);
    connect(z1, &QLineEdit::textChanged, this, &Machine::z1_Change);

    const QFont optionFont = keyFont(8, true);
    Frame2 = new QGroupBox(QStringLiteral("Angles"), this);
    Frame2->setObjectName(QStringLiteral("Frame2"));
    Frame2->setGeometry(8, 40, 140, 56);
    Frame2->setFont(optionFont);
    Frame3 = new QGroupBox(QStringLiteral("Affichage"), this);
    Frame3->setObjectName(QStringLiteral("Frame3"));
    Frame3->setGeometry(154, 40, 140, 56);
    Frame3->setFont(optionFont);

    auto option = [&](QGroupBox* frame, const QString& name, const QString& caption, int y) {
        auto* b = new QRadioButton(caption, frame);
        b->setObjectName(name);
        b->setGeometry(10, y, 124, 18);
        b->setFocusPolicy(Qt::NoFocus);
        return b;
    };
    angle[0] = option(Frame2, QStringLiteral("angle_0"), QStringLiteral("Degrés"), 16);
    angle[1] = option(Frame2, QStringLiteral("angle_1"), QStringLiteral("Radians"), 34);
    C[1] = option(Frame3, QStringLiteral("C_1"), QStringLiteral("Standard"), 16);
    C[0] = option(Frame3, QStringLiteral("C_0"), QStringLiteral("Scientifique"), 34);
    angle[0]->setChecked(true);
    C[1]->setChecked(true);
    connect(C[0], &QRadioButton::clicked, this, &Machine::C_Click);
    connect(C[1], &QRadioButton::clicked, this, &Machine::C_Click);

    // Scientific rows: five keys of 54 x 28 pixels.
    auto row = [](int column, int line) { return QRect(8 + 58 * column, 102 + 36 * line, 54, 28); };
    addKey("bsin", QStringLiteral("&SIN"), QStringLiteral("Sinus"), row(0, 0),
           [this] { function("sin "); });
    addKey("Bcos", QStringLiteral("&COS"), QStringLiteral("Cosinus"), row(1, 0),
           [this] { function("cos "); });
    addKey("Btan", QStringLiteral("&TAN"), QStringLiteral("Tangente"), row(2, 0),
           [this] { function("tan "); });
    addKey("Bln", QStringLiteral("l&n"), QString(), row(3, 0), [this] { function("ln "); });
    addKey("Blog", QStringLiteral("&Log"), QString(), row(4, 0), [this] { function("log "); });

    // The two-word captions need a smaller size to keep clear of the key edges.
    const QFont inverseFont = keyFont(7, true);
    addKey("invsin", QStringLiteral("INV S&IN"), QStringLiteral("Inverse sinus"), row(0, 1),
           [this] { function("invSIN "); })
        ->setFont(inverseFont);
    addKey("invcos", QStringLiteral("INV C&OS"), QStringLiteral("Inverse cosinus"), row(1, 1),
           [this] { function("invCOS "); })
        ->setFont(inverseFont);
    addKey("Btoncommande3", QStringLiteral("INV T&AN"), QStringLiteral("Inverse tangente"),
           row(2, 1), [this] { function("invTAN "); })
        ->setFont(inverseFont);
    addPictureKey("Bexp", QStringLiteral("e"), QStringLiteral("x"), row(3, 1),
                  [this] { Bexp_Click(); });
    addPictureKey("B10x", QStringLiteral("10"), QStringLiteral("x"), row(4, 1),
                  [this] { B10x_Click(); });

    const QFont symbolKeys = keyFont(12, true);
    addKey("racine", platform::symbolToUnicode(QStringLiteral("\u00D6")),
           QStringLiteral("Racine carré"), row(0, 2), [this] { racine_Click(); })
        ->setFont(symbolKeys);
    addPictureKey("btcarre", QStringLiteral("x"), QStringLiteral("2"), row(1, 2),
                  [this] { btcarre_Click(); });
    addPictureKey("puissance", QStringLiteral("x"), QStringLiteral("y"), row(2, 2),
                  [this] { puissance_Click(); });
    addKey("Command5", QStringLiteral("1/x"), QStringLiteral("Inverse"), row(3, 2),
           [this] { Command5_Click(); });
    addKey("pi", platform::symbolToUnicode(QStringLiteral("p")), QStringLiteral("3.1415927"),
           row(4, 2), [this] { pi_Click(); })
        ->setFont(symbolKeys);

    const QFont digitFont = keyFont(10, true);
    addKey("Bpo", QStringLiteral("("), QString(), row(0, 3), [this] {
        Bpo_Click();
    })->setFont(digitFont);
    addKey("bpf", QStringLiteral(")"), QString(), row(1, 3), [this] {
        bpf_Click();
    })->setFont(digitFont);
    addKey("ANS", QStringLiteral("ANS"), QStringLiteral("Dernière réponse"), row(2, 3),
           [this] { ANS_Click(); });
    addKey("EFFACE", platform::symbolToUnicode(QStringLiteral("\u00AC")),
           QStringLiteral("Effacer dernier caractère"), row(3, 3), [this] { EFFACE_Click(); })
        ->setFont(symbolKeys);
    addKey("RAZ", QStringLiteral("AC"), QStringLiteral("Tout effacer"), row(4, 3),
           [this] { RAZ_Click(); });

    auto memory = [](int column) { return QRect(8 + 72 * column, 246, 68, 28); };
    addKey("Command1", QStringLiteral("M+"), QStringLiteral("Ajouter à la méoire"), memory(0),
           [this] { Command1_Click(); });
    addKey("Command2", QStringLiteral("M-"), QStringLiteral("Soustraire à la mémoire"), memory(1),
           [this] { Command2_Click(); });
    addKey("Command3", QStringLiteral("RM"), QStringLiteral("Rappel mémoire"), memory(2),
           [this] { Command3_Click(); });
    addKey("Command4", QStringLiteral("CM"), QStringLiteral("Effacer la mémoire"), memory(3),
           [this] { Command4_Click(); });

    // Digits inside the framed block, prefixes on its left, operators on its right.
    auto pad = [](int column, int line) {
        return QRect(86 + 40 * column, 294 + 32 * line, 36, 28);
    };
    const int padColumn[10] = {0, 0, 1, 2, 0, 1, 2, 0, 1, 2};
    const int padLine[10] = {3, 2, 2, 2, 1, 1, 1, 0, 0, 0};
    for (int d = 0; d <= 9; ++d) {
        const QByteArray name = "B" + QByteArray::number(d);
        addKey(name.constData(), QString::number(d), QString(), pad(padColumn[d], padLine[d]),
               [this, d] { digit(static_cast<char>('0' + d)); })
            ->setFont(digitFont);
    }
    addKey("Bpoint", QStringLiteral("."), QString(), pad(1, 3), [this] {
        Bpoint_Click();
    })->setFont(digitFont);
    addKey("BtoEXP", QStringLiteral("EXP"), QStringLiteral("x 10\u00AA"), pad(2, 3),
           [this] { BtoEXP_Click(); });

    auto side = [](int column, int line) {
        return QRect(10 + 34 * column, 294 + 32 * line, 30, 28);
    };
    addKey("kilo", QStringLiteral("k"), QStringLiteral("kilo"), side(0, 0),
           [this] { prefix("E+3"); });
    addKey("mega", QStringLiteral("M"), QStringLiteral("Méga"), side(0, 1),
           [this] { prefix("E+6"); });
    addKey("giga", QStringLiteral("G"), QStringLiteral("Giga"), side(0, 2),
           [this] { prefix("E+9"); });
    addKey("tera", QStringLiteral("T"), QStringLiteral("Téra"), side(0, 3),
           [this] { prefix("E+12"); });
    addKey("mil", QStringLiteral("m"), QStringLiteral("milli"), side(1, 0),
           [this] { prefix("E-3"); });
    addKey("micro", QStringLiteral("\u00B5"), QStringLiteral("micro"), side(1, 1),
           [this] { prefix("E-6"); });
    addKey("nano", QStringLiteral("n"), QStringLiteral("nano"), side(1, 2),
           [this] { prefix("E-9"); });
    addKey("pico", QStringLiteral("p"), QStringLiteral("pico"), side(1, 3),
           [this] { prefix("E-12"); });

    auto ops = [](int column, int line) {
        return QRect(214 + 40 * column, 294 + 32 * line, 36, 28);
    };
    addKey("div", platform::symbolToUnicode(QStringLiteral("\u00B8")), QString(), ops(0, 0),
           [this] { div_Click(); })
        ->setFont(symbolKeys);
    addKey("multip", QStringLiteral("x"), QString(), ops(1, 0), [this] {
        multip_Click();
    })->setFont(digitFont);
    addKey("moins", QStringLiteral("-"), QString(), ops(0, 1), [this] {
        moins_Click();
    })->setFont(digitFont);
    addKey("plus", QStringLiteral("+"), QString(), ops(1, 1), [this] {
        plus_Click();
    })->setFont(digitFont);
    addKey("EXE", QStringLiteral("EXE"), QStringLiteral("Calculer"), QRect(214, 358, 76, 60),
           [this] { EXE_Click(); })
        ->setFont(digitFont);

    // The evaluator asks whether the display is blank before each operator it reduces.
    setDisplayBlankProbe([this] { return trimBlanks(z1->text()).isEmpty(); });

    Entry.clear();
    z1->setFocus();
}

Machine::~Machine() {
    setDisplayBlankProbe({});
}

QPushButton* Machine::addKey(const char* name, const QString& caption, const QString& toolTip,
                             QRect place, std::function<void()> handler) {
    auto* b = new QPushButton(caption, this);
    b->setObjectName(QString::fromLatin1(name));
    b->setGeometry(place);
    b->setFont(keyFont(8, true));
    b->setToolTip(toolTip);
    // Keys never take the focus: typing always reaches the display box.
    b->setFocusPolicy(Qt::NoFocus);
    b->setAutoDefault(false);
    connect(b, &QPushButton::clicked, this, std::move(handler));
    return b;
}

QPushButton* Machine::addPictureKey(const char* name, const QString& base, const QString& exponent,
                                    QRect place, std::function<void()> handler) {
    QPushButton* b = addKey(name, QString(), QString(), place, std::move(handler));
    const QPixmap pm = powerPicture(base, exponent, devicePixelRatioF());
    b->setIcon(QIcon(pm));
    b->setIconSize(pm.deviceIndependentSize().toSize());
    return b;
}

// ---- Editing rules

void Machine::showEntry() {
    z1->setText(Entry);
}

void Machine::append(const QString& text) {
    Entry += text;
    showEntry();
}

void Machine::productRule() {
    if (Entry.isEmpty())
        return;
    const QChar last = Entry.back();
    if (last != u'(' && last != u'-' && last != u' ')
        Entry += QStringLiteral(" * ");
}

void Machine::answerRule() {
    if (trimBlanks(Entry).isEmpty())
        ANS_Click();
}

bool Machine::displayNotBlank() const {
    return !trimBlanks(z1->text()).isEmpty();
}

// The result as the display shows it: number text, or the scientific pattern; the decimal
// comma the pattern produces is turned back into a point.
QString Machine::resultText(double value) const {
    QString text = NumberText(value);
    if (C[0]->isChecked())
        text = platform::formatNumber(NumberValue(text), ScientificPattern);
    const qsizetype comma = text.indexOf(u',');
    if (comma >= 0)
        text[comma] = u'.';
    return text;
}

void Machine::beep() {
    if (beep_)
        beep_();
}

// ---- Keys

void Machine::digit(char d) {
    append(QString(QLatin1Char(d)));
}
void Machine::Bpoint_Click() {
    append(QStringLiteral("."));
}
void Machine::BtoEXP_Click() {
    append(QStringLiteral("E"));
}
void Machine::prefix(const char* exponent) {
    append(QString::fromLatin1(exponent));
}

void Machine::Bpo_Click() {
    productRule();
    append(QStringLiteral("("));
}

void Machine::bpf_Click() {
    append(QStringLiteral(")"));
}

void Machine::function(const char* word) {
    productRule();
    append(QString::fromLatin1(word));
}

void Machine::Bexp_Click() {
    function("exp ");
}
void Machine::B10x_Click() {
    function("10 ^ ");
}
void Machine::racine_Click() {
    function("SQR ");
}
void Machine::Command5_Click() {
    function("1 / ");
}

void Machine::pi_Click() {
    productRule();
    append(trimBlanks(NumberText(std::atan(1.0) * 4)));
}

void Machine::puissance_Click() {
    answerRule();
    append(QStringLiteral(" ^ "));
}

void Machine::btcarre_Click() {
    answerRule();
    append(QStringLiteral(" ^ 2"));
}

void Machine::multip_Click() {
    if (!displayNotBlank())
        return;
    answerRule();
    append(QStringLiteral(" * "));
}

void Machine::div_Click() {
    if (!displayNotBlank())
        return;
    answerRule();
    append(QStringLiteral(" / "));
}

void Machine::plus_Click() {
    if (!displayNotBlank())
        return;
    answerRule();
    append(Entry.endsWith(u'E') ? QStringLiteral("+") : QStringLiteral(" + "));
}

void Machine::moins_Click() {
    if (Entry.endsWith(u'(') || Entry.endsWith(u' ') || Entry.endsWith(u'E'))
        append(QStringLiteral("-"));
    else if (Entry.endsWith(u'-'))
        append(QStringLiteral(" -"));
    else if (!Entry.isEmpty())
        append(QStringLiteral(" - "));
    else
        append(QStringLiteral("-"));
}

void Machine::ANS_Click() {
    if (ErrorCode == 0)
        Entry += trimBlanks(LastAnswer);
    showEntry();
}

void Machine::EXE_Click() {
    ErrorCode = 0;
    QString expression = Entry;
    const QString typed = Entry;
    LastExpression = Entry;

    Entry = WaitingText;
    showEntry();
    z1->repaint();

    const std::int16_t angleMode = angle[1]->isChecked() ? 1 : 0;
    EvaluateExpression(expression, ErrorCode, angleMode);

    if (ErrorCode == 0) {
        try {
            Entry = resultText(NumberValue(expression));
        } catch (const std::exception&) {
            Entry = OverflowMessage;
            beep();
        }
    } else {
        switch (ErrorCode) {
        case EvalParentheses:
            Entry = ParenthesesMessage;
            break;
        case EvalMissingOperand:
            Entry = OperatorsMessage;
            break;
        default:
            Entry = ImpossibleMessage;
            break;
        }
        beep();
    }

    showEntry();
    LastAnswer = Entry;
    // After an error the next key continues the faulty expression, under the message.
    Entry = ErrorCode == 0 ? QString() : typed;
}

void Machine::EFFACE_Click() {
    if (Entry.isEmpty())
        return;
    const qsizetype length = Entry.size();
    if (Entry.back() != u' ') {
        Entry.chop(1);
    } else {
        const char16_t before = length >= 2 ? Entry.at(length - 2).unicode() : u'\0';
        if (before == u'*' || before == u'+' || before == u'/' || before == u'-' ||
            before == u'^') {
            Entry.chop(std::min<qsizetype>(3, length));
        } else if (before == u'\u00FB') {
            Entry.chop(2);
        } else {
            // A trailing word such as "cos " goes whole, back to a blank or "(".
            qsizetype k = 1;
            while (k < length) {
                const QChar c = Entry.at(length - k - 1);
                if (c == u' ' || c == u'(')
                    break;
                ++k;
            }
            Entry.truncate(std::max<qsizetype>(0, length - k));
        }
    }
    showEntry();
}

void Machine::RAZ_Click() {
    Entry.clear();
    showEntry();
}

void Machine::Command1_Click() {
    try {
        const double sum = Memory + NumberValue(z1->text());
        if (std::isfinite(sum))
            Memory = sum;
    } catch (const NumberOverflow&) {
        // The memory keeps its value.
    }
    z1->setFocus();
}

void Machine::Command2_Click() {
    try {
        const double difference = Memory - NumberValue(z1->text());
        if (std::isfinite(difference))
            Memory = difference;
    } catch (const NumberOverflow&) {
        // The memory keeps its value.
    }
    z1->setFocus();
}

void Machine::Command3_Click() {
    // The scientific form keeps its decimal comma here, unlike a result.
    append(C[0]->isChecked() ? platform::formatNumber(Memory, ScientificPattern)
                             : trimBlanks(NumberText(Memory)));
}

void Machine::Command4_Click() {
    Memory = 0;
    z1->setFocus();
}

void Machine::C_Click() {
    if (!Entry.isEmpty())
        return;
    try {
        Entry = resultText(NumberValue(LastAnswer));
    } catch (const std::exception&) {
        Entry = OverflowMessage;
        beep();
    }
    showEntry();
    z1->repaint();
    Entry.clear();
}

void Machine::z1_Change() {
    fitDisplayFont();
    z1->setFocus();
    z1->setCursorPosition(static_cast<int>(z1->text().size()));
    z1->update();
}

// The display keeps its large font for what fits and shrinks for longer texts, down to the
// size at which the longest error message still fits whole; only a typed expression longer
// than that scrolls.
int Machine::displayPixelsFor(const QString& text) const {
    const int room = displayRoom();
    QFont f = z1->font();
    int pixels = platform::pointsToPixels(DisplayPoints);
    for (; pixels > 1; --pixels) {
        f.setPixelSize(pixels);
        if (QFontMetrics(f).horizontalAdvance(text) <= room)
            break;
    }
    return pixels;
}

void Machine::fitDisplayFont() {
    if (displayFloorPixels_ == 0)
        displayFloorPixels_ = displayPixelsFor(OperatorsMessage);
    QFont f = z1->font();
    f.setPixelSize(std::max(displayPixelsFor(z1->text()), displayFloorPixels_));
    if (f != z1->font())
        z1->setFont(f);
}

int Machine::displayRoom() const {
    // The box's frame, the line edit's own 2-pixel text margin on each side, and the caret.
    const int frame = z1->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, z1);
    return z1->contentsRect().width() - 2 * frame - 4 - 2;
}

// ---- Keyboard

void Machine::Form_KeyPress(int keyAscii) {
    switch (keyAscii) {
    case 8:
        EFFACE_Click();
        return;
    case 13:
        EXE_Click();
        return;
    case '.':
        Bpoint_Click();
        return;
    case 'd':
    case 'e':
    case 'D':
    case 'E':
        BtoEXP_Click();
        return;
    case '(':
        Bpo_Click();
        return;
    case ')':
        bpf_Click();
        return;
    case '*':
        multip_Click();
        return;
    case '+':
        plus_Click();
        return;
    case '-':
        moins_Click();
        return;
    case '/':
        div_Click();
        return;
    case '^':
        puissance_Click();
        return;
    default:
        if (keyAscii >= '0' && keyAscii <= '9')
            digit(static_cast<char>(keyAscii));
        return;
    }
}

bool Machine::routeKey(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Escape:
        return true; // the typed entry would be lost; the window closes by its close button
    case Qt::Key_Backspace:
        Form_KeyPress(8);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Form_KeyPress(13);
        return true;
    default:
        break;
    }
    const QString text = event->text();
    if (text.size() == 1 && !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)))
        Form_KeyPress(text.at(0).unicode());
    return true;
}

void Machine::keyPressEvent(QKeyEvent* event) {
    if (!routeKey(event))
        QDialog::keyPressEvent(event);
}

bool Machine::eventFilter(QObject* watched, QEvent* event) {
    if (watched == z1) {
        if (event->type() == QEvent::KeyPress)
            return routeKey(static_cast<QKeyEvent*>(event));
        // The display box never edits its text itself, not even by a middle-click paste.
        if (event->type() == QEvent::MouseButtonRelease &&
            static_cast<QMouseEvent*>(event)->button() == Qt::MiddleButton)
            return true;
    }
    return QDialog::eventFilter(watched, event);
}

void Machine::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && event->position().y() < 20) {
        const QPoint p = event->position().toPoint();
        TitlePress = QPoint(p.x() * 15, p.y() * 15);
    }
    QDialog::mousePressEvent(event);
}

// ---- Background

void Machine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    platform::DrawState state;
    platform::Canvas canvas(painter, state, size());
    for (int i = 0; i <= 301; ++i) {
        // Halves round to even, as the old integer conversion did.
        const int c = static_cast<int>(std::nearbyint(200 - i / 2.0));
        canvas.line(i, 0, i, 430, QColor(c, c + 50, c + 50));
    }
    canvas.line(1, 1, 299, 428, platform::qbColor(15), platform::LineKind::Box);
    canvas.line(1, 1, 299, 1, platform::qbColor(0));
    canvas.line(1, 1, 1, 427, platform::qbColor(0));
    canvas.line(82, 290, 206, 421, platform::qbColor(15), platform::LineKind::Box);
    canvas.line(81, 289, 205, 420, platform::qbColor(3), platform::LineKind::Box);
}

} // namespace calculator
