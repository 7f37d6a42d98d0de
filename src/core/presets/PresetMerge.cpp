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

// Each identity's occurrences in `more` beyond those in `fewer`.
QHash<QByteArray, int> excess(const QHash<QByteArray, int>& more,
                              const QHash<QByteArray, int>& fewer) {
    QHash<QByteArray, int> out;
    for (auto it = more.cbegin(); it != more.cend(); ++it) {
        const int extra = it.value() - fewer.value(it.key());
        if (extra > 0)
            out.insert(it.key(), extra);
    }
    return out;
}

// A place of the merged list: a preset of `mine`, or the place where one they removed stood,
// kept for its successor.
struct Place {
    std::optional<ActualPreset> preset;
    QByteArray removedId; // set where a preset they removed stood
};

// `mine` without what they removed; a removed preset's place is kept for its successor.
QList<Place> placesOf(const QList<ActualPreset>& mine, QHash<QByteArray, int> removed) {
    QList<Place> places;
    const QList<QByteArray> mineIds = identities(mine);
    for (qsizetype i = 0; i < mine.size(); ++i) {
        auto it = removed.find(mineIds[i]);
        if (it != removed.end() && it.value() > 0) {
            --it.value();
            places.append({std::nullopt, mineIds[i]});
        } else {
            places.append({mine[i], {}});
        }
    }
    return places;
}

// The lowered names the merged list holds so far.
QSet<QString> takenNames(const QList<Place>& places) {
    QSet<QString> taken;
    for (const Place& s : places) {
        if (s.preset && !lowered(*s.preset).isEmpty())
            taken.insert(lowered(*s.preset));
    }
    return taken;
}

// A preset whose name is taken gets the first free "<name> (2)", "<name> (3)", ...
void giveFreeName(ActualPreset& preset, const QSet<QString>& taken) {
    const QString name = lowered(preset);
    if (name.isEmpty() || !taken.contains(name))
        return;
    const QString stem = preset.name.value_or(QString());
    for (int n = 2;; ++n) {
        const QString candidate = QStringLiteral("%1 (%2)").arg(stem).arg(n);
        if (!taken.contains(candidate.toLower())) {
            preset.name = candidate;
            return;
        }
    }
}

// What they added, laid into `places` where its old version stood or else given back for the
// end, in their order.
QList<ActualPreset> layAdditions(const QList<ActualPreset>& theirs,
                                 const QList<QByteArray>& theirIds, QHash<QByteArray, int> added,
                                 const QHash<QString, QByteArray>& removedByName,
                                 QList<Place>& places) {
    QSet<QString> taken = takenNames(places);
    QList<ActualPreset> atEnd;
    for (qsizetype i = 0; i < theirs.size(); ++i) {
        auto it = added.find(theirIds[i]);
        if (it == added.end() || it.value() == 0)
            continue;
        --it.value();
        ActualPreset preset = theirs[i];
        // Its old version's place, when that was still there unchanged.
        auto place = places.end();
        if (const auto old = removedByName.constFind(lowered(preset));
            old != removedByName.cend()) {
            place = std::find_if(places.begin(), places.end(),
                                 [&](const Place& s) { return !s.preset && s.removedId == *old; });
        }
        giveFreeName(preset, taken);
        if (!lowered(preset).isEmpty())
            taken.insert(lowered(preset));
        if (place != places.end())
            place->preset = std::move(preset);
        else
            atEnd.append(std::move(preset));
    }
    return atEnd;
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
    const QHash<QByteArray, int> removed = excess(inBase, inTheirs);
    // The names of what they removed, for placing a new version where its old one stood.
    QHash<QString, QByteArray> removedByName;
    for (qsizetype i = 0; i < base.size(); ++i) {
        if (removed.contains(baseIds[i]) && !lowered(base[i]).isEmpty())
            removedByName.insert(lowered(base[i]), baseIds[i]);
    }
    QList<Place> places = placesOf(mine, removed);
    // What they added: each occurrence in `theirs` beyond those in `base`.
    const QList<ActualPreset> atEnd =
        layAdditions(theirs, theirIds, excess(inTheirs, inBase), removedByName, places);

    QList<ActualPreset> result;
    for (Place& s : places) {
        if (s.preset)
            result.append(std::move(*s.preset));
    }
    result.append(atEnd);
    return result;
}

} // namespace tagmoor
