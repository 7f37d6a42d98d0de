#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace tagmoor {

// How values are read from files, shifted and written.
// - standard: what the user sees and what is written are the true values, and nothing the
//   user did not edit is touched (tags keep their types, no zero stands in for an absent
//   value, GPS seconds keep their fraction, a keyword list stays a list, shifts move each
//   photo's own date and carry into the next unit).
// - described: the program's historical rules, kept one setting away for users and checks
//   that depend on them (absent numbers written as zero, GPS seconds read without their
//   denominator, the last keyword only, bytes read as signed, wrapping date arithmetic).
enum class ValueForm { standard, described };

// The form of this process: standard unless set. The window sets it from its preference, the
// command line from --form; both before any photo is read. Reads on any thread may ask it.
ValueForm valueForm();
void setValueForm(ValueForm form);
inline bool isStandardForm() {
    return valueForm() == ValueForm::standard;
}

// "standard" or "described".
QString valueFormName(ValueForm form);
std::optional<ValueForm> valueFormFromName(QStringView name);

// Sets the process's form for the life of the object and puts the previous one back (tests).
class ValueFormScope {
public:
    explicit ValueFormScope(ValueForm form) : m_previous(valueForm()) { setValueForm(form); }
    ~ValueFormScope() { setValueForm(m_previous); }
    ValueFormScope(const ValueFormScope&) = delete;
    ValueFormScope& operator=(const ValueFormScope&) = delete;

private:
    ValueForm m_previous;
};

} // namespace tagmoor
