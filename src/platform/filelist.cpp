#include "platform/filelist.h"

#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMouseEvent>

namespace platform {

namespace {

QStringList filtersOf(const QString& pattern) {
    QStringList filters;
    for (const QString& p : pattern.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString f = p.trimmed();
        // "*.*" meant every file, also those without an extension.
        filters.append(f == QLatin1String("*.*") ? QStringLiteral("*") : f);
    }
    if (filters.isEmpty())
        filters.append(QStringLiteral("*"));
    return filters;
}

} // namespace

FileList::FileList(QWidget* parent) : QListWidget(parent) {
    setUniformItemSizes(true);
    connect(this, &QListWidget::currentRowChanged, this, [this](int row) {
        if (!filling_ && row >= 0)
            emit Click();
    });
    connect(this, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        // A click on the file already highlighted still counts as a Click.
        if (row(item) == rowBeforePress_)
            emit Click();
    });
    connect(this, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem*) { emit DblClick(); });
    setPath(QDir::currentPath());
}

bool FileList::setPath(const QString& folder) {
    if (folder.isEmpty())
        return false;
    const QString f = QDir::cleanPath(QDir(folder).absolutePath());
    const QFileInfo info(f);
    if (!info.isDir() || !info.isReadable())
        return false;
    const bool moved = f != path_;
    path_ = f;
    fill(!moved);
    if (moved)
        emit PathChange();
    return true;
}

void FileList::setPattern(const QString& pattern) {
    if (pattern == pattern_)
        return;
    pattern_ = pattern;
    fill(true);
    emit PatternChange();
}

QString FileList::fileName() const {
    const QListWidgetItem* item = currentItem();
    return item ? item->text() : QString();
}

QString FileList::list(int index) const {
    const QListWidgetItem* it = item(index);
    return it ? it->text() : QString();
}

void FileList::setListIndex(int index) {
    setCurrentRow(index >= 0 && index < count() ? index : -1);
}

void FileList::refresh() {
    fill(true);
}

void FileList::fill(bool keepHighlight) {
    filling_ = true;
    const QString keep = keepHighlight ? fileName() : QString();
    clear();
    QDir dir(path_);
    dir.setNameFilters(filtersOf(pattern_));
    // No QDir::CaseSensitive: "*.C10" also finds "essai.c10".
    dir.setFilter(QDir::Files);
    dir.setSorting(QDir::Name | QDir::IgnoreCase | QDir::LocaleAware);
    addItems(dir.entryList());
    setCurrentRow(-1);
    if (!keep.isEmpty()) {
        const QList<QListWidgetItem*> found = findItems(keep, Qt::MatchExactly);
        if (!found.isEmpty())
            setCurrentItem(found.first());
    }
    filling_ = false;
}

void FileList::mousePressEvent(QMouseEvent* event) {
    rowBeforePress_ = currentRow();
    QListWidget::mousePressEvent(event);
}

void FileList::keyPressEvent(QKeyEvent* event) {
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && currentRow() >= 0) {
        emit DblClick();
        event->accept();
        return;
    }
    QListWidget::keyPressEvent(event);
}

} // namespace platform
