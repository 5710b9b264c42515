// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLocale>
#include <QStringList>
#include <QTranslator>

// What is said in the language of whoever sits there, for as long as this exists: the windows' own
// words, and those of the toolkit where its translations are installed. English is what is written
// in the sources; only its plural forms are looked up. There has to be an application object.
class Translations
{
public:
    explicit Translations(const QString &language = languageFor(QLocale::system().uiLanguages()));
    ~Translations();
    Translations(const Translations &) = delete;
    Translations &operator=(const Translations &) = delete;

    // The first language of a list such as "de-AT", "fr" that there are words in; "en" if there is
    // none. Traditional Chinese is another language than the simplified one.
    static QString languageFor(const QStringList &wanted);
    static QStringList languages(); // "en", "de", "zh_CN"

private:
    struct Words : QTranslator
    {
        QString translate(const char *context, const char *source, const char *comment,
                          int n) const override;
    };
    QTranslator plurals;
    QTranslator toolkit;
    Words words;
};

// While one exists, what is translated in this thread comes as it is written in the sources: for
// what others than this user are to read.
class InEnglish
{
public:
    InEnglish();
    ~InEnglish();
    InEnglish(const InEnglish &) = delete;
    InEnglish &operator=(const InEnglish &) = delete;
};
