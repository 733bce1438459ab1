#pragma once

#include <QApplication>
#include <QRegularExpression>
#include <QTest>

/// Base of every test: a warning that it did not announce fails it.
class Test : public QObject
{
    Q_OBJECT

public:
    static inline QRegularExpression expectedWarnings{"^$"}; ///< matches those that are to pass

private Q_SLOTS:
    void initTestCase(); // not sooner: QTest installs a handler of its own when it begins
};

/// As QTEST_MAIN; without a display, and at 96 dots per inch unless the environment says otherwise.
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
