#include "model/FormFieldTable.h"

#include <QHash>

#include <algorithm>
#include <array>
#include <vector>

namespace tagmoor {

namespace {

// The form's table, generated from TAGMOOR_FORM_FIELDS in the order of `Field`.
const std::array<FormField, kFieldCount> kFields{{
#define TAGMOOR_FORM_FIELD(name, position, prefix, kind, block, row)                               \
    {Field::name, position, #prefix #name, FormKind::kind, KeyBlock::block, row},
    TAGMOOR_FORM_FIELDS(TAGMOOR_FORM_FIELD)
#undef TAGMOOR_FORM_FIELD
}};

int blockOrder(KeyBlock b) {
    switch (b) {
    case KeyBlock::Exif:
        return 0;
    case KeyBlock::Iptc:
        return 1;
    case KeyBlock::Xmp:
        break;
    }
    return 2;
}

} // namespace

const KeyRow& FormField::keyRow() const {
    switch (block) {
    case KeyBlock::Exif:
        return exifKeyRows()[row];
    case KeyBlock::Iptc:
        return iptcKeyRows()[row];
    case KeyBlock::Xmp:
        break;
    }
    return xmpKeyRows()[row];
}

QString FormField::name() const {
    return QString::fromLatin1(fieldName(field));
}

std::span<const FormField> formFields() {
    return kFields;
}

const FormField& formField(Field field) {
    return kFields[std::size_t(field)];
}

std::optional<Field> fieldAtPosition(int position) {
    if (const FormField* f = formFieldAt(position))
        return f->field;
    return std::nullopt;
}

const char* fieldName(Field field) {
    static constexpr std::array<const char*, kFieldCount> names{
#define TAGMOOR_FIELD_NAME(name, position, prefix, kind, block, row) #name,
        TAGMOOR_FORM_FIELDS(TAGMOOR_FIELD_NAME)
#undef TAGMOOR_FIELD_NAME
    };
    return names[std::size_t(field)];
}

const char* fieldControl(Field field) {
    return kFields[std::size_t(field)].control;
}

const FormField* formFieldAt(int position) {
    static const auto byPosition = [] {
        std::array<const FormField*, kFormPositionCount> a{};
        for (const auto& f : kFields)
            a[f.position] = &f;
        return a;
    }();
    if (position < 0 || position >= kFormPositionCount)
        return nullptr;
    return byPosition[position];
}

const FormField* formFieldForRow(const KeyRow& row) {
    for (const auto& f : kFields) {
        if (f.block == row.block && f.row == row.row)
            return &f;
    }
    return nullptr;
}

const FormField* findFormField(const QString& nameOrKey) {
    static const QHash<QString, const FormField*> byName = [] {
        QHash<QString, const FormField*> h;
        for (const auto& f : kFields) {
            h.insert(f.name().toLower(), &f);
            h.insert(QString::fromLatin1(f.keyRow().key).toLower(), &f);
        }
        return h;
    }();
    return byName.value(nameOrKey.trimmed().toLower(), nullptr);
}

std::span<const FormField* const> plainFieldsInKeyOrder() {
    static const std::vector<const FormField*> order = [] {
        std::vector<const FormField*> v;
        for (const auto& f : kFields) {
            if (!f.isDate())
                v.push_back(&f);
        }
        std::stable_sort(v.begin(), v.end(), [](const FormField* a, const FormField* b) {
            if (a->block != b->block)
                return blockOrder(a->block) < blockOrder(b->block);
            return a->row < b->row;
        });
        return v;
    }();
    return order;
}

std::span<const FormField* const> dateFieldsInRunOrder() {
    static const std::array<const FormField*, 6> order{
        &formField(Field::DateTimeOriginal), &formField(Field::CreationDate),
        &formField(Field::ModifyDate),       &formField(Field::CreateDateXMP),
        &formField(Field::ModifyDateXMP),    &formField(Field::CreateDatePhotoshop)};
    return order;
}

} // namespace tagmoor
