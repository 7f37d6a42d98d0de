#pragma once

#include "extras/ExtraValues.h"
#include "metadata/ExtraTags.h"
#include "metadata/MetadataFieldSet.h"
#include "metadata/SidecarOptions.h"
#include "metadata/WriteResult.h"
#include "model/ErasedRows.h"

#include <QByteArray>
#include <QHash>
#include <QMutex>
#include <QSet>
#include <QString>

#include <optional>

namespace tagmoor {

struct SidecarFile {
    QString path;
    SidecarNaming naming = SidecarNaming::WithExtension;
    bool operator==(const SidecarFile&) const = default;
};

// Whether a photo's record takes the values of its sidecar: by default in the standard form
// only; setSidecarsRead chooses for the whole process (nothing: follow the form again). Set
// once before any photo is read, as the form is.
bool sidecarsAreRead();
void setSidecarsRead(std::optional<bool> read);

// The sidecar path of the photo at `photoPath` by a naming.
QString sidecarPathFor(const QString& photoPath, SidecarNaming naming);

// The sidecar that stands beside the photo, a regular file: "name.ext.xmp" first, then
// "name.xmp" (either with ".XMP" too).
std::optional<SidecarFile> findSidecar(const QString& photoPath);

// While it lives, findSidecar() on this thread answers `found` for `photoPath` without
// looking again. A run looks once for a photo's sidecar when it plans the photo; the reads of
// the photo's record during its edit then lay that same sidecar over it.
class KnownSidecar {
public:
    KnownSidecar(const QString& photoPath, const std::optional<SidecarFile>& found);
    ~KnownSidecar();
    KnownSidecar(const KnownSidecar&) = delete;
    KnownSidecar& operator=(const KnownSidecar&) = delete;

    static const KnownSidecar* of(const QString& photoPath);
    const std::optional<SidecarFile>& found() const { return m_found; }

private:
    const KnownSidecar* m_outer;
    QString m_path;
    std::optional<SidecarFile> m_found;
};

// The sidecar names of the folders that a read of many photos passes through, each folder
// listed once, when a photo of it is first looked at: findSidecar() on a thread where a listing
// is in scope then looks at the disk only for a name that the listing holds (whether it is
// still a regular file), instead of trying each possible name. A sidecar put beside a photo
// after its folder was listed is not seen, so a listing lives for one read-only pass over the
// photos (a command that prints records, a table export), never through a run that writes.
class SidecarListing {
public:
    // A folder is listed when the `looksBeforeListing`-th name is looked for in it; the names
    // before are looked at one by one, which for a few photos costs less than listing a folder
    // of thousands.
    explicit SidecarListing(int looksBeforeListing = kLooksBeforeListing)
        : m_looksBeforeListing(looksBeforeListing) {}
    static constexpr int kLooksBeforeListing = 64;
    // Makes `listing` this thread's while it lives.
    class Scope {
    public:
        explicit Scope(SidecarListing& listing);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        SidecarListing* m_outer;
    };
    // The listing in scope on this thread, if any.
    static SidecarListing* current();
    // Whether the file `name` may stand in `folder`: false only when the folder could be listed
    // and holds no entry of that name among those ending in ".xmp", in any case.
    bool mayHold(const QString& folder, const QString& name);

private:
    const int m_looksBeforeListing;
    QMutex m_mutex;
    // Per folder, the names of its entries that end in ".xmp" in any case; nothing for a
    // folder that could not be listed.
    QHash<QString, std::optional<QSet<QString>>> m_names;
    // Per folder not listed yet, how many names were looked for in it.
    QHash<QString, int> m_looks;
};

// A photo's sidecar as one look found it: where it stands, and its bytes (nothing when they
// could not be read). A reader that lays it over both the record and the extras looks once.
struct SidecarRead {
    SidecarFile file;
    std::optional<QByteArray> bytes;
};
std::optional<SidecarRead> readSidecarOf(const QString& photoPath);

// The values of the key lists that an XMP packet holds, read as a photo's are: Exif and IPTC
// rows take what Exiv2's conversion from XMP gives them. Nothing when it is no XMP.
std::optional<MetadataFieldSet> readSidecarFieldSet(const QByteArray& packet);
// The values beyond the key lists (keywords, rating, label, texts) that an XMP packet holds,
// read as a photo's are. Nothing when it is no XMP.
std::optional<ExtraValues> readSidecarExtras(const QByteArray& packet);
// The key-list values of a sidecar file (a regular file of a bounded size).
std::optional<MetadataFieldSet> readSidecarFile(const QString& path);

// What a sidecar's edit lays in beyond the key-list rows: the extra edits (keywords, rating,
// label, texts, copies), and the photo's own keyword lists, which a sidecar without any
// starts from, so that adding one keyword keeps the photo's others.
struct SidecarExtras {
    ExtraWrite write;
    std::optional<KeywordLists> photoKeywords;
};

// The packet `base` (empty: a new one) with the edited rows and `extras` laid in and the erased
// rows taken out, in XMP's own properties: only the edited fields change, the rest stays as
// it was. Throws what Exiv2 throws.
QByteArray editedSidecarPacket(const QByteArray& base, const MetadataFieldSet& edited,
                               const ErasedRows& erased, const SidecarExtras& extras = {});

// A packet that holds no property (what stripping a sidecar leaves).
QByteArray emptySidecarPacket();

// Puts `packet` at `sidecarPath` safely: an existing sidecar is replaced as a photo is (a
// hidden file beside it, read back, renamed over it), a new one appears whole or not at all
// and never replaces a file that came in the way meanwhile. The packet is read back before it
// takes its place.
WriteResult placeSidecar(const QString& sidecarPath, const QByteArray& packet,
                         bool flushToDisk = true);

// The edit of a photo's sidecar: the packet `base` (the sidecar's bytes, or empty for a new
// one) with the edit laid in, placed at `sidecarPath` as placeSidecar does.
WriteResult writeSidecar(const QString& sidecarPath, const QByteArray& base,
                         const MetadataFieldSet& edited, const ErasedRows& erased,
                         const SidecarExtras& extras = {}, bool flushToDisk = true);

// The bytes of a sidecar file, bounded; nothing when it can't be read.
std::optional<QByteArray> readSidecarBytes(const QString& path);

} // namespace tagmoor
