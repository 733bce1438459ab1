#pragma once

#include "check.h"

#include <QElapsedTimer>
#include <QObject>

class QProcess;

/// Runs checks, each in a process of its own and several side by side, and prints a line on each as
/// soon as those before it are printed.
class Runner : public QObject
{
    Q_OBJECT
public:
    /// What each process is started with: this program with --check NAME, `plugin` and `seed`. A
    /// check whose need is not among `checks` runs as if that had passed.
    Runner(QString plugin, QString seed, const std::vector<Check> &checks);

    /// Begins, or goes on. Needs an event loop.
    void start();

    int count(int state) const;
    bool writeJUnit(const QString &file) const;

    enum State { Due, Running, Passed, Failed, Skipped };

Q_SIGNALS:
    void finished();

private:
    struct Outcome
    {
        Check check;
        State state = Due;
        int tries = 0;
        QElapsedTimer time;  ///< since it began
        qint64 duration = 0; ///< ms
        QString expected;
        QString came;
    };
    void run(Outcome &outcome);
    void end(Outcome &outcome, QProcess &process, bool isOver);
    void print();

    QString m_plugin;
    QString m_seed;
    std::vector<Outcome> m_outcomes;
    std::size_t m_printed = 0;
};
