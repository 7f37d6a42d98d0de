#pragma once

#include <cstddef>

namespace tagmoor {

// A JPEG's Photoshop segment, and a Photoshop document's image resources, may carry, beside the
// IPTC block, an MD5 digest of that block (resource 0x0425) by which other programs tell whether
// the IPTC still matches the XMP. Exiv2 re-encodes the IPTC block whenever it writes and leaves the
// old digest behind. This sets the digest to the block as it now stands, in place: the file keeps
// its length and every other byte. It does nothing unless both resources stand whole in one
// Photoshop segment of a well-formed JPEG head, or in the resources of a well-formed Photoshop
// document. Gives whether it changed the digest.
bool refreshIptcDigest(unsigned char* data, std::size_t size);

} // namespace tagmoor
