#pragma once

#include <QByteArrayList>
#include <QObject>

class QSocketNotifier;
struct Transfer;

/// Writes transfers to a file, a pipe or a device, one line each. Never waits for the reader of a
/// pipe: what the pipe cannot take stays in memory until there is room.
class TraceFile : public QObject
{
    Q_OBJECT
public:
    ~TraceFile() override;

    /// Overwrites the file at `path`. Returns why it cannot be written; empty on success.
    QString open(const QString &path);

    /// Ignored if no file is open.
    void add(const Transfer &transfer);

    /// Gives a slow reader up to a second to take what is waiting, then closes the file. Returns
    /// false if writing has failed, now or before.
    bool finish();

Q_SIGNALS:
    /// Writing has failed, for the reason that `sentence` gives. Emitted once; nothing more is
    /// written. The file ends with a complete line.
    void failed(const QString &sentence);

private:
    void flush();
    void fail(int error);
    QString sentence(int error) const;

    QString m_path;
    int m_file = -1;
    QSocketNotifier *m_room = nullptr; ///< tells when a full pipe has room again
    QByteArrayList m_waiting;          ///< lines that are not yet written
    int m_sent = 0;                    ///< bytes of the first line that are already written
    bool m_complete = true;            ///< nothing has failed
};
