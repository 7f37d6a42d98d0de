// The sidecar's part of one photo of a run: it goes where its photo goes, takes the edit where
// the photo cannot (or is not to), and goes with the XMP group when that is stripped.
#include "batch/BatchLog.h"
#include "batch/ExtraRunEdits.h"
#include "batch/FileIdentity.h"
#include "batch/PhotoPipeline.h"
#include "metadata/ExtraTags.h"
#include "metadata/ImageKind.h"

#include <QFile>

namespace tagmoor {

namespace {

QString sidecarProblem(const WriteResult& write) {
    QString text = QStringLiteral("sidecar: ") + writeStatusText(write.status);
    if (!write.detail.isEmpty())
        text += QStringLiteral(" (") + write.detail + QLatin1Char(')');
    return text;
}

} // namespace

PhotoPipeline::SidecarPlan PhotoPipeline::sidecarPlan(const QString& source,
                                                      const QString& target) const {
    if (m_values.sidecar.write == SidecarWrite::never)
        return {};
    SidecarPlan plan;
    plan.from = findSidecar(source);
    // The output's sidecar follows the convention its photo's was found in.
    const SidecarNaming naming = plan.from ? plan.from->naming : m_values.sidecar.naming;
    plan.to = sidecarPathFor(target, naming);
    // A sidecar found beside an output that is the photo itself stays where it is.
    const auto isSource = [&] {
        const auto sourceId = fileIdOf(source);
        return sourceId && sourceId == fileIdOf(target);
    };
    if (plan.from && (target == source || isSource()))
        plan.to = plan.from->path;
    return plan;
}

bool PhotoPipeline::writesPhoto(ImageKind kind) const {
    switch (m_values.sidecar.write) {
    case SidecarWrite::never:
    case SidecarWrite::both:
        return true;
    case SidecarWrite::fallback:
        // Bytes that are no photo go on to the writer, which says so.
        return kind == ImageKind::Unknown || exiv2Writes(kind);
    case SidecarWrite::always:
        break;
    }
    return false;
}

bool PhotoPipeline::writesSidecar(ImageKind kind) const {
    switch (m_values.sidecar.write) {
    case SidecarWrite::never:
        return false;
    case SidecarWrite::fallback:
        return kind != ImageKind::Unknown && !exiv2Writes(kind);
    case SidecarWrite::always:
    case SidecarWrite::both:
        break;
    }
    return true;
}

PhotoResult PhotoPipeline::withSidecar(PhotoResult photo, const SidecarPlan& sidecar,
                                       const QString& target, const CGImageProperties& record,
                                       std::optional<ImageKind> outputKind) const {
    // A photo whose output did not come about, or did not take its edit, leaves its sidecar
    // as it is, so that the two still agree. A strip still reaches the sidecar of a photo
    // that could not be stripped itself (a format that cannot be written).
    const bool removing = m_values.processingMode == ProcessingMode::removeGroups;
    if (sidecar.to.isEmpty() || photo.outcome != PhotoOutcome::Written ||
        (!photo.problem.isEmpty() && !removing))
        return photo;
    QByteArray base;
    if (sidecar.from) {
        const auto bytes = readSidecarBytes(sidecar.from->path);
        if (!bytes) {
            photo.problem += (photo.problem.isEmpty() ? QString() : QStringLiteral("; ")) +
                             QStringLiteral("sidecar: could not be read");
            return photo;
        }
        base = *bytes;
    }
    const bool inPlace = sidecar.from && sidecar.from->path == sidecar.to;
    const ImageKind kind = outputKind ? *outputKind : sniffImageKindOfFile(target);
    WriteResult write;
    if (removing) {
        const SidecarStrip strip =
            m_values.clean.cleanXMP ? m_values.sidecar.strip : SidecarStrip::keep;
        if (!sidecar.from || (strip == SidecarStrip::keep && inPlace))
            return photo;
        if (strip == SidecarStrip::remove) {
            // A copy goes without it; the photo's own is removed where it is.
            if (inPlace && !QFile::remove(sidecar.to))
                write = {WriteStatus::Failed, QStringLiteral("could not be removed")};
        } else {
            write = placeSidecar(sidecar.to, strip == SidecarStrip::strip ? QByteArray() : base);
        }
    } else if (writesSidecar(kind)) {
        const FieldEdits edits = fieldEditsFor(record, target);
        SidecarExtras extras{
            extraWriteOf(m_values.photoValues.empty() ? m_values : valuesFor(record), edits), {}};
        // A keyword edit starts from the photo's own keywords where the sidecar has none.
        const ExtraEdits& keywords = extras.write.edits;
        if (!keywords.addKeywords.isEmpty() || !keywords.removeKeywords.isEmpty()) {
            if (const auto own = readExtraValuesOf(target, SidecarValues::Ignored))
                extras.photoKeywords = own->keywords;
        }
        write = writeSidecar(sidecar.to, base, edits.values, edits.erased, extras);
        if (write.written() && !writesPhoto(kind))
            photo.note = QStringLiteral("written to sidecar");
    } else if (sidecar.from && !inPlace) {
        write = placeSidecar(sidecar.to, base);
    }
    if (!write.written()) {
        qCWarning(lcBatch).noquote() << "sidecar" << sidecar.to << "failed:" << write.detail;
        photo.problem +=
            (photo.problem.isEmpty() ? QString() : QStringLiteral("; ")) + sidecarProblem(write);
    }
    return photo;
}

} // namespace tagmoor
