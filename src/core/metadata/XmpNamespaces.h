#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace Exiv2 {
class Image;
class XmpData;
} // namespace Exiv2

namespace tagmoor {

// The XMP toolkit keeps one table of namespace prefixes for the whole process, and parsing a
// packet writes the packet's own prefixes into it: once a packet that calls the basic schema
// "xap" is parsed, every packet serialised after it, on any thread and for any photo, calls it
// "xap" too, until a packet that calls it "xmp" comes along. Worse, a packet that gives a
// standard prefix to a namespace of its own has Exiv2 take that prefix for the foreign
// namespace for the rest of the process, so that the standard properties of later photos would
// be read from and written into that namespace.
//
// So between two uses of the toolkit its table holds the prefixes it had at start. A packet is
// serialised with the prefixes of the packet that was read from the same photo (its own
// "xap" stays "xap"), whatever other photos were parsed meanwhile. Everything here needs the
// XMP lock.

// One xmlns declaration of a packet.
struct XmpDeclaration {
    std::string prefix;
    std::string uri;
    bool operator==(const XmpDeclaration&) const = default;
};

// The namespaces Exiv2 knows, by its prefixes. Exiv2 gives them only after registering its own
// prefixes with the toolkit, which then differ from the toolkit's own choices in places, so the
// toolkit is shut down after: call before Exiv2::XmpParser::initialize().
std::map<std::string, std::string> knownXmpNamespaces();

// Notes the toolkit's table as it stands at start, for the namespaces `known`. Called once, by
// initializeMetadataLibrary(), right after the toolkit starts.
void rememberStartingXmpPrefixes(const std::map<std::string, std::string>& known);

// The declarations of `packet` that differ from the starting table: a known namespace under
// another prefix, or a known prefix for another namespace. Usually none.
std::vector<XmpDeclaration> unusualXmpDeclarations(std::string_view packet);

// What decodeXmpPacket() gives for a packet that binds a known prefix to a namespace of its own:
// its properties cannot be told from those of the known namespace, so none are taken.
constexpr int kXmpPrefixTaken = 16;

// Decodes `packet` as Exiv2::XmpParser::decode does, and leaves the table as it found it.
int decodeXmpPacket(Exiv2::XmpData& xmp, const std::string& packet);

// Puts the table back after Exiv2 parsed `image`'s packet itself (readMetadata). False, with
// the image's XMP emptied, for a packet that binds a known prefix to a namespace of its own.
bool settleXmpPrefixesAfterRead(Exiv2::Image& image);

// While it lives, the table holds the prefixes of `packet` (the packet a photo was read with),
// so that the photo's new packet is written with them; then the table is put back.
class OwnXmpPrefixes {
public:
    explicit OwnXmpPrefixes(std::string_view packet);
    ~OwnXmpPrefixes();
    // Whether the packet binds a known prefix to a namespace of its own: the photo's XMP must
    // then not be written anew, since its values would change namespace.
    bool prefixTaken() const { return m_prefixTaken; }
    // Why the photo's XMP may not be written anew, or nothing: a known prefix bound to a
    // namespace of its own; in the standard form also one namespace under two names, with and
    // without a closing "/", which Exiv2 takes as one, so that one of two values would be lost,
    // and, given the XMP that a format's writer is to encode itself without giving names back,
    // a value of it in a namespace whose name Exiv2 would give a "/" (called under the lock).
    std::string rewriteRefusal(bool standardForm,
                               const Exiv2::XmpData* encodedByWriter = nullptr) const;
    // Exiv2 takes a namespace whose name ends in neither "/" nor "#" as the one with a "/"
    // and writes it so, which would move its values into another namespace. This gives such
    // namespaces of the photo's packet their own names back in `encoded`, a packet written
    // from it (but for one the packet also holds with the "/": that one keeps it).
    void keepNamespaceNames(std::string& encoded) const;
    OwnXmpPrefixes(const OwnXmpPrefixes&) = delete;
    OwnXmpPrefixes& operator=(const OwnXmpPrefixes&) = delete;

private:
    // Whether a value of `xmp` is in a namespace whose name Exiv2 gave a "/".
    bool movesNames(const Exiv2::XmpData& xmp) const;

    std::vector<XmpDeclaration> m_unusual;
    std::set<std::string, std::less<>> m_bareNames;
    bool m_prefixTaken = false;
    bool m_namesMerged = false;
};

} // namespace tagmoor
