#pragma once

#include "batch/PhotoValues.h"

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

namespace tagmoor {

// Texts that name parts of each photo, filled in per photo when a run writes them:
//   {filename}        the photo's file name ("IMG_0001.jpg")
//   {date:PATTERN}    its DateTimeOriginal, else its file's modification time, by a date
//                     pattern ("yyyy-MM-dd")
//   {counter}         its number in the run, from 1; {counter:3} with at least 3 digits
//   {camera}          its Make and Model
// A name in braces that is none of these stays as it was typed. The form's texts, the texts
// beyond the form and the keywords added are filled in. Only the standard form fills them in;
// the described form writes the text as typed.
class PhotoTemplates : public PhotoValues {
public:
    // The facts of one photo a template draws on.
    struct Photo {
        QString fileName;
        std::optional<QDateTime> date;
        int counter = 0;
        QString camera;
    };

    // `photos`: the run's photos in run order, which give each its counter.
    explicit PhotoTemplates(const QStringList& photos);

    // `text` with its placeholders filled in for `photo`.
    static QString fill(const QString& text, const Photo& photo);

    // Whether `text` holds a placeholder that fill() replaces.
    static bool holdsPlaceholder(const QString& text);

    // Whether some edited text of `values` holds a placeholder.
    static bool neededFor(const RunValues& values);

    // Adds the filling-in to a run in the standard form whose texts hold placeholders, or
    // whenever `photoValuesMayHold` says that its photos' own values may hold some. `photos`:
    // the run's photos in run order (the marked ones of a list).
    static void addTo(RunValues& values, const QStringList& photos,
                      bool photoValuesMayHold = false);

    // The paths of the marked photos of a list, in list order: the photos of its run.
    static QStringList markedPhotos(const QList<CGImageProperties>& list);

    // The facts of the photo of `record`, numbered `counter`.
    static Photo photoOf(const CGImageProperties& record, int counter);

    void adjust(const CGImageProperties& record, RunValues& values) const override;

private:
    QHash<QString, int> m_counters;
};

} // namespace tagmoor
