#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>

#include <vector>

struct Check;
class QProcess;

/// What became of a check.
struct Outcome
{
    enum State { Due, Running, Passed, Failed, Skipped };

    explicit Outcome(const Check *which)
        : check(which)
    {
    }

    const Check *check;
    State state = Due;
    QString expected;
    QString came;
    QString lastStep;
    QString said;        ///< the last line on standard error
    QElapsedTimer time;  ///< since it began
    qint64 duration = 0; ///< ms
    int failures = 0;
};

/// Runs checks, each in a process of its own and several side by side, and prints a line on each as
/// soon as those before it are printed.
class Runner : public QObject
{
    Q_OBJECT
public:
    Runner(QString plugin, quint32 seed, const std::vector<const Check *> &checks);

    /// Begins; needs an event loop.
    void start();

    int failures() const;
    bool writeJUnit(const QString &file) const;

Q_SIGNALS:
    void finished();

private:
    void startMore();
    void run(Outcome &outcome);
    void readReport(Outcome &outcome, QProcess &process);
    void end(Outcome &outcome, QProcess &process, bool timedOut);
    void printWhatIsOver();

    QString m_plugin;
    quint32 m_seed;
    std::vector<Outcome> m_outcomes;
    std::size_t m_printed = 0;
};
