#include "flipbook/window/language.h"

#include "flipbook/window/catalogue.h"
#include "framework/framework.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QLibraryInfo>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>

// The translations are in a static library: nothing else would bring them into the program.
static void loadTranslations()
{
    Q_INIT_RESOURCE(flipbook_translations);
}

namespace
{

QByteArray chineseTexts()
{
    QFile file(QStringLiteral(":/flipbook/translations/flipbook_zh_CN.mo"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void Language::install(const QLocale &locale)
{
    loadTranslations();
    static auto *const own = new Catalogue(QCoreApplication::instance());
    static auto *const qt = new QTranslator(QCoreApplication::instance());
    const bool isChinese = locale.language() == QLocale::Chinese &&
                           locale.script() == QLocale::SimplifiedChineseScript;
    QCoreApplication::removeTranslator(own);
    QCoreApplication::removeTranslator(qt);
    // The texts in the code are English.
    if (isChinese) {
        own->setBytes(chineseTexts());
        QCoreApplication::installTranslator(own);
        if (qt->load(QStringLiteral("qtbase_zh_CN"),
                     QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
            QCoreApplication::installTranslator(qt);
    }
    Framework::instance().setLanguage(locale);
}
