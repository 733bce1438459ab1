#include "language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

/// Makes the resources of this static library available. Must be outside of a namespace.
static void registerCatalog()
{
    Q_INIT_RESOURCE(i18n);
}

void Language::install(int language)
{
    constexpr int chinese = 0;
    if (language != chinese)
        return;
    registerCatalog();
    // Qt's own catalog may not be installed.
    const QString ofQt = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    for (const QString &file : {ofQt + "/qtbase_zh_CN.qm", QString(":/i18n/orvhost_zh_CN.qm")}) {
        auto *const catalog = new QTranslator(qApp);
        if (catalog->load(file))
            QCoreApplication::installTranslator(catalog);
    }
}
