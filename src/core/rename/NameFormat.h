#pragma once

namespace tagmoor {

// Which format "Change FIle Name Format" builds the name by. The flags tell the panel which
// of its controls apply to the format; they never change a name. isMinDigit belongs to
// nameAndCounter only; the other formats leave it false.
struct NameFormat {
    enum class Case {
        nameAndIndex,
        nameAndCounter,
        nameAndDate,
    };

    Case kind = Case::nameAndIndex;
    bool isWhere = true;
    bool isCustomFormat = true;
    bool isStartNumber = true;
    bool isMinDigit = false;

    static NameFormat nameAndIndex(bool isWhere = true, bool isCustomFormat = true,
                                   bool isStartNumber = true) {
        return {Case::nameAndIndex, isWhere, isCustomFormat, isStartNumber, false};
    }
    static NameFormat nameAndCounter(bool isWhere = true, bool isCustomFormat = true,
                                     bool isStartNumber = true, bool isMinDigit = true) {
        return {Case::nameAndCounter, isWhere, isCustomFormat, isStartNumber, isMinDigit};
    }
    static NameFormat nameAndDate(bool isWhere = true, bool isCustomFormat = true) {
        return {Case::nameAndDate, isWhere, isCustomFormat, false, false};
    }

    bool operator==(const NameFormat&) const = default;
};

} // namespace tagmoor
