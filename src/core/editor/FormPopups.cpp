#include "editor/FormPopups.h"

#include "model/CodeTables.h"
#include "model/CountryHelper.h"
#include "model/Field.h"

#include <variant>

namespace tagmoor {

namespace {

struct CountryList {};
using Source = std::variant<std::monostate, CodeTable, LetterTable, CountryList>;

Source sourceOf(Field field) {
    switch (field) {
    case Field::Flash:
        return CodeTable::Flash;
    case Field::Orientation:
        return CodeTable::Orientation;
    case Field::ExposureMode:
        return CodeTable::ExposureMode;
    case Field::ExposureProgram:
        return CodeTable::ExposureProgram;
    case Field::MeteringMode:
        return CodeTable::MeteringMode;
    case Field::SceneCaptureType:
        return CodeTable::SceneCaptureType;
    case Field::SensingMethod:
        return CodeTable::SensingMethod;
    case Field::SubjectDistanceRange:
        return CodeTable::SubjectDistanceRange;
    case Field::GPSLatitudeRef:
        return LetterTable::LatitudeRef;
    case Field::GPSLongitudeRef:
        return LetterTable::LongitudeRef;
    case Field::GPSAltitudeRef:
        return CodeTable::AltitudeRef;
    case Field::CountryPrimaryLocationCode:
        return CountryList{};
    case Field::CompressionTiffData:
        return CodeTable::TiffCompression;
    case Field::SensitivityTypeOthers:
        return CodeTable::EXIFSensitivityType;
    case Field::LightSourceOthers:
        return CodeTable::EXIFLightSource;
    default:
        return std::monostate{};
    }
}

template <class... Ts> struct Overloaded : Ts... { using Ts::operator()...; };
// Clang before 17 does not deduce aggregate templates by itself.
template <class... Ts> Overloaded(Ts...) -> Overloaded<Ts...>;

} // namespace

namespace FormPopups {

bool isPopup(Field field) {
    return !std::holds_alternative<std::monostate>(sourceOf(field));
}

QStringList rowTexts(Field field) {
    QStringList texts;
    std::visit(Overloaded{
                   [](std::monostate) {},
                   [&](CodeTable t) {
                       for (const CodeRow& r : codeRows(t))
                           texts << r.text();
                   },
                   [&](LetterTable t) {
                       for (const LetterRow& r : letterRows(t))
                           texts << r.text();
                   },
                   [&](CountryList) {
                       for (const CountryRow& r : CountryHelper::Country())
                           texts << r.name;
                   },
               },
               sourceOf(field));
    return texts;
}

int rowOf(Field field, const PropertyValue& value) {
    return std::visit(Overloaded{
                          [](std::monostate) { return kBlankRow; },
                          [&](CodeTable t) { return rowOfValue(t, value); },
                          [&](LetterTable t) { return rowOfValue(t, value); },
                          [&](CountryList) {
                              const auto code = value.text();
                              return code ? CountryHelper::indexOfCountry(*code) : kBlankRow;
                          },
                      },
                      sourceOf(field));
}

std::optional<PropertyValue> valueOfRow(Field field, int row) {
    if (row <= kBlankRow)
        return std::nullopt;
    return std::visit(Overloaded{
                          [](std::monostate) -> std::optional<PropertyValue> { return {}; },
                          [&](CodeTable t) -> std::optional<PropertyValue> {
                              if (auto n = numberOfRow(t, row))
                                  return PropertyValue(qint64(*n));
                              return {};
                          },
                          [&](LetterTable t) -> std::optional<PropertyValue> {
                              if (auto l = letterOfRow(t, row))
                                  return PropertyValue(*l);
                              return {};
                          },
                          [&](CountryList) -> std::optional<PropertyValue> {
                              const auto rows = CountryHelper::Country();
                              if (row >= int(rows.size()))
                                  return {};
                              return PropertyValue(rows[std::size_t(row)].code);
                          },
                      },
                      sourceOf(field));
}

} // namespace FormPopups

} // namespace tagmoor
