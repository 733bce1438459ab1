#pragma once

#include <QApplication>
#include <QRegularExpression>
#include <QTest>

/// Base of every test. A warning that a test does not announce in `expectedWarnings` fails it.
class Test : public QObject
{
    Q_OBJECT

public:
    static inline QRegularExpression expectedWarnings{"^$"}; ///< these do not fail the test

private Q_SLOTS:
    void initTestCase(); // not earlier: QTest first installs its own handler
};

/// Like QTEST_MAIN, but by default without a display and at 96 dots per inch.
#define TEST_MAIN(TestClass)                                                                       \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        static_assert(std::is_base_of_v<Test, TestClass>);                                         \
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))                                         \
            qputenv("QT_QPA_PLATFORM", "offscreen");                                               \
        if (!qEnvironmentVariableIsSet("QT_FONT_DPI"))                                             \
            qputenv("QT_FONT_DPI", "96");                                                          \
        QApplication app(argc, argv);                                                              \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
