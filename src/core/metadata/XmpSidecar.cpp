// XMP sidecars: finding them beside a photo, reading their values as a photo's, laying an edit
// into their XMP and putting them in place as safely as a photo.
#include "metadata/XmpSidecar.h"

#include "foundation/BoundedFile.h"
#include "foundation/ValueForm.h"
#include "metadata/Exiv2Guard.h"
#include "metadata/ExtraTags.h"
#include "metadata/FieldSetReading.h"
#include "metadata/MergeForWriting.h"
#include "metadata/MetadataLibrary.h"
#include "metadata/SafeFileReplace.h"
#include "metadata/StandardForm.h"
#include "metadata/XmpNamespaces.h"

#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <exiv2/exiv2.hpp>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tagmoor {

namespace {

// Far more than any sidecar holds; a file beyond it is not read.
constexpr qint64 kMaxSidecarBytes = 32 * 1024 * 1024;

// -1: follow the form; 0: off; 1: on.
std::atomic<int> g_sidecarsRead{-1};

bool isRegularFile(const QString& path) {
    struct stat st {};
    return ::lstat(QFile::encodeName(path).constData(), &st) == 0 && S_ISREG(st.st_mode);
}

// Lays into `result` the properties whose conversion from tags changed from `before` to `after`
// (each the conversion of one block): a property that went is taken out, one that is new or
// holds another value is laid in; the others keep their own form.
void layChanges(Exiv2::XmpData& result, const Exiv2::XmpData& before, const Exiv2::XmpData& after);

void eraseAll(Exiv2::XmpData& xmp, const std::string& key) {
    for (auto it = xmp.begin(); it != xmp.end();)
        it = it->key() == key ? xmp.erase(it) : std::next(it);
}

void layChanges(Exiv2::XmpData& result, const Exiv2::XmpData& before, const Exiv2::XmpData& after) {
    for (const auto& datum : before)
        if (after.findKey(Exiv2::XmpKey(datum.key())) == after.end())
            eraseAll(result, datum.key());
    for (const auto& datum : after) {
        const auto old = before.findKey(Exiv2::XmpKey(datum.key()));
        if (old != before.end() && old->toString() == datum.toString())
            continue;
        eraseAll(result, datum.key());
        result.add(Exiv2::XmpKey(datum.key()), &datum.value());
    }
}

std::string encoded(const Exiv2::XmpData& xmp) {
    std::string packet;
    if (xmp.empty())
        return packet;
    if (Exiv2::XmpParser::encode(packet, xmp, Exiv2::XmpParser::useCompactFormat, 0) > 1)
        throw Exiv2::Error(Exiv2::kerErrorMessage, "the sidecar's XMP could not be written");
    return packet;
}

// Whether the file at `path` holds the XMP of `packet`: the same properties with the same
// values.
bool holdsPacket(const QString& path, const QByteArray& packet) {
    const BoundedRead read = readBoundedFile(path, kMaxSidecarBytes);
    if (!read.ok())
        return false;
    const auto lock = lockXmpToolkit();
    Exiv2::XmpData wanted;
    Exiv2::XmpData found;
    if (decodeXmpPacket(wanted, packet.toStdString()) != 0 ||
        decodeXmpPacket(found, read.bytes.toStdString()) != 0 || wanted.count() != found.count())
        return false;
    for (const auto& datum : wanted) {
        const auto other = found.findKey(Exiv2::XmpKey(datum.key()));
        if (other == found.end() || other->toString() != datum.toString())
            return false;
    }
    return true;
}

// A sidecar where none stood: the bytes go to a hidden file beside it, are read back and
// then linked in under the sidecar's name, which fails rather than replace a file that came
// in the way.
WriteResult createSidecar(const QString& path, const QByteArray& packet, bool flushToDisk) {
    const QString folder = QFileInfo(path).absolutePath();
    QByteArray name = SafeFileReplace::temporaryTemplate(folder);
    const int fd = ::mkstemps(name.data(), 4);
    if (fd < 0)
        return {writeStatusOfErrno(errno), QStringLiteral("the sidecar could not be made")};
    const auto removeTemporary = qScopeGuard([&] { ::unlink(name.constData()); });
    qsizetype written = 0;
    while (written < packet.size()) {
        const ssize_t n =
            ::write(fd, packet.constData() + written, size_t(packet.size() - written));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            const int error = errno;
            ::close(fd);
            return {writeStatusOfErrno(error), QStringLiteral("the sidecar could not be written")};
        }
        written += n;
    }
    const bool flushed = !flushToDisk || ::fsync(fd) == 0;
    const int flushError = errno;
    ::fchmod(fd, 0644 & ~0022);
    ::close(fd);
    if (!flushed)
        return {writeStatusOfErrno(flushError), QStringLiteral("the sidecar could not be flushed")};
    if (!holdsPacket(QFile::decodeName(name), packet))
        return {WriteStatus::Failed, QStringLiteral("the sidecar did not read back")};
    if (::link(name.constData(), QFile::encodeName(path).constData()) != 0) {
        const int error = errno;
        return {error == EEXIST ? WriteStatus::FileChanged : writeStatusOfErrno(error),
                QStringLiteral("the sidecar could not be put in place")};
    }
    return {};
}

WriteResult replaceSidecar(const QString& path, const QByteArray& packet, bool flushToDisk) {
    SafeFileReplace file(path);
    file.setFlushToDisk(flushToDisk);
    if (file.readTarget(std::nullopt) != SafeFileReplace::ReadResult::Read)
        return {file.trouble() == SafeFileReplace::Trouble::System
                    ? writeStatusOfErrno(file.errorCode())
                    : WriteStatus::Failed,
                file.errorText()};
    const bool replaced =
        file.replaceWith(packet.constData(), std::size_t(packet.size()),
                         [&](const QString& temporary) { return holdsPacket(temporary, packet); });
    if (replaced)
        return {};
    return {file.trouble() == SafeFileReplace::Trouble::System
                ? writeStatusOfErrno(file.errorCode())
                : WriteStatus::Failed,
            file.errorText().isEmpty() ? QStringLiteral("the sidecar did not read back")
                                       : file.errorText()};
}

} // namespace

bool sidecarsAreRead() {
    const int chosen = g_sidecarsRead.load();
    return chosen < 0 ? isStandardForm() : chosen == 1;
}

void setSidecarsRead(std::optional<bool> read) {
    g_sidecarsRead.store(read ? int(*read) : -1);
}

QString sidecarPathFor(const QString& photoPath, SidecarNaming naming) {
    if (naming == SidecarNaming::WithExtension)
        return photoPath + QStringLiteral(".xmp");
    const int slash = int(photoPath.lastIndexOf(QLatin1Char('/')));
    const int dot = int(photoPath.lastIndexOf(QLatin1Char('.')));
    // A dot that starts the name is no extension's.
    const QString base = dot > slash + 1 ? photoPath.left(dot) : photoPath;
    return base + QStringLiteral(".xmp");
}

namespace {
thread_local const KnownSidecar* t_knownSidecar = nullptr;
} // namespace

KnownSidecar::KnownSidecar(const QString& photoPath, const std::optional<SidecarFile>& found)
    : m_outer(t_knownSidecar), m_path(photoPath), m_found(found) {
    t_knownSidecar = this;
}

KnownSidecar::~KnownSidecar() {
    t_knownSidecar = m_outer;
}

const KnownSidecar* KnownSidecar::of(const QString& photoPath) {
    for (const KnownSidecar* known = t_knownSidecar; known; known = known->m_outer)
        if (known->m_path == photoPath)
            return known;
    return nullptr;
}

namespace {
thread_local SidecarListing* t_sidecarListing = nullptr;

// The names in `folder` that end in ".xmp" in any case; nothing when it cannot be listed.
std::optional<QSet<QString>> sidecarNamesIn(const QString& folder) {
    DIR* dir = ::opendir(QFile::encodeName(folder).constData());
    if (!dir)
        return std::nullopt;
    QSet<QString> names;
    while (const dirent* entry = ::readdir(dir)) {
        const std::size_t length = std::strlen(entry->d_name);
        if (length > 4 && ::strcasecmp(entry->d_name + length - 4, ".xmp") == 0)
            names.insert(QFile::decodeName(QByteArray(entry->d_name, qsizetype(length))));
    }
    ::closedir(dir);
    return names;
}
} // namespace

SidecarListing::Scope::Scope(SidecarListing& listing) : m_outer(t_sidecarListing) {
    t_sidecarListing = &listing;
}

SidecarListing::Scope::~Scope() {
    t_sidecarListing = m_outer;
}

SidecarListing* SidecarListing::current() {
    return t_sidecarListing;
}

bool SidecarListing::mayHold(const QString& folder, const QString& name) {
    const QMutexLocker locked(&m_mutex);
    auto found = m_names.find(folder);
    if (found == m_names.end()) {
        if (++m_looks[folder] < m_looksBeforeListing)
            return true;
        m_looks.remove(folder);
        found = m_names.insert(folder, sidecarNamesIn(folder));
    }
    return !found->has_value() || (*found)->contains(name);
}

std::optional<SidecarFile> findSidecar(const QString& photoPath) {
    if (const KnownSidecar* known = KnownSidecar::of(photoPath))
        return known->found();
    SidecarListing* listing = SidecarListing::current();
    const qsizetype slash = photoPath.lastIndexOf(QLatin1Char('/'));
    const QString folder = slash > 0    ? photoPath.left(slash)
                           : slash == 0 ? QStringLiteral("/")
                                        : QStringLiteral(".");
    for (const SidecarNaming naming :
         {SidecarNaming::WithExtension, SidecarNaming::ReplacingExtension}) {
        const QString lower = sidecarPathFor(photoPath, naming);
        if (lower == photoPath)
            continue;
        const QString upper = lower.left(lower.size() - 3) + QStringLiteral("XMP");
        for (const QString& path : {lower, upper}) {
            if (listing && !listing->mayHold(folder, path.mid(slash + 1)))
                continue;
            if (isRegularFile(path))
                return SidecarFile{path, naming};
        }
    }
    return std::nullopt;
}

std::optional<QByteArray> readSidecarBytes(const QString& path) {
    BoundedRead read = readBoundedFile(path, kMaxSidecarBytes);
    if (!read.ok())
        return std::nullopt;
    return std::move(read.bytes);
}

namespace {

// Calls fn with the packet opened as an XMP image whose metadata is read (the properties
// converted to Exif and IPTC as well); not at all when the packet is no XMP.
template <typename Fn> void withSidecarImage(const QByteArray& packet, Fn&& fn) {
    guardExiv2(
        [&] {
            auto image = Exiv2::ImageFactory::open(
                reinterpret_cast<const Exiv2::byte*>(packet.constData()), long(packet.size()));
            if (!image.get() || image->imageType() != Exiv2::ImageType::xmp)
                return;
            {
                // Reading a sidecar parses its packet and converts it to Exif and IPTC.
                const auto lock = lockXmpToolkit();
                image->readMetadata();
                settleXmpPrefixesAfterRead(*image);
            }
            fn(*image);
        },
        [](Exiv2Failure, const QString&) {});
}

} // namespace

std::optional<MetadataFieldSet> readSidecarFieldSet(const QByteArray& packet) {
    std::optional<MetadataFieldSet> set;
    withSidecarImage(packet, [&](const Exiv2::Image& image) { set = readMetadataFieldSet(image); });
    return set;
}

std::optional<ExtraValues> readSidecarExtras(const QByteArray& packet) {
    std::optional<ExtraValues> values;
    withSidecarImage(packet, [&](const Exiv2::Image& image) { values = readExtraValues(image); });
    return values;
}

std::optional<SidecarRead> readSidecarOf(const QString& photoPath) {
    auto found = findSidecar(photoPath);
    if (!found)
        return std::nullopt;
    auto bytes = readSidecarBytes(found->path);
    return SidecarRead{std::move(*found), std::move(bytes)};
}

std::optional<MetadataFieldSet> readSidecarFile(const QString& path) {
    const auto bytes = readSidecarBytes(path);
    if (!bytes)
        return std::nullopt;
    return readSidecarFieldSet(*bytes);
}

QByteArray editedSidecarPacket(const QByteArray& base, const MetadataFieldSet& edited,
                               const ErasedRows& erased, const SidecarExtras& extras) {
    const auto lock = lockXmpToolkit();
    // The sidecar is written anew with the prefixes it was read with.
    const std::string basePacket = base.toStdString();
    const OwnXmpPrefixes own(basePacket);
    if (const std::string refusal = own.rewriteRefusal(isStandardForm()); !refusal.empty())
        throw Exiv2::Error(Exiv2::kerErrorMessage, "the sidecar is left as it is: " + refusal);
    Exiv2::XmpData xmp;
    if (!base.trimmed().isEmpty() && Exiv2::XmpParser::decode(xmp, basePacket) != 0)
        throw Exiv2::Error(Exiv2::kerErrorMessage, "the sidecar holds no readable XMP");
    const ExtraEdits& extraEdits = extras.write.edits;
    if (extras.photoKeywords &&
        !(extraEdits.addKeywords.isEmpty() && extraEdits.removeKeywords.isEmpty()))
        seedKeywordLists(xmp, *extras.photoKeywords);
    // The Exif and IPTC rows are edited as tags, the way the photo's own are, and go back into
    // XMP through the same conversion that reading made of them.
    Exiv2::ExifData exifBefore;
    Exiv2::IptcData iptcBefore;
    Exiv2::copyXmpToExif(xmp, exifBefore);
    Exiv2::copyXmpToIptc(xmp, iptcBefore);
    auto image = Exiv2::ImageFactory::create(Exiv2::ImageType::xmp);
    image->setExifData(exifBefore);
    image->setIptcData(iptcBefore);
    image->setXmpData(xmp);
    applyStandardForm(*image, mergeForWriting(edited, MetadataFieldSet{}), erased);
    if (!extras.write.isEmpty())
        applyExtraWrite(*image, extras.write, /*declareIptcCharset=*/false);

    // Each block is compared with itself, since an Exif tag and an IPTC dataset may both
    // convert to one property (the artist and the by-line to dc:creator).
    Exiv2::XmpData result = image->xmpData();
    Exiv2::XmpData exifBeforeXmp, exifAfterXmp, iptcBeforeXmp, iptcAfterXmp;
    Exiv2::copyExifToXmp(exifBefore, exifBeforeXmp);
    Exiv2::copyExifToXmp(image->exifData(), exifAfterXmp);
    Exiv2::copyIptcToXmp(iptcBefore, iptcBeforeXmp);
    Exiv2::copyIptcToXmp(image->iptcData(), iptcAfterXmp);
    layChanges(result, iptcBeforeXmp, iptcAfterXmp);
    layChanges(result, exifBeforeXmp, exifAfterXmp);
    std::string packet = encoded(result);
    own.keepNamespaceNames(packet);
    return QByteArray::fromStdString(packet);
}

QByteArray emptySidecarPacket() {
    // An encoder gives nothing for no properties; an empty description says the same in XMP.
    return QByteArrayLiteral(
        "<?xpacket begin=\"\xEF\xBB\xBF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
        " <rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
        "  <rdf:Description rdf:about=\"\"/>\n"
        " </rdf:RDF>\n"
        "</x:xmpmeta>\n"
        "<?xpacket end=\"w\"?>");
}

WriteResult placeSidecar(const QString& sidecarPath, const QByteArray& packet, bool flushToDisk) {
    if (QFile::decodeName(QFile::encodeName(sidecarPath)) != sidecarPath)
        return {WriteStatus::Failed, QStringLiteral("the path has no form on the file system")};
    const QByteArray bytes = packet.isEmpty() ? emptySidecarPacket() : packet;
    struct stat st {};
    if (::lstat(QFile::encodeName(sidecarPath).constData(), &st) == 0) {
        if (!S_ISREG(st.st_mode))
            return {WriteStatus::NotAPhoto, QStringLiteral("the sidecar is not a regular file")};
        return replaceSidecar(sidecarPath, bytes, flushToDisk);
    }
    return createSidecar(sidecarPath, bytes, flushToDisk);
}

WriteResult writeSidecar(const QString& sidecarPath, const QByteArray& base,
                         const MetadataFieldSet& edited, const ErasedRows& erased,
                         const SidecarExtras& extras, bool flushToDisk) {
    QByteArray packet;
    WriteResult result;
    guardExiv2([&] { packet = editedSidecarPacket(base, edited, erased, extras); },
               [&](Exiv2Failure, const QString& what) {
                   result = {WriteStatus::Failed, QStringLiteral("sidecar: ") + what};
               });
    if (!result.written())
        return result;
    return placeSidecar(sidecarPath, packet, flushToDisk);
}

} // namespace tagmoor
