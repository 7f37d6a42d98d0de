#pragma once
// Moves ICU's default time zone for the life of the object, for tests of zone-dependent texts.

#include <unicode/timezone.h>

#include <memory>

namespace tagmoor::test {

class IcuZoneScope {
public:
    explicit IcuZoneScope(const char16_t* id) : m_saved(icu::TimeZone::createDefault()) {
        icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone(id));
    }
    ~IcuZoneScope() { icu::TimeZone::adoptDefault(m_saved.release()); }
    IcuZoneScope(const IcuZoneScope&) = delete;
    IcuZoneScope& operator=(const IcuZoneScope&) = delete;

private:
    std::unique_ptr<icu::TimeZone> m_saved;
};

} // namespace tagmoor::test
