#include "ExtraArguments.h"

namespace tagmoor::cli {

namespace {

const ExtraTextRow* textRowOf(const QString& arg) {
    for (const ExtraTextRow& row : kExtraTextRows)
        if (arg == QLatin1String("--") + QLatin1String(row.option))
            return &row;
    return nullptr;
}

bool refused(QString* error, const QString& arg, const QString& why) {
    *error = QStringLiteral("%1: %2").arg(arg, why);
    return false;
}

bool applyRating(ExtraEdits& edits, const QString& value, QString* error) {
    bool ok = false;
    const int rating = value.trimmed().toInt(&ok);
    if (!ok || rating < kRejectedRating || rating > kHighestRating)
        return refused(error, QStringLiteral("--rating"),
                       QStringLiteral("0 to 5 stars, or -1 for rejected, not '%1'").arg(value));
    edits.rating = rating;
    return true;
}

bool applySync(ExtraEdits& edits, const QString& value, QString* error) {
    if (value == QLatin1String("on"))
        edits.syncCopies = true;
    else if (value == QLatin1String("off"))
        edits.syncCopies = false;
    else
        return refused(error, QStringLiteral("--sync-copies"),
                       QStringLiteral("on or off, not '%1'").arg(value));
    return true;
}

} // namespace

bool isExtraOption(const QString& arg) {
    static const QStringList others{
        QStringLiteral("--add-keyword"), QStringLiteral("--remove-keyword"),
        QStringLiteral("--rating"),      QStringLiteral("--label"),
        QStringLiteral("--person"),      QStringLiteral("--sync-copies")};
    return others.contains(arg) || textRowOf(arg);
}

bool applyExtraOption(ExtraEdits& edits, const QString& arg, const QString& value, QString* error) {
    if (arg == QLatin1String("--rating"))
        return applyRating(edits, value, error);
    if (arg == QLatin1String("--sync-copies"))
        return applySync(edits, value, error);
    if (arg == QLatin1String("--add-keyword"))
        edits.addKeywords << value;
    else if (arg == QLatin1String("--remove-keyword"))
        edits.removeKeywords << value;
    else if (arg == QLatin1String("--label"))
        edits.label = value;
    else if (arg == QLatin1String("--person")) {
        // An empty name adds nobody: `--person ""` alone empties the list.
        edits.persons = edits.persons.value_or(QStringList());
        if (!value.isEmpty())
            edits.persons->append(value);
    } else if (const ExtraTextRow* row = textRowOf(arg))
        edits.texts[std::size_t(row->text)] = value;
    if (!value.isValidUtf16() || value.contains(QChar::ReplacementCharacter))
        return refused(error, arg, QStringLiteral("the text is not valid UTF-8"));
    if (const QString why = extraEditsRefusal(edits); !why.isEmpty())
        return refused(error, arg, why);
    return true;
}

QString extraOptionsHelp() {
    return QStringLiteral(
        "Keywords, rating, label and more (each photo's other tags are kept):\n"
        "  --add-keyword K      add a keyword to every photo, keeping its others; a '|'\n"
        "                       makes a path (Places|Portugal|Lisbon), written to the\n"
        "                       hierarchical subject and the digiKam tag list, its leaf to\n"
        "                       IPTC Keywords and the XMP subject (repeatable)\n"
        "  --remove-keyword K   remove a keyword, or a path and its leaf when no other path\n"
        "                       ends in it (repeatable)\n"
        "  --rating N           0 to 5 stars, -1 rejected (XMP, and Exif Rating and\n"
        "                       RatingPercent: 1, 25, 50, 75, 99)\n"
        "  --label NAME         colour label: Red, Yellow, Green, Blue or Purple; \"\" removes\n"
        "  --alt-text T         alt text (accessibility), the x-default language\n"
        "  --ext-description T  extended description (accessibility), likewise\n"
        "  --person NAME        a person shown in the photo (repeatable; replaces the list)\n"
        "  --event T            the event\n"
        "  --usage-terms T      the rights usage terms\n"
        "  --credit-line T      the credit line (XMP)\n"
        "  --instructions T     the instructions (XMP)\n"
        "  --creator-email T  --creator-phone T  --creator-url T  --creator-city T\n"
        "  --creator-country T  the creator's contact info\n"
        "                       An empty T removes the tag.\n"
        "  --sync-copies on|off on: an edited caption, creator, copyright or location\n"
        "                       field writes all its copies (Exif, XMP, IPTC; an IPTC copy\n"
        "                       cut to what its dataset holds); off (the default): only the\n"
        "                       tag of the field given\n"
        "\n");
}

} // namespace tagmoor::cli
