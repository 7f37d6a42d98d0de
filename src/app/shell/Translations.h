#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

class QTranslator;

namespace tagmoor {

// The translation of the window's texts, installed for as long as the object lives. It takes the
// first of the user's languages (most wanted first, as QLocale::uiLanguages() lists them) that
// Tagmoor is translated into: its own texts from the embedded :/i18n/tagmoor_<language>.qm, and
// Qt's texts of standard buttons and dialogs from Qt's translations folder when the system has
// them. English is the language of the sources: a list that names English before any language
// we have keeps the texts as they are, and so does the C locale.
class Translations {
public:
    explicit Translations(const QStringList& uiLanguages);
    ~Translations();
    Translations(const Translations&) = delete;
    Translations& operator=(const Translations&) = delete;

    // The language loaded, as its file names it ("de"); empty when the texts stay English.
    QString language() const { return m_language; }

private:
    bool install(const QString& uiLanguage);

    std::vector<std::unique_ptr<QTranslator>> m_translators;
    QString m_language;
};

} // namespace tagmoor
