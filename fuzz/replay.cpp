#include <QDirIterator>
#include <QFile>

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const uchar *bytes, size_t size);

/// Calls the fuzzer's function with the content of each file in a folder, without libFuzzer.
int main(int /*argc*/, char **argv)
{
    QDirIterator files(QString::fromLocal8Bit(argv[1]), QDir::Files);
    if (!files.hasNext())
        qFatal("No files in %s", argv[1]);
    while (files.hasNext()) {
        QFile file(files.next());
        std::fprintf(stderr, "%s\n", qPrintable(file.fileName())); // in case it crashes
        if (!file.open(QIODevice::ReadOnly))
            qFatal("Cannot read this file.");
        const QByteArray bytes = file.readAll();
        LLVMFuzzerTestOneInput(reinterpret_cast<const uchar *>(bytes.constData()),
                               size_t(bytes.size()));
    }
    return 0;
}
