// SPDX-License-Identifier: GPL-3.0-or-later

#include "translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

using namespace Qt::StringLiterals;

namespace {

thread_local int englishAsked = 0;

const QString English = u"en"_s;

} // namespace

Translations::Translations(const QString &language)
{
    const auto use = [](QTranslator &translator, const QString &name, const QString &folder) {
        if (translator.load(name, folder))
            QCoreApplication::installTranslator(&translator);
    };
    const QString folder = u":/i18n"_s;
    use(plurals, u"quorvel_en"_s, folder);
    if (language == English)
        return;
    use(toolkit, u"qtbase_"_s + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
    use(words, u"quorvel_"_s + language, folder);
}

Translations::~Translations()
{
    for (QTranslator *translator : {&plurals, &toolkit, static_cast<QTranslator *>(&words)})
        QCoreApplication::removeTranslator(translator);
}

QString Translations::languageFor(const QStringList &wanted)
{
    for (const QString &name : wanted) {
        const QLocale locale(name);
        if (locale.language() == QLocale::German)
            return u"de"_s;
        if (locale.language() == QLocale::Chinese &&
            locale.script() == QLocale::SimplifiedHanScript)
            return u"zh_CN"_s;
        if (locale.language() == QLocale::English)
            break;
    }
    return English;
}

QStringList Translations::languages()
{
    return {English, u"de"_s, u"zh_CN"_s};
}

QString Translations::Words::translate(const char *context, const char *source, const char *comment,
                                       int n) const
{
    return englishAsked > 0 ? QString() : QTranslator::translate(context, source, comment, n);
}

InEnglish::InEnglish()
{
    ++englishAsked;
}

InEnglish::~InEnglish()
{
    --englishAsked;
}
