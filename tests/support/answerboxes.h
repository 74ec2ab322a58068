#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QPushButton>
#include <QStringList>
#include <QTimer>
#include <functional>

// Answers the message boxes that come up while it lives, in order, and records
// "title|text" for each. Without answers left, a box gets its default button.
class AnswerBoxes : public QObject {
public:
    explicit AnswerBoxes(QList<QMessageBox::StandardButton> answers = {})
        : answers_(std::move(answers)) {
        timer_.setInterval(0);
        connect(&timer_, &QTimer::timeout, this, &AnswerBoxes::poll);
        timer_.start();
    }
    QStringList seen;
    QList<QMessageBox::Icon> icons;

private:
    void poll() {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || box == last_)
            return;
        last_ = box;
        seen << box->windowTitle() + QLatin1Char('|') + box->text();
        icons << box->icon();
        QAbstractButton* button =
            answers_.isEmpty() ? box->defaultButton() : box->button(answers_.takeFirst());
        if (!button)
            button = box->buttons().value(0);
        button->click();
    }
    QList<QMessageBox::StandardButton> answers_;
    QTimer timer_;
    QPointer<QMessageBox> last_;
};

// Runs `answer` on the first modal window once it is open.
inline void whenModal(std::function<void(QWidget*)> answer) {
    QTimer::singleShot(0, [answer] {
        if (QWidget* w = QApplication::activeModalWidget())
            answer(w);
        else
            whenModal(answer);
    });
}
