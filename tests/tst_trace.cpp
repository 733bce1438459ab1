#include "testmain.h"
#include "tracefile.h"
#include "tracepanel.h"
#include "transfer.h"
#include "transfertext.h"

#include <QClipboard>
#include <QFileDialog>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QToolButton>
#include <QTranslator>

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

Transfer exchange(const QString &word)
{
    Transfer transfer{Transfer::Get, 1, 8, word.toLatin1(), word, Transfer::Succeeded};
    if (word == "notice" || word == "lost")
        transfer = {word == "lost" ? Transfer::Event : Transfer::Set, 3, 0, {}, word};
    if (word == "Hand" || word == "Board")
        transfer.direction = Transfer::Set;
    if (word == "unsent" || word.startsWith('E')) {
        transfer.outcome = word == "unsent" ? Transfer::NotSent : Transfer::Failed;
        transfer.error = word == "EIO" ? EIO : EPIPE;
        transfer.bytes.clear();
    }
    return transfer;
}

/// Translates into capitals.
class Capitals : public QTranslator
{
public:
    bool isEmpty() const override { return false; }
    QString translate(const char *, const char *text, const char *, int) const override
    {
        return QString(text).toUpper();
    }
};

/// Reads a pipe to its end.
QByteArray contents(int pipe)
{
    QByteArray all;
    char buffer[4096];
    for (ssize_t n = 1; n > 0; all.append(buffer, int(std::max<ssize_t>(n, 0))))
        n = ::read(pipe, buffer, sizeof buffer);
    return all;
}

} // namespace

class TestTrace : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void folding()
    {
        const std::pair<const char *, const char *> rows[] = {
            {"A A notice A B A", "A*3 notice*1 B*1 A*1"},
            {"A Hand A lost A", "A*1 Hand*1 A*1 lost*1 A*1"},
            {"EIO unsent unsent EIO EIO unsent", "EIO*3 unsent*3"},
            {"EIO unsent EPIPE unsent", "EIO*1 unsent*1 EPIPE*1 unsent*1"},
        };
        for (const auto &[exchanges, shown] : rows) {
            TracePanel panel;
            const QStringList words = QString(exchanges).split(' ');
            for (const QString &word : words)
                panel.add(exchange(word));
            auto *const table = panel.findChild<QTableWidget *>();
            QStringList found;
            for (int row = 0; row < table->rowCount(); ++row)
                found += table->item(row, TracePanel::Meaning)->text() + '*' +
                         table->item(row, TracePanel::Times)->text();
            QCOMPARE(found.join(' '), QString(shown));
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
        QCOMPARE(table->item(1, TracePanel::Bytes)->data(TracePanel::ColoredBytes).toString(),
                 "41" + QString(QChar::Nbsp) + "<font color=#FFC857>42</font>");
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
        filter->setText("hand");
        QVERIFY(!table->isVisible());
        QVERIFY(panel.findChild<QLabel *>()->text().contains("\"hand\""));
        panel.add(exchange("Hand"));
        QVERIFY(table->isVisible());
        filter->setText("41");
        const QTemporaryDir folder;
        const auto save = [&](const QString &path) {
            buttons.last()->click();
            auto *const dialog = panel.findChild<QFileDialog *>();
            const QString suggested = dialog->selectedFiles().value(0);
            Q_EMIT dialog->fileSelected(path);
            delete dialog;
            return suggested;
        };
        QVERIFY(save(folder.filePath("rows")).endsWith("/transfers.jsonl"));
        QFile file(folder.filePath("rows"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        auto first = QJsonDocument::fromJson(file.readLine()).object();
        QCOMPARE(first.keys().join(' '),
                 QString("bytes direction meaning ms request result selector time times"));
        QCOMPARE(first["times"].toInt(), 2);
        QVERIFY(file.readAll().endsWith(toJsonLine(exchange("AB")).right(40)));
        save("/nowhere/rows");
        QVERIFY(panel.findChild<QMessageBox *>()->text().contains("No such file"));
        // Qt leaks the animation of a clear button that is still fading in.
        QTRY_COMPARE(filter->findChild<QToolButton *>()->property("opacity"), QVariant(1.0));
    }

    void limit()
    {
        TracePanel panel;
        auto *const table = panel.findChild<QTableWidget *>();
        for (int i = 0; i < 9999; ++i)
            panel.add(exchange("notice"));
        for (const char *const word : {"A", "notice", "A"})
            panel.add(exchange(word));
        QCOMPARE(table->rowCount(), 10000);
        QCOMPARE(table->item(9998, TracePanel::Times)->text(), QString("2"));
    }

    void language()
    {
        const QString text =
            "get Extension 8: refused: a value of 2 bytes instead of 1, type Board";
        QCOMPARE(inWindowLanguage(text), text);
        Capitals capitals;
        QVERIFY(QCoreApplication::installTranslator(&capitals));
        QCOMPARE(inWindowLanguage(text + ", rb_type"), text.toUpper() + ", rb_type");
    }

    void slowReader()
    {
        const QTemporaryDir folder;
        const QByteArray path = folder.filePath("pipe").toLocal8Bit();
        QCOMPARE(::mkfifo(path, 0600), 0);
        TraceFile trace;
        QVERIFY(trace.open(path).contains("no program reads it"));
        const int reader = ::open(path, O_RDONLY | O_NONBLOCK);
        QCOMPARE(trace.open(path), QString());
        const QByteArray line = toJsonLine(exchange("A"));
        const int room = ::fcntl(reader, F_GETPIPE_SZ);
        for (int bytes = 0; bytes < 2 * room; bytes += line.size())
            trace.add(exchange("A"));
        QByteArray read = contents(reader);
        QVERIFY(read.size() <= room && read.endsWith('\n'));
        QTRY_VERIFY((read += contents(reader)).size() >= 2 * room);
        QCOMPARE(read.size() % line.size(), 0);

        QSignalSpy failures(&trace, &TraceFile::failed);
        ::close(reader);
        trace.add(exchange("A"));
        trace.add(exchange("A"));
        QCOMPARE(failures.size(), 1);
        QVERIFY(failures.first().first().toString().contains("its reader has gone"));
        QVERIFY(!trace.finish());
    }

    // A limit for the size of files stands for a full disk.
    void fullDisk()
    {
        const QTemporaryDir folder;
        TraceFile trace;
        QCOMPARE(trace.open(folder.filePath("file")), QString());
        const QByteArray line = toJsonLine(exchange("A"));
        rlimit old{};
        ::getrlimit(RLIMIT_FSIZE, &old);
        const rlimit limit{rlim_t(line.size() * 3 / 2), old.rlim_max};
        std::signal(SIGXFSZ, SIG_IGN);
        ::setrlimit(RLIMIT_FSIZE, &limit);
        trace.add(exchange("A"));
        trace.add(exchange("A"));
        const bool complete = trace.finish();
        ::setrlimit(RLIMIT_FSIZE, &old);
        QVERIFY(!complete);
        QCOMPARE(QFileInfo(folder.filePath("file")).size(), line.size());
    }
};

TEST_MAIN(TestTrace)
#include "tst_trace.moc"
