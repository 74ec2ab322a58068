#pragma once

#include "macro/graph.h"

#include <QDialog>
#include <array>
#include <functional>
#include <memory>
#include <optional>

class QAbstractButton;
class QLabel;
class QMenu;
class QPrinter;
class QTableWidget;

namespace platform {
class Canvas;
class Surface;
} // namespace platform

// The graph window: |ΔE| against the advancement x on a square plot with an automatic grid,
// the same function as a table under it, and the coordinates under the mouse. It is opened
// modally from the Macro tab and redraws everything from the balance on each activation.
class graphes : public QDialog {
    Q_OBJECT
public:
    explicit graphes(const macro::GraphInput& input, QWidget* parent = nullptr);
    ~graphes() override;

    platform::Surface* picture1() const { return picture1_; }
    platform::Surface* picture2() const { return picture2_; }
    platform::Surface* picture3() const { return picture3_; }
    QTableWidget* grid() const { return grid_; }
    QLabel* label1() const { return label1_; }
    QLabel* label2() const { return label2_; }
    QAbstractButton* image1(int index) const;
    QMenu* tableMenu() const { return tableMenu_; }
    // The printer the print button sends the plot to; the system's default one when unset.
    void setPrinter(QPrinter* printer) { printer_ = printer; }
    // The screen height the window must fit in (tests); the window's screen's by default.
    void setAvailableHeight(int pixels) { availableHeight_ = pixels; }
    // The graph of the last tracegraphe (nothing before the first).
    const macro::EnergyGraph* graph() const { return graph_.get(); }

    // Each activation draws everything again from the balance.
    void Form_Activate();
    // Scales, plot, table and point table, all from the balance.
    void tracegraphe();
    // Picture1 MouseMove, at a pixel of Picture1 (the window forwards its own moves there).
    void Picture1_MouseMove(double x, double y);
    // The title strip's buttons: 1 close, 2 print, 3 copy, 4 calculator.
    void Image1_Click(int index);
    void Picture3_Resize();

    // The table for spreadsheets: on the clipboard as tab-separated text, or as a CSV file
    // with ";" between the columns. saveTable reports a failure and returns false.
    void copyTable();
    bool saveTable(const QString& path);
    void saveTableAs();

    // Draws the plot (grid, axes, legends, curve, crosses) on any canvas in Picture1's
    // pixels: the screen, the printed page, the clipboard picture.
    void drawPlot(platform::Canvas& c) const;

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildControls();
    void layoutTable();
    int availableHeight() const;
    void paintHeader(platform::Canvas& c);
    void paintTitle(platform::Canvas& c);
    void printPlot();

    macro::GraphInput input_;
    std::unique_ptr<macro::EnergyGraph> graph_;
    platform::Surface* picture1_ = nullptr;
    platform::Surface* picture2_ = nullptr;
    platform::Surface* picture3_ = nullptr;
    QTableWidget* grid_ = nullptr;
    QLabel* label1_ = nullptr;
    QLabel* label2_ = nullptr;
    std::array<QAbstractButton*, 4> image1_{};
    QMenu* tableMenu_ = nullptr;
    QPrinter* printer_ = nullptr;
    bool drawnOnShow_ = false;
    bool activatedOnce_ = false;
    int availableHeight_ = 0;
};
