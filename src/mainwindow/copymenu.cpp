#include "mainwindow/copymenu.h"

#include "mainwindow/appstate.h"
#include "mainwindow/hints.h"
#include "platform/surface.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QWidget>

CopyMenu::CopyMenu(const Pictures& pictures, QLabel* info, const AppState& state, QWidget* window)
    : QObject(window), pictures_(pictures), info_(info), state_(state),
      menucop_(new QMenu(window)) {
    menucop_->setObjectName(QStringLiteral("menucop"));
    const auto item = [this](const char* name, const char* caption, void (CopyMenu::*click)()) {
        QAction* a = menucop_->addAction(QString::fromUtf8(caption));
        a->setObjectName(QString::fromLatin1(name));
        connect(a, &QAction::triggered, this, click);
    };
    item("copmicro", "L'illustration de l'aspect microscopique", &CopyMenu::copmicro_Click);
    item("copdiagmic", "Le bilan énergétique de l'aspect microscopique",
         &CopyMenu::copdiagmic_Click);
    menucop_->addSeparator()->setObjectName(QStringLiteral("kh"));
    item("copmac", "L'illustration de l'aspect macroscopique", &CopyMenu::copmac_Click);
    menucop_->addSeparator();
    item("exporter", "Exporter l'illustration…", &CopyMenu::exporter_Click);
}

void CopyMenu::popup(const QPoint& globalPos) {
    menucop_->popup(globalPos);
}

void CopyMenu::copmicro_Click() {
    copy(pictures_.micro);
}

void CopyMenu::copdiagmic_Click() {
    copy(pictures_.diagram);
}

void CopyMenu::copmac_Click() {
    copy(pictures_.macro);
}

void CopyMenu::exporter_Click() {
    if (exporter_)
        exporter_();
}

void CopyMenu::copy(platform::Surface* picture) {
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    if (picture)
        clipboard->setImage(picture->image());
    setInfoCaption(info_, state_.CopyMessage);
}
