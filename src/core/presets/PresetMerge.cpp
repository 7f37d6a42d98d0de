#include "presets/PresetMerge.h"

#include "presets/PresetArchive.h"

#include <QHash>
#include <QSet>

#include <algorithm>

#include <optional>

namespace tagmoor {

namespace {

// All that a preset holds, as its stored bytes: two presets are the same when these are.
QByteArray identity(const ActualPreset& preset) {
    return encodePresetArchive({preset});
}

QList<QByteArray> identities(const QList<ActualPreset>& list) {
    QList<QByteArray> out;
    out.reserve(list.size());
    for (const ActualPreset& p : list)
        out.append(identity(p));
    return out;
}

QHash<QByteArray, int> counted(const QList<QByteArray>& ids) {
    QHash<QByteArray, int> counts;
    for (const QByteArray& id : ids)
        ++counts[id];
    return counts;
}

QString lowered(const ActualPreset& p) {
    return p.name.value_or(QString()).toLower();
}

} // namespace

QList<ActualPreset> mergePresetLists(const QList<ActualPreset>& base,
                                     const QList<ActualPreset>& mine,
                                     const QList<ActualPreset>& theirs) {
    const QList<QByteArray> baseIds = identities(base);
    const QList<QByteArray> theirIds = identities(theirs);
    if (baseIds == theirIds)
        return mine;
    const QHash<QByteArray, int> inBase = counted(baseIds);
    const QHash<QByteArray, int> inTheirs = counted(theirIds);

    // What they removed: each occurrence in `base` beyond those still in `theirs`.
    QHash<QByteArray, int> removed;
    for (auto it = inBase.cbegin(); it != inBase.cend(); ++it) {
        const int gone = it.value() - inTheirs.value(it.key());
        if (gone > 0)
            removed.insert(it.key(), gone);
    }
    // The names of what they removed, for placing a new version where its old one stood.
    QHash<QString, QByteArray> removedByName;
    for (qsizetype i = 0; i < base.size(); ++i) {
        if (removed.contains(baseIds[i]) && !lowered(base[i]).isEmpty())
            removedByName.insert(lowered(base[i]), baseIds[i]);
    }

    // `mine` without what they removed; a removed preset's place is kept for its successor.
    struct Place {
        std::optional<ActualPreset> preset;
        QByteArray removedId; // set where a preset they removed stood
    };
    QList<Place> places;
    QList<QByteArray> mineIds = identities(mine);
    for (qsizetype i = 0; i < mine.size(); ++i) {
        auto it = removed.find(mineIds[i]);
        if (it != removed.end() && it.value() > 0) {
            --it.value();
            places.append({std::nullopt, mineIds[i]});
        } else {
            places.append({mine[i], {}});
        }
    }

    // What they added: each occurrence in `theirs` beyond those in `base`, in their order.
    QHash<QByteArray, int> added;
    for (auto it = inTheirs.cbegin(); it != inTheirs.cend(); ++it) {
        const int extra = it.value() - inBase.value(it.key());
        if (extra > 0)
            added.insert(it.key(), extra);
    }
    QSet<QString> taken;
    for (const Place& s : places) {
        if (s.preset && !lowered(*s.preset).isEmpty())
            taken.insert(lowered(*s.preset));
    }
    QList<ActualPreset> atEnd;
    for (qsizetype i = 0; i < theirs.size(); ++i) {
        auto it = added.find(theirIds[i]);
        if (it == added.end() || it.value() == 0)
            continue;
        --it.value();
        ActualPreset preset = theirs[i];
        const QString name = lowered(preset);
        // Its old version's place, when that was still there unchanged.
        auto place = places.end();
        if (const auto old = removedByName.constFind(name); old != removedByName.cend()) {
            place = std::find_if(places.begin(), places.end(),
                                 [&](const Place& s) { return !s.preset && s.removedId == *old; });
        }
        if (!name.isEmpty() && taken.contains(name)) {
            const QString stem = preset.name.value_or(QString());
            for (int n = 2;; ++n) {
                const QString candidate = QStringLiteral("%1 (%2)").arg(stem).arg(n);
                if (!taken.contains(candidate.toLower())) {
                    preset.name = candidate;
                    break;
                }
            }
        }
        if (!lowered(preset).isEmpty())
            taken.insert(lowered(preset));
        if (place != places.end())
            place->preset = std::move(preset);
        else
            atEnd.append(std::move(preset));
    }

    QList<ActualPreset> result;
    for (Place& s : places) {
        if (s.preset)
            result.append(std::move(*s.preset));
    }
    result.append(atEnd);
    return result;
}

} // namespace tagmoor
