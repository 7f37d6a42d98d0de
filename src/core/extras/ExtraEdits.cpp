#include "extras/ExtraEdits.h"

#include "extras/CopiesInStep.h"
#include "extras/KeywordLists.h"
#include "foundation/ValueForm.h"
#include "model/Keywords.h"

#include <algorithm>

namespace tagmoor {

bool ExtraEdits::writesTags() const {
    return !addKeywords.isEmpty() || !removeKeywords.isEmpty() || rating || label || persons ||
           gpsTime || datesZone || dateOffsets.any() ||
           std::any_of(texts.begin(), texts.end(), [](const auto& t) { return t.has_value(); });
}

bool ExtraEdits::syncsCopies() const {
    // The described form writes the one tag each field names: the switch does not reach it.
    return syncCopies.value_or(copiesInStep() && isStandardForm());
}

int ratingPercent(int stars) {
    static constexpr std::array<int, kHighestRating + 1> percents{0, 1, 25, 50, 75, 99};
    return stars >= 0 && stars <= kHighestRating ? percents[std::size_t(stars)] : 0;
}

std::span<const QString> colourLabelNames() {
    static const std::array<QString, 5> names{QStringLiteral("Red"), QStringLiteral("Yellow"),
                                              QStringLiteral("Green"), QStringLiteral("Blue"),
                                              QStringLiteral("Purple")};
    return names;
}

std::optional<QString> colourLabelOf(const QString& typed) {
    const QString trimmed = typed.trimmed();
    if (trimmed.isEmpty())
        return QString();
    for (const QString& name : colourLabelNames())
        if (name.compare(trimmed, Qt::CaseInsensitive) == 0)
            return name;
    return std::nullopt;
}

namespace {

QString keywordProblem(const QString& typed) {
    const QString keyword = normalisedKeyword(typed);
    if (keyword.isEmpty())
        return QStringLiteral("an empty keyword");
    if (keyword.split(QLatin1Char('|')).contains(QString()))
        return QStringLiteral("'%1' has an empty level").arg(typed);
    // The leaf goes to IPTC Keywords, which holds at most 64 bytes.
    return keywordRefusal(keywordLeaf(keyword));
}

} // namespace

QString extraEditsRefusal(const ExtraEdits& edits) {
    if (edits.rating && (*edits.rating < kRejectedRating || *edits.rating > kHighestRating))
        return QStringLiteral("a rating is 0 to 5 stars, or -1 for rejected, not %1")
            .arg(*edits.rating);
    if (edits.label && !colourLabelOf(*edits.label)) {
        QStringList names(colourLabelNames().begin(), colourLabelNames().end());
        return QStringLiteral("'%1' is no colour label (%2)")
            .arg(*edits.label, names.join(QStringLiteral(", ")));
    }
    for (const QStringList* list : {&edits.addKeywords, &edits.removeKeywords}) {
        for (const QString& keyword : *list)
            if (const QString problem = keywordProblem(keyword); !problem.isEmpty())
                return problem;
    }
    return {};
}

} // namespace tagmoor
