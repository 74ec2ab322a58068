#include "platform/messagebox.h"

#include <QMessageBox>

namespace platform {

namespace {
int ask(QWidget* parent, QMessageBox::Icon icon, const QString& title, const QString& text,
        QMessageBox::StandardButtons buttons, QMessageBox::StandardButton defaultButton) {
    QMessageBox box(icon, title, captionText(text), buttons, parent);
    box.setDefaultButton(defaultButton);
    return box.exec();
}
} // namespace

bool askOkCancel(QWidget* parent, const QString& title, const QString& text) {
    return ask(parent, QMessageBox::Question, title, text, QMessageBox::Ok | QMessageBox::Cancel,
               QMessageBox::Ok) == QMessageBox::Ok;
}

bool askYesNo(QWidget* parent, const QString& title, const QString& text) {
    return ask(parent, QMessageBox::Question, title, text, QMessageBox::Yes | QMessageBox::No,
               QMessageBox::Yes) == QMessageBox::Yes;
}

bool askYesNoWarning(QWidget* parent, const QString& title, const QString& text) {
    return ask(parent, QMessageBox::Warning, title, text, QMessageBox::Yes | QMessageBox::No,
               QMessageBox::Yes) == QMessageBox::Yes;
}

void showCritical(QWidget* parent, const QString& title, const QString& text) {
    ask(parent, QMessageBox::Critical, title, text, QMessageBox::Ok, QMessageBox::Ok);
}

void showExclamation(QWidget* parent, const QString& title, const QString& text) {
    ask(parent, QMessageBox::Warning, title, text, QMessageBox::Ok, QMessageBox::Ok);
}

QString captionText(const QString& text) {
    QString t = text;
    t.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    return t;
}

} // namespace platform
