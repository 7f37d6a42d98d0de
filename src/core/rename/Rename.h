#pragma once

#include "rename/NameFormat.h"
#include "rename/RenamePosition.h"

#include <QString>

#include <concepts>
#include <utility>
#include <variant>

namespace tagmoor {

// The five choices of the rename rule. Each holds only the values that it reads.
struct KeepOriginalName {
    bool operator==(const KeepOriginalName&) const = default;
};

struct AddText {
    QString addTextValueAT;
    RenamePosition addTextPositionAT = RenamePosition::beforeName;

    bool operator==(const AddText&) const = default;
};

struct ReplaceText {
    QString findTextRT;
    QString replaceWithRT;

    bool operator==(const ReplaceText&) const = default;
};

struct ChangeFileNameFormat {
    NameFormat nameFormatNF = NameFormat::nameAndIndex();
    RenamePosition whereTextPositionNF = RenamePosition::beforeName;
    QString customFormatValueNF;
    qint64 startNumberAtNF = 1;
    int minNumberDigitsNF = 0; // 0 is "Auto": no padding

    bool operator==(const ChangeFileNameFormat&) const = default;
};

// The name made from the photo's capture date by a Unicode date pattern (empty: the default
// pattern), with a counter when the name is taken.
struct CaptureDateName {
    QString captureDatePatternCD;

    bool operator==(const CaptureDateName&) const = default;
};

// The rename rule of a run: exactly one of the five choices. A rule nobody has set keeps the
// name.
class Rename {
public:
    using Choice =
        std::variant<KeepOriginalName, AddText, ReplaceText, ChangeFileNameFormat, CaptureDateName>;

    Rename() = default;
    template <typename T>
    requires std::constructible_from<Choice, T&&> &&
        (!std::same_as<std::remove_cvref_t<T>, Rename>)Rename(T&& choice)
        : m_choice(std::forward<T>(choice)) {}

    const Choice& choice() const { return m_choice; }

    template <typename T> bool is() const { return std::holds_alternative<T>(m_choice); }
    template <typename T> const T* as() const { return std::get_if<T>(&m_choice); }
    template <typename T> T* as() { return std::get_if<T>(&m_choice); }
    // The values of choice T, or its defaults when another choice is on.
    template <typename T> T valuesOf() const {
        const T* values = as<T>();
        return values ? *values : T{};
    }

    bool operator==(const Rename&) const = default;

private:
    Choice m_choice;
};

} // namespace tagmoor
