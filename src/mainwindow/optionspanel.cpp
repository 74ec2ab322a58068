#include "mainwindow/optionspanel.h"

#include "platform/canvas.h"
#include "platform/surface.h"
#include "platform/zoom.h"

#include <QAbstractItemView>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>

namespace {
constexpr int ControlLeft = 30;
constexpr int ControlWidth = 400;
constexpr int ControlHeight = 20;
constexpr int ZoomTop = 310;
} // namespace

OptionsPanel::OptionsPanel(QWidget* tabParent, QObject* parent)
    : QObject(parent), picture1_(new platform::Surface(tabParent, QStringLiteral("Picture1"))) {
    picture1_->setBackColor(QColor(240, 235, 230));
    picture1_->setAccessibleName(QStringLiteral("Onglet Options"));
    picture1_->setPaintHandler([this](platform::Canvas& c) { Picture1_Paint(c); });

    const QString checkCaptions[3] = {
        QStringLiteral("Couper et former toutes les liaisons simultanément"),
        QStringLiteral("Afficher l'énergie libérée depuis l'état intermédiaire"),
        QStringLiteral("Afficher la chaleur de réaction"),
    };
    // Data first, then the microscopic and macroscopic options, each under its heading.
    const int checkTops[3] = {120, 145, 50};
    for (int i = 0; i < 3; ++i) {
        auto* box = new QCheckBox(checkCaptions[i], picture1_);
        box->setObjectName(QStringLiteral("Check1_%1").arg(i));
        box->setGeometry(ControlLeft, checkTops[i], ControlWidth, ControlHeight);
        check1_[static_cast<std::size_t>(i)] = box;
    }
    const QString optionCaptions[2] = {
        QStringLiteral("Le système est isolé"),
        QStringLiteral("Le système échange de l'énergie avec le milieu extérieur"),
    };
    const int optionTops[2] = {215, 240};
    auto* group = new QButtonGroup(this);
    for (int i = 0; i < 2; ++i) {
        auto* button = new QRadioButton(optionCaptions[i], picture1_);
        button->setObjectName(QStringLiteral("Option1_%1").arg(i));
        button->setGeometry(ControlLeft, optionTops[i], ControlWidth, ControlHeight);
        group->addButton(button, i);
        option1_[static_cast<std::size_t>(i)] = button;
    }
    // The open system is the designed choice: set before the handlers are connected, as a
    // design-time value fires no Click.
    option1_[1]->setChecked(true);

    // The zoom, which the keyboard changes too (Ctrl++, Ctrl+-, Ctrl+0).
    auto* zoomLabel = new QLabel(QStringLiteral("Zoom des fenêtres :"), picture1_);
    zoomLabel->setObjectName(QStringLiteral("ZoomLabel"));
    zoomLabel->setGeometry(ControlLeft, ZoomTop, 120, ControlHeight);
    zoom_ = new QComboBox(picture1_);
    zoom_->setObjectName(QStringLiteral("Zoom"));
    zoom_->setGeometry(ControlLeft + 124, ZoomTop - 1, 90, ControlHeight + 2);
    zoom_->setAccessibleName(QStringLiteral("Zoom des fenêtres"));
    zoom_->setToolTip(QStringLiteral("Agrandit toutes les fenêtres (Ctrl++, Ctrl+-, Ctrl+0)"));
    zoom_->view()->setAccessibleName(QStringLiteral("Liste des zooms"));
    zoomLabel->setBuddy(zoom_);
    for (const int step : platform::ZoomSteps)
        zoom_->addItem(QString::number(step) + QStringLiteral("\u00a0%"), step);
    auto showZoom = [this](int percent) {
        const QSignalBlocker quiet(zoom_);
        zoom_->setCurrentIndex(zoom_->findData(percent));
    };
    showZoom(platform::Zoom::instance().percent());
    connect(&platform::Zoom::instance(), &platform::Zoom::changed, zoom_, showZoom);
    connect(zoom_, &QComboBox::activated, this, [this](int index) {
        platform::Zoom::instance().choose(zoom_->itemData(index).toInt());
    });

    for (int i = 0; i < 3; ++i)
        connect(check1_[static_cast<std::size_t>(i)], &QCheckBox::toggled, this,
                [this, i](bool) { emit Check1_Click(i); });
    for (int i = 0; i < 2; ++i)
        connect(option1_[static_cast<std::size_t>(i)], &QRadioButton::toggled, this,
                [this, i](bool on) {
                    if (on)
                        emit Option1_Click(i);
                });
}

void OptionsPanel::Picture1_Paint(platform::Canvas& c) {
    auto& st = c.state();
    st.backColor = QColor(240, 235, 230);
    st.fontName = QStringLiteral("Arial");
    st.fontBold = true;
    st.fontSize = 8;
    st.foreColor = platform::qbColor(0);
    const std::pair<QString, QWidget*> headings[4] = {
        {QStringLiteral("Données"), check1_[2]},
        {QStringLiteral("Aspect microscopique"), check1_[0]},
        {QStringLiteral("Aspect macroscopique"), option1_[0]},
        {QStringLiteral("Affichage"), zoom_},
    };
    for (const auto& [text, control] : headings) {
        st.currentX = 18;
        st.currentY = control->y() - 27;
        c.print(text);
    }
    st.fontBold = false;
}
