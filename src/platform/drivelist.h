#pragma once

#include <QComboBox>
#include <QList>
#include <QString>

namespace platform {

// The drive list of the file windows: the user's home folder first, then the mounted volumes.
// Each drive keeps its own current folder, as the drives of the old lists did: its root until
// setDrive() is given a folder on it. drive() is the chosen drive's current folder, so
// "folder list = drive(); drive list = folder list's path" keeps a folder that was already
// on the chosen drive, and falls back to the drive of that folder when the chosen one cannot
// be read. The window that uses it sets its objectName ("Drive1").
class DriveList : public QComboBox {
    Q_OBJECT
public:
    struct Volume {
        QString root;  // absolute folder, without trailing "/" except for "/" itself
        QString label; // shown after the root; may be empty
    };

    explicit DriveList(QWidget* parent = nullptr);

    // The home folder ("Dossier personnel"), then every mounted, ready volume by root.
    static QList<Volume> systemVolumes();
    // Replaces the list (the system's volumes by default) and selects the drive of the
    // current folder, without Change.
    void setVolumes(const QList<Volume>& volumes);
    const QList<Volume>& volumes() const { return volumes_; }

    // The chosen drive's current folder.
    QString drive() const;
    // Selects the drive holding `folder` (the entry with the longest root that contains it)
    // and makes `folder` that drive's current folder. Change fires when the selection moves.
    // A folder on no listed drive leaves the selection as it is.
    void setDrive(const QString& folder);

signals:
    // The selection moved, by the user or by setDrive.
    void Change();

private:
    int driveOf(const QString& folder) const;

    QList<Volume> volumes_;
    QStringList current_; // current folder of each drive, by index
    bool filling_ = false;
};

} // namespace platform
