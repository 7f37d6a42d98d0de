#include "extras/CopyGroups.h"

#include <algorithm>

namespace tagmoor {

namespace {

constexpr CopyForm T = CopyForm::Text;

constexpr std::array kGroups{
    CopyGroup{"description",
              {{{"Exif.Image.ImageDescription", T},
                {"Xmp.dc.description", CopyForm::LangAlt},
                {"Iptc.Application2.Caption", T}}}},
    CopyGroup{"creator",
              {{{"Exif.Image.Artist", T},
                {"Xmp.dc.creator", CopyForm::Seq},
                {"Iptc.Application2.Byline", T}}}},
    CopyGroup{"rights",
              {{{"Exif.Image.Copyright", T},
                {"Xmp.dc.rights", CopyForm::LangAlt},
                {"Iptc.Application2.Copyright", T}}}},
    CopyGroup{"city", {{{"Xmp.photoshop.City", T}, {"Iptc.Application2.City", T}, {}}}},
    CopyGroup{"state", {{{"Xmp.photoshop.State", T}, {"Iptc.Application2.ProvinceState", T}, {}}}},
    CopyGroup{"country",
              {{{"Xmp.photoshop.Country", T}, {"Iptc.Application2.CountryName", T}, {}}}},
    CopyGroup{"countryCode",
              {{{"Xmp.iptc.CountryCode", T}, {"Iptc.Application2.CountryCode", T}, {}}}},
    CopyGroup{"sublocation",
              {{{"Xmp.iptc.Location", T}, {"Iptc.Application2.SubLocation", T}, {}}}},
};

} // namespace

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
                writes.push_back({copy, text});
    }
    return writes;
}

} // namespace tagmoor
