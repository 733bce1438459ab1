#include "testmain.h"

static QtMessageHandler handlerOfQTest = nullptr;

static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    // The offscreen platform prints the former for every window.
    if (message.contains("propagateSizeHints") || Test::expectedWarnings.match(message).hasMatch())
        return;
    if (type == QtWarningMsg || type == QtCriticalMsg)
        QTest::qFail(qPrintable("unannounced warning: " + message), __FILE__, __LINE__);
    handlerOfQTest(type, context, message);
}

void Test::initTestCase()
{
    handlerOfQTest = qInstallMessageHandler(handle);
}
