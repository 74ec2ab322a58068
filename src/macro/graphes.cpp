#include "macro/graphes.h"

#include "calculator/machine.h"
#include "macro/description.h"
#include "platform/canvas.h"
#include "platform/imagebutton.h"
#include "platform/messagebox.h"
#include "platform/printer.h"
#include "platform/surface.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>
#include <QPrinter>
#include <QSaveFile>
#include <QScreen>
#include <QStandardPaths>
#include <QTableWidget>
#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>

using macro::EnergyGraph;
using platform::Canvas;

namespace {

// Window layout, in pixels. Picture1 leaves room on its left for the |ΔE| readout, whose
// right edge stands 16 pixels into the picture, and reaches past the arrow of the x axis for
// the legend printed at 400.
constexpr int TitleHeight = 32;
constexpr int PictureLeft = 96;
constexpr int PictureTop = TitleHeight + 6;
constexpr int PictureWidth = 480;
constexpr int PictureHeight = 400;
constexpr int HeaderGap = 6;
constexpr int HeaderHeight = 20;
constexpr int RowHeight = 15;
constexpr int BottomMargin = 10;
constexpr int WindowWidth = PictureLeft + PictureWidth + 8;
constexpr int BesideMargin = 16;
// The table is centred under the plot square, not under the whole picture.
constexpr int PlotCentre = (macro::PlotLeft + macro::PlotRight) / 2;
// Label1 stands just below the x axis, Label2's right edge just left of the vertical axis.
constexpr int Label1Top = macro::PlotBottom + 2;
constexpr int Label2Right = 16;
// Left edges of Image1(1..4), counted back from the title strip's right end.
constexpr std::array<int, 4> ButtonFromRight = {50, 90, 130, 170};
constexpr int ButtonWidth = 34;
constexpr int ButtonHeight = 26;
// Where the texts of the plot stand. The energy legend fills the strip above the plot; the
// x legend ends just above the x axis, whose name sits under it, right of the arrow.
constexpr double EnergyLegendTop = 3;
constexpr double XLegendTop = 330;
constexpr double EnergyNameLeft = macro::PlotLeft + 4;
constexpr double EnergyNameTop = macro::PlotTop + 2;

const QColor TitleBack(0, 0, 128);
const QColor HeaderBack(212, 208, 200);

template <typename F> void tolerant(F&& statement) {
    try {
        statement();
    } catch (const std::exception&) {
    }
}

QFont arial(double points, bool bold = false) {
    QFont f;
    f.setFamilies(platform::fontFamilies(QStringLiteral("Arial")));
    f.setPixelSize(platform::pointsToPixels(points));
    f.setBold(bold);
    return f;
}

// The title strip's picture buttons: close, print, copy, calculator.
class StripButton : public QAbstractButton {
public:
    enum class Glyph { Close, Print, Copy, Calculator };

    StripButton(Glyph glyph, int index, const QString& toolTip, QWidget* parent)
        : QAbstractButton(parent), glyph_(glyph) {
        setObjectName(QStringLiteral("Image1_%1").arg(index));
        setToolTip(toolTip);
        setAccessibleName(toolTip);
        setFocusPolicy(Qt::NoFocus);
        setCursor(Qt::PointingHandCursor);
        resize(ButtonWidth, ButtonHeight);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        const bool down = isDown();
        platform::drawButtonFace(p, rect(), down);

        const QColor ink = isEnabled() ? QColor(0, 70, 160) : QColor(150, 150, 150);
        const double cx = width() / 2.0 + (down ? 1 : 0);
        const double cy = height() / 2.0 + (down ? 1 : 0);
        switch (glyph_) {
        case Glyph::Close: {
            p.setPen(QPen(isEnabled() ? QColor(180, 0, 0) : ink, 2.4, Qt::SolidLine, Qt::RoundCap));
            p.drawLine(QPointF(cx - 5, cy - 5), QPointF(cx + 5, cy + 5));
            p.drawLine(QPointF(cx - 5, cy + 5), QPointF(cx + 5, cy - 5));
            break;
        }
        case Glyph::Print: {
            p.setPen(QPen(ink, 1.2));
            p.setBrush(Qt::white);
            p.drawRect(QRectF(cx - 4.5, cy - 8, 9, 6)); // sheet going in
            p.setBrush(ink);
            p.drawRoundedRect(QRectF(cx - 8, cy - 3, 16, 7), 1.5, 1.5);
            p.setBrush(Qt::white);
            p.drawRect(QRectF(cx - 4.5, cy + 2, 9, 6)); // sheet coming out
            break;
        }
        case Glyph::Copy: {
            p.setPen(QPen(ink, 1.2));
            p.setBrush(Qt::white);
            p.drawRect(QRectF(cx - 7, cy - 8, 9, 11));
            p.drawRect(QRectF(cx - 2, cy - 3, 9, 11));
            p.drawLine(QPointF(cx, cy), QPointF(cx + 5, cy));
            p.drawLine(QPointF(cx, cy + 3), QPointF(cx + 5, cy + 3));
            break;
        }
        case Glyph::Calculator: {
            p.setPen(QPen(ink, 1.2));
            p.setBrush(QColor(235, 240, 250));
            p.drawRoundedRect(QRectF(cx - 6.5, cy - 9, 13, 18), 1.5, 1.5);
            p.setBrush(Qt::white);
            p.drawRect(QRectF(cx - 4.5, cy - 7, 9, 4));
            p.setPen(Qt::NoPen);
            p.setBrush(ink);
            for (int row = 0; row < 3; ++row)
                for (int col = 0; col < 3; ++col)
                    p.drawRect(QRectF(cx - 4.5 + col * 3.5, cy - 1 + row * 3.2, 2, 2));
            break;
        }
        }
    }

private:
    Glyph glyph_;
};

} // namespace

graphes::graphes(const macro::GraphInput& input, QWidget* parent) : QDialog(parent), input_(input) {
    setObjectName(QStringLiteral("graphes"));
    setWindowTitle(QStringLiteral("Graphe"));
    setModal(true);
    setMouseTracking(true);
    QPalette pal = palette();
    pal.setColor(QPalette::Window, Qt::white);
    setPalette(pal);
    setAutoFillBackground(true);
    buildControls();
    resize(WindowWidth, PictureTop + PictureHeight + HeaderGap + HeaderHeight + BottomMargin);
}

graphes::~graphes() = default;

void graphes::buildControls() {
    picture3_ = new platform::Surface(this, QStringLiteral("Picture3"));
    picture3_->setBackColor(TitleBack);
    picture3_->setGeometry(0, 0, WindowWidth, TitleHeight);
    picture3_->setPaintHandler([this](Canvas& c) { paintTitle(c); });
    picture3_->installEventFilter(this);

    const StripButton::Glyph glyphs[] = {StripButton::Glyph::Close, StripButton::Glyph::Print,
                                         StripButton::Glyph::Copy, StripButton::Glyph::Calculator};
    const QString tips[] = {QStringLiteral("Fermer"), QStringLiteral("Imprimer le graphe"),
                            QStringLiteral("Copier le graphe dans le presse-papiers"),
                            QStringLiteral("Machine à calculer")};
    for (int i = 0; i < 4; ++i) {
        auto* b = new StripButton(glyphs[i], i + 1, tips[i], picture3_);
        image1_[static_cast<std::size_t>(i)] = b;
        connect(b, &QAbstractButton::clicked, this, [this, i] { Image1_Click(i + 1); });
    }

    picture1_ = new platform::Surface(this, QStringLiteral("Picture1"));
    picture1_->setBackColor(platform::qbColor(15));
    picture1_->setGeometry(PictureLeft, PictureTop, PictureWidth, PictureHeight);
    picture1_->setMouseTracking(true);
    picture1_->setPaintHandler([this](Canvas& c) { drawPlot(c); });
    picture1_->setAccessibleName(QStringLiteral("Graphe"));
    connect(picture1_, &platform::Surface::mouseMoved, this,
            [this](Qt::MouseButtons, Qt::KeyboardModifiers, double x, double y) {
                Picture1_MouseMove(x, y);
            });

    picture2_ = new platform::Surface(this, QStringLiteral("Picture2"));
    picture2_->setBackColor(HeaderBack);
    picture2_->setPaintHandler([this](Canvas& c) { paintHeader(c); });

    grid_ = new QTableWidget(this);
    grid_->setObjectName(QStringLiteral("MSFlexGrid1"));
    grid_->setColumnCount(2);
    grid_->setFont(arial(8));
    grid_->horizontalHeader()->hide();
    grid_->verticalHeader()->hide();
    grid_->verticalHeader()->setMinimumSectionSize(RowHeight);
    grid_->verticalHeader()->setDefaultSectionSize(RowHeight);
    grid_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    grid_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->setWordWrap(false);
    grid_->setTextElideMode(Qt::ElideNone);
    grid_->setContextMenuPolicy(Qt::CustomContextMenu);

    tableMenu_ = new QMenu(this);
    tableMenu_->setObjectName(QStringLiteral("tableMenu"));
    QAction* copy = tableMenu_->addAction(QStringLiteral("Copier le tableau"));
    copy->setObjectName(QStringLiteral("copyTable"));
    QAction* save = tableMenu_->addAction(QStringLiteral("Enregistrer le tableau…"));
    save->setObjectName(QStringLiteral("saveTable"));
    connect(copy, &QAction::triggered, this, &graphes::copyTable);
    connect(save, &QAction::triggered, this, &graphes::saveTableAs);
    connect(grid_, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& pos) { tableMenu_->popup(grid_->viewport()->mapToGlobal(pos)); });

    const QString labelStyle =
        QStringLiteral("QLabel { background: rgb(255,255,225); color: black; border: 1px solid "
                       "rgb(128,128,128); padding: 0px 2px; }");
    label1_ = new QLabel(this);
    label1_->setObjectName(QStringLiteral("Label1"));
    label2_ = new QLabel(this);
    label2_->setObjectName(QStringLiteral("Label2"));
    for (QLabel* l : {label1_, label2_}) {
        l->setFont(arial(8));
        l->setStyleSheet(labelStyle);
        // The readouts follow the cursor; the moves under them still reach the plot.
        l->setAttribute(Qt::WA_TransparentForMouseEvents);
        l->hide();
    }
}

QAbstractButton* graphes::image1(int index) const {
    if (index < 1 || index > 4)
        return nullptr;
    return image1_[static_cast<std::size_t>(index - 1)];
}

void graphes::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // Opening counts as the first activation, whether or not the window system reports it.
    if (!drawnOnShow_) {
        drawnOnShow_ = true;
        Form_Activate();
    }
}

void graphes::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() != QEvent::ActivationChange || !isActiveWindow() || !isVisible())
        return;
    if (drawnOnShow_ && graph_ && !activatedOnce_) {
        activatedOnce_ = true; // the activation that follows the opening: already drawn
        return;
    }
    Form_Activate();
}

void graphes::Form_Activate() {
    tracegraphe();
}

void graphes::tracegraphe() {
    tolerant([&] { graph_ = std::make_unique<EnergyGraph>(input_); });
    if (!graph_)
        return;
    // Grid, axes, legends, curve and the crosses of the tabulated points.
    tolerant([&] { picture1_->refresh(); });
    tolerant([&] { picture1_->setAccessibleDescription(macro::graphDescription(*graph_)); });
    tolerant([&] { layoutTable(); });
    tolerant([&] { picture2_->refresh(); });
}

void graphes::layoutTable() {
    const int rows = graph_->rowCount();
    const auto& values = graph_->values();
    grid_->clearContents();
    grid_->setRowCount(rows);

    const QFontMetrics fm(grid_->font());
    const QFontMetrics headingMetrics(arial(8, true));
    std::array<int, 2> widths = {
        headingMetrics.horizontalAdvance(QStringLiteral("x (mol)")) + 16,
        headingMetrics.horizontalAdvance(QStringLiteral("|\u0394E | (kJ)")) + 16};
    for (int r = 0; r < rows && r < static_cast<int>(values.size()); ++r) {
        const macro::TableValue& v = values[static_cast<std::size_t>(r)];
        const QString texts[2] = {v.xText, v.energyText};
        for (int col = 0; col < 2; ++col) {
            auto* item = new QTableWidgetItem(texts[col]);
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            grid_->setItem(r, col, item);
            widths[static_cast<std::size_t>(col)] = std::max(widths[static_cast<std::size_t>(col)],
                                                             fm.horizontalAdvance(texts[col]) + 10);
        }
    }
    for (int r = 0; r < rows; ++r)
        grid_->setRowHeight(r, RowHeight);
    // No row stands out until the cursor picks one on the plot.
    grid_->setCurrentItem(nullptr);
    grid_->clearSelection();
    grid_->setColumnWidth(0, widths[0]);
    grid_->setColumnWidth(1, widths[1]);

    // Every row and both columns show: the grid is exactly as large as its cells. Under the
    // plot that makes a window about 790 pixels tall; where the screen is lower (a 768-pixel
    // laptop, a projector at a large zoom) the table stands beside the plot instead, so that
    // no row is out of sight.
    const int frame = grid_->frameWidth();
    const int w = widths[0] + widths[1] + 2 * frame;
    const int h = rows * RowHeight + 2 * frame;
    int left = PictureLeft + PlotCentre - w / 2;
    int top = PictureTop + PictureHeight + HeaderGap + HeaderHeight;
    if (top + h + BottomMargin > availableHeight()) {
        left = WindowWidth;
        top = PictureTop + HeaderHeight;
    }
    grid_->setGeometry(left, top, w, h);
    picture2_->setGeometry(left, top - HeaderHeight, w, HeaderHeight);

    const int height = std::max(top + h, PictureTop + PictureHeight) + BottomMargin;
    const int width = std::max(WindowWidth, left + w + BesideMargin);
    setMinimumSize(width, height);
    resize(width, height);
}

int graphes::availableHeight() const {
    if (availableHeight_ > 0)
        return availableHeight_;
    const QScreen* s = screen();
    return s ? s->availableGeometry().height() : std::numeric_limits<int>::max();
}

void graphes::drawPlot(Canvas& c) const {
    using platform::qbColor;
    platform::DrawState& s = c.state();
    c.cls();
    if (!graph_)
        return;
    const EnergyGraph& g = *graph_;

    // Grid lines, one per division.
    tolerant([&] {
        const double step = g.xAxis().divisionPixels();
        for (int k = 0;; ++k) {
            const double x = macro::PlotLeft + k * step;
            if (x > macro::PlotRight + 1)
                break;
            c.line(x, macro::PlotTop, x, macro::PlotBottom, qbColor(7));
        }
    });
    tolerant([&] {
        const double step = g.energyAxis().divisionPixels();
        for (int k = 0;; ++k) {
            const double y = macro::PlotBottom - k * step;
            if (y < macro::PlotTop - 1)
                break;
            c.line(macro::PlotLeft, y, macro::PlotRight, y, qbColor(7));
        }
    });

    // Vertical axis with its arrow head, and the energy legend above the plot.
    c.line(20, 5, 20, 380, qbColor(0));
    c.line(20, 5, 24, 13, qbColor(0));
    c.line(20, 5, 16, 13, qbColor(0));
    s.fontName = QStringLiteral("Arial");
    s.fontSize = 8;
    s.fontBold = false;
    s.fontItalic = false;
    s.foreColor = qbColor(0);
    s.currentX = 30;
    s.currentY = EnergyLegendTop;
    c.print(g.energyLegend());

    // Horizontal axis with its arrow head, and the x legend right of the plot.
    c.line(20, 380, 400, 380, qbColor(0));
    c.line(392, 376, 400, 380, qbColor(0));
    c.line(392, 384, 400, 380, qbColor(0));
    s.currentY = XLegendTop;
    for (const QString& line : g.xLegend()) {
        s.currentX = 400;
        c.print(line);
        s.currentY += c.textHeight(line);
    }

    // Names of the axes: |ΔE| with a Greek capital delta, and x.
    s.fontSize = 10;
    s.fontBold = true;
    s.currentX = EnergyNameLeft;
    s.currentY = EnergyNameTop;
    c.print(QStringLiteral("| "));
    s.fontName = QStringLiteral("Symbol");
    c.print(QStringLiteral("D"));
    s.fontName = QStringLiteral("Arial");
    c.print(QStringLiteral("E"));
    c.print(QStringLiteral(" |"));
    s.currentX = 400;
    s.currentY = 380;
    c.print(QStringLiteral("x"));
    s.fontBold = false;
    s.fontSize = 8;

    // The curve, point after point from x = 0 to X.
    tolerant([&] {
        const std::vector<QPointF> pts = g.curve();
        c.pset(pts.front().x(), pts.front().y(), qbColor(9));
        for (std::size_t k = 1; k < pts.size(); ++k)
            c.line(s.currentX, s.currentY, pts[k].x(), pts[k].y(), qbColor(9));
    });

    // A cross on each tabulated point.
    for (const macro::TableValue& v : g.values()) {
        const double x = v.pixel.x();
        const double y = v.pixel.y();
        c.line(x - 2, y, x + 3, y, qbColor(9));
        c.line(x, y - 2, x, y + 3, qbColor(9));
    }
}

void graphes::paintHeader(Canvas& c) {
    platform::DrawState& s = c.state();
    s.fontName = QStringLiteral("Arial");
    s.fontSize = 8;
    s.fontBold = true;
    s.foreColor = platform::qbColor(0);
    const int frame = grid_->frameWidth();
    const double left0 = frame;
    const double left1 = frame + grid_->columnWidth(0);
    s.currentY = (c.scaleHeight() - c.textHeight()) / 2;

    s.currentX = left0 + (grid_->columnWidth(0) - c.textWidth(QStringLiteral("x (mol)"))) / 2;
    c.print(QStringLiteral("x"));
    c.print(QStringLiteral(" (mol)"));

    s.currentX = left1 + (grid_->columnWidth(1) - c.textWidth(QStringLiteral("WE (kJ)"))) / 2;
    c.print(QStringLiteral("|"));
    s.fontName = QStringLiteral("Symbol");
    c.print(QStringLiteral("D"));
    s.fontName = QStringLiteral("Arial");
    c.print(QStringLiteral("E"));
    c.print(QStringLiteral(" | (kJ)"));

    // The column rule, continuing the grid's.
    c.line(left1 - 1, 0, left1 - 1, c.scaleHeight(), platform::qbColor(8));
}

void graphes::paintTitle(Canvas& c) {
    platform::DrawState& s = c.state();
    s.fontName = QStringLiteral("Arial");
    s.fontSize = 12;
    s.fontBold = true;
    s.fontItalic = false;
    s.foreColor = platform::qbColor(15);
    s.currentX = 12;
    s.currentY = (c.scaleHeight() - c.textHeight()) / 2;
    c.print(QStringLiteral("E(x)"));
}

void graphes::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    // The title strip spans the window; its own resize places the buttons.
    picture3_->setGeometry(0, 0, width(), TitleHeight);
    picture3_->refresh();
}

void graphes::Picture3_Resize() {
    const int w = picture3_->width();
    for (int i = 0; i < 4; ++i)
        image1_[static_cast<std::size_t>(i)]->move(w - ButtonFromRight[static_cast<std::size_t>(i)],
                                                   (TitleHeight - ButtonHeight) / 2);
}

bool graphes::eventFilter(QObject* watched, QEvent* event) {
    if (watched == picture3_ && event->type() == QEvent::Resize)
        Picture3_Resize();
    return QDialog::eventFilter(watched, event);
}

void graphes::mouseMoveEvent(QMouseEvent* event) {
    // Moves over the window reach the plot's handler in the plot's own pixels.
    const QPointF p = event->position() - QPointF(picture1_->pos());
    Picture1_MouseMove(p.x(), p.y());
    QDialog::mouseMoveEvent(event);
}

void graphes::Picture1_MouseMove(double x, double y) {
    if (!graph_)
        return;
    if (!EnergyGraph::insidePlot(x, y)) {
        picture1_->unsetCursor();
        label1_->hide();
        label2_->hide();
        return;
    }
    picture1_->setCursor(Qt::CrossCursor);
    label1_->show();
    label2_->show();
    label1_->raise();
    label2_->raise();

    const int row = graph_->rowNear(x, y);
    if (row >= 0 && row < grid_->rowCount())
        grid_->selectRow(row);

    label1_->setText(graph_->cursorX(x));
    label1_->adjustSize();
    label1_->move(PictureLeft + static_cast<int>(std::lround(x)) - label1_->width() / 2,
                  PictureTop + Label1Top);

    label2_->setText(graph_->cursorEnergy(y));
    label2_->adjustSize();
    label2_->move(PictureLeft + Label2Right - label2_->width(),
                  PictureTop + static_cast<int>(std::lround(y)) - label2_->height() / 2);
}

void graphes::Image1_Click(int index) {
    switch (index) {
    case 1:
        close();
        break;
    case 2:
        tolerant([&] { printPlot(); });
        break;
    case 3:
        tolerant([&] {
            QClipboard* clip = QGuiApplication::clipboard();
            clip->clear();
            clip->setImage(picture1_->image());
        });
        break;
    case 4: {
        calculator::Machine machine(this);
        machine.exec();
        break;
    }
    default:
        break;
    }
}

void graphes::printPlot() {
    std::unique_ptr<QPrinter> own;
    QPrinter* device = printer_;
    if (device == nullptr) {
        own = std::make_unique<QPrinter>(QPrinter::HighResolution);
        device = own.get();
    }
    platform::Printer printer(*device);
    // Centred on the page at its screen size; drawn by the plot's own code at the printer's
    // resolution.
    const double w = picture1_->width() * platform::twipsPerPixelX();
    const double h = picture1_->height() * platform::twipsPerPixelY();
    printer.paintPicture(*picture1_, (printer.scaleWidth() - w) / 2,
                         (printer.scaleHeight() - h) / 2);
    printer.endDoc();
}

void graphes::copyTable() {
    if (graph_)
        QGuiApplication::clipboard()->setText(graph_->tableText(QLatin1Char('\t')));
}

bool graphes::saveTable(const QString& path) {
    if (!graph_)
        return false;
    QSaveFile file(path);
    // With its byte-order mark, a spreadsheet reads the Δ of the heading as it is.
    const QByteArray bytes =
        QByteArray("\xEF\xBB\xBF") + graph_->tableText(QLatin1Char(';')).toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        platform::showCritical(this, QStringLiteral("Enregistrer le tableau"),
                               QStringLiteral("Le tableau n'a pas pu être enregistré dans "
                                              "le fichier\n%1")
                                   .arg(QDir::toNativeSeparators(path)));
        return false;
    }
    return true;
}

void graphes::saveTableAs() {
    QFileDialog dialog(this, QStringLiteral("Enregistrer le tableau"));
    dialog.setObjectName(QStringLiteral("saveTableDialog"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setNameFilter(QStringLiteral("Tableau pour tableur (*.csv)"));
    dialog.setDefaultSuffix(QStringLiteral("csv"));
    dialog.setDirectory(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    dialog.selectFile(QStringLiteral("graphe.csv"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    saveTable(dialog.selectedFiles().constFirst());
}
