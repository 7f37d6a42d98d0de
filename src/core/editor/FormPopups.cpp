#include "editor/FormPopups.h"

#include "model/CodeTables.h"
#include "model/CountryHelper.h"

#include <variant>

namespace tagmoor {

namespace {

struct CountryList {};
using Source = std::variant<std::monostate, CodeTable, LetterTable, CountryList>;

Source sourceOf(int position) {
    switch (position) {
    case 16:
        return CodeTable::Flash;
    case 17:
        return CodeTable::Orientation;
    case 18:
        return CodeTable::ExposureMode;
    case 19:
        return CodeTable::ExposureProgram;
    case 21:
        return CodeTable::MeteringMode;
    case 22:
        return CodeTable::SceneCaptureType;
    case 25:
        return CodeTable::SensingMethod;
    case 27:
        return CodeTable::SubjectDistanceRange;
    case 32:
        return LetterTable::LatitudeRef;
    case 34:
        return LetterTable::LongitudeRef;
    case 36:
        return CodeTable::AltitudeRef;
    case 51:
        return CountryList{};
    case 61:
        return CodeTable::TiffCompression;
    case 78:
        return CodeTable::EXIFSensitivityType;
    case 83:
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

bool isPopup(int position) {
    return !std::holds_alternative<std::monostate>(sourceOf(position));
}

QStringList rowTexts(int position) {
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
               sourceOf(position));
    return texts;
}

int rowOf(int position, const PropertyValue& value) {
    return std::visit(Overloaded{
                          [](std::monostate) { return 0; },
                          [&](CodeTable t) { return rowOfValue(t, value); },
                          [&](LetterTable t) { return rowOfValue(t, value); },
                          [&](CountryList) {
                              const auto code = value.text();
                              return code ? CountryHelper::indexOfCountry(*code) : 0;
                          },
                      },
                      sourceOf(position));
}

std::optional<PropertyValue> valueOfRow(int position, int row) {
    if (row <= 0)
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
                      sourceOf(position));
}

} // namespace FormPopups

} // namespace tagmoor
