#include "foundation/Settings.h"

#include "foundation/BoundedFile.h"
#include "foundation/FileAside.h"

#include <QDateTime>
#include <QHash>
#include <QLoggingCategory>
#include <QSettings>
#include <QStandardPaths>
#include <QStringDecoder>

#include <utility>

namespace tagmoor {

namespace {

Q_LOGGING_CATEGORY(lcSettings, "tagmoor.shell.settings")

// A settings file is a few kilobytes; the presets live in a file of their own.
constexpr qint64 kMaxSettingsBytes = 16 * 1024 * 1024;

// Why QSettings could not read the file back as it is, or an empty text when it can: text in
// UTF-8 without NUL bytes, whose lines are groups ("[name]"), comments (";", "#") or keys
// with a value ("key=value"), a value going on over lines that end in a backslash.
QString settingsFileDamage(const QByteArray& bytes) {
    if (bytes.contains('\0'))
        return QStringLiteral("it holds NUL bytes");
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8(bytes);
    if (utf8.hasError())
        return QStringLiteral("it is not UTF-8 text");
    bool continued = false;
    int number = 0;
    for (const QStringView line : QStringView(text).split(u'\n')) {
        ++number;
        const QStringView trimmed = line.trimmed();
        const bool wasContinued = std::exchange(continued, trimmed.endsWith(u'\\'));
        if (wasContinued || trimmed.isEmpty() || trimmed.startsWith(u';') ||
            trimmed.startsWith(u'#'))
            continue;
        if (trimmed.startsWith(u'[')) {
            if (!trimmed.endsWith(u']'))
                return QStringLiteral("line %1 opens a group it does not close").arg(number);
            continue;
        }
        if (trimmed.indexOf(u'=') <= 0)
            return QStringLiteral("line %1 is not a setting").arg(number);
    }
    return {};
}

enum class Kind { Bool, Int, Text, Bytes };

// The stored file keeps every value as text, so a Boolean or a number is recognised by
// either its Qt type (values set in this run) or its stored spelling.
std::optional<bool> asBool(const QVariant& v) {
    if (v.typeId() == QMetaType::Bool)
        return v.toBool();
    if (v.typeId() == QMetaType::QString) {
        const QString s = v.toString();
        if (s == QLatin1String("true"))
            return true;
        if (s == QLatin1String("false"))
            return false;
    }
    return std::nullopt;
}

std::optional<qint64> asInt(const QVariant& v) {
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        return v.toLongLong();
    case QMetaType::QString: {
        bool ok = false;
        const qint64 n = v.toString().toLongLong(&ok);
        return ok ? std::optional<qint64>(n) : std::nullopt;
    }
    default:
        return std::nullopt;
    }
}

std::optional<QString> asText(const QVariant& v) {
    if (v.typeId() == QMetaType::QString)
        return v.toString();
    return std::nullopt;
}

std::optional<QByteArray> asBytes(const QVariant& v) {
    if (v.typeId() == QMetaType::QByteArray)
        return v.toByteArray();
    return std::nullopt;
}

// How a value type of the key table is stored and recognised.
template <typename T> struct StoredAs;
template <> struct StoredAs<bool> {
    static constexpr Kind kind = Kind::Bool;
    static std::optional<bool> from(const QVariant& v) { return asBool(v); }
    static QVariant to(bool v) { return v; }
};
template <> struct StoredAs<qint64> {
    static constexpr Kind kind = Kind::Int;
    static std::optional<qint64> from(const QVariant& v) { return asInt(v); }
    static QVariant to(qint64 v) { return v; }
};
template <> struct StoredAs<QString> {
    static constexpr Kind kind = Kind::Text;
    static std::optional<QString> from(const QVariant& v) { return asText(v); }
    static QVariant to(const QString& v) { return v; }
};
template <> struct StoredAs<QByteArray> {
    static constexpr Kind kind = Kind::Bytes;
    static std::optional<QByteArray> from(const QVariant& v) { return asBytes(v); }
    static QVariant to(const QByteArray& v) { return v; }
};
template <> struct StoredAs<ValueForm> {
    static constexpr Kind kind = Kind::Text;
    static std::optional<ValueForm> from(const QVariant& v) {
        const std::optional<QString> name = asText(v);
        return name ? valueFormFromName(*name) : std::nullopt;
    }
    static QVariant to(ValueForm v) { return valueFormName(v); }
};

struct KeySpec {
    Kind kind;
    std::optional<QVariant> defaultValue;
};

// Every key with its kind and default (absent when the key has none).
const QHash<QString, KeySpec>& keyTable() {
#define TAGMOOR_SETTING_SPEC(name, Type, getter, setter)                                           \
    {Settings::name, {StoredAs<Type>::kind, std::nullopt}},
#define TAGMOOR_SETTING_SPEC_WITH_DEFAULT(name, Type, getter, setter, defaultValue)                \
    {Settings::name, {StoredAs<Type>::kind, StoredAs<Type>::to(Type(defaultValue))}},
    static const QHash<QString, KeySpec> table{
        TAGMOOR_SETTINGS_KEYS(TAGMOOR_SETTING_SPEC, TAGMOOR_SETTING_SPEC_WITH_DEFAULT)};
#undef TAGMOOR_SETTING_SPEC
#undef TAGMOOR_SETTING_SPEC_WITH_DEFAULT
    return table;
}

bool holdsKind(const QVariant& v, Kind kind) {
    switch (kind) {
    case Kind::Bool:
        return asBool(v).has_value();
    case Kind::Int:
        return asInt(v).has_value();
    case Kind::Text:
        return asText(v).has_value();
    case Kind::Bytes:
        return asBytes(v).has_value();
    }
    return false;
}

} // namespace

Settings::Settings() {
    // Where QSettings keeps the user's native settings of this organisation and application.
    const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                         QStringLiteral("/Tagmoor/Tagmoor.conf");
    open(path, [] {
        return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                           QStringLiteral("Tagmoor"), QStringLiteral("Tagmoor"));
    });
}

Settings::Settings(const QString& fileName) {
    open(fileName,
         [fileName] { return std::make_unique<QSettings>(fileName, QSettings::NativeFormat); });
}

// Opens the settings, keeping a damaged file aside first. QSettings reads whatever it can
// of a file and drops the rest at its next write, so a file it would not write back as it is
// never reaches it; and it reads a named pipe until a writer comes, which never happens.
void Settings::open(const QString& path, const std::function<std::unique_ptr<QSettings>()>& make) {
    const BoundedRead file = readBoundedFile(path, kMaxSettingsBytes);
    QString damage;
    if (file.status == BoundedRead::Status::NotRegular ||
        file.status == BoundedRead::Status::TooLarge)
        damage = file.error;
    else if (file.ok())
        damage = settingsFileDamage(file.bytes);
    if (!damage.isEmpty()) {
        m_keptAsideAs = keepFileAside(path, QDateTime::currentDateTimeUtc());
        qCWarning(lcSettings).noquote()
            << "The settings file" << path << "is damaged (" + damage + ");"
            << (m_keptAsideAs.isEmpty() ? QStringLiteral("it could not be moved aside")
                                        : QStringLiteral("it is kept as ") + m_keptAsideAs);
        if (!m_keptAsideAs.isEmpty())
            m_unreported.append({Problem::Kind::KeptAside, m_keptAsideAs});
    }
    m_settings = make();
    requireAtomicWrites();
    if (m_settings->status() != QSettings::NoError)
        qCWarning(lcSettings) << "Settings file could not be read; values count as absent:" << path;
}

void Settings::setProblemHandler(std::function<void(const Problem&)> handler) {
    m_problemHandler = std::move(handler);
    const QList<Problem> waiting = std::exchange(m_unreported, {});
    for (const Problem& problem : waiting)
        report(problem);
}

void Settings::report(const Problem& problem) {
    bool& told = problem.kind == Problem::Kind::KeptAside ? m_toldKeptAside : m_toldNotWritable;
    if (told)
        return;
    if (!m_problemHandler) {
        if (!m_unreported.contains(problem))
            m_unreported.append(problem);
        return;
    }
    told = true;
    m_problemHandler(problem);
}

// Writes the file now and tells when it could not be written.
void Settings::checkWritten() {
    m_settings->sync();
    if (m_settings->status() == QSettings::AccessError) {
        if (!m_toldNotWritable)
            qCWarning(lcSettings) << "The settings cannot be written to" << fileName();
        report({Problem::Kind::NotWritable, fileName()});
    }
}

Settings::~Settings() = default;

// The file is written whole to a temporary file that then replaces it (Qt's default, made
// explicit here because the presets rely on it): a crash in the middle of a write leaves the
// previous file readable. Where that is impossible, the write fails instead of writing in place.
void Settings::requireAtomicWrites() {
    m_settings->setAtomicSyncRequired(true);
}

template <typename T> std::optional<T> Settings::read(const char* key) const {
    return StoredAs<T>::from(m_settings->value(QLatin1String(key)));
}
void Settings::write(const char* key, const QVariant& value) {
    m_settings->setValue(QLatin1String(key), value);
    checkWritten();
}

#define TAGMOOR_SETTING_DEFINITIONS(name, Type, getter, setter)                                    \
    std::optional<Type> Settings::getter() const {                                                 \
        return read<Type>(name);                                                                   \
    }                                                                                              \
    void Settings::setter(const Type& v) {                                                         \
        write(name, StoredAs<Type>::to(v));                                                        \
    }
#define TAGMOOR_SETTING_DEFINITIONS_WITH_DEFAULT(name, Type, getter, setter, defaultValue)         \
    TAGMOOR_SETTING_DEFINITIONS(name, Type, getter, setter)                                        \
    Type Settings::getter##OrDefault() const {                                                     \
        return getter().value_or(Type(defaultValue));                                              \
    }
TAGMOOR_SETTINGS_KEYS(TAGMOOR_SETTING_DEFINITIONS, TAGMOOR_SETTING_DEFINITIONS_WITH_DEFAULT)
#undef TAGMOOR_SETTING_DEFINITIONS
#undef TAGMOOR_SETTING_DEFINITIONS_WITH_DEFAULT

namespace {
const char* mapTileKey(MapType mapType) {
    switch (mapType) {
    case MapType::satellite:
        return Settings::MapTileURLSatellite;
    case MapType::hybrid:
        return Settings::MapTileURLHybrid;
    case MapType::standard:
        break;
    }
    return Settings::MapTileURLStandard;
}
} // namespace

std::optional<QString> Settings::mapTileUrl(MapType mapType) const {
    return read<QString>(mapTileKey(mapType));
}
void Settings::setMapTileUrl(MapType mapType, const QString& v) {
    write(mapTileKey(mapType), v);
}

std::optional<QVariant> Settings::defaultFor(const QString& key) {
    const auto it = keyTable().constFind(key);
    return it == keyTable().constEnd() ? std::nullopt : it->defaultValue;
}

void Settings::seedDefaults(const QStringList& keys) {
    for (const QString& key : keys) {
        const auto it = keyTable().constFind(key);
        if (it == keyTable().constEnd() || !it->defaultValue)
            continue;
        if (!holdsKind(m_settings->value(key), it->kind))
            m_settings->setValue(key, *it->defaultValue);
    }
    checkWritten();
}

bool Settings::contains(const QString& key) const {
    const auto it = keyTable().constFind(key);
    const QVariant v = m_settings->value(key);
    if (it == keyTable().constEnd())
        return v.isValid();
    return holdsKind(v, it->kind);
}

void Settings::remove(const QString& key) {
    m_settings->remove(key);
}
void Settings::sync() {
    checkWritten();
}
QSettings& Settings::raw() {
    return *m_settings;
}

bool Settings::holdsAnyValue(const QString& key) const {
    return m_settings->contains(key);
}

QString Settings::moveAside(const QString& key, const QDateTime& when) {
    const QVariant value = m_settings->value(key);
    if (!m_settings->contains(key))
        return {};
    const QString base = key + QStringLiteral(".damaged-") +
                         when.toUTC().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString target = base;
    for (int n = 2; m_settings->contains(target); ++n)
        target = base + QLatin1Char('-') + QString::number(n);
    m_settings->setValue(target, value);
    m_settings->remove(key);
    m_settings->sync();
    qCWarning(lcSettings).noquote()
        << "The value of" << key << "could not be read; kept as" << target;
    return target;
}

QString Settings::fileName() const {
    return m_settings->fileName();
}

} // namespace tagmoor
