#pragma once

#include <QListWidget>
#include <QString>

namespace platform {

// The folder list of the file windows: the ancestors of path() shown open from the root down
// to it, then its subfolders (hidden ones left out), each indented one step further. A double
// click or Enter on an entry opens it: it becomes path() and Change fires.
//
// Entries are numbered as the old list numbered them: list(-1) is path() itself, list(-2) its
// parent and so on up to the root; list(0) to list(listCount() - 1) are the subfolders.
// listIndex() is the highlighted entry in that numbering (-1 when it is path() itself).
// The window that uses it sets its objectName ("Dir1").
class DirList : public QListWidget {
    Q_OBJECT
public:
    explicit DirList(QWidget* parent = nullptr); // starts in the current folder

    QString path() const { return path_; }
    // Moves to `folder` (absolute, or relative to the current folder). False, with nothing
    // changed, when it is not a folder that can be listed and entered. Change fires when the
    // path moves; setting the same path again only lists it anew.
    bool setPath(const QString& folder);

    int listCount() const { return static_cast<int>(subfolders_.size()); }
    QString list(int index) const; // empty outside the numbering
    int listIndex() const;
    void setListIndex(int index);

    // Reads the folder again (subfolders created or removed meanwhile).
    void refresh();

signals:
    void Change();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void fill();
    void openRow(int row);

    QString path_;
    QStringList ancestors_;  // root first, path_ last
    QStringList subfolders_; // full paths
};

} // namespace platform
