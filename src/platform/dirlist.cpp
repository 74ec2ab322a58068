#include "platform/dirlist.h"

#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QStyle>
#include <QStyledItemDelegate>

namespace platform {

namespace {

constexpr int IndentStep = 10;
constexpr int LevelRole = Qt::UserRole + 1;

// Shifts each entry right by its depth, so the list reads as a path opened down to a folder.
class IndentDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem o = option;
        o.rect.setLeft(o.rect.left() + index.data(LevelRole).toInt() * IndentStep);
        QStyledItemDelegate::paint(painter, o, index);
    }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QSize s = QStyledItemDelegate::sizeHint(option, index);
        s.rwidth() += index.data(LevelRole).toInt() * IndentStep;
        return s;
    }
};

QString cleanFolder(const QString& folder) {
    return QDir::cleanPath(QDir(folder).absolutePath());
}

bool canList(const QString& folder) {
    const QFileInfo info(folder);
    return info.isDir() && info.isReadable() && info.isExecutable();
}

} // namespace

DirList::DirList(QWidget* parent) : QListWidget(parent) {
    setItemDelegate(new IndentDelegate(this));
    setUniformItemSizes(true);
    connect(this, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { openRow(row(item)); });
    if (!setPath(QDir::currentPath()))
        setPath(QDir::homePath());
}

bool DirList::setPath(const QString& folder) {
    if (folder.isEmpty())
        return false;
    const QString f = cleanFolder(folder);
    if (!canList(f))
        return false;
    if (f == path_) {
        fill();
        return true;
    }
    path_ = f;
    fill();
    emit Change();
    return true;
}

void DirList::refresh() {
    fill();
}

void DirList::fill() {
    ancestors_.clear();
    for (QDir d(path_);;) {
        ancestors_.prepend(d.absolutePath());
        if (d.isRoot() || !d.cdUp())
            break;
    }
    subfolders_.clear();
    const QDir here(path_);
    const QStringList names = here.entryList(QDir::Dirs | QDir::NoDotAndDotDot,
                                             QDir::Name | QDir::IgnoreCase | QDir::LocaleAware);
    for (const QString& name : names)
        subfolders_.append(here.filePath(name));

    clear();
    const QIcon open = style()->standardIcon(QStyle::SP_DirOpenIcon);
    const QIcon closed = style()->standardIcon(QStyle::SP_DirClosedIcon);
    int level = 0;
    for (const QString& a : ancestors_) {
        const QString name = QDir(a).isRoot() ? a : QFileInfo(a).fileName();
        auto* item = new QListWidgetItem(open, name, this);
        item->setData(Qt::UserRole, a);
        item->setData(LevelRole, level++);
    }
    for (const QString& s : subfolders_) {
        auto* item = new QListWidgetItem(closed, QFileInfo(s).fileName(), this);
        item->setData(Qt::UserRole, s);
        item->setData(LevelRole, level);
    }
    setCurrentRow(static_cast<int>(ancestors_.size()) - 1);
}

QString DirList::list(int index) const {
    const int row = index + static_cast<int>(ancestors_.size());
    if (row < 0 || row >= count())
        return {};
    return item(row)->data(Qt::UserRole).toString();
}

int DirList::listIndex() const {
    return currentRow() - static_cast<int>(ancestors_.size());
}

void DirList::setListIndex(int index) {
    const int row = index + static_cast<int>(ancestors_.size());
    if (row >= 0 && row < count())
        setCurrentRow(row);
}

void DirList::openRow(int row) {
    if (row >= 0 && row < count())
        setPath(item(row)->data(Qt::UserRole).toString());
}

void DirList::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        // Enter opens the highlighted folder (and is not passed on to the window's buttons).
        setPath(list(listIndex()));
        event->accept();
        return;
    }
    QListWidget::keyPressEvent(event);
}

} // namespace platform
