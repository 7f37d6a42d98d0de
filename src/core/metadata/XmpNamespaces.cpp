#include "metadata/XmpNamespaces.h"

#include "metadata/MetadataLibrary.h"

#include <QLoggingCategory>

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

Q_LOGGING_CATEGORY(lcXmpNamespaces, "tagmoor.metadata.xmp", QtWarningMsg)

namespace tagmoor {

namespace {

using Table = std::map<std::string, std::string, std::less<>>;

struct StartingTable {
    Table uriOfPrefix;
    Table prefixOfUri;
};

StartingTable& startingTable() {
    static StartingTable table;
    return table;
}

// Exiv2 takes a namespace without a closing slash or hash as the one with a slash.
std::string exiv2Uri(std::string_view uri) {
    std::string normal(uri);
    if (!normal.empty() && normal.back() != '/' && normal.back() != '#')
        normal += '/';
    return normal;
}

// The starting prefix of a namespace, with or without a closing slash: Exiv2 registers a known
// namespace that has none (Darwin Core's) once more with one, and writes it so.
const std::string* startingPrefixOf(std::string_view uri) {
    const Table& prefixes = startingTable().prefixOfUri;
    if (const auto exact = prefixes.find(uri); exact != prefixes.end())
        return &exact->second;
    if (const auto slashed = prefixes.find(exiv2Uri(uri)); slashed != prefixes.end())
        return &slashed->second;
    if (uri.ends_with('/'))
        if (const auto bare = prefixes.find(uri.substr(0, uri.size() - 1)); bare != prefixes.end())
            return &bare->second;
    return nullptr;
}

bool isXmlSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// Calls `visit(prefix, uri)` for each xmlns declaration of `packet`, as written there; the two
// live as long as the call. The tags' attributes are walked one by one, so that text in a value
// that reads like a declaration is passed over. A packet in UTF-16 or UTF-32 is read without its
// zero bytes, which leaves its ASCII characters, all that tags and namespace names are made of.
template <typename Visit> void forEachDeclaration(std::string_view packet, Visit&& visit) {
    std::string narrowed;
    if (packet.find('\0') != std::string_view::npos) {
        narrowed.reserve(packet.size() / 2);
        for (const char c : packet)
            if (c != '\0')
                narrowed += c;
        packet = narrowed;
    }
    constexpr std::string_view kXmlns = "xmlns:";
    const std::size_t size = packet.size();
    std::size_t at = 0;
    const auto skipSpace = [&] {
        while (at < size && isXmlSpace(packet[at]))
            ++at;
    };
    while ((at = packet.find('<', at)) != std::string_view::npos) {
        ++at;
        // Comments, processing instructions and declarations hold no attributes of interest.
        if (at < size && (packet[at] == '?' || packet[at] == '!')) {
            const std::string_view end = packet.substr(at, 3) == "!--" ? "-->" : ">";
            at = packet.find(end, at);
            if (at == std::string_view::npos)
                return;
            continue;
        }
        // The element's name, then its attributes up to the end of the tag.
        while (at < size && !isXmlSpace(packet[at]) && packet[at] != '>' && packet[at] != '/')
            ++at;
        for (;;) {
            skipSpace();
            if (at >= size || packet[at] == '>' || packet[at] == '/' || packet[at] == '<')
                break;
            const std::size_t name = at;
            while (at < size && !isXmlSpace(packet[at]) && packet[at] != '=' && packet[at] != '>')
                ++at;
            const std::string_view attribute = packet.substr(name, at - name);
            skipSpace();
            if (at >= size || packet[at] != '=')
                break;
            ++at;
            skipSpace();
            if (at >= size || (packet[at] != '"' && packet[at] != '\''))
                break;
            const std::size_t close = packet.find(packet[at], at + 1);
            if (close == std::string_view::npos)
                return;
            if (attribute.starts_with(kXmlns))
                visit(attribute.substr(kXmlns.size()), packet.substr(at + 1, close - at - 1));
            at = close + 1;
        }
    }
}

// The prefixes a packet of our own may not declare: the packet's own frame uses them.
bool isFramePrefix(std::string_view prefix) {
    return prefix == "x" || prefix == "rdf" || prefix == "xml" || prefix == "xmlns";
}

// Whether the declaration gives a known prefix to a namespace Exiv2 does not know by it.
bool takesKnownPrefix(const XmpDeclaration& declaration) {
    return startingTable().uriOfPrefix.contains(declaration.prefix) &&
           !startingPrefixOf(declaration.uri);
}

// Has the toolkit parse an empty packet that declares `declarations`: parsing is the one way
// Exiv2 leaves to set the prefix the toolkit gives a namespace.
void declare(const std::vector<XmpDeclaration>& declarations) {
    std::string packet = "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
                         "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
                         "<rdf:Description rdf:about=\"\"";
    bool any = false;
    for (const XmpDeclaration& d : declarations) {
        if (isFramePrefix(d.prefix))
            continue;
        packet.append(" xmlns:").append(d.prefix).append("=\"");
        for (const char c : d.uri)
            packet.append(c == '"' ? std::string_view("&quot;") : std::string_view(&c, 1));
        packet += '"';
        any = true;
    }
    if (!any)
        return;
    packet += "/></rdf:RDF></x:xmpmeta>";
    Exiv2::XmpData scratch;
    if (Exiv2::XmpParser::decode(scratch, packet) != 0)
        qCWarning(lcXmpNamespaces) << "The XMP toolkit refused namespace declarations";
}

// The starting table's entries for the prefixes and namespaces that `unusual` declared.
std::vector<XmpDeclaration> startingEntriesFor(const std::vector<XmpDeclaration>& unusual) {
    const StartingTable& table = startingTable();
    std::vector<XmpDeclaration> entries;
    const auto add = [&](XmpDeclaration entry) {
        if (std::find(entries.begin(), entries.end(), entry) == entries.end())
            entries.push_back(std::move(entry));
    };
    for (const XmpDeclaration& d : unusual) {
        if (const auto prefix = table.prefixOfUri.find(d.uri); prefix != table.prefixOfUri.end())
            add({prefix->second, d.uri});
        if (const auto uri = table.uriOfPrefix.find(d.prefix); uri != table.uriOfPrefix.end())
            add({d.prefix, uri->second});
    }
    return entries;
}

// Takes out of Exiv2's registry the namespaces that a packet registered under known prefixes;
// whether there were any.
bool dropTakenPrefixes(const std::vector<XmpDeclaration>& unusual) {
    bool taken = false;
    for (const XmpDeclaration& d : unusual) {
        if (!takesKnownPrefix(d))
            continue;
        taken = true;
        const std::string uri = exiv2Uri(d.uri);
        if (Exiv2::XmpProperties::nsRegistry_.contains(uri))
            Exiv2::XmpProperties::unregisterNs(uri);
    }
    return taken;
}

} // namespace

Exiv2::Dictionary knownXmpNamespaces() {
    Exiv2::Dictionary known;
    Exiv2::XmpProperties::registeredNamespaces(known);
    Exiv2::XmpParser::terminate();
    return known;
}

void rememberStartingXmpPrefixes(const Exiv2::Dictionary& known) {
    const auto xmpLock = lockXmpToolkit();
    // One property in every namespace Exiv2 has a prefix for: the packet they make declares
    // each namespace under the toolkit's own prefix.
    Exiv2::XmpData probe;
    const Exiv2::XmpTextValue one("1");
    for (const auto& [prefix, uri] : known) {
        try {
            // Each key is new: added, not looked for first.
            probe.add(Exiv2::XmpKey("Xmp." + prefix + ".tagmoorProbe"), &one);
        } catch (const Exiv2::AnyError&) {
            // a prefix Exiv2 lists but takes in no key
        }
    }
    std::string packet;
    if (Exiv2::XmpParser::encode(packet, probe, Exiv2::XmpParser::omitPacketWrapper) > 1)
        qCWarning(lcXmpNamespaces) << "The XMP toolkit's prefixes could not be told";
    StartingTable& table = startingTable();
    forEachDeclaration(packet, [&](std::string_view prefix, std::string_view uri) {
        table.uriOfPrefix.emplace(prefix, uri);
        table.prefixOfUri.emplace(uri, prefix);
    });
}

namespace {

// Gathers the declarations that differ from the starting table, each once (a packet may
// declare one many times).
class UnusualDeclarations {
public:
    void take(std::string_view prefix, std::string_view uri) {
        const std::string* known = startingPrefixOf(uri);
        if (known ? *known == prefix : !startingTable().uriOfPrefix.contains(prefix))
            return; // as at start, or a namespace of its own under a prefix of its own
        if (m_seen.emplace(prefix, uri).second)
            m_unusual.push_back({std::string(prefix), std::string(uri)});
    }
    std::vector<XmpDeclaration> take() { return std::move(m_unusual); }

private:
    std::vector<XmpDeclaration> m_unusual;
    std::set<std::pair<std::string, std::string>> m_seen;
};

} // namespace

std::vector<XmpDeclaration> unusualXmpDeclarations(std::string_view packet) {
    UnusualDeclarations unusual;
    forEachDeclaration(
        packet, [&](std::string_view prefix, std::string_view uri) { unusual.take(prefix, uri); });
    return unusual.take();
}

int decodeXmpPacket(Exiv2::XmpData& xmp, const std::string& packet) {
    const std::vector<XmpDeclaration> unusual = unusualXmpDeclarations(packet);
    int status = Exiv2::XmpParser::decode(xmp, packet);
    if (unusual.empty())
        return status;
    if (dropTakenPrefixes(unusual)) {
        xmp.clear();
        status = kXmpPrefixTaken;
    }
    declare(startingEntriesFor(unusual));
    return status;
}

bool settleXmpPrefixesAfterRead(Exiv2::Image& image) {
    const std::vector<XmpDeclaration> unusual =
        unusualXmpDeclarations(std::as_const(image).xmpPacket());
    if (unusual.empty())
        return true;
    const bool taken = dropTakenPrefixes(unusual);
    if (taken)
        image.xmpData().clear();
    declare(startingEntriesFor(unusual));
    return !taken;
}

OwnXmpPrefixes::OwnXmpPrefixes(std::string_view packet) {
    // One pass over the packet gives both its unusual declarations and its namespace names.
    UnusualDeclarations unusual;
    std::set<std::string, std::less<>> names;
    forEachDeclaration(packet, [&](std::string_view prefix, std::string_view uri) {
        unusual.take(prefix, uri);
        names.emplace(uri);
    });
    m_unusual = unusual.take();
    for (const std::string& name : names) {
        const bool bare = !name.empty() && !name.ends_with('/') && !name.ends_with('#');
        // Only a name the toolkit writes as it is read back: no character it would escape.
        const bool plain = name.find_first_of("&<>\"'") == std::string::npos;
        if (bare && names.contains(exiv2Uri(name)))
            m_namesMerged = true;
        else if (bare && plain)
            m_bareNames.insert(name);
    }
    if (m_unusual.empty())
        return;
    m_prefixTaken = dropTakenPrefixes(m_unusual);
    std::vector<XmpDeclaration> own;
    for (const XmpDeclaration& d : m_unusual)
        if (!takesKnownPrefix(d))
            own.push_back(d);
    declare(own);
}

std::string OwnXmpPrefixes::rewriteRefusal(bool standardForm,
                                           const Exiv2::XmpData* encodedByWriter) const {
    if (m_prefixTaken)
        return "its XMP gives a standard prefix to a namespace of its own, and writing its XMP "
               "anew would move values between namespaces";
    if (standardForm && m_namesMerged)
        return "its XMP holds one namespace under two names, with and without a closing slash, "
               "which are written back as one: writing its XMP anew would lose values";
    if (standardForm && encodedByWriter && movesNames(*encodedByWriter))
        return "its XMP holds a namespace whose name ends in neither a slash nor a hash, which "
               "this format's writer gives a closing slash: writing its XMP anew would move "
               "values into another namespace";
    return {};
}

bool OwnXmpPrefixes::movesNames(const Exiv2::XmpData& xmp) const {
    if (m_bareNames.empty())
        return false;
    // Exiv2 holds such a namespace under its name with the "/".
    for (const Exiv2::Xmpdatum& datum : xmp) {
        const std::string ns = Exiv2::XmpProperties::ns(datum.groupName());
        if (!ns.empty() && ns.back() == '/' &&
            m_bareNames.contains(std::string_view(ns).substr(0, ns.size() - 1)))
            return true;
    }
    return false;
}

void OwnXmpPrefixes::keepNamespaceNames(std::string& encoded) const {
    if (m_bareNames.empty() || encoded.find('\0') != std::string::npos)
        return;
    // One pass over the new packet's declarations; a name Exiv2 gave a "/" that the photo's
    // packet did not have loses it.
    std::string kept;
    std::size_t copied = 0;
    forEachDeclaration(encoded, [&](std::string_view, std::string_view uri) {
        if (uri.size() < 2 || !uri.ends_with('/') ||
            !m_bareNames.contains(uri.substr(0, uri.size() - 1)))
            return;
        const std::size_t slash = std::size_t(uri.data() - encoded.data()) + uri.size() - 1;
        kept.append(encoded, copied, slash - copied);
        copied = slash + 1;
    });
    if (copied == 0)
        return;
    kept.append(encoded, copied);
    encoded = std::move(kept);
}

OwnXmpPrefixes::~OwnXmpPrefixes() {
    if (!m_unusual.empty())
        declare(startingEntriesFor(m_unusual));
}

} // namespace tagmoor
