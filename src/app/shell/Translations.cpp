#include "app/shell/Translations.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QLoggingCategory>
#include <QTranslator>

Q_LOGGING_CATEGORY(lcTranslations, "tagmoor.shell.translations")

namespace tagmoor {

Translations::Translations(const QStringList& uiLanguages) {
    for (const QString& uiLanguage : uiLanguages) {
        const QLocale::Language language = QLocale(uiLanguage).language();
        if (language == QLocale::English || language == QLocale::C)
            break;
        if (install(uiLanguage))
            break;
    }
    qCDebug(lcTranslations) << "languages" << uiLanguages << "loaded"
                            << (m_language.isEmpty() ? QStringLiteral("none") : m_language);
}

Translations::~Translations() {
    // Removed newest first, the reverse of the order they were installed in.
    while (!m_translators.empty()) {
        QCoreApplication::removeTranslator(m_translators.back().get());
        m_translators.pop_back();
    }
}

bool Translations::install(const QString& uiLanguage) {
    // "de-AT" is looked up as tagmoor_de_AT.qm, then tagmoor_de.qm.
    const QString name = QString(uiLanguage).replace(QLatin1Char('-'), QLatin1Char('_'));
    auto own = std::make_unique<QTranslator>();
    if (!own->load(QStringLiteral("tagmoor_") + name, QStringLiteral(":/i18n")))
        return false;
    m_language = QFileInfo(own->filePath()).completeBaseName().section(QLatin1Char('_'), 1);
    QCoreApplication::installTranslator(own.get());
    m_translators.push_back(std::move(own));

    auto qt = std::make_unique<QTranslator>();
    if (qt->load(QStringLiteral("qtbase_") + name,
                 QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(qt.get());
        m_translators.push_back(std::move(qt));
    }
    return true;
}

} // namespace tagmoor
