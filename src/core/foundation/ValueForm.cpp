#include "foundation/ValueForm.h"

#include <atomic>

namespace tagmoor {

namespace {
std::atomic<ValueForm> g_form{ValueForm::standard};
}

ValueForm valueForm() {
    return g_form.load(std::memory_order_relaxed);
}

void setValueForm(ValueForm form) {
    g_form.store(form, std::memory_order_relaxed);
}

QString valueFormName(ValueForm form) {
    return form == ValueForm::described ? QStringLiteral("described") : QStringLiteral("standard");
}

std::optional<ValueForm> valueFormFromName(QStringView name) {
    if (name == u"standard")
        return ValueForm::standard;
    if (name == u"described")
        return ValueForm::described;
    return std::nullopt;
}

} // namespace tagmoor
