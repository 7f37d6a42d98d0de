#pragma once
// The one place where exceptions thrown by Exiv2 (or by anything the metadata code does around
// it) are caught. Every entry point of the metadata folder runs its Exiv2 work through
// guardExiv2, so no exception ever reaches a caller and the order of the catch clauses is
// written once: Exiv2's own errors first, then standard exceptions, then anything else.
#include <QString>

#include <exiv2/exiv2.hpp>

#include <exception>

namespace tagmoor {

/// Where a caught exception came from, for the callers whose log text tells them apart.
enum class Exiv2Failure { Library, Other };

/// Runs `body()`. Returns true when it finished; otherwise hands the failure's kind and text to
/// `onFailure(Exiv2Failure, const QString&)` and returns false.
template <typename Body, typename OnFailure> bool guardExiv2(Body&& body, OnFailure&& onFailure) {
    try {
        body();
        return true;
    } catch (const Exiv2::AnyError& e) {
        onFailure(Exiv2Failure::Library, QString::fromUtf8(e.what()));
    } catch (const std::exception& e) {
        onFailure(Exiv2Failure::Other, QString::fromUtf8(e.what()));
    } catch (...) {
        onFailure(Exiv2Failure::Other, QStringLiteral("unknown exception"));
    }
    return false;
}

} // namespace tagmoor
