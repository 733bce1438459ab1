#include "testmain.h"
#include "tracefile.h"
#include "tracepanel.h"
#include "transfer.h"
#include "transfertext.h"

#include <QClipboard>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QToolButton>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>

/// A status read with the word as its block, unless the word is one of those below.
static Transfer exchange(const QString &word)
{
    if (word == "command" || word == "notice")
        return {Transfer::Set, 1, word == "command" ? 7 : 0, {}, word};
    if (word == "unsent")
        return {Transfer::Get, 1, 8, {}, word};
    if (word == "EIO" || word == "EPIPE")
        return {Transfer::Get, 1, 8, {}, word, Transfer::Failed, word == "EIO" ? EIO : EPIPE};
    return {Transfer::Get, 1, 8, word.toLatin1(), word, Transfer::Succeeded};
}

class TestTrace : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void folding()
    {
        const std::pair<QString, QString> rows[] = {
            {"A A notice A B A", "A*3 notice*1 B*1 A*1"},
            {"A command A", "A*1 command*1 A*1"},
            {"EIO unsent unsent EIO EIO unsent", "EIO*3 unsent*3"},
            {"EIO unsent EPIPE unsent", "EIO*1 unsent*1 EPIPE*1 unsent*1"},
            {"B command A notice notice A", "command*1 A*2 notice*1 notice*1"},
            {"A notice notice notice notice A", "notice*1 notice*1 notice*1 A*1"},
        };
        for (const auto &[exchanges, shown] : rows) {
            TracePanel panel(4);
            const QStringList words = exchanges.split(' ');
            for (const QString &word : words)
                panel.add(exchange(word));
            auto *const table = panel.findChild<QTableWidget *>();
            QStringList found;
            for (int row = 0; row < table->rowCount(); ++row)
                found += table->item(row, TracePanel::Meaning)->text() + '*' +
                         table->item(row, TracePanel::Times)->text();
            QCOMPARE(found.join(' '), shown);
        }
    }

    void table()
    {
        TracePanel panel;
        auto *const table = panel.findChild<QTableWidget *>();
        auto *const filter = panel.findChild<QLineEdit *>();
        const auto buttons = panel.findChildren<QPushButton *>();
        const auto copied = [&] {
            buttons.first()->click();
            return QApplication::clipboard()->text().split('\n');
        };
        for (const char *const word : {"A", "A", "AB", "EIO"})
            panel.add(exchange(word));
        const QStringList rows = copied();
        QCOMPARE(rows[0].section('\t', 2), "get Extension 8\tA\t2\tok\t41");
        QCOMPARE(rows[2].section('\t', 3), "EIO\t1\tEIO\t");
        const auto bytes = table->item(1, TracePanel::Bytes)->data(TracePanel::ColoredBytes);
        QVERIFY(bytes.toString().startsWith("41") && bytes.toString().endsWith(">42</font>"));
        panel.show();
        QVERIFY(QTest::qWaitForWindowActive(&panel));
        table->setFocus();
        table->selectRow(1);
        QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), rows[1]);
        QTest::keyClick(table, Qt::Key_Tab);
        QVERIFY(!table->hasFocus());

        filter->setText("eio"); // hides the selected row
        QCOMPARE(copied(), rows.mid(2));
        filter->setText("none");
        QVERIFY(!table->isVisible());
        QVERIFY(panel.findChild<QLabel *>()->text().contains("\"none\""));
        filter->setText("41");
        const QTemporaryDir folder;
        for (const QString &path : {folder.filePath("rows"), QString("/nowhere/rows")}) {
            buttons.last()->click();
            auto *const dialog = panel.findChild<QFileDialog *>();
            QVERIFY(dialog->selectedFiles().value(0).endsWith("/transfers.jsonl"));
            Q_EMIT dialog->fileSelected(path);
            delete dialog;
        }
        QFile file(folder.filePath("rows"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QVERIFY(file.readLine().contains(R"("times":2)"));
        QCOMPARE(file.readAll().count('\n'), 1);
        QVERIFY(panel.findChild<QMessageBox *>()->text().contains("No such file"));
        // Qt leaks the animation of a clear button that is still fading in.
        QTRY_COMPARE(filter->findChild<QToolButton *>()->property("opacity"), QVariant(1.0));
    }

    void slowReader()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("pipe");
        QCOMPARE(::mkfifo(QFile::encodeName(path), 0600), 0);
        TraceFile trace;
        QVERIFY(trace.open(path).contains("no program reads it"));
        QFile reader;
        const int pipe = ::open(QFile::encodeName(path), O_RDONLY | O_NONBLOCK);
        QVERIFY(reader.open(pipe, QIODevice::ReadOnly, QFile::AutoCloseHandle));
        QCOMPARE(trace.open(path), QString());
        const int room = ::fcntl(pipe, F_SETPIPE_SZ, 4096);
        const QByteArray line = toJsonLine(exchange("A"));
        for (int i = 0; i < 100; ++i)
            trace.add(exchange("A"));
        QByteArray read = reader.readAll();
        QVERIFY(read.size() <= room && read.endsWith('\n'));
        QTRY_COMPARE((read += reader.readAll()).size(), 100 * line.size());

        QSignalSpy failures(&trace, &TraceFile::failed);
        reader.close();
        trace.add(exchange("A"));
        trace.add(exchange("A"));
        QCOMPARE(failures.size(), 1);
        QVERIFY(failures.first().first().toString().contains("its reader has gone"));
        QVERIFY(!trace.finish());
    }

    // A limit for the size of files stands for a full disk.
    void fullDisk()
    {
        QTemporaryFile file;
        QVERIFY(file.open() && file.resize(1000)); // is overwritten
        TraceFile trace;
        QCOMPARE(trace.open(file.fileName()), QString());
        const int line = toJsonLine(exchange("A")).size();
        std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{};
        ::getrlimit(RLIMIT_FSIZE, &limit);
        const rlim_t old = std::exchange(limit.rlim_cur, line * 3 / 2);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        trace.add(exchange("A"));
        trace.add(exchange("A"));
        limit.rlim_cur = old;
        ::setrlimit(RLIMIT_FSIZE, &limit);
        QVERIFY(!trace.finish());
        QCOMPARE(file.size(), line);
    }
};

TEST_MAIN(TestTrace)
#include "tst_trace.moc"
