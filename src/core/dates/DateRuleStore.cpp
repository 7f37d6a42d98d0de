#include "dates/DateRuleStore.h"

namespace tagmoor {

void DateRuleStore::commitPanel(DateField field, const DateTimeConfiguration& rule,
                                const std::optional<QDateTime>& slot) {
    if (m_rules.rule(field) != rule || m_rules.slot(field) != slot)
        m_rules.alive(field) = true;
    m_rules.rule(field) = rule;
    m_rules.slot(field) = slot;
}

void DateRuleStore::forget(DateField field) {
    m_rules.rule(field) = DateTimeConfiguration{};
    m_rules.slot(field).reset();
    m_rules.alive(field) = false;
}

} // namespace tagmoor
