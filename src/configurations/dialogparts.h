#pragma once

#include <QPixmap>
#include <QRect>
#include <QString>

class QLabel;
class QPushButton;
class QWidget;

namespace configurations {

// Pieces the two file dialogs share.
QLabel* makeLabel(QWidget* parent, const QString& name, const QString& caption, const QRect& at);
// A button that Enter does not press on its own behalf: each dialog decides what Enter does.
QPushButton* makeButton(QWidget* parent, const QString& name, const QString& caption,
                        const QRect& at);
// 20 pixels right of and below the main window's top-left corner.
void placeBesideMainWindow(QWidget* dialog, const QWidget* mainWindow);
// The waiting notice's hourglass.
QPixmap hourglassPicture(int size);

} // namespace configurations
