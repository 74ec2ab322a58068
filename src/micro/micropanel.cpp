#include "micro/micropanel.h"

#include "micro/description.h"
#include "micro/drawing.h"
#include "micro/geometry.h"
#include "platform/imagebutton.h"
#include "platform/surface.h"

#include <QCheckBox>
#include <QLabel>
#include <QTimer>
#include <limits>

namespace {

const QColor kPanelBack(240, 235, 230);

// Micro tab layout, in pixels of Picture3. Picmicro and Picture2 work in pixels and in a
// 60 × 400 scale respectively; the buttons and the readout share the strip on the right.
constexpr QRect kPicmicroRect(4, 38, 330, 340);
constexpr QRect kPicture2Rect(338, 4, 60, 378);
constexpr double kPicture2ScaleWidth = 60;
constexpr double kPicture2ScaleHeight = 400;
constexpr int kButtonsX = 410;
constexpr int kButtonsTop = 40;
constexpr int kButtonsStep = 30;
constexpr QRect kLabel2Rect(402, 170, 48, 48);

} // namespace

MicroPanel::MicroPanel(MainContext& ctx, QObject* parent)
    : QObject(parent), ctx_(ctx), animation_(ctx.state) {
    setObjectName(QStringLiteral("MicroPanel"));

    picture3_ = new platform::Surface(ctx.Onglets, QStringLiteral("Picture3"));
    picture3_->setBackColor(kPanelBack);
    picture3_->resize(PanelWidth, PanelHeight);
    picture3_->setAccessibleName(QStringLiteral("Onglet Micro"));
    picture3_->setPaintHandler(
        [this](platform::Canvas& c) { micro::drawBanner(c, ctx_.reactionIndex()); });

    picmicro_ = new platform::Surface(picture3_, QStringLiteral("Picmicro"));
    picmicro_->setBackColor(Qt::white);
    picmicro_->setGeometry(kPicmicroRect);
    picmicro_->setPaintHandler([this](platform::Canvas& c) { micro::drawMolecules(c, frame_); });
    picmicro_->setAccessibleName(QStringLiteral("Molécules"));

    picture2_ = new platform::Surface(picture3_, QStringLiteral("Picture2"));
    picture2_->setBackColor(Qt::white);
    picture2_->setGeometry(kPicture2Rect);
    picture2_->setScale(0, 0, kPicture2ScaleWidth, kPicture2ScaleHeight);
    picture2_->setAccessibleName(QStringLiteral("Diagramme énergétique"));
    picture2_->setPaintHandler([this](platform::Canvas& c) {
        if (hasDiagram_)
            micro::drawEnergyDiagram(c, diagram_);
    });

    using Glyph = platform::ImageButton::Glyph;
    struct ImageButtonDef {
        Glyph glyph;
        const char* name;
        QString toolTip;
        int row;
    };
    // Shown top to bottom as start, run, pause, end.
    const ImageButtonDef buttons[4] = {
        {Glyph::Play, "Image4", QStringLiteral("Animation"), 1},
        {Glyph::First, "Image5", QStringLiteral("État initial"), 0},
        {Glyph::Last, "Image6", QStringLiteral("État final"), 3},
        {Glyph::Pause, "Image7", QStringLiteral("Pause"), 2},
    };
    for (std::size_t i = 0; i < 4; ++i) {
        auto* b = new platform::ImageButton(buttons[i].glyph, QString::fromLatin1(buttons[i].name),
                                            buttons[i].toolTip, picture3_);
        b->move(kButtonsX, kButtonsTop + kButtonsStep * buttons[i].row);
        images_[i] = b;
    }
    // Tab follows the column from top to bottom.
    QWidget::setTabOrder(images_[1], images_[0]);
    QWidget::setTabOrder(images_[0], images_[3]);
    QWidget::setTabOrder(images_[3], images_[2]);
    connect(images_[0], &QAbstractButton::clicked, this, &MicroPanel::Image4_Click);
    connect(images_[1], &QAbstractButton::clicked, this, &MicroPanel::Image5_Click);
    connect(images_[2], &QAbstractButton::clicked, this, &MicroPanel::Image6_Click);
    connect(images_[3], &QAbstractButton::clicked, this, &MicroPanel::Image7_Click);

    label2_ = new QLabel(picture3_);
    label2_->setObjectName(QStringLiteral("Label2"));
    label2_->setGeometry(kLabel2Rect);
    label2_->setAlignment(Qt::AlignRight | Qt::AlignTop);
    QFont f(QStringLiteral("Arial"));
    f.setPixelSize(platform::pointsToPixels(8));
    label2_->setFont(f);
    // The running energy balance in bare numbers: it keeps its text for whoever reads it, but a
    // student would take it for a second, contradicting diagram, so it is never shown.
    label2_->setVisible(false);

    picture5_ = new platform::Surface(ctx.window, QStringLiteral("Picture5"));
    picture5_->setBackColor(kPanelBack);
    picture5_->setGeometry(8, 450, 340, 148);
    picture5_->setAccessibleName(QStringLiteral("Données"));
    picture5_->setPaintHandler([this](platform::Canvas& c) {
        micro::drawDataPanel(c, micro::dataPanelRuns(ctx_.reactionIndex(), ctx_.state.ActiveTab,
                                                     option(2), ctx_.state.BrokenBondsEnergy,
                                                     ctx_.state.FormedBondsEnergy));
    });

    // Stopped until the user asks for the animation.
    timer1_ = new QTimer(this);
    timer1_->setObjectName(QStringLiteral("Timer1"));
    timer1_->setInterval(micro::DriftIntervalMs);
    connect(timer1_, &QTimer::timeout, this, &MicroPanel::Timer1_Timer);
}

platform::ImageButton* MicroPanel::image(int n) const {
    if (n < 4 || n > 7)
        return nullptr;
    return images_[static_cast<std::size_t>(n - 4)];
}

bool MicroPanel::option(int index) const {
    const QCheckBox* box = ctx_.Check1[static_cast<std::size_t>(index)];
    return box && box->isChecked();
}

std::int16_t MicroPanel::currentFinalStep() const {
    const int sum = int{ctx_.state.FormStartStep} + ctx_.state.FormCount;
    // Constants that do not fit leave no final step to reach.
    if (sum > std::numeric_limits<std::int16_t>::max())
        return std::numeric_limits<std::int16_t>::max();
    return static_cast<std::int16_t>(sum);
}

void MicroPanel::animicro(std::int16_t& reactionIndex) {
    micro::StepOutcome out;
    try {
        animation_.step(reactionIndex, option(0), out);
    } catch (const std::exception&) {
        // A run-time error abandons the step; what it decided so far stands.
    }
    if (out.stopTimer)
        timer1_->stop();
    if (out.intervalMs > 0)
        timer1_->setInterval(out.intervalMs);
    frame_ = out.frame;
    picmicro_->refresh();
    if (out.completed) {
        const micro::DiagramInput& d = out.diagram;
        picmicro_->setAccessibleDescription(
            micro::moleculesDescription(reactionIndex, d, option(0)));
        picture2_->setAccessibleDescription(micro::diagramDescription(d.current));
        label2_->setText(micro::energyReadout(d.current, d.broken, d.formed));
        try {
            diagram_ = micro::energyDiagram(d, option(1));
            hasDiagram_ = true;
        } catch (const std::exception&) {
            hasDiagram_ = false;
        }
        picture2_->refresh();
    }
}

void MicroPanel::Image4_Click() {
    if (ctx_.state.AnimStep >= currentFinalStep())
        Image5_Click();
    if (ctx_.state.AnimStep == 0)
        ctx_.state.AnimStep = 1;
    timer1_->start();
}

void MicroPanel::Image5_Click() {
    ctx_.state.AnimStep = 0;
    std::int16_t index = ctx_.reactionIndex();
    animicro(index);
    timer1_->stop();
}

void MicroPanel::Image6_Click() {
    const std::int16_t last = currentFinalStep();
    if (ctx_.state.AnimStep == last)
        return;
    ctx_.state.AnimStep = last;
    std::int16_t index = ctx_.reactionIndex();
    animicro(index);
}

void MicroPanel::Image7_Click() {
    timer1_->stop();
}

void MicroPanel::Timer1_Timer() {
    std::int16_t index = ctx_.reactionIndex();
    animicro(index);
}

void MicroPanel::Check1_Click(int index) {
    switch (index) {
    case 0:
        Image5_Click();
        break;
    case 1: {
        std::int16_t reaction = ctx_.reactionIndex();
        animicro(reaction);
        break;
    }
    case 2:
        picture5_->refresh();
        break;
    default:
        break;
    }
}
