// Renders the program's SVG icon into the PNG sizes a desktop expects, at build time, so the
// bitmaps can never drift from the drawing.
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <cstdio>

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (argc != 4) {
        std::fprintf(stderr, "usage: rendericon ICON.svg SIZE OUT.png\n");
        return 2;
    }
    const int size = QByteArray(argv[2]).toInt();
    QImageReader reader(QString::fromLocal8Bit(argv[1]));
    reader.setScaledSize(QSize(size, size));
    const QImage image = reader.read();
    if (image.isNull() || !image.save(QString::fromLocal8Bit(argv[3]))) {
        std::fprintf(stderr, "rendericon: %s\n", qPrintable(reader.errorString()));
        return 1;
    }
    return 0;
}
