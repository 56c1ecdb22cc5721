#include "Language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace ui {

void useChineseLanguage()
{
    const QLocale chinese(QLocale::Chinese, QLocale::China);
    QLocale::setDefault(chinese);
    // Owned by the application; a missing translation leaves Qt's English.
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(chinese, QStringLiteral("qtbase"), QStringLiteral("_"),
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

} // namespace ui
