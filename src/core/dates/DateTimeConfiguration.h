#pragma once

#include "dates/IDOD.h"
#include "dates/IDOT.h"
#include "dates/UpdateDate.h"

#include <QDateTime>

#include <concepts>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

namespace tagmoor {

// The modes of a date rule that carry no values of their own.
struct KeepOriginal {
    bool operator==(const KeepOriginal&) const = default;
};

struct EmptyValue {
    bool operator==(const EmptyValue&) const = default;
};

// The date the panel's picker held. The run writes the field's date slot, not this date; it
// is what the form's summary shows.
struct SelectDate {
    std::optional<QDateTime> selectDate;

    bool operator==(const SelectDate&) const = default;
};

// The values of the date panel's rows, one set for each mode that has values. The chosen
// mode's row is the mode's own values; the rows of the other modes only let the panel open
// as it was left, and the stored form keeps them. No computation reads them.
struct DateRuleInputs {
    std::optional<QDateTime> selectDate;
    UpdateDate updateDate;
    IDOD idod;
    IDOT idot;

    bool operator==(const DateRuleInputs&) const = default;
};

// The rule of one date field: exactly one of six modes, listed in the panel's order. A rule
// that nobody has touched keeps the original.
class DateTimeConfiguration {
public:
    using Mode = std::variant<KeepOriginal, EmptyValue, SelectDate, UpdateDate, IDOD, IDOT>;

    DateTimeConfiguration() = default;
    template <typename T>
    requires std::constructible_from<Mode, T&&> &&
        (!std::same_as<std::remove_cvref_t<T>, DateTimeConfiguration>)
            DateTimeConfiguration(T&& mode)
        : m_mode(std::forward<T>(mode)) {
        putModeIntoInputs();
    }
    // `mode`, with the rows of the other modes taken from `inputs`.
    DateTimeConfiguration(Mode mode, const DateRuleInputs& inputs)
        : m_mode(std::move(mode)), m_inputs(inputs) {
        putModeIntoInputs();
    }

    const Mode& mode() const { return m_mode; }
    template <typename T> bool is() const { return std::holds_alternative<T>(m_mode); }
    template <typename T> const T* as() const { return std::get_if<T>(&m_mode); }
    const DateRuleInputs& inputs() const { return m_inputs; }

    bool operator==(const DateTimeConfiguration&) const = default;

private:
    void putModeIntoInputs() {
        if (const auto* select = as<SelectDate>())
            m_inputs.selectDate = select->selectDate;
        else if (const auto* update = as<UpdateDate>())
            m_inputs.updateDate = *update;
        else if (const auto* idod = as<IDOD>())
            m_inputs.idod = *idod;
        else if (const auto* idot = as<IDOT>())
            m_inputs.idot = *idot;
    }

    Mode m_mode;
    DateRuleInputs m_inputs;
};

} // namespace tagmoor
