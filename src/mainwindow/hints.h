#pragma once

#include <QObject>
#include <QString>
#include <utility>
#include <vector>

class QLabel;
class QWidget;
struct AppState;

// The one-line hints of the main window. Moving the mouse over a control writes its hint into
// the label `info`; the reaction list writes its hint when it takes the focus.
class Hints : public QObject {
    Q_OBJECT
public:
    // Control name (the window's own name for its bare background) and hint, as shown.
    static const std::vector<std::pair<QString, QString>>& table();
    static QString hintFor(const QString& control);

    // Watches every control of the table found in `window` (and the window itself).
    Hints(QWidget* window, QLabel* info, const AppState& state);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* window_;
    QLabel* info_;
    const AppState& state_;
};

// info.Caption: what the label was last given (CR LF kept), and the text it shows.
void setInfoCaption(QLabel* info, const QString& caption);
QString infoCaption(const QLabel* info);
