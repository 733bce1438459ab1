#include "tracefile.h"

#include "transfertext.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QSocketNotifier>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>
#include <utility>

using namespace std::chrono_literals;

/// Grace period for a slow reader at the end.
static constexpr auto finishTime = 1s;

TraceFile::~TraceFile()
{
    finish();
}

QString TraceFile::open(const QString &path)
{
    m_path = path;
    // The signal would end the program if a reader goes away.
    std::signal(SIGPIPE, SIG_IGN);
    // Without O_NONBLOCK, opening a pipe would wait for its reader.
    m_file = ::open(QFile::encodeName(path).constData(),
                    O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC, 0666);
    if (m_file < 0)
        return sentence(errno);
    m_room = new QSocketNotifier(m_file, QSocketNotifier::Write, this);
    m_room->setEnabled(false);
    connect(m_room, &QSocketNotifier::activated, this, &TraceFile::flush);
    return {};
}

void TraceFile::add(const Transfer &transfer)
{
    if (m_file < 0)
        return;
    m_waiting += toJsonLine(transfer);
    flush();
}

bool TraceFile::finish()
{
    const QDeadlineTimer deadline(finishTime);
    pollfd room{m_file, POLLOUT, 0};
    while (!m_waiting.isEmpty()) {
        if (::poll(&room, 1, static_cast<int>(deadline.remainingTime())) == 0)
            fail(ETIMEDOUT);
        else
            flush();
    }
    if (m_file >= 0) {
        m_room->setEnabled(false);
        // Some file systems report a full disk only now.
        if (::close(std::exchange(m_file, -1)) != 0)
            fail(errno);
    }
    return m_complete;
}

// Writes each line by a call of its own: a pipe then takes all of it or nothing, and if the host
// crashes, the file still ends with a complete line.
void TraceFile::flush()
{
    while (!m_waiting.isEmpty()) {
        const QByteArray rest = m_waiting.first().mid(m_sent);
        const ssize_t written = ::write(m_file, rest.constData(), rest.size());
        if (written < 0) {
            if (errno == EINTR)
                continue;
            if (errno != EAGAIN)
                fail(errno);
            break;
        }
        m_sent += static_cast<int>(written);
        if (written == rest.size()) {
            m_waiting.removeFirst();
            m_sent = 0;
        }
    }
    m_room->setEnabled(!m_waiting.isEmpty());
}

void TraceFile::fail(int error)
{
    m_complete = false;
    m_waiting.clear();
    m_room->setEnabled(false);
    // A full disk may have taken part of a line. Only a regular file can be cut.
    if (m_sent > 0 && ::ftruncate(m_file, ::lseek(m_file, 0, SEEK_CUR) - m_sent) != 0)
        error = errno;
    ::close(m_file);
    m_file = -1;
    Q_EMIT failed(sentence(error));
}

QString TraceFile::sentence(int error) const
{
    const QString reason = error == ENXIO       ? "no program reads it"
                           : error == EPIPE     ? "its reader has gone"
                           : error == ETIMEDOUT ? "its reader is too slow"
                                                : qt_error_string(error);
    return QString("Cannot write the trace \"%1\": %2.").arg(m_path, reason);
}
