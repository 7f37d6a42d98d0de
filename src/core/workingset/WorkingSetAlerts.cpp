#include "workingset/WorkingSetAlerts.h"

#include <QCoreApplication>

namespace tagmoor {

namespace {
const QString cannotBeAdded =
    QCoreApplication::translate("WorkingSetAlerts", "Some images cannot be added");
}

Alert alertAlreadyAdded() {
    return Alert::ok(cannotBeAdded,
                     QCoreApplication::translate(
                         "WorkingSetAlerts", "The selected images are already added to the list"));
}

Alert alertIgnoreFilesAdded() {
    return Alert::ok(cannotBeAdded,
                     QCoreApplication::translate("WorkingSetAlerts",
                                                 "Some of the selected images have formats "
                                                 "which are currently not supported."));
}

Alert alertAlreadyAddedAndBeIgnore() {
    return Alert::ok(cannotBeAdded,
                     QCoreApplication::translate("WorkingSetAlerts",
                                                 "Either the selected images are already "
                                                 "added in the list or are not supported."));
}

std::optional<TimedAlert> endOfScanAlert(const ScanFlags& flags, bool listEmpty) {
    if (flags.isNotSupportedExtension && flags.isAvailableAlready)
        return TimedAlert{alertAlreadyAddedAndBeIgnore(), 100};
    if (flags.isAvailableAlready)
        return TimedAlert{alertAlreadyAdded(), 100};
    if (flags.isNotSupportedExtension) {
        if (listEmpty)
            return TimedAlert{Alert::ok(QCoreApplication::translate(
                                            "WorkingSetAlerts", "Some items could not be added"),
                                        QCoreApplication::translate(
                                            "WorkingSetAlerts",
                                            "The items that are not supported could not be added "
                                            "to the list for processing.")),
                              0};
        return TimedAlert{alertIgnoreFilesAdded(), 0};
    }
    if (flags.isAddedEmpty)
        return TimedAlert{
            Alert::ok(QCoreApplication::translate("WorkingSetAlerts",
                                                  "No images were found in the selected folder"),
                      QCoreApplication::translate("WorkingSetAlerts",
                                                  "Please select another folder to add images.")),
            0};
    return std::nullopt;
}

std::optional<TimedAlert> panelAlert(bool alreadyAdded, bool ignored) {
    if (alreadyAdded && ignored)
        return TimedAlert{alertAlreadyAddedAndBeIgnore(), 500};
    if (alreadyAdded)
        return TimedAlert{alertAlreadyAdded(), 500};
    if (ignored)
        return TimedAlert{alertIgnoreFilesAdded(), 500};
    return std::nullopt;
}

std::optional<Alert> leftOutAlert(const QList<LeftOutEntry>& entries) {
    if (entries.isEmpty())
        return std::nullopt;
    constexpr int kShown = 8;
    QStringList lines;
    for (const LeftOutEntry& entry : entries.mid(0, kShown))
        lines << QStringLiteral("%1 (%2)").arg(entry.path, entry.reason);
    if (entries.size() > kShown)
        lines << QCoreApplication::translate("WorkingSetAlerts", "and %1 more")
                     .arg(entries.size() - kShown);
    return Alert::ok(QCoreApplication::translate("WorkingSetAlerts", "Some files were left out"),
                     QCoreApplication::translate("WorkingSetAlerts",
                                                 "These files and folders could not be added:") +
                         QStringLiteral("\n") + lines.join(QLatin1Char('\n')));
}

std::optional<Alert> libraryAlert(int missingOriginals, const QStringList& notes) {
    if (missingOriginals <= 0 && notes.isEmpty())
        return std::nullopt;
    QStringList lines = notes;
    if (missingOriginals == 1)
        lines << QCoreApplication::translate("WorkingSetAlerts",
                                             "1 photo of the library is not on disk and was "
                                             "skipped.");
    else if (missingOriginals > 1)
        lines << QCoreApplication::translate("WorkingSetAlerts",
                                             "%1 photos of the library are not on disk and "
                                             "were skipped.")
                     .arg(missingOriginals);
    return Alert::ok(
        QCoreApplication::translate("WorkingSetAlerts", "Some library photos were not added"),
        lines.join(QLatin1Char('\n')));
}

Alert stopScanningQuestion() {
    return Alert::yesNo(
        QCoreApplication::translate("WorkingSetAlerts", "Stop adding images?"),
        QCoreApplication::translate("WorkingSetAlerts",
                                    "Are you sure you want to stop adding the images?"));
}

Alert removeSelectedQuestion() {
    return Alert::yesNo(
        QCoreApplication::translate("WorkingSetAlerts", "Remove all the selected images?"),
        QCoreApplication::translate("WorkingSetAlerts",
                                    "Are you sure you want to remove all the selected images?"));
}

Alert removeAllQuestion() {
    return Alert::yesNo(QCoreApplication::translate("WorkingSetAlerts", "Remove all images?"),
                        QCoreApplication::translate("WorkingSetAlerts",
                                                    "Are you sure you want to remove all images?"));
}

} // namespace tagmoor
