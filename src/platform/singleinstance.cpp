#include "platform/singleinstance.h"

#include <QLocalServer>
#include <QLocalSocket>

namespace platform {

namespace {
// A path, UTF-8, ended by a line feed; the running copy answers "OK\n" once it has it.
constexpr char Ack[] = "OK\n";
} // namespace

SingleInstance::SingleInstance(QObject* parent) : QObject(parent) {}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::serverName() {
    QString user = qEnvironmentVariable("USER");
    if (user.isEmpty())
        user = QStringLiteral("user");
    return QStringLiteral("thermivo-") + user;
}

bool SingleInstance::handOver(const QString& absolutePath, int timeoutMs) {
    QLocalSocket socket;
    socket.connectToServer(serverName());
    if (!socket.waitForConnected(timeoutMs))
        return false;
    socket.write(absolutePath.toUtf8() + '\n');
    if (!socket.waitForBytesWritten(timeoutMs))
        return false;
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(timeoutMs))
            return false;
    }
    return socket.readLine() == Ack;
}

bool SingleInstance::listen() {
    if (server_)
        return true;
    auto* server = new QLocalServer(this);
    if (!server->listen(serverName())) {
        // A socket left by a copy that crashed answers nobody: take its place.
        QLocalSocket probe;
        probe.connectToServer(serverName());
        if (probe.waitForConnected(500)) {
            delete server;
            return false;
        }
        QLocalServer::removeServer(serverName());
        if (!server->listen(serverName())) {
            delete server;
            return false;
        }
    }
    server_ = server;
    connect(server_, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* client = server_->nextPendingConnection()) {
            connect(client, &QLocalSocket::readyRead, this, [this, client] {
                if (!client->canReadLine())
                    return;
                const QString path = QString::fromUtf8(client->readLine()).trimmed();
                client->write(Ack);
                client->flush();
                client->disconnectFromServer();
                if (!path.isEmpty())
                    emit fileReceived(path);
            });
            connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        }
    });
    return true;
}

} // namespace platform
