# Makes tags.cr3: the smallest CR3 box layout that carries an IFD0 (Make, Model, Artist, size)
# in its CMT1 box, for the tests; no picture data. Run with python3 in this folder.
import struct
def box(t, payload): return struct.pack('>I', 8+len(payload)) + t + payload
def tiff(entries):
    # entries: list of (tag, type, count, bytes)
    n = len(entries); off = 8 + 2 + n*12 + 4
    ifd = struct.pack('<H', n); data = b''
    for tag, typ, cnt, val in sorted(entries):
        if len(val) <= 4:
            ifd += struct.pack('<HHI', tag, typ, cnt) + val.ljust(4, b'\0')
        else:
            ifd += struct.pack('<HHII', tag, typ, cnt, off + len(data)); data += val
            if len(data) % 2: data += b'\0'
    ifd += struct.pack('<I', 0)
    return b'II*\0' + struct.pack('<I', 8) + ifd + data
def asc(s): b = s.encode() + b'\0'; return (2, len(b), b)
cmt1 = tiff([(0x010f,)+asc('Canon'), (0x0110,)+asc('Canon EOS R'), (0x013b,)+asc('Raw Artist'),
             (0x0100, 3, 1, struct.pack('<H', 6000)), (0x0101, 3, 1, struct.pack('<H', 4000))])
uuid = bytes.fromhex('85c0b687820f11e08111f4ce462b6a48')
moov = box(b'moov', box(b'uuid', uuid + box(b'CMT1', cmt1)))
ftyp = box(b'ftyp', b'crx ' + struct.pack('>I', 1) + b'crx isom')
open('tags.cr3', 'wb').write(ftyp + moov)
