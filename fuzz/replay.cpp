#include <QDirIterator>
#include <QFile>

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uchar *bytes, size_t size);

/// Plays a fuzzer the files of the folder that is named, without looking for more.
int main(int /*argc*/, char **argv)
{
    QDirIterator files(QString::fromLocal8Bit(argv[1]), QDir::Files);
    if (!files.hasNext())
        qFatal("There is nothing in %s", argv[1]);
    while (files.hasNext()) {
        QFile file(files.next());
        std::fprintf(stderr, "%s\n", qPrintable(file.fileName())); // in case it is the last
        if (!file.open(QIODevice::ReadOnly))
            qFatal("It cannot be read.");
        const QByteArray bytes = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const uchar *>(bytes.constData()),
                               size_t(bytes.size()));
    }
    return 0;
}
