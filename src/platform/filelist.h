#pragma once

#include <QListWidget>
#include <QString>
#include <QStringList>

namespace platform {

// The file list of the file windows: the files of path() whose names match pattern(), sorted
// by name. A pattern holds one or more wildcards separated by ";" ("*.C10", "*.E31;*.PEM");
// the extension is matched without regard to case, so "essai.c10" shows under "*.C10".
// Hidden files and folders are left out. The window that uses it sets its objectName
// ("File1").
class FileList : public QListWidget {
    Q_OBJECT
public:
    explicit FileList(QWidget* parent = nullptr); // the current folder, every file ("*.*")

    QString path() const { return path_; }
    // Lists `folder` (absolute, or relative to the current folder); PathChange fires when it
    // moves. False, with nothing changed, when it is not a folder that can be listed.
    bool setPath(const QString& folder);

    QString pattern() const { return pattern_; }
    void setPattern(const QString& pattern);

    // The highlighted file's name (without folder); empty when none is highlighted.
    QString fileName() const;
    int listCount() const { return count(); }
    QString list(int index) const;
    int listIndex() const { return currentRow(); } // -1 when none
    void setListIndex(int index);

    // Reads the folder again; the highlighted name stays highlighted when it is still there.
    void refresh();

signals:
    // The user highlighted a file (mouse or arrow keys), or clicked the highlighted one.
    void Click();
    // A double click on a file, or Enter with a file highlighted.
    void DblClick();
    void PathChange();
    void PatternChange();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void fill(bool keepHighlight);

    QString path_;
    QString pattern_ = QStringLiteral("*.*");
    bool filling_ = false;
    int rowBeforePress_ = -1;
};

} // namespace platform
