#include "extras/CopyGroups.h"

#include <algorithm>

namespace tagmoor {

namespace {

constexpr CopyForm T = CopyForm::Text;

constexpr std::array kGroups{
    CopyGroup{"description",
              {{{"Exif.Image.ImageDescription", T},
                {"Xmp.dc.description", CopyForm::LangAlt},
                {"Iptc.Application2.Caption", T, 2000}}}},
    CopyGroup{"creator",
              {{{"Exif.Image.Artist", T},
                {"Xmp.dc.creator", CopyForm::Seq},
                {"Iptc.Application2.Byline", T, 32}}}},
    CopyGroup{"rights",
              {{{"Exif.Image.Copyright", T},
                {"Xmp.dc.rights", CopyForm::LangAlt},
                {"Iptc.Application2.Copyright", T, 128}}}},
    CopyGroup{"city", {{{"Xmp.photoshop.City", T}, {"Iptc.Application2.City", T, 32}, {}}}},
    CopyGroup{"state",
              {{{"Xmp.photoshop.State", T}, {"Iptc.Application2.ProvinceState", T, 32}, {}}}},
    CopyGroup{"country",
              {{{"Xmp.photoshop.Country", T}, {"Iptc.Application2.CountryName", T, 64}, {}}}},
    CopyGroup{"countryCode",
              {{{"Xmp.iptc.CountryCode", T}, {"Iptc.Application2.CountryCode", T, 3}, {}}}},
    CopyGroup{"sublocation",
              {{{"Xmp.iptc.Location", T}, {"Iptc.Application2.SubLocation", T, 32}, {}}}},
};

} // namespace

QString fittedToBytes(const QString& text, int maxBytes) {
    if (maxBytes <= 0 || text.toUtf8().size() <= maxBytes)
        return text;
    QString fitted;
    qsizetype bytes = 0;
    for (qsizetype i = 0; i < text.size();) {
        // A surrogate pair is one character.
        const qsizetype length = text.at(i).isHighSurrogate() && i + 1 < text.size() ? 2 : 1;
        const qsizetype size = text.mid(i, length).toUtf8().size();
        if (bytes + size > maxBytes)
            break;
        fitted += text.mid(i, length);
        bytes += size;
        i += length;
    }
    return fitted;
}

std::span<const CopyGroup> copyGroups() {
    return kGroups;
}

const CopyGroup* copyGroupOf(const QString& key) {
    for (const CopyGroup& group : kGroups)
        for (const CopyKey& copy : group.copies())
            if (key == QLatin1String(copy.key))
                return &group;
    return nullptr;
}

std::vector<CopyWrite> copyWritesFor(const std::vector<EditedCopy>& edited) {
    std::vector<CopyWrite> writes;
    const auto editOf = [&](const CopyKey& copy) {
        return std::find_if(edited.begin(), edited.end(),
                            [&](const EditedCopy& e) { return e.key == QLatin1String(copy.key); });
    };
    for (const CopyGroup& group : kGroups) {
        const auto copies = group.copies();
        const auto first = std::find_if(copies.begin(), copies.end(), [&](const CopyKey& copy) {
            return editOf(copy) != edited.end();
        });
        if (first == copies.end())
            continue;
        const QString text = editOf(*first)->text;
        for (const CopyKey& copy : copies)
            if (editOf(copy) == edited.end())
                writes.push_back({copy, fittedToBytes(text, copy.maxBytes)});
    }
    return writes;
}

} // namespace tagmoor
