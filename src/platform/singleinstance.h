#pragma once

#include <QObject>
#include <QString>

class QLocalServer;

namespace platform {

// One Thermivo per user session. A second launch that has a file to open hands its path to the
// running copy and ends, rather than starting a second window that would fight over
// "TEMPKN.TMP". The channel is a local socket named per user.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    explicit SingleInstance(QObject* parent = nullptr);
    ~SingleInstance() override;

    // Sends the absolute path to a running copy; true when one took it.
    static bool handOver(const QString& absolutePath, int timeoutMs = 2000);

    // Starts listening for later launches; false when another copy already listens.
    bool listen();

    static QString serverName();

signals:
    // A later launch asked to open this file; the window should open it and come forward.
    void fileReceived(const QString& absolutePath);

private:
    QLocalServer* server_ = nullptr;
};

} // namespace platform
