// The yardstick for start-up: the least a Qt Widgets program does to show and grab one
// 800 × 600 window.
#include <QApplication>
#include <QPainter>
#include <QWidget>

namespace {
class Window : public QWidget {
public:
    explicit Window(QString shot) : shot_(std::move(shot)) { setFixedSize(800, 600); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(), Qt::white);
        if (!done_) {
            done_ = true;
            QMetaObject::invokeMethod(
                this,
                [this] {
                    grab().save(shot_);
                    close();
                },
                Qt::QueuedConnection);
        }
    }

private:
    QString shot_;
    bool done_ = false;
};
} // namespace

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    Window w(argc > 2 ? QString::fromLocal8Bit(argv[2]) : QStringLiteral("/tmp/bare.png"));
    w.show();
    return QApplication::exec();
}
