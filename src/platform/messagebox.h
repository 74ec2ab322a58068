#pragma once

#include <QString>

class QWidget;

namespace platform {

// Questions ask with OK and Cancel and the question icon; true means OK.
bool askOkCancel(QWidget* parent, const QString& title, const QString& text);
// Yes/No question with the question icon; true means Yes.
bool askYesNo(QWidget* parent, const QString& title, const QString& text);
// Yes/No question with the exclamation icon (a warning before overwriting); true means Yes.
bool askYesNoWarning(QWidget* parent, const QString& title, const QString& text);
// File failures: critical icon, French title, one OK button.
void showCritical(QWidget* parent, const QString& title, const QString& text);
void showExclamation(QWidget* parent, const QString& title, const QString& text);

// Captions written with CR LF line breaks shown in Qt widgets.
QString captionText(const QString& text);

} // namespace platform
