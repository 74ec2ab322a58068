#pragma once

#include <QDialog>
#include <QString>
#include <QStringList>
#include <vector>

class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QTextBrowser;
class QToolButton;
class QUrl;

// The program's own help: French HTML pages in the folder "aide" of the program folder, read in
// a browser with the table of contents beside it, back and forward, and a search by words.
class HelpWindow : public QDialog {
    Q_OBJECT
public:
    static QString folderName() { return QStringLiteral("aide"); }
    static QString contentsPage() { return QStringLiteral("index.html"); }

    // Opens the help of the program folder modally; a missing help folder is reported in a
    // message box instead.
    static void showHelp(QWidget* parent, const QString& programFolder);

    HelpWindow(const QString& helpFolder, QWidget* parent);

    QTextBrowser* browser() const { return browser_; }
    QListWidget* contents() const { return contents_; }
    QLineEdit* searchField() const { return search_; }
    QListWidget* results() const { return results_; }

    // File names of the pages holding every word of `query` (case and accents aside), the
    // contents' order first.
    QStringList pagesWithWords(const QString& query) const;
    void showPage(const QString& fileName);

private:
    struct Page {
        QString file;
        QString title;
        QString words; // its text, folded for searching
    };

    void readPages();
    void runSearch();
    // Selects the page shown in the contents, when it is one of them.
    void followSource(const QUrl& source);

    QString folder_;
    std::vector<Page> pages_; // the contents' pages first, in their order
    QTextBrowser* browser_ = nullptr;
    QListWidget* contents_ = nullptr;
    QLineEdit* search_ = nullptr;
    QListWidget* results_ = nullptr;
    QToolButton* back_ = nullptr;
    QToolButton* forward_ = nullptr;
    QToolButton* home_ = nullptr;
};
